// The process and the machine around it: command line, directories, single instance, starting programs, ending.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace murmelix::platform {

// True when another instance of this program runs already; from the first call on, this process counts as one.
bool isPreviousInstance();

// Directory of the executable without a trailing "\".
std::u16string programDirectory();

// The command line behind the program's name, as it was typed, blanks trimmed.
std::u16string commandLine();

// GetWindowsDirectoryA with a buffer of `buffer_size` characters: its result, and what stands in the buffer afterwards
// (all of it, the buffer having been filled with blanks before).
std::uint32_t windowsDirectory(std::size_t buffer_size, std::string& buffer);

// ShellExecuteA with the main window as owner, show-normal; an empty verb, parameters or directory is passed as null.
// Nothing is returned: a failure is silent.
void shellExecute(const std::u16string& verb, const std::u16string& file, const std::u16string& parameters,
                  const std::u16string& directory);

bool directoryExists(const std::u16string& path);
// Names of the directories in a directory, in the order the system lists them; without "." and "..".
std::vector<std::u16string> subdirectories(const std::u16string& path);

struct ProgramVersion {
    int major, minor, revision;
    auto operator<=>(const ProgramVersion&) const = default;
};
ProgramVersion programVersion();
// That a program's file says it has; nothing where it has none.
std::optional<ProgramVersion> versionOf(const std::u16string& path);

// Ends the process at once; no window's unload processing runs. (The fake throws ProcessEnded.)
[[noreturn]] void endProcess();

// The web server's host and the support mail address; set at build time, overridable per machine.
std::u16string siteHost();
std::u16string supportAddress();

} // namespace murmelix::platform
