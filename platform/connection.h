// A connection to a server by TCP, or by TLS (1.2 at least) over it. Making one begins to connect; what happens to it
// is told on the thread that made it, from its message loop, and nothing that is called here waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace murmelix::platform {

// Bytes that wait to be taken: no more is received until they are, and the server has to wait with what it sends.
// What one call receives, with what it completes of a record of TLS.
inline constexpr std::size_t most_untaken = 96 * 1024;
// Bytes that wait to be sent, encrypted ones where they are: a server that takes none of so many has gone.
inline constexpr std::size_t most_unsent = 1024 * 1024;
// Milliseconds for looking up the name, connecting, and agreeing on TLS together. What takes longer does not come.
inline constexpr unsigned longest_opening = 30'000;

enum class ConnectionFault {
    none, // the server closed it
    no_such_host,
    unreachable,
    refused, // by a machine that hears nobody at that port
    timed_out,
    broken_off,
    not_tls,                 // what answers at that port speaks something else
    alert,                   // the server has refused to agree on TLS
    no_agreement,            // the two know nothing in common that is good enough, or one of them errs
    certificate_out_of_date, // or not good yet
    certificate_for_other_name,
    certificate_of_unknown_issuer,
    certificate_invalid, // otherwise
    system,              // this machine does not allow it
};

struct ConnectionEnd {
    ConnectionFault fault = ConnectionFault::none;
    std::u16string why; // a sentence for people, with the server's name
};

// An event may end the connection it tells of.
struct ConnectionEvents {
    // Bytes can be sent from now on. With TLS the certificate was found to be good, and for that name.
    std::function<void()> opened;
    // Bytes wait, of which none did.
    std::function<void()> arrived;
    // It was open; all that came before was taken. The last event.
    std::function<void(const ConnectionEnd& end)> closed;
    // It was never open. The last event.
    std::function<void(const ConnectionEnd& end)> failed;
};

struct ConnectionTarget {
    std::u16string host; // a name or an address
    std::uint16_t port = 0;
    bool tls = true;
    unsigned milliseconds = longest_opening;
};

class Connection {
  public:
    Connection(ConnectionTarget target, ConnectionEvents events);
    // Closes it: what the system can still take of what was sent goes, and nothing is told any more.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // False, and nothing of it is sent, where the connection is not open or more than most_unsent would wait.
    bool send(std::string_view bytes);
    // All that waits; empty where nothing does.
    std::string take();

    struct Impl;

  private:
    std::shared_ptr<Impl> impl_; // an event may end the connection
};

} // namespace murmelix::platform
