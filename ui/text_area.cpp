#include "ui/text_area.h"

namespace murmelix::ui {

TextArea::TextArea(Control& parent) : Control(parent, native::createTextArea, u"") {}

std::u16string TextArea::accessibleValue() const {
    std::u16string text;
    for (const std::u16string& line : lines_) {
        text += line + u"\r\n";
    }
    return text;
}

void TextArea::AddLine(const std::u16string& line) {
    lines_.push_back(line);
    native::addLine(handle_, line);
}

} // namespace murmelix::ui
