// The pages on the program's web site.
#pragma once

#include <string>

namespace murmelix {

// `path` begins with "/".
std::u16string pageAddress(const std::u16string& path);
// In the user's browser.
void openAddress(const std::u16string& address);
void openPage(const std::u16string& path);

} // namespace murmelix
