// Where people chat, as one writes it: irc://server:port/channel,channel, ircs:// of the same form, twitch:channel.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace messenger_client::irc {

enum class Dialect { irc, twitch };

inline constexpr std::uint16_t plain_port = 6667, tls_port = 6697;
inline constexpr std::u16string_view twitch_host = u"irc.chat.twitch.tv";

// Channels that one is in at a time: as many as servers allow to somebody who is not known to them, five times over.
inline constexpr std::size_t most_channels = 100;
// UTF-16 units of a channel's name: servers know 64, the protocol 200 bytes.
inline constexpr std::size_t longest_channel = 200;

struct Address {
    Dialect dialect = Dialect::irc;
    std::u16string host = {};
    std::uint16_t port = tls_port;
    bool tls = true;
    std::vector<std::u16string> channels = {}; // with their sign, "#channel"
    bool operator==(const Address&) const = default;
};

// What is wrong, as a sentence for people.
using Fault = std::u16string;

// An address of irc may have no channel. In irc and ircs a channel's "#" may be missing; %XX stands for a byte.
std::variant<Address, Fault> parseAddress(std::u16string_view text);
// The same as text, which parseAddress takes.
std::u16string addressText(const Address& address);

// Channels as one types them into a field, parted by commas or blanks, with or without "#".
std::variant<std::vector<std::u16string>, Fault> parseChannels(std::u16string_view text, Dialect dialect);

struct Preset {
    std::u16string_view name, host;
    std::uint16_t port;
    Dialect dialect;
};
inline constexpr std::array<Preset, 3> presets{{
    {u"Libera.Chat", u"irc.libera.chat", tls_port, Dialect::irc},
    {u"OFTC", u"irc.oftc.net", tls_port, Dialect::irc},
    {u"Twitch", twitch_host, tls_port, Dialect::twitch},
}};

} // namespace messenger_client::irc
