// The window of one conversation. Its children, in order: the history and the input, both RichEdit20W, the button
// "&Send", the drop-down that says as whom one types, the participants, and the button "&Invite". Other programs type
// by WM_SETTEXT to the input and VK_SPACE to the button.
#pragma once

#include <deque>
#include <vector>

#include "companions/messenger/client/window.h"

namespace messenger_client {

inline constexpr wchar_t conversation_class[] = L"MessengerClientConversation";

class ConversationWindow final : public Window {
  public:
    ConversationWindow(Client& client, ConversationPtr conversation, const RECT& place);

    const ConversationPtr& conversation() const { return conversation_; }
    // Follows a change of the client.
    void changed(const Change& change);

  private:
    enum class Style { notice, name, message };
    struct Piece {
        Style style;
        std::u16string text;
    };

    LRESULT message(UINT message, WPARAM wparam, LPARAM lparam) override;
    void build();
    void arrange();
    void paint();
    void drawParticipant(const DRAWITEMSTRUCT& item);
    void showPeople();
    // With over-long lines parted.
    std::u16string broken(std::u16string_view text);
    void queue(Style style, std::u16string_view added);
    void showQueued();
    void append(const Piece& piece);
    void send();
    // Menus: who is in the list and not in here; what can be done with a participant.
    void chooseGuest();
    void participantMenu(POINT at);
    void removeParticipant();
    static LRESULT CALLBACK inputProcedure(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);

    Client& client_;
    ConversationPtr conversation_;
    FontOwner font_ = systemFont();
    FontOwner bold_ = systemFont(100, FW_BOLD);
    FontOwner title_ = systemFont(125, FW_BOLD);
    HWND history_ = nullptr;
    HWND input_ = nullptr;
    HWND send_ = nullptr;
    HWND as_ = nullptr;
    HWND people_ = nullptr;
    HWND invite_ = nullptr;
    std::vector<ContactPtr> writers_; // the entries of the drop-down
    std::vector<ContactPtr> guests_;  // the entries of the menu of the button "&Invite"
    std::deque<Piece> queued_;        // text of the history that is not shown yet
    std::size_t line_units_ = 0;      // of the last line shown
    std::size_t name_units_ = 0;      // of the next text: the name before a message
};

} // namespace messenger_client
