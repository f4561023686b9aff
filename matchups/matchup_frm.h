// The matchup window: on the left the contacts that have no character of their own, on the right the characters with
// their contacts. Contacts are given to characters and taken back by dragging or by keyboard; every change is stored at
// once.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "controls/cool_list_box.h"
#include "controls/img_list_box.h"
#include "platform/messenger_api.h"
#include "ui/button.h"
#include "ui/file_list.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/timer.h"

namespace murmelix {

class MatchupFrm : public ui::Form {
  public:
    // The contacts are those of `messenger`, which outlives the window.
    MatchupFrm(ui::Form* owner, platform::MessengerApi& messenger);

    void Form_Load() override;
    void Form_Unload() override;
    // Only DoneButt closes the window.
    void onClose() override { tellHowToLeave(); }
    bool onEscape() override;
    void layOut() override;

    // What it shows is out of date: the matchups are those of another account.
    void Refill();

    void ContactList_DragDropAlert(ui::DataObject& Data, ui::DropEffect& Effect);
    void DoneButt_Click();
    void HelpButt_Click();
    void ContactTimer_Timer();

    ui::Label HintLbl{*this,
                      u"Drag a contact onto the character that is to speak for it, and back to the left to undo that."};
    ui::Label ContactsLbl{*this, u"Contacts &without a character:"};
    CoolListBox ContactList{*this};
    ui::Label CharactersLbl{*this, u"&Characters and their contacts:"};
    ImgListBox MatchUpList{*this};
    ui::Label StatusLbl{*this, u""}; // what has happened last
    ui::Button HelpButt{*this, u"&Help"};
    ui::Button DoneButt{*this, u"&Done"};
    ui::FileList CharzList{u"*.acs"};
    ui::Timer ContactTimer{10}; // while the contacts are being listed

  private:
    void FillMatchupLists();
    static bool FileExists(const std::u16string& path);
    void connectHandlers();
    void listCharacters();
    void listContact(std::int32_t index, const std::shared_ptr<platform::MessengerContacts>& contacts);
    void listMatchups();
    // Those that have been listed by their sign-in names, as nothing else of them was known yet.
    void nameMatchedContacts();
    void addToContactList(const std::u16string& contact);
    std::u16string captionOf(const std::u16string& contact) const;

    ui::Layout contents();
    void layOutContacts();

    // Whether a text that was dropped, by whatever program, is one of the contacts.
    bool isContact(const std::u16string& text) const;
    void takeBack(const std::u16string& contact);
    void takeAlong(const std::u16string& contact);
    bool ContactList_KeyPress(const ui::Shortcut& key);
    bool MatchUpList_PanelKey(const ui::Shortcut& key, std::int16_t position);
    static bool selectByKey(CoolListBox& list, const ui::Shortcut& key);
    void tell(const std::u16string& text);
    void tellHowToLeave();

    platform::MessengerApi& messenger_;
    std::map<std::u16string, std::u16string> captions_; // by sign-in name, of those that were listed so far
    // Of the client's contacts, those from `next_` on are still to be listed. Null until they have been asked for.
    std::shared_ptr<platform::MessengerContacts> contacts_;
    std::int32_t next_ = 0, count_ = 0;
    std::uint32_t filling_ = 0;  // counts the fillings: the calls of each let another one begin
    std::u16string taken_along_; // by keyboard, to be given to a character or taken back; empty: none
};

} // namespace murmelix
