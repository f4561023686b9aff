// The imitated screen: what the toolkit asked of it, and a user who clicks, types and waits.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ui/control.h"
#include "ui/form.h"
#include "ui/timer.h"
#include "ui/tray.h"

namespace murmelix::fakes {

inline constexpr int border_pixels = 6; // of a form, left and right together

struct TrayCall {
    ui::TrayMessage message;
    ui::TrayIconRecord record;
};

struct Screen {
    double twips_per_pixel = 15;
    std::map<std::u16string, std::vector<std::u16string>> files; // by directory, sorted
    std::vector<TrayCall> tray_calls;
    std::vector<const ui::Menu*> popups;
    std::function<void(const ui::Form&)> while_modal; // what happens while a modal form is open
    std::map<std::uintptr_t, ui::Rect> bounds;        // by handle; pixels
    std::vector<std::uintptr_t> hidden;               // handles, in the order in which they were hidden
};

Screen& screen();

// What a surface was drawn on, since it was cleared last.
struct Drawing {
    enum class Kind { fill, text, picture } kind;
    ui::Rect area{}; // a text's and picture's place; width and height of fills alone
    ui::Colour colour = 0;
    std::u16string text{};
    bool bold = false, underline = false;
    double points = 0; // of the font
    bool operator==(const Drawing&) const = default;
};

// On surfaces every character is this wide and every line this high.
inline constexpr int character_width = 6, line_height = 13;

const std::vector<Drawing>& drawings(ui::Surface& surface);
int refreshes(ui::Surface& surface);
ui::Colour background(ui::Surface& surface); // it was cleared with

// The user; what cannot be reached cannot be used, and the function tells so.
bool click(ui::Control& control);
bool type(ui::TextBox& box, const std::u16string& text); // instead of what is there
bool pick(ui::DropDownList& list, int index);
bool choose(ui::MenuItem& item);
void press(ui::PictureBox& box, double x, double y, int button = ui::left_button); // and lets go
void tick(ui::Timer& timer);

} // namespace murmelix::fakes
