// The imitated mouse that drags: what was dragged, and where it is let go.
#pragma once

#include <functional>
#include <vector>

#include "ui/picture_box.h"

namespace murmelix::fakes {

struct Drag {
    ui::DataObject data;
    ui::DropEffect allowed;
};

struct DragDrop {
    std::vector<Drag> drags;
    // Lets go; the result is what happened. Without it nothing did.
    std::function<ui::DropEffect(const Drag&)> let_go;
};

DragDrop& dragDrop();

// Moves the mouse from one place of a box to another one, the left button held.
void dragMouse(ui::PictureBox& box, double x, double y, double to_x, double to_y);

// Drags data over a control; what letting go would do.
ui::DropEffect dragOver(ui::Control& control, const Drag& drag, double x = 0, double y = 0,
                        ui::DragState state = ui::DragState::over);

// Lets go of data over a control; what happened to it.
ui::DropEffect drop(ui::Control& control, const Drag& drag, double x = 0, double y = 0, int shift = 0);

} // namespace murmelix::fakes
