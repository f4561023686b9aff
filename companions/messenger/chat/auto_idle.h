// When the own status becomes idle by itself, and ends being so.
#pragma once

#include <cstdint>
#include <optional>

#include "companions/messenger/chat/contact.h"

namespace messenger_client {

// How long keyboard and mouse have not been touched, of a system that tells the time of the last input in 32 bits of
// milliseconds, which begin anew after 49.7 days. It has to be asked more often than that.
class LastInput {
  public:
    // Milliseconds since the last input, at the time `now` (milliseconds since any moment, of which `last_input` has
    // the low 32 bits). The first question counts as an input itself: where nothing was touched yet there is none. An
    // input can be a little ahead of `now`, which moves in steps.
    long long since(long long now, std::uint32_t last_input);

  private:
    std::uint32_t last_input_ = 0;
    std::optional<long long> touched_;
};

class AutoIdle {
  public:
    // Milliseconds without a touch; 0: never.
    explicit AutoIdle(long long after = 0) : after_(after) {}
    void setAfter(long long after) { after_ = after; }
    // The status to take, where it has to change. Online alone becomes idle, and only what became so here ends with the
    // next touch.
    std::optional<Status> look(Status now, long long untouched);

  private:
    long long after_;
    bool own_idle_ = false;
};

} // namespace messenger_client
