// What is remembered on this computer.
#pragma once

#include <optional>

#include "companions/messenger/chat/accounts.h"

namespace messenger_client {

// HKEY_CURRENT_USER\Software\MessengerClient, value Accounts (REG_MULTI_SZ, lines as in accounts.h). Older versions
// kept one account, that signed in automatically, in SigninName and FriendlyName: it is taken over, and they are
// removed by the next storing. What is stored is taken as far as it makes sense.
void loadAccounts(Accounts& accounts);
void storeAccounts(const Accounts& accounts);

// The value KeepRunning (REG_DWORD): closing the main window hides it, as it does until somebody decides otherwise.
bool keepsRunning();
void keepRunning(bool keep);

// Where the main window was, with its border; twips. The value Place (REG_MULTI_SZ): its four numbers.
struct WindowPlace {
    int left, top, width, height;
    bool operator==(const WindowPlace&) const = default;
};
// Nothing where none is known, or what is stored is no place that a window can have.
std::optional<WindowPlace> lastPlace();
void keepPlace(const WindowPlace& place);

} // namespace messenger_client
