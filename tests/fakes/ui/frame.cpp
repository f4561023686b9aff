#include "ui/frame.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createFrame(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

Handle createPanel(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

} // namespace murmelix::ui::native
