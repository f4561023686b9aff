// Accounts of chat networks: what one fills in to sign in to one, and what is kept of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "companions/messenger/irc/settings.h"

namespace messenger_client {

struct Account;
class Accounts;

enum class AccountKind { local, irc, streaming };

struct NetworkAccount {
    irc::Address address = {};
    std::u16string nick = {};           // of the streaming chat one's own name; empty: to read along
    std::u16string account = {};        // where the network knows one by another name than the nick
    std::u16string password = {};       // or token; never kept like this
    bool password_in_the_clear = false; // it is sent over a connection without TLS as well
    bool operator==(const NetworkAccount&) const = default;
};

irc::Settings settingsOf(const NetworkAccount& account);
AccountKind kindOf(const Account& account);

// What stands for it among the accounts: "nick@server", of the streaming chat "name@twitch", and "#channel@twitch" of
// who reads along.
std::u16string signinOf(const NetworkAccount& account);

// Who shall be signed in, and what is to be remembered of it.
struct NetworkRequest {
    NetworkAccount account = {};
    bool kept_password = false; // that of the remembered account of this sign-in name
    bool remember = false;
    bool automatic = false;
};
// As a remembered account is signed in.
NetworkRequest requestOf(const Account& account);

// The fields of a form for one of the two kinds. Of the streaming chat, `nick` is one's own name and `password` the
// token.
struct NetworkFields {
    // The networks that are offered; the last one is any other server.
    static constexpr int most_networks = 3, other_network = most_networks - 1;

    int network = 0;
    std::u16string server = {}, port = {}; // of another server
    std::u16string nick = {}, channels = {}, account = {}, password = {};
    bool without_tls = false;
    bool password_in_the_clear = false;
    bool remember = false;
    bool automatic = false;
};
std::u16string_view nameOfNetwork(int network); // empty: another server
std::u16string_view hostOfNetwork(int network); // likewise
// Of a remembered account, whose password is not shown.
NetworkFields fieldsOf(const Account& account);
// What the field of the port shows from now on, where going on without TLS was chosen or not: another number than the
// usual one stays.
std::u16string portFor(bool without_tls, std::u16string_view shown);
// The remembered account of these fields, whose kept password is used where none is typed; null: none is kept for them.
const Account* keptFor(AccountKind kind, const NetworkFields& fields, const Accounts& accounts);

// The sign-in name that they stand for; empty where they are not filled in.
std::u16string signinOf(AccountKind kind, const NetworkFields& fields);

enum class NetworkField { server, port, nick, channels, account, password };
struct FieldFault {
    NetworkField field;
    std::u16string sentence; // for people
};
std::variant<NetworkRequest, FieldFault> requestOf(AccountKind kind, const NetworkFields& fields,
                                                   const Accounts& accounts);

// Lines of the store; an account whose password was not kept has no secret. Nothing where the text is none.
std::u16string networkText(const NetworkAccount& account, std::string_view secret);
struct KeptNetwork {
    NetworkAccount account;
    std::string secret;
};
std::optional<KeptNetwork> networkOf(std::u16string_view text);

} // namespace messenger_client
