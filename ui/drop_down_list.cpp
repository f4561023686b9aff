#include "ui/drop_down_list.h"

#include <algorithm>
#include <utility>

namespace murmelix::ui {

DropDownList::DropDownList(Control& parent) : Control(parent, native::createDropDownList, u"") {}

void DropDownList::Clear() {
    items_.clear();
    native::clearItems(handle_);
}

void DropDownList::AddItem(const std::u16string& text) {
    items_.push_back(text);
    native::addItem(handle_, text);
}

void DropDownList::setItems(std::vector<std::u16string> items) {
    if (items == items_) {
        return native::selectItem(handle_, -1);
    }
    items_ = std::move(items);
    native::setItems(handle_, items_);
}

void DropDownList::InsertItem(int index, const std::u16string& text) {
    const int at = std::clamp(index, 0, ListCount()), selected = ListIndex();
    items_.insert(items_.begin() + at, text);
    native::insertItem(handle_, at, text);
    native::selectItem(handle_, selected >= at ? selected + 1 : selected);
}

void DropDownList::RemoveItem(int index) {
    if (index < 0 || index >= ListCount()) {
        return;
    }
    const int selected = ListIndex();
    items_.erase(items_.begin() + index);
    native::removeItem(handle_, index);
    native::selectItem(handle_, selected == index ? -1 : selected > index ? selected - 1 : selected);
}

void DropDownList::setItem(int index, const std::u16string& text) {
    if (index < 0 || index >= ListCount() || List(index) == text) {
        return;
    }
    const int selected = ListIndex();
    items_[static_cast<std::size_t>(index)] = text;
    native::removeItem(handle_, index);
    native::insertItem(handle_, index, text);
    native::selectItem(handle_, selected);
}

int DropDownList::ListIndex() const {
    const int index = native::selectedItem(handle_);
    return index >= 0 && index < ListCount() ? index : -1;
}

void DropDownList::setListIndex(int index) {
    const int wanted = index >= 0 && index < ListCount() ? index : -1;
    if (wanted == ListIndex()) {
        return;
    }
    native::selectItem(handle_, wanted);
    raise(Click);
}

void DropDownList::onPick(int index) {
    native::selectItem(handle_, index >= 0 && index < ListCount() ? index : -1);
    raise(Click);
}

} // namespace murmelix::ui
