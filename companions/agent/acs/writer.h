// Writes version-2 character files.
#pragma once

#include "companions/agent/acs/character_file.h"

#include <cstdint>
#include <vector>

namespace agent::acs {

// The bytes of the file. Throws std::invalid_argument, with a sentence, for a character that a reader would refuse or
// the file cannot hold: a reference to what does not exist, pixels of the wrong size, more items than their count has
// room for, more than 128 MB. The style's bits for voice and balloon follow from their presence.
std::vector<std::uint8_t> write(const Character& character);

} // namespace agent::acs
