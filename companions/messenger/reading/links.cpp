#include "companions/messenger/reading/links.h"

#include <algorithm>

#include "common/text.h"
#include "companions/messenger/reading/characters.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;
using murmelix::LetterCase;
using murmelix::npos;
using murmelix::sameText;

constexpr std::size_t longest_scheme = 12;
constexpr View www = u"www.";

bool begins(View text, View beginning) {
    return sameText(text.substr(0, beginning.size()), beginning, LetterCase::ignored);
}

// Behind "scheme://", or at "www."; npos where no link begins there.
std::size_t linkStart(View text, std::size_t at) {
    if (begins(text.substr(at), www)) {
        return at;
    }
    std::size_t end = at;
    while (end < text.size() && end - at <= longest_scheme && text[end] < 0x80 &&
           (isLetter(text[end]) || isDigit(text[end]) ||
            (end > at && (text[end] == u'+' || text[end] == u'-' || text[end] == u'.')))) {
        ++end;
    }
    return end > at && isLetter(text[at]) && text.substr(end, 3) == u"://" ? end + 3 : npos;
}

// Signs that end a sentence or a bracket rather than a link.
View withoutTail(View link) {
    while (!link.empty()) {
        const char16_t last = link.back();
        const bool closes = last == u')' && std::ranges::count(link, u')') > std::ranges::count(link, u'(');
        if (!closes && View(u".,;:!?'\"]}>*_~…»”’").find(last) == npos) {
            break;
        }
        link.remove_suffix(1);
    }
    return link;
}

} // namespace

std::vector<Range> linksIn(std::u16string_view text) {
    std::vector<Range> links;
    for (std::size_t at = 0; at < text.size();) {
        const bool word_begins = at == 0 || !(isLetter(text[at - 1]) || isDigit(text[at - 1]));
        const std::size_t start = word_begins ? linkStart(text, at) : npos;
        if (start == npos) {
            ++at;
            continue;
        }
        const std::size_t end = std::min(text.find_first_of(u" <>\"\r\n", start), text.size());
        const std::size_t length = withoutTail(text.substr(at, end - at)).size();
        if (length <= (start > at ? start - at : www.size())) {
            ++at;
            continue;
        }
        links.push_back({at, at + length});
        at += length;
    }
    return links;
}

bool isWebLink(std::u16string_view link) {
    return begins(link, u"http://") || begins(link, u"https://") || begins(link, www);
}

} // namespace messenger_client::reading
