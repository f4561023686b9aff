// A call to a neighbour (Messenger, Agent) can fail at any time: the other process may be gone, busy or signed out.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace murmelix::platform {

class NeighbourError : public std::runtime_error {
  public:
    // `result`: the HRESULT of the call.
    NeighbourError(std::int32_t result, const std::string& what) : std::runtime_error(what), result_(result) {}
    std::int32_t result() const { return result_; }

  private:
    std::int32_t result_;
};

// True while a call to a neighbour is under way: the message loop runs in its middle, and a timer may want to wait.
bool neighbourCallPending();

// Runs one step whose failure is skipped; tells whether it succeeded. The only place where such failures end.
template <class Step>
bool attempt(Step&& step) {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const NeighbourError&) {
        return false;
    }
}

} // namespace murmelix::platform
