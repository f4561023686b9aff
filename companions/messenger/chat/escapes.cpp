#include "companions/messenger/chat/escapes.h"

#include <array>
#include <cstdio>
#include <optional>

#include "common/text.h"

namespace messenger_client {

namespace {

bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

std::string asNumber(char16_t unit) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04X", static_cast<unsigned>(unit));
    return text.data();
}

std::optional<char16_t> hexUnit(std::u16string_view digits) {
    if (digits.size() != 4) {
        return std::nullopt;
    }
    unsigned value = 0;
    for (const char16_t digit : digits) {
        const std::size_t place = std::u16string_view(u"0123456789abcdef").find(murmelix::toLower(digit));
        if (place == murmelix::npos) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<unsigned>(place);
    }
    return static_cast<char16_t>(value);
}

} // namespace

std::string escaped(std::u16string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit == u'\\') {
            line += "\\\\";
        } else if (unit == u'\r') {
            line += "\\r";
        } else if (unit == u'\n') {
            line += "\\n";
        } else if (unit == u'\t') {
            line += "\\t";
        } else if (isHigh(unit) && i + 1 < text.size() && isLow(text[i + 1])) {
            line += murmelix::toUtf8(text.substr(i++, 2));
        } else if (unit < u' ' || unit == 0x7F || isHigh(unit) || isLow(unit)) {
            line += asNumber(unit);
        } else {
            line += murmelix::toUtf8(text.substr(i, 1));
        }
    }
    return line;
}

std::u16string unescaped(std::u16string_view text) {
    std::u16string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t next = text[i] == u'\\' && i + 1 < text.size() ? text[i + 1] : u'\0';
        const std::size_t place = std::u16string_view(u"\\rnt").find(next);
        if (next != u'\0' && place != murmelix::npos) {
            plain += u"\\\r\n\t"[place];
            ++i;
        } else if (const auto unit = next == u'u' ? hexUnit(text.substr(i + 2, 4)) : std::nullopt) {
            plain += *unit;
            i += 5;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace messenger_client
