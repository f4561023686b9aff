// Any bytes as a sound file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "companions/agent/voice/speech.h"
#include "companions/agent/voice/wave.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace agent::voice;
    constexpr std::uint32_t most_ms = 2000;
    std::string error;
    const auto wave = readWave({data, size}, error, most_ms);
    require(wave.has_value() == error.empty(), "what is refused has a reason");
    if (!wave) {
        return 0;
    }
    require(wave->rate >= 4000 && wave->rate <= 96000, "the rate is one that can be heard");
    require(wave->milliseconds() <= most_ms, "a sound ends");
    require(readWave(writeWave(*wave), error)->samples == wave->samples, "what was read can be written and read again");
    const Wave mixed = resampled(*wave, mix_rate);
    require(mixed.rate == mix_rate, "a sound can be mixed");
    const auto lasts = [](const Wave& sound) { return static_cast<std::int64_t>(sound.milliseconds()); };
    require(std::abs(lasts(mixed) - lasts(*wave)) <= 1, "it lasts as long as before");
    const auto moves = mouthMoves(mixed);
    require(!moves.empty() && moves.back().shape == agent::acs::MouthShape::closed, "the mouth closes");
    require(std::ranges::is_sorted(moves, {}, &MouthMove::at), "the mouth moves in time");
    const auto [first, last] = audiblePart(mixed);
    require(first <= last && last <= mixed.samples.size(), "what is heard is part of it");
    return 0;
}
