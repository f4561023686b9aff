// version.txt beside the download page. UTF-8; the first line is the published version, "1.2.3", each number from 0 to
// 65535 as in a program's resources; the lines below say what is new, for people.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/system.h"

namespace updater {

using Version = murmelix::platform::ProgramVersion;

inline constexpr std::size_t most_bytes = 16 * 1024; // of the file: several times what is shown of it, in any script
// Of what is new. A message box has no end otherwise: it grows with a word that is longer than the screen is wide.
inline constexpr std::size_t most_rows = 12;
inline constexpr std::size_t longest_row = 64; // UTF-16 units, but for the mark of a cut

struct Published {
    Version version;
    std::u16string news; // rows parted by CR LF; without signs that hide or turn round what is shown
};

// Nothing for what is no such file, or longer.
std::optional<Published> readPublished(std::string_view bytes);

// "1.2.3"
std::u16string versionText(const Version& version);

} // namespace updater
