// Plays one animation on the stage clock: frames, durations, branches, exit frames.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "companions/agent/acs/character_file.h"

namespace agent::stage {

using Time = std::int64_t; // ms on the stage clock

// A number from 0 to `below` - 1.
using Random = std::function<int(int below)>;

class AnimationPlayer {
  public:
    explicit AnimationPlayer(Random random);

    void start(std::shared_ptr<const acs::Animation> animation, Time now);
    // From the next frame change on the exit frames are taken. An animation that still finds no end is cut.
    void askStop(Time now);
    // The animation ends at once; its frame stays the one that shows.
    void cut() { playing_ = false; }
    // Goes to the next frame (or the end) if that is due: true if so, and there may be more to do.
    bool step(Time now);

    bool playing() const { return playing_; }
    bool stopping() const { return stopping_; }
    // Whether the animation, left alone, can never come to its end from the frame that shows. Found out for the whole
    // animation when it is first asked.
    bool endless();
    // The frame that shows; of the last animation when nothing plays; null before the first.
    const acs::Frame* frame() const;
    const acs::Animation* animation() const { return animation_.get(); }

  private:
    std::size_t following(const acs::Frame& frame);
    void enter(std::size_t frame, Time now);

    Random random_;
    std::shared_ptr<const acs::Animation> animation_;
    std::vector<bool> ending_; // of each frame whether the end can be reached; empty until that is asked
    std::size_t frame_ = 0;
    Time due_ = 0;
    Time cut_at_ = 0;
    std::size_t without_duration_ = 0; // frames of no duration passed in a row
    bool playing_ = false;
    bool stopping_ = false;
};

} // namespace agent::stage
