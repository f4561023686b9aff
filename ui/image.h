// Pictures in memory, and how they are read from bytes that come from anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/types.h"

namespace murmelix::ui {

// Pixels are 0xAARRGGBB, row by row from the top.
struct Image {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;
    bool operator==(const Image&) const = default;
};

// Larger ones are refused: a picture of 512 by 512 is read and made smaller within the turn of a message loop.
inline constexpr std::size_t longest_gif = std::size_t{1} << 20;     // bytes
inline constexpr std::size_t most_gif_pixels = std::size_t{1} << 18; // of the picture and of each frame

// The first frame of a GIF on its whole area, transparent where it draws nothing. Nothing where the bytes are no GIF,
// break off before its end, or cannot be decoded.
std::optional<Image> decodeGif(std::string_view bytes);

// The same picture smaller or larger, each pixel an average of what it covers, weighted by nearness. Sizes are 1 at
// least.
Image resized(const Image& image, int width, int height);

// The largest size that keeps its shape and fits.
Size fitted(const Image& image, const Size& room);

namespace native {

// The first frame as the system decodes it; nothing where it cannot. It is asked for nothing but what was checked: one
// frame as large as the picture, within the limits, with a palette and whole data.
std::optional<Image> decodedGif(const std::string& file);

} // namespace native

} // namespace murmelix::ui
