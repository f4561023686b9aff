// One palette for all pictures of a character, and pictures written in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "companions/agent/acs/character_file.h"
#include "tools/acsbuild/picture.h"

namespace acsbuild {

// Colours as 0xRRGGBB. Index 0 is the transparent colour; no other index has that colour.
class Palette {
  public:
    static constexpr std::size_t most_colours = 255; // beside the transparent one

    // Exact where the pictures have at most `most` colours, else chosen by cutting the colours' space where they differ
    // most.
    Palette(const std::vector<Picture>& pictures, std::uint32_t transparent, std::size_t most = most_colours);

    // 256 colours, the unused ones black.
    std::vector<agent::acs::Colour> colours() const;
    std::uint8_t indexOf(std::uint32_t pixel);
    // In the file's form: rows from the bottom, padded to 4 bytes; with the region of its opaque pixels.
    agent::acs::Image image(const Picture& picture);

  private:
    std::vector<std::uint32_t> colours_;
    std::unordered_map<std::uint32_t, std::uint8_t> nearest_;
};

// The RGNDATA of the picture's opaque pixels: rectangles from the top, then from the left; equal rows are joined.
std::vector<std::uint8_t> opaqueRegion(const Picture& picture);

} // namespace acsbuild
