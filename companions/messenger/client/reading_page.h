// What of a conversation is read: all options on one page, and what they make of its last lines. What is changed holds
// at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "companions/messenger/client/looks.h"
#include "companions/messenger/reading/reader.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/list_box.h"
#include "ui/menu.h"
#include "ui/tab_pages.h"
#include "ui/text_box.h"
#include "ui/timer.h"

namespace messenger_client {

class ReadingPage final : public ui::Form {
  public:
    struct Hooks {
        std::function<reading::Rules()> rules;
        std::function<void(const reading::Rules& rules)> changed; // by the user
        std::function<std::vector<reading::Line>()> lines;        // the conversation's last ones, at most most_lines
        std::function<reading::Surroundings()> surroundings;
    };
    static constexpr std::size_t most_lines = 100;

    // `conversation`: what its window is called.
    ReadingPage(ui::Form& owner, const std::u16string& conversation, Hooks hooks);
    // Shows it, with everything as it is.
    void present();
    // Lines have come, or the rules were changed elsewhere; of use while it is shown.
    void linesChanged();
    void rulesChanged();
    void onClose() override { Hide(); }
    void layOut() override;

    ui::TabPages Pages{*this};
    ui::TabPage LinesPage{Pages, u"Lines"}, PeoplePage{Pages, u"People"}, WordsPage{Pages, u"Words"};

    ui::Label PaceLbl{LinesPage, u"Lines a &minute, at most:"};
    ui::DropDownList PaceList{LinesPage};
    ui::Label LengthLbl{LinesPage, u"&Characters a line, at most:"};
    ui::DropDownList LengthList{LinesPage};
    ui::Label LinksLbl{LinesPage, u"Lin&ks:"};
    ui::DropDownList LinksList{LinesPage};
    ui::Label EmojiLbl{LinesPage, u"&Emoji that are not acted:"};
    ui::DropDownList EmojiList{LinesPage};
    ui::CheckBox ShortenCheck{LinesPage, u"&Shorten long numbers, rows of signs, and words in a row"};
    ui::CheckBox NameCheck{LinesPage, u"Say the &name when the writer changes"};
    ui::Frame UnreadFrame{LinesPage, u"Do not read"};
    ui::CheckBox BotsCheck{UnreadFrame, u"lines of &bots"};
    ui::CheckBox CommandsCheck{UnreadFrame, u"c&ommands, such as !song"};
    ui::CheckBox RepeatedCheck{UnreadFrame, u"what was said just before, or near&ly so"};
    ui::CheckBox AddressedCheck{UnreadFrame, u"lines that begin with ano&ther's name"};
    ui::CheckBox NoticesCheck{UnreadFrame, u"not&ices of servers and programs"};
    ui::CheckBox AnnouncementsCheck{UnreadFrame, u"&announcements, such as subscriptions"};
    ui::CheckBox OwnCheck{UnreadFrame, u"m&y own lines"};

    ui::Label WhoLbl{PeoplePage, u"&Read lines of:"};
    ui::DropDownList WhoList{PeoplePage};
    ui::CheckBox ModeratorsCheck{PeoplePage, u"&moderators"};
    ui::CheckBox SubscribersCheck{PeoplePage, u"&subscribers"};
    ui::CheckBox ChosenCheck{PeoplePage, u"&chosen people"};
    ui::Frame PeopleFrame{PeoplePage, u"&Who writes here"};
    ui::ListBox PeopleList{PeopleFrame};
    ui::CheckBox IgnoreCheck{PeopleFrame, u"&Do not read"};
    ui::CheckBox ChooseCheck{PeopleFrame, u"Ch&osen"};
    ui::CheckBox PinCheck{PeopleFrame, u"&Keep on stage"};
    ui::Label SeatsLbl{PeoplePage, u"Characters on s&tage, at most:"};
    ui::DropDownList SeatsList{PeoplePage};
    ui::CheckBox ShareCheck{PeoplePage, u"&Everyone else shares one of them"};

    ui::Label WordLbl{WordsPage, u"&Word:"};
    ui::TextBox WordTxt{WordsPage, u""};
    ui::Label ReplacementLbl{WordsPage, u"&Read instead, or nothing:"};
    ui::TextBox ReplacementTxt{WordsPage, u""};
    ui::Button AddButt{WordsPage, u"&Add"};
    ui::Frame WordsFrame{WordsPage, u"Li&st of words"};
    ui::ListBox WordsList{WordsFrame};
    ui::Button RemoveButt{WordsFrame, u"Re&move"};

    ui::Label PreviewLbl{*this, u""};
    ui::ListBox PreviewList{*this};
    ui::Button UsualButt{*this, u"&Usual Settings"};
    ui::Button CloseButt{*this, u"Close"};

    ui::Menu PersonMenu{*this};
    ui::MenuItem PersonMenuIgnore{PersonMenu, u"&Do not read"};
    ui::MenuItem PersonMenuChoose{PersonMenu, u"&Chosen"};
    ui::MenuItem PersonMenuPin{PersonMenu, u"&Keep on stage"};
    ui::Timer PreviewTimer;

  private:
    void connectLines();
    void connectPeople();
    void connectWords();
    // Sets a rule by a box; of an unread kind the box says the opposite.
    void flag(ui::CheckBox& box, bool reading::Rules::*rule, bool opposite = false);
    void number(ui::DropDownList& list, std::vector<int>& shown, int reading::Rules::*rule);
    ui::Layout linesLayout();
    ui::Layout peopleLayout();
    ui::Layout wordsLayout();

    void showRules();
    void showNumbers(ui::DropDownList& list, std::vector<int>& shown, std::vector<int> usual, int value);
    void showWho();
    void showPeople();
    void showPerson();
    void showWords();
    void showPreview();
    // The user has changed the rules.
    void changed();

    void WhoList_Click();
    void AddButt_Click();
    void RemoveButt_Click();
    void WordsList_Click();
    void UsualButt_Click();
    void PreviewList_ContextMenu();
    void mark(const reading::ListedPerson& person, reading::People reading::Rules::*people, bool listed);
    void markSelected(ui::CheckBox& box, reading::People reading::Rules::*people);
    const reading::ListedPerson* selectedPerson() const;
    // Who has written the line that is selected in the preview.
    reading::ListedPerson writerSelected() const;

    void PreviewList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const;
    void PeopleList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const;
    void WordsList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const;

    Hooks hooks_;
    reading::Rules rules_;
    std::vector<reading::Line> lines_;
    std::vector<reading::Previewed> previewed_; // of each
    reading::People people_;                    // the rows of their list
    std::vector<int> paces_, lengths_, seats_;  // as they are listed
    bool showing_ = false;                      // what changes then is not the user's doing
};

} // namespace messenger_client
