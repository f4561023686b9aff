#include "ui/button.h"

#include <utility>

#include "ui/native.h"

namespace murmelix::ui {

Button::Button(Control& parent, const std::u16string& caption) : Control(parent, native::createButton, caption) {}

void Button::showDefault(bool is_default) {
    if (!draw_) {
        native::setDefault(handle_, is_default);
    }
}

void Button::setDraw(Draw draw) {
    draw_ = std::move(draw);
    native::setOwnerDrawn(handle_);
}

void Button::Redraw() {
    native::invalidate(handle_);
}

} // namespace murmelix::ui
