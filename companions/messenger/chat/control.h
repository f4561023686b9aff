// Control of a running client by another program, for tests and demonstrations: one command a line of UTF-8, sent as
// WM_COPYDATA (dwData control_message) to the main window, class "MessengerClientMain". The answer is a Result. A
// client that was not started with /orders (see switches.h) takes none: anybody on the desktop can send them, and they
// make it hang, vanish and speak for its user. Words are parted by single blanks; the last argument runs to the end of
// the line, with the escapes of escapes.h. SIGNIN is a sign-in name; "me" means the own account.
//
// Conversations (commands act on the current one):
//   open SIGNIN [NAME]       a new one with that contact, added to the list where it is new; it is the current one
//   use NUMBER               the conversation opened NUMBERth, from 1, is the current one
//   say SIGNIN TEXT          a message
//   append TEXT              raw text at the end of the history
//   fill UNITS               raw lines at the end of the history, that many UTF-16 units
//   join SIGNIN [NAME]
//   part SIGNIN
//   close
//   replay start             begins the replay that waits
// People:
//   rename SIGNIN NAME
//   status SIGNIN CODE
//   add SIGNIN NAME          to the contact list
//   remove SIGNIN            from it
//   unread COUNT             of mails
//   untouched SECONDS        as if keyboard and mouse had not been touched for so long; "untouched real": as it is
// Signing in and accounts:
//   signin SIGNIN [NAME]     at once, as online
//   signin-fail CODE         a sign-in that fails at once with that HRESULT, hexadecimal
//   connect SIGNIN [NAME]    as the window does it: connecting (0x200), synchronising (0x300), signed in
//   signing hold             sign-ins of the window, "connect", and automation stay connecting from now on;
//   signing free             they go on by the clock again (see /connect in switches.h)
//   signing next             the sign-in that is under way enters its next stage
//   signing finish           it succeeds
//   signing fail CODE        it fails with that HRESULT, hexadecimal
//   signing cancel           it is given up, as by the window's "Cancel"
//   signout
//   accounts remember SIGNIN [NAME]    so that the window proposes it
//   accounts automatic SIGNIN          and signs it in when the client starts
//   accounts has SIGNIN                refused where it is not remembered
//   accounts forget SIGNIN             refused where it is not known
// The program:
//   window hide              into the notification area; so "show" and "minimise"
//   shutdown                 ends the client, telling its listeners
//   exit                     ends the process at once
//   delivered                refused while a listener has not yet dealt with every event
// Faults:
//   hang MS [MEMBER]         the next automation call (of that member) blocks for MS
//   fail CODE COUNT [MEMBER] the next COUNT calls fail with that HRESULT, hexadecimal
//   vanish [MEMBER]          the process ends in the middle of the next call
//   heal                     forgets hang, fail and vanish
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/signing_in.h"

namespace messenger_client {

inline constexpr unsigned long control_message = 0x4D534731;

enum class Result : int { done = 1, unknown_command = 2, bad_arguments = 3, refused = 4, failed = 5, no_orders = 6 };

// Bytes of a command: a message of a million units, every one of them escaped, is far below it.
inline constexpr std::size_t longest_order = 16 * 1024 * 1024;

// What is done to automation calls.
struct Fault {
    enum class Kind { hang, fail, vanish };
    Kind kind;
    long amount;           // milliseconds, or an HRESULT
    int count;             // calls left
    std::u16string member; // empty: any
};

// The fault of a call of that member, counted as used; null where there is none.
class Faults {
  public:
    void add(Fault fault) { faults_.push_back(std::move(fault)); }
    void clear() { faults_.clear(); }
    bool empty() const { return faults_.empty(); }
    std::vector<Fault> take(std::u16string_view member);

  private:
    std::vector<Fault> faults_;
};

class Control {
  public:
    struct Hooks {
        std::function<bool()> start_replay; // false where there is none
        std::function<void(const std::u16string& signin, const std::u16string& friendly)> connect;
        std::function<void()> accounts_changed; // which are remembered
        std::function<void(std::optional<long long> milliseconds)> untouched;
        std::function<bool(std::u16string_view deed)> window; // false where the deed is not known
        std::function<void()> shut_down;
        std::function<void()> exit;
        std::function<bool()> delivered; // whether all events are
    };
    // `clock` gives milliseconds, for the sign-ins.
    Control(Client& client, SigningIn& signing, Faults& faults, std::function<long long()> clock, Hooks hooks)
        : client_(client), signing_(signing), faults_(faults), clock_(std::move(clock)), hooks_(std::move(hooks)) {}

    // From now on execute carries orders out.
    void takeOrders() { takes_orders_ = true; }
    Result execute(std::string_view line);

  private:
    Result run(std::u16string_view command, std::u16string_view rest);
    ConversationPtr current() const;
    ContactPtr who(std::u16string_view signin) const;

    Result sign(std::u16string_view deed, std::u16string_view rest);
    Result account(std::u16string_view deed, std::u16string_view rest);

    Client& client_;
    SigningIn& signing_;
    Faults& faults_;
    std::function<long long()> clock_;
    Hooks hooks_;
    ConversationPtr used_;
    bool takes_orders_ = false;
};

} // namespace messenger_client
