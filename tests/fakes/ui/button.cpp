#include "ui/button.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createButton(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void setDefault(Handle, bool) {}
void setOwnerDrawn(Handle) {}

} // namespace murmelix::ui::native
