// What must hold for any bytes taken as a character file.
#pragma once

#include <cstdint>
#include <span>

// Ends the program, with a line that says why, where it does not hold: the bytes are refused with a sentence by both
// readers, or accepted by both with the same contents, in which nothing refers to what does not exist, and which,
// written and read again, stay what they are. Returns whether they were accepted.
bool checkCharacter(std::span<const std::uint8_t> file);
