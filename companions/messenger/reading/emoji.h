// Emoji of a text as what can be acted and said: those that a classic emoticon stands for become it, others their short
// names in brackets, or nothing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace messenger_client::reading {

enum class OtherEmoji { named, left_out };

struct EmojiReading {
    OtherEmoji others = OtherEmoji::named;
    // Of emoji that follow one another with nothing but blanks between. The same one in a row counts once.
    std::size_t most_in_row = 3;
};

// With blanks around what takes the place of an emoji, so that no sign beside it makes another emoticon of it.
std::u16string withoutEmoji(std::u16string_view text, const EmojiReading& reading = {});
// Units that one unit of a text can grow by.
inline constexpr std::size_t longest_emoji_name = 48;

// The units of the emoji that begins there, with its skin tone, selector, and what is joined to it; 0 where none does.
std::size_t emojiAt(std::u16string_view text, std::size_t at);
// Of one whole emoji; empty where there is none.
std::u16string_view emoticonOf(std::u16string_view emoji);
std::u16string nameOf(std::u16string_view emoji);

// Whether the text has an emoticon that characters act.
bool hasEmoticon(std::u16string_view text);

} // namespace messenger_client::reading
