// A window that nobody sees, to which the system tells what happens to sockets and errands.
#pragma once

#include <windows.h>

namespace murmelix::platform {

// Its GWLP_USERDATA is the owner. The class of that name is registered where it is not yet.
HWND makeMessageWindow(const wchar_t* class_name, WNDPROC procedure, void* owner);

} // namespace murmelix::platform
