// What a screen reader is told of a control, and of what is in it without being a control itself: the rows of a list,
// the tabs above pages. win32/accessible.cpp hands it out as IAccessible.
#pragma once

#include <string>

#include "ui/types.h"

namespace murmelix::ui {

enum class Role {
    window,
    dialog,
    pane,
    page, // of those behind tabs
    group,
    label,
    button,
    check_box,
    link,
    edit,
    document, // a text to be read
    combo_box,
    drop_down_list,
    key_field,
    list,
    row,
    tab_list,
    tab,
    progress_bar,
    scroll_bar,
    picture,
    separator
};

struct Accessible {
    Role role = Role::pane;
    std::u16string action; // what doing it does, in a word; empty: nothing
    bool checked = false, read_only = false, masked = false;
};

// Parts count from 0.
class AccessibleParts {
  public:
    virtual Role partRole() const = 0;
    virtual int partCount() const = 0;
    virtual std::u16string partName(int index) const = 0;
    // Pixels within the control; without a size where it is out of sight.
    virtual Rect partPlace(int index) const = 0;
    virtual int selectedPart() const = 0; // -1: none
    // As the user does it.
    virtual void selectPart(int index) = 0;
    // What doing it does, in a word, and doing it.
    virtual std::u16string partAction() const = 0;
    virtual void doPart(int index) = 0;

  protected:
    ~AccessibleParts() = default;
};

// What has happened to a control, or to one of its parts, that a screen reader does not learn from the system.
enum class AccessibleEvent {
    focus,
    selection,
    parts, // there are others
    name,
    value,
    news // its text tells what has happened, wherever the keyboard is
};
inline constexpr int no_part = -1; // the control itself

// A caption as it is read: without the marks of accelerators, and without the colon of a label.
std::u16string spoken(const std::u16string& caption, bool mnemonics = true);

} // namespace murmelix::ui
