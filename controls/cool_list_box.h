// A list of rows with an icon, a caption and a line of text; one of them is selected. Without rows it shows a message.
// Positions of rows count from 1; lengths and offsets inside are pixels. Rows can be dragged out of the list, as their
// text, and text can be dropped on it where `P` takes drops.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/keyed_collection.h"
#include "controls/c_item.h"
#include "controls/property_bag.h"
#include "ui/frame.h"
#include "ui/picture_box.h"
#include "ui/scroll_bar.h"

namespace murmelix {

class CoolListBox : public ui::Frame, private ui::AccessibleParts {
  public:
    explicit CoolListBox(ui::Control& parent);

    bool EnabledIt() const { return P.Enabled(); }
    void setEnabledIt(bool enabled);
    std::int16_t Appearance() const { return appearance_; } // 0 flat, 1 three-dimensional
    void setAppearance(std::int16_t appearance);
    ui::Colour BackColor() const { return back_color_; }
    void setBackColor(ui::Colour colour);
    std::int16_t DragDropZone() const { return drag_drop_zone_; } // not 0: rows may be dragged out
    void setDragDropZone(std::int16_t zone);
    const std::u16string& NoItemCaption() const { return no_item_caption_; }
    void setNoItemCaption(const std::u16string& message); // "[ENTER]" stands for a line break
    std::int16_t ItemHeight() const { return item_height_; }
    void setItemHeight(std::int16_t height); // 1 at least
    // Offsets inside a row, from its top-left corner.
    std::int32_t IconPosX() const { return icon_pos_x_; }
    void setIconPosX(std::int32_t x);
    std::int32_t IconPosY() const { return icon_pos_y_; }
    void setIconPosY(std::int32_t y);
    std::int32_t CaptionPosX() const { return caption_pos_x_; }
    void setCaptionPosX(std::int32_t x);
    std::int32_t CaptionPosY() const { return caption_pos_y_; }
    void setCaptionPosY(std::int32_t y);
    std::int32_t TextPosX() const { return text_pos_x_; }
    void setTextPosX(std::int32_t x);
    std::int32_t TextPosY() const { return text_pos_y_; }
    void setTextPosY(std::int32_t y);
    std::int16_t Selected() const { return selected_; } // 0: none
    void setSelected(std::int16_t position);            // ignored where there is no such row

    // The properties above, under their names. Reading raises no event and announces nothing.
    void ReadProperties(const PropertyBag& bag);
    void WriteProperties(PropertyBag& bag) const;
    // A property was set: its name, except that a new DragDropZone is announced as "OLEDropMode".
    std::function<void(std::u16string_view name)> PropertyChanged;

    // Nothing where the key is there already, or where the positions are used up.
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
                std::int32_t IconX, std::int32_t IconY); // announces nothing
    void Redraw();
    void DrawItem(std::int16_t position);
    void ChangeFontSize(double newFontSize); // seen from the next repaint on

    bool SuppressKeyboard = false;

    // Something was dropped on the list, which takes nothing by itself.
    std::function<void(ui::DataObject& Data, ui::DropEffect& Effect, std::int16_t Button, std::int16_t Shift, float X,
                       float Y)>
        DragDropAlert;
    // A drag out of this list has ended.
    std::function<void(ui::DropEffect Effect, const CItem& Item)> DragDropCompleted;
    std::function<void()> DblClick, OnSelect; // and Click

    ui::PictureBox P{*this};
    ui::ScrollBar Scroll{*this};

  protected:
    void resized() override;
    std::u16string nameShown() const override { return P.AccessibleName(); }

  private:
    static constexpr std::int16_t last_position = std::numeric_limits<std::int16_t>::max();

    struct MouseDownRecord {
        float x, y;
    };

    template <class T>
    void setAndRedraw(T& property, T value, std::u16string_view name);
    void announce(std::u16string_view name) const;

    bool isRow(int position) const { return position >= 1 && position <= GetItemCount(); }
    int rowTop(int position) const;
    int wholeRows() const; // that fit
    bool wholeInView(std::int16_t position) const;
    void makeVisible(std::int16_t position);
    void updateScroll();
    void layOut();
    void paintRow(std::int16_t position);
    void drawMessage();
    // The keyboard's mark is on the selected row; on the whole list where that is not to be seen.
    bool marksAll() const;
    void markFocus(bool has_focus);
    std::vector<std::u16string> wrappedMessage() const;

    // For screen readers; counted from 0.
    ui::Role partRole() const override { return ui::Role::row; }
    int partCount() const override { return GetItemCount(); }
    std::u16string partName(int index) const override; // both lines
    ui::Rect partPlace(int index) const override;
    int selectedPart() const override { return isRow(selected_) ? selected_ - 1 : -1; }
    void selectPart(int index) override;
    std::u16string partAction() const override { return DblClick ? u"Double Click" : u"Select"; }
    void doPart(int index) override;
    void tellSelection() const;

    void P_MouseDown(float x, float y);
    void P_MouseMove(int button, float x, float y);
    void P_Click();
    bool P_KeyDown(ui::Key key);
    void P_OLEStartDrag(ui::DataObject& data, ui::DropEffect& allowed) const;
    void P_OLECompleteDrag(ui::DropEffect effect) const;

    KeyedCollection<CItem> items_;
    std::u16string no_item_caption_ = u"No Items in List";
    ui::Colour back_color_ = ui::window_background;
    std::int16_t appearance_ = 1;
    std::int16_t drag_drop_zone_ = 0;
    std::int16_t item_height_ = 15;
    std::int16_t selected_ = 0;
    std::int32_t icon_pos_x_ = 0, icon_pos_y_ = 0, caption_pos_x_ = 0, caption_pos_y_ = 0, text_pos_x_ = 1,
                 text_pos_y_ = 1;
    std::optional<MouseDownRecord> mouse_down_;
    bool has_focus_ = false;
    bool repaint_due_ = false; // what is shown is drawn in another font
};

} // namespace murmelix
