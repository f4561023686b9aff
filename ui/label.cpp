#include "ui/label.h"

namespace murmelix::ui {

Label::Label(Control& parent, const std::u16string& caption) : Control(parent, native::createLabel, caption) {}

void Label::setHeading() {
    native::setHeading(handle_);
}

void Label::setCentered() {
    native::setCentered(handle_);
}

void Label::setEllipsis(Ellipsis where) {
    native::setEllipsis(handle_, where);
}

} // namespace murmelix::ui
