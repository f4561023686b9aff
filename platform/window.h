// Windows of this process and of others, by their handles; every operation takes a handle of a window that is gone.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace murmelix::platform {

// Pixels of the screen.
struct WindowPlace {
    std::int32_t left, top, width, height;
};

std::optional<WindowPlace> windowPlace(std::intptr_t window);
// False where the system refuses.
bool placeWindow(std::intptr_t window, const WindowPlace& place);
// Visible, and not minimised.
bool isWindowOpen(std::intptr_t window);
void minimiseWindow(std::intptr_t window);
// Shows it, restores it where it is minimised, and gives it the keyboard.
void bringWindowUp(std::intptr_t window);

// The first window of the class on this desktop, of any process; 0 where there is none.
std::intptr_t windowOfClass(const char16_t* class_name);
// Sends bytes as WM_COPYDATA; the answer, or nothing where the window is gone or does not answer within that time.
std::optional<std::intptr_t> sendBytes(std::intptr_t window, unsigned long kind, std::string_view bytes,
                                       unsigned milliseconds);

} // namespace murmelix::platform
