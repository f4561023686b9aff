#include "companions/messenger/irc/outbox.h"

#include <utility>

namespace messenger_client::irc {

std::optional<OutgoingLine> Outbox::next(long long now) {
    if (lines_.empty() || !pace_.take(now)) {
        return std::nullopt;
    }
    OutgoingLine line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

} // namespace messenger_client::irc
