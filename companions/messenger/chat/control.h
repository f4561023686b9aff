// Control of a running client by another program, for tests and demonstrations: one command a line of UTF-8, sent as
// WM_COPYDATA (dwData control_message) to the main window, class "MessengerClientMain". The answer is a Result.
// Words are parted by single blanks; the last argument runs to the end of the line, with the escapes of escapes.h.
// SIGNIN is a sign-in name; "me" means the own account.
//
//   say SIGNIN TEXT          a message in the current conversation     append TEXT      raw text at the end of its
//   history fill UNITS               raw lines, that many UTF-16 units         join SIGNIN [NAME]       part SIGNIN
//   rename SIGNIN NAME       status SIGNIN CODE                        add SIGNIN NAME  remove SIGNIN (contact list)
//   open SIGNIN              a conversation; it is the current one     use NUMBER       the conversation opened
//   NUMBERth, from 1 close                    the current conversation                  replay start signin SIGNIN NAME
//   signin-fail CODE                          signout          unread COUNT hang MS [MEMBER]         the next
//   automation call (of that member) blocks for MS fail CODE COUNT [MEMBER] the next COUNT calls fail with that
//   HRESULT, hexadecimal vanish [MEMBER]          the process ends in the middle of the next call heal forgets hang,
//   fail and vanish shutdown                 ends the client, telling its listeners    exit             ends the
//   process at once
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/chat/client.h"

namespace messenger_client {

inline constexpr unsigned long control_message = 0x4D534731;

enum class Result : int { done = 1, unknown_command = 2, bad_arguments = 3, refused = 4, failed = 5 };

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
        std::function<void()> shut_down;
        std::function<void()> exit;
    };
    Control(Client& client, Faults& faults, Hooks hooks) : client_(client), faults_(faults), hooks_(std::move(hooks)) {}

    Result execute(std::string_view line);

  private:
    Result run(std::u16string_view command, std::u16string_view rest);
    ConversationPtr current() const;
    ContactPtr who(std::u16string_view signin) const;

    Client& client_;
    Faults& faults_;
    Hooks hooks_;
    ConversationPtr used_;
};

} // namespace messenger_client
