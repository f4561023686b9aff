// The own process: how it was started, and how it is cut off.
#pragma once

#include <string>
#include <vector>

namespace murmelix::platform {

// The command line, parted as programs are used to, without the program's own name.
std::vector<std::u16string> arguments();
// The executable.
std::u16string programPath();
// Where the user keeps documents; empty where the system does not say.
std::u16string documentsDirectory();
// Ends the process in the middle of whatever it does: nothing is cleaned up.
[[noreturn]] void cutOff(unsigned status);

} // namespace murmelix::platform
