#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// Holds other controls; with a border and a caption, or without (a panel).
class Frame : public Control {
  public:
    enum class Border { line, none };
    Frame(Control& parent, const std::u16string& caption, Border border = Border::line);
    // Its line and its caption are drawn in the colours of what is selected.
    bool Highlighted() const { return highlighted_; }
    void setHighlighted(bool highlighted);
    Accessible accessible() const override { return {border_ == Border::line ? Role::group : Role::pane, {}}; }

  private:
    Border border_;
    bool highlighted_ = false;
};

// Carried out by win32/frame.cpp.
namespace native {
Handle createFrame(Control& frame, Handle parent, const std::u16string& caption);
Handle createPanel(Control& frame, Handle parent, const std::u16string& caption);
} // namespace native

} // namespace murmelix::ui
