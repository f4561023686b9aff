// What the client knows: the own account, the contacts and the conversations. Windows, automation and log listen to its
// changes. No thread of its own; a listener may change the client again.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace messenger_client {

// The codes of the automation interface.
enum class Status : long {
    unknown = 0,
    offline = 1,
    online = 2,
    invisible = 6,
    busy = 10,
    be_right_back = 14,
    idle = 18,
    away = 34,
    on_the_phone = 50,
    out_to_lunch = 66,
};

// Text for people; empty for a code that no one can have.
std::u16string_view nameOf(Status status);
bool isStatus(long code);

struct Contact {
    std::u16string signin;
    std::u16string friendly;
    Status status = Status::offline;
    bool blocked = false;
};
using ContactPtr = std::shared_ptr<Contact>;

// A conversation and the text that its window shows. The text begins with a line of the client's own; every message is
// appended as CR LF, "NAME says:", CR LF and its lines, parted by CR LF. The text never ends in CR LF.
class Conversation {
  public:
    explicit Conversation(std::vector<ContactPtr> participants);

    const std::vector<ContactPtr>& participants() const { return participants_; }
    bool has(const Contact& contact) const;
    const std::u16string& history() const { return history_; }
    bool closed() const { return closed_; }
    // The handle of the window that shows it; it stays when that is closed.
    std::intptr_t window() const { return window_; }
    void setWindow(std::intptr_t window) { window_ = window; }

  private:
    friend class Client;
    std::vector<ContactPtr> participants_;
    std::u16string history_;
    bool closed_ = false;
    std::intptr_t window_ = 0;
};
using ConversationPtr = std::shared_ptr<Conversation>;

// The lines of a message: every kind of line end as CR LF, none at the end, NUL as U+FFFD.
std::u16string messageLines(std::u16string_view text);
// A name on one line: line ends and NULs as blanks.
std::u16string oneLine(std::u16string_view text);

struct Change {
    enum class Kind {
        signed_in, // number: 0, or the failure (negative)
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

    bool signedIn() const { return me_ != nullptr; }
    const ContactPtr& me() const { return me_; } // null while signed out
    // Ends an earlier sign-in first. An empty friendly name is the part of the sign-in name before the "@".
    void signIn(std::u16string_view signin, std::u16string_view friendly);
    void failSignIn(long result);
    // Closes every conversation.
    void signOut();
    void setMyStatus(Status status);
    void setMyName(std::u16string_view friendly);
    void setUnread(long count);
    long unread() const { return unread_; }

    const std::vector<ContactPtr>& contacts() const { return contacts_; }
    // The contact, or the own account, of a sign-in name (letter case ignored); null where there is none.
    ContactPtr find(std::u16string_view signin) const;
    // The contact of that name, added where it is new.
    ContactPtr addContact(std::u16string_view signin, std::u16string_view friendly, Status status = Status::online);
    // Leaves the contact in its conversations.
    void removeContact(const ContactPtr& contact);
    // Names of the own account too.
    void rename(const ContactPtr& contact, std::u16string_view friendly);
    void setStatus(const ContactPtr& contact, Status status);

    const std::vector<ConversationPtr>& conversations() const { return conversations_; }
    // The conversation with exactly this contact, or a new one.
    ConversationPtr openWith(const ContactPtr& contact);
    ConversationPtr open(std::vector<ContactPtr> participants);
    void close(const ConversationPtr& conversation);
    void join(const ConversationPtr& conversation, const ContactPtr& contact);
    void leave(const ConversationPtr& conversation, const ContactPtr& contact);
    // False, and nothing is said, where the text has no line.
    bool say(const ConversationPtr& conversation, const ContactPtr& writer, std::u16string_view text);
    // Raw text at the end of the history.
    void append(const ConversationPtr& conversation, std::u16string_view text);

    void shutDown();

  private:
    void tell(const Change& change);

    std::vector<Listener> listeners_;
    ContactPtr me_;
    long unread_ = 0;
    std::vector<ContactPtr> contacts_;
    std::vector<ConversationPtr> conversations_;
};

} // namespace messenger_client
