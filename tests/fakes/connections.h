// The imitated servers to connect to: each connection that was made, as its server has it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/connection.h"

namespace murmelix::fakes {

// One connection. What the server does is told to the program at once, and is false where the connection is not, or no
// longer, so far.
class ServerSide {
  public:
    explicit ServerSide(platform::ConnectionTarget target, platform::ConnectionEvents events)
        : target(std::move(target)), events_(std::move(events)) {}

    bool open();
    bool refuse(const platform::ConnectionEnd& end);
    bool send(std::string_view bytes);
    bool close(const platform::ConnectionEnd& end);

    const platform::ConnectionTarget target;
    std::string received;
    bool takes_none = false; // as much as fits waits to be sent; the rest is refused
    bool gone = false;       // the program has ended it

    bool isOpen() const { return state_ == State::open; }

  private:
    friend class platform::Connection;
    enum class State { opening, open, ended };

    platform::ConnectionEvents events_;
    State state_ = State::opening;
    std::string untaken_;
    std::size_t unsent_ = 0;
};

struct Servers {
    std::vector<std::shared_ptr<ServerSide>> connections; // all there were, in order
};

Servers& servers();

} // namespace murmelix::fakes
