#include "ui/rich_text_box.h"

#include "ui/native.h"

namespace murmelix::ui {

namespace {

auto makeFor(RichTextBox::Use use, RichTextBox::WindowClass window_class) {
    using WindowClass = RichTextBox::WindowClass;
    if (use == RichTextBox::Use::show) {
        return window_class == WindowClass::ansi ? native::createAnsiRichView : native::createRichView;
    }
    switch (window_class) {
    case WindowClass::ansi:
        return native::createAnsiRichEdit;
    case WindowClass::ink:
        return native::createInkEdit;
    case WindowClass::wide:
        break;
    }
    return native::createRichEdit;
}

} // namespace

RichTextBox::RichTextBox(Control& parent, Use use, WindowClass window_class)
    : Control(parent, makeFor(use, window_class), u"") {}

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
