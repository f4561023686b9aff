#include "companions/agent/stage/file_address.h"

#include <algorithm>

#include "common/text.h"

namespace agent::stage {
namespace {

constexpr std::u16string_view scheme = u"file:";
constexpr char16_t undecodable = u'\uFFFD';

bool isSlash(char16_t unit) {
    return unit == u'/' || unit == u'\\';
}

// "C:" or "C|" at the start.
bool beginsWithDrive(std::u16string_view path) {
    const auto isLetter = [](char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; };
    return path.size() >= 2 && isLetter(path[0]) && (path[1] == u':' || path[1] == u'|');
}

int hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::u16string decoded(std::u16string_view text) {
    const std::string bytes = murmelix::toUtf8(text);
    std::string made;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const int high = bytes[at] == '%' && at + 2 < bytes.size() ? hexDigit(bytes[at + 1]) : -1;
        const int low = high >= 0 ? hexDigit(bytes[at + 2]) : -1;
        if (low >= 0) {
            made.push_back(static_cast<char>(high * 16 + low));
            at += 2;
        } else {
            made.push_back(bytes[at]);
        }
    }
    return murmelix::fromUtf8(made);
}

} // namespace

std::optional<std::u16string> pathOf(std::u16string_view address) {
    using murmelix::LetterCase;
    if (!murmelix::sameText(address.substr(0, scheme.size()), scheme, LetterCase::ignored)) {
        return std::u16string(address);
    }
    std::u16string_view rest = address.substr(scheme.size());
    std::u16string machine;
    if (rest.size() >= 2 && isSlash(rest[0]) && isSlash(rest[1])) {
        rest.remove_prefix(2);
        const auto end = static_cast<std::size_t>(std::ranges::find_if(rest, isSlash) - rest.begin());
        const std::u16string_view host = rest.substr(0, end);
        if (!beginsWithDrive(host)) {
            rest.remove_prefix(end);
            if (!host.empty() && !murmelix::sameText(host, u"localhost", LetterCase::ignored)) {
                machine = u"\\\\" + std::u16string(host);
            }
        }
    }
    std::u16string path = machine + decoded(rest);
    if (!path.empty() && isSlash(path[0]) && beginsWithDrive(std::u16string_view(path).substr(1))) {
        path.erase(0, 1);
    }
    if (beginsWithDrive(path)) {
        path[1] = u':';
    }
    if (path.find(u'\0') != std::u16string::npos || path.find(undecodable) != std::u16string::npos) {
        return std::nullopt;
    }
    std::ranges::replace(path, u'/', u'\\');
    return path;
}

} // namespace agent::stage
