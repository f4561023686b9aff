// A program of the system that Wine runs on, started as often as it is needed.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/voice/win32/child_process.h"

namespace agent::voice {

// One shell that stays and carries out a command for each run: whatever Wine itself starts of that system costs it two
// descriptors for good, what the shell starts costs it none. A shell that has ended, or that has not answered in time,
// gives way to a new one. One run at a time.
class LastingShell {
  public:
    // `command` is for bash and holds no double quotes. $arguments are those of the run; its standard input is a file
    // with the input of the run, behind which it is to write its output (on the same descriptor).
    explicit LastingShell(std::wstring command);
    ~LastingShell();
    LastingShell(const LastingShell&) = delete;
    LastingShell& operator=(const LastingShell&) = delete;

    // Runs the command. Nothing, with the reason in `error`, when there is no shell, when the command takes longer than
    // `limit` or writes more than `most_output` bytes, or when `stop` is requested. It is not ended then and needs
    // limits of its own; the next run waits for it, as long as its own limit lets it. `arguments`: letters, digits, "-"
    // and "+" alone.
    std::optional<ChildResult> run(const std::vector<std::string>& arguments, std::string_view input,
                                   std::chrono::milliseconds limit, std::size_t most_output,
                                   const std::stop_token& stop, std::string& error);

  private:
    class Session;
    struct Bounds;

    // False, with the reason in `error`, where no shell begins.
    bool start(const Bounds& bounds, std::string& error);

    std::wstring command_;
    std::unique_ptr<Session> session_;
};

} // namespace agent::voice
