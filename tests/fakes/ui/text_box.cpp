#include "ui/text_box.h"

#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createTextBox(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void selectAll(Handle box) {
    fakes::screen().selections[box] = fakes::Selection::all;
}

void caretToEnd(Handle box) {
    fakes::screen().selections[box] = fakes::Selection::end;
}

void mask(Handle) {}

} // namespace murmelix::ui::native
