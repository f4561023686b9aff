// Files as the setup programs put them on a machine and take them away again. Paths have no "\" at their end.
#pragma once

#include <string>
#include <vector>

#include "companions/setup/setup.h"

namespace setup {

// What is to become of a file of the same name: replaced whatever it is, or where it is ours alone.
enum class Existing { replaced, kept };
// Copies under a temporary name first, so that nobody meets half a file; of what fails nothing stays behind. `earlier`:
// what an earlier version has installed there; what equals it is ours.
Result installFile(const std::u16string& from, const std::u16string& to, Existing other_content,
                   const std::u16string& earlier = {});
// Removes the file where it is ours, which is to say equal to one of the `originals`.
Result removeFile(const std::u16string& path, const std::vector<std::u16string>& originals);
// Where nothing is left in it.
Result removeFolder(const std::u16string& path);

} // namespace setup
