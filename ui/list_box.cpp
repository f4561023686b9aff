#include "ui/list_box.h"

#include <algorithm>
#include <utility>

#include "ui/screen.h"

namespace murmelix::ui {

ListBox::ListBox(Control& parent) : Control(parent, native::createListBox, u"") {}

void ListBox::setItems(std::vector<std::u16string> items) {
    items_ = std::move(items);
    index_ = -1;
    native::setRows(handle_, items_);
    tell(AccessibleEvent::parts);
}

void ListBox::InsertItem(int index, const std::u16string& text) {
    const int at = std::clamp(index, 0, ListCount());
    items_.insert(items_.begin() + at, text);
    native::insertRow(handle_, at, text);
    tell(AccessibleEvent::parts);
    if (index_ >= at) {
        ++index_;
    }
    native::selectRow(handle_, index_);
}

void ListBox::RemoveItem(int index) {
    if (index < 0 || index >= ListCount()) {
        return;
    }
    items_.erase(items_.begin() + index);
    native::removeRow(handle_, index);
    tell(AccessibleEvent::parts);
    if (index_ == index) {
        index_ = -1;
    } else if (index_ > index) {
        --index_;
    }
    native::selectRow(handle_, index_);
}

void ListBox::setItem(int index, const std::u16string& text) {
    if (index < 0 || index >= ListCount()) {
        return;
    }
    if (auto& item = items_[static_cast<std::size_t>(index)]; item != text) {
        item = text;
        native::setRow(handle_, index, text);
        tell(AccessibleEvent::name, index);
        native::selectRow(handle_, index_);
    } else {
        RedrawItem(index);
    }
}

void ListBox::RedrawItem(int index) {
    if (index >= 0 && index < ListCount()) {
        native::redrawRow(handle_, index);
        if (RowName) {
            tell(AccessibleEvent::name, index);
        }
    }
}

void ListBox::setListIndex(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
    native::selectRow(handle_, index_);
}

void ListBox::setItemHeight(int twips) {
    item_height_ = std::max(twips, 15);
    native::setRowHeight(handle_, toPixels(item_height_));
}

void ListBox::onPick(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
    raise(Click);
}

void ListBox::onDraw(Surface& surface, int index, const Looks& looks) const {
    if (DrawItem && index >= 0 && index < ListCount()) {
        DrawItem(surface, index, looks);
    }
}

void ListBox::resized() {
    native::setRowHeight(handle_, toPixels(item_height_));
}

Rect ListBox::partPlace(int index) const {
    return native::rowPlace(handle_, index);
}

void ListBox::selectPart(int index) {
    if (index != index_) {
        setListIndex(index);
        onPick(index);
    }
}

void ListBox::doPart(int index) {
    selectPart(index);
    raise(DblClick);
}

} // namespace murmelix::ui
