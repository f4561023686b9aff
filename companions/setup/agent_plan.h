// What MSAGENT.exe does: the character server and the bundled characters, which lie in the folder "msagent" beside it,
// come into the folder of that name in the Windows directory. A setup that replaces an earlier version leaves what that
// one has brought in "msagent.before": by it the installed files are known to be ours, and not somebody's own.
#pragma once

#include "companions/setup/setup.h"

namespace setup {

// An Agent of somebody else's stays as it is; it gets the characters alone.
Plan agentInstallation();
// Takes away what is equal to the bundled files, or to those of the earlier version.
Plan agentRemoval();

} // namespace setup
