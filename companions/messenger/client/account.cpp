#include "companions/messenger/client/account.h"

#include <array>
#include <cwchar>

#include <windows.h>

#include "common/com/handles.h"

namespace messenger_client {

using murmelix::com::wide;

namespace {

constexpr wchar_t key_path[] = L"Software\\MessengerClient";

std::u16string stored(const wchar_t* name) {
    std::array<wchar_t, 512> text{};
    DWORD bytes = sizeof text;
    if (RegGetValueW(HKEY_CURRENT_USER, key_path, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS)
        return {};
    return std::u16string(murmelix::com::narrow(text.data(), std::wcslen(text.data())));
}

void store(const wchar_t* name, const std::u16string& text) {
    RegSetKeyValueW(HKEY_CURRENT_USER, key_path, name, REG_SZ, wide(text),
                    static_cast<DWORD>((text.size() + 1) * sizeof(char16_t)));
}

} // namespace

Account demoAccount() {
    return {u"you@messenger.example", u"You"};
}

const std::vector<DemoContact>& demoContacts() {
    static const std::vector<DemoContact> contacts{
        {u"hazel@messenger.example", u"Hazel", Status::online},
        {u"otto@messenger.example", u"Otto :)", Status::online},
        {u"mina@messenger.example", u"Mina", Status::away},
        {u"theo@messenger.example", u"Theo", Status::busy},
        {u"juniper@messenger.example", u"Juniper", Status::offline},
    };
    return contacts;
}

std::optional<Account> rememberedAccount() {
    Account account{stored(L"SigninName"), stored(L"FriendlyName")};
    if (account.signin.empty())
        return std::nullopt;
    return account;
}

void rememberAccount(const Account& account) {
    store(L"SigninName", account.signin);
    store(L"FriendlyName", account.friendly);
}

void forgetAccount() {
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key_path, L"SigninName");
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key_path, L"FriendlyName");
}

} // namespace messenger_client
