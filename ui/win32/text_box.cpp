#include "ui/text_box.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

constexpr WPARAM dot = 0x25CF; // U+25CF BLACK CIRCLE

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

    // The system selects a word by a double click; whoever listens hears of it after that.
    LRESULT onSystemMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        const LRESULT result = ControlWindow::onSystemMessage(message, wparam, lparam);
        if (message == WM_LBUTTONDBLCLK) {
            guarded([this] { raise(static_cast<TextBox&>(control()).DblClick); });
        }
        return result;
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

void native::caretToEnd(Handle box) {
    const int length = GetWindowTextLengthW(windowOf(box));
    SendMessageW(windowOf(box), EM_SETSEL, static_cast<WPARAM>(length), length);
    SendMessageW(windowOf(box), EM_SCROLLCARET, 0, 0);
}

void native::mask(Handle box) {
    SendMessageW(windowOf(box), EM_SETPASSWORDCHAR, dot, 0);
}

} // namespace murmelix::ui
