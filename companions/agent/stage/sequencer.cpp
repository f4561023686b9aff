#include "companions/agent/stage/sequencer.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <tuple>
#include <utility>

#include "common/text.h"
#include "companions/agent/voice/speech.h"
#include "companions/agent/voice/stretch.h"

namespace agent::stage {
namespace {

constexpr Time quiet_before_idling = 12000; // ms of nothing to do; so long a pose is kept, too
constexpr Time idle_level_2 = 60000;        // ms since idling began
constexpr Time idle_level_3 = 180000;
constexpr int least_idle_pause = 3000; // ms between two idle animations: this and up to as much again
constexpr Time balloon_lingers = 1500; // ms after the last word, with auto-hide
constexpr Time patience = 20000;       // ms that a loop, or a way back, may hold up what follows it
constexpr Time thought_word = 200;     // ms a word of a thought
constexpr double most_haste = 2;       // times as fast
constexpr double haste_step = 0.05;    // smaller changes are not worth one
constexpr Time longest_word = 1500;    // ms that a word goes on in which the time of a request ends
constexpr Time usual_sound = 3000;     // ms of a sound file that has not been read yet
constexpr int steps_a_tick = 64;       // frames or requests that one character passes in one advance

bool isStopped(StopKind stopped, Kind kind) {
    switch (stopped) {
    case StopKind::move:
        return kind == Kind::move_to;
    case StopKind::play:
        return kind == Kind::play || kind == Kind::gesture_at;
    case StopKind::speak:
        return kind == Kind::speak || kind == Kind::think;
    case StopKind::get:
        return kind == Kind::get;
    }
    return false;
}

bool isBlank(char16_t unit) {
    const bool wide = unit >= u'\u2000' && unit <= u'\u200B';
    const bool separator = unit == u'\u2028' || unit == u'\u2029' || unit == u'\u202F' || unit == u'\u3000';
    return unit <= u' ' || unit == u'\u00A0' || wide || separator || unit == u'\uFEFF';
}

// A thought shows its words one by one, as fast as they are read.
voice::Speech thoughtOf(const std::u16string& text) {
    voice::Speech speech;
    speech.shown = text;
    const auto blank = [](char16_t unit) { return unit <= u' ' || unit == u'\u3000'; };
    for (std::size_t at = 0; at < text.size();) {
        if (blank(text[at])) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        while (at < text.size() && !blank(text[at])) {
            ++at;
        }
        speech.words.push_back({begin, at, static_cast<std::uint32_t>(speech.words.size() * thought_word)});
    }
    return speech;
}

// The end of a state's name for a way on the screen. Right and left are the character's own, which looks at the viewer.
std::u16string towards(int right, int down) {
    if (std::abs(right) >= std::abs(down)) {
        return right > 0 ? u"LEFT" : u"RIGHT";
    }
    return down > 0 ? u"DOWN" : u"UP";
}

} // namespace

Actor::Actor(Stage& stage, ActorId id, TroupeId troupe, std::shared_ptr<const Repertoire> repertoire)
    : stage_(stage), id_(id), troupe_(troupe), repertoire_(std::move(repertoire)), player_(stage.random_),
      unscaled_width_(repertoire_->width()), unscaled_height_(repertoire_->height()),
      rest_pose_(repertoire_->animation(u"RestPose")), quiet_since_(stage.now_) {
    std::tie(width_, height_) = scaledSize();
}

Actor::~Actor() = default;

void Actor::add(const RequestRef& request) {
    request->actor = id_;
    request->place = ++stage_.last_place_;
    queue_.push_back(request);
    stage_.waiting_changed_ = true;
    wake();
    orderAhead();
}

void Actor::wake() {
    quiet_since_ = stage_.now_;
    if (idle_since_) {
        idle_since_.reset();
        if (role_ == Role::idling) {
            leaveAnimation();
        }
        stage_.audience_.idleCompleted(*this);
    }
}

// The animation that plays takes its exit and belongs to no request any more; a pose that is stood in is kept no
// longer.
void Actor::leaveAnimation() {
    standing_ = false;
    if (!player_.playing() || role_ == Role::returning) {
        return;
    }
    if (role_ == Role::resting) {
        player_.cut();
    } else {
        player_.askStop(stage_.now_);
    }
    role_ = Role::leaving;
}

void Actor::retire(const RequestRef& request, Status status) {
    stage_.waiting_changed_ = true;
    if (const auto found = utterances_.find(request.get()); found != utterances_.end()) {
        stage_.effects_.cancelSpeech(found->second.order);
        if (found->second.sound != 0) {
            stage_.effects_.stopSound(found->second.sound);
        }
        utterances_.erase(found);
    }
    request->status = status;
    request->target.reset(); // chains of waits must not grow into one long chain of owners
    stage_.audience_.requestCompleted(*this, request);
}

// Whether the animation of this request, which has begun, goes with it, and is no pose to stand in.
bool Actor::leavesItsPose(const Request& request) const {
    if (request.kind == Kind::speak || request.kind == Kind::think) {
        const auto found = utterances_.find(&request);
        return found != utterances_.end() && !found->second.posed;
    }
    return request.kind == Kind::move_to;
}

void Actor::stopCurrent() {
    if (!current_) {
        return;
    }
    const RequestRef stopped = std::exchange(current_, nullptr);
    const bool began = std::exchange(begun_, false);
    if (stopped->kind == Kind::speak || stopped->kind == Kind::think) {
        stage_.releaseChannel(id_);
        if (began) {
            endUtterance();
            closeBalloonNow();
        }
    }
    journey_.reset();
    if (role_ == Role::request || (began && standing_ && leavesItsPose(*stopped))) {
        leaveAnimation();
    }
    quiet_since_ = stage_.now_;
    retire(stopped, Status::interrupted);
}

void Actor::stop() {
    // Taken first: a stop is over when it returns, whatever it stops.
    std::deque<RequestRef> queue = std::exchange(queue_, {});
    stopCurrent();
    for (const RequestRef& request : queue) {
        retire(request, Status::interrupted);
    }
    leaveAnimation();
}

void Actor::stop(const RequestRef& request) {
    if (request == current_) {
        stopCurrent();
    } else if (const auto found = std::find(queue_.begin(), queue_.end(), request); found != queue_.end()) {
        queue_.erase(found);
        retire(request, Status::interrupted);
    }
}

void Actor::stopAll(const std::vector<StopKind>& kinds) {
    const auto meant = [&](const RequestRef& request) {
        return std::any_of(kinds.begin(), kinds.end(), [&](StopKind kind) { return isStopped(kind, request->kind); });
    };
    std::deque<RequestRef> stopped;
    std::deque<RequestRef> kept;
    for (RequestRef& request : queue_) {
        (meant(request) ? stopped : kept).push_back(std::move(request));
    }
    queue_ = std::move(kept);
    if (current_ && meant(current_)) {
        stopCurrent();
    }
    for (const RequestRef& request : stopped) {
        retire(request, Status::interrupted);
    }
}

void Actor::place(int left, int top, MoveCause cause) {
    // Whoever takes the character in hand ends its journey where they put it.
    journey_.reset();
    const Rect area = kept({left, top, left + width_, top + height_});
    if (area == this->area()) {
        return;
    }
    left_ = area.left;
    top_ = area.top;
    move_cause_ = cause;
    stage_.effects_.placed(*this);
    stage_.audience_.moved(*this, cause);
}

Rect Actor::kept(const Rect& area) const {
    return visible_ && stage_.keep_on_screen_ ? movedOnto(stage_.screens_, area) : area;
}

void Actor::returnToScreen(MoveCause cause) {
    if (!journey_) {
        place(left_, top_, cause);
    }
}

void Actor::followScreens(const Screens& before) {
    if (!journey_ && visible_ && stage_.keep_on_screen_) {
        const Rect area = afterChange(before, stage_.screens_, this->area());
        place(area.left, area.top, MoveCause::program);
    }
}

void Actor::drag(int left, int top) {
    journey_.reset();
    left_ = left;
    top_ = top;
    move_cause_ = MoveCause::user;
    stage_.effects_.placed(*this);
}

void Actor::drop() {
    const Rect area = kept(this->area());
    if (area != this->area()) {
        left_ = area.left;
        top_ = area.top;
        stage_.effects_.placed(*this);
    }
    stage_.audience_.moved(*this, MoveCause::user);
}

void Actor::resize(int width, int height) {
    width = std::clamp(width, 1, largest_side);
    height = std::clamp(height, 1, largest_side);
    unscaled_width_ = width / stage_.scale_;
    unscaled_height_ = height / stage_.scale_;
    setSize(width, height);
}

// As large as it can be where the scale would make it larger, in its proportions.
std::pair<int, int> Actor::scaledSize() const {
    const double scale = std::min(stage_.scale_, largest_side / std::max(unscaled_width_, unscaled_height_));
    const auto scaled = [&](double side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
    return {scaled(unscaled_width_), scaled(unscaled_height_)};
}

void Actor::setSize(int width, int height) {
    if (width == width_ && height == height_) {
        return;
    }
    width_ = width;
    height_ = height;
    stage_.effects_.placed(*this);
    stage_.audience_.resized(*this);
    returnToScreen(MoveCause::program);
}

void Actor::setVisible(bool visible, VisibilityCause cause) {
    if (visible == visible_) {
        return;
    }
    visible_ = visible;
    visibility_cause_ = cause;
    if (!visible) {
        closeBalloonNow();
        idle_since_.reset();
        return_to_.clear();
        standing_ = false;
        mouth_.reset();
        player_.cut();
        role_ = Role::none;
    }
    quiet_since_ = stage_.now_;
    stage_.effects_.placed(*this);
    if (visible) {
        stage_.audience_.shown(*this, cause);
        returnToScreen(MoveCause::program);
    } else {
        stage_.audience_.hidden(*this, cause);
    }
}

void Actor::hideByUser() {
    stop();
    setVisible(false, VisibilityCause::user_hid);
}

void Actor::hideBalloon() {
    closeBalloonNow();
}

void Actor::showBalloon() {
    balloon_goes_ = false; // one that is about to go stays, too
    if (balloon_open_ || !visible_ || last_words_.empty() || !(balloon_style & balloon_on)) {
        return;
    }
    balloon_open_ = true;
    stage_.effects_.openBalloon(*this, last_kind_, last_words_);
    stage_.effects_.balloonWords(*this, last_words_.size());
    stage_.audience_.balloonShown(*this);
}

void Actor::dismissBalloon() {
    if (words_over_) {
        closeBalloonNow();
    }
}

bool Actor::balloonBeingRead() const {
    if (!balloon_open_ || !words_over_) {
        return false;
    }
    const Time stays = stage_.listening_.balloon_stays;
    return stays == Listening::until_read || stage_.now_ - *words_over_ < stays;
}

bool Actor::wordByWord() const {
    const Listening& listening = stage_.listening_;
    return (balloon_style & balloon_auto_pace) && !listening.words_at_once && !listening.calm;
}

void Actor::closeBalloonNow() {
    words_over_.reset();
    balloon_goes_ = false;
    if (std::exchange(balloon_open_, false)) {
        stage_.effects_.closeBalloon(*this);
        stage_.audience_.balloonHidden(*this);
    }
}

void Actor::playNow(std::shared_ptr<const acs::Animation> animation, Role role) {
    player_.start(std::move(animation), stage_.now_);
    role_ = role;
    return_to_.clear();
    standing_ = false;
    played_since_ = stage_.now_;
    showFrame();
}

void Actor::showFrame() {
    stage_.effects_.drawn(*this);
    if (player_.sound() != acs::no_sound && sound_effects_on && !silenced_ && !stage_.paused_) {
        stage_.effects_.frameSound(*this, player_.sound());
    }
}

std::shared_ptr<const acs::Animation> Actor::fromState(std::u16string_view state) const {
    const std::vector<std::u16string> names = repertoire_->state(state);
    if (names.empty()) {
        return nullptr;
    }
    const int chosen = names.size() == 1 ? 0 : stage_.random_(static_cast<int>(names.size()));
    return repertoire_->animation(names[static_cast<std::size_t>(chosen)]);
}

// True when there was something to do, so that there may be more.
bool Actor::animate() {
    if (!visible_ || !player_.step(stage_.now_)) {
        return false;
    }
    if (player_.playing()) {
        showFrame();
        return true;
    }
    const acs::Animation* ended = player_.animation();
    if (role_ != Role::returning && role_ != Role::resting && ended->transition == acs::Transition::return_animation) {
        return_to_ = ended->return_animation;
    }
    standing_ = role_ == Role::request;
    if (role_ != Role::request && role_ != Role::idling) {
        player_.cut(); // no pose to be left
    }
    if (role_ == Role::idling) {
        next_idle_ = stage_.now_ + least_idle_pause + stage_.random_(least_idle_pause);
    }
    role_ = Role::none;
    return true;
}

// The rest pose has a state of its own for speaking.
bool Actor::canSpeakInPose() const {
    return standing_ && player_.animation() != rest_pose_.get() && player_.frame() && !player_.frame()->mouths.empty();
}

// Whether the animation before is over and its pose left, so that a new one can begin. A pose that has a mouth may be
// kept for speaking.
bool Actor::settled(bool keep_mouth) {
    if (player_.playing()) {
        if (role_ == Role::resting) {
            player_.cut();
            role_ = Role::none;
        } else {
            if (role_ == Role::idling) {
                leaveAnimation();
            } else if (role_ == Role::returning && (player_.endless() || stage_.now_ - played_since_ > patience)) {
                player_.askStop(stage_.now_);
            }
            return false;
        }
    }
    if (!visible_ || (keep_mouth && canSpeakInPose())) {
        return true;
    }
    standing_ = false;
    if (player_.leave(stage_.now_)) {
        role_ = Role::leaving;
        showFrame();
        return false;
    }
    if (return_to_.empty()) {
        return true;
    }
    auto back = repertoire_->animation(std::exchange(return_to_, {}));
    if (!back) {
        return true;
    }
    playNow(std::move(back), Role::returning);
    return !player_.playing();
}

bool Actor::hasWaiter() const {
    for (const auto& [id, other] : stage_.actors_) {
        if (other->current_ && other->begun_ && other->current_->kind == Kind::wait &&
            other->current_->target->actor == id_ && !other->current_->target->over()) {
            return true;
        }
    }
    return false;
}

// The first Speak that is heard if all that comes before it goes well: one whose character is hidden at its turn fails.
RequestRef Actor::firstToBeHeard() const {
    if (silenced_) {
        return nullptr;
    }
    bool seen = visible_;
    const auto heard = [&](const Request& request) {
        if (request.kind == Kind::show || request.kind == Kind::hide) {
            seen = request.kind == Kind::show;
        }
        return seen && request.kind == Kind::speak;
    };
    if (current_ && heard(*current_)) {
        return current_;
    }
    const auto found =
        std::find_if(queue_.begin(), queue_.end(), [&](const RequestRef& request) { return heard(*request); });
    return found == queue_.end() ? nullptr : *found;
}

// Follows who waits for whom from the request that `wait` waits for; back at this character, none of them would end.
bool Actor::wouldDeadlock(const Request& wait) const {
    std::set<ActorId> seen;
    const Request* waiting = &wait;
    while (true) {
        const Request& awaited = *waiting->target;
        if (awaited.over()) {
            return false;
        }
        if (awaited.actor == id_) {
            return true;
        }
        const Actor* other = stage_.find(awaited.actor);
        if (!other || !seen.insert(awaited.actor).second) {
            return false;
        }
        if (!other->current_ || !other->begun_ || other->current_->kind != Kind::wait) {
            return false;
        }
        waiting = other->current_.get();
    }
}

// Whether the turn of `request` can begin now.
bool Actor::ready(const Request& request) {
    switch (request.kind) {
    case Kind::wait:
    case Kind::interrupt:
    case Kind::get:
    case Kind::load:
        return true;
    case Kind::think:
        return !visible_ || (!stage_.paused_ && settled(true) && !balloonBeingRead());
    case Kind::speak: {
        if (!visible_) {
            return true;
        }
        orderAhead();
        const Utterance& utterance = utterances_[current_.get()];
        if (utterance.failed) {
            return true;
        }
        return settled(true) && utterance.speech && !stage_.paused_ && !balloonBeingRead() &&
               (silenced_ || stage_.channel(id_));
    }
    case Kind::play:
        // The way back may be just what is asked for.
        if (!player_.playing() && murmelix::sameText(request.text, return_to_, murmelix::LetterCase::ignored)) {
            return_to_.clear();
        }
        return settled(false);
    case Kind::move_to:
    case Kind::hide:
        return settled(false) && !balloonBeingRead();
    default:
        return settled(false);
    }
}

void Actor::begin() {
    Request& request = *current_;
    request.status = Status::in_progress;
    begun_ = true;
    begun_at_ = stage_.now_;
    stage_.waiting_changed_ = true;
    stage_.audience_.requestStarted(*this, current_);

    const bool needs_stage = request.kind == Kind::play || request.kind == Kind::speak || request.kind == Kind::think ||
                             request.kind == Kind::gesture_at;
    if (needs_stage && !visible_) {
        return finish(Status::failed, Failure::hidden);
    }
    switch (request.kind) {
    case Kind::play: {
        auto animation = repertoire_->animation(request.text);
        if (!animation) {
            return finish(Status::failed, Failure::no_animation);
        }
        return playNow(std::move(animation), Role::request);
    }
    case Kind::speak:
        if (utterances_[current_.get()].failed) {
            return finish(Status::failed, Failure::no_sound);
        }
        return beginSpeaking();
    case Kind::think:
        utterances_[current_.get()].speech = thoughtOf(request.text);
        utterances_[current_.get()].quiet = true;
        return beginSpeaking();
    case Kind::move_to: {
        const Rect there = kept({request.x, request.y, request.x + width_, request.y + height_});
        if (there == area()) {
            return;
        }
        if (!visible_ || request.speed <= 0 || stage_.listening_.calm) {
            return place(request.x, request.y, MoveCause::program);
        }
        closeBalloonNow();
        if (auto animation = fromState(u"MOVING" + towards(there.left - left_, there.top - top_))) {
            playNow(std::move(animation), Role::request);
        }
        journey_ = Journey{left_, top_, there.left, there.top, stage_.now_, request.speed};
        return;
    }
    case Kind::gesture_at: {
        const int right = request.x - (left_ + width_ / 2);
        const int down = request.y - (top_ + height_ / 2);
        auto animation = fromState(u"GESTURING" + towards(right, down));
        if (!animation) {
            return finish(Status::failed, Failure::no_animation);
        }
        return playNow(std::move(animation), Role::request);
    }
    case Kind::show:
        if (visible_) {
            return;
        }
        // The first picture comes before the window, so that no old pose flashes up.
        if (auto animation = request.fast ? nullptr : fromState(u"SHOWING")) {
            playNow(std::move(animation), Role::request);
        } else {
            rest();
        }
        return setVisible(true, VisibilityCause::program_showed);
    case Kind::hide:
        closeBalloonNow();
        if (visible_ && !request.fast) {
            if (auto animation = fromState(u"HIDING")) {
                playNow(std::move(animation), Role::request);
            }
        }
        return;
    case Kind::wait:
        if (!request.target || request.target->actor == id_) {
            return finish(Status::failed, Failure::bad_target);
        }
        if (wouldDeadlock(request)) {
            return finish(Status::failed, Failure::deadlock);
        }
        return;
    case Kind::interrupt:
        if (!request.target || request.target->actor == id_) {
            return finish(Status::failed, Failure::bad_target);
        }
        if (Actor* other = stage_.find(request.target->actor)) {
            other->stop(request.target);
        }
        return;
    case Kind::get:
        if (request.failure != Failure::none) {
            finish(Status::failed, request.failure);
        }
        return;
    case Kind::load: // never in a queue
        return;
    }
}

bool Actor::travelling() {
    if (!journey_) {
        return false;
    }
    const Journey journey = *journey_;
    const Time gone = stage_.now_ - journey.since;
    if (gone >= journey.length) {
        journey_.reset();
        left_ = journey.to_x;
        top_ = journey.to_y;
        move_cause_ = MoveCause::program;
        stage_.effects_.placed(*this);
        stage_.audience_.moved(*this, MoveCause::program);
        return false;
    }
    const auto between = [&](int from, int to) { return from + static_cast<int>((to - from) * gone / journey.length); };
    const int left = between(journey.from_x, journey.to_x);
    const int top = between(journey.from_y, journey.to_y);
    if (left != left_ || top != top_) {
        left_ = left;
        top_ = top;
        stage_.effects_.placed(*this);
    }
    return true;
}

// Whether the current request still goes on.
bool Actor::acting() {
    const bool playing = role_ == Role::request && player_.playing();
    switch (current_->kind) {
    case Kind::play:
    case Kind::gesture_at:
        if (playing && !player_.stopping() && (!queue_.empty() || hasWaiter()) &&
            ((player_.endless() && player_.wentRound()) || stage_.now_ - begun_at_ > patience)) {
            player_.askStop(stage_.now_);
        }
        return playing;
    case Kind::show:
    case Kind::hide:
        if (playing && player_.endless() && (player_.wentRound() || stage_.now_ - begun_at_ > patience)) {
            player_.askStop(stage_.now_);
        }
        return playing;
    case Kind::speak:
    case Kind::think:
        return speaking();
    case Kind::move_to:
        if (travelling()) {
            return true;
        }
        if (playing) {
            player_.askStop(stage_.now_);
        }
        standing_ = false;
        return playing;
    case Kind::wait:
        return !current_->target->over();
    case Kind::interrupt:
    case Kind::get:
    case Kind::load:
        return false;
    }
    return false;
}

void Actor::finish(Status status, Failure failure) {
    const RequestRef done = std::exchange(current_, nullptr);
    begun_ = false;
    done->failure = failure;
    quiet_since_ = stage_.now_;
    if (done->kind == Kind::hide && status == Status::complete) {
        setVisible(false, VisibilityCause::program_hid);
    }
    if (done->kind == Kind::speak) {
        stage_.releaseChannel(id_);
    }
    retire(done, status);
}

// True when a request ended or began, so that there may be more to do.
bool Actor::progress() {
    if (balloon_goes_ && stage_.now_ - *words_over_ >= balloon_lingers && !balloonBeingRead()) {
        closeBalloonNow();
    }
    if (!current_) {
        if (queue_.empty()) {
            idle();
            return false;
        }
        current_ = queue_.front();
        queue_.pop_front();
        begun_ = false;
    }
    if (!begun_) {
        if (!ready(*current_)) {
            return false;
        }
        begin();
        return true;
    }
    if (acting()) {
        orderAhead();
        return false;
    }
    finish(Status::complete);
    return true;
}

void Actor::rest() {
    if (rest_pose_) {
        playNow(rest_pose_, Role::resting);
    }
}

void Actor::idle() {
    if (!visible_ || (role_ == Role::idling && player_.playing())) {
        return;
    }
    const Time now = stage_.now_;
    if (!idle_on) {
        no_idling_until_ = now + quiet_before_idling;
        if (idle_since_) {
            wake();
        }
    }
    if (idle_since_ ? now < next_idle_ : now - quiet_since_ < quiet_before_idling) {
        if (standing_) {
            return;
        }
    }
    if (!(role_ == Role::resting && player_.playing())) {
        if (!settled(false)) {
            return;
        }
        if (rest_pose_ && player_.animation() != rest_pose_.get()) {
            rest();
        }
    }
    if (now < no_idling_until_) {
        return;
    }
    if (!idle_since_) {
        if (now - quiet_since_ < quiet_before_idling) {
            return;
        }
        idle_since_ = now;
        next_idle_ = now;
        stage_.audience_.idleStarted(*this);
    }
    if (now < next_idle_) {
        return;
    }
    const Time idled = now - *idle_since_;
    const int level = idled >= idle_level_3 ? 3 : idled >= idle_level_2 ? 2 : 1;
    std::shared_ptr<const acs::Animation> animation;
    for (int tried = level; tried >= 1 && !animation; --tried) {
        animation = fromState(tried == 3 ? u"IDLINGLEVEL3" : tried == 2 ? u"IDLINGLEVEL2" : u"IDLINGLEVEL1");
    }
    next_idle_ = now + least_idle_pause;
    if (animation && !stage_.listening_.calm) {
        playNow(std::move(animation), Role::idling);
    }
}

// Speech takes time to make: that of the current Speak, else of the next one in the queue, is ordered before its turn.
void Actor::orderAhead() {
    if (!visible_) {
        return;
    }
    if (current_ && current_->kind == Kind::speak) {
        order(current_);
        if (!begun_) {
            return;
        }
    }
    const auto next = std::find_if(queue_.begin(), queue_.begin() + std::min<std::ptrdiff_t>(8, std::ssize(queue_)),
                                   [](const RequestRef& request) { return request->kind == Kind::speak; });
    if (next != queue_.begin() + std::min<std::ptrdiff_t>(8, std::ssize(queue_))) {
        order(*next);
    }
}

void Actor::order(const RequestRef& request) {
    if (utterances_.contains(request.get())) {
        return;
    }
    Utterance& utterance = utterances_[request.get()];
    try {
        utterance.order = stage_.effects_.orderSpeech(
            *this, request->text, request->url,
            [&stage = stage_, id = id_, key = request.get()](std::optional<voice::Speech> speech) {
                Actor* actor = stage.find(id);
                if (!actor) {
                    return;
                }
                const auto found = actor->utterances_.find(key);
                if (found == actor->utterances_.end()) {
                    return;
                }
                found->second.failed = !speech;
                found->second.speech = std::move(speech);
                stage.waiting_changed_ = true;
            });
    } catch (const std::exception&) {
        utterance.failed = true;
    }
}

void Actor::beginSpeaking() {
    Utterance& utterance = utterances_[current_.get()];
    utterance.since = stage_.now_;
    utterance.posed = canSpeakInPose();
    if (!utterance.quiet) {
        if (auto animation = utterance.posed ? nullptr : fromState(u"SPEAKING")) {
            playNow(std::move(animation), Role::request);
        }
        // What cannot be heard is shown all the same, for as long as it would sound: nobody waits for it in vain.
        utterance.length = utterance.speech->sound.milliseconds();
        try {
            utterance.sound = stage_.effects_.startSound(std::move(utterance.speech->sound), hearing());
        } catch (const std::exception&) {
            utterance.sound = 0;
        }
    } else {
        utterance.length = static_cast<Time>(utterance.speech->words.size() + 1) * thought_word;
    }
    closeBalloonNow();
    const std::u16string& shown = utterance.speech->shown;
    const bool something = !std::all_of(shown.begin(), shown.end(), isBlank);
    if ((balloon_style & balloon_on) && something) {
        balloon_open_ = true;
        last_kind_ = utterance.quiet ? BalloonKind::thought : BalloonKind::words;
        last_words_ = shown;
        stage_.effects_.openBalloon(*this, last_kind_, shown);
        if (!wordByWord()) {
            stage_.effects_.balloonWords(*this, shown.size());
        }
        stage_.audience_.balloonShown(*this);
    }
}

bool Actor::speaking() {
    Utterance& utterance = utterances_[current_.get()];
    if (!utterance.speech) {
        return false; // there was no memory for it
    }
    const voice::Speech& speech = *utterance.speech;
    const Time step = stage_.now_ - std::exchange(utterance.since, stage_.now_);
    if (stage_.paused_) {
        setMouth(mouth_ ? std::optional(acs::MouthShape::closed) : std::nullopt);
        return true;
    }
    utterance.taken += step;
    utterance.passed += static_cast<double>(step) * stage_.tempo();
    std::optional<std::uint32_t> heard;
    if (utterance.sound != 0) {
        heard = stage_.effects_.heard(utterance.sound);
    } else if (utterance.passed < static_cast<double>(utterance.length)) {
        heard = static_cast<std::uint32_t>(utterance.passed);
    }
    const auto due = [&](std::uint32_t at) { return !heard || at <= *heard; };

    const std::size_t words_before = utterance.words;
    while (utterance.words < speech.words.size() && due(speech.words[utterance.words].at)) {
        ++utterance.words;
    }
    if (const Time longest = stage_.listening_.longest;
        heard && longest > 0 && utterance.taken >= longest &&
        (utterance.words != words_before || utterance.taken >= longest + longest_word)) {
        if (utterance.sound != 0) {
            stage_.effects_.stopSound(utterance.sound);
        }
        heard.reset();
    }
    if (utterance.words != words_before && balloon_open_ && wordByWord()) {
        stage_.effects_.balloonWords(*this, speech.words[utterance.words - 1].end);
    }
    while (utterance.mouths < speech.mouth.size() && due(speech.mouth[utterance.mouths].at)) {
        ++utterance.mouths;
    }
    if (utterance.mouths != 0) {
        setMouth(speech.mouth[utterance.mouths - 1].shape);
    }
    while (utterance.bookmarks < speech.bookmarks.size() && due(speech.bookmarks[utterance.bookmarks].at)) {
        stage_.audience_.bookmark(*this, speech.bookmarks[utterance.bookmarks].id);
        ++utterance.bookmarks;
    }
    if (heard) {
        return true;
    }
    if (balloon_open_) {
        stage_.effects_.balloonWords(*this, speech.shown.size());
        words_over_ = stage_.now_;
        balloon_goes_ = (balloon_style & balloon_auto_hide) != 0;
    }
    utterance.sound = 0;
    endUtterance();
    if (role_ == Role::request || (standing_ && !utterance.posed)) {
        leaveAnimation();
    }
    return false;
}

void Actor::endUtterance() {
    setMouth(std::nullopt);
}

void Actor::setMouth(std::optional<acs::MouthShape> mouth) {
    if (mouth != mouth_) {
        mouth_ = mouth;
        stage_.effects_.drawn(*this);
    }
}

// Whether it says or thinks something now.
bool Actor::utters() const {
    return current_ && begun_ && (current_->kind == Kind::speak || current_->kind == Kind::think);
}

Hearing Actor::hearing() const {
    return {stage_.speaker_ == id_, stage_.tempo()};
}

void Actor::hearAnew() {
    if (!utters()) {
        return;
    }
    if (const auto found = utterances_.find(current_.get()); found != utterances_.end() && found->second.sound != 0) {
        stage_.effects_.setHearing(found->second.sound, hearing());
    }
}

// In the middle of a word, too: where nobody else speaks by then, what is left of it is heard again.
void Actor::setSilenced(bool silenced) {
    if (silenced == silenced_) {
        return;
    }
    silenced_ = silenced;
    stage_.waiting_changed_ = true;
    if (silenced) {
        stage_.effects_.stopFrameSounds(*this);
        stage_.releaseChannel(id_);
    } else if (utters() && current_->kind == Kind::speak && stage_.speaker_ == 0) {
        stage_.speaker_ = id_;
    }
    hearAnew();
}

void Actor::orderAnew() {
    const Request* const said = begun_ ? current_.get() : nullptr;
    std::erase_if(utterances_, [&](const auto& entry) {
        const bool ahead = entry.first != said;
        if (ahead) {
            stage_.effects_.cancelSpeech(entry.second.order);
        }
        return ahead;
    });
    orderAhead();
}

// How long a Speak will sound; a guess where it has not been made yet.
Time Actor::lengthOf(const Request& request) const {
    Time length = usual_sound;
    if (const auto found = utterances_.find(&request); found != utterances_.end() && found->second.speech) {
        length = found->second.speech->sound.milliseconds();
    } else if (request.url.empty()) {
        const std::uint64_t units = std::min(request.text.size(), voice::most_heard_units);
        length = static_cast<Time>(units * 60'000 / (std::uint64_t{voice::reading_speed} * voice::units_a_word));
    }
    length = static_cast<Time>(static_cast<double>(length) / stage_.listening_.tempo);
    return stage_.listening_.longest > 0 ? std::min(length, stage_.listening_.longest) : length;
}

// The Speaks that are to be heard and have not begun.
std::vector<RequestRef> Actor::unspoken() const {
    std::vector<RequestRef> all;
    if (silenced_) {
        return all;
    }
    if (current_ && !begun_ && current_->kind == Kind::speak) {
        all.push_back(current_);
    }
    std::ranges::copy_if(queue_, std::back_inserter(all),
                         [](const RequestRef& request) { return request->kind == Kind::speak; });
    return all;
}

Stage::Stage(Effects& effects, Audience& audience, Random random)
    : effects_(effects), audience_(audience), random_(std::move(random)) {}

Stage::~Stage() = default;

Actor& Stage::enter(std::shared_ptr<const Repertoire> repertoire, TroupeId troupe) {
    const ActorId id = ++last_actor_;
    return *actors_.emplace(id, std::make_unique<Actor>(*this, id, troupe, std::move(repertoire))).first->second;
}

void Stage::leave(ActorId id) {
    const auto found = actors_.find(id);
    if (found == actors_.end()) {
        return;
    }
    Actor& actor = *found->second;
    actor.stop();
    actor.setVisible(false, VisibilityCause::program_hid);
    actor.closeBalloonNow();
    releaseChannel(id);
    actors_.erase(id);
}

Actor* Stage::find(ActorId id) {
    const auto found = actors_.find(id);
    return found == actors_.end() ? nullptr : found->second.get();
}

std::vector<Actor*> Stage::actors() {
    std::vector<Actor*> all;
    for (const auto& [id, actor] : actors_) {
        all.push_back(actor.get());
    }
    return all;
}

RequestRef Stage::newRequest(Request request) {
    auto made = std::make_shared<Request>(std::move(request));
    // Clients read it as a signed number; it starts again where that ends.
    last_request_ = last_request_ == INT32_MAX ? 1 : last_request_ + 1;
    made->number = last_request_;
    return made;
}

void Stage::advance(Time now) {
    now_ = std::max(now_, now);
    hurry();
    bool more = true;
    for (int step = 0; more && step < steps_a_tick; ++step) {
        more = false;
        for (const auto& [id, actor] : actors_) {
            more = actor->animate() || more;
            more = actor->progress() || more;
        }
    }
}

void Stage::setScreens(Screens screens) {
    const Screens before = std::exchange(screens_, std::move(screens));
    for (const auto& [id, actor] : actors_) {
        actor->followScreens(before);
    }
}

void Stage::setKeepOnScreen(bool keep) {
    keep_on_screen_ = keep;
    for (const auto& [id, actor] : actors_) {
        actor->returnToScreen(MoveCause::program);
    }
}

// Who holds up a Speak: the character whose own Speak has its turn, this one or one that this one waits for. Null while
// it comes nearer by itself. Those who wait for one another stand in no circle: the last Wait of one fails.
const Actor* Stage::holderUp(const Request& request) const {
    for (ActorId id = request.actor;;) {
        const auto found = actors_.find(id);
        const Request* current = found == actors_.end() ? nullptr : found->second->current_.get();
        if (!current) {
            return nullptr;
        }
        if (current->kind == Kind::speak) {
            return found->second.get();
        }
        if (current->kind != Kind::wait || !found->second->begun_ || current->target->over()) {
            return nullptr;
        }
        id = current->target->actor;
    }
}

// Each troupe goes on to its earliest Speak that is still to be heard; where that one waits for another Speak, however
// late, the other is the next.
std::set<ActorId> Stage::nextSpeakers() const {
    std::map<TroupeId, RequestRef> earliest;
    for (const auto& [id, actor] : actors_) {
        if (RequestRef first = actor->firstToBeHeard()) {
            RequestRef& of_troupe = earliest[actor->troupe_];
            if (!of_troupe || first->place < of_troupe->place) {
                of_troupe = std::move(first);
            }
        }
    }
    std::set<ActorId> next;
    for (const auto& [troupe, request] : earliest) {
        if (const Actor* holder = holderUp(*request)) {
            next.insert(holder->id_);
        }
    }
    return next;
}

void Stage::setScale(double scale) {
    scale_ = scale;
    for (const auto& [id, actor] : actors_) {
        const auto [width, height] = actor->scaledSize();
        actor->setSize(width, height);
    }
}

double Stage::tempo() const {
    return listening_.tempo * haste_;
}

void Stage::skip() {
    const auto skipped = [this](auto meant) {
        bool any = false;
        for (Actor* actor : actors()) {
            if (actor->current_ && meant(*actor)) {
                actor->stopCurrent();
                any = true;
            }
        }
        return any;
    };
    if (skipped([this](const Actor& actor) { return actor.id_ == speaker_; }) ||
        skipped([](const Actor& actor) { return actor.utters(); })) {
        return;
    }
    // What is still being read is said already: what follows it goes on.
    bool read = false;
    for (const auto& [id, actor] : actors_) {
        if (actor->balloonBeingRead()) {
            actor->dismissBalloon();
            read = true;
        }
    }
    if (read) {
        return;
    }
    RequestRef next;
    for (const auto& [id, actor] : actors_) {
        const RequestRef& current = actor->current_;
        if (current && current->kind == Kind::speak && (!next || current->place < next->place)) {
            next = current;
        }
    }
    if (next) {
        find(next->actor)->stop(next);
    }
}

void Stage::setPaused(bool paused) {
    paused_ = paused;
    effects_.setPaused(paused);
}

void Stage::setListening(const Listening& listening) {
    listening_ = listening;
    listening_.tempo = std::clamp(listening.tempo, voice::least_tempo, voice::most_tempo / most_haste);
    waiting_changed_ = true;
    hurry();
    for (const auto& [id, actor] : actors_) {
        actor->hearAnew();
    }
}

void Stage::voicesChanged() {
    for (const auto& [id, actor] : actors_) {
        actor->orderAnew();
    }
}

// Goes faster the more waits to be said; where that is not enough, the oldest that waits is let go. The last one is
// said however long it is: it would be followed by nothing.
void Stage::hurry() {
    if (!std::exchange(waiting_changed_, false)) {
        return;
    }
    double haste = 1;
    if (listening_.most_waiting > 0) {
        std::vector<std::pair<RequestRef, Time>> waiting;
        Time length = 0;
        for (const auto& [id, actor] : actors_) {
            for (RequestRef& request : actor->unspoken()) {
                const Time of_it = actor->lengthOf(*request);
                length += of_it;
                waiting.emplace_back(std::move(request), of_it);
            }
        }
        const auto most = static_cast<double>(listening_.most_waiting);
        if (static_cast<double>(length) > most * most_haste) {
            std::ranges::sort(waiting, {}, [](const auto& entry) { return entry.first->place; });
            for (std::size_t i = 0; i + 1 < waiting.size() && static_cast<double>(length) > most * most_haste; ++i) {
                const auto& [oldest, of_it] = waiting[i];
                length -= of_it;
                find(oldest->actor)->stop(oldest);
            }
            waiting_changed_ = false; // by those alone
        }
        haste = std::clamp(static_cast<double>(length) / most, 1.0, most_haste);
        haste = std::round(haste / haste_step) * haste_step;
    }
    if (haste != haste_) {
        haste_ = haste;
        for (const auto& [id, actor] : actors_) {
            actor->hearAnew();
        }
    }
}

bool Stage::channel(ActorId actor) {
    if (std::find(asking_.begin(), asking_.end(), actor) == asking_.end()) {
        asking_.push_back(actor);
    }
    if (speaker_ != 0) {
        return speaker_ == actor;
    }
    const std::set<ActorId> next = nextSpeakers();
    const auto first =
        std::find_if(asking_.begin(), asking_.end(), [&](ActorId asking) { return next.contains(asking); });
    if (first == asking_.end() || *first != actor) {
        return false;
    }
    asking_.erase(first);
    speaker_ = actor;
    return true;
}

void Stage::releaseChannel(ActorId actor) {
    std::erase(asking_, actor);
    if (speaker_ == actor) {
        speaker_ = 0;
    }
}

} // namespace agent::stage
