#include "ui/text_box.h"

#include "ui/native.h"

namespace murmelix::ui {

TextBox::TextBox(Control& parent, const std::u16string& text)
    : Control(parent, native::createTextBox, text), text_(text) {}

void TextBox::setText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    native::setCaption(handle_, text);
    raise(Change);
}

void TextBox::SelectAll() {
    native::selectAll(handle_);
}

void TextBox::CaretToEnd() {
    native::caretToEnd(handle_);
}

void TextBox::setMasked() {
    masked_ = true;
    native::mask(handle_);
}

void TextBox::onText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    raise(Change);
}

} // namespace murmelix::ui
