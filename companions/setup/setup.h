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

// Goes through a plan, and says what has happened: each line to the standard output, too, where there is one.
class Progress {
  public:
    explicit Progress(const Plan& plan) : plan_(plan) {}

    const Plan& plan() const { return plan_; }
    std::size_t done() const { return next_; } // steps
    bool over() const { return next_ == plan_.steps.size(); }
    bool failed() const { return failed_; }
    // What the next step does.
    const std::u16string& what() const { return plan_.steps[next_].what; }
    // Carries the next step out; the line that tells of it.
    std::u16string carryOutNext();
    // The last line.
    std::u16string conclusion() const;
    int exitStatus() const;

  private:
    const Plan& plan_;
    std::size_t next_ = 0;
    bool failed_ = false;
};

struct CommandLine {
    bool quiet = false;     // "/quiet": no window; the lines go to the standard output
    bool uninstall = false; // "/uninstall"
    std::u16string unknown; // the first argument that is neither
};
CommandLine readCommandLine(const std::vector<std::u16string>& arguments);

inline constexpr int exit_ready = 0;
inline constexpr int exit_failed = 1;
inline constexpr int exit_usage = 2;

// Carries out one of two plans, as the arguments say, and returns the exit status; with a window when the user has
// closed it. `name`: of the program, where the arguments are not understood.
int run(const std::vector<std::u16string>& arguments, const std::u16string& name, const std::function<Plan()>& install,
        const std::function<Plan()>& remove);

} // namespace setup
