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
    : Control(parent, makeFor(use, window_class), u""), use_(use) {}

std::u16string RichTextBox::Text() const {
    return native::richText(handle_);
}

std::u16string RichTextBox::accessibleValue() const {
    // A screen reader goes through the text itself; of the value nobody hears more than the last lines.
    constexpr std::size_t longest = 4096;
    std::u16string text = Text();
    return text.size() > longest ? text.substr(text.size() - longest) : text;
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

int RichTextBox::Length() const {
    return native::richLength(handle_);
}

void RichTextBox::Remove(int from, int length) {
    BeginUpdate();
    native::removeRich(handle_, from, length);
    EndUpdate();
}

void RichTextBox::setLooks(int from, int length, const Looks& looks) {
    BeginUpdate();
    native::setRichLooks(handle_, from, length, looks);
    EndUpdate();
}

bool RichTextBox::Find(const std::u16string& text, bool back) {
    return !text.empty() && native::findRich(handle_, text, back);
}

void RichTextBox::ShowEnd() {
    native::showRichEnd(handle_);
}

void RichTextBox::BeginUpdate() {
    native::beginUpdate(handle_);
}

void RichTextBox::EndUpdate() {
    native::endUpdate(handle_);
}

} // namespace murmelix::ui
