#include <algorithm>
#include <cmath>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

namespace {

constexpr std::uint32_t step_ms = 50;
constexpr double silence = 250;         // loudness (root mean square) of a sound that nobody hears
constexpr double closed_below = 0.10;   // of the loud parts' loudness
constexpr double medium_below = 0.30;   // above: wide, in four steps
constexpr double hiss_crossings = 6000; // zero crossings a second of "s", "f", "sh": teeth close together

struct Step {
    std::uint32_t at = 0; // ms
    double loudness = 0;
    double crossings = 0; // a second
};

std::vector<Step> measure(const Wave& wave) {
    std::vector<Step> steps;
    if (wave.rate == 0) {
        return steps;
    }
    const std::size_t size = std::max<std::size_t>(1, static_cast<std::size_t>(wave.rate) * step_ms / 1000);
    for (std::size_t begin = 0; begin < wave.samples.size(); begin += size) {
        const std::size_t end = std::min(begin + size, wave.samples.size());
        double energy = 0;
        std::size_t crossings = 0;
        for (std::size_t i = begin; i < end; ++i) {
            energy += static_cast<double>(wave.samples[i]) * wave.samples[i];
            if (i > begin && (wave.samples[i] < 0) != (wave.samples[i - 1] < 0)) {
                ++crossings;
            }
        }
        const auto count = static_cast<double>(end - begin);
        steps.push_back({static_cast<std::uint32_t>(std::uint64_t{begin} * 1000 / wave.rate), std::sqrt(energy / count),
                         static_cast<double>(crossings) / count * wave.rate});
    }
    return steps;
}

// The loudness that nine steps in ten stay below: one click does not make the rest of the sound a whisper.
double loudPart(const std::vector<Step>& steps) {
    std::vector<double> loudness;
    for (const Step& step : steps) {
        if (step.loudness >= silence) {
            loudness.push_back(step.loudness);
        }
    }
    if (loudness.empty()) {
        return 0;
    }
    const auto ninth = loudness.begin() + static_cast<std::ptrdiff_t>(loudness.size() * 9 / 10);
    std::nth_element(loudness.begin(), ninth, loudness.end());
    return *ninth;
}

acs::MouthShape shapeOf(const Step& step, double loud) {
    using acs::MouthShape;
    constexpr MouthShape wide[] = {MouthShape::wide1, MouthShape::wide2, MouthShape::wide3, MouthShape::wide4};
    if (step.loudness < std::max(silence, loud * closed_below)) {
        return MouthShape::closed;
    }
    if (step.crossings > hiss_crossings) {
        return MouthShape::narrow;
    }
    const double part = step.loudness / loud;
    if (part < medium_below) {
        return MouthShape::medium;
    }
    return wide[std::clamp(static_cast<int>((part - medium_below) / (1 - medium_below) * 4), 0, 3)];
}

} // namespace

std::vector<MouthMove> mouthMoves(const Wave& wave) {
    const std::vector<Step> steps = measure(wave);
    const double loud = loudPart(steps);
    std::vector<MouthMove> moves;
    auto shape = acs::MouthShape::closed;
    for (const Step& step : steps) {
        const acs::MouthShape next = shapeOf(step, loud);
        if (next != shape) {
            moves.push_back({step.at, next});
        }
        shape = next;
    }
    if (shape != acs::MouthShape::closed || moves.empty()) {
        moves.push_back({wave.milliseconds(), acs::MouthShape::closed});
    }
    return moves;
}

} // namespace agent::voice
