// What other Windows code needs of the toolkit.
#pragma once

#include <windows.h>

namespace murmelix::ui::win32 {

// One message of the loop, the toolkit's keyboard handling first.
void dispatch(const MSG& message);

// The MouseButtons among the keys and buttons (MK_…) of a message or a drag.
int buttonsOf(DWORD held);

// The form without an owner; null where there is none.
HWND mainWindow();
// The same while it is on the screen.
HWND visibleMainWindow();

// The shell's bar has been started anew: puts the icon there again where it was.
void restoreTrayIcon();

} // namespace murmelix::ui::win32
