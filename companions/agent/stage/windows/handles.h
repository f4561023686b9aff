// Owners of what USER hands out, beside those of ui/win32/gdi.h.
#pragma once

#include "ui/win32/gdi.h"

namespace agent::stage {

namespace gdi = murmelix::ui::win32;

using MenuHandle = gdi::Owned<HMENU, DestroyMenu>;
using WindowHandle = gdi::Owned<HWND, DestroyWindow>;

} // namespace agent::stage
