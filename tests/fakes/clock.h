// The imitated clocks; they stand until a test moves them.
#pragma once

#include <cstdint>

namespace murmelix::fakes {

struct Clock {
    long long microseconds = 0; // since the system was started
    long long seconds_since_1970 = 2'000'000'000;
    std::uint32_t last_input = 0;
};

Clock& clock();

} // namespace murmelix::fakes
