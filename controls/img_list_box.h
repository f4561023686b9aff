// The characters as a strip of panels, one below the other: each has a character's name, its picture and the list of
// the contacts matched with it. Contacts are dropped on panels; two buttons slide the strip. Positions count from 1.
//
// A panel's windows are made when they come into view, or are asked for: hundreds of panels open at once.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
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

class ImgListBox : public ui::Frame {
  public:
    explicit ImgListBox(ui::Control& parent);
    ~ImgListBox() override;

    // A panel at the end; nothing where there is one of that key. The file of the character's picture; where it is
    // empty or cannot be shown, the blank picture, which is fetched by a click; "MoreChars": a panel that asks for more
    // characters and takes no drops.
    void AddItem(const std::u16string& ItemIMGFileName, const std::u16string& itemKeyCaption);
    void RemoveItemAtPos(std::int16_t position);
    void ClearItems();
    std::int16_t GetListCount() const { return static_cast<std::int16_t>(panels_.Count()); }
    std::int16_t GetPositionFromKey(const std::u16string& key) const; // 0: none
    void FillListsWithMatchupsFromRegistry();

    // CollectionError where there is no such panel.
    ui::Frame& ListFrame(std::int16_t position);
    CoolListBox&
    ListItems(std::int16_t position); // the contacts matched with the character; a row's key is the contact
    ui::PictureBox& ItemImage(std::int16_t position);

    // Matches a contact with the character of a panel, as dropping it there does. An empty name does nothing, nor does
    // a panel without a character.
    void GiveContact(const std::u16string& contact, std::int16_t position);
    // From the panel that lists it; its matchup stays.
    void RemoveContact(const std::u16string& contact);
    // Slides as far as it takes to have all of it in view.
    void ShowPanel(std::int16_t position);
    // Gives the keyboard to its list, in view.
    void FocusPanel(std::int16_t position);
    void ScrollButt_Click(std::int16_t index); // 0 up, 1 down; nothing while the strip slides
    void ItemImage_Click(std::int16_t position);
    bool Sliding() const { return slide_.Enabled(); }

    // A contact was matched by a drop: whoever lists those without a character takes it off.
    std::function<void(const std::u16string& contact)> ContactGiven;
    // What a row says of a contact; its sign-in name where this is not set.
    std::function<std::u16string(const std::u16string& contact)> CaptionOf;
    // A key in a panel's list, before anybody else hears of it; true when it was of use.
    std::function<bool(const ui::Shortcut& key, std::int16_t position)> PanelKey;

    // Twips that a panel takes: a thirteenth of the height is a step of a slide.
    int PanelHeight() const;

    std::array<ui::Button, 2> ScrollButt{ui::Button(*this, u""), ui::Button(*this, u"")};

  protected:
    void resized() override;

  private:
    struct Windows;
    struct Panel;

    KeyedCollection<std::unique_ptr<Panel>> panels_;
    ui::Frame strip_{*this, u"", Border::none};
    ui::Timer slide_;
};

} // namespace murmelix
