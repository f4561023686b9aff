#include "tests/fakes/ui/drag_drop.h"

#include "tests/fakes/ui/windows.h"
#include "ui/native.h"
#include "ui/picture_box.h"

namespace murmelix {

namespace fakes {

DragDrop& dragDrop() {
    static DragDrop mouse;
    return mouse;
}

void dragMouse(ui::PictureBox& box, double x, double y, double to_x, double to_y) {
    if (!box.reachable()) {
        return;
    }
    box.MouseDown(ui::left_button, 0, x, y);
    const auto handle = box.handle();
    box.MouseMove(ui::left_button, 0, to_x, to_y);
    if (screen().controls.contains(handle)) { // a drag can end with its box
        box.MouseUp(ui::left_button, 0, to_x, to_y);
    }
}

ui::DropEffect dragOver(ui::Control& control, const Drag& drag, double x, double y, ui::DragState state) {
    return control.onDragOver(drag.allowed, 0, x, y, state);
}

ui::DropEffect drop(ui::Control& control, const Drag& drag, double x, double y, int shift) {
    ui::DataObject data = drag.data;
    return control.onDrop(data, drag.allowed, ui::left_button, shift, x, y);
}

} // namespace fakes

namespace ui::native {

DropEffect drag(Handle, const DataObject& data, DropEffect allowed) {
    auto& mouse = fakes::dragDrop();
    mouse.drags.push_back({data, allowed});
    return mouse.let_go ? mouse.let_go({data, allowed}) : drop_none;
}

void acceptDrops(Control&, bool) {}

} // namespace ui::native
} // namespace murmelix
