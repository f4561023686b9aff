#include "ui/text_box.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class TextBoxWindow final : public ControlWindow {
  public:
    TextBoxWindow(Control& box, HWND parent, const std::u16string& text)
        : ControlWindow(box, {L"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE}, parent, text) {}

    // The system shows the text at the top of the inside: more height than the border takes would show it too high.
    Size room() const override { return {scaled(12), 2 * GetSystemMetrics(SM_CYEDGE) + 3}; }

    void onCommand(UINT code) override {
        switch (code) {
        case EN_CHANGE:
            if (!being_set_) {
                static_cast<TextBox&>(control()).onText(textOf(hwnd()));
            }
            return;
        case EN_SETFOCUS:
            return control().onFocus();
        case EN_KILLFOCUS:
            return control().onFocusLost();
        default:
            return;
        }
    }

    // What the system makes of a text set by the program is no input.
    void setCaption(const std::u16string& caption) override {
        being_set_ = true;
        ControlWindow::setCaption(caption);
        being_set_ = false;
    }

  private:
    bool being_set_ = false;
};

} // namespace

native::Handle native::createTextBox(Control& box, Handle parent, const std::u16string& text) {
    return make<TextBoxWindow>(box, parent, text);
}

void native::selectAll(Handle box) {
    SendMessageW(windowOf(box), EM_SETSEL, 0, -1);
}

} // namespace murmelix::ui
