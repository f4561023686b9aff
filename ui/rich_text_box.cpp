#include "ui/rich_text_box.h"

#include "ui/native.h"

namespace murmelix::ui {

RichTextBox::RichTextBox(Control& parent, Use use)
    : Control(parent, use == Use::edit ? native::createRichEdit : native::createRichView, u"") {}

std::u16string RichTextBox::Text() const {
    return native::richText(handle_);
}

void RichTextBox::setText(const std::u16string& text) {
    native::setCaption(handle_, text);
}

void RichTextBox::setSelText(const std::u16string& text) {
    native::replaceSelection(handle_, text);
}

void RichTextBox::Append(std::u16string_view text, const Looks& looks) {
    BeginUpdate();
    native::appendRich(handle_, text, looks);
    EndUpdate();
}

void RichTextBox::BeginUpdate() {
    native::beginUpdate(handle_);
}

void RichTextBox::EndUpdate() {
    native::endUpdate(handle_);
}

} // namespace murmelix::ui
