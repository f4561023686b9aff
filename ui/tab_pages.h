#pragma once

#include "ui/frame.h"

namespace murmelix::ui {

class TabPage;

// Pages one behind the other, chosen by the tabs above them: `TabPages Pages{*this}; TabPage Output{Pages, u"Output"};`
// Ctrl+Tab and Ctrl+Page Down go to the next page, with Shift or Page Up to the one before.
class TabPages : public Control, private AccessibleParts {
  public:
    explicit TabPages(Control& parent);
    bool takesFocus() const override { return true; }
    char16_t mnemonic() const override { return 0; }
    const std::vector<TabPage*>& Pages() const { return pages_; }
    int Selected() const { return selected_; } // from 0; -1 without pages
    void setSelected(int index);               // Click, where it is another one
    // Twips that the tabs and the rim take around a page.
    Size rim() const;

    void onPick(int index) { setSelected(index); }
    Accessible accessible() const override { return {Role::tab_list, {}}; }
    AccessibleParts* parts() override { return this; }

  protected:
    void resized() override;
    std::u16string nameShown() const override { return u"Pages"; }

  private:
    friend class TabPage;
    void add(TabPage& page);
    void turn(int by);
    Role partRole() const override { return Role::tab; }
    int partCount() const override { return static_cast<int>(pages_.size()); }
    std::u16string partName(int index) const override;
    Rect partPlace(int index) const override;
    int selectedPart() const override { return selected_; }
    void selectPart(int index) override { setSelected(index); }
    std::u16string partAction() const override { return u"Switch"; }
    void doPart(int index) override { setSelected(index); }

    std::vector<TabPage*> pages_;
    int selected_ = -1;
};

class TabPage : public Frame {
  public:
    TabPage(TabPages& pages, const std::u16string& caption);
    Accessible accessible() const override { return {Role::page, {}}; }
};

// Carried out by win32/tab_pages.cpp.
namespace native {
Handle createTabPages(Control& pages, Handle parent, const std::u16string& caption);
void addTab(Handle pages, const std::u16string& caption);
void selectTab(Handle pages, int index);
// Pixels, of a page in the control.
Rect pageArea(Handle pages);
Rect tabPlace(Handle pages, int index); // pixels within the control
// What lies behind a page.
Colour pageColour();
} // namespace native

} // namespace murmelix::ui
