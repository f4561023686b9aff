// Menus: of a form's menu bar, below an item of another one, or shown where they are asked for.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/control.h"

namespace murmelix::ui {

class Form;
class MenuItem;

class Menu {
  public:
    Menu(Form& form, const std::u16string& caption); // in the menu bar
    Menu(Menu& in, const std::u16string& caption);   // below an item of its own
    explicit Menu(Form& form);                       // shown by PopupMenu
    ~Menu();
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    const std::u16string& Caption() const { return caption_; }
    void setCaption(const std::u16string& caption);
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    // It is about to be shown.
    std::function<void()> Popup;
    // Items that come and go.
    MenuItem& AddItem(const std::u16string& caption, std::function<void()> click = {});
    void AddSeparator();
    void Clear(); // of items that were added so

    Form& form() const { return form_; }
    Menu* above() const { return above_; }
    bool inBar() const { return in_bar_; }
    int position() const { return position_; } // from 0, in the menu bar or in the menu above
    const std::vector<MenuItem*>& items() const { return items_; }
    native::Handle handle() const { return handle_; }

  private:
    friend class MenuItem;
    Form& form_;
    Menu* above_ = nullptr;
    bool in_bar_ = false;
    std::u16string caption_;
    bool enabled_ = true;
    int position_ = 0;
    int entries_ = 0; // items and menus below
    std::vector<MenuItem*> items_;
    std::vector<std::unique_ptr<MenuItem>> added_;
    native::Handle handle_;
};

// An item; with the caption "-" a separator.
class MenuItem {
  public:
    MenuItem(Menu& menu, const std::u16string& caption, const Shortcut& shortcut = {});
    ~MenuItem();
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    const std::u16string& Caption() const { return caption_; }
    void setCaption(const std::u16string& caption);
    // The caption with the shortcut behind it.
    std::u16string text() const;
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    bool Checked() const { return checked_; }
    void setChecked(bool checked);
    // What a double click on the menu's owner does: drawn in bold.
    bool Default() const { return default_; }
    void setDefault();
    bool separator() const { return caption_ == u"-"; }
    // As the checked and the unchecked bitmap of the item, in the menu's own colours.
    void setPicture(const Picture& picture);
    // Before the caption, in the picture's colours.
    void setColourPicture(const Picture& picture);
    const Picture& picture() const { return picture_; }
    bool inColours() const { return in_colours_; }
    const Shortcut& shortcut() const { return shortcut_; }

    Menu& menu() const { return menu_; }
    int position() const { return position_; } // from 0, in its menu
    std::function<void()> Click;
    void onClick();
    // Enabled with all menus that lead to it.
    bool reachable() const;

  private:
    Menu& menu_;
    std::u16string caption_;
    Shortcut shortcut_;
    bool enabled_ = true, checked_ = false, default_ = false;
    int position_;
    Picture picture_;
    bool in_colours_ = false;
};

// An entry of the menu bar that is chosen itself.
class BarItem {
  public:
    BarItem(Form& form, const std::u16string& caption);
    ~BarItem();
    BarItem(const BarItem&) = delete;
    BarItem& operator=(const BarItem&) = delete;

    const std::u16string& Caption() const { return caption_; }
    Form& form() const { return form_; }
    int position() const { return position_; } // from 0, in the menu bar
    std::function<void()> Click;
    void onClick();

  private:
    Form& form_;
    std::u16string caption_;
    int position_;
};

// Carried out by win32/menu.cpp. Menus are known by their handles, items by their place.
namespace native {
Handle createMenu(Menu& menu);
void destroyMenu(Menu& menu);
void addToBar(const Menu& menu);
void addToBar(BarItem& item);
void removeFromBar(BarItem& item);
void addBelow(const Menu& menu);
void changeMenu(const Menu& menu);
void addMenuItem(MenuItem& item);
void changeMenuItem(const MenuItem& item);
void removeMenuItem(const MenuItem& item);
void setMenuItemPicture(const MenuItem& item);
// At the mouse, or where the menu was asked for by the keyboard.
void popupMenu(const Menu& menu);
void popupMenuBelow(const Menu& menu, Handle control);
} // namespace native

} // namespace murmelix::ui
