// What MSAGENT.exe does: the character server and the bundled characters, which lie in the folder "msagent" beside it,
// come into the folder of that name in the Windows directory.
#pragma once

#include "companions/setup/setup.h"

namespace setup {

// An Agent of somebody else's stays as it is; it gets the characters alone.
Plan agentInstallation();
// Takes away what is equal to the bundled files.
Plan agentRemoval();

} // namespace setup
