#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <map>

#include "companions/agent/voice/recording.h"
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/stretch.h"
#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

// With a device sound is mixed this far ahead of the clock, for a tick may be late.
constexpr std::uint64_t lead = mix_rate * 120 / 1000; // samples

constexpr std::int32_t full = 32768; // what loudness is counted in

std::uint64_t steadyMicroseconds() {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
}

} // namespace

// One time line in samples since the creation, led by the clock: the device hears it, the recording keeps it, and the
// device that is missing or falls behind changes nothing of it.
struct Output::Impl {
    struct Sound {
        Stretch stretch;
        std::function<void()> finished;
        double tempo = 1, loudness = 1;
        std::optional<std::uint64_t> end = {}; // on the time line, once all of it is mixed
    };

    Clock clock;
    std::uint64_t created = 0; // microseconds
    std::unique_ptr<Sink> sink;
    std::unique_ptr<Recording> recording;
    std::map<Playing, Sound> sounds;
    Playing next = 1;
    std::uint64_t mixed_to = 0; // samples
    std::uint64_t fed_to = 0;   // samples that the device was given up to there
    double volume = 1;
    bool paused = false;
    std::uint64_t paused_at = 0, paused_mixed_to = 0; // since when, and what was mixed then
    std::string no_error;

    std::uint64_t now() const {
        const std::uint64_t passed = clock() - created;
        return passed / 1'000'000 * mix_rate + passed % 1'000'000 * mix_rate / 1'000'000;
    }

    void advance() {
        const std::uint64_t current = now(), wanted = current + (sink ? lead : 0);
        while (mixed_to < wanted) {
            if (paused || std::ranges::all_of(sounds, [](const auto& entry) { return entry.second.end.has_value(); })) {
                quiet(wanted - mixed_to);
                continue;
            }
            std::array<std::int16_t, 1024> block{};
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(wanted - mixed_to, block.size()));
            mixBlock(std::span(block).first(count), current);
        }
    }

    void quiet(std::uint64_t count) {
        if (recording) {
            recording->silence(count);
        }
        mixed_to += count;
    }

    // True where there was some of it left.
    bool mix(Sound& sound, std::span<std::int16_t> block) {
        if (sound.end) {
            return false;
        }
        std::array<std::int16_t, 1024> part;
        const std::size_t count = sound.stretch.read(std::span(part).first(block.size()), sound.tempo);
        const auto share = static_cast<std::int32_t>(std::lround(volume * sound.loudness * full));
        for (std::size_t i = 0; i < count; ++i) {
            block[i] = mixed(block[i], static_cast<std::int16_t>(part[i] * share / full));
        }
        if (sound.stretch.over()) {
            sound.end = mixed_to + count;
        }
        return count > 0;
    }

    void mixBlock(std::span<std::int16_t> block, std::uint64_t current) {
        bool silent = true;
        for (auto& [playing, sound] : sounds) {
            silent = !mix(sound, block) && silent;
        }
        if (recording) {
            if (silent) {
                recording->silence(block.size());
            } else {
                recording->write(block);
            }
        }
        mixed_to += block.size();
        // What is late already would only make all that follows late.
        if (sink && !silent && mixed_to > current && !feed(block, current)) {
            sink.reset();
        }
    }

    // How far a sound is heard now, in samples of its own: what is mixed and not heard yet follows.
    double heard(const Sound& sound) const {
        const std::uint64_t current = paused ? paused_at : now();
        const std::uint64_t mixed = paused ? paused_mixed_to : mixed_to;
        const double ahead =
            (sound.end ? static_cast<double>(*sound.end) : static_cast<double>(mixed)) - static_cast<double>(current);
        return std::clamp(sound.stretch.position() - ahead * sound.tempo, 0.0,
                          static_cast<double>(sound.stretch.length()));
    }

    // Gives the device the block that ends at `mixed_to`, each sample at its time: a device that was given nothing for
    // a while plays at once what it gets.
    bool feed(std::span<const std::int16_t> block, std::uint64_t current) {
        static constexpr std::array<std::int16_t, 1024> nothing{};
        const std::uint64_t begin = mixed_to - block.size();
        for (fed_to = std::max(fed_to, current); fed_to < begin;) {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(begin - fed_to, nothing.size()));
            if (!sink->write(std::span(nothing).first(count))) {
                return false;
            }
            fed_to += count;
        }
        fed_to = mixed_to;
        return sink->write(block);
    }

    void tellFinished() {
        if (paused) {
            return;
        }
        // What the clock has passed since the mixing is not mixed yet.
        const std::uint64_t current = std::min(now(), mixed_to);
        std::vector<Playing> ended;
        for (const auto& [playing, sound] : sounds) {
            if (sound.end && *sound.end <= current) {
                ended.push_back(playing);
            }
        }
        for (const Playing playing : ended) {
            const auto found = sounds.find(playing); // another's callback may have stopped it
            if (found == sounds.end()) {
                continue;
            }
            const std::function<void()> finished = std::move(found->second.finished);
            sounds.erase(found);
            if (finished) {
                finished();
            }
        }
    }
};

Output::Output(std::u16string recording) : Output(std::move(recording), steadyMicroseconds, makeSink()) {}

Output::Output(std::u16string recording, Clock clock) : Output(std::move(recording), std::move(clock), nullptr) {}

Output::Output(std::u16string recording, Clock clock, std::unique_ptr<Sink> sink) : impl_(std::make_unique<Impl>()) {
    impl_->sink = std::move(sink);
    impl_->clock = std::move(clock);
    if (!recording.empty()) {
        impl_->recording = std::make_unique<Recording>(recording);
    }
    impl_->created = impl_->clock();
}

Output::~Output() {
    impl_->sink.reset();
    impl_->advance();
}

Output::Playing Output::play(Wave wave, std::function<void()> finished) {
    return play(std::make_shared<const Wave>(std::move(wave)), std::move(finished));
}

Output::Playing Output::play(std::shared_ptr<const Wave> wave, std::function<void()> finished) {
    impl_->advance();
    if (impl_->sounds.size() >= most_sounds) {
        return 0;
    }
    if (wave->rate != mix_rate) {
        wave = std::make_shared<const Wave>(resampled(*wave, mix_rate));
    }
    const Playing playing = impl_->next++;
    Impl::Sound sound{Stretch(std::move(wave)), std::move(finished)};
    if (sound.stretch.over()) {
        sound.end = impl_->mixed_to; // there is nothing in it
    }
    impl_->sounds.emplace(playing, std::move(sound));
    return playing;
}

void Output::stop(Playing playing) {
    impl_->advance();
    impl_->sounds.erase(playing);
}

std::optional<std::uint32_t> Output::heard(Playing playing) const {
    const auto found = impl_->sounds.find(playing);
    if (found == impl_->sounds.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(impl_->heard(found->second) * 1000 / mix_rate);
}

void Output::setVolume(double volume) {
    impl_->advance();
    impl_->volume = std::clamp(volume, 0.0, 1.0);
}

void Output::setLoudness(Playing playing, double loudness) {
    impl_->advance();
    if (const auto found = impl_->sounds.find(playing); found != impl_->sounds.end()) {
        found->second.loudness = std::clamp(loudness, 0.0, 1.0);
    }
}

void Output::setTempo(Playing playing, double tempo) {
    impl_->advance();
    if (const auto found = impl_->sounds.find(playing); found != impl_->sounds.end()) {
        found->second.tempo = std::clamp(tempo, least_tempo, most_tempo);
    }
}

void Output::setPaused(bool paused) {
    impl_->advance();
    if (paused == impl_->paused) {
        return;
    }
    impl_->paused = paused;
    if (paused) {
        impl_->paused_at = impl_->now();
        impl_->paused_mixed_to = impl_->mixed_to;
        return;
    }
    for (auto& [playing, sound] : impl_->sounds) {
        if (sound.end) {
            *sound.end += impl_->mixed_to - impl_->paused_mixed_to;
        }
    }
}

bool Output::paused() const {
    return impl_->paused;
}

bool Output::hasDevice() const {
    return impl_->sink != nullptr;
}

void Output::tick() {
    impl_->advance();
    impl_->tellFinished();
}

void Output::flush() {
    impl_->advance();
    if (impl_->recording) {
        impl_->recording->flush();
    }
}

const std::string& Output::recordingError() const {
    return impl_->recording ? impl_->recording->error() : impl_->no_error;
}

} // namespace agent::voice
