// Windows of the toolkit's own class, which draw themselves or hold others.
#pragma once

#include <vector>

#include "ui/win32/window.h"

namespace murmelix::ui::win32 {

// The procedure of windows of the toolkit's own classes.
LRESULT CALLBACK windowProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam);

// Once; those of the system that the toolkit uses are loaded with them.
void registerClasses();

class ChildWindow : public ControlWindow {
  public:
    ChildWindow(Control& control, HWND parent, const std::u16string& caption)
        : ControlWindow(control, {child_class, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT}, parent, caption) {}

    std::optional<LRESULT> onMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

  protected:
    // `part`: of the area, to be drawn anew.
    virtual void paint(HDC dc, const RECT& area, const RECT& part) = 0;
};

std::vector<HWND> allWindows();

} // namespace murmelix::ui::win32
