// The imitated window system's handles.
#pragma once

#include "ui/control.h"

namespace murmelix::ui::native {

// A new one, by which the control is found.
Handle newHandle(Control& control);

} // namespace murmelix::ui::native
