// A list of rows with an icon, a caption and a line of text; one of them is selected. Without rows it shows a message.
// Positions of rows count from 1; lengths and offsets inside are pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/keyed_collection.h"
#include "controls/c_item.h"
#include "platform/ui/control.h"

namespace murmelix {

class CoolListBox : public ui::Frame {
  public:
    explicit CoolListBox(ui::Control& parent);

    bool EnabledIt() const { return P.Enabled(); }
    void setEnabledIt(bool enabled);
    std::int16_t Appearance() const { return appearance_; } // 0 flat, 1 three-dimensional
    void setAppearance(std::int16_t appearance);
    ui::Colour BackColor() const { return back_color_; }
    void setBackColor(ui::Colour colour);
    const std::u16string& NoItemCaption() const { return no_item_caption_; }
    void setNoItemCaption(const std::u16string& message); // "[ENTER]" stands for a line break
    std::int16_t ItemHeight() const { return item_height_; }
    void setItemHeight(std::int16_t height);
    std::int16_t Selected() const { return selected_; } // 0: none
    void setSelected(std::int16_t position);

    void AddItem(const std::u16string& Caption, const std::u16string& Text, const std::u16string& aKey, bool sel,
                 const ui::Picture& Icon = {});
    void RemoveItem(const std::u16string& Key);
    void ClearList(); // the selection keeps its number
    const CItem& Item(std::int16_t Index) const { return items_.Item(static_cast<std::size_t>(Index)); }
    std::int16_t GetItemCount() const { return static_cast<std::int16_t>(items_.Count()); }
    void EditItemCaption(const std::u16string& Key, const std::u16string& aCaption);
    void EditItemText(const std::u16string& Key, const std::u16string& newText);
    std::u16string GetSelectedKey() const;
    void SelectKey(const std::u16string& New_Seketed_Key, bool MakeVisible);
    void SetPos(std::int32_t CaptionX, std::int32_t CaptionY, std::int32_t TextX, std::int32_t TextY,
                std::int32_t IconX, std::int32_t IconY);
    void Redraw();
    void DrawItem(std::int16_t position);
    void ChangeFontSize(double newFontSize);

    // Offsets inside a row, from its top-left corner.
    std::int32_t IconPosX = 0, IconPosY = 0, CaptionPosX = 0, CaptionPosY = 0, TextPosX = 1, TextPosY = 1;
    bool SuppressKeyboard = false;

    std::function<void()> DblClick, OnSelect; // and Click

    ui::PictureBox P{*this};
    ui::ScrollBar Scroll{*this};

  protected:
    void resized() override;

  private:
    int rowTop(std::int16_t position) const;
    int wholeRows() const; // that fit
    bool wholeInView(std::int16_t position) const;
    void makeVisible(std::int16_t position);
    void updateScroll();
    void layOut();
    void paintRow(std::int16_t position);
    void drawMessage();
    std::vector<std::u16string> wrappedMessage() const;

    void P_MouseDown(double y);
    void P_Click();
    bool P_KeyDown(ui::Key key);

    KeyedCollection<CItem> items_;
    std::u16string no_item_caption_ = u"No Items in List";
    ui::Colour back_color_ = ui::window_background;
    std::int16_t appearance_ = 1;
    std::int16_t item_height_ = 15;
    std::int16_t selected_ = 0;
};

} // namespace murmelix
