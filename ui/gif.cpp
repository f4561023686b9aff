// The system decodes GIFs. It sees nothing of a file but what was checked here: its first frame, put together anew as a
// picture of one frame with nothing beside it.
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

#include "ui/image.h"

namespace murmelix::ui {

namespace {

constexpr std::uint8_t extension_block = 0x21, image_block = 0x2C, trailer = 0x3B;
constexpr std::uint8_t graphic_control = 0xF9;
constexpr std::size_t graphic_control_length = 4;
constexpr std::uint8_t has_palette = 0x80;
constexpr int least_colour_bits = 2, most_colour_bits = 8;

class Damaged : public std::runtime_error {
  public:
    Damaged() : std::runtime_error("no GIF that can be shown") {}
};

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::uint8_t byte() { return static_cast<std::uint8_t>(take(1).front()); }
    int number() { // of 16 bits
        const int low = byte();
        return low | byte() << 8;
    }
    std::string_view take(std::size_t count) {
        if (bytes_.size() < count) {
            throw Damaged();
        }
        const std::string_view taken = bytes_.substr(0, count);
        bytes_.remove_prefix(count);
        return taken;
    }
    // Data in pieces, each with its length before it; an empty one is the last.
    std::string_view piece() { return take(byte()); }
    // All pieces as they stand, the last one included.
    std::string_view pieces() {
        const std::string_view all = bytes_;
        while (!piece().empty()) {
        }
        return all.substr(0, all.size() - bytes_.size());
    }
    // Red, green and blue of each colour; empty where the flags tell of none.
    std::string_view palette(std::uint8_t flags) {
        return flags & has_palette ? take(std::size_t{6} << (flags & 7)) : std::string_view();
    }

  private:
    std::string_view bytes_;
};

struct Area {
    explicit Area(Reader& data) : width(data.number()), height(data.number()) {
        const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        if (pixels == 0 || pixels > most_gif_pixels) {
            throw Damaged();
        }
    }
    int width, height;
};

std::string written(int number) {
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8)};
}

struct FirstFrame {
    Size whole;       // of the picture
    Rect place;       // of the frame in it; parts can lie outside
    std::string file; // a GIF of this frame alone
};

FirstFrame readFrame(Reader& data, const Area& whole, std::uint8_t palette_flags, std::string_view palette,
                     std::string_view control) {
    const int left = data.number(), top = data.number();
    const Area frame(data);
    const std::uint8_t flags = data.byte();
    const std::string_view own = data.palette(flags);
    if (own.empty() && palette.empty()) {
        throw Damaged();
    }
    const std::uint8_t colour_bits = data.byte();
    if (colour_bits < least_colour_bits || colour_bits > most_colour_bits) {
        throw Damaged();
    }
    const std::string size = written(frame.width) + written(frame.height);
    // Without a background colour, and with square pixels.
    std::string file = "GIF89a" + size + static_cast<char>(palette_flags) + written(0);
    file += palette;
    if (!control.empty()) {
        file += {static_cast<char>(extension_block), static_cast<char>(graphic_control),
                 static_cast<char>(graphic_control_length)};
        file += control;
        file += '\0';
    }
    file += static_cast<char>(image_block) + written(0) + written(0) + size + static_cast<char>(flags);
    file += own;
    file += static_cast<char>(colour_bits);
    file += data.pieces();
    file += static_cast<char>(trailer);
    return {{whole.width, whole.height}, {left, top, frame.width, frame.height}, std::move(file)};
}

// The blocks are followed to the end, so that a file that breaks off anywhere is found out.
FirstFrame check(Reader data) {
    if (const auto kind = data.take(6); kind != "GIF87a" && kind != "GIF89a") {
        throw Damaged();
    }
    const Area whole(data);
    const std::uint8_t flags = data.byte();
    data.take(2); // a background that is not shown, and the shape of a pixel
    const std::string_view palette = data.palette(flags);
    std::string_view control; // of the next frame
    std::optional<FirstFrame> first;
    for (std::uint8_t block; (block = data.byte()) != trailer;) {
        if (block == extension_block) {
            const bool is_control = data.byte() == graphic_control;
            for (auto piece = data.piece(); !piece.empty(); piece = data.piece()) {
                if (is_control && piece.size() == graphic_control_length) {
                    control = piece;
                }
            }
        } else if (block == image_block) {
            FirstFrame frame = readFrame(data, whole, flags, palette, control);
            if (!first) {
                first = std::move(frame);
            }
        } else {
            throw Damaged();
        }
    }
    if (!first) {
        throw Damaged();
    }
    return *std::move(first);
}

Image placed(const Image& frame, const FirstFrame& first) {
    const auto width = static_cast<std::size_t>(first.whole.width);
    Image image{first.whole.width, first.whole.height, {}};
    image.pixels.resize(width * static_cast<std::size_t>(image.height));
    const int columns = std::min(frame.width, image.width - first.place.left);
    const int rows = std::min(frame.height, image.height - first.place.top);
    for (int row = 0; row < rows && columns > 0; ++row) {
        const auto from = frame.pixels.begin() + std::ptrdiff_t{row} * frame.width;
        std::copy(from, from + columns,
                  image.pixels.begin() + std::ptrdiff_t{first.place.top + row} * image.width + first.place.left);
    }
    return image;
}

} // namespace

std::optional<Image> decodeGif(std::string_view bytes) {
    if (bytes.size() > longest_gif) {
        return std::nullopt;
    }
    try {
        const FirstFrame first = check(Reader(bytes));
        const auto frame = native::decodedGif(first.file);
        if (!frame || frame->width != first.place.width || frame->height != first.place.height) {
            return std::nullopt;
        }
        return placed(*frame, first);
    } catch (const Damaged&) {
        return std::nullopt;
    }
}

} // namespace murmelix::ui
