#include "ui/form.h"

#include <algorithm>

#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createForm(Form& form, Handle, const std::u16string&, FormStyle, const char16_t*) {
    return newHandle(form);
}

namespace {

// A form that can be resized is told of its size, one that is shown of its place.
void putAt(Handle handle, const Rect& inside) {
    Rect& bounds = fakes::screen().bounds[handle];
    const bool moved = bounds.left != inside.left || bounds.top != inside.top;
    bounds = inside;
    const auto found = fakes::screen().controls.find(handle);
    if (found == fakes::screen().controls.end()) {
        return;
    }
    auto& form = static_cast<Form&>(*found->second);
    if (form.sizable()) {
        form.onSize();
    }
    if (moved && form.Visible()) {
        form.onMove();
    }
}

} // namespace

void setOuterWidth(Handle form, int pixels) {
    Rect place = fakes::screen().bounds[form];
    const Rect& screen = fakes::screen().work_area;
    const int right = screen.left + screen.width;
    if (place.left + place.width + fakes::border_pixels <= right && place.left + pixels > right) {
        place.left = std::max(right - pixels, screen.left);
    }
    place.width = pixels - fakes::border_pixels;
    putAt(form, place);
}

void setInnerSize(Handle form, int width, int height) {
    Rect& bounds = fakes::screen().bounds[form];
    bounds.width = width;
    bounds.height = height;
}

Rect innerBounds(Handle form) {
    const Rect& bounds = fakes::screen().bounds[form];
    return {0, 0, bounds.width, bounds.height};
}

Rect place(Handle form) {
    Rect outer = fakes::screen().bounds[form];
    outer.width += fakes::border_pixels;
    return outer;
}

void setPlace(Handle form, const Rect& place) {
    Rect inner = place;
    inner.width -= fakes::border_pixels;
    putAt(form, inner);
}

Form::State windowState(Handle form) {
    const auto found = fakes::screen().states.find(form);
    return found == fakes::screen().states.end() ? Form::State::normal : found->second;
}

void setWindowState(Handle form, Form::State state) {
    fakes::screen().states[form] = state;
}

void show(Handle form, bool active) {
    if (active) {
        fakes::screen().states.erase(form);
        fakes::screen().activated.push_back(form);
    }
}

void activate(Handle form) {
    fakes::screen().activated.push_back(form);
}

void runModal(const Form& form) {
    if (fakes::screen().while_modal) {
        fakes::screen().while_modal(form);
    }
}

void center(Handle form) {
    const Rect& screen = fakes::screen().work_area;
    Rect inside = fakes::screen().bounds[form];
    inside.left = screen.left + (screen.width - inside.width) / 2;
    inside.top = screen.top + (screen.height - inside.height) / 2;
    putAt(form, inside);
}

void setIcon(Handle, const Picture&) {}

} // namespace murmelix::ui::native
