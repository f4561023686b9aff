// Addresses of files, as clients that were written for a browser give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace agent::stage {

// The path that a "file:" address names (RFC 8089): percent escapes of UTF-8, the drive's "|" for ":", and the host
// empty, "localhost" or another machine, whose path then begins with two backslashes. A "%" that begins no escape is
// itself. Any other text is a path already. Nothing where an escape is of what no path can hold.
std::optional<std::u16string> pathOf(std::u16string_view address);

} // namespace agent::stage
