// Engines and sounds for the tests of the voice.
#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <numbers>

#include "companions/agent/voice/voice.h"

namespace agent::voice::fakes {

// A tone with `silence` milliseconds before and behind it.
inline Wave tone(std::uint32_t ms, double hertz = 200, double loudness = 8000, std::uint32_t silence = 0,
                 std::uint32_t rate = 22050) {
    Wave wave{rate, std::vector<std::int16_t>(std::size_t{rate} * silence / 1000)};
    for (std::size_t i = 0; i < std::size_t{rate} * ms / 1000; ++i) {
        wave.samples.push_back(static_cast<std::int16_t>(
            loudness * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate)));
    }
    wave.samples.resize(wave.samples.size() + std::size_t{rate} * silence / 1000);
    return wave;
}

struct Call {
    std::u16string text;
    Manner manner;
};

// Answers every text by 100 ms of tone a unit, and keeps what it was asked.
class ToneEngine : public Engine {
  public:
    explicit ToneEngine(std::vector<Call>& calls) : calls_(calls) {}
    bool speaks(std::uint16_t language_id) const override { return language_id == 0x0409; }
    std::optional<Wave> synthesise(const std::u16string& text, const Manner& manner, const std::stop_token&,
                                   std::string&) override {
        calls_.push_back({text, manner});
        return tone(static_cast<std::uint32_t>(std::min<std::size_t>(text.size(), 1000)) * 100, 200, 8000, 50);
    }

  private:
    std::vector<Call>& calls_;
};

} // namespace agent::voice::fakes
