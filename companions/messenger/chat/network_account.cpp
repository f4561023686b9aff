#include "companions/messenger/chat/network_account.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "common/address.h"
#include "common/text.h"
#include "companions/messenger/chat/accounts.h"
#include "companions/messenger/chat/escapes.h"

namespace messenger_client {

namespace {

using View = std::u16string_view;

constexpr View streaming_place = u"twitch";
constexpr std::size_t longest_nick = 64;       // units; servers allow half of it
constexpr std::size_t longest_account = 128;   // units of an account's name, of which services allow fewer
constexpr std::size_t longest_password = 1024; // units; tokens are the longest
constexpr std::size_t longest_port = 5;        // digits
constexpr std::size_t most_secret = 64 * 1024; // bytes: several times the longest password, protected
constexpr char16_t part = u'\t';
constexpr std::size_t parts = 5;

bool isControl(char16_t unit) {
    return unit < u' ' || unit == 0x7F;
}

// What a line of the protocol could not hold as one word, or would begin another.
bool isWord(View text) {
    return !text.empty() && text.front() != u':' && text.front() != u'#' && text.front() != u'&' &&
           std::none_of(text.begin(), text.end(),
                        [](char16_t unit) { return isControl(unit) || View(u" ,*?!@").find(unit) != murmelix::npos; });
}

bool isNameOfStreaming(View text) {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) {
        return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9') ||
               unit == u'_';
    });
}

std::optional<std::uint16_t> portOf(View text) {
    if (text.empty() || text.size() > longest_port || text.find_first_not_of(u"0123456789") != murmelix::npos) {
        return std::nullopt;
    }
    const double number = murmelix::leadingNumber(text);
    if (number < 1 || number > 65535) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(number);
}

std::u16string usualPort(bool without_tls) {
    return murmelix::toText(without_tls ? irc::plain_port : irc::tls_port);
}

FieldFault fault(NetworkField field, std::u16string sentence) {
    return {field, std::move(sentence)};
}

// Server and port, without channels.
std::variant<irc::Address, FieldFault> placeOf(const NetworkFields& fields) {
    irc::Address address{.dialect = irc::Dialect::irc, .tls = !fields.without_tls};
    if (fields.network != NetworkFields::other_network) {
        address.host = irc::presets.at(static_cast<std::size_t>(fields.network)).host;
        address.port = fields.without_tls ? irc::plain_port : irc::tls_port;
        return address;
    }
    address.host = murmelix::toLower(murmelix::trim(fields.server));
    if (address.host.find(u':') != murmelix::npos || !murmelix::isHost(address.host)) {
        return fault(NetworkField::server, u"Which server? It looks like irc.example.org.");
    }
    const auto port = portOf(murmelix::trim(fields.port));
    if (!port) {
        return fault(NetworkField::port, u"A port is a number from 1 to 65535.");
    }
    address.port = *port;
    return address;
}

std::variant<NetworkAccount, FieldFault> ircAccount(const NetworkFields& fields) {
    auto place = placeOf(fields);
    if (auto* wrong = std::get_if<FieldFault>(&place)) {
        return std::move(*wrong);
    }
    NetworkAccount account{.address = std::get<irc::Address>(std::move(place)),
                           .nick = std::u16string(murmelix::trim(fields.nick)),
                           .account = std::u16string(murmelix::trim(fields.account)),
                           .password = fields.password,
                           .password_in_the_clear = fields.without_tls && fields.password_in_the_clear};
    if (account.nick.size() > longest_nick || !isWord(account.nick)) {
        return fault(NetworkField::nick, u"Which nick? It is one word of letters and digits, as others see you.");
    }
    auto channels = irc::parseChannels(fields.channels, irc::Dialect::irc);
    if (auto* wrong = std::get_if<irc::Fault>(&channels)) {
        return fault(NetworkField::channels, std::move(*wrong));
    }
    account.address.channels = std::get<std::vector<std::u16string>>(std::move(channels));
    if (account.account.size() > longest_account ||
        std::any_of(account.account.begin(), account.account.end(), isControl)) {
        return fault(NetworkField::account, u"That cannot be the name of an account.");
    }
    return account;
}

std::variant<NetworkAccount, FieldFault> streamingAccount(const NetworkFields& fields) {
    auto channels = irc::parseChannels(fields.channels, irc::Dialect::twitch);
    if (auto* wrong = std::get_if<irc::Fault>(&channels)) {
        return fault(NetworkField::channels, std::move(*wrong));
    }
    NetworkAccount account{.address = {.dialect = irc::Dialect::twitch,
                                       .host = std::u16string(irc::twitch_host),
                                       .port = irc::tls_port,
                                       .tls = true,
                                       .channels = std::get<std::vector<std::u16string>>(std::move(channels))},
                           .nick = murmelix::toLower(murmelix::trim(fields.nick)),
                           .password = std::u16string(murmelix::trim(fields.password))};
    if (account.address.channels.empty()) {
        return fault(NetworkField::channels, u"Which channel? It is the name of who streams.");
    }
    if (account.nick.size() > longest_nick || !isNameOfStreaming(account.nick)) {
        return fault(NetworkField::nick, u"Your name there has letters, digits and _ alone.");
    }
    return account;
}

std::variant<NetworkAccount, FieldFault> accountOf(AccountKind kind, const NetworkFields& fields) {
    return kind == AccountKind::irc ? ircAccount(fields) : streamingAccount(fields);
}

std::u16string hexOf(std::string_view bytes) {
    constexpr View digits = u"0123456789abcdef";
    std::u16string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4];
        text += digits[value & 15];
    }
    return text;
}

std::optional<std::string> bytesOf(View hex) {
    if (hex.size() % 2 != 0 || hex.size() / 2 > most_secret) {
        return std::nullopt;
    }
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const std::size_t high = View(u"0123456789abcdef").find(hex[i]);
        const std::size_t low = View(u"0123456789abcdef").find(hex[i + 1]);
        if (high == murmelix::npos || low == murmelix::npos) {
            return std::nullopt;
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

} // namespace

irc::Settings settingsOf(const NetworkAccount& account) {
    return {.address = account.address,
            .nick = account.nick,
            .account = account.account,
            .password = account.password,
            .password_in_the_clear = account.password_in_the_clear};
}

AccountKind kindOf(const Account& account) {
    return !account.network                                           ? AccountKind::local
           : account.network->address.dialect == irc::Dialect::twitch ? AccountKind::streaming
                                                                      : AccountKind::irc;
}

std::u16string signinOf(const NetworkAccount& account) {
    const irc::Address& address = account.address;
    if (address.dialect == irc::Dialect::irc) {
        return account.nick + u"@" + address.host;
    }
    const std::u16string name = !account.nick.empty()      ? account.nick
                                : address.channels.empty() ? u""
                                                           : address.channels.front();
    return name + u"@" + std::u16string(streaming_place);
}

NetworkRequest requestOf(const Account& account) {
    return {account.network.value_or(NetworkAccount()), !account.secret.empty(), account.remembered, account.automatic};
}

std::u16string_view nameOfNetwork(int network) {
    return network == NetworkFields::other_network ? View() : irc::presets.at(static_cast<std::size_t>(network)).name;
}

std::u16string_view hostOfNetwork(int network) {
    return network == NetworkFields::other_network ? View() : irc::presets.at(static_cast<std::size_t>(network)).host;
}

std::u16string signinOf(AccountKind kind, const NetworkFields& fields) {
    const auto wanted = accountOf(kind, fields);
    const auto* account = std::get_if<NetworkAccount>(&wanted);
    return account ? signinOf(*account) : std::u16string();
}

NetworkFields fieldsOf(const Account& account) {
    const NetworkAccount kept = account.network.value_or(NetworkAccount());
    const irc::Address& address = kept.address;
    NetworkFields fields{.network = NetworkFields::other_network,
                         .server = address.host,
                         .port = murmelix::toText(address.port),
                         .nick = kept.nick,
                         .account = kept.account,
                         .without_tls = !address.tls,
                         .password_in_the_clear = kept.password_in_the_clear,
                         .remember = account.remembered,
                         .automatic = account.automatic};
    for (int i = 0; i < NetworkFields::other_network; ++i) {
        const irc::Preset& preset = irc::presets.at(static_cast<std::size_t>(i));
        if (preset.host == address.host && fields.port == usualPort(fields.without_tls)) {
            fields.network = i;
        }
    }
    for (const std::u16string& channel : address.channels) {
        fields.channels += (fields.channels.empty() ? u"" : u", ") + channel;
    }
    return fields;
}

std::u16string portFor(bool without_tls, std::u16string_view shown) {
    return murmelix::trim(shown) == usualPort(!without_tls) || murmelix::trim(shown).empty() ? usualPort(without_tls)
                                                                                             : std::u16string(shown);
}

const Account* keptFor(AccountKind kind, const NetworkFields& fields, const Accounts& accounts) {
    const auto wanted = accountOf(kind, fields);
    const auto* account = std::get_if<NetworkAccount>(&wanted);
    const Account* known = account ? accounts.find(signinOf(*account)) : nullptr;
    // What is kept for one name and one server goes to no other.
    return known && known->network && !known->secret.empty() && known->network->account == account->account &&
                   known->network->address.host == account->address.host &&
                   known->network->address.port == account->address.port &&
                   known->network->address.tls == account->address.tls
               ? known
               : nullptr;
}

std::variant<NetworkRequest, FieldFault> requestOf(AccountKind kind, const NetworkFields& fields,
                                                   const Accounts& accounts) {
    auto wanted = accountOf(kind, fields);
    if (auto* wrong = std::get_if<FieldFault>(&wanted)) {
        return std::move(*wrong);
    }
    NetworkRequest request{.account = std::get<NetworkAccount>(std::move(wanted)),
                           .remember = fields.remember || fields.automatic,
                           .automatic = fields.automatic};
    const NetworkAccount& account = request.account;
    request.kept_password = account.password.empty() && keptFor(kind, fields, accounts) != nullptr;
    const bool has_password = request.kept_password || !account.password.empty();
    if (account.password.size() > longest_password ||
        std::any_of(account.password.begin(), account.password.end(), isControl)) {
        return fault(NetworkField::password, u"That cannot be a password.");
    }
    if (kind == AccountKind::streaming && has_password != !account.nick.empty()) {
        return has_password ? fault(NetworkField::nick, u"The token needs your name there, too.")
                            : fault(NetworkField::password, u"To write, your name there needs a token. Without both "
                                                            u"you read along.");
    }
    if (kind == AccountKind::irc && !account.account.empty() && !has_password) {
        return fault(NetworkField::password, u"Your account needs its password.");
    }
    if (has_password && !account.address.tls && !account.password_in_the_clear) {
        return fault(NetworkField::password,
                     u"Without encryption the password is not sent: tick that it may be, or leave it empty.");
    }
    return request;
}

std::u16string networkText(const NetworkAccount& account, std::string_view secret) {
    const auto field = [](View text) { return murmelix::fromUtf8(escaped(text)); };
    return field(irc::addressText(account.address)) + part + field(account.nick) + part + field(account.account) +
           part + (account.password_in_the_clear ? u"clear" : u"-") + part + hexOf(secret);
}

std::optional<KeptNetwork> networkOf(std::u16string_view text) {
    std::array<View, parts> fields;
    for (std::size_t i = 0; i + 1 < parts; ++i) {
        const std::size_t end = text.find(part);
        if (end == murmelix::npos) {
            return std::nullopt;
        }
        fields[i] = text.substr(0, end);
        text.remove_prefix(end + 1);
    }
    fields[parts - 1] = text;
    auto address = irc::parseAddress(unescaped(fields[0]));
    auto secret = bytesOf(fields[4]);
    if (!std::holds_alternative<irc::Address>(address) || !secret) {
        return std::nullopt;
    }
    KeptNetwork kept{{.address = std::get<irc::Address>(std::move(address)),
                      .nick = unescaped(fields[1]),
                      .account = unescaped(fields[2]),
                      .password_in_the_clear = fields[3] == u"clear"},
                     std::move(*secret)};
    const NetworkAccount& account = kept.account;
    const bool irc = account.address.dialect == irc::Dialect::irc;
    const bool named = irc ? isWord(account.nick) : isNameOfStreaming(account.nick);
    if (!named || account.nick.size() > longest_nick || account.account.size() > longest_account ||
        std::any_of(account.account.begin(), account.account.end(), isControl)) {
        return std::nullopt;
    }
    return kept;
}

} // namespace messenger_client
