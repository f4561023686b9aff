// The system's ANSI code page.
#pragma once

#include <string>
#include <string_view>

namespace murmelix {

// Characters outside the code page map as it maps them ("?" or a look-alike).
std::string toAnsi(std::u16string_view text);
std::u16string fromAnsi(std::string_view bytes);

} // namespace murmelix
