// The screens of this machine.
#pragma once

#include <windows.h>

#include "companions/agent/stage/screens.h"

namespace agent::stage {

// As they are now. Asking takes the system its time: the answer is kept until it tells of a change.
Screens readScreens();

// Dots an inch of the screen that a window is on, as they are now.
int readResolution(HWND window);
// How much larger things are at a resolution than at 96 dots an inch.
double scaleOf(int resolution);

} // namespace agent::stage
