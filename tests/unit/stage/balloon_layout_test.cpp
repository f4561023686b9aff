#include <gmock/gmock.h>

#include "companions/agent/stage/balloon_layout.h"

namespace agent::stage {
namespace {

using testing::ElementsAre;

// Letters of ten pixels.
std::vector<std::u16string> broken(const std::u16string& text, int width) {
    std::vector<std::u16string> lines;
    const auto fitting = [](std::u16string_view piece, int room) {
        return std::min(piece.size(), static_cast<std::size_t>(room / 10));
    };
    for (const TextLine& line : breakLines(text, width, fitting)) {
        lines.push_back(text.substr(line.begin, line.end - line.begin));
    }
    return lines;
}

TEST(BalloonLines, BreakAtBlanks) {
    EXPECT_THAT(broken(u"the quick brown fox", 100), ElementsAre(u"the quick", u"brown fox"));
    EXPECT_THAT(broken(u"the quick", 90), ElementsAre(u"the quick"));
}

TEST(BalloonLines, BreakAtLineEnds) {
    EXPECT_THAT(broken(u"one\r\ntwo\nthree\rfour", 100), ElementsAre(u"one", u"two", u"three", u"four"));
    EXPECT_THAT(broken(u"one\n\ntwo", 100), ElementsAre(u"one", u"", u"two"));
}

TEST(BalloonLines, BreakALongWordBetweenLetters) {
    EXPECT_THAT(broken(u"a abcdefghijkl b", 50), ElementsAre(u"a", u"abcde", u"fghij", u"kl b"));
}

TEST(BalloonLines, NeverPartASurrogatePair) {
    EXPECT_THAT(broken(u"ab\xD83D\xDE00\xD83D\xDE00", 30), ElementsAre(u"ab", u"\xD83D\xDE00", u"\xD83D\xDE00"));
}

TEST(BalloonLines, AreMadeEvenWhereNothingFits) {
    EXPECT_THAT(broken(u"abc", 5), ElementsAre(u"a", u"b", u"c"));
}

TEST(BalloonLines, LeaveOutTheBlanksAtABreak) {
    EXPECT_THAT(broken(u"abc    def   ", 50), ElementsAre(u"abc", u"def"));
}

TEST(BalloonLines, OfAnEmptyTextAreOneEmptyLine) {
    EXPECT_THAT(broken(u"", 50), ElementsAre(u""));
}

TEST(BalloonScroll, KeepsTheSpokenLineInSight) {
    const std::vector<TextLine> lines{{0, 5}, {6, 10}, {11, 15}, {16, 20}};
    EXPECT_EQ(firstLine(lines, 0, 2), 0U);
    EXPECT_EQ(firstLine(lines, 10, 2), 0U);
    EXPECT_EQ(firstLine(lines, 12, 2), 1U);
    EXPECT_EQ(firstLine(lines, 20, 2), 2U);
    EXPECT_EQ(firstLine(lines, 20, 4), 0U);
}

TEST(BalloonPlace, IsAboveTheCharacterInItsMiddle) {
    const auto place = placeBalloon(200, 60, 18, {400, 300, 500, 420}, {0, 0, 1280, 1024});
    EXPECT_EQ(place.body, (Rect{350, 222, 550, 282}));
    EXPECT_EQ(place.side, Side::above);
    EXPECT_EQ(place.tail_x, 450);
    EXPECT_EQ(place.tail_y, 300);
}

TEST(BalloonPlace, StaysOnTheScreen) {
    EXPECT_EQ(placeBalloon(200, 60, 18, {0, 300, 100, 420}, {0, 0, 1280, 1024}).body, (Rect{0, 222, 200, 282}));
    EXPECT_EQ(placeBalloon(200, 60, 18, {1200, 300, 1300, 420}, {0, 0, 1280, 1024}).body, (Rect{1080, 222, 1280, 282}));
    EXPECT_EQ(placeBalloon(200, 60, 18, {-900, 1500, -800, 1620}, {0, 0, 1280, 1024}).body, (Rect{0, 964, 200, 1024}));
}

TEST(BalloonPlace, IsBelowWhereThereIsNoRoomAbove) {
    const auto place = placeBalloon(200, 60, 18, {400, 20, 500, 140}, {0, 0, 1280, 1024});
    EXPECT_EQ(place.body, (Rect{350, 158, 550, 218}));
    EXPECT_EQ(place.side, Side::below);
}

TEST(BalloonPlace, IsBesideWhereThereIsRoomNeitherAboveNorBelow) {
    EXPECT_EQ(placeBalloon(200, 900, 18, {900, 100, 1000, 220}, {0, 0, 1280, 1024}).side, Side::left);
    EXPECT_EQ(placeBalloon(200, 900, 18, {300, 100, 400, 220}, {0, 0, 1280, 1024}).body, (Rect{418, 0, 618, 900}));
}

} // namespace
} // namespace agent::stage
