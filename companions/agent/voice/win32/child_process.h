// Programs started to turn their standard input into a standard output.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace agent::voice {

struct ChildResult {
    std::vector<std::uint8_t> output;
    // Missing for a program that Windows has no handle of (Wine starting one of the system below it).
    std::optional<std::uint32_t> exit_code;
};

// Runs a command line to its end. Nothing, with the reason in `error`, when it cannot be started, takes longer than
// `limit`, writes more than `most_output` bytes, or when `stop` is requested; the program is ended then, or finds its
// output closed.
std::optional<ChildResult> runChild(std::wstring command_line, std::string_view input, std::chrono::milliseconds limit,
                                    std::size_t most_output, const std::stop_token& stop, std::string& error);

} // namespace agent::voice
