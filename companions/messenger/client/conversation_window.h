// The window of a conversation on this computer. After its history, its input and the button "&Send" come the drop-down
// that says as whom one types, the participants, and the button "&Invite".
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "companions/messenger/client/conversation_form.h"
#include "ui/button.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/layout.h"
#include "ui/list_box.h"
#include "ui/rich_text_box.h"
#include "ui/timer.h"

namespace messenger_client {

class ConversationWindow final : public ConversationForm {
  public:
    // Messages that can be seen. Older ones leave the window, some at once: each takes ten thousand bytes there. The
    // conversation's history stays whole.
    static constexpr std::size_t most_shown = 1'000, left_at_once = 50;

    ConversationWindow(Client& client, ConversationPtr conversation, const ui::Rect& place,
                       const EditClasses& edits = {});

    void changed(const Change& change) override;

    ui::DropDownList TypeAs{*this};
    ui::ListBox People{*this};
    ui::Button Invite{*this, u"&Invite"};
    ui::Menu Guests{*this};
    ui::Menu Person{*this};
    ui::MenuItem Leaves{Person, u"&Leaves the conversation"};
    ui::Timer ShowTimer;

    void layOut() override;

  private:
    enum class Style { notice, name, message };
    struct Piece {
        Style style;
        std::u16string text;
    };

    void Send_Click() override;
    void Guests_Popup();
    void Leaves_Click();
    void People_ContextMenu();
    void People_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const;
    void ShowTimer_Tick();

    ui::Layout layout();
    void paint(ui::Surface& surface) const;
    void showPeople();
    void showTitle();
    void onJoined(const ContactPtr& contact);
    void onLeft(const Contact& contact);
    void looksDifferent(const Contact& contact);
    int rowOf(const Contact& contact) const;
    void queue(Style style, std::u16string_view added);
    void show(const Piece& piece);
    void leaveOldOut();

    LineBreaker breaker_;
    std::vector<ContactPtr> people_; // the rows of the list; below oneself the entries of the drop-down
    std::deque<Piece> queued_;       // text of the history that is not shown yet
    std::deque<int> shown_;          // the lengths of the pieces that can be seen; a message is two of them
    std::size_t name_units_ = 0;     // of the next text: the name before a message
};

} // namespace messenger_client
