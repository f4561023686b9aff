// The screens of this machine.
#pragma once

#include "companions/agent/stage/screens.h"

namespace agent::stage {

// As they are now. Asking takes the system its time: the answer is kept until it tells of a change.
Screens readScreens();

// Dots an inch, as they were when the program started.
int readResolution();
// How much larger things are at a resolution than at 96 dots an inch.
double scaleOf(int resolution);

} // namespace agent::stage
