#include "ui/message_box.h"

#include <windows.h>

#include "common/com/handles.h"
#include "ui/form.h"
#include "ui/screen.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

int messageBox(const Form* owner, const std::u16string& text, int style, const std::u16string& title) {
    HWND window = owner && owner->Visible() ? reinterpret_cast<HWND>(owner->handle()) : win32::visibleMainWindow();
    return MessageBoxW(window, com::wide(text), com::wide(title), static_cast<UINT>(style) | MB_SETFOREGROUND);
}

void beep() {
    MessageBeep(MB_ICONWARNING);
}

} // namespace murmelix::ui
