// What drop-down lists and combo boxes have in common.
#pragma once

#include <string>
#include <vector>

#include "ui/win32/window.h"

#include <commctrl.h>

namespace murmelix::ui::win32 {

class DropDownWindow : public ControlWindow {
  public:
    DropDownWindow(Control& list, DWORD style, HWND parent, const std::u16string& caption)
        : ControlWindow(list, {L"COMBOBOX", style | WS_VSCROLL | WS_TABSTOP}, parent, caption) {
        SendMessageW(hwnd(), CB_SETMINVISIBLE, 12, 0);
    }

    // The closed one is as high as the row of its choice, and a border that no resolution widens.
    Size room() const override {
        const auto row = static_cast<int>(SendMessageW(hwnd(), CB_GETITEMHEIGHT, static_cast<WPARAM>(-1), 0));
        return {scaled(28), row + 6 - lineHeight(font())};
    }

    // The height is that of its list; the closed one's follows the font.
    int heightFor(int) const override { return scaled(200); }

    // An open list is closed and moved in by keys that mean something else otherwise.
    bool keeps(const Shortcut& key) const override {
        const bool opens = key.shift == 0 || key.key == Key::up || key.key == Key::down;
        return key.key != Key::tab && opens && SendMessageW(hwnd(), CB_GETDROPPEDSTATE, 0, 0) != 0;
    }

    void onCommand(UINT code) override {
        switch (code) {
        case CBN_DROPDOWN:
            chosen_ = false;
            return;
        case CBN_SELENDOK:
            chosen_ = true;
            return;
        case CBN_CLOSEUP:
            if (std::exchange(chosen_, false)) {
                chosen();
            }
            return;
        case CBN_SELCHANGE:
            return picked(static_cast<int>(SendMessageW(hwnd(), CB_GETCURSEL, 0, 0)));
        case CBN_SETFOCUS:
            return control().onFocus();
        case CBN_KILLFOCUS:
            return control().onFocusLost();
        default:
            return;
        }
    }

    void setItems(const std::vector<std::u16string>& items);

  protected:
    virtual void picked(int index) = 0;
    virtual void chosen() {}

  private:
    bool chosen_ = false; // before the list closes
};

} // namespace murmelix::ui::win32
