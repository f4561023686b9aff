// Encoded sounds, as the system's converters decode them.
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include <windows.h>

#include <mmreg.h>
#include <mmsystem.h>

#include <msacm.h>

#include "companions/agent/voice/voice.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/encoded_files.h"

namespace agent::voice {
namespace {

// The rest that is left of `wanted` in `got`, as a part of it: 0 where both are the same, about 1 where they have
// nothing in common.
double difference(const std::vector<std::int16_t>& got, const std::vector<std::int16_t>& wanted) {
    double rest = 0, whole = 0;
    for (std::size_t i = 0; i < std::min(got.size(), wanted.size()); ++i) {
        rest += std::pow(got[i] - wanted[i], 2);
        whole += std::pow(wanted[i], 2);
    }
    return std::sqrt(rest / whole);
}

Wave readBack(const std::vector<std::uint8_t>& file) {
    std::string error;
    const auto wave = readWave(file, error);
    EXPECT_TRUE(wave) << error;
    return wave.value_or(Wave{});
}

// A tone of two channels is heard as the mean of both.
void expectTone(const EncodedFile& file, double most) {
    const auto samples = tone(file.rate, file.channels, 800);
    const Wave wave = readBack(encodedFile(file, samples));
    const auto wanted = tone(file.rate, 1, 800, file.channels == 2 ? 7500 : 10'000);
    const std::size_t block = file.block * 2;
    EXPECT_EQ(wave.rate, file.rate);
    EXPECT_LE(wave.samples.size(), wanted.size());
    EXPECT_GT(wave.samples.size() + block, wanted.size());
    EXPECT_LT(difference(wave.samples, wanted), most);
}

TEST(Converter, DecodesMsAdpcm) {
    for (std::uint32_t predictor = 0; predictor < 7; ++predictor) {
        expectTone({Encoding::ms_adpcm, 11025, 1, 256, 0, predictor}, predictor == 2 ? 0.2 : 0.05);
    }
    expectTone({Encoding::ms_adpcm, 22050, 2, 1024, 0, 1}, 0.03);
}

TEST(Converter, DecodesImaAdpcm) {
    expectTone({Encoding::ima_adpcm, 11025, 1, 256}, 0.05);
    expectTone({Encoding::ima_adpcm, 22050, 2, 1024}, 0.05);
}

TEST(Converter, DecodesMuLawAndALaw) {
    expectTone({Encoding::mu_law, 8000, 1, 1}, 0.02);
    expectTone({Encoding::mu_law, 11025, 2, 2}, 0.02);
    expectTone({Encoding::a_law, 8000, 1, 1}, 0.02);
    expectTone({Encoding::a_law, 44100, 2, 2}, 0.02);
}

TEST(Converter, DecodesGsm) {
    // Encoded by the system's own converter.
    std::vector<std::int16_t> samples = tone(8000, 1, 800);
    WAVEFORMATEX from{WAVE_FORMAT_PCM, 1, 8000, 16000, 2, 16, 0};
    std::vector<std::uint8_t> to = EncodedFormat{Encoding::gsm, 8000, 1, 65, 320}.description();
    HACMSTREAM stream = nullptr;
    ASSERT_EQ(acmStreamOpen(&stream, nullptr, &from, reinterpret_cast<WAVEFORMATEX*>(to.data()), nullptr, 0, 0,
                            ACM_STREAMOPENF_NONREALTIME),
              0U);
    std::vector<std::uint8_t> encoded(samples.size() / 320 * 65);
    ACMSTREAMHEADER header{};
    header.cbStruct = sizeof header;
    header.pbSrc = reinterpret_cast<BYTE*>(samples.data());
    header.cbSrcLength = static_cast<DWORD>(samples.size() * 2);
    header.pbDst = encoded.data();
    header.cbDstLength = static_cast<DWORD>(encoded.size());
    ASSERT_EQ(acmStreamPrepareHeader(stream, &header, 0), 0U);
    ASSERT_EQ(acmStreamConvert(stream, &header, ACM_STREAMCONVERTF_BLOCKALIGN), 0U);
    acmStreamUnprepareHeader(stream, &header, 0);
    acmStreamClose(stream, 0);
    ASSERT_EQ(header.cbDstLengthUsed, encoded.size());
    const Wave wave = readBack(encodedFile({Encoding::gsm, 8000, 1, 65}, encoded));
    EXPECT_EQ(wave.samples.size(), samples.size());
    EXPECT_LT(difference(wave.samples, samples), 0.3);
}

TEST(Converter, MakesAsManySamplesAsTheFileTells) {
    EXPECT_EQ(readBack(encodedFile({Encoding::ms_adpcm, 11025, 1, 256, 1234}, tone(11025, 1, 800))).samples.size(),
              1234U);
    std::string error;
    EXPECT_EQ(readWave(encodedFile({}, tone(11025, 1, 800)), error, 100)->samples.size(), 1102U);
    // Cut off within a block.
    std::vector<std::uint8_t> cut = encodedFile({}, tone(11025, 1, 800));
    cut.resize(cut.size() - 156);
    const Wave wave = readBack(cut);
    EXPECT_EQ(wave.samples.size(), 8820U / 500 * 500 - 500 + (100 - 7) * 2 + 2);
    EXPECT_LT(difference(wave.samples, tone(11025, 1, 800)), 0.05);
}

TEST(Converter, TakesALongSoundInParts) {
    const auto samples = tone(22050, 1, 30'000);
    const Wave wave = readBack(encodedFile({Encoding::ms_adpcm, 22050, 1, 512}, samples));
    EXPECT_GT(wave.samples.size(), samples.size() - 1024);
    EXPECT_LT(difference(wave.samples, samples), 0.05);
}

// Whatever a file says, the converters run in this process.
TEST(Converter, SurvivesDamage) {
    std::mt19937 random(20261122);
    int heard = 0;
    for (const EncodedFile& file :
         {EncodedFile{Encoding::ms_adpcm, 11025, 1, 256}, EncodedFile{Encoding::ms_adpcm, 11025, 2, 256},
          EncodedFile{Encoding::ima_adpcm, 11025, 1, 256}, EncodedFile{Encoding::ima_adpcm, 11025, 2, 256},
          EncodedFile{Encoding::mu_law, 8000, 1, 1}, EncodedFile{Encoding::a_law, 8000, 2, 2}}) {
        const std::vector<std::uint8_t> whole = encodedFile(file, tone(file.rate, file.channels, 300));
        for (int i = 0; i < 150; ++i) {
            std::vector<std::uint8_t> damaged = whole;
            for (std::size_t change = 1 + random() % 8; change > 0; --change) {
                damaged[random() % (random() % 2 == 0 ? 120 : damaged.size())] = static_cast<std::uint8_t>(random());
            }
            damaged.resize(damaged.size() - random() % 300);
            std::string error;
            const auto wave = readWave(damaged, error, 1000);
            EXPECT_EQ(wave.has_value(), error.empty());
            if (wave) {
                ++heard;
                EXPECT_LE(wave->milliseconds(), 1000U);
            }
        }
    }
    for (int i = 0; i < 200; ++i) {
        std::vector<std::uint8_t> noise(65 * 20);
        for (std::uint8_t& byte : noise) {
            byte = static_cast<std::uint8_t>(random());
        }
        std::string error;
        heard += readWave(encodedFile({Encoding::gsm, 8000, 1, 65}, noise), error) ? 1 : 0;
    }
    EXPECT_GT(heard, 300);
}

} // namespace
} // namespace agent::voice
