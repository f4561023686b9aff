// Plays one animation on the stage clock: frames, durations, branches, exit frames. A last frame without pictures and
// with duration 0 is an end mark, as most makers put it: it is passed and never shown. An animation that has come to
// its end stands in the frame that showed last.
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
    void cut();
    // An animation that has come to its end by itself goes on by the exit of the frame it stands in, where it has one,
    // as if it were stopped there: true if so.
    bool leave(Time now);
    // Goes to the next frame (or the end) if that is due: true if so, and there may be more to do.
    bool step(Time now);

    bool playing() const { return playing_; }
    bool stopping() const { return stopping_; }
    // Whether it has gone back to a frame before, or to the same one, since it began.
    bool wentRound() const { return went_round_; }
    // Whether the animation, left alone, can never come to its end from the frame that shows. Found out for the whole
    // animation when it is first asked.
    bool endless();
    // The frame that shows; of the last animation when nothing plays; null before the first.
    const acs::Frame* frame() const;
    // Of the frame that was gone to last, an end mark too; acs::no_sound where it has none.
    std::uint16_t sound() const;
    const acs::Animation* animation() const { return animation_.get(); }

  private:
    std::size_t following(const acs::Frame& frame);
    void enter(std::size_t frame, Time now);

    Random random_;
    std::shared_ptr<const acs::Animation> animation_;
    std::vector<bool> ending_; // of each frame whether the end can be reached; empty until that is asked
    std::size_t frame_ = 0;
    std::shared_ptr<const acs::Animation> shown_animation_; // another than animation_ where that has shown nothing yet
    std::size_t shown_frame_ = 0;
    Time due_ = 0;
    Time cut_at_ = 0;
    std::size_t without_duration_ = 0; // frames of no duration passed in a row
    bool playing_ = false;
    bool stopping_ = false;
    bool went_round_ = false;
    bool ended_by_itself_ = false;
};

} // namespace agent::stage
