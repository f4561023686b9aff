// Files and registry as the setup programs need them. Paths are Windows paths without a trailing backslash.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "companions/setup/setup.h"

namespace setup {

std::u16string programDirectory();
std::u16string windowsDirectory();
std::u16string fileName(const std::u16string& path);

// Nothing where there is no such value.
std::optional<std::u16string> registryText(HKEY root, const std::u16string& key, const wchar_t* value, REGSAM view = 0);
bool fileExists(const std::u16string& path);
bool sameContent(const std::u16string& a, const std::u16string& b);
std::vector<std::u16string> filesIn(const std::u16string& directory, const std::u16string& pattern);

// Makes the directory and those above it; false, with GetLastError, where that is refused.
bool makeDirectory(const std::u16string& directory);

enum class Existing { replaced, kept };
// Copies under a temporary name first, so that nobody meets half a file.
Result installFile(const std::u16string& from, const std::u16string& to, Existing other_content);
// Removes the file where it is ours, which is to say equal to `original`.
Result removeFile(const std::u16string& path, const std::u16string& original);

// Runs a program and waits, with the message loop going on. Nothing where it cannot be started or does not end in time.
std::optional<DWORD> runAndWait(const std::u16string& program, const std::u16string& arguments, DWORD milliseconds);

std::u16string errorText(DWORD error);

} // namespace setup
