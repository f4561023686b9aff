#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// How much of something is done: Value of Max steps.
class ProgressBar : public Control {
  public:
    explicit ProgressBar(Control& parent);
    Size neededSize(int = 0) const override { return {0, 240}; }
    Accessible accessible() const override { return {Role::progress_bar, {}}; }
    std::u16string accessibleValue() const override; // in percent
    int Value() const { return value_; }
    int Max() const { return max_; }
    void setMax(int max);
    void setValue(int value);

  private:
    int value_ = 0, max_ = 1;
};

// Carried out by win32/progress_bar.cpp.
namespace native {
Handle createProgressBar(Control& bar, Handle parent, const std::u16string& caption);
void setProgress(Handle bar, int value, int max);
} // namespace native

} // namespace murmelix::ui
