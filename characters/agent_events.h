// What happens when the Agent server tells something.
#pragma once

#include <cstdint>
#include <string>

#include "platform/agent_control.h"

namespace murmelix {

void Agent_Command(const std::u16string& name);
void Agent_DblClick(const std::u16string& character_id);
void Agent_IdleStart(const std::u16string& character_id);
void Agent_Restart();
void Agent_Shutdown();

// The five above, ready for createAgentControl.
platform::AgentEvents agentEvents();

} // namespace murmelix
