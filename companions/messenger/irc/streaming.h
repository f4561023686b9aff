// The tags that the streaming chat puts before a line.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "companions/messenger/irc/event.h"
#include "companions/messenger/irc/line.h"

namespace messenger_client::irc {

// Emotes of a line: one for every fourth sign of the longest one.
inline constexpr std::size_t most_emotes = 125;

// "broadcaster/1,subscriber/12", and the tags "mod" and "subscriber".
Badges badgesOf(const Message& message);

// "25:0-4,12-16/1902:6-10", places in code points of `text`, as places in UTF-16 units. What is not in the text, and
// what overlaps another one, is left out.
std::vector<Emote> parseEmotes(std::string_view emotes, std::u16string_view text);

} // namespace messenger_client::irc
