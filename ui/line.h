#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// Horizontal, to part what is above from what is below.
class Line : public Control {
  public:
    explicit Line(Control& parent);
    Accessible accessible() const override { return {Role::separator, {}}; }
    Size neededSize(int = 0) const override { return {0, 30}; }
};

// Carried out by win32/line.cpp.
namespace native {
Handle createLine(Control& line, Handle parent, const std::u16string& caption);
}

} // namespace murmelix::ui
