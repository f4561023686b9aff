// The engines that Windows, or the system below Wine, may have.
#pragma once

#include <memory>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// Null where it has no voice.
std::unique_ptr<Engine> makeSapi();
std::unique_ptr<Engine> makeEspeak();

} // namespace agent::voice
