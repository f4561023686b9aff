#include "characters/action_script.h"

#include <bitset>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "common/text.h"

namespace murmelix {

namespace {

using platform::AgentCharacter;
using platform::attempt;
using Request = std::shared_ptr<platform::AgentRequest>;

// Meant to cut off what plays. A text is no request, so that the call fails and nothing is cut off: every character
// says all that was written.
void stopPlaying(AgentCharacter& character) {
    attempt([&] { character.Stop(u"play"); });
}

void takeRestPose(AgentCharacter& character) {
    attempt([&] { character.Play(u"restpose"); });
}

std::u16string prepareForSpeech(const std::u16string& text) {
    return toProperCase(AutoIgnoreChars ? StripIgnoredChars(text) : text);
}

} // namespace

void RunCharacterCommand(const std::u16string& key, const std::u16string& command, const std::u16string& text,
                         const std::u16string& animation, const std::u16string& sound, bool keepPose) {
    if (!LoadedCharacters.contains(key) || !LastRequests.contains(key)) {
        return;
    }
    const std::shared_ptr<AgentCharacter> character = LoadedCharacters.Item(key);
    const Request before = LastRequests.Item(key); // until the end: letting go of it is a call as well
    Request request = before;

    if (command == u"speak") {
        stopPlaying(*character);
        takeRestPose(*character);
        attempt([&] { request = character->Speak(prepareForSpeech(text), {}); });
    } else if (command == u"wav") {
        stopPlaying(*character);
        if (!keepPose) {
            takeRestPose(*character);
        }
        attempt([&] { request = character->Speak(u" ", SoundsDir + CurrentSoundScheme + u"\\" + sound + u".wav"); });
    } else if (command == u"listen") {
        stopPlaying(*character);
        attempt([&] { request = character->Play(u"StartListening"); });
    } else if (command == u"hide") {
        attempt([&] { request = character->Hide(); });
    } else if (command == u"show") {
        attempt([&] { request = character->Show(); });
    } else if (command == u"play") {
        attempt([&] { request = character->Play(animation); });
    }

    // The calls above let events in: one of them may have taken the character away.
    if (loadedCharacter(key) != character || !LastRequests.contains(key)) {
        return;
    }
    // Letting go of the request lets events in as well: it is kept until all is in order again.
    const Request former = LastRequests.Item(key);
    LoadedCharacters.Remove(key);
    LastRequests.Remove(key);
    LoadedCharacters.Add(character, key);
    LastRequests.Add(std::move(request), key);
}

std::u16string StripIgnoredChars(const std::u16string& text) {
    std::bitset<0x10000> ignored;
    for (const char16_t unit : IgnoredChars) {
        ignored.set(unit);
    }
    std::u16string kept;
    kept.reserve(text.size());
    for (const char16_t unit : text) {
        if (!ignored[unit]) {
            kept.push_back(unit);
        }
    }
    return kept;
}

} // namespace murmelix
