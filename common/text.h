// Text as the programs hold it: UTF-16, positions and lengths in UTF-16 units, and what is done to it everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace murmelix {

inline constexpr std::size_t npos = std::u16string_view::npos;

enum class LetterCase { matters, ignored };

// UTF-8 to UTF-16; every byte that is not part of a well-formed sequence becomes one U+FFFD.
std::u16string fromUtf8(std::string_view bytes);

// UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

// One unit in lower or upper case, the same on every system: letters whose other case is one unit as well and leads
// back to them (see make_letter_cases.py); others unchanged.
char16_t toLower(char16_t unit);
char16_t toUpper(char16_t unit);
std::u16string toLower(std::u16string_view text);

// Position (from 0) of the first `wanted` in `text` at or after `from`, or npos. An empty `wanted` is found at `from`
// where `from` is not behind the end.
std::size_t find(std::u16string_view text, std::u16string_view wanted, std::size_t from, LetterCase letter_case);
bool sameText(std::u16string_view a, std::u16string_view b, LetterCase letter_case);

// Every occurrence of `wanted` (from the left, not overlapping) replaced; an empty `wanted` changes nothing.
std::u16string replaceAll(std::u16string_view text, std::u16string_view wanted, std::u16string_view replacement,
                          LetterCase letter_case = LetterCase::matters);

// Blanks (U+0020 alone) cut from both ends.
std::u16string_view trim(std::u16string_view text);

// Every "(...)" group removed, the rest trimmed where there was one.
std::u16string RemoveBracketedText(std::u16string_view text);

// First letter of each word in upper case, all others in lower case. Words are parted by blanks, tabs, line ends (LF,
// VT, FF, CR) and NUL.
std::u16string toProperCase(std::u16string_view text);

// Decimal form of a whole number.
std::u16string toText(long long number);

// Value of the number at the start of the text (leading blanks skipped, sign, digits, fraction, exponent); 0 without.
double leadingNumber(std::u16string_view text);

// Rounded to the nearest 16-bit number, halves to even; the least or greatest one where the value lies beyond.
std::int16_t toInt16(double value);

} // namespace murmelix
