#include "ui/menu.h"

#include <utility>

#include "ui/form.h"

namespace murmelix::ui {

Menu::Menu(Form& form, const std::u16string& caption)
    : form_(form), in_bar_(true), caption_(caption), position_(form.bar_entries_++),
      handle_(native::createMenu(*this)) {
    form.menus_.push_back(this);
    native::addToBar(*this);
}

Menu::Menu(Menu& in, const std::u16string& caption)
    : form_(in.form_), above_(&in), caption_(caption), position_(in.entries_++), handle_(native::createMenu(*this)) {
    form_.menus_.push_back(this);
    native::addBelow(*this);
}

Menu::Menu(Form& form) : form_(form), handle_(native::createMenu(*this)) {
    form.menus_.push_back(this);
}

Menu::~Menu() {
    Clear();
    std::erase(form_.menus_, this);
    form_.bar_entries_ -= in_bar_ ? 1 : 0;
    native::destroyMenu(*this);
}

void Menu::setCaption(const std::u16string& caption) {
    caption_ = caption;
    native::changeMenu(*this);
}

void Menu::setEnabled(bool enabled) {
    enabled_ = enabled;
    native::changeMenu(*this);
}

MenuItem& Menu::AddItem(const std::u16string& caption, std::function<void()> click) {
    added_.push_back(std::make_unique<MenuItem>(*this, caption));
    added_.back()->Click = std::move(click);
    return *added_.back();
}

void Menu::AddSeparator() {
    AddItem(u"-");
}

void Menu::Clear() {
    while (!added_.empty()) {
        added_.pop_back();
    }
}

MenuItem::MenuItem(Menu& menu, const std::u16string& caption, const Shortcut& shortcut)
    : menu_(menu), caption_(caption), shortcut_(shortcut), position_(menu.entries_++) {
    menu.items_.push_back(this);
    native::addMenuItem(*this);
}

MenuItem::~MenuItem() {
    native::removeMenuItem(*this);
    std::erase(menu_.items_, this);
    --menu_.entries_;
    for (MenuItem* other : menu_.items_) {
        other->position_ -= other->position_ > position_ ? 1 : 0;
    }
    for (Menu* below : menu_.form_.menus_) {
        below->position_ -= below->above_ == &menu_ && below->position_ > position_ ? 1 : 0;
    }
}

std::u16string MenuItem::text() const {
    return shortcut_ ? caption_ + u"\t" + nameOf(shortcut_) : caption_;
}

void MenuItem::setCaption(const std::u16string& caption) {
    caption_ = caption;
    native::changeMenuItem(*this);
}

void MenuItem::setEnabled(bool enabled) {
    enabled_ = enabled;
    native::changeMenuItem(*this);
}

void MenuItem::setChecked(bool checked) {
    if (checked != checked_) {
        checked_ = checked;
        native::changeMenuItem(*this);
    }
}

void MenuItem::setDefault() {
    for (MenuItem* other : menu_.items_) {
        if (std::exchange(other->default_, other == this) != other->default_) {
            native::changeMenuItem(*other);
        }
    }
}

void MenuItem::setPicture(const Picture& picture) {
    picture_ = picture;
    in_colours_ = false;
    native::setMenuItemPicture(*this);
}

void MenuItem::setColourPicture(const Picture& picture) {
    picture_ = picture;
    in_colours_ = true;
    native::setMenuItemPicture(*this);
}

void MenuItem::onClick() {
    if (enabled_) {
        // The handler may remove the item.
        const auto click = Click;
        raise(click);
    }
}

bool MenuItem::reachable() const {
    bool enabled = enabled_ && !separator();
    for (const Menu* menu = &menu_; menu; menu = menu->above()) {
        // One of the bar without a caption is not seen there: it is shown by PopupMenu alone.
        enabled = enabled && (menu->Enabled() || (menu->inBar() && menu->Caption().empty()));
    }
    return enabled;
}

BarItem::BarItem(Form& form, const std::u16string& caption)
    : form_(form), caption_(caption), position_(form.bar_entries_++) {
    native::addToBar(*this);
}

BarItem::~BarItem() {
    --form_.bar_entries_;
    native::removeFromBar(*this);
}

void BarItem::onClick() {
    const auto click = Click; // which may end with its form
    raise(click);
}

} // namespace murmelix::ui
