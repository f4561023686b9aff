// One TCP connection at a time. What happens to it is told on the thread that made it, from its message loop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace murmelix::platform {

// Numbers as the Winsock control has them.
enum class SocketState : std::int16_t {
    closed = 0,
    resolving_host = 4,
    host_resolved = 5,
    connecting = 6,
    connected = 7,
    closing = 8, // by the other side
    error = 9
};

struct SocketEvents {
    std::function<void()> Connect;
    std::function<void(std::size_t bytes_total)> DataArrival; // more than 0 wait
    std::function<void()> Close;                              // by the other side; all data was told before
    // For people; with the system's number.
    std::function<void(unsigned long number, const std::u16string& description)> Error;
};

class Socket {
  public:
    explicit Socket(SocketEvents events);
    ~Socket(); // closes it; nothing is told any more
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    // An open connection is closed first. A failure is told by Error, also that of a name without an address.
    void Connect(const std::u16string& host, std::uint16_t port);
    // What the system does not take at once goes when it can.
    void SendData(std::string_view bytes);
    // All that waits; empty where nothing does.
    std::string GetData();
    SocketState State() const;
    // Nothing is told of that connection any more.
    void Close();

    struct Impl;

  private:
    std::shared_ptr<Impl> impl_; // an event may end the socket
};

} // namespace murmelix::platform
