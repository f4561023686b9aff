#include "ui/check_box.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class CheckBoxWindow final : public ControlWindow {
  public:
    CheckBoxWindow(Control& box, HWND parent, const std::u16string& caption)
        : ControlWindow(box, {L"BUTTON", BS_CHECKBOX | BS_NOTIFY | WS_TABSTOP}, parent, caption) {}

    Size room() const override { return {scaled(24), scaled(4)}; }

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

} // namespace

native::Handle native::createCheckBox(Control& box, Handle parent, const std::u16string& caption) {
    return make<CheckBoxWindow>(box, parent, caption);
}

void native::setChecked(Handle box, bool checked) {
    SendMessageW(windowOf(box), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

} // namespace murmelix::ui
