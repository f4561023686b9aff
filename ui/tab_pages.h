#pragma once

#include "ui/frame.h"

namespace murmelix::ui {

class TabPage;

// Pages one behind the other, chosen by the tabs above them: `TabPages Pages{*this}; TabPage Output{Pages, u"Output"};`
// Ctrl+Tab and Ctrl+Page Down go to the next page, with Shift or Page Up to the one before.
class TabPages : public Control {
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

  protected:
    void resized() override;

  private:
    friend class TabPage;
    void add(TabPage& page);
    void turn(int by);

    std::vector<TabPage*> pages_;
    int selected_ = -1;
};

class TabPage : public Frame {
  public:
    TabPage(TabPages& pages, const std::u16string& caption);
};

// Carried out by win32/tab_pages.cpp.
namespace native {
Handle createTabPages(Control& pages, Handle parent, const std::u16string& caption);
void addTab(Handle pages, const std::u16string& caption);
void selectTab(Handle pages, int index);
// Pixels, of a page in the control.
Rect pageArea(Handle pages);
// What lies behind a page.
Colour pageColour();
} // namespace native

} // namespace murmelix::ui
