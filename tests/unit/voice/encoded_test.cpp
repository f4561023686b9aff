#include "companions/agent/voice/encoded.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/encoded_files.h"

namespace agent::voice {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Bytes = std::vector<std::uint8_t>;

Bytes chunk(std::uint32_t tag, std::uint32_t channels, std::uint32_t rate, std::uint32_t block) {
    Bytes bytes;
    for (const auto& [value, size] : std::initializer_list<std::pair<std::uint32_t, int>>{
             {tag, 2}, {channels, 2}, {rate, 4}, {rate, 4}, {block, 2}, {4, 2}}) {
        for (int i = 0; i < size; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    return bytes;
}

// 0 where it is refused.
std::uint32_t samplesPerBlock(std::uint32_t tag, std::uint32_t channels, std::uint32_t rate, std::uint32_t block) {
    std::string error;
    const auto format = readEncodedFormat(chunk(tag, channels, rate, block), error);
    EXPECT_EQ(format.has_value(), error.empty());
    return format ? format->samples_per_block : 0;
}

TEST(EncodedFormat, FollowsFromItsBlock) {
    EXPECT_EQ(samplesPerBlock(0x02, 1, 11025, 256), 500U);
    EXPECT_EQ(samplesPerBlock(0x02, 2, 22050, 1024), 1012U);
    EXPECT_EQ(samplesPerBlock(0x11, 1, 11025, 256), 505U);
    EXPECT_EQ(samplesPerBlock(0x11, 2, 22050, 1024), 1017U);
    EXPECT_EQ(samplesPerBlock(0x06, 2, 8000, 2), 1U);
    EXPECT_EQ(samplesPerBlock(0x07, 1, 8000, 1), 1U);
    EXPECT_EQ(samplesPerBlock(0x31, 1, 8000, 65), 320U);
}

TEST(EncodedFormat, ThatCannotBeIsRefused) {
    EXPECT_EQ(samplesPerBlock(0x02, 1, 11025, 7), 0U) << "nothing but a header";
    EXPECT_EQ(samplesPerBlock(0x02, 1, 11025, 0), 0U);
    EXPECT_EQ(samplesPerBlock(0x02, 1, 11025, 65535), 0U) << "more samples than can be told";
    EXPECT_EQ(samplesPerBlock(0x02, 0, 11025, 256), 0U);
    EXPECT_EQ(samplesPerBlock(0x02, 3, 11025, 256), 0U);
    EXPECT_EQ(samplesPerBlock(0x02, 1, 3999, 256), 0U);
    EXPECT_EQ(samplesPerBlock(0x02, 1, 96001, 256), 0U);
    EXPECT_EQ(samplesPerBlock(0x11, 1, 11025, 4), 0U);
    EXPECT_EQ(samplesPerBlock(0x11, 2, 11025, 1020), 0U) << "half a group";
    EXPECT_EQ(samplesPerBlock(0x06, 1, 8000, 2), 0U);
    EXPECT_EQ(samplesPerBlock(0x31, 2, 8000, 65), 0U);
    EXPECT_EQ(samplesPerBlock(0x31, 1, 8000, 33), 0U);
    EXPECT_EQ(samplesPerBlock(0x55, 1, 8000, 1), 0U) << "another encoding";
    std::string error;
    EXPECT_FALSE(readEncodedFormat(Bytes(15, 2), error));
}

TEST(EncodedFormat, IsDescribedAsTheConvertersTakeIt) {
    EXPECT_THAT((EncodedFormat{Encoding::mu_law, 8000, 1, 1, 1}.description()),
                ElementsAre(7, 0, 1, 0, 0x40, 0x1F, 0, 0, 0x40, 0x1F, 0, 0, 1, 0, 8, 0, 0, 0));
    EXPECT_THAT((EncodedFormat{Encoding::gsm, 8000, 1, 65, 320}.description()),
                ElementsAre(0x31, 0, 1, 0, 0x40, 0x1F, 0, 0, 0x59, 0x06, 0, 0, 65, 0, 0, 0, 2, 0, 0x40, 1));
    EXPECT_THAT((EncodedFormat{Encoding::ima_adpcm, 11025, 1, 256, 505}.description()),
                ElementsAre(0x11, 0, 1, 0, 0x11, 0x2B, 0, 0, 0xD4, 0x15, 0, 0, 0, 1, 4, 0, 2, 0, 0xF9, 1));
    const Bytes ms = EncodedFormat{Encoding::ms_adpcm, 11025, 1, 256, 500}.description();
    EXPECT_EQ(ms.size(), 18U + 32U);
    EXPECT_THAT(Bytes(ms.begin() + 16, ms.begin() + 30), ElementsAre(32, 0, 0xF4, 1, 7, 0, 0, 1, 0, 0, 0, 2, 0, 0xFF));
}

TEST(EncodedBlocks, AreTakenWholeAndTheLastOneIsFilledUp) {
    const EncodedFormat format{Encoding::ms_adpcm, 11025, 1, 256, 500};
    const Bytes data(256 + 100, 3);
    const EncodedBlocks read = readEncodedBlocks(format, data, 1'000'000);
    EXPECT_EQ(read.bytes.size(), 512U);
    EXPECT_EQ(read.bytes[355], 3);
    EXPECT_EQ(read.bytes[356], 0);
    EXPECT_EQ(read.samples, 500U + (100 - 7) * 2 + 2);
    EXPECT_EQ(readEncodedBlocks(format, std::span(data).first(256 + 6), 1'000'000).samples, 500U) << "no header";
}

TEST(EncodedBlocks, EndWhereEnoughIsHeard) {
    const EncodedFormat format{Encoding::ms_adpcm, 11025, 1, 256, 500};
    const EncodedBlocks read = readEncodedBlocks(format, Bytes(2560, 3), 501);
    EXPECT_EQ(read.bytes.size(), 512U);
    EXPECT_EQ(read.samples, 501U);
    EXPECT_TRUE(readEncodedBlocks(format, Bytes(2560, 3), 0).bytes.empty());
}

// What a converter would look up beyond the end of its tables.
TEST(EncodedBlocks, EndBeforeOneThatCannotBe) {
    Bytes data(3 * 256, 0);
    data[256] = 7;
    EXPECT_EQ(readEncodedBlocks({Encoding::ms_adpcm, 11025, 1, 256, 500}, data, 10'000).samples, 500U);
    data[256] = 6;
    EXPECT_EQ(readEncodedBlocks({Encoding::ms_adpcm, 11025, 1, 256, 500}, data, 10'000).samples, 1500U);
    data[257] = 7; // of the other channel
    EXPECT_EQ(readEncodedBlocks({Encoding::ms_adpcm, 11025, 2, 256, 244}, data, 10'000).samples, 244U);
    data[258] = 89;
    EXPECT_EQ(readEncodedBlocks({Encoding::ima_adpcm, 11025, 1, 256, 505}, data, 10'000).samples, 505U);
    data[258] = 88;
    EXPECT_EQ(readEncodedBlocks({Encoding::ima_adpcm, 11025, 1, 256, 505}, data, 10'000).samples, 1515U);
    data[256 + 6] = 200;
    EXPECT_EQ(readEncodedBlocks({Encoding::ima_adpcm, 11025, 2, 256, 249}, data, 10'000).samples, 249U);
}

TEST(EncodedBlocks, OfAnyBytesAreWholeAndNotMoreThanAsked) {
    std::mt19937 random(20261122);
    for (int i = 0; i < 2000; ++i) {
        std::string error;
        const std::uint32_t tags[]{0x02, 0x06, 0x07, 0x11, 0x31};
        const auto format = readEncodedFormat(
            chunk(tags[random() % 5], 1 + random() % 2, 4000 + random() % 50'000, 1 + random() % 300), error);
        if (!format) {
            continue;
        }
        Bytes data(random() % 5000);
        for (std::uint8_t& byte : data) {
            byte = static_cast<std::uint8_t>(random() % 8);
        }
        const std::uint64_t most = random() % 3000;
        const EncodedBlocks read = readEncodedBlocks(*format, data, most);
        EXPECT_EQ(read.bytes.size() % format->block, 0U);
        EXPECT_LT(read.bytes.size(), data.size() + format->block);
        EXPECT_LE(read.samples, most);
        EXPECT_LE(read.samples, read.bytes.size() / format->block * format->samples_per_block);
    }
}

// On the machine that builds there are no converters.
TEST(EncodedWave, ThatNobodyConvertsIsRefused) {
    std::string error;
    EXPECT_FALSE(readWave(encodedFile(EncodedFile{}, tone(11025, 1, 500)), error));
    EXPECT_THAT(error, HasSubstr("no converter"));
    error.clear();
    EXPECT_TRUE(readWave(encodedFile(EncodedFile{}, Bytes{}), error)) << "nothing to convert";
    EXPECT_TRUE(error.empty());
}

} // namespace
} // namespace agent::voice
