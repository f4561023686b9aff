#include "ui/rich_text_box.h"

#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createRichEdit(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

Handle createAnsiRichEdit(Control& control, Handle parent, const std::u16string& text) {
    return createRichEdit(control, parent, text);
}

Handle createInkEdit(Control& control, Handle parent, const std::u16string& text) {
    return createRichEdit(control, parent, text);
}

Handle createAnsiRichView(Control& control, Handle parent, const std::u16string& text) {
    return createRichView(control, parent, text);
}

Handle createRichView(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

std::u16string richText(Handle box) {
    return fakes::screen().texts[box];
}

void replaceSelection(Handle box, const std::u16string& text) {
    fakes::screen().texts[box] += text;
}

void appendRich(Handle box, std::u16string_view text, const RichTextBox::Looks& looks) {
    fakes::screen().texts[box] += text;
    fakes::screen().runs[box].push_back({std::u16string(text), looks});
}

void beginUpdate(Handle) {}
void endUpdate(Handle) {}

} // namespace murmelix::ui::native
