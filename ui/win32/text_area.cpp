#include "ui/text_area.h"

#include "common/com/handles.h"
#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class TextAreaWindow final : public ControlWindow {
  public:
    TextAreaWindow(Control& area, HWND parent, const std::u16string& text)
        : ControlWindow(
              area, {L"EDIT", ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE},
              parent, text) {
        SendMessageW(hwnd(), EM_SETLIMITTEXT, 0, 0); // as much as there is
    }

    bool keeps(const Shortcut& key) const override {
        return key.key != Key::tab && key.key != Key::enter && key.key != Key::escape;
    }

    void onCommand(UINT code) override {
        if (code == EN_SETFOCUS) {
            control().onFocus();
        } else if (code == EN_KILLFOCUS) {
            control().onFocusLost();
        }
    }
};

} // namespace

native::Handle native::createTextArea(Control& area, Handle parent, const std::u16string& text) {
    return make<TextAreaWindow>(area, parent, text);
}

void native::addLine(Handle area, const std::u16string& line) {
    HWND hwnd = windowOf(area);
    const int end = GetWindowTextLengthW(hwnd);
    SendMessageW(hwnd, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageW(hwnd, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(com::wide(line + u"\r\n")));
}

} // namespace murmelix::ui
