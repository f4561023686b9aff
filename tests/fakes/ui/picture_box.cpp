#include "ui/picture_box.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createPictureBox(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void setSunken(Handle, bool) {}
void imageChanged(Handle) {}

} // namespace murmelix::ui::native
