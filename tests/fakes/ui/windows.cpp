#include "tests/fakes/ui/windows.h"

#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix {

namespace fakes {

Screen& screen() {
    static Screen the_screen;
    return the_screen;
}

bool click(ui::Control& control) {
    if (!control.reachable()) {
        return false;
    }
    if (control.takesFocus()) {
        control.SetFocus();
    }
    control.onClick();
    return true;
}

bool type(ui::TextBox& box, const std::u16string& text) {
    if (!box.reachable()) {
        return false;
    }
    box.SetFocus();
    box.onText(text);
    return true;
}

bool pick(ui::DropDownList& list, int index) {
    if (!list.reachable()) {
        return false;
    }
    list.SetFocus();
    list.onPick(index);
    return true;
}

bool choose(ui::MenuItem& item) {
    if (!item.Enabled() || item.separator()) {
        return false;
    }
    item.onClick();
    return true;
}

void press(ui::PictureBox& box, double x, double y, int button) {
    if (!box.reachable()) {
        return;
    }
    if (box.takesFocus()) {
        box.SetFocus();
    }
    if (box.MouseDown) {
        box.MouseDown(button, 0, x, y);
    }
    if (box.MouseUp) {
        box.MouseUp(button, 0, x, y);
    }
    if (button == ui::left_button) {
        box.onClick();
    }
}

void tick(ui::Timer& timer) {
    timer.onTick();
}

} // namespace fakes

namespace ui {

double twipsPerPixel() {
    return fakes::screen().twips_per_pixel;
}

void shellNotifyIcon(TrayMessage message, const TrayIconRecord& record) {
    fakes::screen().tray_calls.push_back({message, record});
}

namespace native {

namespace {

Handle nextHandle() {
    static Handle last = 0;
    return ++last;
}

} // namespace

Handle createControl(Control&, Kind, Handle, const std::u16string&) {
    return nextHandle();
}

Handle createForm(Form&, Handle, const std::u16string&, FormStyle) {
    return nextHandle();
}

void destroy(Handle control) {
    fakes::screen().bounds.erase(control);
}

void setVisible(Handle control, bool visible) {
    if (!visible) {
        fakes::screen().hidden.push_back(control);
    }
}

// A caption's letters in as many lines as they take, and nothing around it.
Size captionSize(Handle, const std::u16string& caption, int width) {
    const int length = static_cast<int>(caption.size()) * fakes::character_width;
    if (width <= 0 || length <= width) {
        return {length, fakes::line_height};
    }
    return {width, (length + width - 1) / width * fakes::line_height};
}

void setBounds(Handle control, const Rect& pixels) {
    fakes::screen().bounds[control] = pixels;
}

void setOuterWidth(Handle form, int pixels) {
    fakes::screen().bounds[form].width = pixels - fakes::border_pixels;
}

void setInnerSize(Handle form, int width, int height) {
    fakes::screen().bounds[form] = {0, 0, width, height};
}

Rect innerBounds(Handle form) {
    return fakes::screen().bounds[form];
}

void runModal(const Form& form) {
    if (fakes::screen().while_modal) {
        fakes::screen().while_modal(form);
    }
}

void popupMenu(Handle, const Menu& menu) {
    fakes::screen().popups.push_back(&menu);
}

Handle startTimer(Timer&, int) {
    return nextHandle();
}

std::vector<std::u16string> files(const std::u16string& directory, const std::u16string&) {
    return fakes::screen().files[directory];
}

// All else is kept by the controls themselves.
void setCaption(Handle, const std::u16string&) {}
void setEnabled(Handle, bool) {}
void setUseMnemonic(Handle, bool) {}
void setToolTip(Handle, const std::u16string&) {}
void bringToFront(Handle) {}
void setFocus(Handle) {}
void setDefault(Handle, bool) {}
void center(Handle) {}
void setHeading(Handle) {}
void setCentered(Handle) {}
void setChecked(Handle, bool) {}
void clearItems(Handle) {}
void addItem(Handle, const std::u16string&) {}
void setItems(Handle, const std::vector<std::u16string>&) {}
void selectItem(Handle, int) {}
bool droppedDown(Handle) {
    return false;
}
void setScroll(Handle, int, int, int) {}
void setSunken(Handle, bool) {}
void setPicture(Handle, const Picture&) {}
void setIcon(Handle, const Picture&) {}
void show(Handle) {}
void addMenu(Handle, const Menu&) {}
void addMenuItem(Handle, const Menu&, MenuItem&) {}
void changeMenu(Handle, const Menu&) {}
void changeMenuItem(Handle, const MenuItem&) {}
void setMenuItemPicture(Handle, const MenuItem&, const Picture&) {}
void stopTimer(Handle) {}

} // namespace native
} // namespace ui
} // namespace murmelix
