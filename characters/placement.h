// Where the characters stand around the conversation window, and their balloons.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/agent_control.h"

namespace murmelix {

// Moves one character to its slot; without one, the number of characters on stage.
void PlaceCharacter(platform::AgentCharacter& character, std::optional<std::int16_t> slot = {});
void ReArrangeLoadedCharacterPositions();
void AddAutoHideBalloonFeatureToAllLoadedChars(bool auto_hide);

} // namespace murmelix
