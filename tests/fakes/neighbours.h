// What the calls to Messenger and Agent do besides answering: they fail when told to, and run what the message loop
// would run in their middle.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace murmelix::fakes {

struct Neighbours {
    int calls = 0;   // so far, to both
    int fail_at = 0; // the call with this number (from 1) fails; 0: none
    bool gone = false;
    bool call_pending = false;                  // a call is under way elsewhere
    std::set<std::string, std::less<>> failing; // calls that always fail, by name: "History", "Speak"…

    // Runs inside every call, before it answers; not inside a call that it makes itself.
    std::function<void(std::string_view call)> during;
    bool answers_first = false; // an answer was found before what happens in the middle, and is not what holds then

    // A value's answer to a call.
    template <class T>
    T answer(std::string_view call, const T& value) {
        T found = value;
        enter(call);
        return answers_first ? found : value;
    }

    // At the start of every call; throws NeighbourError for a failing one.
    void enter(std::string_view call);

  private:
    bool inside_ = false;
};

Neighbours& neighbours();

} // namespace murmelix::fakes
