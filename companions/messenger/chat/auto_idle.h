// When the own status becomes idle by itself, and ends being so.
#pragma once

#include <optional>

#include "companions/messenger/chat/contact.h"

namespace messenger_client {

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
