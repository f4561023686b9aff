#include "ui/check_box.h"

#include "ui/win32/pressed.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class CheckBoxWindow final : public PressedWindow {
  public:
    CheckBoxWindow(Control& box, HWND parent, const std::u16string& caption)
        : PressedWindow(box, BS_CHECKBOX, parent, caption) {}

    Size room() const override { return {scaled(24), scaled(4)}; }
};

} // namespace

native::Handle native::createCheckBox(Control& box, Handle parent, const std::u16string& caption) {
    return make<CheckBoxWindow>(box, parent, caption);
}

void native::setChecked(Handle box, bool checked) {
    SendMessageW(windowOf(box), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

} // namespace murmelix::ui
