// Characters of UTF-16 text, as people count them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace messenger_client::reading {

// One code point and how many units it takes. An unpaired surrogate counts as one U+FFFD.
struct Character {
    char32_t code;
    std::size_t units;
};
// `at` lies in the text.
Character characterAt(std::u16string_view text, std::size_t at);
void append(std::u16string& text, char32_t code);

// Letters of every script, roughly: all that is neither sign, blank, mark nor picture.
bool isLetter(char32_t code);
bool isDigit(char32_t code); // 0 to 9
// Stands above or below the character before it, or joins it to the next one.
bool isMark(char32_t code);
// Blanks of every width.
bool isBlank(char32_t code);
// What nobody sees but what steers how text is shown: directions, tags, breaks.
bool isInvisible(char32_t code);

// Makes one picture of the two that it stands between.
inline constexpr char32_t joiner = 0x200D;
// Two of them are a flag.
constexpr bool isFlagLetter(char32_t code) {
    return code >= 0x1F1E6 && code <= 0x1F1FF;
}

// Where what people take for one character ends: with its marks, and with what is joined to it, up to so many code
// points: half as many again as any emoji has.
inline constexpr std::size_t most_in_cluster = 20;
std::size_t clusterEnd(std::u16string_view text, std::size_t at);

// On one line and safe to show and to say: line ends, control characters and blanks of every kind as one blank,
// invisible ones left out, unpaired surrogates as U+FFFD, at most most_marks marks on a character; trimmed.
inline constexpr std::size_t most_marks = 4; // more than any script needs; towers of them cost the screen and the voice
std::u16string tidied(std::u16string_view text);

} // namespace messenger_client::reading
