// Chat logs: UTF-8 text, one event a line.
//   [04:53] <nick> text                 nick says text
//   [04:54]  * nick text                nick acts
//   === nick [host]  has joined #room   (also "has left #room", "has quit", "was kicked off #room"; [host] may be
//   missing)
//   === a is now known as b
// Lines end in LF or CR LF. Damaged bytes become U+FFFD; lines of any other form are skipped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace messenger_client {

struct LogEvent {
    enum class Kind { says, acts, joins, leaves, renames };

    Kind kind;
    // Minutes since the midnight before the first line. It never falls: past midnight it counts on, and a clock that
    // was set back stands still. Lines without a time happen at the time of the line before.
    int minute;
    std::u16string nick;
    std::u16string text; // what is said or done; the new name of a rename; else empty
};

std::vector<LogEvent> parseChatLog(std::string_view bytes);

} // namespace messenger_client
