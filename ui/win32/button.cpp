#include "ui/button.h"

#include "ui/win32/pressed.h"
#include "ui/win32/surface.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class ButtonWindow final : public PressedWindow {
  public:
    ButtonWindow(Control& button, HWND parent, const std::u16string& caption)
        : PressedWindow(button, BS_PUSHBUTTON, parent, caption) {}

    Size room() const override { return {scaled(24), scaled(12)}; }

    bool keeps(const Shortcut& key) const override { return key.key == Key::space; }

    void onDraw(const DRAWITEMSTRUCT& what) override {
        const auto& button = static_cast<const Button&>(control());
        if (!button.draw()) {
            return;
        }
        drawn_.impl().resize(what.rcItem.right - what.rcItem.left, what.rcItem.bottom - what.rcItem.top);
        button.draw()(drawn_, {(what.itemState & ODS_FOCUS) != 0, (what.itemState & ODS_SELECTED) != 0});
        drawn_.impl().copyTo(what.hDC, what.rcItem);
    }

    void setType(LONG_PTR type) {
        const LONG_PTR style = GetWindowLongPtrW(hwnd(), GWL_STYLE) & 0xFFFF & ~LONG_PTR{BS_TYPEMASK};
        SendMessageW(hwnd(), BM_SETSTYLE, static_cast<WPARAM>(style | type), TRUE);
    }

  private:
    Surface drawn_;
};

} // namespace

native::Handle native::createButton(Control& button, Handle parent, const std::u16string& caption) {
    return make<ButtonWindow>(button, parent, caption);
}

void native::setDefault(Handle button, bool is_default) {
    at<ButtonWindow>(button).setType(is_default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
}

void native::setOwnerDrawn(Handle button) {
    at<ButtonWindow>(button).setType(BS_OWNERDRAW);
}

} // namespace murmelix::ui
