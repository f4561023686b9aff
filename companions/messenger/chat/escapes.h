// Text on one line of UTF-8: "\\", "\r", "\n", "\t" and "\uXXXX" (a UTF-16 unit) stand for what cannot be there itself.
#pragma once

#include <string>
#include <string_view>

namespace messenger_client {

// CR, LF, TAB, backslashes, other control characters and unpaired surrogates are escaped.
std::string escaped(std::u16string_view text);
// A backslash before anything else stands for itself.
std::u16string unescaped(std::u16string_view text);

} // namespace messenger_client
