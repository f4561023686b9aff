// Files as the setup programs put them on a machine and take them away again. Paths have no "\" at their end.
#pragma once

#include <string>

#include "companions/setup/setup.h"

namespace setup {

enum class Existing { replaced, kept };
// Copies under a temporary name first, so that nobody meets half a file; of what fails nothing stays behind.
Result installFile(const std::u16string& from, const std::u16string& to, Existing other_content);
// Removes the file where it is ours, which is to say equal to `original`.
Result removeFile(const std::u16string& path, const std::u16string& original);

} // namespace setup
