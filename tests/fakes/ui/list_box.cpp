#include "ui/list_box.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createListBox(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void setRows(Handle, const std::vector<std::u16string>&) {}
void insertRow(Handle, int, const std::u16string&) {}
void removeRow(Handle, int) {}
void setRow(Handle, int, const std::u16string&) {}
void redrawRow(Handle, int) {}
void selectRow(Handle, int) {}
void setRowHeight(Handle, int) {}
Rect rowPlace(Handle, int) {
    return {};
}

} // namespace murmelix::ui::native
