#include "platform/kept_place.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "common/text.h"
#include "ui/screen.h"

namespace murmelix::platform {

namespace {

// UTF-16 units of four numbers, with their NULs.
constexpr std::size_t longest_place = 64;
// Twips: 32,767 pixels, which is how far the system's windows reach, at 96 dots an inch.
constexpr double farthest = 15.0 * 32'767;

} // namespace

std::optional<ui::Rect> KeptPlace::last() const {
    const auto lines = store_.lines(name_, longest_place);
    std::array<int, 4> pixels{};
    if (!lines || lines->size() != pixels.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const double twips = leadingNumber((*lines)[i]);
        if (!(std::abs(twips) <= farthest)) {
            return std::nullopt;
        }
        pixels[i] = ui::toPixels(static_cast<int>(twips));
    }
    const ui::Rect place{pixels[0], pixels[1], pixels[2], pixels[3]};
    return place.width > 0 && place.height > 0 ? std::optional(place) : std::nullopt;
}

void KeptPlace::keep(const ui::Rect& pixels) const {
    const auto twips = [](int number) { return toText(static_cast<long long>(ui::toTwips(number))); };
    store_.putLines(name_, {twips(pixels.left), twips(pixels.top), twips(pixels.width), twips(pixels.height)});
}

} // namespace murmelix::platform
