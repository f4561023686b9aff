#include "ui/drop_down_list.h"

#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createDropDownList(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void clearItems(Handle list) {
    fakes::screen().selected.erase(list);
}

void setItems(Handle list, const std::vector<std::u16string>&) {
    fakes::screen().selected.erase(list);
}

void removeItem(Handle list, int index) {
    if (selectedItem(list) == index) {
        fakes::screen().selected.erase(list);
    }
}

void selectItem(Handle list, int index) {
    fakes::screen().selected[list] = index;
}

int selectedItem(Handle list) {
    const auto found = fakes::screen().selected.find(list);
    return found == fakes::screen().selected.end() ? -1 : found->second;
}

void addItem(Handle, const std::u16string&) {}
void insertItem(Handle, int, const std::u16string&) {}

} // namespace murmelix::ui::native
