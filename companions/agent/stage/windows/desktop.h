// The screens of this machine.
#pragma once

#include "companions/agent/stage/screens.h"

namespace agent::stage {

// As they are now. Asking takes the system its time: the answer is kept until it tells of a change.
Screens readScreens();

} // namespace agent::stage
