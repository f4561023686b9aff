// What the client knows: the accounts, who is signed in, the contacts and the conversations. Windows, automation and
// log listen to its changes. No thread of its own; a listener may change the client again.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "companions/messenger/chat/accounts.h"
#include "companions/messenger/chat/contact.h"

namespace messenger_client {

// UTF-16 units of a history: hours of replay at full speed. What would make it longer is not said.
inline constexpr std::size_t longest_history = 64 * 1024 * 1024;

// Conversations that are open: each has a window of six controls, of which a session of Windows has ten thousand.
inline constexpr std::size_t most_conversations = 200;

class LiveTalk;

// A conversation and the text that its window shows; of a live one (see live/talk.h), the part that is to be read. The
// text begins with a line of the client's own; every message is appended as CR LF, "NAME says:", CR LF and its lines,
// parted by CR LF. The text never ends in CR LF.
class Conversation {
  public:
    explicit Conversation(std::vector<ContactPtr> participants, std::shared_ptr<LiveTalk> live = nullptr);

    // In the order in which they came; of a live conversation those on stage, the longest friendly name first, so that
    // no name is taken for another one that begins with it.
    const std::vector<ContactPtr>& participants() const { return participants_; }
    bool has(const Contact& contact) const;
    const std::u16string& history() const { return history_; }
    bool closed() const { return closed_; }
    // Null of one on this computer.
    const std::shared_ptr<LiveTalk>& live() const { return live_; }
    // The handle of the window that shows it; it stays when that is closed.
    std::intptr_t window() const { return window_; }
    void setWindow(std::intptr_t window) { window_ = window; }

    bool hasRoomFor(std::u16string_view text) const { return text.size() <= longest_history - history_.size(); }

  private:
    friend class Client;
    void arrange();
    std::shared_ptr<LiveTalk> live_;
    std::vector<ContactPtr> participants_;
    std::u16string history_;
    bool closed_ = false;
    std::intptr_t window_ = 0;
};
using ConversationPtr = std::shared_ptr<Conversation>;

// The lines of a message: every kind of line end as CR LF, none at the end, NUL as U+FFFD.
std::u16string messageLines(std::u16string_view text);

// How far a sign-in is: a code of the automation interface, which counts as the own status meanwhile.
enum class Stage : long { out = 1, connecting = 0x200, synchronising = 0x300, in = 2 };

// The result of a sign-in that was given up before it ended.
inline constexpr long signin_cancelled = static_cast<std::int32_t>(0x800704C7);

struct Change {
    enum class Kind {
        signing_in, // the stage has become connecting or synchronising
        signed_in,  // number: 0, or the failure (negative)
        signed_out,
        contact_added,   // contact
        contact_removed, // contact
        contact_renamed, // contact, text: name before
        contact_status,  // contact
        my_name,         // text: name before
        my_status,
        unread,           // number: unread mails
        window_created,   // conversation
        window_destroyed, // conversation
        window_joined,    // conversation, contact
        window_left,      // conversation, contact
        text_appended,    // conversation, text: what was appended to the history
        said,             // conversation, contact, text: the message; before its text_appended
        shutting_down,
    };
    Kind kind;
    ContactPtr contact = nullptr;
    ConversationPtr conversation = nullptr;
    std::u16string_view text = {};
    long number = 0;
};

class Client {
  public:
    using Listener = std::function<void(const Change&)>;
    void listen(Listener listener) { listeners_.push_back(std::move(listener)); }

    Accounts& accounts() { return accounts_; }
    const Accounts& accounts() const { return accounts_; }

    Stage stage() const { return stage_; }
    bool signedIn() const { return me_ != nullptr; }
    bool signingIn() const { return stage_ == Stage::connecting || stage_ == Stage::synchronising; }
    const ContactPtr& me() const { return me_; } // null while signed out
    // Ends an earlier sign-in first. An empty friendly name is the one that the account had, of a new one its short
    // name. Contacts added while signed out become the account's.
    void signIn(std::u16string_view signin, std::u16string_view friendly, Status status = Status::online);
    // As somebody of a chat network, who is none of the accounts kept here and has no contacts yet.
    void signInLive(std::u16string_view signin, std::u16string_view friendly, Status status);
    // Signed out first; stages are connecting and synchronising alone.
    void setStage(Stage stage);
    void failSignIn(long result);
    // Closes every conversation; gives up a sign-in that is under way.
    void signOut();
    void setMyStatus(Status status);
    void setMyName(std::u16string_view friendly);
    void setUnread(long count);
    long unread() const { return unread_; }

    const std::vector<ContactPtr>& contacts() const { return contacts_; }
    // The contact, or the own account, of a sign-in name (letter case ignored); null where there is none.
    ContactPtr find(std::u16string_view signin) const;
    // The contact of that name, added where it is new; null where there are most_contacts already.
    ContactPtr addContact(std::u16string_view signin, std::u16string_view friendly, Status status = Status::online);
    // Leaves the contact in its conversations.
    void removeContact(const ContactPtr& contact);
    // Names of the own account too.
    void rename(const ContactPtr& contact, std::u16string_view friendly);
    void setStatus(const ContactPtr& contact, Status status);

    const std::vector<ConversationPtr>& conversations() const { return conversations_; }
    // The conversation with exactly this contact, or a new one. Null where there are most_conversations already; so is
    // open.
    ConversationPtr openWith(const ContactPtr& contact);
    // One that a listener cannot show, and throws of, is closed again.
    ConversationPtr open(std::vector<ContactPtr> participants, std::shared_ptr<LiveTalk> live = nullptr);
    void close(const ConversationPtr& conversation);
    void join(const ConversationPtr& conversation, const ContactPtr& contact);
    void leave(const ConversationPtr& conversation, const ContactPtr& contact);
    // False, and nothing is said, where the text has no line or the history no room.
    bool say(const ConversationPtr& conversation, const ContactPtr& writer, std::u16string_view text);
    // Raw text at the end of the history; false where it has no room, or the conversation is closed.
    bool append(const ConversationPtr& conversation, std::u16string_view text);

    // Puts what there is to know of the account that is signed in into the accounts; not of one of a chat network.
    void keepAccount();
    // How a conversation with one contact is opened while somebody of a chat network is signed in; may give null.
    using Opener = std::function<ConversationPtr(const ContactPtr& contact)>;
    void setOpener(Opener opener) { opener_ = std::move(opener); }

    void shutDown();

  private:
    void tell(const Change& change);
    void enter();
    void leaveAccount();
    // False where it is known already, or one too many.
    bool keep(const ContactPtr& contact);

    std::vector<Listener> listeners_;
    Accounts accounts_;
    Stage stage_ = Stage::out;
    ContactPtr me_;
    bool live_ = false; // signed in to a chat network
    Opener opener_;
    long unread_ = 0;
    std::vector<ContactPtr> contacts_;
    std::unordered_map<std::u16string, ContactPtr> by_signin_; // the same, by sign-in name in lower case
    std::vector<ConversationPtr> conversations_;
};

} // namespace messenger_client
