// What programs that a test starts may take.
#pragma once

#include <chrono>
#include <cstddef>

namespace agent::voice {

inline constexpr std::chrono::seconds patience(240); // ends what hangs, and nothing that is slow
inline constexpr std::size_t most_output = std::size_t{8} << 20;

} // namespace agent::voice
