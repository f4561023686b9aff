// tv_enua.exe: looks for a voice.
#include "common/com/handles.h"
#include "companions/agent/voice/win32/engines.h"
#include "companions/setup/setup.h"
#include "companions/setup/voice_plan.h"
#include "ui/program.h"

int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    const com::Apartment apartment;
    const setup::Engines engines{agent::voice::makeSapi, agent::voice::makeEspeak};
    return setup::run(
        arguments, u"Voice setup", [&] { return setup::voiceInstallation(engines); }, setup::voiceRemoval);
}
