#include "tests/fakes/ui/windows.h"

#include <algorithm>

#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix {

namespace fakes {

Screen& screen() {
    static Screen the_screen;
    return the_screen;
}

namespace {

// As a user gets at it: the focus goes there first.
bool reach(ui::Control& control) {
    if (!control.reachable()) {
        return false;
    }
    if (control.takesFocus()) {
        control.SetFocus();
    }
    ui::raise(control.form().UserActs);
    return true;
}

std::u16string plain(std::u16string_view caption) {
    std::u16string text;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && i + 1 < caption.size()) {
            ++i;
        }
        text += caption[i];
    }
    return text;
}

} // namespace

bool click(ui::Control& control) {
    if (!reach(control)) {
        return false;
    }
    control.onClick();
    return true;
}

bool type(ui::TextBox& box, const std::u16string& text) {
    if (!reach(box)) {
        return false;
    }
    box.onText(text);
    return true;
}

bool type(ui::ComboBox& box, const std::u16string& text) {
    if (!reach(box)) {
        return false;
    }
    box.onText(text);
    return true;
}

bool type(ui::RichTextBox& box, const std::u16string& text) {
    if (!reach(box)) {
        return false;
    }
    screen().texts[box.handle()] = text;
    return true;
}

bool pick(ui::DropDownList& list, int index) {
    if (!reach(list)) {
        return false;
    }
    list.onPick(index);
    ui::raise(list.Chosen);
    return true;
}

bool pick(ui::ComboBox& box, int index) {
    if (!reach(box)) {
        return false;
    }
    box.onPick(index);
    return true;
}

bool pick(ui::ListBox& list, int index) {
    if (!reach(list)) {
        return false;
    }
    list.onPick(index);
    return true;
}

bool doubleClick(ui::ListBox& list, int index) {
    if (!pick(list, index)) {
        return false;
    }
    ui::raise(list.DblClick);
    return true;
}

bool askForMenu(ui::Control& control) {
    if (!reach(control)) {
        return false;
    }
    ui::raise(control.ContextMenu);
    return true;
}

bool choose(ui::MenuItem& item) {
    ui::Menu& menu = item.menu();
    const int place = item.position();
    ui::raise(menu.Popup); // which may make the items anew
    const auto found = std::find_if(menu.items().begin(), menu.items().end(),
                                    [&](const ui::MenuItem* each) { return each->position() == place; });
    if (found == menu.items().end() || !(*found)->reachable()) {
        return false;
    }
    ui::raise(menu.form().UserActs);
    (*found)->onClick();
    return true;
}

bool choose(ui::BarItem& item) {
    if (!item.form().Visible()) {
        return false;
    }
    ui::raise(item.form().UserActs);
    item.onClick();
    return true;
}

ui::MenuItem* find(ui::Menu& menu, std::u16string_view caption) {
    ui::raise(menu.Popup);
    const auto found = std::find_if(menu.items().begin(), menu.items().end(),
                                    [&](const ui::MenuItem* item) { return plain(item->Caption()) == caption; });
    return found == menu.items().end() ? nullptr : *found;
}

bool key(ui::Form& form, const ui::Shortcut& key) {
    ui::raise(form.UserActs);
    return form.onKey(key);
}

bool accelerator(ui::Form& form, char16_t letter) {
    return form.onMnemonicKey(letter);
}

void press(ui::PictureBox& box, double x, double y, int button) {
    if (!reach(box)) {
        return;
    }
    ui::raise(box.MouseDown, button, 0, x, y);
    ui::raise(box.MouseUp, button, 0, x, y);
    if (button == ui::left_button) {
        box.onClick();
    }
}

void tick(ui::Timer& timer) {
    timer.onTick();
}

void close(ui::Form& form) {
    form.onClose();
}

void resize(ui::Form& form, int width, int height) {
    ui::Rect& bounds = screen().bounds[form.handle()];
    bounds.width = ui::toPixels(std::max(width, form.leastScale().width));
    bounds.height = ui::toPixels(std::max(height, form.leastScale().height));
    form.onSize();
}

void runPosted() {
    constexpr int most = 10000; // beyond it something posts itself for ever
    for (int i = 0; i < most && !screen().posted.empty(); ++i) {
        const auto action = screen().posted.front();
        screen().posted.erase(screen().posted.begin());
        action();
    }
}

} // namespace fakes

namespace ui {

double twipsPerPixel() {
    return fakes::screen().twips_per_pixel;
}

Rect workArea() {
    return fakes::screen().work_area;
}

Rect workArea(const Rect&) {
    return fakes::screen().work_area;
}

int runMessageLoop() {
    fakes::runPosted();
    return fakes::screen().quit.value_or(0);
}

void quitMessageLoop(int status) {
    fakes::screen().quit = status;
}

void post(std::function<void()> action) {
    fakes::screen().posted.push_back(std::move(action));
}

bool animates() {
    return fakes::screen().animates;
}

void beep() {
    ++fakes::screen().beeps;
}

void shellNotifyIcon(TrayMessage message, const TrayIconRecord& record) {
    fakes::screen().tray_calls.push_back({message, record});
}

namespace native {

Handle newHandle(Control& control) {
    static Handle last = 0;
    fakes::screen().controls[++last] = &control;
    return last;
}

void destroy(Handle control) {
    fakes::screen().bounds.erase(control);
    fakes::screen().controls.erase(control);
    fakes::screen().texts.erase(control);
    fakes::screen().selected.erase(control);
    fakes::screen().runs.erase(control);
    if (fakes::screen().focus == control) {
        fakes::screen().focus = 0;
    }
}

void setVisible(Handle control, bool visible) {
    if (!visible) {
        fakes::screen().hidden.push_back(control);
    }
}

void setFocus(Handle control) {
    const Handle before = std::exchange(fakes::screen().focus, control);
    const auto lost = fakes::screen().controls.find(before);
    if (before != control && lost != fakes::screen().controls.end()) {
        lost->second->onFocusLost();
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
    fakes::screen().moved.push_back(control);
}

void scrollChildren(Handle control, int down) {
    auto& bounds = fakes::screen().bounds;
    const Rect inside = bounds[control];
    for (const Control* child : fakes::screen().controls.at(control)->Children()) {
        Rect& place = bounds[child->handle()];
        if (place.top < inside.height && place.top + place.height > 0 && place.left < inside.width &&
            place.left + place.width > 0) {
            place.top += down;
        }
    }
}

void setCaption(Handle control, const std::u16string& caption) {
    fakes::screen().texts[control] = caption;
}

void tell(Handle control, AccessibleEvent event, int part) {
    fakes::screen().told.push_back({control, event, part});
}

void drawNow(Handle control) {
    fakes::screen().drawn_now.push_back(control);
}

// All else is kept by the controls themselves.
void setEnabled(Handle, bool) {}
void setUseMnemonic(Handle, bool) {}
void setToolTip(Handle, const std::u16string&) {}
void bringToFront(Handle) {}
void invalidate(Handle) {}

} // namespace native
} // namespace ui
} // namespace murmelix
