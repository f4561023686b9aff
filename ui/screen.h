// The screen, and the loop that all windows live on.
#pragma once

#include <functional>

#include "ui/types.h"

namespace murmelix::ui {

// The same horizontally and vertically: 15 at 96 dots an inch, 7.5 at 192.
double twipsPerPixel();
int toPixels(int twips);
int toTwips(int pixels);
// Of the main screen, what no task bar takes; pixels.
Rect workArea();
// The same of the screen that most of a place is on, else of the nearest one.
Rect workArea(const Rect& place);
// The place moved onto that, where it is not wholly there; made smaller where it is larger.
Rect onScreen(const Rect& place);

// Serves the windows of this thread until the process ends, or until quitMessageLoop, whose status is the result.
int runMessageLoop();
void quitMessageLoop(int status = 0);

// Has something done by the loop of the thread that has windows, soon and in order; from any thread. Nothing posted is
// lost, however full the system's queue is.
void post(std::function<void()> action);

// Whether the user lets things move on the screen for the look of it.
bool animates();

// The sound of something that was refused.
void beep();

} // namespace murmelix::ui
