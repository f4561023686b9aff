#include "companions/agent/stage/screens.h"

#include <algorithm>

namespace agent::stage {
namespace {

// Squared, between the nearest points of two areas that share none.
std::int64_t distance(const Rect& a, const Rect& b) {
    const auto gap = [](std::int64_t end, std::int64_t begin, std::int64_t other_end, std::int64_t other_begin) {
        return std::max({std::int64_t{0}, begin - other_end, other_begin - end});
    };
    const std::int64_t right = gap(a.right, a.left, b.right, b.left), down = gap(a.bottom, a.top, b.bottom, b.top);
    return right * right + down * down;
}

// The area moved to where the screen shows all of it, or its left and top side.
Rect inside(const Rect& screen, const Rect& area) {
    const int left = std::max(screen.left, std::min(area.left, screen.right - area.width()));
    const int top = std::max(screen.top, std::min(area.top, screen.bottom - area.height()));
    return {left, top, left + area.width(), top + area.height()};
}

} // namespace

std::int64_t sharedArea(const Rect& a, const Rect& b) {
    const std::int64_t width = std::int64_t{std::min(a.right, b.right)} - std::max(a.left, b.left);
    const std::int64_t height = std::int64_t{std::min(a.bottom, b.bottom)} - std::max(a.top, b.top);
    return std::max<std::int64_t>(0, width) * std::max<std::int64_t>(0, height);
}

Screen screenOf(const Screens& screens, const Rect& area) {
    const auto best = std::ranges::max_element(screens, [&](const Screen& a, const Screen& b) {
        const std::int64_t shared_a = sharedArea(a.whole, area), shared_b = sharedArea(b.whole, area);
        return shared_a != shared_b ? shared_a < shared_b : distance(a.whole, area) > distance(b.whole, area);
    });
    return best == screens.end() ? Screen{} : *best;
}

bool canBeSeen(const Screens& screens, const Rect& area) {
    return std::ranges::any_of(screens, [&](const Screen& screen) { return sharedArea(screen.whole, area) > 0; });
}

Rect movedOnto(const Screens& screens, const Rect& area) {
    std::int64_t seen = 0;
    for (const Screen& screen : screens) {
        seen += sharedArea(screen.whole, area);
    }
    if (seen == 0 || seen >= sharedArea(area, area)) {
        return area;
    }
    return inside(screenOf(screens, area).whole, area);
}

Rect afterChange(const Screens& before, const Screens& now, const Rect& area) {
    const bool is_lost = canBeSeen(before, area) && !canBeSeen(now, area) && !now.empty();
    return is_lost ? inside(screenOf(now, area).whole, area) : area;
}

} // namespace agent::stage
