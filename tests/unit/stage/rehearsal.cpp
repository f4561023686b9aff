#include "tests/unit/stage/rehearsal.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>

#include "common/text.h"

namespace agent::stage {

acs::Animation& Cast::add(const std::u16string& name, int frames) {
    auto animation = std::make_shared<acs::Animation>();
    animation->name = name;
    animation->transition = acs::Transition::none;
    animation->frames.resize(static_cast<std::size_t>(frames));
    animations_.push_back(animation);
    return *animation;
}

void Cast::state(const std::u16string& name, std::vector<std::u16string> animations) {
    states_[name] = std::move(animations);
}

std::shared_ptr<const acs::Animation> Cast::animation(std::u16string_view name) const {
    const auto found = std::find_if(animations_.begin(), animations_.end(), [&](const auto& animation) {
        return murmelix::sameText(animation->name, name, murmelix::LetterCase::ignored);
    });
    return found == animations_.end() ? nullptr : *found;
}

std::vector<std::u16string> Cast::state(std::u16string_view name) const {
    const auto found = states_.find(std::u16string(name));
    return found == states_.end() ? std::vector<std::u16string>() : found->second;
}

std::shared_ptr<Cast> usualCast() {
    auto cast = std::make_shared<Cast>();
    cast->add(u"RestPose").frames[0].mouths.resize(1);
    cast->add(u"Show", 2);
    cast->add(u"Hide", 2);
    cast->add(u"Wave", 3);
    auto& look = cast->add(u"Look", 2);
    look.frames[1].branches = {{1, 100}};
    look.frames[1].exit_frame = acs::exit_end;
    auto& point = cast->add(u"Point");
    point.transition = acs::Transition::return_animation;
    point.return_animation = u"PointReturn";
    cast->add(u"PointReturn");
    cast->state(u"SHOWING", {u"Show"});
    cast->state(u"HIDING", {u"Hide"});
    for (const char16_t* name : {u"Talk", u"Idle1", u"Idle2", u"Idle3", u"GoLeft", u"GoRight", u"GoUp", u"GoDown",
                                 u"GestLeft", u"GestRight", u"GestUp", u"GestDown"}) {
        cast->add(name);
    }
    cast->state(u"SPEAKING", {u"Talk"});
    cast->state(u"IDLINGLEVEL1", {u"Idle1"});
    cast->state(u"IDLINGLEVEL2", {u"Idle2"});
    cast->state(u"IDLINGLEVEL3", {u"Idle3"});
    cast->state(u"MOVINGLEFT", {u"GoLeft"});
    cast->state(u"MOVINGRIGHT", {u"GoRight"});
    cast->state(u"MOVINGUP", {u"GoUp"});
    cast->state(u"MOVINGDOWN", {u"GoDown"});
    cast->state(u"GESTURINGLEFT", {u"GestLeft"});
    cast->state(u"GESTURINGRIGHT", {u"GestRight"});
    cast->state(u"GESTURINGUP", {u"GestUp"});
    cast->state(u"GESTURINGDOWN", {u"GestDown"});
    return cast;
}

Rehearsal::Rehearsal()
    : stage(*this, *this, [this](int below) {
          int roll = 0;
          if (!rolls.empty()) {
              roll = rolls.front() % below;
              rolls.erase(rolls.begin());
          }
          return roll;
      }) {}

Actor& Rehearsal::enter(const std::string& name, std::shared_ptr<const Repertoire> cast, TroupeId troupe) {
    Actor& actor = stage.enter(std::move(cast), troupe);
    actor.name = murmelix::fromUtf8(name);
    names_[actor.id()] = name;
    return actor;
}

Actor& Rehearsal::onStage(const std::string& name, std::shared_ptr<const Repertoire> cast, TroupeId troupe) {
    Actor& actor = enter(name, std::move(cast), troupe);
    show(actor);
    pass(200);
    taken();
    return actor;
}

RequestRef Rehearsal::ask(Actor& actor, Request request) {
    RequestRef added = stage.newRequest(std::move(request));
    actor.add(added);
    return added;
}

RequestRef Rehearsal::play(Actor& actor, const std::u16string& animation) {
    Request request;
    request.kind = Kind::play;
    request.text = animation;
    return ask(actor, request);
}

RequestRef Rehearsal::speak(Actor& actor, const std::u16string& text, const std::u16string& url) {
    Request request;
    request.kind = Kind::speak;
    request.text = text;
    request.url = url;
    return ask(actor, request);
}

RequestRef Rehearsal::show(Actor& actor, bool fast) {
    Request request;
    request.kind = Kind::show;
    request.fast = fast;
    return ask(actor, request);
}

RequestRef Rehearsal::wait(Actor& actor, const RequestRef& target) {
    Request request;
    request.kind = Kind::wait;
    request.target = target;
    return ask(actor, request);
}

void Rehearsal::pass(Time milliseconds) {
    for (const Time end = now + milliseconds; now < end;) {
        now += 10;
        if (!speech_late) {
            deliver();
        }
        stage.advance(now);
    }
}

void Rehearsal::deliver() {
    const auto orders_now = std::exchange(orders_, {});
    for (const auto& [number, order] : orders_now) {
        if (speech_fails) {
            order.done(std::nullopt);
            continue;
        }
        voice::Speech speech;
        speech.shown = order.text;
        const auto named = lengths.find(order.text);
        const std::uint32_t length = named == lengths.end() ? speech_length : named->second;
        speech.sound.samples.resize(std::size_t{speech.sound.rate} * length / 1000);
        const std::size_t half = order.text.size() / 2;
        speech.words = {voice::Word{0, half, 0}, voice::Word{half, order.text.size(), length / 2}};
        speech.mouth = {{0, acs::MouthShape::wide1}, {length / 2, acs::MouthShape::closed}};
        speech.bookmarks = {{7, length / 2}};
        order.done(std::move(speech));
    }
}

std::vector<std::string> Rehearsal::taken() {
    return std::exchange(log, {});
}

std::vector<std::string> Rehearsal::taken(const std::string& beginning) {
    std::vector<std::string> all = taken();
    std::erase_if(all, [&](const std::string& line) { return !line.starts_with(beginning); });
    return all;
}

void Rehearsal::note(const Actor& actor, const std::string& what) {
    const auto found = names_.find(actor.id());
    log.push_back((found == names_.end() ? "?" : found->second) + " " + what);
}

namespace {

std::string label(const Request& request) {
    static const std::map<Kind, std::string> kinds{
        {Kind::play, "Play"},      {Kind::speak, "Speak"},         {Kind::think, "Think"},
        {Kind::move_to, "MoveTo"}, {Kind::show, "Show"},           {Kind::hide, "Hide"},
        {Kind::wait, "Wait"},      {Kind::interrupt, "Interrupt"}, {Kind::gesture_at, "GestureAt"},
        {Kind::get, "Get"}};
    const std::string text = murmelix::toUtf8(request.text);
    return kinds.at(request.kind) + (text.empty() ? "" : " " + text);
}

} // namespace

void Rehearsal::placed(Actor& actor) {
    note(actor,
         "at " + std::to_string(actor.left()) + "," + std::to_string(actor.top()) + (actor.visible() ? "" : " unseen"));
}
void Rehearsal::drawn(Actor&) {}
void Rehearsal::frameSound(Actor& actor, std::uint16_t sound) {
    note(actor, "noise " + std::to_string(sound));
}
void Rehearsal::stopFrameSounds(Actor& actor) {
    note(actor, "noises end");
}

SpeechOrder Rehearsal::orderSpeech(Actor&, const std::u16string& text, const std::u16string&,
                                   std::function<void(std::optional<voice::Speech>)> done) {
    if (order_throws) {
        throw std::bad_alloc();
    }
    ++orders;
    orders_[++last_order_] = {text, std::move(done)};
    return last_order_;
}
void Rehearsal::cancelSpeech(SpeechOrder order) {
    if (orders_.erase(order) > 0) {
        ++cancelled;
    }
}
Sound Rehearsal::startSound(voice::Wave wave, const Hearing& hearing) {
    if (device_throws) {
        throw std::bad_alloc();
    }
    if (sound_fails) {
        return 0;
    }
    if (hearing != Hearing{}) {
        noteHearing("sounds", hearing);
    }
    sounds_[++last_sound_] = {hearing, now, 0, wave.milliseconds()};
    return last_sound_;
}
void Rehearsal::setHearing(Sound sound, const Hearing& hearing) {
    Sounding& changed = sounds_.at(sound);
    look(changed);
    changed.hearing = hearing;
    noteHearing("now", hearing);
}
void Rehearsal::noteHearing(const std::string& what, const Hearing& hearing) {
    std::ostringstream text;
    text << what << (hearing.heard ? "" : " unheard") << " x" << hearing.tempo;
    log.push_back(text.str());
}
void Rehearsal::look(Sounding& sound) const {
    const Time passed = now - std::exchange(sound.looked_at, now);
    sound.passed += paused_ ? 0 : static_cast<double>(passed) * sound.hearing.tempo;
}
void Rehearsal::stopSound(Sound sound) {
    sounds_.erase(sound);
    log.push_back("silence");
}
std::optional<std::uint32_t> Rehearsal::heard(Sound sound) {
    const auto found = sounds_.find(sound);
    if (found == sounds_.end()) {
        return std::nullopt;
    }
    look(found->second);
    if (found->second.passed >= found->second.length) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(found->second.passed);
}

void Rehearsal::setPaused(bool paused) {
    for (auto& [number, sound] : sounds_) {
        look(sound);
    }
    paused_ = paused;
}

void Rehearsal::openBalloon(Actor& actor, BalloonKind kind, const std::u16string& text) {
    note(actor, (kind == BalloonKind::words ? "says " : "thinks ") + murmelix::toUtf8(text));
}
void Rehearsal::balloonWords(Actor& actor, std::size_t end) {
    note(actor, "words " + std::to_string(end));
}
void Rehearsal::closeBalloon(Actor& actor) {
    note(actor, "balloon closed");
}

void Rehearsal::requestStarted(Actor& actor, const RequestRef& request) {
    note(actor, "starts " + label(*request));
}
void Rehearsal::requestCompleted(Actor& actor, const RequestRef& request) {
    static const std::map<Status, std::string> outcomes{
        {Status::complete, "ends "}, {Status::failed, "fails "}, {Status::interrupted, "breaks off "}};
    note(actor, outcomes.at(request->status) + label(*request));
}
void Rehearsal::bookmark(Actor& actor, std::int32_t id) {
    note(actor, "bookmark " + std::to_string(id));
}
void Rehearsal::shown(Actor& actor, VisibilityCause cause) {
    note(actor, "shown " + std::to_string(static_cast<int>(cause)));
}
void Rehearsal::hidden(Actor& actor, VisibilityCause cause) {
    note(actor, "hidden " + std::to_string(static_cast<int>(cause)));
}
void Rehearsal::moved(Actor& actor, MoveCause cause) {
    note(actor, "moved " + std::to_string(static_cast<int>(cause)));
}
void Rehearsal::resized(Actor& actor) {
    note(actor, "resized");
}
void Rehearsal::idleStarted(Actor& actor) {
    note(actor, "idles");
}
void Rehearsal::idleCompleted(Actor& actor) {
    note(actor, "wakes");
}
void Rehearsal::balloonShown(Actor&) {}
void Rehearsal::balloonHidden(Actor&) {}

} // namespace agent::stage
