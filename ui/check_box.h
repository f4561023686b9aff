#pragma once

#include "ui/control.h"

namespace murmelix::ui {

class CheckBox : public Control {
  public:
    CheckBox(Control& parent, const std::u16string& caption);
    bool takesFocus() const override { return true; }
    bool movesByArrows() const override { return true; }
    Accessible accessible() const override {
        return {Role::check_box, value_ == 0 ? u"Check" : u"Uncheck", value_ != 0};
    }
    // 0 or 1. Setting another value than the current one raises Click.
    std::int16_t Value() const { return value_; }
    void setValue(std::int16_t value);
    void onClick() override { setValue(value_ == 0 ? 1 : 0); }

  private:
    std::int16_t value_ = 0;
};

// Carried out by win32/check_box.cpp.
namespace native {
Handle createCheckBox(Control& box, Handle parent, const std::u16string& caption);
void setChecked(Handle box, bool checked);
} // namespace native

} // namespace murmelix::ui
