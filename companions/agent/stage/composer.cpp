#include "companions/agent/stage/composer.h"

#include <algorithm>
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
    const std::size_t row_size = static_cast<std::size_t>(std::max(width, 0));
    if (raster.pixels.empty() || (raster.width == width && raster.height == height)) {
        std::ranges::copy(raster.pixels, pixels);
        return;
    }
    std::vector<std::size_t> columns(row_size);
    for (std::size_t x = 0; x < row_size; ++x) {
        columns[x] = x * static_cast<std::size_t>(raster.width) / row_size;
    }
    int before = -1;
    for (int y = 0; y < height; ++y, pixels += row_size) {
        const int row = static_cast<int>(std::int64_t{y} * raster.height / height);
        if (row == std::exchange(before, row)) {
            std::copy_n(pixels - row_size, row_size, pixels);
            continue;
        }
        const std::uint32_t* const from =
            raster.pixels.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(raster.width);
        std::ranges::transform(columns, pixels, [from](std::size_t column) { return from[column]; });
    }
}

} // namespace agent::stage
