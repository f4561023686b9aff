#include "ui/drop_down_list.h"

#include <utility>

namespace murmelix::ui {

DropDownList::DropDownList(Control& parent) : Control(parent, native::createDropDownList, u"") {}

void DropDownList::Clear() {
    items_.clear();
    index_ = -1;
    native::clearItems(handle_);
}

void DropDownList::AddItem(const std::u16string& text) {
    items_.push_back(text);
    native::addItem(handle_, text);
}

void DropDownList::setItems(std::vector<std::u16string> items) {
    index_ = -1;
    if (items == items_) {
        return native::selectItem(handle_, index_);
    }
    items_ = std::move(items);
    native::setItems(handle_, items_);
}

void DropDownList::setListIndex(int index) {
    const int wanted = index >= 0 && index < ListCount() ? index : -1;
    if (wanted == index_) {
        return;
    }
    index_ = wanted;
    native::selectItem(handle_, wanted);
    raise(Click);
}

void DropDownList::onPick(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
    raise(Click);
}

} // namespace murmelix::ui
