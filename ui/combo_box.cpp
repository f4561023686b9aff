#include "ui/combo_box.h"

#include <utility>

#include "ui/native.h"

namespace murmelix::ui {

ComboBox::ComboBox(Control& parent) : Control(parent, native::createComboBox, u"") {}

void ComboBox::setText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    native::setCaption(handle_, text);
    raise(Change);
}

void ComboBox::setItems(std::vector<std::u16string> items) {
    if (items == items_) {
        return;
    }
    items_ = std::move(items);
    native::setProposals(handle_, items_, text_);
}

void ComboBox::onText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    raise(Change);
}

void ComboBox::onPick(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= items_.size()) {
        return;
    }
    onText(std::u16string(items_[static_cast<std::size_t>(index)]));
    raise(Picked);
}

} // namespace murmelix::ui
