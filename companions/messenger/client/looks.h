// What the client's windows share in looks: their colours, and what is drawn in them. Rectangles and points are pixels
// of the surface.
#pragma once

#include <optional>

#include "companions/messenger/chat/contact.h"
#include "ui/surface.h"

namespace messenger_client {

namespace ui = murmelix::ui;

namespace colour {
constexpr ui::Colour band_top = ui::rgb(58, 124, 191);
constexpr ui::Colour band_bottom = ui::rgb(94, 160, 219);
constexpr ui::Colour on_band = ui::rgb(255, 255, 255);
constexpr ui::Colour on_band_soft = ui::rgb(224, 238, 250);
constexpr ui::Colour face = ui::rgb(243, 247, 251);
constexpr ui::Colour field = ui::rgb(255, 255, 255);
constexpr ui::Colour line = ui::rgb(198, 212, 226);
constexpr ui::Colour text = ui::rgb(32, 40, 48);
constexpr ui::Colour soft_text = ui::rgb(96, 110, 124);
constexpr ui::Colour chosen = ui::rgb(213, 230, 246);
constexpr ui::Colour fault = ui::rgb(176, 42, 32);
} // namespace colour

// Pixels for a length at 96 dots an inch.
int px(int length);

ui::Colour colourOf(Status status);
// `part` of `whole` on the way from one colour to the other.
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
