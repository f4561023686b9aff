// Times of the system.
#pragma once

#include <cstdint>

namespace murmelix::platform {

// The performance counter, which is the same in every process.
long long microseconds();

// Milliseconds since the system was started.
long long milliseconds();

// Of the calendar: seconds since the beginning of 1970, in UTC. The user can set it.
long long secondsSince1970();

// When keyboard or mouse were last touched, in the low 32 bits of milliseconds(); anything before the first touch.
std::uint32_t lastInput();

} // namespace murmelix::platform
