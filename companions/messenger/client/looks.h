// What the client's windows share in looks: their colours, and what is drawn in them. Rectangles and points are pixels
// of the surface.
#pragma once

#include <optional>

#include "companions/messenger/chat/contact.h"
#include "ui/surface.h"

namespace messenger_client {

namespace ui = murmelix::ui;

// Each with the system's that it gives way to where the user has chosen theirs.
namespace colour {
using ui::orSystem, ui::rgb;
constexpr ui::Colour band_top = orSystem(rgb(58, 124, 191), ui::highlight);
constexpr ui::Colour band_bottom = orSystem(rgb(94, 160, 219), ui::highlight);
constexpr ui::Colour on_band = orSystem(rgb(255, 255, 255), ui::highlight_text);
constexpr ui::Colour on_band_soft = orSystem(rgb(224, 238, 250), ui::highlight_text);
constexpr ui::Colour face = orSystem(rgb(243, 247, 251), ui::window_background);
constexpr ui::Colour field = orSystem(rgb(255, 255, 255), ui::window_background);
constexpr ui::Colour line = orSystem(rgb(198, 212, 226), ui::window_text);
constexpr ui::Colour text = orSystem(rgb(32, 40, 48), ui::window_text);
constexpr ui::Colour soft_text = orSystem(rgb(96, 110, 124), ui::window_text);
constexpr ui::Colour unread = orSystem(rgb(96, 110, 124), ui::grey_text); // aloud
constexpr ui::Colour link = orSystem(rgb(58, 124, 191), ui::hot_light);
constexpr ui::Colour fault = orSystem(rgb(176, 42, 32), ui::window_text);
// A row that is selected.
constexpr ui::Colour chosen = orSystem(rgb(213, 230, 246), ui::highlight);
constexpr ui::Colour on_chosen = orSystem(rgb(32, 40, 48), ui::highlight_text);
constexpr ui::Colour on_chosen_soft = orSystem(rgb(96, 110, 124), ui::highlight_text);
constexpr ui::Colour row(bool selected) {
    return selected ? chosen : field;
}
constexpr ui::Colour rowText(bool selected) {
    return selected ? on_chosen : text;
}
constexpr ui::Colour rowSoftText(bool selected) {
    return selected ? on_chosen_soft : soft_text;
}
} // namespace colour

// Pixels for a length at 96 dots an inch.
int px(int length);

ui::Colour colourOf(Status status);
// `part` of `whole` on the way from one colour to the other; where the user has colours of their own, the first.
ui::Colour mixed(ui::Colour from, ui::Colour to, int part, int whole);

// The band at the top of a window.
void drawBand(ui::Surface& surface, const ui::Rect& area);
// A disc with the first letter of the name, as wide as `area`, in a colour of its own, and a small disc for the status,
// if it is known. A ring round it sets it off from a ground of whatever colour.
void drawAvatar(ui::Surface& surface, const ui::Rect& area, const Contact& contact,
                std::optional<ui::Colour> ring = {});
// An envelope as high as 3/4 of its width, which is that of `area`.
void drawEnvelope(ui::Surface& surface, const ui::Rect& area, ui::Colour colour);
// The sign of a menu that opens downwards, its middle at the left.
void drawDownArrow(ui::Surface& surface, const ui::Point& at, ui::Colour colour);

} // namespace messenger_client
