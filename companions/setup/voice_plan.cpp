#include "companions/setup/voice_plan.h"

#include <stop_token>

#include "common/text.h"

namespace setup {

namespace {

// Whether the engine makes sound of a word; `error` tells why not.
bool canSpeak(agent::voice::Engine* engine, std::string& error) {
    error = "not installed";
    if (!engine) {
        return false;
    }
    const auto wave = engine->synthesise(u"Hello", {}, std::stop_token(), error);
    return wave && wave->milliseconds() > 0;
}

Result lookForVoice(const Engines& engines) {
    std::string windows_error, espeak_error;
    if (canSpeak(engines.windows().get(), windows_error)) {
        return {Outcome::done, u"Windows has a voice: the characters speak with it."};
    }
    if (canSpeak(engines.espeak().get(), espeak_error)) {
        return {Outcome::done, u"espeak-ng has a voice: the characters speak with it."};
    }
    return {Outcome::failed, u"there is no voice on this computer. Voices of Windows: " +
                                 murmelix::fromUtf8(windows_error) + u"; espeak-ng: " +
                                 murmelix::fromUtf8(espeak_error) +
                                 u". Please add a voice in the speech settings of Windows, or install espeak-ng, and "
                                 u"run this setup again. Until then the characters show their words in balloons, "
                                 u"unheard."};
}

} // namespace

Plan voiceInstallation(const Engines& engines) {
    return {u"Voice setup",
            u"A voice for the characters is being looked for: a voice of Windows, else espeak-ng.",
            {{u"Having a voice say a word", [engines] { return lookForVoice(engines); }}},
            u"The characters have a voice."};
}

Plan voiceRemoval() {
    return {u"Voice removal",
            u"This setup uses voices that others have installed.",
            {{u"Looking for files of this setup",
              []() -> Result {
                  return {Outcome::done, u"This setup has installed nothing, so nothing is removed."};
              }}},
            u"Nothing was changed."};
}

} // namespace setup
