#include "companions/agent/voice/win32/child_process.h"

#include <utility>

#include "companions/agent/voice/win32/inheritance.h"

namespace agent::voice {

namespace {

constexpr DWORD child_poll_ms = 20; // how often a stop is looked for

} // namespace

std::optional<ChildResult> runChild(std::wstring command_line, std::string_view input, std::chrono::milliseconds limit,
                                    std::size_t most_output, const std::stop_token& stop, std::string& error) {
    const auto failed = [&error](const char* reason) {
        error = reason;
        return std::nullopt;
    };
    const auto deadline = std::chrono::steady_clock::now() + limit;
    if (stop.stop_requested()) {
        return failed("stopped");
    }
    // Through files, so that neither side ever waits for the other.
    const Handle in(temporaryFile()), out(temporaryFile());
    if (!in || !out || !fill(in, input)) {
        return failed("no connection to a program can be made");
    }
    const Handle process(startProgram(command_line, in.get(), out.get()));
    if (!process) {
        return failed("the program cannot be started");
    }
    const auto ended = [&](const char* reason) {
        TerminateProcess(process.get(), 1);
        return failed(reason);
    };
    for (bool running = true; running;) {
        running = WaitForSingleObject(process.get(), child_poll_ms) == WAIT_TIMEOUT;
        if (sizeOf(out) > most_output) {
            return ended("the program writes too much");
        }
        if (running && stop.stop_requested()) {
            return ended("stopped");
        }
        if (running && std::chrono::steady_clock::now() >= deadline) {
            return ended("the program takes too long");
        }
    }
    ChildResult result;
    DWORD code = 0;
    if (GetExitCodeProcess(process.get(), &code) == 0) {
        return failed("the program ended without telling how");
    }
    result.exit_code = code;
    if (!readFrom(out, 0, result.output)) {
        return failed("what the program wrote cannot be read");
    }
    return result;
}

} // namespace agent::voice
