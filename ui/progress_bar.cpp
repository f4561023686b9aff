#include "ui/progress_bar.h"

#include <algorithm>

namespace murmelix::ui {

ProgressBar::ProgressBar(Control& parent) : Control(parent, native::createProgressBar, u"") {}

void ProgressBar::setMax(int max) {
    max_ = std::max(max, 1);
    value_ = std::min(value_, max_);
    native::setProgress(handle_, value_, max_);
}

void ProgressBar::setValue(int value) {
    value_ = std::clamp(value, 0, max_);
    native::setProgress(handle_, value_, max_);
}

} // namespace murmelix::ui
