// One thing that a character was asked to do.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace agent::stage {

// The values that clients read.
enum class Status { complete = 0, failed = 1, pending = 2, interrupted = 3, in_progress = 4 };

enum class Kind { play, speak, think, move_to, gesture_at, show, hide, wait, interrupt, get, load };

enum class Failure { none, no_animation, hidden, no_sound, bad_target, deadlock, no_state, not_loaded };

using ActorId = std::uint64_t;
using TroupeId = std::uint64_t;

struct Request {
    Kind kind = Kind::play;
    std::u16string text = {};             // the animation of Play, the words of Speak and Think, the names of Get; of a
                                          // Load the id, or why it failed
    std::u16string url = {};              // the sound file of Speak
    int x = 0, y = 0;                     // of MoveTo and GestureAt, screen pixels
    int speed = 0;                        // ms that MoveTo takes
    bool fast = false;                    // Show and Hide without their animation
    std::shared_ptr<Request> target = {}; // of Wait and Interrupt

    std::int32_t number = 0; // counts up over all requests
    std::uint64_t place = 0; // in the order in which all characters were asked
    ActorId actor = 0;
    Status status = Status::pending;
    Failure failure = Failure::none; // of a Get that waits: what it will come to

    bool over() const { return status != Status::pending && status != Status::in_progress; }
};

using RequestRef = std::shared_ptr<Request>;

} // namespace agent::stage
