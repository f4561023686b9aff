#pragma once

#include <string>

namespace murmelix {

// Major "." minor "." revision of the program.
std::u16string versionText();

} // namespace murmelix
