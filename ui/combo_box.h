#pragma once

#include "ui/control.h"

namespace murmelix::ui {

// A line of text that can be edited, with a list of proposals below.
class ComboBox : public Control {
  public:
    explicit ComboBox(Control& parent);
    bool takesFocus() const override { return true; }
    char16_t mnemonic() const override { return 0; }
    Accessible accessible() const override { return {Role::combo_box, {}}; }
    std::u16string accessibleValue() const override { return text_; }
    Size neededSize(int = 0) const override { return sizeFor(u"X"); }
    const std::u16string& Text() const { return text_; }
    // Setting another text than the current one raises Change.
    void setText(const std::u16string& text);
    const std::vector<std::u16string>& Items() const { return items_; }
    void setItems(std::vector<std::u16string> items); // the text stays
    std::function<void()> Change;
    // The user picked a proposal, which is the text now; after Change.
    std::function<void()> Picked;
    void onText(const std::u16string& text);
    void onPick(int index);

  private:
    std::u16string text_;
    std::vector<std::u16string> items_;
};

// Carried out by win32/combo_box.cpp.
namespace native {
Handle createComboBox(Control& box, Handle parent, const std::u16string& text);
void setProposals(Handle box, const std::vector<std::u16string>& items, const std::u16string& text);
} // namespace native

} // namespace murmelix::ui
