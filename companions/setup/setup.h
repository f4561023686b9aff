// A setup program: a plan of steps, carried out one after another in a window that shows them, or quietly.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace setup {

enum class Outcome {
    done,  // carried out, or there already
    kept,  // something of somebody else's stands there and was left alone
    failed // could not be carried out; the plan goes on, the program's exit status tells
};

struct Result {
    Outcome outcome = Outcome::done;
    std::u16string text; // one sentence for people
};

struct Step {
    std::u16string what; // shown while it is under way
    std::function<Result()> carryOut;
};

struct Plan {
    std::u16string title;        // of the window
    std::u16string introduction; // what is about to happen, one or two sentences
    std::vector<Step> steps;
    std::u16string success; // the last line, where nothing failed
};

struct CommandLine {
    bool quiet = false;     // "/quiet": no window; the lines go to the standard output
    bool uninstall = false; // "/uninstall"
    std::u16string unknown; // the first argument that is neither
};
CommandLine readCommandLine();

inline constexpr int exit_ready = 0;
inline constexpr int exit_failed = 1;
inline constexpr int exit_usage = 2;

// Carries the plan out and returns the exit status. With a window it returns when the user has closed it.
int carryOut(const Plan& plan, const CommandLine& command_line);

// Says that the command line is not understood, in the way that it asks for, and returns the exit status.
int refuse(const std::u16string& title, const CommandLine& command_line);

} // namespace setup
