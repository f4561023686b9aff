// Any bytes as a character file.
#include "tests/fuzz/acs/check_character.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    checkCharacter({data, size});
    return 0;
}
