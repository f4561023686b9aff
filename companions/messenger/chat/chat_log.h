// Chat logs: UTF-8 text, one event a line.
//   [04:53] <nick> text                 nick says text
//   [04:54]  * nick text                nick acts
//   === nick [host]  has joined #room   (also "has left #room", "has quit", "was kicked off #room"; [host] may be
//   missing)
//   === a is now known as b
// Lines end in LF or CR LF. Damaged bytes become U+FFFD; lines of any other form are skipped.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace messenger_client {

struct LogEvent {
    enum class Kind { says, acts, joins, leaves, renames };

    Kind kind;
    // Minutes since the midnight before the first line (see LogClock). Lines without a time happen at the time of the
    // line before.
    long long minute;
    std::u16string nick;
    std::u16string text; // what is said or done; the new name of a rename; else empty
};

// Makes the times of day of a log's lines into minutes since the midnight before the first. They never fall: past
// midnight they count on, and a clock that was set back stands still.
class LogClock {
  public:
    // `of_day` in minutes, less than a day's.
    long long pass(int of_day);
    std::optional<long long> now() const { return now_; }

  private:
    std::optional<long long> now_;
};

std::vector<LogEvent> parseChatLog(std::string_view bytes);

} // namespace messenger_client
