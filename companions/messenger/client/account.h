// Accounts: the remembered one, in the registry, and the one for a first look, with its contacts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companions/messenger/chat/client.h"

namespace messenger_client {

struct Account {
    std::u16string signin;
    std::u16string friendly;
};

struct DemoContact {
    const char16_t* signin;
    const char16_t* friendly;
    Status status;
};

Account demoAccount();
const std::vector<DemoContact>& demoContacts();

// HKEY_CURRENT_USER\Software\MessengerClient, values SigninName and FriendlyName.
std::optional<Account> rememberedAccount();
void rememberAccount(const Account& account);
void forgetAccount();

} // namespace messenger_client
