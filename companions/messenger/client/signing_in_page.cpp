#include "companions/messenger/client/signing_in_page.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "companions/messenger/client/looks.h"

namespace messenger_client {

namespace {

constexpr int dots = 12; // of the ring
constexpr int tail = 6;  // dots behind the light in which it fades

// At 96 dots an inch.
constexpr int avatar_size = 72, ring_gap = 13, dot_radius = 3;
constexpr int picture_size = avatar_size + 2 * (ring_gap + dot_radius + 2);

} // namespace

SigningInPage::SigningInPage(ui::Control& parent) : Frame(parent, u"", Border::none) {
    setBackColor(colour::face);
    ProgressLbl.setForeColor(colour::text);
    setAccessibleName(u"Signing in");
    Ring.setAccessibleName(u"Signing in");
    ProgressLbl.setTellsNews();
    ProgressLbl.setCentered();
    ProgressLbl.setUseMnemonic(false);
    Ring.Resize = [this] { draw(); };
    Turn.Tick = [this] {
        step_ = (step_ + 1) % dots;
        draw();
    };
}

ui::Layout SigningInPage::layout() {
    return ui::rows({ui::item(Ring).least(15 * picture_size, 15 * picture_size).centered(),
                     ui::item(ProgressLbl).wrapped(), ui::item(CancelButt).least(1440, 390).centered(), ui::stretch()})
        .gap(240)
        .pad(240, 270, 240, 150);
}

void SigningInPage::tell(const Contact& who, const std::u16string& doing) {
    who_ = who;
    ProgressLbl.setCaption(doing);
    draw();
}

void SigningInPage::draw() {
    ui::Surface& surface = Ring.surface();
    surface.Cls(colour::face);
    const int size = px(avatar_size);
    const int middle_x = surface.Width() / 2, middle_y = surface.Height() / 2;
    surface.setFontScale(230);
    drawAvatar(surface, {middle_x - size / 2, middle_y - size / 2, size, size}, who_);
    const double distance = size / 2.0 + px(ring_gap);
    const int radius = px(dot_radius);
    for (int i = 0; i < dots; ++i) {
        const double angle = 2 * std::numbers::pi * i / dots;
        const int age = (step_ - i + dots) % dots; // of the light that runs round
        const ui::Colour shade = mixed(colour::band_top, colour::line, std::min(age, tail), tail);
        const int x = middle_x + static_cast<int>(std::lround(distance * std::sin(angle)));
        const int y = middle_y - static_cast<int>(std::lround(distance * std::cos(angle)));
        surface.Ellipse({x - radius, y - radius, 2 * radius + 1, 2 * radius + 1}, shade, shade);
    }
    surface.Refresh();
}

} // namespace messenger_client
