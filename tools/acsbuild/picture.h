// Pictures with colours of their own, as they are read, and what is cut out of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace acsbuild {

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
};

// Rows from the top, pixels as 0xAARRGGBB, the colours not multiplied by alpha.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

// Less than half covered is not there: a character's window has no half-covered pixels.
inline bool opaque(std::uint32_t pixel) {
    return (pixel >> 24) >= 0x80;
}

// A PNG file of at most 4096 x 4096 pixels; std::runtime_error says why it cannot be read.
Picture readPicture(const std::filesystem::path& file);

// The part inside the rectangle, which must lie in the picture.
Picture cut(const Picture& picture, const Rect& part);

// The smallest rectangle that holds every opaque pixel; nothing when there is none.
std::optional<Rect> opaquePart(const Picture& picture);

} // namespace acsbuild
