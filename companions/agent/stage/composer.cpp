#include "companions/agent/stage/composer.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace agent::stage {
namespace {

// Of the mouths of a frame the one of the shape, else the nearest in width that there is.
const acs::Mouth* mouthOf(const acs::Frame& frame, acs::MouthShape shape) {
    const auto wanted = [&](acs::MouthShape like) {
        const auto found = std::find_if(frame.mouths.begin(), frame.mouths.end(),
                                        [&](const acs::Mouth& mouth) { return mouth.shape == like; });
        return found == frame.mouths.end() ? nullptr : &*found;
    };
    using enum acs::MouthShape;
    if (const acs::Mouth* found = wanted(shape)) {
        return found;
    }
    if (shape == closed) {
        return nullptr;
    }
    for (const acs::MouthShape other : {medium, wide2, wide1, wide3, wide4, narrow}) {
        if (const acs::Mouth* found = wanted(other)) {
            return found;
        }
    }
    return nullptr;
}

void paint(const acs::Image& image, int left, int top, const std::vector<std::uint32_t>& colours, Raster& raster) {
    const int first_column = std::max(0, -left);
    const int columns = std::min<int>(image.width, raster.width - left);
    const int first_row = std::max(0, -top);
    const int rows = std::min<int>(image.height, raster.height - top);
    for (int row = first_row; row < rows; ++row) {
        const std::uint8_t* from =
            image.pixels.data() + static_cast<std::size_t>(image.height - 1 - row) * image.stride();
        std::uint32_t* to =
            raster.pixels.data() + static_cast<std::size_t>(top + row) * static_cast<std::size_t>(raster.width);
        for (int column = first_column; column < columns; ++column) {
            if (const std::uint32_t colour = colours[from[column]]) {
                to[left + column] = colour;
            }
        }
    }
}

// The pixels of a row, or of a column, that one pixel of another size is made of, each with its share of 256.
struct Blend {
    std::size_t first = 0;
    std::vector<std::uint32_t> shares;
};

// One for each of `to` pixels made of `from`: what lies nearer counts more, and where many become one, all of them
// count.
std::vector<Blend> blends(int from, int to) {
    const double ratio = static_cast<double>(from) / to;
    const double reach = std::max(1.0, ratio); // pixels of `from` from the middle to where the share ends
    std::vector<Blend> all(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double middle = (i + 0.5) * ratio - 0.5;
        const int first = std::max(0, static_cast<int>(std::floor(middle - reach)) + 1);
        const int last = std::min(from - 1, static_cast<int>(std::ceil(middle + reach)) - 1);
        std::vector<double> weights;
        for (int at = first; at <= last; ++at) {
            weights.push_back(reach - std::abs(at - middle));
        }
        const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
        Blend& blend = all[static_cast<std::size_t>(i)];
        blend.first = static_cast<std::size_t>(first);
        // Rounded as they add up, so that they come to the whole.
        double passed = 0;
        std::uint32_t given = 0;
        for (const double weight : weights) {
            passed += weight;
            const auto up_to = static_cast<std::uint32_t>(std::lround(passed / sum * 256));
            blend.shares.push_back(up_to - given);
            given = up_to;
        }
    }
    return all;
}

// Two of the four parts of a pixel at a time: a byte with a share of 256 takes two.
std::uint32_t blended(const std::uint32_t* from, std::size_t step, const Blend& blend) {
    constexpr std::uint32_t parts = 0x00FF00FF, half = 0x00800080;
    std::uint32_t even = half, odd = half;
    from += blend.first * step;
    for (const std::uint32_t share : blend.shares) {
        even += (*from & parts) * share;
        odd += (*from >> 8 & parts) * share;
        from += step;
    }
    return (even >> 8 & parts) | (odd & ~parts);
}

// All there, in its full colour, or not at all.
std::uint32_t hardened(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha < 128) {
        return 0;
    }
    if (alpha == 255) {
        return pixel;
    }
    const auto full = [&](int shift) { return std::min(255U, (pixel >> shift & 0xFF) * 255 / alpha) << shift; };
    return 0xFF000000U | full(16) | full(8) | full(0);
}

} // namespace

std::shared_ptr<const acs::Animation> FileRepertoire::animation(std::u16string_view name) const {
    const acs::Animation* found = file_->character().findAnimation(name);
    return found ? std::shared_ptr<const acs::Animation>(file_, found) : nullptr;
}

std::vector<std::u16string> FileRepertoire::state(std::u16string_view name) const {
    const acs::State* found = file_->character().findState(name);
    return found ? found->animations : std::vector<std::u16string>();
}

void compose(const acs::CharacterFile& file, const acs::Frame* frame, std::optional<acs::MouthShape> mouth,
             Raster& raster) {
    const acs::Character& character = file.character();
    raster.width = character.width;
    raster.height = character.height;
    raster.pixels.assign(std::size_t{character.width} * character.height, 0);
    if (!frame) {
        return;
    }
    std::vector<std::uint32_t> colours(256, 0xFF000000U);
    for (std::size_t i = 0; i < std::min<std::size_t>(256, character.palette.size()); ++i) {
        const acs::Colour& colour = character.palette[i];
        colours[i] = 0xFF000000U | static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
    }
    colours[character.transparent_index] = 0;

    const acs::Mouth* overlay = mouth ? mouthOf(*frame, *mouth) : nullptr;
    const auto draw = [&](std::size_t index, int x, int y) {
        if (index < file.imageCount()) {
            paint(*file.image(index), x, y, colours, raster);
        }
    };
    for (std::size_t i = frame->images.size(); i-- > 0;) {
        if (i > 0 || !overlay || !overlay->replaces_top_image) {
            draw(frame->images[i].image, frame->images[i].x, frame->images[i].y);
        }
    }
    if (overlay) {
        draw(overlay->image, overlay->x, overlay->y);
    }
}

void scale(const Raster& raster, int width, int height, std::uint32_t* pixels) {
    if (raster.pixels.empty() || width <= 0 || height <= 0 || (raster.width == width && raster.height == height)) {
        std::ranges::copy(raster.pixels, pixels);
        return;
    }
    const std::vector<Blend> columns = blends(raster.width, width), rows = blends(raster.height, height);
    const auto row_size = static_cast<std::size_t>(width);
    std::vector<std::uint32_t> narrowed(row_size * static_cast<std::size_t>(raster.height));
    for (std::size_t row = 0; row < static_cast<std::size_t>(raster.height); ++row) {
        const std::uint32_t* const from = raster.pixels.data() + row * static_cast<std::size_t>(raster.width);
        std::ranges::transform(columns, narrowed.begin() + static_cast<std::ptrdiff_t>(row * row_size),
                               [from](const Blend& blend) { return blended(from, 1, blend); });
    }
    for (const Blend& blend : rows) {
        for (std::size_t column = 0; column < row_size; ++column) {
            *pixels++ = hardened(blended(narrowed.data() + column, row_size, blend));
        }
    }
}

} // namespace agent::stage
