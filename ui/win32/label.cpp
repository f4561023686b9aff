#include "ui/label.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class LabelWindow final : public ControlWindow {
  public:
    LabelWindow(Control& label, HWND parent, const std::u16string& caption)
        : ControlWindow(label, {L"STATIC", SS_LEFT}, parent, caption) {}

    HFONT font() const override { return heading_ ? fonts().heading.get() : fonts().standard.get(); }

    void setHeading() {
        heading_ = true;
        restyle();
    }

    void setUseMnemonic() override {
        set(SS_NOPREFIX, control().UseMnemonic() ? 0 : SS_NOPREFIX);
        ControlWindow::setUseMnemonic();
    }

    // The bits of a mask in its style.
    void set(LONG_PTR mask, LONG_PTR bits) {
        SetWindowLongPtrW(hwnd(), GWL_STYLE, (GetWindowLongPtrW(hwnd(), GWL_STYLE) & ~mask) | bits);
    }

  private:
    bool heading_ = false;
};

} // namespace

native::Handle native::createLabel(Control& label, Handle parent, const std::u16string& caption) {
    return make<LabelWindow>(label, parent, caption);
}

void native::setHeading(Handle label) {
    at<LabelWindow>(label).setHeading();
}

void native::setCentered(Handle label) {
    at<LabelWindow>(label).set(SS_TYPEMASK, SS_CENTER);
}

void native::setEllipsis(Handle label, Label::Ellipsis where) {
    at<LabelWindow>(label).set(SS_ELLIPSISMASK, where == Label::Ellipsis::path ? SS_PATHELLIPSIS : SS_ENDELLIPSIS);
}

} // namespace murmelix::ui
