#include "companions/messenger/irc/address.h"

#include <algorithm>
#include <optional>

#include "common/address.h"
#include "common/text.h"

namespace messenger_client::irc {

namespace {

using View = std::u16string_view;

constexpr View channel_signs = u"#&+!";
constexpr std::size_t longest_twitch_name = 25; // of an account there
constexpr std::size_t longest_address = 4096;   // a hundred channels

bool takePrefix(View& text, View prefix) {
    if (!murmelix::sameText(text.substr(0, prefix.size()), prefix, murmelix::LetterCase::ignored)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

int hexValue(char16_t digit) {
    const std::size_t place = View(u"0123456789abcdef").find(murmelix::toLower(digit));
    return place == murmelix::npos ? -1 : static_cast<int>(place);
}

// %XX stands for a byte of UTF-8; a lone % for itself.
std::u16string percentDecoded(View text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = text[at] == u'%' && at + 2 < text.size() ? hexValue(text[at + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[at + 2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high * 16 + low);
            at += 2;
        } else {
            const bool pair = text[at] >= 0xD800 && text[at] < 0xDC00;
            bytes += murmelix::toUtf8(text.substr(at, pair ? 2 : 1));
            at += pair ? 1 : 0;
        }
    }
    return murmelix::fromUtf8(bytes);
}

std::u16string percentEncoded(View channel) {
    std::u16string text;
    for (const char16_t unit : channel) {
        switch (unit) {
        case u'%':
            text += u"%25";
            break;
        case u'/':
            text += u"%2F";
            break;
        case u'?':
            text += u"%3F";
            break;
        default:
            text += unit;
        }
    }
    return text;
}

bool cannotBeInChannel(char16_t unit) {
    return unit <= u' ' || unit == u',' || unit == 0x7F;
}

bool isTwitchLetter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9') || unit == u'_';
}

struct Channel {
    std::u16string name;
};

std::variant<Channel, Fault> ircChannel(View name) {
    const bool has_sign = channel_signs.find(name.front()) != murmelix::npos;
    std::u16string channel = has_sign ? std::u16string(name) : u"#" + std::u16string(name);
    if (channel.size() > longest_channel) {
        return Fault(u"That is too long for a channel's name.");
    }
    if (channel.size() == 1 || std::any_of(channel.begin(), channel.end(), cannotBeInChannel)) {
        return Fault(u"A channel looks like #name, without blanks.");
    }
    return Channel{channel};
}

std::variant<Channel, Fault> twitchChannel(View name) {
    takePrefix(name, u"#");
    std::u16string channel = murmelix::toLower(name);
    if (channel.empty() || channel.size() > longest_twitch_name ||
        !std::all_of(channel.begin(), channel.end(), isTwitchLetter)) {
        return Fault(u"A channel of Twitch has the name of a user: letters, digits and _, at most 25 of them.");
    }
    return Channel{u"#" + channel};
}

// Adds the channels of `text`, parted by any of `separators`; a sentence where one is none.
std::optional<Fault> addChannels(std::vector<std::u16string>& channels, View text, View separators, Dialect dialect) {
    while (!text.empty()) {
        const View name = text.substr(0, text.find_first_of(separators));
        text.remove_prefix(std::min(name.size() + 1, text.size()));
        if (name.empty()) {
            continue;
        }
        auto channel = dialect == Dialect::twitch ? twitchChannel(name) : ircChannel(name);
        if (const Fault* fault = std::get_if<Fault>(&channel)) {
            return *fault;
        }
        const std::u16string& found = std::get<Channel>(channel).name;
        if (std::find(channels.begin(), channels.end(), found) == channels.end()) {
            channels.push_back(found);
        }
        if (channels.size() > most_channels) {
            return Fault(u"These are more channels than one can be in.");
        }
    }
    return std::nullopt;
}

std::variant<Address, Fault> ircAddress(View rest, bool tls) {
    Address address{.dialect = Dialect::irc, .port = tls ? tls_port : plain_port, .tls = tls};
    const View authority = rest.substr(0, rest.find(u'/'));
    rest.remove_prefix(std::min(authority.size() + 1, rest.size()));
    if (authority.find(u'@') != murmelix::npos) {
        return Fault(u"An address does not hold a name or a password: these have fields of their own.");
    }
    const std::size_t colon = authority.find(u':');
    address.host = murmelix::toLower(authority.substr(0, colon));
    if (!murmelix::isHost(address.host)) {
        return Fault(u"An address needs a server: irc://server/channel.");
    }
    if (colon != murmelix::npos) {
        if (!murmelix::isHost(authority)) {
            return Fault(u"A port is a number from 1 to 65535.");
        }
        address.port = static_cast<std::uint16_t>(murmelix::leadingNumber(authority.substr(colon + 1)));
    }
    if (auto fault =
            addChannels(address.channels, percentDecoded(rest.substr(0, rest.find(u'?'))), u",", Dialect::irc)) {
        return *fault;
    }
    return address;
}

std::variant<Address, Fault> twitchAddress(View rest) {
    takePrefix(rest, u"//");
    Address address{.dialect = Dialect::twitch, .host = std::u16string(twitch_host)};
    if (auto fault = addChannels(address.channels, rest, u",", Dialect::twitch)) {
        return *fault;
    }
    if (address.channels.empty()) {
        return Fault(u"Which channel? An address of Twitch looks like twitch:channel.");
    }
    return address;
}

} // namespace

std::variant<Address, Fault> parseAddress(std::u16string_view text) {
    text = murmelix::trim(text);
    if (text.size() > longest_address) {
        return Fault(u"That is too long for an address.");
    }
    if (takePrefix(text, u"ircs://")) {
        return ircAddress(text, true);
    }
    if (takePrefix(text, u"irc://")) {
        return ircAddress(text, false);
    }
    if (takePrefix(text, u"twitch:")) {
        return twitchAddress(text);
    }
    return Fault(u"An address looks like ircs://server/channel or twitch:channel.");
}

std::u16string addressText(const Address& address) {
    std::u16string text;
    if (address.dialect == Dialect::twitch) {
        text = u"twitch:";
    } else {
        text = (address.tls ? u"ircs://" : u"irc://") + address.host;
        if (address.port != (address.tls ? tls_port : plain_port)) {
            text += u":" + murmelix::toText(address.port);
        }
    }
    bool first = true;
    for (const std::u16string& channel : address.channels) {
        if (!first) {
            text += u',';
        } else if (address.dialect == Dialect::irc) {
            text += u'/';
        }
        first = false;
        text += address.dialect == Dialect::twitch ? channel.substr(1) : percentEncoded(channel);
    }
    return text;
}

std::variant<std::vector<std::u16string>, Fault> parseChannels(std::u16string_view text, Dialect dialect) {
    std::vector<std::u16string> channels;
    if (auto fault = addChannels(channels, text, u", ", dialect)) {
        return *fault;
    }
    return channels;
}

} // namespace messenger_client::irc
