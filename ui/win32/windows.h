// What other Windows code needs of the toolkit.
#pragma once

#include <windows.h>

namespace murmelix::ui::win32 {

// One message of the loop, the toolkit's keyboard handling first.
void dispatch(const MSG& message);
// From here on post() is heard; by the thread that has the windows.
void prepareToPost();

// The MouseButtons among the keys and buttons (MK_…) of a message or a drag.
int buttonsOf(DWORD held);

// The first form without an owner; null where there is none.
HWND mainWindow();
// The same while it is on the screen.
HWND visibleMainWindow();

// The shell's bar has been started anew: puts the icons there again that were there.
void restoreTrayIcon();
void restoreTrayIcons();

} // namespace murmelix::ui::win32
