// What people write: bytes of a line into text that can be shown anywhere, and text into lines that reach others whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace messenger_client::irc {

// UTF-8, and every byte that is none as Windows-1252.
std::u16string decoded(std::string_view bytes);

// Text without formatting codes, control characters and marks that turn the direction of writing; a tab or a line's end
// becomes a blank. `places` (ascending positions in `text`) become those of the same characters in the result.
std::u16string plainText(std::u16string_view text, std::vector<std::size_t>* places = nullptr);

// A name of at most `longest` UTF-16 units on one line. What cannot be shown, and marks that turn the direction of
// writing, become U+FFFD: a name that holds them does not look like another one's.
std::u16string plainName(std::string_view bytes, std::size_t longest);

// A request of a program inside a message: "\x01COMMAND argument\x01". The last mark may be missing.
struct Request {
    std::string_view command, argument;
};
std::optional<Request> requestIn(std::string_view bytes);

// Text as one or more pieces of UTF-8, each of at most `most_bytes` (at least 16): cut at line ends, else at a blank,
// else between characters, not before what belongs to the character before. Empty lines are left out.
std::vector<std::string> piecesOf(std::u16string_view text, std::size_t most_bytes);

// What there is room for in one line; empty where there is nothing to say.
std::string firstPieceOf(std::u16string_view text, std::size_t most_bytes);

} // namespace messenger_client::irc
