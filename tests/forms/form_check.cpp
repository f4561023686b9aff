#include "tests/forms/form_check.h"

#include <algorithm>
#include <map>
#include <set>

#include "common/text.h"
#include "ui/menu.h"

namespace murmelix::test {

namespace {

using ui::Control;
using ui::Role;

void collect(Control& parent, std::vector<Control*>& all) {
    for (Control* child : parent.Children()) {
        all.push_back(child);
        collect(*child, all);
    }
}

const char* nameOf(Role role) {
    switch (role) {
    case Role::window:
        return "window";
    case Role::dialog:
        return "dialog";
    case Role::pane:
        return "pane";
    case Role::page:
        return "page";
    case Role::group:
        return "group";
    case Role::label:
        return "label";
    case Role::button:
        return "button";
    case Role::check_box:
        return "check box";
    case Role::link:
        return "link";
    case Role::edit:
        return "field";
    case Role::document:
        return "document";
    case Role::combo_box:
        return "combo box";
    case Role::drop_down_list:
        return "drop-down list";
    case Role::key_field:
        return "field of a key";
    case Role::list:
        return "list";
    case Role::row:
        return "row";
    case Role::tab_list:
        return "tabs";
    case Role::tab:
        return "tab";
    case Role::progress_bar:
        return "progress bar";
    case Role::scroll_bar:
        return "scroll bar";
    case Role::picture:
        return "picture";
    case Role::separator:
        break;
    }
    return "line";
}

// A label that says nothing now, and a line, are nothing to be told of.
bool isTold(const Control& control) {
    const Role role = control.accessible().role;
    return control.inSight() && role != Role::separator && !(role == Role::label && control.Caption().empty());
}

std::vector<Control*> inReach(ui::Form& form) {
    std::vector<Control*> all = controlsOf(form);
    std::erase_if(all, [](const Control* control) { return !control->takesFocus() || !control->reachable(); });
    return all;
}

// A label's letter is that of the control after it, which may have none in reach.
bool leadsSomewhere(const std::vector<Control*>& all, const Control* control) {
    const auto at = std::find(all.begin(), all.end(), control);
    return std::any_of(at, all.end(), [](const Control* next) { return next->takesFocus() && next->reachable(); });
}

} // namespace

std::vector<Control*> controlsOf(Control& parent) {
    std::vector<Control*> all;
    collect(parent, all);
    return all;
}

std::string describe(const Control& control) {
    std::string text = nameOf(control.accessible().role);
    const std::u16string name = control.AccessibleName();
    text += name.empty() ? " without a name" : " \"" + toUtf8(name.substr(0, 60)) + "\"";
    if (control.Parent() && control.Parent()->Parent()) {
        text += " in " + describe(*control.Parent());
    }
    return text;
}

std::vector<std::string> namingMistakes(ui::Form& form) {
    std::vector<std::string> mistakes;
    std::set<std::string> known;
    if (form.AccessibleName().empty()) {
        mistakes.push_back("the window has no name");
    }
    for (const Control* control : controlsOf(form)) {
        if (!isTold(*control)) {
            continue;
        }
        if (control->AccessibleName().empty()) {
            mistakes.push_back("a " + describe(*control));
        } else if (control->takesFocus() && !known.insert(describe(*control)).second) {
            mistakes.push_back("another " + describe(*control));
        }
    }
    return mistakes;
}

std::vector<std::string> keyboardMistakes(ui::Form& form) {
    std::vector<std::string> mistakes;
    const std::vector<Control*> all = controlsOf(form), reachable = inReach(form);
    for (const bool back : {false, true}) {
        std::set<const Control*> reached;
        for (std::size_t i = 0; i < reachable.size(); ++i) {
            form.onKey(ui::Key::tab, back);
            reached.insert(form.focused());
        }
        for (const Control* control : reachable) {
            if (!reached.contains(control)) {
                mistakes.push_back(std::string(back ? "Shift+Tab" : "Tab") + " does not get to " + describe(*control));
            }
        }
    }
    std::map<char16_t, std::string> letters;
    const auto take = [&](char16_t letter, const std::string& who) {
        if (letter == 0) {
            return;
        }
        if (const auto [found, is_new] = letters.emplace(letter, who); !is_new) {
            mistakes.push_back("Alt+" + toUtf8(std::u16string(1, letter)) + " is " + found->second + " and " + who);
        }
    };
    for (const ui::Menu* menu : form.menus()) {
        if (menu->inBar() && menu->Enabled()) {
            take(ui::mnemonicOf(menu->Caption()), "menu " + toUtf8(menu->Caption()));
        }
        std::map<char16_t, std::string> entries;
        const auto enter = [&](const std::u16string& caption) {
            const char16_t letter = ui::mnemonicOf(caption);
            if (letter != 0 && !entries.emplace(letter, toUtf8(caption)).second) {
                mistakes.push_back("in a menu, " + toUtf8(caption) + " and " + entries[letter]);
            }
        };
        for (const ui::MenuItem* item : menu->items()) {
            enter(item->Caption());
        }
        for (const ui::Menu* below : form.menus()) {
            if (below->above() == menu) {
                enter(below->Caption());
            }
        }
    }
    for (const Control* control : all) {
        if (control->reachable() && (control->takesFocus() || leadsSomewhere(all, control))) {
            take(control->mnemonic(), describe(*control));
        }
    }
    return mistakes;
}

} // namespace murmelix::test
