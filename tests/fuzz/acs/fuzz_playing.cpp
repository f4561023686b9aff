// Any bytes as a character on the stage.
#include <cstddef>
#include <cstdint>

#include "tests/fuzz/acs/check_playing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    checkPlaying({data, size});
    return 0;
}
