// Pieces of a line.
#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace messenger_client::irc {

// Cuts what is before the first `separator` from the front, and the separator.
inline std::string_view take(std::string_view& rest, char separator) {
    const std::string_view piece = rest.substr(0, rest.find(separator));
    rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
    return piece;
}

// Cuts a word and the blanks before it from the front; an empty one where there is none.
inline std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
}

// The number that the whole of the text is; nothing where it is none, or none of this type.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [read, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && read == end ? std::optional(number) : std::nullopt;
}

} // namespace messenger_client::irc
