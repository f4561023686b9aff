#include "ui/text_area.h"

namespace murmelix::ui {

TextArea::TextArea(Control& parent) : Control(parent, native::createTextArea, u"") {}

void TextArea::AddLine(const std::u16string& line) {
    lines_.push_back(line);
    native::addLine(handle_, line);
}

} // namespace murmelix::ui
