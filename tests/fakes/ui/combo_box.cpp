#include "ui/combo_box.h"

#include "tests/fakes/ui/handles.h"

namespace murmelix::ui::native {

Handle createComboBox(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void setProposals(Handle, const std::vector<std::u16string>&, const std::u16string&) {}

} // namespace murmelix::ui::native
