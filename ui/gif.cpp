#include <algorithm>
#include <optional>
#include <stdexcept>
#include <vector>

#include "ui/image.h"

namespace murmelix::ui {

namespace {

using Palette = std::vector<std::uint32_t>;

constexpr std::uint32_t opaque = 0xFF000000;
constexpr std::uint8_t extension_block = 0x21, image_block = 0x2C;
constexpr std::uint8_t graphic_control = 0xF9;
constexpr std::uint8_t has_palette = 0x80, interlaced = 0x40, has_transparency = 0x01;

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
    Palette palette(std::uint8_t flags) {
        Palette colours(std::size_t{2} << (flags & 7));
        for (std::uint32_t& colour : colours) {
            const std::uint32_t red = byte(), green = byte();
            colour = opaque | red << 16 | green << 8 | byte();
        }
        return colours;
    }

  private:
    std::string_view bytes_;
};

// The codes of a frame's data, of 3 to 12 bits, lowest bit first.
class Codes {
  public:
    explicit Codes(Reader& data) : data_(data) {}

    unsigned next(int width) {
        while (count_ < width) {
            if (piece_.empty()) {
                piece_ = data_.piece();
                if (piece_.empty()) {
                    throw Damaged();
                }
            }
            bits_ |= static_cast<unsigned>(static_cast<std::uint8_t>(piece_.front())) << count_;
            piece_.remove_prefix(1);
            count_ += 8;
        }
        const unsigned code = bits_ & ((1U << width) - 1);
        bits_ >>= width;
        count_ -= width;
        return code;
    }

  private:
    Reader& data_;
    std::string_view piece_;
    unsigned bits_ = 0;
    int count_ = 0;
};

// The colours of so many pixels. A code stands for one colour, or for a run that was written before and the colour
// behind it: runs are kept as places of what is written.
std::vector<std::uint8_t> decompressed(Reader& data, std::size_t count) {
    constexpr int widest = 12;
    struct Run {
        std::size_t start, length;
    };
    const int colour_bits = data.byte();
    if (colour_bits < 2 || colour_bits > 8) {
        throw Damaged();
    }
    const unsigned clear = 1U << colour_bits, end = clear + 1;
    std::vector<Run> runs; // of the codes behind `end`
    runs.reserve(std::size_t{1} << widest);
    std::vector<std::uint8_t> pixels;
    pixels.reserve(count);
    Run before{0, 0}; // none
    int width = colour_bits + 1;
    for (Codes codes(data); pixels.size() < count;) {
        const unsigned code = codes.next(width);
        if (code == clear) {
            runs.clear();
            before = {0, 0};
            width = colour_bits + 1;
            continue;
        }
        // The code may stand for the run that it completes itself.
        if (before.length > 0 && end + 1 + runs.size() < std::size_t{1} << widest) {
            runs.push_back({before.start, before.length + 1});
        }
        Run now{pixels.size(), 1};
        if (code < clear) {
            pixels.push_back(static_cast<std::uint8_t>(code));
        } else if (code > end && code - end - 1 < runs.size()) {
            const Run run = runs[code - end - 1];
            now.length = std::min(run.length, count - pixels.size());
            for (std::size_t i = 0; i < now.length; ++i) {
                pixels.push_back(pixels[run.start + i]);
            }
        } else {
            throw Damaged();
        }
        if (end + 1 + runs.size() == std::size_t{1} << width && width < widest) {
            ++width;
        }
        before = now;
    }
    return pixels;
}

struct Area {
    explicit Area(Reader& data) : width(data.number()), height(data.number()) {}
    std::size_t pixels() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
    bool reasonable() const { return pixels() > 0 && pixels() <= most_gif_pixels; }
    int width, height;
};

// The row of a frame that is written at a turn: every eighth one, every eighth between, every fourth, every second.
std::vector<int> rowsInOrder(int height, bool in_passes) {
    struct Pass {
        int first, step;
    };
    static constexpr Pass all_at_once[] = {{0, 1}}, passes[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    std::vector<int> rows;
    const auto add = [&](const Pass& pass) {
        for (int row = pass.first; row < height; row += pass.step) {
            rows.push_back(row);
        }
    };
    if (in_passes) {
        std::ranges::for_each(passes, add);
    } else {
        std::ranges::for_each(all_at_once, add);
    }
    return rows;
}

Image decode(Reader data) {
    if (const auto kind = data.take(6); kind != "GIF87a" && kind != "GIF89a") {
        throw Damaged();
    }
    const Area screen(data);
    const std::uint8_t flags = data.byte();
    data.take(2); // a background that is not shown, and the shape of a pixel
    Palette colours = flags & has_palette ? data.palette(flags) : Palette();
    if (!screen.reasonable()) {
        throw Damaged();
    }
    constexpr unsigned none = 256; // beyond all colours
    unsigned transparent = none;
    std::uint8_t block;
    while ((block = data.byte()) == extension_block) {
        const bool is_control = data.byte() == graphic_control;
        for (auto piece = data.piece(); !piece.empty(); piece = data.piece()) {
            if (is_control && piece.size() == 4) {
                const bool some = static_cast<std::uint8_t>(piece[0]) & has_transparency;
                transparent = some ? static_cast<std::uint8_t>(piece[3]) : none;
            }
        }
    }
    if (block != image_block) {
        throw Damaged();
    }
    const int left = data.number(), top = data.number();
    const Area frame(data);
    const std::uint8_t frame_flags = data.byte();
    if (!frame.reasonable()) {
        throw Damaged();
    }
    if (frame_flags & has_palette) {
        colours = data.palette(frame_flags);
    }
    const auto indices = decompressed(data, frame.pixels());
    Image image{screen.width, screen.height, std::vector<std::uint32_t>(screen.pixels())};
    auto index = indices.begin();
    for (const int row : rowsInOrder(frame.height, frame_flags & interlaced)) {
        for (int column = 0; column < frame.width; ++column, ++index) {
            const int x = left + column, y = top + row;
            if (x < screen.width && y < screen.height && *index != transparent && *index < colours.size()) {
                image.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(screen.width) +
                             static_cast<std::size_t>(x)] = colours[*index];
            }
        }
    }
    return image;
}

} // namespace

std::optional<Image> decodeGif(std::string_view bytes) {
    if (bytes.size() > longest_gif) {
        return std::nullopt;
    }
    try {
        return decode(Reader(bytes));
    } catch (const Damaged&) {
        return std::nullopt;
    }
}

} // namespace murmelix::ui
