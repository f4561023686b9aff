#include "common/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "common/letter_cases.h"

namespace murmelix {

namespace {

bool isSurrogate(char32_t code) {
    return code >= 0xD800 && code <= 0xDFFF;
}

// Length of the sequence that a lead byte announces and its payload bits; 0 for a byte that cannot lead.
struct Lead {
    std::size_t length;
    char32_t bits;
    char32_t least;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80) {
        return {1, byte, 0};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {2, byte & 0x1Fu, 0x80};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {3, byte & 0x0Fu, 0x800};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {4, byte & 0x07u, 0x10000};
    }
    return {0, 0, 0};
}

void appendUtf16(std::u16string& text, char32_t code) {
    if (code < 0x10000) {
        text.push_back(static_cast<char16_t>(code));
        return;
    }
    code -= 0x10000;
    text.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
}

void appendUtf8(std::string& bytes, char32_t code) {
    auto put = [&](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

// How far each letter is from its other case, by pages of 256 units; a page without any is the first one.
class CaseTable {
  public:
    constexpr CaseTable(bool to_lower) {
        std::size_t used = 1;
        for (const LetterCaseRun& run : letter_case_runs) {
            for (std::int32_t upper = run.first; upper <= run.last; upper += run.step) {
                const std::int32_t lower = upper + run.distance, unit = to_lower ? upper : lower;
                std::uint8_t& page = page_of_[static_cast<std::size_t>(unit >> 8)];
                if (page == 0) {
                    page = static_cast<std::uint8_t>(used++);
                }
                pages_.at(page).at(static_cast<std::size_t>(unit & 0xFF)) =
                    static_cast<std::uint16_t>(to_lower ? run.distance : -run.distance);
            }
        }
    }

    constexpr char16_t operator()(char16_t unit) const {
        return static_cast<char16_t>(unit + pages_[page_of_[unit >> 8]][unit & 0xFF]);
    }

  private:
    static constexpr std::size_t most_pages = 24; // more than have letters of two cases; else this does not compile

    std::array<std::uint8_t, 256> page_of_{};
    std::array<std::array<std::uint16_t, 256>, most_pages> pages_{}; // distances modulo 65536
};

constexpr CaseTable lower_case(true), upper_case(false);

// Folded texts longer than this are sought without ever going back in the text, so that no pair of texts takes longer
// than the sum of their lengths.
constexpr std::size_t short_text = 16;

std::size_t findLongFolded(std::u16string_view text, std::u16string_view wanted, std::size_t from) {
    // border[n]: length of the longest proper start of wanted's first n units that is also their end.
    std::vector<std::size_t> border(wanted.size() + 1, 0);
    for (std::size_t at = 1, matched = 0; at < wanted.size(); ++at) {
        while (matched > 0 && toLower(wanted[at]) != toLower(wanted[matched])) {
            matched = border[matched];
        }
        if (toLower(wanted[at]) == toLower(wanted[matched])) {
            ++matched;
        }
        border[at + 1] = matched;
    }
    for (std::size_t at = from, matched = 0; at < text.size(); ++at) {
        while (matched > 0 && toLower(text[at]) != toLower(wanted[matched])) {
            matched = border[matched];
        }
        if (toLower(text[at]) == toLower(wanted[matched])) {
            ++matched;
        }
        if (matched == wanted.size()) {
            return at + 1 - wanted.size();
        }
    }
    return npos;
}

} // namespace

std::u16string fromUtf8(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const Lead lead = leadOf(static_cast<unsigned char>(bytes[at]));
        char32_t code = lead.bits;
        std::size_t read = 1;
        while (read < lead.length && at + read < bytes.size()) {
            const auto byte = static_cast<unsigned char>(bytes[at + read]);
            if ((byte & 0xC0) != 0x80) {
                break;
            }
            code = (code << 6) | (byte & 0x3F);
            ++read;
        }
        if (lead.length == 0 || read < lead.length || code < lead.least || code > 0x10FFFF || isSurrogate(code)) {
            text.push_back(u'\uFFFD');
            ++at;
        } else {
            appendUtf16(text, code);
            at += lead.length;
        }
    }
    return text;
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t code = text[at];
        if (code >= 0xD800 && code <= 0xDBFF && at + 1 < text.size() && text[at + 1] >= 0xDC00 &&
            text[at + 1] <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[at + 1] - 0xDC00u);
            ++at;
        } else if (isSurrogate(code)) {
            code = 0xFFFD;
        }
        appendUtf8(bytes, code);
    }
    return bytes;
}

char16_t toLower(char16_t unit) {
    return lower_case(unit);
}

char16_t toUpper(char16_t unit) {
    return upper_case(unit);
}

std::u16string toLower(std::u16string_view text) {
    std::u16string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char16_t unit) { return toLower(unit); });
    return lower;
}

std::size_t find(std::u16string_view text, std::u16string_view wanted, std::size_t from, LetterCase letter_case) {
    if (letter_case == LetterCase::matters) {
        return text.find(wanted, from);
    }
    if (from > text.size() || wanted.size() > text.size() - from) {
        return npos;
    }
    if (wanted.empty()) {
        return from;
    }
    if (wanted.size() > short_text) {
        return findLongFolded(text, wanted, from);
    }
    const char16_t first = toLower(wanted.front());
    for (std::size_t at = from; at <= text.size() - wanted.size(); ++at) {
        if (toLower(text[at]) != first) {
            continue;
        }
        std::size_t same = 1;
        while (same < wanted.size() && toLower(text[at + same]) == toLower(wanted[same])) {
            ++same;
        }
        if (same == wanted.size()) {
            return at;
        }
    }
    return npos;
}

bool sameText(std::u16string_view a, std::u16string_view b, LetterCase letter_case) {
    if (letter_case == LetterCase::matters) {
        return a == b;
    }
    return a.size() == b.size() && find(a, b, 0, letter_case) == 0;
}

std::u16string replaceAll(std::u16string_view text, std::u16string_view wanted, std::u16string_view replacement,
                          LetterCase letter_case) {
    std::u16string result;
    result.reserve(text.size());
    std::size_t done = 0;
    if (!wanted.empty()) {
        for (std::size_t at = find(text, wanted, 0, letter_case); at != npos;
             at = find(text, wanted, done, letter_case)) {
            result.append(text, done, at - done).append(replacement);
            done = at + wanted.size();
        }
    }
    return result.append(text, done);
}

std::u16string_view trim(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::u16string RemoveBracketedText(std::u16string_view text) {
    std::u16string result;
    std::size_t copied = 0;
    for (;;) {
        const std::size_t open = text.find(u'(', copied);
        const std::size_t close = text.find(u')', open);
        if (open == npos || close == npos) {
            break;
        }
        result.append(text, copied, open - copied);
        copied = close + 1;
    }
    result.append(text, copied);
    return copied == 0 ? result : std::u16string(trim(result));
}

std::u16string toProperCase(std::u16string_view text) {
    std::u16string result(text);
    bool at_start = true;
    for (char16_t& unit : result) {
        const bool separator = unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == u'\0';
        unit = at_start ? toUpper(unit) : toLower(unit);
        at_start = separator;
    }
    return result;
}

std::u16string toText(long long number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

double leadingNumber(std::u16string_view text) {
    std::string number;
    for (const char16_t unit : text) {
        const bool blank = unit == u' ' || unit == u'\t' || unit == u'\n';
        if (blank) {
            continue;
        }
        const bool part = (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' || unit == u'.' ||
                          unit == u'e' || unit == u'E';
        if (!part || number.size() > 400) {
            break;
        }
        number.push_back(static_cast<char>(unit));
    }
    return std::strtod(number.c_str(), nullptr);
}

std::int16_t toInt16(double value) {
    return static_cast<std::int16_t>(std::nearbyint(std::clamp(value, -32768.0, 32767.0)));
}

} // namespace murmelix
