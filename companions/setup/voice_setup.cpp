// tv_enua.exe: the voices of this computer, each to be heard, one to be chosen. With /quiet: whether there is one.
#include <array>
#include <memory>

#include "common/com/handles.h"
#include "companions/agent/settings/languages.h"
#include "companions/agent/settings/settings_store.h"
#include "companions/agent/voice/win32/engines.h"
#include "companions/setup/sample.h"
#include "companions/setup/setup.h"
#include "companions/setup/voice_frm.h"
#include "companions/setup/voice_plan.h"
#include "ui/program.h"
#include "ui/screen.h"

namespace {

namespace settings = agent::settings;
namespace voice = agent::voice;
using setup::Sample;
using setup::VoiceFrm;

struct NamedEngine {
    std::u16string name;
    std::unique_ptr<voice::Engine> engine; // null where it is not installed
};

int chooseInWindow() {
    const std::array<NamedEngine, 2> engines{NamedEngine{u"Windows", voice::makeSapi()},
                                             NamedEngine{u"espeak-ng", voice::makeEspeak()}};
    const auto speakers = [&](std::uint16_t language) {
        std::vector<const NamedEngine*> found;
        for (const NamedEngine& one : engines) {
            if (one.engine && one.engine->speaks(language)) {
                found.push_back(&one);
            }
        }
        return found;
    };
    Sample sample(std::make_unique<voice::Output>(std::u16string()));
    VoiceFrm::Sources sources;
    for (const settings::Language& language : settings::languages()) {
        if (!speakers(language.id).empty()) {
            sources.languages.push_back({language.id, std::u16string(language.name)});
        }
    }
    sources.voices = [&](std::uint16_t language) {
        std::vector<VoiceFrm::Voice> voices;
        for (const NamedEngine* one : speakers(language)) {
            for (const std::u16string& name : one->engine->voices(language)) {
                voices.push_back({one->name, name});
            }
        }
        return voices;
    };
    sources.chosen = settings::readDefaultVoice;
    sources.choose = settings::writeDefaultVoice;
    sources.listen = [&](std::uint16_t language, const VoiceFrm::Voice& chosen, const Sample::Told& told) {
        for (const NamedEngine* one : speakers(language)) {
            if (chosen.engine.empty() || chosen.engine == one->name) {
                voice::Manner manner;
                manner.language_id = language;
                manner.voice = chosen.name;
                sample.play(*one->engine, std::u16string(settings::languageOf(language)->sample), manner, told);
                return;
            }
        }
    };
    VoiceFrm form(std::move(sources));
    form.Show();
    return murmelix::ui::runMessageLoop();
}

} // namespace

int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    const com::Apartment apartment;
    if (arguments.empty()) {
        return chooseInWindow();
    }
    const setup::Engines engines{voice::makeSapi, voice::makeEspeak};
    return setup::run(
        arguments, u"Voice setup", [&] { return setup::voiceInstallation(engines); }, setup::voiceRemoval);
}
