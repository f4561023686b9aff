#include "ui/accessible.h"

namespace murmelix::ui {

std::u16string spoken(const std::u16string& caption, bool mnemonics) {
    std::u16string text;
    for (std::size_t at = 0; at < caption.size(); ++at) {
        if (mnemonics && caption[at] == u'&') {
            if (at + 1 < caption.size() && caption[at + 1] == u'&') {
                text += caption[++at];
            }
            continue;
        }
        text += caption[at];
    }
    while (!text.empty() && (text.back() == u' ' || text.back() == u':')) {
        text.pop_back();
    }
    return text;
}

} // namespace murmelix::ui
