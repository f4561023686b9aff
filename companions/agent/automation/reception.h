// Where clients come in. The class is offered by a thread of its own outside the server's apartment, for only there the
// process of a client that asks for a control can be told; the control itself is made in the server's apartment.
#pragma once

#include <future>
#include <thread>

#include "companions/agent/automation/server.h"

namespace agent::automation {

class Reception {
  public:
    // Throws Error where the class cannot be offered.
    explicit Reception(Server& server);
    ~Reception();
    Reception(const Reception&) = delete;
    Reception& operator=(const Reception&) = delete;

  private:
    Server& server_;
    std::promise<void> closed_;
    HANDLE gone_; // signalled by the thread as the last it does
    std::thread thread_;
};

} // namespace agent::automation
