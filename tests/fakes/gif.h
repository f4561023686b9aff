// GIFs made for tests: real ones, compressed with the codes of all widths.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace murmelix::fakes {

struct GifFrame {
    int width = 0, height = 0, left = 0, top = 0;
    std::vector<std::uint8_t> indices{}; // of colours, row by row
    int transparent = -1;                // the index that is not drawn
    bool interlaced = false;
    std::string palette{}; // of its own: red, green, blue
};

inline std::string number(int value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

// The codes of a frame's indices, in pieces.
inline std::string compressed(const std::vector<std::uint8_t>& indices, int colour_bits) {
    const unsigned clear = 1U << colour_bits, end = clear + 1;
    std::string bytes;
    unsigned bits = 0;
    int count = 0, width = colour_bits + 1;
    const auto put = [&](unsigned code) {
        bits |= code << count;
        for (count += width; count >= 8; count -= 8, bits >>= 8) {
            bytes += static_cast<char>(bits & 0xFF);
        }
    };
    std::map<std::pair<unsigned, std::uint8_t>, unsigned> codes;
    unsigned known = end + 1;
    put(clear);
    for (std::size_t i = 0; i < indices.size();) {
        unsigned code = indices[i++];
        auto longer = codes.end();
        while (i < indices.size() && (longer = codes.find({code, indices[i]})) != codes.end()) {
            code = longer->second;
            ++i;
        }
        put(code);
        if (i < indices.size()) {
            if (known == 4096) {
                put(clear);
                codes.clear();
                known = end + 1;
                width = colour_bits + 1;
            } else {
                codes[{code, indices[i]}] = known;
                width += known++ == 1U << width ? 1 : 0;
            }
        }
    }
    put(end);
    width = 8 - count % 8;
    put(0);
    std::string pieces;
    for (std::size_t at = 0; at < bytes.size(); at += 255) {
        const std::string piece = bytes.substr(at, 255);
        pieces += static_cast<char>(piece.size());
        pieces += piece;
    }
    return pieces + '\0';
}

// The colours of a palette: 2, 4, 8 … 256 times red, green, blue.
inline std::string gif(int width, int height, const std::string& palette, const std::vector<GifFrame>& frames) {
    const auto exponent = [](const std::string& colours) {
        int bits = 1;
        while ((std::size_t{3} << bits) < colours.size()) {
            ++bits;
        }
        return bits;
    };
    const auto flags = [&](const std::string& colours) { return colours.empty() ? 0 : 0x80 | (exponent(colours) - 1); };
    std::string file = "GIF89a" + number(width) + number(height) + static_cast<char>(flags(palette));
    file += number(0) + palette;
    for (const GifFrame& frame : frames) {
        file += std::string("\x21\xFE\x05note!\0", 9);
        file += std::string("\x21\xF9\x04", 3) + static_cast<char>(frame.transparent < 0 ? 0 : 1) + number(0) +
                static_cast<char>(std::max(frame.transparent, 0)) + '\0';
        file += ',' + number(frame.left) + number(frame.top) + number(frame.width) + number(frame.height);
        file += static_cast<char>(flags(frame.palette) | (frame.interlaced ? 0x40 : 0));
        const int bits = std::max(exponent(frame.palette.empty() ? palette : frame.palette), 2);
        file += frame.palette + static_cast<char>(bits) + compressed(frame.indices, bits);
    }
    return file + ';';
}

// A picture of one colour.
inline std::string plainGif(int width, int height, const std::string& colour) {
    GifFrame frame{width, height, 0, 0, {}};
    frame.indices.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 1);
    return gif(width, height, std::string(3, '\0') + colour, {frame});
}

} // namespace murmelix::fakes
