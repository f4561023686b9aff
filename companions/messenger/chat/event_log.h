// A record of what happened, one line an event, written at once:
//   MICROSECONDS TAB SECONDS TAB KIND TAB SIGN-IN TAB TEXT
// MICROSECONDS of the system's performance counter (the same in every process), SECONDS since the log was opened. KIND
// is
//   message (who, the message)   join, leave (who, name)      rename (who, new name)
//   window (opened|closed), after "opened" a line present (who, name) for everyone who takes part
//   signin (own account, name), signout       done: the replay is finished
//   signing (connecting|synchronising)       signin-failed (, code, hexadecimal)       unread (own account, count)
//   offered: programs can find the client       shutdown
//   fault (, why a chat network could not be entered)       read (, the title): a program has begun to read the history
//   of a live conversation
// TEXT is escaped as in escapes.h.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <string_view>

#include "companions/messenger/chat/client.h"

namespace messenger_client {

class EventLog {
  public:
    // `clock` gives microseconds.
    explicit EventLog(std::function<long long()> clock) : clock_(std::move(clock)) {}
    // False where the file cannot be written.
    bool open(const std::filesystem::path& file);
    void write(std::string_view kind, std::u16string_view signin, std::u16string_view text);
    void write(const Change& change, const Client& client);

  private:
    std::function<long long()> clock_;
    long long start_ = 0;
    std::ofstream file_;
};

} // namespace messenger_client
