// tv_enua.exe: sees to it that the character server has a voice. Voices of Windows come with Windows, espeak-ng by its
// own installer: this program has each of them say a word, and tells what to do where none can.
#include <exception>
#include <memory>
#include <stop_token>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/agent/voice/voice.h"
#include "companions/agent/voice/win32/engines.h"
#include "companions/setup/setup.h"

namespace {

using namespace setup;

// Whether the engine makes sound of a word; `error` tells why not.
bool canSpeak(agent::voice::Engine* engine, std::string& error) {
    error = "not installed";
    if (!engine) {
        return false;
    }
    const auto wave = engine->synthesise(u"Hello", {}, std::stop_token(), error);
    return wave && wave->milliseconds() > 0;
}

Result lookForVoice() {
    std::string windows_error, espeak_error;
    if (canSpeak(agent::voice::makeSapi().get(), windows_error)) {
        return {Outcome::done, u"Windows has a voice: the characters speak with it."};
    }
    if (canSpeak(agent::voice::makeEspeak().get(), espeak_error)) {
        return {Outcome::done, u"espeak-ng has a voice: the characters speak with it."};
    }
    return {Outcome::failed, u"there is no voice on this computer. Voices of Windows: " +
                                 murmelix::fromUtf8(windows_error) + u"; espeak-ng: " +
                                 murmelix::fromUtf8(espeak_error) +
                                 u". Please add a voice in the speech settings of Windows, or install espeak-ng, and "
                                 u"run this setup again. Until then the characters show their words in balloons, "
                                 u"unheard."};
}

Plan installation() {
    return {u"Voice setup",
            u"A voice for the characters is being looked for: a voice of Windows, else espeak-ng.",
            {{u"Having a voice say a word", lookForVoice}},
            u"The characters have a voice."};
}

Plan removal() {
    return {u"Voice removal",
            u"This setup uses voices that others have installed.",
            {{u"Looking for files of this setup",
              []() -> Result {
                  return {Outcome::done, u"This setup has put nothing on this computer, so nothing is removed."};
              }}},
            u"Nothing was changed."};
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const CommandLine command_line = readCommandLine();
        if (!command_line.unknown.empty()) {
            return refuse(u"Voice setup", command_line);
        }
        const murmelix::com::Apartment apartment;
        return carryOut(command_line.uninstall ? removal() : installation(), command_line);
    } catch (const std::exception&) {
        return exit_failed;
    }
}
