// updater.exe ADDRESS: shows which version is installed and where newer ones are published, and opens that page where
// the user wants it. It asks no server by itself.
#pragma once

#include <string>
#include <vector>

namespace updater {

inline constexpr int exit_closed = 0, exit_no_address = 2;

// The exit status.
int run(const std::vector<std::u16string>& arguments);

} // namespace updater
