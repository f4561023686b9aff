// What tv_enua.exe does: sees to it that the character server has a voice. Voices of Windows come with Windows,
// espeak-ng by its own installer: each of them is to say a word, and people are told what to do where none can.
#pragma once

#include <functional>
#include <memory>

#include "companions/agent/voice/voice.h"
#include "companions/setup/setup.h"

namespace setup {

// Each makes an engine; null where it is not installed.
struct Engines {
    std::function<std::unique_ptr<agent::voice::Engine>()> windows, espeak;
};

Plan voiceInstallation(const Engines& engines);
Plan voiceRemoval();

} // namespace setup
