// What the screen shows, for tests that look at it and for people.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <windows.h>

namespace murmelix::test {

// As 0x00RRGGBB, top row first.
struct Picture {
    int left = 0, top = 0, width = 0, height = 0; // of the screen
    std::vector<std::uint32_t> pixels;
    std::uint32_t at(int x, int y) const; // screen position
    int count(std::uint32_t colour) const;
};

Picture desktop(const RECT& area);

// A bitmap file in the folder that MURMELIX_SCREENS names, else in screens/ of the build folder.
void savePicture(const Picture& picture, const char* name);
void screenshot(const char* name); // of the whole desktop
void screenshot(HWND window, const char* name);

} // namespace murmelix::test
