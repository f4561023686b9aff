// The one way a character is made to act.
#pragma once

#include <string>

namespace murmelix {

// `command`: "speak", "wav", "listen", "hide", "show" or "play", exactly. A failing Agent call is skipped.
void RunCharacterCommand(const std::u16string& key, const std::u16string& command, const std::u16string& text = {},
                         const std::u16string& animation = {}, const std::u16string& sound = {}, bool keepPose = false);

// Every character of the ignored-characters field removed.
std::u16string StripIgnoredChars(const std::u16string& text);

} // namespace murmelix
