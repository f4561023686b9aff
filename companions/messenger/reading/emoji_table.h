// Which emoji there are for reading, in tables to be searched once and kept.
#pragma once

#include <span>
#include <string_view>

namespace messenger_client::reading {

// Emoji stand without selectors and skin tones, people who do something as the neutral one. Lists are parted by blanks.
struct ActedEmoji {
    std::u16string_view emoticon;
    std::u16string_view emoji;
};
std::span<const ActedEmoji> actedEmoji();

// "🍕 pizza, 🍔 hamburger", in several such lists.
std::span<const std::u16string_view> namedEmoji();

// "DE Germany, FR France".
std::u16string_view countries();

} // namespace messenger_client::reading
