#include <algorithm>
#include <array>
#include <chrono>
#include <map>

#include "companions/agent/voice/recording.h"
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

// With a device sound is mixed this far ahead of the clock, for a tick may be late.
constexpr std::uint64_t lead = mix_rate * 120 / 1000; // samples

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
        std::shared_ptr<const Wave> wave; // at the mixing rate
        std::uint64_t begin = 0;          // on the time line
        std::function<void()> finished;
        std::uint64_t end() const { return begin + wave->samples.size(); }
    };

    Clock clock;
    std::uint64_t created = 0; // microseconds
    std::unique_ptr<Sink> sink;
    std::unique_ptr<Recording> recording;
    std::map<Playing, Sound> sounds;
    Playing next = 1;
    std::uint64_t mixed_to = 0; // samples
    std::uint64_t fed_to = 0;   // samples that the device was given up to there
    std::string no_error;

    std::uint64_t now() const {
        const std::uint64_t passed = clock() - created;
        return passed / 1'000'000 * mix_rate + passed % 1'000'000 * mix_rate / 1'000'000;
    }

    void advance() {
        const std::uint64_t current = now(), wanted = current + (sink ? lead : 0);
        while (mixed_to < wanted) {
            std::uint64_t end = 0;
            for (const auto& [playing, sound] : sounds) {
                end = std::max(end, sound.end());
            }
            if (end <= mixed_to) {
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

    void mixBlock(std::span<std::int16_t> block, std::uint64_t current) {
        bool silent = true;
        for (const auto& [playing, sound] : sounds) {
            const std::uint64_t first = std::max(sound.begin, mixed_to);
            const std::uint64_t last = std::min(sound.end(), mixed_to + block.size());
            for (std::uint64_t at = first; at < last; ++at) {
                std::int16_t& sample = block[static_cast<std::size_t>(at - mixed_to)];
                sample = mixed(sample, sound.wave->samples[static_cast<std::size_t>(at - sound.begin)]);
            }
            silent = silent && first >= last;
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
        // What the clock has passed since the mixing is not mixed yet.
        const std::uint64_t current = std::min(now(), mixed_to);
        std::vector<Playing> ended;
        for (const auto& [playing, sound] : sounds) {
            if (sound.end() <= current) {
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
    impl_->sounds.emplace(playing, Impl::Sound{std::move(wave), impl_->mixed_to, std::move(finished)});
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
    const std::uint64_t current = impl_->now();
    const Impl::Sound& sound = found->second;
    const std::uint64_t passed = current > sound.begin ? current - sound.begin : 0;
    return static_cast<std::uint32_t>(
        millisecondsOf(std::min<std::uint64_t>(passed, sound.wave->samples.size()), mix_rate));
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
