// The imitated screen: what the toolkit asked of it, and a user who clicks, types and waits.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/global_key.h"
#include "ui/label.h"
#include "ui/line.h"
#include "ui/link_label.h"
#include "ui/list_box.h"
#include "ui/picture_box.h"
#include "ui/progress_bar.h"
#include "ui/rich_text_box.h"
#include "ui/scroll_bar.h"
#include "ui/shortcut_box.h"
#include "ui/tab_pages.h"
#include "ui/text_area.h"
#include "ui/text_box.h"
#include "ui/timer.h"
#include "ui/tray.h"
#include "ui/tray_icon.h"

namespace murmelix::fakes {

inline constexpr int border_pixels = 6; // of a form, left and right together

struct TrayCall {
    ui::TrayMessage message;
    ui::TrayIconRecord record;
};

struct Run { // of a rich-text box
    std::u16string text;
    ui::RichTextBox::Looks looks;
};

struct TakenKey { // from all programs
    ui::Shortcut key;
    ui::GlobalKey* listener = nullptr;
};

struct Told { // to a screen reader
    std::uintptr_t control;
    ui::AccessibleEvent event;
    int part;
    bool operator==(const Told&) const = default;
};

enum class Selection { all, end }; // the whole text, or the caret at its end

struct Screen {
    double twips_per_pixel = 15;
    std::map<std::u16string, std::vector<std::u16string>> files; // by directory, sorted
    std::vector<TrayCall> tray_calls;
    std::vector<const ui::Menu*> popups;
    std::function<void(const ui::Form&)> while_modal;       // what happens while a modal form is open
    std::map<std::uintptr_t, ui::Rect> bounds;              // by handle; pixels
    std::vector<std::uintptr_t> moved;                      // handles of what was given a place, in order
    std::vector<std::uintptr_t> drawn_now;                  // handles of what was drawn at once, in order
    std::vector<std::uintptr_t> hidden;                     // handles, in the order in which they were hidden
    std::map<std::uintptr_t, ui::Control*> controls;        // by handle
    std::uintptr_t focus = 0;                               // the handle of what has the keyboard
    std::map<std::uintptr_t, std::u16string> texts;         // of rich-text boxes
    std::map<std::uintptr_t, int> selected;                 // entries of drop-down lists
    std::map<std::uintptr_t, Selection> selections;         // last set in text boxes
    ui::Rect work_area{0, 0, 1024, 768};                    // pixels
    std::map<std::uintptr_t, std::vector<Run>> runs;        // of rich-text boxes, in order
    std::map<std::uintptr_t, std::size_t> found;            // where the next search in a rich-text box begins
    std::map<std::uintptr_t, std::u16string> selected_text; // of rich-text boxes, by a search
    std::vector<std::uintptr_t> end_shown;                  // rich-text boxes that were told to show their end
    std::map<std::uintptr_t, ui::Form::State> states;       // of forms that are not normal
    std::vector<std::uintptr_t> activated;                  // forms, in order
    std::vector<std::function<void()>> posted;
    bool tray = true; // there is a notification area
    std::vector<const ui::TrayIcon*> tray_icons;
    std::map<int, TakenKey> global_keys;
    std::vector<ui::Shortcut> keys_of_others; // that other programs have taken
    std::vector<Told> told;                   // to screen readers, in order
    bool animates = true;
    int beeps = 0;
    std::optional<int> quit; // the message loop, with this status
};

Screen& screen();

// What a surface was drawn on, since it was cleared last.
struct Drawing {
    enum class Kind { fill, fill_not_xor, text, picture, gradient, ellipse, frame, line, focus } kind;
    ui::Rect area{}; // a text's and picture's place; width and height not of pictures and printed texts
    ui::Colour colour = 0;
    std::u16string text{};
    bool bold = false, underline = false;
    double points = 0;   // of the font
    ui::Colour edge = 0; // of an ellipse
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
bool type(ui::ComboBox& box, const std::u16string& text);
bool type(ui::RichTextBox& box, const std::u16string& text);
bool pick(ui::ComboBox& box, int index);
bool pick(ui::ListBox& list, int index);
bool doubleClick(ui::ListBox& list, int index);
bool askForMenu(ui::Control& control); // by the right mouse button
bool choose(ui::MenuItem& item);       // its menu is opened for it
bool choose(ui::BarItem& item);
// That reads so, "&" and shortcut left out; null where the menu has none. Fills the menu in as opening it does.
ui::MenuItem* find(ui::Menu& menu, std::u16string_view caption);
bool key(ui::Form& form, const ui::Shortcut& key); // tells whether it was of use
bool accelerator(ui::Form& form, char16_t letter);
bool pressAnywhere(const ui::Shortcut& key); // whoever has the keyboard; tells whether somebody heard it
void press(ui::PictureBox& box, double x, double y, int button = ui::left_button); // and lets go
void tick(ui::Timer& timer);
void close(ui::Form& form); // by its close box
// The user gives a form that can be resized another size inside; twips.
void resize(ui::Form& form, int width, int height);
// What was posted is done, and what that posts.
void runPosted();
// A row or a button as it draws itself on a surface of so many pixels.
std::vector<Drawing> drawn(const ui::ListBox& list, int index, int width, int height,
                           const ui::ListBox::Looks& looks = {});
std::vector<Drawing> drawn(const ui::Button& button, int width, int height, const ui::Button::Looks& looks = {});
// What a form draws behind its controls.
std::vector<Drawing> drawn(const ui::Form& form);

} // namespace murmelix::fakes
