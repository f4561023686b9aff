// A chat log as a conversation to be replayed: who takes part, and what happens when.
#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "companions/messenger/chat/chat_log.h"

namespace messenger_client {

// The longest silence of a replay at its own pace, in seconds: nobody waits for an hour of the night to pass.
inline constexpr double longest_gap = 20.0;

// The shortest time from somebody's last words to their leaving or new name at any pace, in seconds: a log of minutes
// has them at the same moment, and who reads along must see who said it.
inline constexpr double shortest_farewell = 0.5;

struct ReplayOptions {
    std::size_t participants = 3;
    std::size_t messages = std::numeric_limits<std::size_t>::max();
    double speed = 1.0; // times of the log and longest_gap are divided by it; not positive: everything at once
};

struct Person {
    std::u16string signin;   // stays through every change of name
    std::u16string friendly; // at the start
    bool present;            // at the start
    std::size_t messages;    // in the whole log
};

struct Step {
    enum class Kind { joins, leaves, renamed, says };

    double at; // seconds from the start of the replay
    Kind kind;
    std::size_t person;  // index in Script::people
    std::u16string text; // the new name, or what is said
};

struct Script {
    std::vector<Person> people;
    std::vector<Step> steps; // in order of time
};

// Keeps the most frequent writers (the earlier one of equals), in order of appearance. A person is followed through
// renames; who is first seen joining is not there before. Messages of one minute are spread evenly over it. An action
// becomes the message "* name text"; empty messages are dropped.
Script makeScript(const std::vector<LogEvent>& log, const ReplayOptions& options);

// Steps through a script on a clock of the caller.
class Replay {
  public:
    Replay() = default;
    explicit Replay(std::vector<Step> steps) : steps_(std::move(steps)) {}
    // The steps that have come due, each once, no more than `most` of them.
    std::span<const Step> advance(double seconds, std::size_t most = std::numeric_limits<std::size_t>::max());
    bool done() const { return next_ == steps_.size(); }
    // Time of the next step; only while not done.
    double nextAt() const { return steps_[next_].at; }

  private:
    std::vector<Step> steps_;
    std::size_t next_ = 0;
};

} // namespace messenger_client
