// The inventory of character files, and a character for every contact.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/agent_control.h"

namespace murmelix {

// Makes sure that the contact has a character.
void LoadCharacterForContact(const std::u16string& key);
// Of contacts that are off the collections already, in this order. One that is asked for again in the middle of it is
// loaded afterwards: an id is taken until its character is gone.
void UnloadCharacters(const std::vector<std::u16string>& keys);

struct MatchedCharacter {
    std::shared_ptr<platform::AgentCharacter> character; // may be null although done
    std::shared_ptr<platform::AgentRequest> request;
    bool done = false;
};
MatchedCharacter LoadMatchedCharacter(const std::u16string& key);

// A file name with ".acs", "NO_CHARS" or "ALL_CHARS_LOADED".
std::u16string PickFreeCharacter();

// The balloon's style by the rule of the "AutoHideBalloon" option.
std::int32_t BalloonStyleFor(std::int32_t style, bool auto_hide);

} // namespace murmelix
