#include "common/address.h"

#include <algorithm>

#include "common/text.h"

namespace murmelix {

namespace {

constexpr std::size_t longest_name = 253, longest_label = 63;
constexpr std::size_t longest_web_address = 2048; // what the shell opens is no longer

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

// As an address has them everywhere behind its host, but for the "#" before a fragment.
bool isPathSign(char16_t unit) {
    return unit > u' ' && unit < u'\x7F' && std::u16string_view(u"\"#<>\\^`{|}").find(unit) == npos;
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

std::optional<WebAddress> webAddress(std::u16string_view text) {
    constexpr std::u16string_view plain = u"http://", secure = u"https://";
    if (text.size() > longest_web_address) {
        return {};
    }
    WebAddress address;
    address.secure = find(text, secure, 0, LetterCase::ignored) == 0;
    if (!address.secure && find(text, plain, 0, LetterCase::ignored) != 0) {
        return {};
    }
    text.remove_prefix(address.secure ? secure.size() : plain.size());
    const std::size_t path = std::min(text.find_first_of(u"/?"), text.size());
    const auto host = text.substr(0, path);
    if (!isHost(host) || !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(path), text.end(), isPathSign)) {
        return {};
    }
    const std::size_t colon = host.find(u':');
    address.host = host.substr(0, colon);
    address.port = address.secure ? 443 : 80;
    if (colon != npos) {
        address.port = static_cast<std::uint16_t>(leadingNumber(host.substr(colon + 1)));
    }
    address.path = text.substr(path);
    if (!address.path.starts_with(u'/')) {
        address.path.insert(0, u"/");
    }
    return address;
}

} // namespace murmelix
