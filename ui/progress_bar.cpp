#include "ui/progress_bar.h"

#include <algorithm>

#include "common/text.h"

namespace murmelix::ui {

ProgressBar::ProgressBar(Control& parent) : Control(parent, native::createProgressBar, u"") {}

void ProgressBar::setMax(int max) {
    max_ = std::max(max, 1);
    value_ = std::min(value_, max_);
    native::setProgress(handle_, value_, max_);
    tell(AccessibleEvent::value);
}

void ProgressBar::setValue(int value) {
    value_ = std::clamp(value, 0, max_);
    native::setProgress(handle_, value_, max_);
}

std::u16string ProgressBar::accessibleValue() const {
    return toText(max_ == 0 ? 0 : 100 * static_cast<long long>(value_) / max_) + u"%";
}

} // namespace murmelix::ui
