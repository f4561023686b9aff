#include "companions/messenger/chat/auto_idle.h"

#include <algorithm>

namespace messenger_client {

long long LastInput::since(long long now, std::uint32_t last_input) {
    if (!touched_) {
        touched_ = now;
    } else if (last_input != last_input_) {
        const auto ago = static_cast<std::int32_t>(static_cast<std::uint32_t>(now) - last_input);
        touched_ = std::max(*touched_, now - std::max(ago, 0));
    }
    last_input_ = last_input;
    return std::max(now - *touched_, 0LL);
}

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
