#include "companions/agent/stage/animation_player.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace agent::stage {
namespace {

constexpr Time longest_exit = 5000;   // ms from the stop to the cut
constexpr Time least_duration = 10;   // ms a frame of no duration is held in an endless run of them
constexpr Time longest_backlog = 500; // ms that a late clock is made up for

} // namespace

AnimationPlayer::AnimationPlayer(Random random) : random_(std::move(random)) {}

void AnimationPlayer::start(std::shared_ptr<const acs::Animation> animation, Time now) {
    animation_ = std::move(animation);
    stopping_ = false;
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
    }
}

const acs::Frame* AnimationPlayer::frame() const {
    return animation_ && frame_ < animation_->frames.size() ? &animation_->frames[frame_] : nullptr;
}

void AnimationPlayer::enter(std::size_t frame, Time now) {
    frame_ = frame;
    Time duration = Time{animation_->frames[frame].duration} * 10;
    if (duration > 0) {
        without_duration_ = 0;
    } else if (++without_duration_ > animation_->frames.size()) {
        duration = least_duration;
    }
    due_ = std::max(due_, now - longest_backlog) + duration;
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
        playing_ = false;
        return true;
    }
    if (now < due_) {
        return false;
    }
    const std::size_t next = following(animation_->frames[frame_]);
    if (next >= animation_->frames.size()) {
        playing_ = false;
    } else {
        enter(next, now);
    }
    return true;
}

bool AnimationPlayer::endless() const {
    if (!playing_) {
        return false;
    }
    const auto& frames = animation_->frames;
    std::vector<bool> seen(frames.size());
    std::vector<std::size_t> open{frame_};
    seen[frame_] = true;
    while (!open.empty()) {
        const std::size_t from = open.back();
        open.pop_back();
        unsigned taken = 0;
        const auto reach = [&](std::size_t to) {
            if (to >= frames.size()) {
                return true;
            }
            if (!seen[to]) {
                seen[to] = true;
                open.push_back(to);
            }
            return false;
        };
        for (const acs::Branch& branch : frames[from].branches) {
            if (branch.probability > 0 && taken < 100 && reach(branch.target)) {
                return false;
            }
            taken += branch.probability;
        }
        if (taken < 100 && reach(from + 1)) {
            return false;
        }
    }
    return true;
}

} // namespace agent::stage
