// How every call to a neighbour is made: failures as NeighbourError, a busy neighbour asked again for a while.
#pragma once

#include <utility>

#include "common/com/client.h"
#include "platform/neighbour.h"

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
class Connection {
  public:
    using Made = void (*)(com::Object& object);

    Connection(const char16_t* prog_id, const IID& events, com::EventHandler handler, Made made = nullptr)
        : prog_id_(prog_id), events_(events), handler_(std::move(handler)), made_(made) {}
    com::Object& object();

  private:
    std::u16string prog_id_;
    IID events_;
    com::EventHandler handler_;
    Made made_;
    com::Object object_;
    com::Subscription subscription_;
};

} // namespace murmelix::platform::win32
