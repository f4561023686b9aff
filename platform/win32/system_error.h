#pragma once

#include <string>

namespace murmelix::platform {

// What the system says of one of its error numbers, with the number.
std::u16string errorText(unsigned long error);

} // namespace murmelix::platform
