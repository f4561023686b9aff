// The imitated network: the sockets that there are, and what the other side does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/socket.h"

namespace murmelix::fakes {

struct Connection {
    std::u16string host;
    std::uint16_t port = 0;
    std::string sent;
    bool closed_here = false;
};

struct Network {
    std::vector<Connection> connections; // all there were, in order
    platform::Socket::Impl* open = nullptr;
};

Network& network();

// The other side, at the last connection; each tells whether there was one to tell of it.
bool accept();
bool send(const std::string& bytes);
bool closeByServer();
bool failConnection(unsigned long number, const std::u16string& description);

} // namespace murmelix::fakes
