// The screens that characters and balloons are on. Lengths in pixels.
#pragma once

#include <cstdint>
#include <vector>

namespace agent::stage {

struct Rect {
    int left, top, right, bottom;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    friend bool operator==(const Rect&, const Rect&) = default;
};

struct Screen {
    Rect whole;
    Rect work; // without taskbars
    friend bool operator==(const Screen&, const Screen&) = default;
};
using Screens = std::vector<Screen>;

// Pixels that both have.
std::int64_t sharedArea(const Rect& a, const Rect& b);

// The screen with the largest part of the area, else the nearest to it; an empty one where there is none.
Screen screenOf(const Screens& screens, const Rect& area);

// Whether any of the area can be seen.
bool canBeSeen(const Screens& screens, const Rect& area);

// The area where an edge of the screens would cut it, moved onto the screen that it is on, with its left and top side
// where it is larger; any other, wholly on the screens or wholly off them, as it is.
Rect movedOnto(const Screens& screens, const Rect& area);

// The area moved onto the nearest screen where it could be seen on those before, and on none of those that are there
// now; else as it is.
Rect afterChange(const Screens& before, const Screens& now, const Rect& area);

} // namespace agent::stage
