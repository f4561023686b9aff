#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/agent/voice/recording.h"
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::HasSubstr;

// One second of this many samples sounds like a constant: sums are easy to tell apart.
Wave level(std::int16_t value, std::size_t samples) {
    return {22050, std::vector<std::int16_t>(samples, value)};
}

class OutputTest : public testing::Test {
  protected:
    OutputTest() {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::temp_directory_path() / ("voice-output-" + std::to_string(std::random_device{}()) + info->name());
        fs::create_directories(folder);
        path = folder / u"r\u00E9cord.wav";
    }
    ~OutputTest() override { fs::remove_all(folder); }

    Output make(bool records = true) {
        return Output(records ? path.u16string() : std::u16string(), [this] { return microseconds; });
    }
    void pass(std::uint64_t ms) { microseconds += ms * 1000; }
    Wave recorded() const {
        std::ifstream file(path, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        // The header's lengths are those of the file.
        EXPECT_GE(bytes.size(), 44U);
        const auto number = [&](std::size_t at) {
            return std::uint32_t{bytes[at]} | std::uint32_t{bytes[at + 1]} << 8 | std::uint32_t{bytes[at + 2]} << 16 |
                   std::uint32_t{bytes[at + 3]} << 24;
        };
        EXPECT_EQ(number(4), bytes.size() - 8);
        EXPECT_EQ(number(40), bytes.size() - 44);
        std::string error;
        const std::optional<Wave> wave = readWave(bytes, error);
        EXPECT_TRUE(wave) << error;
        return wave.value_or(Wave{});
    }

    fs::path folder, path;
    std::uint64_t microseconds = 5'000'000'000'000;
};

TEST_F(OutputTest, SoundsAreHeardOnTheClock) {
    Output output = make(false);
    EXPECT_FALSE(output.hasDevice());
    const Output::Playing playing = output.play(level(1000, 22050), {});
    EXPECT_EQ(output.heard(playing), 0U);
    pass(240);
    EXPECT_EQ(output.heard(playing), 240U);
    pass(740);
    EXPECT_EQ(output.heard(playing), 980U);
    pass(5000);
    EXPECT_EQ(output.heard(playing), 1000U);
    output.tick();
    EXPECT_EQ(output.heard(playing), std::nullopt);
}

TEST_F(OutputTest, TheEndIsToldOnceByATick) {
    Output output = make(false);
    int told = 0;
    output.play(level(1000, 2205), [&] { ++told; });
    pass(99);
    output.tick();
    EXPECT_EQ(told, 0);
    pass(1);
    EXPECT_EQ(told, 0);
    output.tick();
    output.tick();
    EXPECT_EQ(told, 1);
}

TEST_F(OutputTest, AStoppedSoundTellsNothing) {
    Output output = make(false);
    int told = 0;
    const Output::Playing playing = output.play(level(1000, 2205), [&] { ++told; });
    pass(50);
    output.stop(playing);
    pass(1000);
    output.tick();
    EXPECT_EQ(told, 0);
    EXPECT_EQ(output.heard(playing), std::nullopt);
    output.stop(playing);
    output.stop(12345);
}

TEST_F(OutputTest, OneEndMayStopAnotherOrPlayMore) {
    Output output = make(false);
    int told = 0;
    Output::Playing second = 0;
    output.play(level(1, 10), [&] {
        output.stop(second);
        output.play(level(1, 10), [&] { told += 100; });
    });
    second = output.play(level(1, 10), [&] { ++told; });
    pass(100);
    output.tick();
    EXPECT_EQ(told, 0);
    pass(100);
    output.tick();
    EXPECT_EQ(told, 100);
}

TEST_F(OutputTest, AnEmptySoundEndsWithTheNextTick) {
    Output output = make(false);
    int told = 0;
    output.play(Wave{}, [&] { ++told; });
    EXPECT_EQ(told, 0);
    output.tick();
    EXPECT_EQ(told, 1);
}

TEST_F(OutputTest, TheRecordingIsSampleExact) {
    {
        Output output = make();
        pass(1000);
        output.tick();
        output.play(level(1000, 22050), {});
        pass(500);
        output.play(level(300, 22050), {}); // over the second half of the first
        pass(2000);
        output.tick();
    }
    const Wave wave = recorded();
    ASSERT_EQ(wave.samples.size(), 22050U * 7 / 2);
    const auto part = [&](std::size_t begin, std::size_t end) {
        return std::vector(wave.samples.begin() + static_cast<std::ptrdiff_t>(begin),
                           wave.samples.begin() + static_cast<std::ptrdiff_t>(end));
    };
    EXPECT_THAT(part(0, 22050), Each(0));
    EXPECT_THAT(part(22050, 33075), Each(1000));
    EXPECT_THAT(part(33075, 44100), Each(1300));
    EXPECT_THAT(part(44100, 55125), Each(300));
    EXPECT_THAT(part(55125, 77175), Each(0));
}

TEST_F(OutputTest, AClockThatGoesOnDuringATickLosesNoSample) {
    std::ptrdiff_t played = 0;
    {
        Output output(path.u16string(), [this] { return microseconds += 700; });
        for (std::size_t length = 300; length < 340; ++length) { // 15 samples pass at each look at the clock
            bool finished = false;
            output.play(level(1000, length), [&] { finished = true; });
            for (int i = 0; i < 1000 && !finished; ++i) {
                output.tick();
            }
            ASSERT_TRUE(finished);
            played += static_cast<std::ptrdiff_t>(length);
        }
    }
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), std::int16_t{1000}), played);
}

TEST_F(OutputTest, HowOftenItTicksChangesNothing) {
    std::vector<std::int16_t> first;
    for (const std::uint64_t step : {1U, 7U, 10U, 333U, 5000U}) {
        {
            Output output = make();
            output.play(fakes::tone(1234, 300), {});
            for (std::uint64_t passed = 0; passed < 2000;) {
                const std::uint64_t next = std::min<std::uint64_t>(step, 2000 - passed);
                pass(next);
                passed += next;
                output.tick();
            }
        }
        const Wave wave = recorded();
        if (first.empty()) {
            first = wave.samples;
        }
        EXPECT_EQ(wave.samples, first) << step;
        EXPECT_EQ(wave.samples.size(), 44100U);
    }
}

TEST_F(OutputTest, LoudSoundsTogetherSaturate) {
    {
        Output output = make();
        output.play(level(30000, 100), {});
        output.play(level(30000, 100), {});
        pass(10);
    }
    const Wave wave = recorded();
    EXPECT_EQ(*std::max_element(wave.samples.begin(), wave.samples.end()), 32767);
}

TEST_F(OutputTest, AStoppedSoundIsRecordedAsFarAsItWasHeard) {
    {
        Output output = make();
        const Output::Playing playing = output.play(level(1000, 22050), {});
        pass(100);
        output.stop(playing);
        pass(100);
    }
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 1000), 2205);
    EXPECT_EQ(wave.samples.size(), 4410U);
}

TEST_F(OutputTest, AfterAFlushTheFileIsWhole) {
    Output output = make();
    EXPECT_EQ(recorded().samples.size(), 0U);
    output.play(level(1000, 22050), {});
    pass(100);
    output.flush();
    EXPECT_EQ(recorded().samples, std::vector<std::int16_t>(2205, 1000));
    pass(2900);
    output.flush();
    EXPECT_EQ(recorded().samples.size(), 66150U);
    output.flush();
    EXPECT_EQ(recorded().samples.size(), 66150U);
    pass(7000);
    output.flush();
    output.play(level(7, 10), {});
    pass(100);
    output.flush();
    const Wave wave = recorded();
    EXPECT_EQ(wave.samples.size(), 222705U);
    EXPECT_EQ(wave.samples.at(220499), 0);
    EXPECT_EQ(wave.samples.at(220500), 7);
    EXPECT_TRUE(output.recordingError().empty());
}

TEST_F(OutputTest, OtherRatesSoundAsLong) {
    {
        Output output = make();
        output.play(Wave{44100, std::vector<std::int16_t>(44100, 500)}, {});
        pass(2000);
    }
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 500), 22050);
}

TEST_F(OutputTest, ARecordingThatCannotBeWrittenIsTold) {
    Output output((folder / "missing" / "x.wav").u16string(), [this] { return microseconds; });
    EXPECT_THAT(output.recordingError(), HasSubstr("cannot be written"));
    int told = 0;
    output.play(level(1, 10), [&] { ++told; });
    pass(10);
    output.tick();
    output.flush();
    EXPECT_EQ(told, 1);
}

TEST_F(OutputTest, ANameThatIsNoTextIsRefused) {
    Output output(std::u16string{u'/', char16_t{0xD800}, u'/', u'x'}, [this] { return microseconds; });
    EXPECT_FALSE(output.recordingError().empty());
}

TEST_F(OutputTest, VolumeActsInTheMiddleOfASound) {
    {
        Output output = make();
        output.play(level(1000, 22050), {});
        pass(200);
        output.setVolume(0.25);
        pass(300);
        output.setVolume(0);
        pass(100);
        output.setVolume(7);
        pass(400);
    }
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 250), 6615);
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 0), 2205);
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 1000), 22050 - 6615 - 2205) << "no louder than made";
    EXPECT_EQ(wave.samples[4410], 250);
}

TEST_F(OutputTest, OneSoundIsSilencedBesideOthers) {
    {
        Output output = make();
        const Output::Playing one = output.play(level(1000, 4410), {});
        output.play(level(30, 4410), {});
        pass(100);
        output.setLoudness(one, 0);
        output.setLoudness(12345, 0);
        pass(100);
    }
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 1030), 2205);
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 30), 2205);
}

TEST_F(OutputTest, PausedInTheMiddleASoundGoesOnWhereItWas) {
    std::vector<std::int16_t> samples(22050);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(i + 1);
    }
    int told = 0;
    {
        Output output = make();
        const Output::Playing playing = output.play(Wave{22050, samples}, [&] { ++told; });
        pass(400);
        output.setPaused(true);
        EXPECT_TRUE(output.paused());
        output.setPaused(true);
        EXPECT_EQ(output.heard(playing), 400U);
        const Output::Playing later = output.play(level(7, 2205), {});
        pass(5000);
        output.tick();
        EXPECT_EQ(output.heard(playing), 400U);
        EXPECT_EQ(output.heard(later), 0U);
        output.setPaused(false);
        EXPECT_EQ(output.heard(playing), 400U);
        output.stop(later);
        pass(599);
        output.tick();
        EXPECT_EQ(told, 0);
        pass(1);
        output.tick();
        EXPECT_EQ(told, 1);
    }
    Wave wave = recorded();
    const auto half = wave.samples.begin() + 8820;
    EXPECT_EQ(std::vector(half, half + 22050 * 5), std::vector<std::int16_t>(22050 * 5));
    wave.samples.erase(half, half + 22050 * 5);
    EXPECT_EQ(wave.samples, samples) << "nothing is lost, nothing heard twice";
}

TEST_F(OutputTest, AFasterSoundEndsSoonerAndCountsItsOwnTime) {
    int told = 0;
    Output output = make(false);
    const Output::Playing playing = output.play(fakes::tone(2000), [&] { ++told; });
    pass(500);
    output.setTempo(playing, 2);
    output.setTempo(12345, 2);
    EXPECT_EQ(output.heard(playing), 500U);
    for (int i = 0; i < 50; ++i) {
        pass(10);
        output.tick();
    }
    EXPECT_NEAR(output.heard(playing).value_or(0), 1500, 30);
    for (int i = 0; i < 22; ++i) {
        pass(10);
        output.tick();
    }
    EXPECT_EQ(told, 0);
    for (int i = 0; i < 6; ++i) {
        pass(10);
        output.tick();
    }
    EXPECT_EQ(told, 1);
}

// Keeps what it is given; vanishes when told.
struct Heard {
    std::vector<std::int16_t> samples;
    bool there = true;
};

class FakeSink : public Sink {
  public:
    explicit FakeSink(Heard& heard) : heard_(heard) {}
    bool write(std::span<const std::int16_t> samples) override {
        if (heard_.there) {
            heard_.samples.insert(heard_.samples.end(), samples.begin(), samples.end());
        }
        return heard_.there;
    }

  private:
    Heard& heard_;
};

class DeviceTest : public OutputTest {
  protected:
    std::unique_ptr<Output> onDevice() {
        return std::make_unique<Output>(
            path.u16string(), [this] { return microseconds; }, std::make_unique<FakeSink>(heard));
    }
    void passInTicks(Output& output, int ticks) {
        for (int i = 0; i < ticks; ++i) {
            pass(10);
            output.tick();
        }
    }
    Heard heard;
};

constexpr std::size_t ahead = 2646; // 120 ms

TEST_F(DeviceTest, TheDeviceGetsAllInTimeAndAhead) {
    const auto output = onDevice();
    EXPECT_TRUE(output->hasDevice());
    output->tick();
    const Output::Playing playing = output->play(level(500, 22050), {});
    passInTicks(*output, 10);
    EXPECT_EQ(output->heard(playing), 0U); // it is being queued
    // First what is left until its time, of which a tick has passed.
    const std::size_t before = ahead - 220;
    EXPECT_EQ(heard.samples.size(), before + 2205);
    passInTicks(*output, 100);
    EXPECT_EQ(output->heard(playing), 980U);
    passInTicks(*output, 100);
    EXPECT_EQ(std::count(heard.samples.begin(), heard.samples.end(), 500), 22050);
    EXPECT_EQ(heard.samples[before], 500);
    EXPECT_EQ(heard.samples[before - 1], 0);
}

TEST_F(DeviceTest, TheDeviceIsGivenNothingWhileNothingSounds) {
    const auto output = onDevice();
    passInTicks(*output, 1000);
    EXPECT_EQ(heard.samples.size(), 0U);
    output->play(level(500, 2205), {});
    passInTicks(*output, 1000);
    const std::size_t first = heard.samples.size();
    EXPECT_LE(first, ahead + 2205 + 220);
    // After a pause the device is empty: what it gets first is what is left until the sound's time, less a tick.
    output->play(level(700, 2205), {});
    passInTicks(*output, 1000);
    ASSERT_GT(heard.samples.size(), first);
    EXPECT_LE(heard.samples.size(), first + ahead + 2205 + 220);
    EXPECT_EQ(heard.samples[first + ahead - 222], 0);
    EXPECT_EQ(heard.samples[first + ahead - 220], 700);
    output->flush();
    EXPECT_EQ(recorded().samples.size(), 22050U * 30 + ahead);
}

TEST_F(DeviceTest, SoundsShortlyAfterOneAnotherKeepTheirDistance) {
    const auto output = onDevice();
    output->play(level(500, 441), {});
    passInTicks(*output, 5); // the first is queued, and not heard yet
    output->play(level(700, 441), {});
    passInTicks(*output, 100);
    const auto first = std::ranges::find(heard.samples, 500), second = std::ranges::find(heard.samples, 700);
    ASSERT_NE(second, heard.samples.end());
    EXPECT_NEAR(static_cast<double>(second - first), 22050 * 0.05, 1);
}

TEST_F(OutputTest, PlaysSoManySoundsAtOnceAndNoMore) {
    Output output = make(false);
    std::vector<Output::Playing> playing;
    for (std::size_t i = 0; i < Output::most_sounds; ++i) {
        playing.push_back(output.play(level(1, 22050), {}));
        EXPECT_NE(playing.back(), 0U);
    }
    bool told = false;
    EXPECT_EQ(output.play(level(1, 22050), [&] { told = true; }), 0U);
    EXPECT_EQ(output.heard(0), std::nullopt);
    output.stop(playing[3]);
    EXPECT_NE(output.play(level(1, 22050), {}), 0U);
    pass(2000);
    output.tick();
    EXPECT_FALSE(told);
}

TEST_F(OutputTest, ASharedSoundIsPlayedWithoutACopy) {
    Output output = make(false);
    const auto wave = std::make_shared<const Wave>(level(1, 22050));
    output.play(wave, {});
    output.play(wave, {});
    EXPECT_EQ(wave.use_count(), 3);
    pass(2000);
    output.tick();
    EXPECT_EQ(wave.use_count(), 1);
}

TEST_F(DeviceTest, AVanishedDeviceChangesNoTime) {
    const auto output = onDevice();
    int told = 0;
    output->play(level(500, 22050), [&] { ++told; });
    passInTicks(*output, 50);
    heard.there = false;
    passInTicks(*output, 1);
    EXPECT_FALSE(output->hasDevice());
    passInTicks(*output, 60);
    EXPECT_EQ(told, 0);
    passInTicks(*output, 1);
    EXPECT_EQ(told, 1);
    output->flush();
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 500), 22050);
    EXPECT_EQ(wave.samples.size(), 22050U * 112 / 100);
}

TEST_F(DeviceTest, APauseHoldsWhatTheDeviceHasNotYetBeenGiven) {
    const auto output = onDevice();
    int told = 0;
    const Output::Playing playing = output->play(level(500, 22050), [&] { ++told; });
    passInTicks(*output, 30);
    output->setPaused(true);
    const std::size_t given = heard.samples.size();
    const auto at = output->heard(playing);
    passInTicks(*output, 300);
    EXPECT_EQ(heard.samples.size(), given);
    EXPECT_EQ(output->heard(playing), at);
    output->setPaused(false);
    EXPECT_EQ(output->heard(playing), at);
    passInTicks(*output, 81);
    EXPECT_EQ(told, 0);
    passInTicks(*output, 2);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(std::count(heard.samples.begin(), heard.samples.end(), 500), 22050);
}

TEST_F(DeviceTest, WhatIsMixedToItsEndWaitsForTheEndOfAPause) {
    const auto output = onDevice();
    int told = 0;
    output->play(level(500, 220), [&] { ++told; });
    passInTicks(*output, 2); // all of it was given to the device, and none of it has been heard
    output->setPaused(true);
    passInTicks(*output, 100);
    EXPECT_EQ(told, 0);
    output->setPaused(false);
    passInTicks(*output, 10);
    EXPECT_EQ(told, 0);
    passInTicks(*output, 3);
    EXPECT_EQ(told, 1);
}

TEST_F(DeviceTest, WhatIsLateIsRecordedButNotQueued) {
    const auto output = onDevice();
    output->play(level(500, 22050), {});
    pass(5000);
    output->tick();
    EXPECT_LE(heard.samples.size(), 2 * ahead + 1024);
    output->flush();
    const Wave wave = recorded();
    EXPECT_EQ(std::count(wave.samples.begin(), wave.samples.end(), 500), 22050);
}

TEST_F(OutputTest, TheRecordingEndsAtTheLargestWaveFile) {
    // Never written: left out of the file's middle.
    constexpr std::uint64_t most = (0xFFFFFFFFULL - 36) / 2;
    Recording recording(path.u16string());
    recording.silence(most - 2);
    const std::vector<std::int16_t> samples{1, 2, 3, 4};
    recording.write(samples);
    EXPECT_THAT(recording.error(), HasSubstr("as long as a wave file can be"));
    recording.flush();
    EXPECT_EQ(fs::file_size(path), 44 + most * 2);
    std::ifstream file(path, std::ios::binary);
    std::array<unsigned char, 44> header{};
    file.read(reinterpret_cast<char*>(header.data()), 44);
    EXPECT_EQ(header[40] | header[41] << 8, 0xFFDA);
    file.seekg(-4, std::ios::end);
    std::array<char, 4> tail{};
    file.read(tail.data(), 4);
    EXPECT_THAT(tail, testing::ElementsAre(1, 0, 2, 0));
    recording.write(samples);
    recording.flush();
    EXPECT_EQ(fs::file_size(path), 44 + most * 2);
}

TEST_F(OutputTest, SilenceAloneMayPassTheLargestWaveFile) {
    Recording recording(path.u16string());
    recording.silence(0x1'0000'0000);
    recording.flush();
    recording.silence(1);
    recording.flush();
    EXPECT_THAT(recording.error(), HasSubstr("as long as a wave file can be"));
}

} // namespace
} // namespace agent::voice
