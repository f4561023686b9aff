#include "companions/agent/stage/windows/theatre.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "companions/agent/stage/windows/desktop.h"
#include "companions/agent/voice/wave.h"

namespace agent::stage {
namespace {

// The words of a text shown with a sound file, spread over its length.
voice::Speech speechOfFile(const std::u16string& text, voice::Wave wave) {
    voice::Speech speech;
    speech.shown = text;
    speech.mouth = voice::mouthMoves(wave);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = std::min(text.find_first_not_of(u" \t\r\n", at), text.size());
        const std::size_t end = std::min(text.find_first_of(u" \t\r\n", begin), text.size());
        if (begin < end) {
            speech.words.push_back({begin, end, 0});
        }
        at = end;
    }
    const std::uint64_t length = wave.milliseconds();
    for (std::size_t i = 0; i < speech.words.size(); ++i) {
        speech.words[i].at = static_cast<std::uint32_t>(length * i / speech.words.size());
    }
    speech.sound = std::move(wave);
    return speech;
}

std::optional<voice::Speech> readSpeech(const std::u16string& text, const std::u16string& url) {
    std::string error;
    const auto bytes = acs::readFile(std::filesystem::path(url), error);
    if (!bytes) {
        return std::nullopt;
    }
    auto wave = voice::readWave(*bytes, error);
    if (!wave) {
        return std::nullopt;
    }
    return speechOfFile(text, voice::resampled(std::move(*wave), voice::mix_rate));
}

BalloonLook lookOf(const acs::Character& character) {
    const acs::Balloon balloon = character.balloon.value_or(acs::Balloon{});
    BalloonLook look;
    look.text_colour = balloon.text_colour;
    look.background_colour = balloon.background_colour;
    look.border_colour = balloon.border_colour;
    look.font_name = balloon.font_name;
    // A damaged height must not make a balloon of one letter.
    look.font_height = std::clamp(balloon.font_height, -96, 96);
    look.weight = static_cast<int>(std::min<std::uint32_t>(balloon.weight, 1000));
    look.italic = balloon.italic;
    look.strike_out = balloon.strike_out;
    return look;
}

} // namespace

Clock::Clock(double speed) : since_(std::chrono::steady_clock::now()), speed_(speed) {}

std::uint64_t Clock::microseconds() const {
    const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - since_;
    return static_cast<std::uint64_t>(passed.count() * speed_);
}

Theatre::Worker::Worker() : thread_([this](const std::stop_token& stop) { run(stop); }) {}

Theatre::Worker::~Worker() {
    thread_.request_stop();
    changed_.notify_all();
}

void Theatre::Worker::add(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    changed_.notify_all();
}

void Theatre::Worker::run(const std::stop_token& stop) {
    while (true) {
        std::function<void()> task;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, stop, [&] { return !tasks_.empty(); });
            if (stop.stop_requested()) {
                return;
            }
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
    }
}

Theatre::Theatre(MessageWindow& messages, voice::Service& service, voice::Output& output, Hand hand,
                 std::function<Screens()> read_screens)
    : messages_(messages), service_(service), output_(output), hand_(std::move(hand)),
      read_screens_(std::move(read_screens)), screens_(read_screens_()),
      resolution_(scaleOf(readResolution(messages.handle()))),
      frame_sounds_(output, [this](const auto& work, const auto& done) {
          decoder_.add([this, work, done] {
              work();
              messages_.post(done);
          });
      }) {
    messages_.onScreensChanged([this](std::optional<int> resolution) {
        changeScreens(read_screens_(), resolution ? scaleOf(*resolution) : resolution_);
    });
}

void Theatre::changeScreens(const Screens& screens, double resolution) {
    screens_ = screens;
    resolution_ = resolution;
    screens_changed_ = true;
    for (auto& [actor, shown] : figures_) {
        shown.redraw = shown.replace = true;
        if (shown.balloon) {
            shown.balloon->setScale(scale());
        }
    }
}

void Theatre::setSize(double size) {
    size_ = size;
    changeScreens(screens_, resolution_);
}

void Theatre::setLetters(double letters) {
    letters_ = letters;
    for (auto& [actor, shown] : figures_) {
        if (shown.balloon) {
            shown.balloon->setLetters(letters);
        }
    }
}

Theatre::~Theatre() {
    messages_.onScreensChanged({});
    for (const auto& [id, order] : orders_) {
        if (order.service != 0) {
            service_.cancel(order.service);
        }
    }
}

Theatre::Figure* Theatre::figure(ActorId actor) {
    const auto found = figures_.find(actor);
    return found == figures_.end() ? nullptr : &found->second;
}

void Theatre::admit(ActorId actor, std::shared_ptr<const acs::CharacterFile> file) {
    Figure& added = figures_[actor];
    added.look = lookOf(file->character());
    added.file = std::move(file);
    const auto with = [actor](const auto& handler) {
        return [actor, &handler](const PointerEvent& event) {
            if (handler) {
                handler(actor, event);
            }
        };
    };
    const auto dragged = [actor, this](int left, int top) {
        if (hand_.dragged) {
            hand_.dragged(actor, left, top);
        }
    };
    added.window = std::make_unique<CharacterWindow>(PointerHandlers{
        with(hand_.clicked), with(hand_.double_clicked), with(hand_.drag_started), with(hand_.drag_ended), dragged,
        [actor, this] { return hand_.tip ? hand_.tip(actor) : std::u16string(); },
        [actor, this] { return hand_.name ? hand_.name(actor) : std::u16string(); }});
}

void Theatre::dismiss(ActorId actor) {
    // The window may be in the middle of a message, whose handler then dismissed it.
    if (const auto found = figures_.find(actor); found != figures_.end()) {
        auto gone = std::make_shared<Figure>(std::move(found->second));
        figures_.erase(found);
        frame_sounds_.forget(actor);
        if (gone->window) { // none where it could not be made
            gone->window->hide();
        }
        if (gone->balloon) {
            gone->balloon->close();
        }
        messages_.post([gone] {});
    }
}

BalloonLook* Theatre::look(ActorId actor) {
    Figure* found = figure(actor);
    return found ? &found->look : nullptr;
}

void Theatre::toFront(ActorId actor) {
    if (Figure* found = figure(actor); found && found->shown) {
        SetWindowPos(found->window->handle(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
    }
}

void Theatre::hideTips() {
    for (const auto& [actor, shown] : figures_) {
        if (shown.window) {
            shown.window->hideTip();
        }
    }
}

void Theatre::present(Stage& stage) {
    if (std::exchange(screens_changed_, false)) {
        stage.setScale(scale());
        stage.setScreens(screens_);
    }
    bool moved = false;
    for (auto& [id, shown] : figures_) {
        Actor* actor = stage.find(id);
        if (!actor || (!shown.redraw && !shown.replace)) {
            continue;
        }
        moved = moved || shown.replace;
        if (!actor->visible()) {
            shown.replace = false;
            shown.redraw = true;
            if (std::exchange(shown.shown, false)) {
                shown.window->hide();
            }
            continue;
        }
        show(shown, *actor);
    }
    if (moved) {
        for (auto& [id, shown] : figures_) {
            if (shown.balloon) {
                shown.balloon->follow(shown.area, areasBeside(id));
            }
        }
    }
}

std::vector<Rect> Theatre::areasBeside(ActorId actor) const {
    std::vector<Rect> areas;
    for (const auto& [id, shown] : figures_) {
        if (id != actor && shown.shown) {
            areas.push_back(shown.area);
        }
    }
    return areas;
}

// What cannot be seen is not drawn until it can.
void Theatre::show(Figure& shown, const Actor& actor) {
    const bool drawn = !shown.shown || (shown.redraw && canBeSeen(screens_, actor.area()));
    if (drawn) {
        compose(*shown.file, actor.frame(), actor.mouth(), shown.raster);
        shown.window->show(shown.raster, actor.area());
        shown.shown = true;
        shown.size = {actor.width(), actor.height()};
        shown.redraw = false;
    } else if (shown.replace) {
        shown.window->move(actor.left(), actor.top());
    }
    shown.area = actor.area();
    shown.replace = false;
}

void Theatre::placed(Actor& actor) {
    if (Figure* found = figure(actor.id())) {
        found->replace = true;
        found->redraw = found->redraw || found->size != std::pair(actor.width(), actor.height());
    }
}

void Theatre::drawn(Actor& actor) {
    if (Figure* found = figure(actor.id())) {
        found->redraw = true;
    }
}

void Theatre::frameSound(Actor& actor, std::uint16_t sound) {
    if (const Figure* found = figure(actor.id()); found && volume_ > 0) {
        frame_sounds_.play(actor.id(), found->file, sound);
    }
}

void Theatre::stopFrameSounds(Actor& actor) {
    frame_sounds_.stop(actor.id());
}

SpeechOrder Theatre::orderSpeech(Actor& actor, const std::u16string& text, const std::u16string& url,
                                 std::function<void(std::optional<voice::Speech>)> done) {
    const SpeechOrder order = ++last_order_;
    Order& added = orders_[order];
    added.done = std::move(done);
    const auto deliver = [this, order](std::optional<voice::Speech> speech) {
        messages_.post([this, order, made = std::make_shared<std::optional<voice::Speech>>(std::move(speech))] {
            delivered(order, std::move(*made));
        });
    };
    if (url.empty()) {
        added.service = service_.order(text, manners_ ? manners_(actor) : actor.manner,
                                       [deliver](voice::Speech speech) { deliver(std::move(speech)); });
    } else {
        reader_.add([deliver, text, url] {
            std::optional<voice::Speech> speech;
            try {
                speech = readSpeech(text, url);
            } catch (...) {
                speech.reset(); // a path that is none, or a sound too large
            }
            deliver(std::move(speech));
        });
    }
    return order;
}

void Theatre::delivered(SpeechOrder order, std::optional<voice::Speech> speech) {
    const auto found = orders_.find(order);
    if (found == orders_.end()) {
        return;
    }
    const auto done = std::move(found->second.done);
    orders_.erase(found);
    done(std::move(speech));
    messages_.tick(); // who waits to speak does so at once
}

void Theatre::cancelSpeech(SpeechOrder order) {
    const auto found = orders_.find(order);
    if (found == orders_.end()) {
        return;
    }
    if (found->second.service != 0) {
        service_.cancel(found->second.service);
    }
    orders_.erase(found);
}

Sound Theatre::startSound(voice::Wave wave, const Hearing& hearing) {
    const Sound sound = output_.play(std::move(wave), {});
    setHearing(sound, hearing);
    return sound;
}

void Theatre::setHearing(Sound sound, const Hearing& hearing) {
    output_.setLoudness(sound, hearing.heard ? 1 : 0);
    output_.setTempo(sound, hearing.tempo);
}

void Theatre::setVolume(double volume) {
    volume_ = volume;
    output_.setVolume(volume);
}

void Theatre::setPaused(bool paused) {
    output_.setPaused(paused);
}

void Theatre::stopSound(Sound sound) {
    output_.stop(sound);
}

std::optional<std::uint32_t> Theatre::heard(Sound sound) {
    return output_.heard(sound);
}

void Theatre::openBalloon(Actor& actor, BalloonKind kind, const std::u16string& text) {
    Figure* found = figure(actor.id());
    if (!found) {
        return;
    }
    if (!found->balloon) {
        found->balloon = std::make_unique<BalloonWindow>(
            screens_,
            [id = actor.id(), this] {
                if (hand_.balloon_clicked) {
                    hand_.balloon_clicked(id);
                }
            },
            [id = actor.id(), this] { return hand_.name ? hand_.name(id) : std::u16string(); });
        found->balloon->setScale(scale());
        found->balloon->setLetters(letters_);
    }
    BalloonLook look = found->look;
    look.size_to_text = (actor.balloon_style & balloon_size_to_text) != 0;
    look.characters_a_line = static_cast<int>(actor.balloon_style >> 16 & 0xFF);
    look.lines = static_cast<int>(actor.balloon_style >> 24 & 0xFF);
    found->balloon->open(kind, text, look, actor.area(), areasBeside(actor.id()));
    if (volume_ <= 0 || actor.silenced() || kind == BalloonKind::thought) {
        found->balloon->readOut();
    }
}

void Theatre::balloonWords(Actor& actor, std::size_t end) {
    if (Figure* found = figure(actor.id()); found && found->balloon) {
        found->balloon->spoken(end);
    }
}

void Theatre::closeBalloon(Actor& actor) {
    if (Figure* found = figure(actor.id()); found && found->balloon) {
        found->balloon->close();
    }
}

} // namespace agent::stage
