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

Rect changedArea(const Raster& before, const Raster& after) {
    Rect area{after.width, after.height, 0, 0};
    for (int row = 0; row < after.height; ++row) {
        const auto begin = static_cast<std::ptrdiff_t>(row) * after.width, end = begin + after.width;
        const auto differs =
            std::mismatch(before.pixels.begin() + begin, before.pixels.begin() + end, after.pixels.begin() + begin);
        if (differs.second == after.pixels.begin() + end) {
            continue;
        }
        int last = after.width - 1;
        while (before.pixels[static_cast<std::size_t>(begin + last)] ==
               after.pixels[static_cast<std::size_t>(begin + last)]) {
            --last;
        }
        area.left = std::min(area.left, static_cast<int>(differs.second - after.pixels.begin() - begin));
        area.right = std::max(area.right, last + 1);
        area.top = std::min(area.top, row);
        area.bottom = row + 1;
    }
    return area.bottom > 0 ? area : Rect{0, 0, 0, 0};
}

// One for each of `to` pixels made of `from`: what lies nearer counts more, and where many become one, all of them
// count.
Scaler::Blends Scaler::blends(int from, int to) {
    const double ratio = static_cast<double>(from) / to;
    const double reach = std::max(1.0, ratio); // pixels of `from` from the middle to where the share ends
    Blends all(static_cast<std::size_t>(to));
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

// From the first to behind the last of the pixels that are made of any from `begin` to before `end`.
std::pair<int, int> Scaler::reached(const Blends& blends, int begin, int end) {
    const auto first = std::ranges::find_if(
        blends, [begin](const Blend& blend) { return blend.end() > static_cast<std::size_t>(begin); });
    const auto last = std::find_if(first, blends.end(),
                                   [end](const Blend& blend) { return blend.first >= static_cast<std::size_t>(end); });
    return {static_cast<int>(first - blends.begin()), static_cast<int>(last - blends.begin())};
}

// Two of the four parts of a pixel at a time: a byte with a share of 256 takes two.
std::uint32_t Scaler::blended(const std::uint32_t* from, std::size_t step, const Blend& blend) {
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

Rect Scaler::scale(const Raster& raster, const Rect& changed, int width, int height, std::uint32_t* pixels) {
    if (changed.width() <= 0 || changed.height() <= 0 || width <= 0 || height <= 0) {
        return {0, 0, 0, 0};
    }
    const auto row_size = static_cast<std::size_t>(width);
    if (raster.width == width && raster.height == height) {
        for (int row = changed.top; row < changed.bottom; ++row) {
            const std::size_t begin = static_cast<std::size_t>(row) * row_size + static_cast<std::size_t>(changed.left);
            std::copy_n(raster.pixels.data() + begin, changed.width(), pixels + begin);
        }
        return changed;
    }
    if (std::exchange(from_width_, raster.width) != raster.width || columns_.size() != row_size) {
        columns_ = blends(raster.width, width);
    }
    if (std::exchange(from_height_, raster.height) != raster.height ||
        rows_.size() != static_cast<std::size_t>(height)) {
        rows_ = blends(raster.height, height);
    }
    const auto [left, right] = reached(columns_, changed.left, changed.right);
    const auto [top, bottom] = reached(rows_, changed.top, changed.bottom);
    if (left >= right || top >= bottom) {
        return {0, 0, 0, 0};
    }
    narrowed_.resize(row_size * static_cast<std::size_t>(raster.height));
    const auto index = [](int at) { return static_cast<std::size_t>(at); };
    for (std::size_t row = rows_[index(top)].first; row < rows_[index(bottom - 1)].end(); ++row) {
        const std::uint32_t* const from = raster.pixels.data() + row * static_cast<std::size_t>(raster.width);
        for (std::size_t x = index(left); x < index(right); ++x) {
            narrowed_[row * row_size + x] = blended(from, 1, columns_[x]);
        }
    }
    for (std::size_t row = index(top); row < index(bottom); ++row) {
        for (std::size_t x = index(left); x < index(right); ++x) {
            pixels[row * row_size + x] = hardened(blended(narrowed_.data() + x, row_size, rows_[row]));
        }
    }
    return {left, top, right, bottom};
}

} // namespace agent::stage
