#include "ui/check_box.h"

namespace murmelix::ui {

CheckBox::CheckBox(Control& parent, const std::u16string& caption) : Control(parent, native::createCheckBox, caption) {}

void CheckBox::setValue(std::int16_t value) {
    const std::int16_t wanted = value != 0 ? 1 : 0;
    if (wanted == value_) {
        return;
    }
    value_ = wanted;
    native::setChecked(handle_, wanted != 0);
    raise(Click);
}

} // namespace murmelix::ui
