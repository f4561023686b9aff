#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// A line of text that can be edited.
class TextBox : public Control {
  public:
    TextBox(Control& parent, const std::u16string& text);
    bool takesFocus() const override { return true; }
    char16_t mnemonic() const override { return 0; }
    Accessible accessible() const override { return {Role::edit, {}, false, false, masked_}; }
    std::u16string accessibleValue() const override { return masked_ ? std::u16string() : text_; }
    Size neededSize(int = 0) const override { return sizeFor(u"X"); }
    const std::u16string& Text() const { return text_; }
    // Setting another text than the current one raises Change.
    void setText(const std::u16string& text);
    void SelectAll();
    void CaretToEnd();
    // Shows a dot for each letter, and lets other programs not read them.
    bool Masked() const { return masked_; }
    void setMasked();
    std::function<void()> Change, DblClick;
    // The user changed the text.
    void onText(const std::u16string& text);

  protected:
    std::u16string nameShown() const override { return {}; } // what it shows is its value

  private:
    std::u16string text_;
    bool masked_ = false;
};

// Carried out by win32/text_box.cpp.
namespace native {
Handle createTextBox(Control& box, Handle parent, const std::u16string& text);
void selectAll(Handle box);
void caretToEnd(Handle box);
void mask(Handle box);
} // namespace native

} // namespace murmelix::ui
