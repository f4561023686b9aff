#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// A vertical one; values from 0 to Max.
class ScrollBar : public Control {
  public:
    explicit ScrollBar(Control& parent);
    Accessible accessible() const override { return {Role::scroll_bar, {}}; }
    std::u16string accessibleValue() const override; // in percent
    int Value() const { return value_; }
    int Max() const { return max_; }
    // Setting another value than the current one raises Change.
    void setValue(int value);
    // `page`: how far a click beside the thumb goes.
    void setRange(int max, int page);
    int page() const { return page_; }
    std::function<void()> Change;

  protected:
    std::u16string nameShown() const override { return u"Vertical"; }

  private:
    int value_ = 0, max_ = 0, page_ = 1;
};

// Carried out by win32/scroll_bar.cpp.
namespace native {
Handle createScrollBar(Control& bar, Handle parent, const std::u16string& caption);
void setScroll(Handle bar, int value, int max, int page);
} // namespace native

} // namespace murmelix::ui
