// When two names of a server are the same.
#pragma once

#include <string>
#include <string_view>

namespace messenger_client::irc {

// As servers name them in CASEMAPPING: letters from A to Z alone, or also []\~ as the capitals of {}|^, or these
// without ~.
enum class CaseMapping { ascii, rfc1459, strict_rfc1459 };

inline char folded(char byte, CaseMapping mapping) {
    const bool letter = byte >= 'A' && byte <= 'Z';
    const bool sign = mapping != CaseMapping::ascii && byte >= '[' && byte <= ']';
    if (letter || sign) {
        return static_cast<char>(byte + ('a' - 'A'));
    }
    return byte == '~' && mapping == CaseMapping::rfc1459 ? '^' : byte;
}

// The same for all ways to write a name.
inline std::string folded(std::string_view name, CaseMapping mapping) {
    std::string key(name);
    for (char& byte : key) {
        byte = folded(byte, mapping);
    }
    return key;
}

} // namespace messenger_client::irc
