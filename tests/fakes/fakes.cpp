#include "tests/fakes/fakes.h"

namespace murmelix::fakes {

State& state() {
    static State the_state;
    return the_state;
}

void reset() {
    state() = State{};
    useCodePage(windows1252());
}

} // namespace murmelix::fakes
