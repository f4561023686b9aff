#pragma once

#include "ui/control.h"

namespace murmelix::ui {

class Label : public Control {
  public:
    Label(Control& parent, const std::u16string& caption);
    void setHeading(); // in bold
    void setCentered();
    // One line, with an ellipsis where it does not fit: at its end, or in the middle of a path.
    enum class Ellipsis { end, path };
    void setEllipsis(Ellipsis where);
    // It tells what has happened: a screen reader reads it out when it changes.
    void setTellsNews() { tells_news_ = true; }
    bool tellsNews() const { return tells_news_; }
    Accessible accessible() const override { return {Role::label, {}}; }

  protected:
    void captionChanged() override { tell(tells_news_ ? AccessibleEvent::news : AccessibleEvent::name); }

  private:
    bool tells_news_ = false;
};

// Carried out by win32/label.cpp.
namespace native {
Handle createLabel(Control& label, Handle parent, const std::u16string& caption);
void setHeading(Handle label);
void setCentered(Handle label);
void setEllipsis(Handle label, Label::Ellipsis where);
} // namespace native

} // namespace murmelix::ui
