// Another program with a list, to drag to and from: this test program itself, started with `neighbour_switch`.
#pragma once

#include <string>

#include <windows.h>

namespace murmelix::test {

inline constexpr char neighbour_switch[] = "--list";
// Of its window, at first; then it tells what happened there.
inline constexpr wchar_t neighbour_caption[] = L"List of another program";

// Serves the window until it is closed; its upper left corner stands there on the screen. It holds one row that can be
// dragged, with the text "Zo\u00eb \u263a", and takes drops. Captions tell: "dragging", "completed: EFFECT, TEXT",
// "dropped: EFFECT, TEXT".
int serveListWindow(int left, int top);

// Presses the row of such a window and moves the mouse until the drag has it; false where it does not in minutes.
bool pullRow(HWND window);

// What such a window tells now; empty where there is none.
std::u16string told(HWND window);

} // namespace murmelix::test
