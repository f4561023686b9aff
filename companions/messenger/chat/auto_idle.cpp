#include "companions/messenger/chat/auto_idle.h"

namespace messenger_client {

std::optional<Status> AutoIdle::look(Status now, long long untouched) {
    const bool away_from_keys = after_ > 0 && untouched >= after_;
    if (now != Status::idle) {
        own_idle_ = false;
    }
    if (now == Status::online && away_from_keys) {
        own_idle_ = true;
        return Status::idle;
    }
    if (own_idle_ && !away_from_keys) {
        own_idle_ = false;
        return Status::online;
    }
    return std::nullopt;
}

} // namespace messenger_client
