// Characters of any size for the benchmarks: a shaded figure that moves from picture to picture, so that its pixels
// compress about as drawn ones do.
#pragma once

#include "companions/agent/acs/character_file.h"

#include <cstddef>
#include <cstdint>

namespace bench {

struct Scale {
    std::uint16_t width, height; // of every image
    std::size_t images;
    std::size_t frames; // in animations of 25
    std::size_t sounds; // of 40 kB
};

agent::acs::Character drawnCharacter(const Scale& scale);

} // namespace bench
