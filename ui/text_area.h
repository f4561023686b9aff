#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// Lines of plain text that are read, selected and copied, with a scroll bar; not edited.
class TextArea : public Control {
  public:
    explicit TextArea(Control& parent);
    bool takesFocus() const override { return true; }
    char16_t mnemonic() const override { return 0; }
    Accessible accessible() const override { return {Role::document, {}, false, true}; }
    std::u16string accessibleValue() const override;
    Size neededSize(int = 0) const override { return {0, 4 * sizeFor(u"X").height}; }
    const std::vector<std::u16string>& Lines() const { return lines_; }
    // At the end, which is then in sight.
    void AddLine(const std::u16string& line);

  private:
    std::vector<std::u16string> lines_;
};

// Carried out by win32/text_area.cpp.
namespace native {
Handle createTextArea(Control& area, Handle parent, const std::u16string& text);
void addLine(Handle area, const std::u16string& line);
} // namespace native

} // namespace murmelix::ui
