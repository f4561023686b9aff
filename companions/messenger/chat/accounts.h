// The accounts that were used here. Each keeps its name, its status, its contacts and its mail while another one is
// signed in; those that are remembered outlive the client, as lines of text in a store of the caller's:
//   SIGN-IN TAB STATUS TAB KIND TAB UNREAD TAB NAME        an account; KIND is "automatic" or "-"
//   TAB SIGN-IN TAB STATUS TAB KIND TAB NAME               a contact of the account before it; KIND is "blocked" or "-"
//   TAB TAB "network" TAB ADDRESS TAB NICK TAB ACCOUNT TAB CLEAR TAB SECRET   the account before it is one of a chat
//   network:
//                                                          the address as in irc/address.h, CLEAR is "clear" (its
//                                                          password goes without TLS as well) or "-", SECRET the
//                                                          protected password in hexadecimal digits. It has no contacts
//                                                          here.
// Fields are escaped as in escapes.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/chat/contact.h"
#include "companions/messenger/chat/network_account.h"

namespace messenger_client {

// Ten times what anybody has. Of more, the ones not used for longest are forgotten, those not remembered first.
inline constexpr std::size_t most_accounts = 1000;
// UTF-16 units of what is stored, line ends counted: what is more is left out, the accounts used last being kept.
inline constexpr std::size_t longest_store = 8 * 1024 * 1024;

struct Account {
    std::u16string signin;
    std::u16string friendly;
    Status status = Status::online; // to sign in with
    std::vector<ContactPtr> contacts = {};
    long unread = 0;
    bool remembered = false;
    bool automatic = false;                     // at the client's start; one account at most
    std::optional<NetworkAccount> network = {}; // of a chat network; without its password ...
    std::string secret = {};                    // ... which is this, protected; empty: none
};

class Accounts {
  public:
    // The one used last comes first.
    const std::vector<Account>& all() const { return all_; }
    // Letter case does not matter. The results are good until an account is added, used or forgotten.
    const Account* find(std::u16string_view signin) const;
    Account* find(std::u16string_view signin);
    // The account of that name, added where it is new, now the first.
    Account& use(std::u16string_view signin);
    // An account that signs in automatically is remembered, and is the only one that does.
    void remember(std::u16string_view signin, bool automatic);
    // False where there is none.
    bool forget(std::u16string_view signin);

    const Account* automatic() const;
    const Account* lastRemembered() const;

    // Replaces all accounts by those of the lines. Left out are lines without their fields or a sign-in name, a sign-in
    // name that was there already, and what exceeds most_accounts, or most_contacts of one.
    void read(const std::vector<std::u16string>& lines);
    // The remembered ones, in longest_store.
    std::vector<std::u16string> lines() const;

  private:
    std::vector<Account> all_;
};

} // namespace messenger_client
