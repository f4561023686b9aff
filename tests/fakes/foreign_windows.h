// The imitated windows of other programs, and what was sent to them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace murmelix::fakes {

struct ForeignWindow {
    std::intptr_t handle = 0, parent = 0;
    std::string class_name, caption;
};

struct ForeignInput {
    std::intptr_t window = 0;
    std::string text;  // in the ANSI code page; else a key
    unsigned code = 0; // of a key
    bool down = false;
    bool operator==(const ForeignInput&) const = default;
};

struct ForeignWindows {
    std::vector<ForeignWindow> windows; // those of one parent in their order
    std::vector<ForeignInput> input;    // that came to one of them
};

ForeignWindows& foreignWindows();

} // namespace murmelix::fakes
