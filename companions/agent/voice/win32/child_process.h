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
    std::uint32_t exit_code = 0;
};

// Runs a command line to its end. Nothing, with the reason in `error`, when it cannot be started, takes longer than
// `limit`, writes more than `most_output` bytes, or when `stop` is requested. The program is ended then.
std::optional<ChildResult> runChild(std::wstring command_line, std::string_view input, std::chrono::milliseconds limit,
                                    std::size_t most_output, const std::stop_token& stop, std::string& error);

} // namespace agent::voice
