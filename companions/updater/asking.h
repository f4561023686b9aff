// Asking the server of the download page which version is published.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "common/address.h"
#include "companions/updater/published.h"
#include "companions/updater/updater.h"

namespace updater {

inline constexpr unsigned most_milliseconds =
    15'000;                              // redirects included; who waits for longer has seen the program by then
inline constexpr int most_redirects = 3; // to "https", to "www", to another server

// Of version.txt in the folder that the page is; nothing for what is no web address, or one with a query or fragment.
std::optional<murmelix::WebAddress> versionAddress(const std::u16string& page);

// What is published, or why that is not known. The request tells the server nothing but that the program asks, and its
// version.
std::variant<Published, ExitStatus> askPublished(murmelix::WebAddress address, const Version& program);

} // namespace updater
