// Text that this user alone can read again, on this machine.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace murmelix::platform {

// UTF-16 units. The longest are tokens, of some hundreds.
inline constexpr std::size_t longest_secret = 4096;

// Bytes for a file or the registry; nothing where the text is too long or the system refuses.
std::optional<std::string> protectSecret(std::u16string_view text);
// Nothing where the bytes are no such, or those of another user or another machine.
std::optional<std::u16string> revealSecret(std::string_view bytes);

} // namespace murmelix::platform
