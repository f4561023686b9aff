// Programs that this one starts and waits for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace murmelix::platform {

struct ProgramEnd {
    std::optional<std::uint32_t> status; // nothing: it did not start, or was ended because it took too long
    std::u16string error = {};           // for people, where there is no status
};

// Starts a program by its path and waits for its end; the windows of this thread are served meanwhile. One that takes
// more than `milliseconds` is ended.
ProgramEnd runAndWait(const std::u16string& path, const std::u16string& arguments, unsigned milliseconds);

} // namespace murmelix::platform
