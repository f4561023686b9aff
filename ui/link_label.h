#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// A label that is clicked to go somewhere.
class LinkLabel : public Control {
  public:
    LinkLabel(Control& parent, const std::u16string& caption);
    bool takesFocus() const override { return true; }
    bool movesByArrows() const override { return true; }
    bool clickedByEnter() const override { return true; }
    Accessible accessible() const override { return {Role::link, u"Jump"}; }
};

// Carried out by win32/link_label.cpp.
namespace native {
Handle createLinkLabel(Control& link, Handle parent, const std::u16string& caption);
}

} // namespace murmelix::ui
