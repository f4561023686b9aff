#include "tests/fakes/clock.h"

#include "platform/clock.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

Clock& clock() {
    return state().clock;
}

} // namespace fakes

namespace platform {

long long microseconds() {
    return fakes::clock().microseconds;
}

long long milliseconds() {
    return fakes::clock().microseconds / 1000;
}

long long secondsSince1970() {
    return fakes::clock().seconds_since_1970;
}

std::uint32_t lastInput() {
    return fakes::clock().last_input;
}

} // namespace platform

} // namespace murmelix
