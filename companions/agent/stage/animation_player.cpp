#include "companions/agent/stage/animation_player.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace agent::stage {
namespace {

constexpr Time longest_exit = 5000;   // ms from the stop to the cut
constexpr Time longest_hold = 100;    // ms a frame is held at most once a stop is asked: others wait
constexpr Time least_duration = 10;   // ms a frame of no duration is held in an endless run of them
constexpr Time longest_backlog = 500; // ms that a late clock is made up for

bool isEndMark(const std::vector<acs::Frame>& frames, std::size_t frame) {
    return frame + 1 == frames.size() && frames[frame].images.empty() && frames[frame].duration == 0;
}

// Calls `to` with each frame that may follow this one, the number of frames standing for the end.
template <class To>
void eachFollowing(const std::vector<acs::Frame>& frames, std::size_t from, To to) {
    unsigned taken = 0; // percent
    for (const acs::Branch& branch : frames[from].branches) {
        if (branch.probability > 0 && taken < 100) {
            to(std::min<std::size_t>(branch.target, frames.size()));
        }
        taken += branch.probability;
    }
    if (taken < 100) {
        to(from + 1);
    }
}

// Of each frame whether the animation, left alone, may come to its end from there: found backwards from the end, in
// time proportional to the frames and their branches.
std::vector<bool> endingFrames(const acs::Animation& animation) {
    const auto& frames = animation.frames;
    // The frames that come before each, one after another; `first` tells where those of a frame begin.
    std::vector<std::size_t> first(frames.size() + 2);
    for (std::size_t from = 0; from < frames.size(); ++from) {
        eachFollowing(frames, from, [&](std::size_t to) { ++first[to + 1]; });
    }
    std::partial_sum(first.begin(), first.end(), first.begin());
    std::vector<std::size_t> before(first.back()), next(first);
    for (std::size_t from = 0; from < frames.size(); ++from) {
        eachFollowing(frames, from, [&](std::size_t to) { before[next[to]++] = from; });
    }
    std::vector<bool> ending(frames.size() + 1);
    std::vector<std::size_t> open{frames.size()};
    while (!open.empty()) {
        const std::size_t to = open.back();
        open.pop_back();
        for (std::size_t i = first[to]; i < first[to + 1]; ++i) {
            if (!ending[before[i]]) {
                ending[before[i]] = true;
                open.push_back(before[i]);
            }
        }
    }
    return ending;
}

} // namespace

AnimationPlayer::AnimationPlayer(Random random) : random_(std::move(random)) {}

void AnimationPlayer::start(std::shared_ptr<const acs::Animation> animation, Time now) {
    if (animation != animation_) {
        ending_.clear();
        animation_ = std::move(animation);
    }
    stopping_ = went_round_ = ended_by_itself_ = false;
    without_duration_ = 0;
    playing_ = animation_ && !animation_->frames.empty();
    due_ = now;
    if (playing_) {
        enter(0, now);
    }
}

void AnimationPlayer::askStop(Time now) {
    if (playing_ && !stopping_) {
        stopping_ = true;
        cut_at_ = now + longest_exit;
        due_ = std::min(due_, now + longest_hold);
    }
}

void AnimationPlayer::cut() {
    playing_ = ended_by_itself_ = false;
}

bool AnimationPlayer::leave(Time now) {
    if (!std::exchange(ended_by_itself_, false) || animation_->transition != acs::Transition::exit_branches ||
        shown_animation_ != animation_) {
        return false;
    }
    const std::int16_t exit = animation_->frames[shown_frame_].exit_frame;
    if (exit < 0 || static_cast<std::size_t>(exit) >= animation_->frames.size()) {
        return false;
    }
    playing_ = stopping_ = true;
    cut_at_ = now + longest_exit;
    due_ = now;
    without_duration_ = 0;
    enter(static_cast<std::size_t>(exit), now);
    return true;
}

const acs::Frame* AnimationPlayer::frame() const {
    return shown_animation_ ? &shown_animation_->frames[shown_frame_] : nullptr;
}

std::uint16_t AnimationPlayer::sound() const {
    return animation_ && frame_ < animation_->frames.size() ? animation_->frames[frame_].sound : acs::no_sound;
}

void AnimationPlayer::enter(std::size_t frame, Time now) {
    frame_ = frame;
    if (!isEndMark(animation_->frames, frame)) {
        shown_animation_ = animation_;
        shown_frame_ = frame;
    }
    Time duration = Time{animation_->frames[frame].duration} * 10;
    if (duration > 0) {
        without_duration_ = 0;
    } else if (++without_duration_ > animation_->frames.size()) {
        duration = least_duration;
    }
    due_ = std::max(due_, now - longest_backlog) + (stopping_ ? std::min(duration, longest_hold) : duration);
}

std::size_t AnimationPlayer::following(const acs::Frame& frame) {
    const std::size_t end = animation_->frames.size();
    if (stopping_ && frame.exit_frame != acs::exit_none) {
        return frame.exit_frame < 0 ? end : static_cast<std::size_t>(frame.exit_frame);
    }
    if (!frame.branches.empty()) {
        int drawn = 1 + random_(100);
        for (const acs::Branch& branch : frame.branches) {
            if (drawn <= branch.probability) {
                return branch.target;
            }
            drawn -= branch.probability;
        }
    }
    return frame_ + 1;
}

bool AnimationPlayer::step(Time now) {
    if (!playing_) {
        return false;
    }
    if (stopping_ && now >= cut_at_) {
        cut();
        return true;
    }
    if (now < due_) {
        return false;
    }
    const std::size_t next = following(animation_->frames[frame_]);
    if (next >= animation_->frames.size()) {
        playing_ = false;
        ended_by_itself_ = !stopping_;
    } else {
        went_round_ = went_round_ || next <= frame_;
        enter(next, now);
    }
    return true;
}

bool AnimationPlayer::endless() {
    if (!playing_) {
        return false;
    }
    if (ending_.empty()) {
        ending_ = endingFrames(*animation_);
    }
    return !ending_[frame_];
}

} // namespace agent::stage
