#include "ui/scroll_bar.h"

#include <algorithm>

#include "common/text.h"

namespace murmelix::ui {

ScrollBar::ScrollBar(Control& parent) : Control(parent, native::createScrollBar, u"") {}

void ScrollBar::setValue(int value) {
    const int wanted = std::clamp(value, 0, max_);
    if (wanted == value_) {
        return;
    }
    value_ = wanted;
    native::setScroll(handle_, value_, max_, page_);
    raise(Change);
}

void ScrollBar::setRange(int max, int page) {
    const int old = value_;
    max_ = std::max(max, 0);
    page_ = std::max(page, 1);
    value_ = std::min(value_, max_);
    native::setScroll(handle_, value_, max_, page_);
    if (value_ != old) {
        raise(Change);
    }
}

std::u16string ScrollBar::accessibleValue() const {
    return toText(max_ == 0 ? 0 : 100 * static_cast<long long>(value_) / max_) + u"%";
}

} // namespace murmelix::ui
