// How every call to a neighbour is made: failures as NeighbourError, a busy neighbour asked again for a while.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "common/com/client.h"
#include "platform/neighbour.h"
#include "platform/win32/server_watch.h"

namespace murmelix::platform::win32 {

// Counts a call as pending for as long as it lives.
class PendingCall {
  public:
    PendingCall() { ++count; }
    ~PendingCall() { --count; }
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;
    static int count;
};

[[noreturn]] void throwNeighbourError(const com::Error& error);

// Calls so far that met an object whose server is gone, or which its server has given up.
unsigned goneCalls();

template <class Call>
auto neighbourCall(Call&& call) {
    const PendingCall pending;
    try {
        return std::forward<Call>(call)();
    } catch (const com::Error& error) {
        throwNeighbourError(error);
    }
}

// Asks a neighbour that rejects calls again until this many milliseconds have gone by, then the call fails. Installed
// once for the thread.
inline constexpr unsigned busy_patience = 5000;
void waitForBusyNeighbours();

// An automation object that is made when it is needed first, with its events. Where that fails, each use tries again.
// A server that ends is noticed within about a second; the object is made anew then at the next use.
class Connection {
  public:
    using Made = void (*)(com::Object& object);
    struct Lifetime {
        std::function<void()> ended{};    // the server, without a word
        std::function<void()> returned{}; // a server runs again and was joined; without it, none is waited for
    };

    Connection(const char16_t* prog_id, const IID& events, com::EventHandler handler, Lifetime lifetime,
               Made made = nullptr);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    com::Object& object();
    // Looks after the server; not in the middle of a call.
    void look();

  private:
    bool answers() const;
    void join();

    std::u16string prog_id_;
    IID events_;
    com::EventHandler handler_;
    Lifetime lifetime_;
    Made made_;
    ServerWatch server_;
    unsigned gone_calls_ = 0; // known when it was looked after last
    com::Object object_;
    com::Subscription subscription_;
};

} // namespace murmelix::platform::win32
