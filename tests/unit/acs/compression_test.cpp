#include "companions/agent/acs/compression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>

namespace {

using namespace agent::acs;
using Bytes = std::vector<std::uint8_t>;

// The stream of bits written in the order they are read, blanks aside.
Bytes stream(const std::string& bits) {
    Bytes result{0};
    unsigned used = 8;
    for (const char bit : bits) {
        if (bit == ' ') {
            continue;
        }
        if (used == 8) {
            result.push_back(0xFF);
            used = 0;
        }
        if (bit == '0') {
            result.back() = static_cast<std::uint8_t>(result.back() & ~(1U << used));
        }
        ++used;
    }
    result.insert(result.end(), 6, 0xFF);
    return result;
}

std::string number(unsigned value, unsigned count) {
    std::string bits;
    for (unsigned i = 0; i < count; ++i) {
        bits += (value >> i & 1U) != 0 ? '1' : '0';
    }
    return bits;
}

std::string literals(const Bytes& bytes) {
    std::string bits;
    for (const std::uint8_t byte : bytes) {
        bits += "0 " + number(byte, 8) + " ";
    }
    return bits;
}

// What the stream gives as `size` bytes.
Bytes output(const Bytes& from, std::size_t size) {
    Bytes result(size);
    EXPECT_EQ(decompress(from, result), "");
    EXPECT_EQ(streamFault(from, size), "");
    return result;
}

std::string fault(const Bytes& from, std::size_t size) {
    Bytes result(size);
    const std::string text(decompress(from, result));
    EXPECT_EQ(streamFault(from, size), text);
    return text;
}

Bytes randomBytes(std::size_t size, unsigned colours) {
    std::mt19937 random(7);
    Bytes result(size);
    std::ranges::generate(result, [&] { return static_cast<std::uint8_t>(random() % colours); });
    return result;
}

void expectRoundTrip(const Bytes& bytes) {
    const Bytes packed = compress(bytes);
    ASSERT_EQ(streamFault(packed, bytes.size()), "");
    Bytes result(bytes.size());
    decompress(packed, result);
    EXPECT_TRUE(result == bytes) << bytes.size() << " bytes";
}

TEST(AcsDecompression, NothingIsAZeroAndSixFF) {
    EXPECT_EQ(output({0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 0), Bytes{});
}

TEST(AcsDecompression, ALiteralIsAZeroBitAndEightBitsLowestFirst) {
    // 0, then 0x41 as 1 0 0 0 0 0 1 0, then ones.
    EXPECT_EQ(output({0, 0x82, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 1), Bytes{0x41});
}

TEST(AcsDecompression, ACopyMayOverlapItsOutput) {
    // Literal 0x41; then 1, distance range 0 with 000000 = 1, length 2 + 1 + 0: 1 0 0.
    EXPECT_EQ(output(stream("0 10000010  1 0 000000 10 0"), 4), (Bytes{0x41, 0x41, 0x41, 0x41}));
    // "ab" then seven more from a distance of 2: k = 2, so 2 + 3 + 2.
    EXPECT_EQ(output(stream(literals({'a', 'b'}) + "1 0 100000 110 01"), 9),
              (Bytes{'a', 'b', 'a', 'b', 'a', 'b', 'a', 'b', 'a'}));
}

TEST(AcsDecompression, DistancesOfAllFourRanges) {
    struct Case {
        std::string bits;
        std::size_t distance, length;
    };
    const std::vector<Case> cases{
        {"1 0 000000 0", 1, 2},
        {"1 0 111111 0", 64, 2},
        {"1 10 000000000 0", 65, 2},
        {"1 10 100000000 0", 66, 2},
        {"1 10 111111111 0", 576, 2},
        {"1 110 000000000000 0", 577, 2},
        {"1 110 000000000001 0", 2625, 2},
        {"1 110 111111111111 0", 4672, 2},
        {"1 111 00000000000000000000 0", 4673, 3},
        {"1 111 10100000000000000000 0", 4678, 3},
    };
    const Bytes start = randomBytes(5000, 256);
    for (const Case& a_case : cases) {
        Bytes expected = start;
        for (std::size_t i = 0; i < a_case.length; ++i) {
            expected.push_back(expected[expected.size() - a_case.distance]);
        }
        EXPECT_TRUE(output(stream(literals(start) + a_case.bits), expected.size()) == expected) << a_case.bits;
    }
}

TEST(AcsDecompression, LengthsOfEveryNumberOfOneBits) {
    for (unsigned k = 0; k <= 11; ++k) {
        const std::string ones(k, '1');
        for (const unsigned value : {0U, (1U << k) - 1, (1U << k) / 2}) {
            const std::string length = ones + "0" + number(value, k);
            const std::size_t near_length = 2 + (1U << k) - 1 + value;
            EXPECT_EQ(output(stream("0 10000010 1 0 000000" + length), 1 + near_length), Bytes(1 + near_length, 0x41));
            const Bytes start(4673, 9);
            EXPECT_TRUE(output(stream(literals(start) + "1 111 00000000000000000000" + length), 4674 + near_length) ==
                        Bytes(4674 + near_length, 9))
                << k;
        }
    }
    EXPECT_EQ(output(stream("0 10000010 1 0 000000 111111111110 11111111111"), 4097).size(), 4097U);
}

TEST(AcsDecompression, TheEndMarkMayBeginAtAnyBit) {
    for (std::size_t count = 0; count < 9; ++count) {
        const Bytes bytes = randomBytes(count, 256);
        EXPECT_EQ(output(stream(literals(bytes)), count), bytes);
    }
}

TEST(AcsDecompression, RefusesWhatIsNoStream) {
    EXPECT_EQ(fault({}, 0), "is too short");
    EXPECT_EQ(fault({0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 0), "is too short");
    EXPECT_EQ(fault({1, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 0), "does not begin with a byte 0");
    EXPECT_EQ(fault({0, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}, 0), "does not end with six bytes 0xFF");
}

TEST(AcsDecompression, RefusesACopyFromBeforeTheStart) {
    EXPECT_EQ(fault(stream("1 0 000000 0"), 2), "copies from before its start");
    EXPECT_EQ(fault(stream("0 10000010 1 0 100000 0"), 3), "copies from before its start");
    EXPECT_EQ(fault(stream("0 10000010 1 111 00000000000000000000 0"), 4), "copies from before its start");
}

TEST(AcsDecompression, RefusesMoreOutputThanAnnounced) {
    EXPECT_EQ(fault(stream("0 10000010"), 0), "gives more bytes than announced");
    EXPECT_EQ(fault(stream("0 10000010 0 10000010"), 1), "gives more bytes than announced");
    EXPECT_EQ(fault(stream("0 10000010 1 0 000000 0"), 2), "gives more bytes than announced");
}

TEST(AcsDecompression, RefusesLessOutputThanAnnounced) {
    EXPECT_EQ(fault(stream("0 10000010"), 2), "gives fewer bytes than announced");
    EXPECT_EQ(fault(stream(""), 100), "gives fewer bytes than announced");
}

TEST(AcsDecompression, RefusesALengthOfTwelveOneBits) {
    EXPECT_EQ(fault(stream("0 10000010 1 0 000000 1111111111110"), 5000), "has a copy of impossible length");
}

TEST(AcsDecompression, RefusesAStreamThatRunsPastItsEnd) {
    // The copy's prefix takes 111 and its distance ends in a 0, so that the rest of the ones is its length.
    EXPECT_EQ(fault(stream(literals(Bytes(4700, 1)) + "1 111 10000000000000000000"), 9000),
              "has a copy of impossible length");
}

TEST(AcsCompression, WritesTheStreamsByHand) {
    EXPECT_EQ(compress(Bytes{}), (Bytes{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(compress(Bytes{0x41}), (Bytes{0, 0x82, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(compress(Bytes(4, 0x41)), stream("0 10000010  1 0 000000 10 0"));
}

TEST(AcsCompression, RoundTripsOfEverySizeAndKind) {
    for (std::size_t size = 0; size < 300; ++size) {
        for (const unsigned colours : {1U, 2U, 5U, 256U}) {
            expectRoundTrip(randomBytes(size, colours));
        }
    }
    for (const unsigned colours : {1U, 2U, 17U, 256U}) {
        expectRoundTrip(randomBytes(70'000, colours));
    }
}

TEST(AcsCompression, ReachesToEveryLimitOfDistanceAndLength) {
    const Bytes random = randomBytes(4673 + (1U << 20) + 8000, 256);
    for (const std::size_t distance : {std::size_t{1}, std::size_t{2}, std::size_t{64}, std::size_t{65},
                                       std::size_t{576}, std::size_t{577}, std::size_t{4672}, std::size_t{4673},
                                       std::size_t{4673} + (1U << 20) - 2, std::size_t{4673} + (1U << 20) - 1}) {
        for (const std::size_t length : {2U, 3U, 4U, 5U, 191U, 4095U, 4096U, 4097U, 4098U}) {
            if (distance > 5000 && length != 4097) {
                continue; // each of these takes a megabyte
            }
            Bytes bytes(random.begin(), random.begin() + static_cast<std::ptrdiff_t>(distance));
            for (std::size_t i = 0; i < length; ++i) {
                bytes.push_back(bytes[bytes.size() - distance]);
            }
            expectRoundTrip(bytes);
        }
    }
}

TEST(AcsCompression, SavesMuchOfFlatAndRepeatedPictures) {
    EXPECT_LE(compress(Bytes(40'000, 0)).size(), 60U);
    Bytes rows = randomBytes(128, 256);
    for (int i = 0; i < 127; ++i) {
        rows.insert(rows.end(), rows.begin(), rows.begin() + 128);
    }
    EXPECT_LE(compress(rows).size(), 128U * 9 / 8 + 40);
}

TEST(AcsCompression, NeverGrowsByMoreThanAnEighthAndTheFrame) {
    const Bytes bytes = randomBytes(20'000, 256);
    EXPECT_LE(compress(bytes).size(), bytes.size() * 9 / 8 + 8);
}

} // namespace
