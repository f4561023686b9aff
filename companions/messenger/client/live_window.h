// The window of a conversation of a chat network. It shows everything that is said; what is not read aloud, or not yet,
// is grey.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companions/messenger/client/conversation_form.h"
#include "companions/messenger/client/live_view.h"
#include "companions/messenger/client/reading_page.h"
#include "companions/messenger/live/talk.h"
#include "ui/button.h"
#include "ui/layout.h"
#include "ui/list_box.h"
#include "ui/menu.h"
#include "ui/text_box.h"
#include "ui/timer.h"

namespace messenger_client {

class LiveWindow final : public ConversationForm {
  public:
    struct Hooks {
        std::function<void(const std::u16string& address)> open_link;
        std::function<void(LiveWindow& window)> keep_log;
        std::function<void()> reconnect;
    };
    LiveWindow(Client& client, ConversationPtr conversation, Hooks hooks, const ui::Rect& place,
               const EditClasses& edits = {});
    ~LiveWindow() override;

    LiveTalk& talk() const { return *conversation()->live(); }
    void changed(const Change& change) override;

    ui::ListBox People{*this};
    ui::Button RulesButt{*this, u"&What is read…"};
    ui::TextBox FindTxt{*this, u""};
    ui::Button FindNextButt{*this, u"&Next"};
    ui::Button FindPreviousButt{*this, u"Pre&vious"};

    ui::Menu TalkMenu{*this, u"&Conversation"};
    ui::MenuItem TalkMenuRules{TalkMenu, u"&What is read aloud…"};
    ui::MenuItem TalkMenuFind{TalkMenu, u"&Find…", {u'F', ui::control_key}};
    ui::Menu TalkMenuLinks{TalkMenu, u"&Open a link"}; // of the last lines, the newest first
    ui::MenuItem TalkMenuLog{TalkMenu, u"&Keep a log in a file…"};
    ui::MenuItem TalkMenuSep1{TalkMenu, u"-"};
    ui::MenuItem TalkMenuReconnect{TalkMenu, u"Connect &again"};
    ui::MenuItem TalkMenuLeave{TalkMenu, u"&Leave", {u'W', ui::control_key}};
    // Of whoever is selected in the list: in the bar, and where it is asked for.
    struct PersonMenu {
        PersonMenu(LiveWindow& window, ui::Menu& menu);
        ui::MenuItem Talk, Pin, Ignore, Choose;
    };
    ui::Menu PeopleMenu{*this, u"&Person"};
    PersonMenu PeopleMenuItems{*this, PeopleMenu};
    ui::Menu PersonPopup{*this};
    PersonMenu PersonPopupItems{*this, PersonPopup};

    std::unique_ptr<ReadingPage> RulesPage; // null until it is needed first

    ui::Timer ShowTimer, PeopleTimer;

    bool onEscape() override;
    bool onActivate() override;
    void onDeactivate() override;
    void layOut() override;

  private:
    void Send_Click() override;
    void ShowTimer_Tick();
    void PeopleTimer_Tick();
    void People_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const;
    void People_ContextMenu();
    void RulesButt_Click();
    void TalkMenuLinks_Popup();
    bool FindTxt_KeyPress(const ui::Shortcut& key);

    const LivePerson* selected() const;
    // Puts who is selected on the list, or takes them from it.
    void list(reading::People reading::Rules::*people);
    void find(bool back);
    void showFind(bool shown);
    void showTitle();
    ui::Layout layout();
    void paint(ui::Surface& surface) const;

    Hooks hooks_;
    LiveView view_{History, talk()};
    std::vector<LivePerson> people_; // the rows of the list
    bool finding_ = false;
};

} // namespace messenger_client
