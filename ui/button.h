#pragma once

#include "ui/control.h"
#include "ui/surface.h"

namespace murmelix::ui {

class Button : public Control {
  public:
    Button(Control& parent, const std::u16string& caption);
    bool takesFocus() const override { return true; }
    bool movesByArrows() const override { return true; }
    bool clickedByEnter() const override { return true; }
    bool canBeDefault() const override { return true; }
    Accessible accessible() const override { return {Role::button, u"Press"}; }
    void showDefault(bool is_default) override;

    struct Looks {
        bool focused, pressed;
    };
    using Draw = std::function<void(Surface& surface, const Looks& looks)>;
    // Has it drawn by its owner, who fills the whole surface, instead of by the system.
    void setDraw(Draw draw);
    const Draw& draw() const { return draw_; }
    void Redraw();

  private:
    Draw draw_;
};

// Carried out by win32/button.cpp.
namespace native {
Handle createButton(Control& button, Handle parent, const std::u16string& caption);
void setDefault(Handle button, bool is_default);
void setOwnerDrawn(Handle button);
} // namespace native

} // namespace murmelix::ui
