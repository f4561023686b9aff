#include "companions/messenger/client/looks.h"

#include <algorithm>
#include <array>

#include "common/text.h"
#include "companions/messenger/client/measures.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

ui::Colour avatarColour(const std::u16string& signin) {
    constexpr std::array<ui::Colour, 8> colours{ui::rgb(214, 99, 88),  ui::rgb(222, 145, 58), ui::rgb(120, 160, 60),
                                                ui::rgb(52, 158, 132), ui::rgb(66, 133, 196), ui::rgb(120, 110, 190),
                                                ui::rgb(184, 94, 160), ui::rgb(128, 116, 100)};
    unsigned sum = 7;
    for (const char16_t unit : signin) {
        sum = sum * 31 + unit;
    }
    return colours[sum % colours.size()];
}

} // namespace

int px(int length) {
    return ui::toPixels(pixel * length);
}

ui::Colour colourOf(Status status) {
    switch (status) {
    case Status::online:
        return ui::rgb(108, 190, 69);
    case Status::busy:
    case Status::on_the_phone:
        return ui::rgb(214, 72, 60);
    case Status::away:
    case Status::idle:
    case Status::be_right_back:
    case Status::out_to_lunch:
        return ui::rgb(240, 178, 40);
    default:
        return ui::rgb(160, 168, 176);
    }
}

ui::Colour mixed(ui::Colour from, ui::Colour to, int part, int whole) {
    const auto mix = [&](int shift) {
        const int a = static_cast<int>(from >> shift & 0xFF), b = static_cast<int>(to >> shift & 0xFF);
        return static_cast<unsigned>(a + (b - a) * part / whole);
    };
    return (from & 0xFF000000) | ui::rgb(mix(0), mix(8), mix(16));
}

void drawBand(ui::Surface& surface, const ui::Rect& area) {
    surface.Gradient(area, colour::band_top, colour::band_bottom);
}

void drawAvatar(ui::Surface& surface, const ui::Rect& area, const Contact& contact, std::optional<ui::Colour> ring) {
    const int size = area.width;
    const bool here = contact.status != Status::offline;
    const ui::Colour own = here ? avatarColour(contact.signin) : ui::rgb(190, 197, 204);
    const ui::Rect disc{area.left, area.top, size, size};
    surface.Ellipse(disc, own, ring.value_or(own));
    // Of a name as people decorate them, the first letter that is one.
    const auto first = std::find_if(contact.friendly.begin(), contact.friendly.end(), [](char16_t unit) {
        return unit >= 0x80 || (murmelix::toUpper(unit) >= u'A' && murmelix::toUpper(unit) <= u'Z');
    });
    if (first != contact.friendly.end()) {
        // A letter of two units is shown whole, and stays as it is.
        const bool pair = (*first & 0xFC00) == 0xD800 && contact.friendly.end() - first > 1;
        surface.setFontBold(true);
        surface.PrintIn(disc, pair ? std::u16string(first, first + 2) : std::u16string(1, murmelix::toUpper(*first)),
                        ui::rgb(255, 255, 255), ui::Surface::Align::center);
        surface.setFontBold(false);
    }
    if (contact.status == Status::unknown) {
        return;
    }
    const int dot = size * 2 / 5;
    surface.Ellipse({area.left + size - dot + 1, area.top + size - dot + 1, dot, dot}, colourOf(contact.status),
                    ui::rgb(255, 255, 255));
}

void drawEnvelope(ui::Surface& surface, const ui::Rect& area, ui::Colour colour) {
    const int height = area.width * 3 / 4;
    const int top = area.top + (area.height - height) / 2;
    const int right = area.left + area.width - 1, bottom = top + height - 1;
    surface.Polyline({{area.left, top}, {right, top}, {right, bottom}, {area.left, bottom}, {area.left, top}}, colour,
                     px(1));
    surface.Polyline({{area.left, top}, {area.left + area.width / 2, top + height * 3 / 5}, {right, top}}, colour,
                     px(1));
}

void drawDownArrow(ui::Surface& surface, const ui::Point& at, ui::Colour colour) {
    const int half = px(3);
    for (int row = 0; row <= half; ++row) {
        surface.Fill({at.x + row, at.y - half / 2 + row, 2 * (half - row) + 1, 1}, colour);
    }
}

} // namespace messenger_client
