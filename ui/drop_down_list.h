#pragma once

#include "ui/control.h"

namespace murmelix::ui {

class DropDownList : public Control {
  public:
    explicit DropDownList(Control& parent);
    bool takesFocus() const override { return true; }
    Accessible accessible() const override { return {Role::drop_down_list, {}}; }
    std::u16string accessibleValue() const override { return Text(); }
    Size neededSize(int = 0) const override { return sizeFor(u"X"); }
    void Clear();
    void AddItem(const std::u16string& text);
    // As many in one go, instead of what is there.
    void setItems(std::vector<std::u16string> items);
    // One entry; what is selected stays selected.
    void InsertItem(int index, const std::u16string& text);
    void RemoveItem(int index);
    void setItem(int index, const std::u16string& text);
    int ListCount() const { return static_cast<int>(items_.size()); }
    const std::u16string& List(int index) const { return items_.at(static_cast<std::size_t>(index)); }
    // From 0; -1 when nothing is selected. Asked of the window system, for other programs select as well.
    int ListIndex() const;
    // Setting another entry than the current one raises Click; a position that is not there selects nothing.
    void setListIndex(int index);
    std::u16string Text() const { return ListIndex() < 0 ? std::u16string() : List(ListIndex()); }
    // The user has chosen an entry of the open list, which closes: what comes next is not for the list any more.
    std::function<void()> Chosen;
    // The user picked an entry.
    void onPick(int index);

  private:
    std::vector<std::u16string> items_;
};

// Carried out by win32/drop_down_list.cpp.
namespace native {
Handle createDropDownList(Control& list, Handle parent, const std::u16string& caption);
void clearItems(Handle list);
void addItem(Handle list, const std::u16string& text);
void setItems(Handle list, const std::vector<std::u16string>& items);
void insertItem(Handle list, int index, const std::u16string& text);
void removeItem(Handle list, int index);
void selectItem(Handle list, int index);
int selectedItem(Handle list);
} // namespace native

} // namespace murmelix::ui
