#include "ui/screen.h"

#include <algorithm>

namespace murmelix::ui {

Rect onScreen(const Rect& place) {
    const Rect area = workArea(place);
    const int width = std::min(place.width, area.width), height = std::min(place.height, area.height);
    return {std::clamp(place.left, area.left, area.left + area.width - width),
            std::clamp(place.top, area.top, area.top + area.height - height), width, height};
}

} // namespace murmelix::ui
