// A character as its version-2 ".acs" file holds it, whole and in memory.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::acs {

// Width and height of a character and of an image, in pixels: four times those of the largest character seen. Showing a
// larger one would take longer than a message loop may be held up.
inline constexpr std::uint16_t largest_side = 800;

using Guid = std::array<std::uint8_t, 16>;

struct Voice {
    Guid engine{};
    Guid mode{};
    std::uint32_t speed = 0xFFFFFFFF; // words a minute; 0xFFFFFFFF: the engine's own
    std::uint16_t pitch = 0xFFFF;     // hertz; 0xFFFF: the engine's own
    struct Choice {
        std::uint16_t language_id = 0x0409;
        std::u16string dialect;
        std::uint16_t gender = 0; // 1 female, 2 male
        std::uint16_t age = 0;    // years
        std::u16string style;
        bool operator==(const Choice&) const = default;
    };
    std::optional<Choice> choice;
    bool operator==(const Voice&) const = default;
};

struct Balloon {
    std::uint8_t lines = 2;
    std::uint8_t characters_a_line = 28;
    std::uint32_t text_colour = 0x00000000; // 0x00BBGGRR
    std::uint32_t background_colour = 0x00E1FFFF;
    std::uint32_t border_colour = 0x00000000;
    std::u16string font_name = u"MS Sans Serif";
    std::int32_t font_height = -11; // pixels, as in LOGFONT
    std::uint32_t weight = 400;
    bool italic = false;
    bool strike_out = false;
    bool operator==(const Balloon&) const = default;
};

struct Colour {
    std::uint8_t blue = 0, green = 0, red = 0;
    bool operator==(const Colour&) const = default;
};

struct TrayIcon {
    std::vector<std::uint8_t> colour_image;
    std::vector<std::uint8_t> mask_image;
    bool operator==(const TrayIcon&) const = default;
};

struct State {
    std::u16string name; // upper case: "SHOWING", "IDLINGLEVEL1"…
    std::vector<std::u16string> animations;
    bool operator==(const State&) const = default;
};

struct LocalizedName {
    std::uint16_t language_id = 0x0409;
    std::u16string name, description, extra_data;
    bool operator==(const LocalizedName&) const = default;
};

// The animation's end (Frame::exit_frame) and the absence of an exit.
inline constexpr std::int16_t exit_end = -1;
inline constexpr std::int16_t exit_none = -2;
inline constexpr std::uint16_t no_sound = 0xFFFF;

struct FrameImage {
    std::uint32_t image = 0; // index in Character::images
    std::int16_t x = 0, y = 0;
    bool operator==(const FrameImage&) const = default;
};

struct Branch {
    std::uint16_t target = 0;
    std::uint16_t probability = 0; // percent
    bool operator==(const Branch&) const = default;
};

// 0 closed, 1 to 4 wide open in four widths, 5 medium, 6 narrow.
enum class MouthShape : std::uint8_t { closed, wide1, wide2, wide3, wide4, medium, narrow };

struct Mouth {
    MouthShape shape = MouthShape::closed;
    bool replaces_top_image = false;
    std::uint16_t image = 0;
    std::int16_t x = 0, y = 0;
    std::uint16_t width = 0, height = 0;
    std::vector<std::uint8_t> region; // RGNDATA; empty: none
    bool operator==(const Mouth&) const = default;
};

struct Frame {
    std::vector<FrameImage> images; // the first is the topmost: draw from the end
    std::uint16_t sound = no_sound; // index in Character::sounds
    std::uint16_t duration = 10;    // 1/100 s
    std::int16_t exit_frame = exit_none;
    std::vector<Branch> branches;
    std::vector<Mouth> mouths;
    bool operator==(const Frame&) const = default;
};

enum class Transition : std::uint8_t { return_animation, exit_branches, none };

struct Animation {
    std::u16string name; // as the directory spells it
    Transition transition = Transition::exit_branches;
    std::u16string return_animation;
    std::vector<Frame> frames;
    bool operator==(const Animation&) const = default;
};

// Palette indices, rows padded to 4 bytes, bottom row first; stride = (width + 3) & ~3, pixels.size() = stride ×
// height. An image of width or height 0 is the file's empty image.
struct Image {
    std::uint16_t width = 0, height = 0;
    std::vector<std::uint8_t> pixels;
    std::vector<std::uint8_t> region; // RGNDATA
    std::uint32_t stride() const { return (static_cast<std::uint32_t>(width) + 3U) & ~3U; }
    bool operator==(const Image&) const = default;
};

inline constexpr std::uint32_t style_voice = 0x20;
inline constexpr std::uint32_t style_balloon = 0x200;

struct Character {
    std::uint16_t minor_version = 1, major_version = 2;
    Guid guid{};
    std::uint16_t width = 0, height = 0; // pixels
    std::uint8_t transparent_index = 0;
    std::uint32_t style = 0;
    std::optional<Voice> voice;     // present with style_voice
    std::optional<Balloon> balloon; // present with style_balloon
    std::vector<Colour> palette;    // after reading always 256
    std::optional<TrayIcon> tray_icon;
    std::vector<State> states;
    std::vector<LocalizedName> names;
    std::vector<Animation> animations;
    std::vector<Image> images;
    std::vector<std::vector<std::uint8_t>> sounds; // whole RIFF/WAVE files

    // Without letter case; null when there is none.
    const Animation* findAnimation(std::u16string_view name) const;
    const State* findState(std::u16string_view name) const;
    // The name and texts for a language (LANGID): those of the very language, else of its main language (a text stored
    // without a region, 0x0009, serves every region of it), else of the voice's language in the same way, else the
    // first. Null where there are none.
    const LocalizedName* nameFor(std::uint16_t language_id) const;
    bool operator==(const Character&) const = default;
};

} // namespace agent::acs
