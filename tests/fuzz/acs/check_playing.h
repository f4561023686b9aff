// What must hold for any character file that is put on the stage.
#pragma once

#include <cstdint>
#include <span>

// Ends the program, with a line that says why, where it does not hold: every frame is drawn within the limits, pixel
// for pixel there or not; every animation, left alone, comes to its end where it has one and never where it has none,
// and is over soon after it was asked to stop; every sound is decoded within its limits; and a stage plays it all,
// speaks, and is empty in the end. Of a large file a part is looked at. Returns whether the bytes are a character file.
bool checkPlaying(std::span<const std::uint8_t> file);
