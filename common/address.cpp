#include "common/address.h"

#include <algorithm>

#include "common/text.h"

namespace murmelix {

namespace {

constexpr std::size_t longest_name = 253, longest_label = 63;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isLetterOrDigit(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

bool isLabel(std::u16string_view label) {
    return !label.empty() && label.size() <= longest_label && label.front() != u'-' && label.back() != u'-' &&
           std::all_of(label.begin(), label.end(), [](char16_t unit) { return isLetterOrDigit(unit) || unit == u'-'; });
}

bool isName(std::u16string_view name) {
    if (name.size() > longest_name) {
        return false;
    }
    for (std::size_t dot; (dot = name.find(u'.')) != npos; name.remove_prefix(dot + 1)) {
        if (!isLabel(name.substr(0, dot))) {
            return false;
        }
    }
    return isLabel(name);
}

bool isPort(std::u16string_view port) {
    return !port.empty() && port.size() <= 5 && std::all_of(port.begin(), port.end(), isDigit) &&
           leadingNumber(port) >= 1 && leadingNumber(port) <= 65535;
}

} // namespace

bool isHost(std::u16string_view text) {
    const std::size_t colon = text.find(u':');
    return isName(text.substr(0, colon)) && (colon == npos || isPort(text.substr(colon + 1)));
}

bool isMailAddress(std::u16string_view text) {
    const std::size_t at = text.find(u'@');
    if (at == npos || at == 0 || at > 64) {
        return false;
    }
    const auto local = text.substr(0, at);
    return std::all_of(local.begin(), local.end(),
                       [](char16_t unit) {
                           return isLetterOrDigit(unit) || std::u16string_view(u"._+-").find(unit) != npos;
                       }) &&
           isName(text.substr(at + 1));
}

} // namespace murmelix
