// Where the words of a balloon stand, and where the balloon stands on the screen. Lengths in pixels.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::stage {

// A line of the text, [begin, end) in UTF-16 units, without the blank or line end that closes it.
struct TextLine {
    std::size_t begin, end;
    friend bool operator==(const TextLine&, const TextLine&) = default;
};

// Broken at line ends, else at blanks, else (a word wider than the balloon) between characters; every line is at most
// `width` wide unless one character alone is wider. `fitting` gives how many units from the start of a text fit into a
// width.
using Fitting = std::function<std::size_t(std::u16string_view text, int width)>;
std::vector<TextLine> breakLines(std::u16string_view text, int width, const Fitting& fitting);

// The first line to show so that the text up to `spoken` can be seen in a balloon of `room` lines.
std::size_t firstLine(const std::vector<TextLine>& lines, std::size_t spoken, std::size_t room);

struct Rect {
    int left, top, right, bottom;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    friend bool operator==(const Rect&, const Rect&) = default;
};

enum class Side { above, below, left, right };

struct BalloonPlace {
    Rect body;      // without the tail
    Side side;      // of the character that the balloon is on
    int tail_x = 0; // the point the tail goes to
    int tail_y = 0;
};

// A body of this size beside the character, wholly on the screen: above it if there is room, else below, else at the
// side with more room.
BalloonPlace placeBalloon(int width, int height, int tail, const Rect& character, const Rect& screen);

} // namespace agent::stage
