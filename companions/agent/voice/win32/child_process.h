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

// Where a program belongs. `below_wine` is one of the system that Wine runs on. It gets two standard handles alone, and
// Windows has no handle of it: its input is a file that it is to write its output behind (on the same descriptor), and
// to its standard output it is to write its exit code, in decimal, as its last act.
enum class System { windows, below_wine };

// Runs a command line to its end. Nothing, with the reason in `error`, when it cannot be started, takes longer than
// `limit`, writes more than `most_output` bytes, or when `stop` is requested. The program is ended then; one below Wine
// cannot be and needs a time limit of its own.
std::optional<ChildResult> runChild(std::wstring command_line, System system, std::string_view input,
                                    std::chrono::milliseconds limit, std::size_t most_output,
                                    const std::stop_token& stop, std::string& error);

} // namespace agent::voice
