// The smallest useful character file, byte for byte: one animation "Hi" of one frame that shows one image of 2 by 1
// pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Where the parts begin, and some of their fields.
namespace tiny {
inline constexpr std::size_t names = 36;
inline constexpr std::size_t information = 38;
inline constexpr std::size_t palette_count = information + 41;
inline constexpr std::size_t state_count = information + 50;
inline constexpr std::size_t animation = 90;
inline constexpr std::size_t transition = animation + 10;
inline constexpr std::size_t frame_count = animation + 15;
inline constexpr std::size_t frame = animation + 17;
inline constexpr std::size_t frame_image = frame + 2;
inline constexpr std::size_t frame_sound = frame + 10;
inline constexpr std::size_t frame_exit = frame + 14;
inline constexpr std::size_t animation_directory = 125;
inline constexpr std::size_t image = 147;
inline constexpr std::size_t image_directory = 169;
inline constexpr std::size_t sound_directory = 185;
} // namespace tiny

// clang-format off
inline std::vector<std::uint8_t> tinyFile() {
    return {
        0xC3, 0xAB, 0xCD, 0xAB,                         // signature
        0x26, 0,    0,    0,    0x34, 0, 0, 0,          // character information: at 38, 52 bytes
        0x7D, 0,    0,    0,    0x16, 0, 0, 0,          // animations: at 125, 22 bytes
        0xA9, 0,    0,    0,    0x10, 0, 0, 0,          // images: at 169, 16 bytes
        0xB9, 0,    0,    0,    0x04, 0, 0, 0,          // sounds: at 185, 4 bytes
        0,    0,                                        // 36: no names
        1,    0,    2,    0,                            // 38: version 2.1
        0x24, 0,    0,    0,    2,    0, 0, 0,          // names: at 36, 2 bytes
        1,    2,    3,    4,    5,    6, 7, 8,          // identifier
        9,    10,   11,   12,   13,   14, 15, 16,       //
        80,   0,    60,   0,                            // 80 by 60 pixels
        10,                                             // transparent colour
        0,    0,    0x10, 0,                            // style
        2,    0,    0,    0,                            // animation set 2.0
        1,    0,    0,    0,    0x11, 0x22, 0x33, 0,    // 81: one colour: blue 11, green 22, red 33
        0,                                              // no tray icon
        0,    0,                                        // 88: no states
        2,    0,    0,    0,    'H',  0, 'I', 0, 0, 0,  // 90: animation "HI"
        1,                                              // exit branches
        0,    0,    0,    0,                            // no return animation
        1,    0,                                        // one frame
        1,    0,    0,    0,    0,    0, 0xFD, 0xFF, 4, 0, // one image: 0 at -3, 4
        0xFF, 0xFF,                                     // no sound
        25,   0,                                        // a quarter of a second
        0xFE, 0xFF,                                     // no exit
        0,    0,                                        // no branches, no mouths
        1,    0,    0,    0,                            // 125: one animation
        2,    0,    0,    0,    'H',  0, 'i', 0, 0, 0,  // "Hi"
        0x5A, 0,    0,    0,    0x23, 0, 0, 0,          // at 90, 35 bytes
        1,                                              // 147: an image
        2,    0,    1,    0,                            // 2 by 1
        0,    4,    0,    0,    0,    5, 6, 0, 0,       // not compressed, 4 bytes
        0,    0,    0,    0,    0,    0, 0, 0,          // no region
        1,    0,    0,    0,                            // 169: one image
        0x93, 0,    0,    0,    0x16, 0, 0, 0,          // at 147, 22 bytes
        0,    0,    0,    0,                            // checksum
        0,    0,    0,    0,                            // 185: no sounds
    };
}
// clang-format on
