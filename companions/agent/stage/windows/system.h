// What the server asks of Windows besides its windows.
#pragma once

#include <cstdint>
#include <string>

namespace agent::stage {

// Without the backslash at its end.
std::u16string windowsDirectory();
// True for the letter of a drive that is another machine's.
bool isRemoteDrive(char16_t letter);
// Starts this program once more, with the command line that it was started with; false where Windows refuses.
bool startAgain();
// Of the performance counter, comparable between processes.
std::uint64_t counterMicroseconds();

} // namespace agent::stage
