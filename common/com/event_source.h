// Telling other programs of events. A program that hears events may take its time over one, call back, or hang: each
// has a queue and a thread of its own, so that it makes nobody wait but itself.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include <ocidl.h>

#include "common/com/counted.h"
#include "common/com/handles.h"

namespace murmelix::com {

// Events that wait for one sink: a few kilobytes each, of an application that raises some twenty a second. A sink that
// is that far behind has not answered for most of a minute, and loses what comes until it does.
inline constexpr std::size_t most_waiting_events = 1000;

// Sinks of all sources of the process: each has a thread.
inline constexpr std::size_t most_sinks = 256;

// What a program that ends grants those who hear its last events: two seconds in all, until the events have arrived and
// until the threads have let go of their sinks.
inline constexpr std::chrono::milliseconds last_events_time{1500};
inline constexpr std::chrono::milliseconds last_sinks_time{500};

// The connection point container of an object with one source of events. The owner answers
// IID_IConnectionPointContainer in interfaceFor with `container()`; references count on the owner. Of one thread, a
// single-threaded apartment; what is called on others says so.
class EventSource {
  public:
    EventSource(IDispatch& owner, const IID& events);
    ~EventSource(); // events that wait are lost
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;

    void* container();
    // Queues an event for every sink, or only for that of one cookie, and returns; arguments in declared order. Each
    // sink gets its events in order. Objects among the arguments stay in this apartment, which they are called in; a
    // reference refers to a copy, each sink's own. A sink whose process is gone is dropped; other failures are its own.
    static constexpr DWORD every_sink = 0;
    void fire(DISPID event, const std::vector<Variant>& arguments, DWORD only = every_sink);
    std::size_t sinks() const;
    // Lets go of all sinks, whose waiting events are lost, and takes the connection point from those who hold it.
    void close();
    // Called after a sink was dropped because its process is gone, on the sink's thread; must not call this source.
    void onLost(std::function<void()> lost);
    // Called with the cookie of each new sink, in the middle of its Advise; must not throw.
    void onAdded(std::function<void(DWORD)> added);

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// True where no sink of the process has an event waiting or under way.
bool allEventsDelivered();
// Waits until that is so, or until the time is over; calls of other programs are carried out meanwhile.
bool waitForEvents(std::chrono::milliseconds at_most);
// The same until all threads of sinks have ended, whose sources are gone. One whose sink hangs is left behind: it
// touches nothing of the program's any more, and ends with the process.
bool waitForSinksToEnd(std::chrono::milliseconds at_most);

} // namespace murmelix::com
