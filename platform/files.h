// Files of this machine by their paths, which have no "\" at their end.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmelix::platform {

// Why the system did not do it, for people; nothing where it did.
using Refusal = std::optional<std::u16string>;

// Where Windows is.
std::u16string windowsDirectory();

// A file, not a directory.
bool fileExists(const std::u16string& path);
// False also where one of them cannot be read.
bool sameContent(const std::u16string& a, const std::u16string& b);
// Names of the files in a directory that end so, in whatever case, sorted.
std::vector<std::u16string> filesIn(const std::u16string& directory, const std::u16string& ending);

// All its bytes; nothing where there are more than `most`, where it cannot be read, or where it is no file of a disk.
// It stays open to others, and is let go of.
std::optional<std::string> readFile(const std::u16string& path, std::size_t most);

// With those above it; one that is there already is no refusal.
Refusal makeDirectory(const std::u16string& path);
// What is at `to` is replaced. A copy that was refused can have left a part of the file there.
Refusal copyFile(const std::u16string& from, const std::u16string& to);
// Within a volume: whoever opens `to` meets either the whole old file or the whole new one.
Refusal moveFile(const std::u16string& from, const std::u16string& to);
Refusal deleteFile(const std::u16string& path);
// Where nothing is in it; tells whether it is gone.
bool removeEmptyDirectory(const std::u16string& path);

struct WriteFailure {
    unsigned long number; // the system's
    std::u16string description;
};
// Writes from the first byte on; what an existing file has behind that stays.
std::optional<WriteFailure> writeFile(const std::u16string& path, std::string_view bytes);

} // namespace murmelix::platform
