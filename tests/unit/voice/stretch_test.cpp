#include <cmath>

#include <gmock/gmock.h>

#include "companions/agent/voice/stretch.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

std::shared_ptr<const Wave> shared(Wave wave) {
    return std::make_shared<const Wave>(std::move(wave));
}

std::vector<std::int16_t> readAll(Stretch& stretch, double tempo, std::size_t block = 220) {
    std::vector<std::int16_t> all;
    std::vector<std::int16_t> part(block);
    while (!stretch.over()) {
        const std::size_t count = stretch.read(part, tempo);
        all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
        if (count == 0) {
            ADD_FAILURE() << "no sample, and not over";
            break;
        }
    }
    return all;
}

// Hertz of a tone, by where it crosses zero upwards.
double pitchOf(const std::vector<std::int16_t>& samples) {
    int crossings = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        crossings += samples[i - 1] < 0 && samples[i] >= 0 ? 1 : 0;
    }
    return crossings * double{mix_rate} / static_cast<double>(samples.size());
}

TEST(Stretch, ChangesNothingAtItsOwnTempo) {
    const auto wave = shared(fakes::tone(500, 300));
    for (const std::size_t block : {1U, 7U, 220U, 100'000U}) {
        Stretch stretch(wave);
        EXPECT_EQ(readAll(stretch, 1, block), wave->samples) << block;
    }
}

TEST(Stretch, TakesAsMuchShorterAndKeepsThePitch) {
    const auto wave = shared(fakes::tone(2000, 220));
    for (const double tempo : {0.5, 0.8, 1.25, 1.5, 2.0, 3.0}) {
        Stretch stretch(wave);
        const auto heard = readAll(stretch, tempo);
        EXPECT_NEAR(static_cast<double>(heard.size()), 44100 / tempo, 1500) << tempo;
        EXPECT_NEAR(pitchOf(heard), 220, 4) << tempo;
    }
}

TEST(Stretch, IsAsLoudAsTheSound) {
    const auto wave = shared(fakes::tone(2000, 150, 8000));
    Stretch stretch(wave);
    const auto heard = readAll(stretch, 1.7);
    double power = 0;
    for (const std::int16_t sample : heard) {
        power += static_cast<double>(sample) * sample;
    }
    EXPECT_NEAR(std::sqrt(power / static_cast<double>(heard.size())), 8000 / std::sqrt(2), 300);
}

TEST(Stretch, JumpsNowhereWhereTheTempoChanges) {
    const auto wave = shared(fakes::tone(3000, 100, 10000));
    Stretch stretch(wave);
    std::vector<std::int16_t> all;
    std::vector<std::int16_t> part(441);
    for (int i = 0; i < 60; ++i) {
        const std::size_t count = stretch.read(part, i % 3 == 0 ? 1 : i % 3 == 1 ? 2 : 0.7);
        all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }
    // A tone of 100 Hz changes by 285 from a sample to the next at most.
    for (std::size_t i = 1; i < all.size(); ++i) {
        ASSERT_LT(std::abs(all[i] - all[i - 1]), 900) << i;
    }
}

TEST(Stretch, TellsWhatHasBeenRead) {
    const auto wave = shared(fakes::tone(1000));
    Stretch stretch(wave);
    std::vector<std::int16_t> part(2205);
    EXPECT_EQ(stretch.position(), 0);
    stretch.read(part, 1);
    EXPECT_EQ(stretch.position(), 2205);
    stretch.read(part, 2);
    EXPECT_NEAR(stretch.position(), 2205 * 3, 700);
    readAll(stretch, 2);
    EXPECT_NEAR(stretch.position(), 22050, 0);
}

TEST(Stretch, EndsWhateverTheLengthAndTheTempo) {
    for (std::size_t length = 0; length < 1500; length += 13) {
        for (const double tempo : {0.0, 0.25, 0.9, 1.1, 4.0, 1e9, -3.0}) {
            Stretch stretch(shared({mix_rate, std::vector<std::int16_t>(length, 100)}));
            const std::size_t heard = readAll(stretch, tempo, 64).size();
            EXPECT_LE(heard, length * 4 + 1400) << length << " at " << tempo;
        }
    }
}

TEST(Stretch, StaysWithinTheRangeOfSamples) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 5000; ++i) {
        samples.push_back(i % 37 < 18 ? INT16_MIN : INT16_MAX);
    }
    Stretch stretch(shared({mix_rate, samples}));
    const auto heard = readAll(stretch, 1.3);
    EXPECT_EQ(*std::ranges::min_element(heard), INT16_MIN);
    EXPECT_EQ(*std::ranges::max_element(heard), INT16_MAX);
}

} // namespace
} // namespace agent::voice
