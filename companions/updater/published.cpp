#include "companions/updater/published.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace updater {

using murmelix::npos;

namespace {

constexpr std::size_t most_digits = 5;
constexpr int most_number = 65535;

std::optional<int> readNumber(std::string_view digits) {
    if (digits.empty() || digits.size() > most_digits) {
        return {};
    }
    int number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            return {};
        }
        number = number * 10 + (digit - '0');
    }
    return number <= most_number ? std::optional(number) : std::nullopt;
}

std::optional<Version> readVersion(std::string_view line) {
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool last = i + 1 == numbers.size();
        const std::size_t end = last ? line.size() : line.find('.');
        const auto number = readNumber(line.substr(0, end));
        if (end == std::string_view::npos || !number) {
            return {};
        }
        numbers[i] = *number;
        line.remove_prefix(last ? end : end + 1);
    }
    return Version{numbers[0], numbers[1], numbers[2]};
}

// Signs that show nothing themselves: controls, which end or break a text, and formats, which hide what is there or
// show it in another order. The joiners U+200C and U+200D are not among them, some scripts are not read without.
bool isHidden(char32_t code) {
    struct Range {
        char32_t first, last;
    };
    static constexpr std::array ranges{
        Range{0x0000, 0x001F},   Range{0x007F, 0x009F}, Range{0x00AD, 0x00AD}, Range{0x061C, 0x061C},
        Range{0x180E, 0x180E},   Range{0x200B, 0x200B}, Range{0x200E, 0x200F}, Range{0x2028, 0x202E},
        Range{0x2060, 0x206F},   Range{0xFEFF, 0xFEFF}, Range{0xFFF9, 0xFFFB}, Range{0xFFFE, 0xFFFF},
        Range{0xE0000, 0xE0FFF},
    };
    return std::ranges::any_of(ranges, [&](const Range& range) { return code >= range.first && code <= range.last; });
}

bool isFirstOfPair(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

// A line as it is shown: without hidden signs, and without blanks at its end.
std::u16string shown(std::u16string_view line) {
    std::u16string text;
    for (std::size_t at = 0; at < line.size();) {
        const bool pair = isFirstOfPair(line[at]) && at + 1 < line.size();
        const char32_t code = pair ? 0x10000 + ((line[at] - 0xD800u) << 10) + (line[at + 1] - 0xDC00u) : line[at];
        if (code == u'\t') {
            text += u' ';
        } else if (!isHidden(code)) {
            text += line.substr(at, pair ? 2 : 1);
        }
        at += pair ? 2 : 1;
    }
    text.resize(text.find_last_not_of(u' ') + 1);
    return text;
}

// The beginning of a text, no pair parted.
std::u16string_view beginning(std::u16string_view text, std::size_t units) {
    text = text.substr(0, units);
    if (!text.empty() && isFirstOfPair(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// Takes a row off a line: up to a blank where one is near enough.
std::u16string_view takeRow(std::u16string_view& line) {
    std::size_t word = line.find_first_not_of(u' ');
    if (word + 1 >= longest_row) { // a row of nothing else
        line.remove_prefix(word);
        word = 0;
    }
    std::u16string_view row = line;
    if (line.size() > longest_row) {
        const std::size_t blank = line.rfind(u' ', longest_row);
        row = beginning(line, blank != npos && blank > word ? blank : longest_row);
    }
    line.remove_prefix(row.size());
    line.remove_prefix(std::min(line.find_first_not_of(u' '), line.size()));
    return row.substr(0, row.find_last_not_of(u' ') + 1);
}

std::u16string readNews(std::u16string_view text) {
    std::u16string news;
    std::size_t rows = 0;
    bool parted = false; // by an empty line; several are one, and those at both ends none
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(u'\n'), text.size());
        const std::u16string line = shown(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty()) {
            parted = rows > 0;
        }
        for (std::u16string_view rest = line; !rest.empty(); parted = false) {
            const std::size_t more = parted ? 2 : 1;
            if (rows + more > most_rows) {
                return news + u'…';
            }
            news += rows == 0 ? u"" : parted ? u"\r\n\r\n" : u"\r\n";
            news += takeRow(rest);
            rows += more;
        }
    }
    return news;
}

} // namespace

std::optional<Published> readPublished(std::string_view bytes) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (bytes.size() > most_bytes) {
        return {};
    }
    if (bytes.starts_with(byte_order_mark)) {
        bytes.remove_prefix(byte_order_mark.size());
    }
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const auto version = readVersion(bytes.substr(0, end));
    if (!version) {
        return {};
    }
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return Published{*version, readNews(murmelix::fromUtf8(bytes))};
}

std::u16string versionText(const Version& version) {
    using murmelix::toText;
    return toText(version.major) + u"." + toText(version.minor) + u"." + toText(version.revision);
}

} // namespace updater
