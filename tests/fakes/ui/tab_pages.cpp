#include "ui/tab_pages.h"

#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createTabPages(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

void addTab(Handle, const std::u16string&) {}
void selectTab(Handle, int) {}

// Below a row of tabs as high as a line.
Rect pageArea(Handle pages) {
    const Rect& all = fakes::screen().bounds[pages];
    return {0, fakes::line_height, all.width, all.height - fakes::line_height};
}

Rect tabPlace(Handle, int) {
    return {};
}

Colour pageColour() {
    return window_background;
}

} // namespace murmelix::ui::native
