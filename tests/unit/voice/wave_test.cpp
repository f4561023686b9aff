#include "companions/agent/voice/wave.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void put(std::vector<std::uint8_t>& file, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

void put(std::vector<std::uint8_t>& file, std::string_view text) {
    file.insert(file.end(), text.begin(), text.end());
}

struct Header {
    std::uint32_t kind = 1, channels = 1, rate = 22050, block = 2, bits = 16;
};

std::vector<std::uint8_t> fileOf(const Header& header, std::initializer_list<std::uint8_t> data) {
    std::vector<std::uint8_t> file;
    put(file, "RIFF");
    put(file, static_cast<std::uint32_t>(36 + data.size()), 4);
    put(file, "WAVEfmt ");
    put(file, 16, 4);
    put(file, header.kind, 2);
    put(file, header.channels, 2);
    put(file, header.rate, 4);
    put(file, header.rate * header.block, 4);
    put(file, header.block, 2);
    put(file, header.bits, 2);
    put(file, "data");
    put(file, static_cast<std::uint32_t>(data.size()), 4);
    file.insert(file.end(), data);
    return file;
}

std::string refusal(std::span<const std::uint8_t> file) {
    std::string error;
    EXPECT_FALSE(readWave(file, error).has_value());
    EXPECT_FALSE(error.empty());
    return error;
}

std::vector<std::int16_t> samplesOf(std::span<const std::uint8_t> file) {
    std::string error;
    const std::optional<Wave> wave = readWave(file, error);
    EXPECT_TRUE(wave.has_value()) << error;
    return wave ? wave->samples : std::vector<std::int16_t>{};
}

TEST(WaveFile, SixteenBitsMono) {
    EXPECT_THAT(samplesOf(fileOf({}, {0x01, 0x00, 0xFF, 0xFF, 0x00, 0x80, 0xFF, 0x7F})),
                ElementsAre(1, -1, -32768, 32767));
}

TEST(WaveFile, EightBitsMono) {
    EXPECT_THAT(samplesOf(fileOf({1, 1, 8000, 1, 8}, {0x80, 0x00, 0xFF})), ElementsAre(0, -32768, 32512));
}

TEST(WaveFile, StereoIsTheMeanOfBothSides) {
    EXPECT_THAT(samplesOf(fileOf({1, 2, 44100, 4, 16}, {0x64, 0x00, 0xC8, 0x00, 0x00, 0x80, 0x00, 0x80})),
                ElementsAre(150, -32768));
    EXPECT_THAT(samplesOf(fileOf({1, 2, 44100, 2, 8}, {0x80, 0x82})), ElementsAre(256));
}

TEST(WaveFile, WhatIsWrittenIsReadAgain) {
    const Wave wave{11025, {0, 1, -1, 32767, -32768, 1234}};
    std::string error;
    const std::optional<Wave> again = readWave(writeWave(wave), error);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->rate, 11025U);
    EXPECT_EQ(again->samples, wave.samples);
}

TEST(WaveFile, HeaderIsAsTheFormatHasIt) {
    EXPECT_THAT(writeWave({22050, {0x0201}}),
                ElementsAre('R', 'I', 'F', 'F', 38, 0, 0, 0, 'W', 'A', 'V', 'E', 'f', 'm', 't', ' ', 16, 0, 0, 0, 1, 0,
                            1, 0, 0x22, 0x56, 0, 0, 0x44, 0xAC, 0, 0, 2, 0, 16, 0, 'd', 'a', 't', 'a', 2, 0, 0, 0, 0x01,
                            0x02));
}

TEST(WaveFile, OtherChunksAreSkipped) {
    std::vector<std::uint8_t> file = fileOf({}, {0x05, 0x00});
    const std::vector<std::uint8_t> list{'L', 'I', 'S', 'T', 3, 0, 0, 0, 'a', 'b', 'c', 0};
    file.insert(file.begin() + 12, list.begin(), list.end());
    EXPECT_THAT(samplesOf(file), ElementsAre(5));
}

TEST(WaveFile, ALengthUnknownWhileWritingIsTheRestOfTheFile) {
    std::vector<std::uint8_t> file = fileOf({}, {0x05, 0x00, 0x06, 0x00});
    file[40] = 0x00, file[41] = 0xF0, file[42] = 0xFF, file[43] = 0x7F;
    EXPECT_THAT(samplesOf(file), ElementsAre(5, 6));
}

TEST(WaveFile, CutAtEveryLength) {
    const std::vector<std::uint8_t> file = fileOf({}, {0x01, 0x00, 0x02, 0x00, 0x03, 0x00});
    for (std::size_t size = 0; size < 44; ++size) {
        refusal(std::vector<std::uint8_t>(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)));
    }
    for (std::size_t size = 44; size <= file.size(); ++size) {
        const std::vector<std::uint8_t> cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(samplesOf(cut).size(), (size - 44) / 2);
    }
}

TEST(WaveFile, EveryByteDamagedInTurn) {
    const std::vector<std::uint8_t> file = fileOf({}, {0x01, 0x00, 0x02, 0x00});
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::vector<std::uint8_t> damaged = file;
            damaged[at] = static_cast<std::uint8_t>(value);
            std::string error;
            const std::optional<Wave> wave = readWave(damaged, error);
            EXPECT_EQ(wave.has_value(), error.empty());
            if (wave) {
                EXPECT_LE(wave->samples.size(), 4U);
                EXPECT_GE(wave->rate, 4000U);
                EXPECT_LE(wave->rate, 96000U);
            }
        }
    }
}

TEST(WaveFile, RefusalsSayWhy) {
    EXPECT_THAT(refusal({}), HasSubstr("not a wave file"));
    EXPECT_THAT(refusal(fileOf({0x55, 1, 22050, 2, 16}, {0, 0})), HasSubstr("not known here"));
    EXPECT_THAT(refusal(fileOf({1, 0, 22050, 2, 16}, {0, 0})), HasSubstr("channel"));
    EXPECT_THAT(refusal(fileOf({1, 3, 22050, 6, 16}, {0, 0})), HasSubstr("channel"));
    EXPECT_THAT(refusal(fileOf({1, 1, 22050, 3, 24}, {0, 0})), HasSubstr("bits"));
    EXPECT_THAT(refusal(fileOf({1, 1, 3999, 2, 16}, {0, 0})), HasSubstr("rate"));
    EXPECT_THAT(refusal(fileOf({1, 1, 96001, 2, 16}, {0, 0})), HasSubstr("rate"));
    EXPECT_THAT(refusal(fileOf({1, 1, 22050, 1, 16}, {0, 0})), HasSubstr("block"));
}

TEST(WaveFile, SoundBeforeItsFormatIsRefused) {
    const std::vector<std::uint8_t> file{'R', 'I', 'F', 'F', 0,   0, 0, 0, 'W', 'A', 'V',
                                         'E', 'd', 'a', 't', 'a', 2, 0, 0, 0,   1,   0};
    EXPECT_THAT(refusal(file), HasSubstr("before its format"));
}

TEST(WaveFile, AChunkAsLongAsCanBeEndsTheFile) {
    std::vector<std::uint8_t> file = fileOf({}, {0x05, 0x00});
    const std::vector<std::uint8_t> huge{'L', 'I', 'S', 'T', 0xFF, 0xFF, 0xFF, 0xFF};
    file.insert(file.begin() + 12, huge.begin(), huge.end());
    EXPECT_THAT(refusal(file), HasSubstr("no sound"));
}

TEST(Wave, Milliseconds) {
    EXPECT_EQ((Wave{22050, std::vector<std::int16_t>(22050)}.milliseconds()), 1000U);
    EXPECT_EQ((Wave{8000, std::vector<std::int16_t>(4)}.milliseconds()), 0U);
    EXPECT_EQ((Wave{0, {1, 2}}.milliseconds()), 0U);
}

TEST(Wave, ResamplingKeepsLengthAndPitch) {
    for (const std::uint32_t rate : {8000U, 11025U, 16000U, 44100U, 48000U, 96000U}) {
        const Wave wave = resampled(fakes::tone(1000, 440, 10000, 0, rate), 22050);
        EXPECT_EQ(wave.rate, 22050U);
        EXPECT_NEAR(static_cast<double>(wave.samples.size()), 22050, 3) << rate;
        int crossings = 0;
        for (std::size_t i = 1; i < wave.samples.size(); ++i) {
            crossings += (wave.samples[i - 1] < 0) != (wave.samples[i] < 0);
        }
        EXPECT_NEAR(crossings, 880, 4) << rate;
    }
}

TEST(Wave, ResamplingAveragesDownAndInterpolatesUp) {
    EXPECT_THAT(resampled({44100, {10, 20, 30, 50}}, 22050).samples, ElementsAre(15, 40));
    EXPECT_THAT(resampled({11025, {0, 100}}, 22050).samples, ElementsAre(0, 50, 100, 100));
    EXPECT_THAT(resampled({22050, {1, 2}}, 22050).samples, ElementsAre(1, 2));
    EXPECT_THAT(resampled({44100, {}}, 22050).samples, ElementsAre());
}

TEST(Wave, MixingSaturates) {
    EXPECT_EQ(mixed(100, -30), 70);
    EXPECT_EQ(mixed(30000, 30000), 32767);
    EXPECT_EQ(mixed(-30000, -30000), -32768);
}

TEST(Wave, TimesOfLongSoundsAreExact) {
    EXPECT_EQ(millisecondsOf(22050ULL * 240, 22050), 240'000U);
    EXPECT_EQ(millisecondsOf(96000ULL * 86'400, 96000), 86'400'000U);
    EXPECT_EQ(millisecondsOf(1, 0), 0U);
}

TEST(ReadWave, LeavesOutWhatIsTooLong) {
    const auto file = writeWave({8000, std::vector<std::int16_t>(8000 * 3, 9)});
    std::string error;
    EXPECT_EQ(readWave(file, error, 2000)->samples.size(), 16000U);
    EXPECT_EQ(readWave(file, error)->samples.size(), 24000U);
    // Longer than ten minutes, one byte a sample.
    std::vector<std::uint8_t> longer = waveHeader(4000, 4000 * 601);
    longer[28] = 0xA0; // bytes a second
    longer[29] = 0x0F;
    longer[32] = 1; // bytes a sample
    longer[34] = 8; // bits
    longer.resize(longer.size() + 4000 * 601, 128);
    EXPECT_EQ(readWave(longer, error)->samples.size(), 4000U * 600);
}

TEST(ReadWave, LooksThroughSoManyPartsAndNoMore) {
    const auto whole = writeWave({8000, {1, 2, 3}});
    const auto withParts = [&](std::size_t parts) {
        auto file = whole;
        file.insert(file.begin() + 12, parts * 8, 0);
        std::string error;
        return readWave(file, error).has_value();
    };
    EXPECT_TRUE(withParts(998));
    EXPECT_FALSE(withParts(999));
}

} // namespace
} // namespace agent::voice
