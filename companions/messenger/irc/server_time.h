// The times that servers tell.
#pragma once

#include <optional>
#include <string_view>

namespace messenger_client::irc {

class Message;

// Milliseconds since 1970 of "2026-11-21T18:00:00.000Z"; nothing where it is not of this form.
std::optional<long long> parseServerTime(std::string_view text);

// When a line was said: its tag "time", or that of the streaming chat, "tmi-sent-ts".
std::optional<long long> timeOf(const Message& message);

} // namespace messenger_client::irc
