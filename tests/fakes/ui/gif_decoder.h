// The system's GIF decoder: it decodes nothing, but keeps what it was given.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/image.h"

namespace murmelix::fakes {

inline constexpr std::uint32_t decoded_pixel = 0xFF808080;

struct GifDecoder {
    std::vector<std::string> files; // while there is an answer
    // Without it the picture is of the size that the file names, every pixel `decoded_pixel`.
    std::function<std::optional<ui::Image>(const std::string& file)> answer;
};

GifDecoder& gifDecoder();

} // namespace murmelix::fakes
