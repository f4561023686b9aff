// The window of one conversation. Its children, in order: the history and the input (see the switch /edits), the button
// "&Send", the drop-down that says as whom one types, the participants, and the button "&Invite". Other programs type
// by WM_SETTEXT to the input and VK_SPACE to the button.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/looks.h"
#include "ui/button.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/layout.h"
#include "ui/list_box.h"
#include "ui/rich_text_box.h"
#include "ui/timer.h"

namespace messenger_client {

inline constexpr char16_t conversation_class[] = u"MessengerClientConversation";

// Sides that were asked for; pixels of the screen.
struct WantedPlace {
    std::optional<int> left, top, width, height;
};
// Where the window that is opened when there are `others` stands, in pixels, beside the one before it: where the user
// has left one last, else beside the main window, below what a character and its balloon take above it where the screen
// has so much. `last` is wholly in the work area.
ui::Rect placeOfConversation(const ui::Rect& work_area, std::size_t others, const WantedPlace& wanted,
                             const std::optional<ui::Rect>& last);

class ConversationWindow final : public ui::Form {
  public:
    ConversationWindow(Client& client, ConversationPtr conversation, const ui::Rect& place,
                       const EditClasses& edits = {});

    const ConversationPtr& conversation() const { return conversation_; }
    // Keeps its place for the next one, where the user has given it another.
    void rememberPlace() const;
    // Follows a change of the client.
    void changed(const Change& change);

    ui::RichTextBox History;
    ui::RichTextBox Input;
    ui::Button Send{*this, u"&Send"};
    ui::DropDownList TypeAs{*this};
    ui::ListBox People{*this};
    ui::Button Invite{*this, u"&Invite"};
    ui::Menu Guests{*this};
    ui::Menu Person{*this};
    ui::MenuItem Leaves{Person, u"&Leaves the conversation"};
    ui::Timer ShowTimer;

    void onClose() override;
    bool onEscape() override;
    void layOut() override;

  private:
    enum class Style { notice, name, message };
    struct Piece {
        Style style;
        std::u16string text;
    };

    bool Input_KeyPress(const ui::Shortcut& key);
    void Send_Click();
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
    // With over-long lines parted.
    std::u16string broken(std::u16string_view text);
    void queue(Style style, std::u16string_view added);

    Client& client_;
    ConversationPtr conversation_;
    ui::Rect first_place_;           // pixels
    std::vector<ContactPtr> people_; // the rows of the list; below oneself the entries of the drop-down
    std::deque<Piece> queued_;       // text of the history that is not shown yet
    std::size_t line_units_ = 0;     // of the last line shown
    std::size_t name_units_ = 0;     // of the next text: the name before a message
};

} // namespace messenger_client
