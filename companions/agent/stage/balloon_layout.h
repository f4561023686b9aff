// Where the words of a balloon stand, and where the balloon stands on the screen. Lengths in pixels.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/stage/screens.h"

namespace agent::stage {

// A line of the text, [begin, end) in UTF-16 units, without the blank or line end that closes it.
struct TextLine {
    std::size_t begin, end;
    friend bool operator==(const TextLine&, const TextLine&) = default;
};

// How many units from the start of a text fit into a width.
using Fitting = std::function<std::size_t(std::u16string_view text, int width)>;

// The lines of a text, laid out as far as they are shown: a text may be of any length. They are broken at line ends,
// else at blanks, else (a word wider than the balloon) between characters, of which none is parted; every line is at
// most `width` wide unless one character alone is wider.
class Lines {
  public:
    // Units of one line, and those that one call of reach() lays out (more than the largest balloon shows).
    static constexpr std::size_t longest_line = 1024;
    static constexpr std::size_t most_at_once = 8192;

    Lines() = default;
    // The text stays where it is for as long as this.
    Lines(std::u16string_view text, int width, Fitting fitting);

    // Until there are so many lines or no more.
    void first(std::size_t count);
    // Until the text up to there has its lines. Far ahead of what is laid out the lines begin anew, a good way before.
    void reach(std::size_t spoken);

    const std::vector<TextLine>& laid() const { return lines_; }
    bool complete() const { return complete_; }
    // The first line to show so that the text up to `spoken` can be seen in a balloon of `room` lines.
    std::size_t firstShown(std::size_t spoken, std::size_t room) const;

  private:
    void next();

    std::u16string_view text_;
    int width_ = 0;
    Fitting fitting_;
    std::vector<TextLine> lines_;
    std::size_t begin_ = 0; // of the line after these
    bool complete_ = true;
};

enum class Side { above, below, left, right };

struct BalloonPlace {
    Rect body;      // without the tail
    Side side;      // of the character that the balloon is on
    int tail_x = 0; // the point the tail goes to
    int tail_y = 0;
};

// A body of this size beside the character, wholly on the screen: above it if there is room, else below, else at the
// side with more room; of these places the first that covers none of the others, or as little of them as can be.
BalloonPlace placeBalloon(int width, int height, int tail, const Rect& character, const Rect& screen,
                          std::span<const Rect> others = {});

} // namespace agent::stage
