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

struct Size {
    int width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

// 0x00BBGGRR, or 0x80000000 + the number of a system colour.
using Colour = std::uint32_t;
inline constexpr Colour window_background = 0x80000005;
inline constexpr Colour highlight = 0x8000000D;
inline constexpr Colour highlight_text = 0x8000000E;
inline constexpr Colour button_face = 0x8000000F;
inline constexpr Colour grey_text = 0x80000011;
inline constexpr Colour button_text = 0x80000012;

// A picture of the program's resources; `size` is its width and height in pixels at 96 dots an inch. Without a name it
// is no picture.
struct Picture {
    std::u16string name;
    int size = 16;
    explicit operator bool() const { return !name.empty(); }
    bool operator==(const Picture&) const = default;
};

enum class Key { tab, enter, escape, up, down, left, right, other };

// Those held are added up.
enum MouseButton : int { left_button = 1, right_button = 2, middle_button = 4 };
enum ShiftKey : int { shift_key = 1, control_key = 2, alt_key = 4 };

} // namespace murmelix::ui
