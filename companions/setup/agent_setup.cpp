// MSAGENT.exe: sets up the character server and the bundled characters.
#include "companions/setup/agent_plan.h"
#include "companions/setup/setup.h"
#include "ui/program.h"

int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    return setup::run(arguments, u"Character server setup", setup::agentInstallation, setup::agentRemoval);
}
