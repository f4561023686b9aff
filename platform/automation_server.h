// Which automation servers this machine has.
#pragma once

#include <string>

namespace murmelix::platform {

// The command line of the program, else the path of the library, that is registered for a ProgID, be it for programs of
// 64 or of 32 bits; empty where there is none.
std::u16string registeredServer(const std::u16string& prog_id);

} // namespace murmelix::platform
