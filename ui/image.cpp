#include "ui/image.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace murmelix::ui {

namespace {

using Channels = std::array<double, 4>; // alpha, then the colours multiplied by it

Channels channelsOf(std::uint32_t pixel) {
    const double alpha = pixel >> 24;
    const auto part = [&](int shift) { return (pixel >> shift & 0xFF) * alpha / 255; };
    return {alpha, part(16), part(8), part(0)};
}

std::uint32_t pixelOf(const Channels& channels) {
    const auto byte = [](double value) { return static_cast<std::uint32_t>(std::clamp(std::lround(value), 0L, 255L)); };
    const std::uint32_t alpha = byte(channels[0]);
    if (alpha == 0) {
        return 0;
    }
    const auto part = [&](std::size_t i) { return byte(channels[i] * 255 / channels[0]); };
    return alpha << 24 | part(1) << 16 | part(2) << 8 | part(3);
}

// What makes up one of `to` pixels out of `from`: the nearer to its middle, the more.
struct Share {
    std::size_t from;
    double weight;
};

std::vector<Share> shares(int at, int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double reach = std::max(scale, 1.0);
    const double middle = (at + 0.5) * scale;
    const int first = std::max(static_cast<int>(std::floor(middle - reach)), 0);
    const int behind = std::min(static_cast<int>(std::ceil(middle + reach)), from);
    std::vector<Share> all;
    double sum = 0;
    for (int i = first; i < behind; ++i) {
        const double weight = 1 - std::abs(i + 0.5 - middle) / reach;
        if (weight > 0) {
            all.push_back({static_cast<std::size_t>(i), weight});
            sum += weight;
        }
    }
    for (Share& share : all) {
        share.weight /= sum;
    }
    return all;
}

// One direction after the other: `lines` lines of `from` pixels become lines of `to`, and stand as columns.
std::vector<Channels> turned(const std::vector<Channels>& pixels, int lines, int from, int to) {
    const auto length = static_cast<std::size_t>(from), count = static_cast<std::size_t>(lines);
    std::vector<Channels> result(count * static_cast<std::size_t>(to));
    for (int at = 0; at < to; ++at) {
        const auto parts = shares(at, from, to);
        for (std::size_t line = 0; line < count; ++line) {
            Channels& sum = result[static_cast<std::size_t>(at) * count + line];
            for (const Share& part : parts) {
                for (std::size_t i = 0; i < sum.size(); ++i) {
                    sum[i] += part.weight * pixels[line * length + part.from][i];
                }
            }
        }
    }
    return result;
}

} // namespace

Image resized(const Image& image, int width, int height) {
    if (width == image.width && height == image.height) {
        return image;
    }
    std::vector<Channels> pixels(image.pixels.size());
    std::ranges::transform(image.pixels, pixels.begin(), channelsOf);
    pixels = turned(turned(pixels, image.height, image.width, width), width, image.height, height);
    Image result{width, height, std::vector<std::uint32_t>(pixels.size())};
    std::ranges::transform(pixels, result.pixels.begin(), pixelOf);
    return result;
}

Size fitted(const Image& image, const Size& room) {
    const double scale =
        std::min(static_cast<double>(room.width) / image.width, static_cast<double>(room.height) / image.height);
    const auto part = [&](int length) { return std::max(static_cast<int>(std::lround(length * scale)), 1); };
    return {part(image.width), part(image.height)};
}

} // namespace murmelix::ui
