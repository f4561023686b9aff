#include "tools/acsbuild/palette.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <limits>
#include <span>
#include <utility>

namespace acsbuild {

namespace {

constexpr std::size_t palette_size = Palette::most_colours + 1;

using Channels = std::array<int, 3>;

Channels channels(std::uint32_t colour) {
    return {static_cast<int>(colour >> 16 & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour & 0xFF)};
}

int squaredDistance(const Channels& a, const Channels& b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    }
    return sum;
}

struct Counted {
    Channels colour{};
    double count = 0;
};

// A box of colours: what it would gain by being cut, and along which channel.
struct Box {
    std::span<Counted> colours;
    Channels mean{};
    double spread = 0; // the sum of squared distances from the mean along the widest channel
    std::size_t widest = 0;

    explicit Box(std::span<Counted> held) : colours(held) {
        double total = 0;
        std::array<double, 3> sum{}, squares{};
        for (const Counted& entry : colours) {
            total += entry.count;
            for (std::size_t i = 0; i < 3; ++i) {
                sum[i] += entry.count * entry.colour[i];
                squares[i] += entry.count * entry.colour[i] * entry.colour[i];
            }
        }
        for (std::size_t i = 0; i < 3; ++i) {
            mean[i] = static_cast<int>(sum[i] / total + 0.5);
            const double along = squares[i] - sum[i] * sum[i] / total;
            if (along > spread) {
                spread = along;
                widest = i;
            }
        }
    }

    // At the mean of the widest channel; both halves hold something when spread is above 0.
    std::pair<Box, Box> halves() const {
        const auto middle = std::partition(colours.begin(), colours.end(), [this](const Counted& entry) {
            return entry.colour[widest] < mean[widest];
        });
        auto split = static_cast<std::size_t>(std::distance(colours.begin(), middle));
        if (split == 0 || split == colours.size()) { // the mean was rounded down to the least or up to the greatest
            std::sort(colours.begin(), colours.end(),
                      [this](const Counted& a, const Counted& b) { return a.colour[widest] < b.colour[widest]; });
            split = colours.size() / 2;
        }
        return {Box(colours.first(split)), Box(colours.subspan(split))};
    }
};

std::uint32_t packed(const Channels& colour) {
    return static_cast<std::uint32_t>(colour[0] << 16 | colour[1] << 8 | colour[2]);
}

void put32(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

struct Span {
    int left = 0, right = 0;
    friend bool operator==(const Span&, const Span&) = default;
};

std::vector<Span> opaqueSpans(const Picture& picture, int y) {
    std::vector<Span> spans;
    for (int x = 0; x < picture.width; ++x) {
        if (!opaque(picture.at(x, y))) {
            continue;
        }
        if (!spans.empty() && spans.back().right == x) {
            spans.back().right = x + 1;
        } else {
            spans.push_back({x, x + 1});
        }
    }
    return spans;
}

} // namespace

Palette::Palette(const std::vector<Picture>& pictures, std::uint32_t transparent, std::size_t most) {
    std::unordered_map<std::uint32_t, double> counts;
    for (const Picture& picture : pictures) {
        for (const std::uint32_t pixel : picture.pixels) {
            if (opaque(pixel)) {
                counts[pixel & 0xFFFFFF] += 1;
            }
        }
    }
    std::vector<Counted> histogram;
    histogram.reserve(counts.size());
    for (const auto& [colour, count] : counts) {
        histogram.push_back({channels(colour), count});
    }
    // The same pictures give the same file, in whatever order the map holds its entries.
    std::sort(histogram.begin(), histogram.end(),
              [](const Counted& a, const Counted& b) { return a.colour < b.colour; });

    std::vector<Box> boxes;
    if (!histogram.empty()) {
        boxes.emplace_back(histogram);
    }
    while (boxes.size() < most) {
        const auto worst = std::max_element(boxes.begin(), boxes.end(),
                                            [](const Box& a, const Box& b) { return a.spread < b.spread; });
        if (worst == boxes.end() || worst->colours.size() < 2 || worst->spread <= 0) {
            break;
        }
        auto [low, high] = worst->halves();
        *worst = low;
        boxes.push_back(high);
    }

    colours_.push_back(transparent);
    for (const Box& box : boxes) {
        const std::uint32_t colour = packed(box.mean);
        colours_.push_back(colour == transparent ? colour ^ 0x000100 : colour);
    }
}

std::vector<agent::acs::Colour> Palette::colours() const {
    std::vector<agent::acs::Colour> result;
    result.reserve(palette_size);
    for (const std::uint32_t colour : colours_) {
        const Channels parts = channels(colour);
        result.push_back({static_cast<std::uint8_t>(parts[2]), static_cast<std::uint8_t>(parts[1]),
                          static_cast<std::uint8_t>(parts[0])});
    }
    result.resize(palette_size);
    return result;
}

std::uint8_t Palette::indexOf(std::uint32_t pixel) {
    if (!opaque(pixel)) {
        return 0;
    }
    const auto [entry, is_new] = nearest_.try_emplace(pixel & 0xFFFFFF, std::uint8_t{0});
    if (is_new) {
        const Channels wanted = channels(pixel & 0xFFFFFF);
        int best = std::numeric_limits<int>::max();
        for (std::size_t i = 1; i < colours_.size(); ++i) {
            const int away = squaredDistance(wanted, channels(colours_[i]));
            if (away < best) {
                best = away;
                entry->second = static_cast<std::uint8_t>(i);
            }
        }
    }
    return entry->second;
}

agent::acs::Image Palette::image(const Picture& picture) {
    agent::acs::Image result;
    result.width = static_cast<std::uint16_t>(picture.width);
    result.height = static_cast<std::uint16_t>(picture.height);
    const std::size_t stride = result.stride();
    result.pixels.assign(stride * result.height, 0);
    for (int y = 0; y < picture.height; ++y) {
        std::uint8_t* const row = result.pixels.data() + static_cast<std::size_t>(picture.height - 1 - y) * stride;
        for (int x = 0; x < picture.width; ++x) {
            row[x] = indexOf(picture.at(x, y));
        }
    }
    result.region = opaqueRegion(picture);
    return result;
}

std::vector<std::uint8_t> opaqueRegion(const Picture& picture) {
    struct Rectangle {
        int left, top, right, bottom;
    };
    std::vector<Rectangle> rectangles;
    for (int y = 0; y < picture.height;) {
        const std::vector<Span> spans = opaqueSpans(picture, y);
        int below = y + 1;
        while (below < picture.height && opaqueSpans(picture, below) == spans) {
            ++below;
        }
        for (const Span& span : spans) {
            rectangles.push_back({span.left, y, span.right, below});
        }
        y = below;
    }
    const Rect bound = opaquePart(picture).value_or(Rect{});

    std::vector<std::uint8_t> bytes;
    const auto put = [&](int value) { put32(bytes, static_cast<std::uint32_t>(value)); };
    put(32); // the header's size
    put(1);  // rectangles
    put(static_cast<int>(rectangles.size()));
    put(static_cast<int>(rectangles.size() * 16));
    for (const int edge : {bound.x, bound.y, bound.x + bound.width, bound.y + bound.height}) {
        put(edge);
    }
    for (const Rectangle& rectangle : rectangles) {
        for (const int edge : {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom}) {
            put(edge);
        }
    }
    return bytes;
}

} // namespace acsbuild
