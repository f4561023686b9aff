// The characters as a strip of panels, one below the other: each has a character's name, its picture and the list of
// the contacts matched with it. Contacts are dropped on panels; two buttons slide the strip. Positions count from 1.
//
// As many whole panels as there is room for are in view; page up and page down go from one to the next. A panel's
// windows are made when it comes into view, or when they are asked for: hundreds of panels open at once.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/keyed_collection.h"
#include "controls/c_item.h"
#include "controls/cool_list_box.h"
#include "ui/button.h"
#include "ui/frame.h"
#include "ui/picture_box.h"
#include "ui/timer.h"

namespace murmelix {

class ImgDownFrm;

class ImgListBox : public ui::Frame {
  public:
    explicit ImgListBox(ui::Control& parent);
    ~ImgListBox() override;

    // A panel at the end; nothing where there is one of that key. The file of the character's picture; where it is
    // empty or cannot be shown, the blank picture, which is fetched by a click; "MoreChars": a panel that asks for more
    // characters and takes no drops.
    void AddItem(const std::u16string& ItemIMGFileName, const std::u16string& itemKeyCaption);
    void RemoveItemAtPos(std::int16_t position);
    // A download of a picture ends with them.
    void ClearItems();
    std::int16_t GetListCount() const { return static_cast<std::int16_t>(panels_.Count()); }
    std::int16_t GetPositionFromKey(const std::u16string& key) const; // 0: none
    void FillListsWithMatchupsFromRegistry();

    // CollectionError where there is no such panel.
    ui::Frame& ListFrame(std::int16_t position);
    CoolListBox& ListItems(std::int16_t position); // the contacts; a row's key is the sign-in name
    ui::PictureBox& ItemImage(std::int16_t position);

    // Matches a contact with the character of a panel, as dropping it there does. Does nothing where the text is no
    // contact's name, or where the panel has no character.
    void GiveContact(const std::u16string& contact, std::int16_t position);
    // From the panel that lists it; its matchup stays.
    void RemoveContact(const std::u16string& contact);
    // Brings it into view; the strip slides where it is the next one.
    void ShowPanel(std::int16_t position);
    // The same, and its list has the keyboard.
    void FocusPanel(std::int16_t position);
    void ScrollButt_Click(std::int16_t index); // 0 up, 1 down; nothing while the strip slides
    // Fetches the picture where the panel has the blank one; returns when that is done.
    void ItemImage_Click(std::int16_t position);
    bool Sliding() const { return SlideTimer.Enabled(); }
    // Twips; a thirteenth of it is a step of a slide.
    int PanelHeight() const { return panel_height_; }

    // A contact was matched: whoever lists those without a character takes it off.
    std::function<void(const std::u16string& contact)> ContactGiven;
    // What a row says of a contact; its sign-in name where this is not set.
    std::function<std::u16string(const std::u16string& contact)> CaptionOf;
    // A key in a panel's list, before anybody else hears of it; true when it was of use.
    std::function<bool(const ui::Shortcut& key, std::int16_t position)> PanelKey;
    // Of every panel's list that has a character; set before there are any.
    std::u16string ListToolTipText;

    std::array<ui::Button, 2> ScrollButt{ui::Button(*this, u"Up"), ui::Button(*this, u"Down")};
    // Never seen: they hold the pictures of panels that have none of their own.
    ui::PictureBox BlankItemImg{*this}, MoreCharsItemImg{*this};
    ui::Frame Strip{*this, u"", Border::none}; // what is seen of the panels
    ui::Timer SlideTimer;
    ui::Timer HoldTimer; // of something dragged that stays over a scroll button

  protected:
    void resized() override;

  private:
    struct Windows;
    struct Panel;

    Panel& at(std::int16_t position) const;
    std::int16_t positionOf(const Panel& panel) const;
    Windows& windows(std::int16_t position);
    void connect(Panel& panel);
    void showImage(Panel& panel);
    void layOut(Windows& windows) const;
    void place(std::int16_t position);
    // Places the panels in view, hides the others and tells the buttons.
    void arrange();
    void keepFocusInView(const std::vector<Panel*>& in_view);

    int panelsInView() const;
    int lastFirst() const; // the first panel in view where the last one is in view, from 0
    bool canScroll(std::size_t index) const;
    void slideTo(int first);
    void slideStep();
    void scrollTo(int offset);
    void endSlide();
    void rest();
    void holdOver(std::size_t index, ui::DragState state);

    void drawScrollButt(std::size_t index, ui::Surface& surface, const ui::Button::Looks& looks) const;
    bool panelKey(const ui::Shortcut& key, Panel& panel);
    void turn(int rows);
    std::int16_t panelAt(double y) const; // pixels of the strip; 0: none that takes a drop
    void mark(Panel* panel);              // the one where letting go would drop; null: none
    void markAt(std::optional<double> y); // the same, by a place of the strip that something is dragged over
    void dropOn(std::int16_t position, const ui::DataObject& data, ui::DropEffect& effect);
    std::u16string captionOf(const std::u16string& contact) const;
    void closeDownload();

    KeyedCollection<std::unique_ptr<Panel>> panels_;
    std::vector<Panel*> shown_; // whose frames are visible
    Panel* marked_ = nullptr;
    std::optional<double> dragged_to_; // pixels of the strip, where that is what takes the drop
    int panel_height_;
    int first_ = 0;  // the panel at the top, from 0; the one that a slide leads to
    int offset_ = 0; // twips of the strip above what is in view
    int slide_from_ = 0, slide_step_ = 0;
    int turned_ = 0;                       // by the wheel, less than a notch: rows
    std::optional<std::size_t> held_over_; // a scroll button
    ImgDownFrm* download_ = nullptr;       // that is open
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace murmelix
