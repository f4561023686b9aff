// Units and small values of the window toolkit. Controls are placed in twips (1440 to an inch), surfaces are drawn on
// in pixels.
#pragma once

#include <cstdint>
#include <string>

namespace murmelix::ui {

struct Rect {
    int left = 0, top = 0, width = 0, height = 0;
    bool operator==(const Rect&) const = default;
};

struct Point {
    int x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    int width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

// 0x00BBGGRR, or 0x80000000 + the number of a system colour, or one of each, see orSystem.
using Colour = std::uint32_t;
constexpr Colour rgb(unsigned red, unsigned green, unsigned blue) {
    return red | green << 8 | blue << 16;
}
inline constexpr Colour window_background = 0x80000005;
inline constexpr Colour highlight = 0x8000000D;
inline constexpr Colour highlight_text = 0x8000000E;
inline constexpr Colour button_face = 0x8000000F;
inline constexpr Colour grey_text = 0x80000011;
inline constexpr Colour button_text = 0x80000012;
inline constexpr Colour window_text = 0x80000008;
inline constexpr Colour hot_light = 0x8000001A; // of links
// A colour of our own that gives way to one of the system's where the user has chosen theirs: in high contrast, or on a
// dark ground.
constexpr Colour orSystem(Colour own, Colour system) {
    return 0x40000000 | (system & 0x1F) << 24 | (own & 0x00FFFFFF);
}
inline constexpr Colour inherited_colour = 0xFFFFFFFF; // that of what it is in

// A picture of the program's resources; `size` is its width and height in pixels at 96 dots an inch. Without a name it
// is no picture.
struct Picture {
    std::u16string name;
    int size = 16;
    explicit operator bool() const { return !name.empty(); }
    bool operator==(const Picture&) const = default;
};

enum class Key {
    tab,
    enter,
    escape,
    up,
    down,
    left,
    right,
    space,
    insert,
    del,
    home,
    end,
    page_up,
    page_down,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    letter, // or digit
    other
};

// Those held are added up.
enum MouseButton : int { left_button = 1, right_button = 2, middle_button = 4 };
enum ShiftKey : int { shift_key = 1, control_key = 2, alt_key = 4 };

// A key with those held beside it: `{Key::f2}`, `{u'N', control_key}`.
struct Shortcut {
    constexpr Shortcut() = default;
    constexpr Shortcut(Key of_key, int held = 0) : key(of_key), shift(held) {}
    constexpr Shortcut(char16_t upper_case, int held) : key(Key::letter), letter(upper_case), shift(held) {}
    explicit operator bool() const { return key != Key::other; }
    bool operator==(const Shortcut&) const = default;

    Key key = Key::other;
    char16_t letter = 0; // upper case, or a digit; of Key::letter alone
    int shift = 0;       // ShiftKeys
};
// As menus show it: "Ctrl+N".
std::u16string nameOf(const Shortcut& shortcut);

} // namespace murmelix::ui
