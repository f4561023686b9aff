// What it costs to hear sounds at another speed, and to hurry.
#include <cmath>

#include <benchmark/benchmark.h>

#include "companions/agent/voice/stretch.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/stage/rehearsal.h"

namespace agent {
namespace {

// A minute that is somewhat like a voice: a deep tone with higher ones, which come and go.
std::shared_ptr<const voice::Wave> voiceLike() {
    voice::Wave wave{voice::mix_rate, std::vector<std::int16_t>(std::size_t{voice::mix_rate} * 60)};
    for (std::size_t i = 0; i < wave.samples.size(); ++i) {
        const double t = static_cast<double>(i) / voice::mix_rate;
        const double loud = 0.5 + 0.5 * std::sin(t * 20);
        wave.samples[i] = static_cast<std::int16_t>(
            loud * (6000 * std::sin(t * 700) + 3000 * std::sin(t * 4100) + 1000 * std::sin(t * 15000)));
    }
    return std::make_shared<const voice::Wave>(std::move(wave));
}

// One tick's worth of one sound, at a tempo in percent.
void stretch(benchmark::State& state) {
    const auto wave = voiceLike();
    voice::Stretch sound(wave);
    std::vector<std::int16_t> tick(voice::mix_rate / 100);
    for (auto _ : state) {
        if (sound.over()) {
            sound = voice::Stretch(wave);
        }
        benchmark::DoNotOptimize(sound.read(tick, static_cast<double>(state.range(0)) / 100));
    }
}
BENCHMARK(stretch)->Arg(100)->Arg(75)->Arg(150)->Arg(200)->Arg(400)->Unit(benchmark::kMicrosecond);

// A tick in which something new waits beside so many others.
void hurry(benchmark::State& state) {
    stage::Rehearsal rehearsal;
    stage::Actor& actor = rehearsal.onStage("a");
    rehearsal.stage.setListening({.most_waiting = INT32_MAX});
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        rehearsal.speak(actor, u"some words of a line that somebody has written");
    }
    rehearsal.pass(50);
    for (auto _ : state) {
        const auto added = rehearsal.speak(actor, u"one more");
        rehearsal.stage.advance(rehearsal.now);
        state.PauseTiming();
        actor.stop(added);
        rehearsal.stage.advance(rehearsal.now);
        rehearsal.log.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(hurry)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace agent

BENCHMARK_MAIN();
