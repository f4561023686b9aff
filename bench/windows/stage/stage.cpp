// What eight characters cost on the screen, and how soon they are heard: the stage with its windows and its voice as
// the character server has them, in one process. Arguments: character files. Writes a line for each figure, "name
// value".
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include <windows.h>

#include "companions/agent/stage/windows/theatre.h"

namespace {

using namespace agent;
using stage::Kind;
using Microseconds = std::uint64_t;

constexpr std::size_t characters = 8;
constexpr unsigned tick_period = 10;                // ms, the character server's
constexpr Microseconds measured = 20'000'000;       // of each performance
constexpr Microseconds settling = 3'000'000;        // before it: windows appear, the first frames are composed
constexpr std::size_t requests = 25, messages = 20; // whose times are taken

Microseconds processorTime() {
    FILETIME created{}, ended{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto of = [](const FILETIME& time) {
        return (Microseconds{time.dwHighDateTime} << 32 | time.dwLowDateTime) / 10;
    };
    return of(kernel) + of(user);
}

double percentile(std::vector<double> values, int percent) {
    if (values.empty()) {
        return -1;
    }
    std::ranges::sort(values);
    return values[std::min(values.size() - 1, values.size() * static_cast<std::size_t>(percent) / 100)];
}

void tell(const char* name, double value) {
    std::printf("%s %.2f\n", name, value);
    std::fflush(stdout);
}

// Goes from frame to frame in the order of the file, each held for a while: when each is due can be told.
bool isPlain(const acs::Animation& animation) {
    return animation.frames.size() > 3 && std::ranges::all_of(animation.frames, [](const acs::Frame& frame) {
               return frame.branches.empty() && frame.duration > 0;
           });
}

class Bench final : public stage::Audience {
  public:
    explicit Bench(const std::vector<std::u16string>& files) {
        for (std::size_t i = 0; i < characters; ++i) {
            std::string error;
            auto loaded = acs::CharacterFile::load(std::filesystem::path(files[i % files.size()]), error);
            if (!loaded) {
                throw std::runtime_error(error);
            }
            auto file = std::make_shared<const acs::CharacterFile>(std::move(*loaded));
            stage::Actor& actor = stage_.enter(std::make_shared<stage::FileRepertoire>(file));
            theatre_.admit(actor.id(), file);
            actor.balloon_style |= 28U << 16;
            Shown& shown = shown_.emplace_back();
            shown.actor = &actor;
            for (const acs::Animation& animation : file->character().animations) {
                if (isPlain(animation)) {
                    shown.plain.push_back(animation.name);
                }
            }
            actor.place(static_cast<int>(40 + i % 4 * 300), static_cast<int>(200 + i / 4 * 350),
                        stage::MoveCause::program);
            add(i, {.kind = Kind::show, .fast = true});
        }
        messages_.every(tick_period, [this] { tick(); });
    }

    void run() {
        makeWords();
        every_tick_ = [this] { animate(); };
        perform("animating_percent");
        tell("frames_late_ms_95", percentile(late_, 95));
        tell("frames_late_ms_50", percentile(late_, 50));
        stop();
        every_tick_ = [this] { converse(); };
        perform("talking_percent");
        stop();
        heardSoon();
        takeTurns();
    }

    void requestStarted(stage::Actor&, const stage::RequestRef& request) override {
        if (request == awaited_) {
            started_ = clock_.microseconds();
        }
    }
    void requestCompleted(stage::Actor&, const stage::RequestRef& request) override {
        if (request == before_) {
            ended_ = clock_.microseconds();
        }
    }
    void bookmark(stage::Actor&, std::int32_t) override {}
    void shown(stage::Actor&, stage::VisibilityCause) override {}
    void hidden(stage::Actor&, stage::VisibilityCause) override {}
    void moved(stage::Actor&, stage::MoveCause) override {}
    void resized(stage::Actor&) override {}
    void idleStarted(stage::Actor&) override {}
    void idleCompleted(stage::Actor&) override {}
    void balloonShown(stage::Actor&) override {}
    void balloonHidden(stage::Actor&) override {}

  private:
    struct Shown {
        stage::Actor* actor = nullptr;
        std::vector<std::u16string> plain; // names of animations
        std::size_t next = 0;
        stage::RequestRef last; // asked of it
        const acs::Frame* frame = nullptr;
        double due = 0; // of `frame`, ms; 0: not known
    };

    // As the character server does.
    void tick() {
        output_.tick();
        stage_.advance(clock_.milliseconds());
        theatre_.present(stage_);
        if (every_tick_) {
            every_tick_();
        }
    }

    void waitUntil(const std::function<bool()>& condition) {
        MSG message;
        while (!condition() && GetMessageW(&message, nullptr, 0, 0) > 0) {
            DispatchMessageW(&message);
        }
    }

    void wait(Microseconds length) {
        waitUntil([this, end = clock_.microseconds() + length] { return clock_.microseconds() >= end; });
    }

    stage::RequestRef add(std::size_t i, stage::Request request) {
        shown_[i].last = stage_.newRequest(std::move(request));
        shown_[i].actor->add(shown_[i].last);
        return shown_[i].last;
    }

    void perform(const char* name) {
        wait(settling);
        late_.clear();
        const Microseconds begun = clock_.microseconds(), used = processorTime();
        wait(measured);
        tell(name,
             100.0 * static_cast<double>(processorTime() - used) / static_cast<double>(clock_.microseconds() - begun));
    }

    void stop() {
        every_tick_ = nullptr;
        for (Shown& shown : shown_) {
            shown.actor->stop();
        }
        wait(settling);
    }

    void animate() {
        const double now = static_cast<double>(clock_.microseconds()) / 1000;
        for (std::size_t i = 0; i < characters; ++i) {
            Shown& shown = shown_[i];
            if (shown.last->over()) {
                add(i, {.kind = Kind::play, .text = shown.plain[(shown.next++ + i) % shown.plain.size()]});
            }
            const acs::Frame* const frame = shown.actor->frame();
            if (frame == shown.frame) {
                continue;
            }
            // The frame behind the one before, in the same animation.
            if (shown.due > 0 && frame == shown.frame + 1) {
                shown.due += shown.frame->duration * 10.0;
                late_.push_back(now - shown.due);
            } else {
                shown.due = now;
            }
            shown.frame = frame;
        }
    }

    // One talks, the others listen, as in a conversation.
    void converse() {
        if (std::ranges::any_of(
                shown_, [](const Shown& shown) { return !shown.last->over() && shown.last->kind == Kind::speak; })) {
            return;
        }
        const std::size_t speaker = turn_++ % characters;
        for (std::size_t i = 0; i < characters; ++i) {
            if (i == speaker) {
                add(i,
                    {.kind = Kind::speak, .text = u"Who is coming to the lake on Saturday, and who brings the cake?"});
            } else {
                add(i, {.kind = Kind::play, .text = u"StartListening"});
            }
        }
    }

    // What the engine takes for words that nobody waits for, its process included.
    static void makeWords() {
        const auto engine = voice::makeEngine();
        std::vector<double> times;
        for (std::size_t i = 0; engine && i < requests; ++i) {
            const auto begun = std::chrono::steady_clock::now();
            std::string error;
            engine->synthesise(wordsOf(i), {}, {}, error);
            times.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun).count());
        }
        tell("engine_ms_50", percentile(times, 50));
    }

    static std::u16string wordsOf(std::size_t i) {
        return u"Hello there, number " + std::u16string(1, static_cast<char16_t>(u'a' + i));
    }

    // From the call of a Speak, with nothing before it, to the moment its sound begins.
    void heardSoon() {
        for (const Shown& shown : shown_) {
            shown.actor->idle_on = false;
        }
        wait(settling);
        std::vector<double> times;
        for (std::size_t i = 0; i < requests; ++i) {
            started_ = 0;
            awaited_ = stage_.newRequest({.kind = Kind::speak, .text = wordsOf(i)});
            const Microseconds asked = clock_.microseconds();
            shown_[i % characters].actor->add(awaited_);
            waitUntil([this] { return awaited_->over(); });
            times.push_back(static_cast<double>(started_ - asked) / 1000);
        }
        tell("heard_ms_50", percentile(times, 50));
        tell("heard_ms_95", percentile(times, 95));
        for (const Shown& shown : shown_) {
            shown.actor->idle_on = true;
        }
    }

    // From the end of a sound to the beginning of another character's, which was asked for meanwhile.
    void takeTurns() {
        std::vector<double> times;
        before_ = stage_.newRequest({.kind = Kind::speak, .text = u"The first of many words"});
        shown_[0].actor->add(before_);
        for (std::size_t i = 1; i <= messages; ++i) {
            started_ = ended_ = 0;
            awaited_ = stage_.newRequest({.kind = Kind::speak, .text = u"And now some others"});
            shown_[i % characters].actor->add(awaited_);
            waitUntil([this] { return started_ != 0; });
            times.push_back(static_cast<double>(started_ - ended_) / 1000);
            before_ = awaited_;
        }
        tell("silence_ms_50", percentile(times, 50));
        tell("silence_ms_100", percentile(times, 100));
    }

    stage::Clock clock_{1};
    stage::MessageWindow messages_;
    voice::Service service_{voice::makeEngine()};
    voice::Output output_{std::u16string()};
    stage::Theatre theatre_{messages_, service_, output_, {}};
    stage::Stage stage_{theatre_, *this, [random = std::mt19937(1)](int below) mutable {
                            return std::uniform_int_distribution<int>(0, below - 1)(random);
                        }};
    std::vector<Shown> shown_;
    std::function<void()> every_tick_;
    std::vector<double> late_; // ms, of each frame
    std::size_t turn_ = 0;
    stage::RequestRef before_, awaited_;
    Microseconds started_ = 0, ended_ = 0;
};

} // namespace

int wmain(int count, wchar_t** arguments) {
    std::vector<std::u16string> files;
    for (int i = 1; i < count; ++i) {
        files.emplace_back(reinterpret_cast<const char16_t*>(arguments[i]));
    }
    if (files.empty()) {
        std::fputs("bench_stage CHARACTER.acs …\n", stderr);
        return 2;
    }
    try {
        Bench(files).run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
