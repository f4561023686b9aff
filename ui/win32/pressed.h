// What buttons and check boxes have in common.
#pragma once

#include "ui/win32/window.h"

namespace murmelix::ui::win32 {

class PressedWindow : public ControlWindow {
  public:
    PressedWindow(Control& control, DWORD type, HWND parent, const std::u16string& caption)
        : ControlWindow(control, {L"BUTTON", type | BS_NOTIFY | WS_TABSTOP}, parent, caption) {}

    void onCommand(UINT code) override {
        switch (code) {
        case BN_CLICKED:
        case BN_DOUBLECLICKED: // the second click of two quick ones counts as well
            return control().onClick();
        case BN_SETFOCUS:
            return control().onFocus();
        case BN_KILLFOCUS:
            return control().onFocusLost();
        default:
            return;
        }
    }
};

} // namespace murmelix::ui::win32
