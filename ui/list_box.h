#pragma once

#include "ui/control.h"
#include "ui/surface.h"

namespace murmelix::ui {

// Rows that the owner draws; one of them is selected. Every row has a text, by which the keyboard and other programs
// find it. Positions count from 0.
class ListBox : public Control, private AccessibleParts {
  public:
    explicit ListBox(Control& parent);
    bool takesFocus() const override { return true; }
    Size neededSize(int = 0) const override { return {0, 3 * item_height_}; }

    int ListCount() const { return static_cast<int>(items_.size()); }
    const std::u16string& List(int index) const { return items_.at(static_cast<std::size_t>(index)); }
    void setItems(std::vector<std::u16string> items); // nothing is selected then
    // One row; what is selected stays selected.
    void InsertItem(int index, const std::u16string& text);
    void RemoveItem(int index);
    void setItem(int index, const std::u16string& text);
    // A row looks different.
    void RedrawItem(int index);
    int ListIndex() const { return index_; }        // -1: nothing is selected
    void setListIndex(int index);                   // raises nothing
    int ItemHeight() const { return item_height_; } // twips
    void setItemHeight(int twips);

    struct Looks {
        bool selected, focused;
    };
    // Draws a row, of which the surface has the size.
    std::function<void(Surface& surface, int index, const Looks& looks)> DrawItem;
    // What a screen reader is told of a row; its text where this is not set.
    std::function<std::u16string(int index)> RowName;
    std::function<void()> DblClick; // Click: the user selected another row

    // The user selected a row.
    void onPick(int index);
    void onDraw(Surface& surface, int index, const Looks& looks) const;
    void resized() override;
    Accessible accessible() const override { return {Role::list, {}}; }
    AccessibleParts* parts() override { return this; }

  private:
    Role partRole() const override { return Role::row; }
    int partCount() const override { return ListCount(); }
    std::u16string partName(int index) const override { return RowName ? RowName(index) : List(index); }
    Rect partPlace(int index) const override;
    int selectedPart() const override { return index_; }
    void selectPart(int index) override;
    std::u16string partAction() const override { return DblClick ? u"Double Click" : u"Select"; }
    void doPart(int index) override;

    std::vector<std::u16string> items_;
    int index_ = -1;
    int item_height_ = 300;
};

// Carried out by win32/list_box.cpp.
namespace native {
Handle createListBox(Control& list, Handle parent, const std::u16string& caption);
void setRows(Handle list, const std::vector<std::u16string>& items);
void insertRow(Handle list, int index, const std::u16string& text);
void removeRow(Handle list, int index);
void setRow(Handle list, int index, const std::u16string& text);
void redrawRow(Handle list, int index);
void selectRow(Handle list, int index);
void setRowHeight(Handle list, int pixels);
Rect rowPlace(Handle list, int index); // pixels within; empty where it is out of sight
} // namespace native

} // namespace murmelix::ui
