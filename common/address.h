// Addresses that come from outside, judged before they are used.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmelix {

// A host's name or number, with a port behind a colon or without: "www.example.org", "127.0.0.1:8080".
bool isHost(std::u16string_view text);

// "someone@example.org"
bool isMailAddress(std::u16string_view text);

// What is asked of which web server: http://host:port/path?query
struct WebAddress {
    bool secure = false; // https
    std::u16string host;
    std::uint16_t port = 80;
    std::u16string path; // from the "/" behind the host on, with the query
    bool operator==(const WebAddress&) const = default;
};

// Nothing for other schemes, with a user's name or a fragment, and for what has signs that an address does not have.
std::optional<WebAddress> webAddress(std::u16string_view text);

} // namespace murmelix
