// What the tests of real windows share: the loop that serves them, input, and what they show.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include "ui/picture_box.h"

namespace murmelix::test {

HWND windowOf(const ui::Control& control);

// Serves messages until it holds, for minutes at most; tells whether it does.
bool serveUntil(const std::function<bool()>& holds);
void serveAll(); // those that are there

// Posted to a window, and served.
void press(HWND window, int x, int y);
void key(HWND window, WPARAM code);

// Through the system's own input, as from the keyboard: goes to the window in front. The key of the modifier (0: none)
// is held meanwhile.
void typeKey(WORD code, WORD modifier = 0);

// The same with the mouse: MOUSEEVENTF_LEFTDOWN for instance, or 0, at a place of the screen in pixels. Nothing is
// served: a drag has a loop of its own.
void mouse(DWORD what, POINT place);
void keyboard(WORD code, bool down);
POINT onScreen(HWND window, int x, int y);

// Moves the mouse to a place of the screen until the box hears of it there: a window that was just shown is not under
// the mouse at once, and a press would be lost.
bool hover(ui::PictureBox& box, POINT place);

// What a window's inside shows.
struct Image {
    int width = 0, height = 0;
    std::vector<COLORREF> pixels; // the top row first
    COLORREF at(int x, int y) const;
};
Image insideOf(HWND window);

// Draws the window anew and keeps a picture of it for people.
void keepPicture(const ui::Control& form, const std::string& name);
// The same, with all served that there is.
void show(const ui::Control& form, const std::string& name);

// What is wrong in a form that is shown: captions that do not fit, controls that stand out of what holds them or lie
// upon one another. Empty where all is well.
std::vector<std::string> layoutMistakes(const ui::Control& form);

} // namespace murmelix::test
