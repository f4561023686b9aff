#pragma once

#include <memory>

#include "platform/agent_control.h"

namespace murmelix::platform::win32 {

// The control that a ProgID stands for.
std::unique_ptr<AgentControl> connectAgent(const char16_t* prog_id, AgentEvents events);

} // namespace murmelix::platform::win32
