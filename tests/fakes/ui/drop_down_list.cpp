#include "ui/drop_down_list.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createDropDownList(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void clearItems(Handle) {}
void addItem(Handle, const std::u16string&) {}
void setItems(Handle, const std::vector<std::u16string>&) {}
void selectItem(Handle, int) {}

} // namespace murmelix::ui::native
