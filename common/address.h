// Addresses that come from outside, judged before they are used.
#pragma once

#include <string_view>

namespace murmelix {

// A host's name or number, with a port behind a colon or without: "www.example.org", "127.0.0.1:8080".
bool isHost(std::u16string_view text);

// "someone@example.org"
bool isMailAddress(std::u16string_view text);

} // namespace murmelix
