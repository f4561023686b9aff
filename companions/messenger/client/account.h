// What is remembered on this computer.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "companions/messenger/chat/accounts.h"
#include "companions/messenger/irc/address.h"
#include "companions/messenger/reading/rules.h"
#include "platform/kept_place.h"

namespace messenger_client {

// HKEY_CURRENT_USER\Software\MessengerClient, value Accounts (REG_MULTI_SZ, lines as in accounts.h). Older versions
// kept one account, that signed in automatically, in SigninName and FriendlyName: it is taken over, and they are
// removed by the next storing. What is stored is taken as far as it makes sense.
void loadAccounts(Accounts& accounts);
void storeAccounts(const Accounts& accounts);

// Remembers the account of a chat network as it shall be, its password protected, and forgets it where it shall not be.
// The account with its password; or why it has none, as a sentence for people.
std::variant<NetworkAccount, std::u16string> prepareNetwork(Accounts& accounts, const NetworkRequest& request);

// The value KeepRunning (REG_DWORD): closing the main window hides it, as it does until somebody decides otherwise.
bool keepsRunning();
void keepRunning(bool keep);

// Files of the folder in which Agent has its characters.
int installedCharacters();

// What is read of a conversation of a chat network, below the key Reading: a value (REG_MULTI_SZ, lines as in
// reading/rules.h) by the conversation's name; the defaults where nothing is kept.
reading::Rules readingRules(const std::u16string& conversation);
void keepReadingRules(const std::u16string& conversation, const reading::Rules& rules);

// The value StreamingServer (REG_SZ, irc:// or ircs:// with a server alone): where the streaming chat is reached
// instead of at its own place, as over a bridge of the user's; nothing where it is not there, or no such address.
std::optional<irc::Address> streamingServer();

// Where the main window was, with its border, and a conversation's that was moved or resized last.
const murmelix::platform::KeptPlace& mainPlace();
const murmelix::platform::KeptPlace& conversationPlace();

} // namespace messenger_client
