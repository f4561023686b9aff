#include <gtest/gtest.h>

#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

using acs::MouthShape;
using fakes::tone;

MouthShape shapeAt(const std::vector<MouthMove>& moves, std::uint32_t ms) {
    auto shape = MouthShape::closed;
    for (const MouthMove& move : moves) {
        if (move.at <= ms) {
            shape = move.shape;
        }
    }
    return shape;
}

Wave joined(std::initializer_list<Wave> waves) {
    Wave result;
    for (const Wave& wave : waves) {
        result.samples.insert(result.samples.end(), wave.samples.begin(), wave.samples.end());
    }
    return result;
}

TEST(LipSync, SilenceKeepsTheMouthClosed) {
    for (const Wave& wave :
         {Wave{}, Wave{0, {1000, 2000}}, Wave{22050, std::vector<std::int16_t>(22050)}, tone(500, 200, 100)}) {
        for (const MouthMove& move : mouthMoves(wave)) {
            EXPECT_EQ(move.shape, MouthShape::closed);
        }
    }
}

TEST(LipSync, OpensInSoundAndClosesInPauses) {
    const auto moves = mouthMoves(joined({tone(300), Wave{22050, std::vector<std::int16_t>(6615)}, tone(300)}));
    EXPECT_NE(shapeAt(moves, 100), MouthShape::closed);
    EXPECT_EQ(shapeAt(moves, 450), MouthShape::closed);
    EXPECT_NE(shapeAt(moves, 750), MouthShape::closed);
    EXPECT_EQ(shapeAt(moves, 1000), MouthShape::closed);
}

TEST(LipSync, TheLastMoveCloses) {
    const auto moves = mouthMoves(tone(440));
    ASSERT_FALSE(moves.empty());
    EXPECT_EQ(moves.back().shape, MouthShape::closed);
    EXPECT_EQ(moves.back().at, 440U);
}

TEST(LipSync, HissesNarrowAndLoudnessWidens) {
    const auto moves =
        mouthMoves(joined({tone(500, 200, 12000), tone(500, 200, 7000), tone(500, 200, 2000), tone(500, 5000, 5000)}));
    EXPECT_EQ(shapeAt(moves, 250), MouthShape::wide4);
    const MouthShape softer = shapeAt(moves, 750);
    EXPECT_TRUE(softer == MouthShape::wide1 || softer == MouthShape::wide2 || softer == MouthShape::wide3);
    EXPECT_EQ(shapeAt(moves, 1250), MouthShape::medium);
    EXPECT_EQ(shapeAt(moves, 1750), MouthShape::narrow);
}

TEST(LipSync, MovesAreInOrderAndWithinTheSound) {
    for (const std::uint32_t rate : {4000U, 8000U, 22050U, 96000U}) {
        const Wave wave = tone(777, 300, 9000, 30, rate);
        std::uint32_t last = 0;
        for (const MouthMove& move : mouthMoves(wave)) {
            EXPECT_GE(move.at, last);
            EXPECT_LE(move.at, wave.milliseconds());
            last = move.at;
        }
    }
}

} // namespace
} // namespace agent::voice
