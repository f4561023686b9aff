#include "platform/message_box.h"

#include <windows.h>

#include "common/com/handles.h"
#include "ui/win32/windows.h"

namespace murmelix::platform {

int messageBox(const std::u16string& text, int style, const std::u16string& title) {
    // The window in front of the main one, where there is one: it takes no clicks meanwhile, and is active again then.
    HWND owner = ui::win32::visibleMainWindow();
    if (HWND front = owner ? GetLastActivePopup(owner) : nullptr; front && IsWindowVisible(front)) {
        owner = front;
    }
    // The user may be at work in another program, in front of which a window does not come by itself. System-modal is
    // no more than that: topmost.
    return MessageBoxW(owner, com::wide(text), com::wide(title),
                       static_cast<UINT>(style) | MB_SETFOREGROUND | MB_SYSTEMMODAL);
}

} // namespace murmelix::platform
