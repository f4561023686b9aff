#include <gmock/gmock.h>

#include "companions/agent/stage/balloon_layout.h"

namespace agent::stage {
namespace {

using testing::ElementsAre;

// Letters of ten pixels; counts those that are measured.
std::size_t measured = 0;

std::size_t fitting(std::u16string_view piece, int room) {
    measured += piece.size();
    return std::min(piece.size(), static_cast<std::size_t>(room / 10));
}

std::vector<std::u16string> broken(const std::u16string& text, int width) {
    Lines lines(text, width, fitting);
    lines.first(1'000'000);
    EXPECT_TRUE(lines.complete());
    std::vector<std::u16string> texts;
    for (const TextLine& line : lines.laid()) {
        texts.push_back(text.substr(line.begin, line.end - line.begin));
    }
    return texts;
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

TEST(BalloonLines, BeginWithTheFirstWord) {
    EXPECT_THAT(broken(u"  there my friend", 80), ElementsAre(u"there my", u"friend"));
    EXPECT_THAT(broken(u"  ", 80), ElementsAre(u""));
}

TEST(BalloonLines, OfAnEmptyTextAreOneEmptyLine) {
    EXPECT_THAT(broken(u"", 50), ElementsAre(u""));
}

TEST(BalloonLines, NeverPartWhatBelongsToACharacter) {
    EXPECT_THAT(broken(u"ab\x2764\xFE0F", 30), ElementsAre(u"ab", u"\x2764\xFE0F"));
    const std::u16string family = u"\xD83D\xDC69\x200D\xD83D\xDC67";
    EXPECT_THAT(broken(u"abc" + family, 50), ElementsAre(u"abc", family));
    EXPECT_THAT(broken(family + family, 10), ElementsAre(family, family));
}

TEST(BalloonLines, BreakAtALineEndThatEndsTheText) {
    EXPECT_THAT(broken(u"one\n", 100), ElementsAre(u"one", u""));
    EXPECT_THAT(broken(u"one  \r\n  two", 100), ElementsAre(u"one", u"  two"));
}

TEST(BalloonLines, BreakAWordLongerThanAnyLine) {
    const auto lines = broken(std::u16string(5000, u'x'), 1'000'000);
    EXPECT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines.front().size(), Lines::longest_line);
}

std::u16string wordsOf(std::size_t count) {
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += u"word ";
    }
    return text;
}

TEST(BalloonLines, AreLaidOutAsFarAsTheyAreShown) {
    const std::u16string text = wordsOf(200'000); // a megabyte
    measured = 0;
    Lines lines(text, 100, fitting);
    lines.first(40);
    EXPECT_EQ(lines.laid().size(), 40U);
    EXPECT_FALSE(lines.complete());
    EXPECT_LE(measured, 40 * Lines::longest_line);
    lines.reach(1000);
    EXPECT_GE(lines.laid().back().end, 999U);
    EXPECT_LE(lines.laid().size(), 101U);
}

TEST(BalloonLines, FarAheadBeginAnew) {
    const std::u16string text = wordsOf(200'000);
    Lines lines(text, 100, fitting);
    lines.first(40);
    measured = 0;
    lines.reach(text.size() + 100);
    EXPECT_TRUE(lines.complete());
    EXPECT_LE(lines.laid().size(), Lines::most_at_once / 10 + 2);
    EXPECT_LE(measured, (Lines::most_at_once / 10 + 2) * Lines::longest_line);
    EXPECT_EQ(text.substr(lines.laid().front().begin, 5), u"word ");
    EXPECT_EQ(lines.laid().back().end, text.size() - 1);
    EXPECT_EQ(lines.firstShown(text.size(), 10), lines.laid().size() - 10);
}

TEST(BalloonLines, FarAheadPartNoPair) {
    std::u16string text;
    for (int i = 0; i < 20'000; ++i) {
        text += u"\xD83D\xDE00";
    }
    for (const std::size_t spoken : {30'000U, 30'001U}) {
        Lines lines(text, 100, fitting);
        lines.reach(spoken);
        EXPECT_EQ(lines.laid().front().begin % 2, 0U);
    }
}

TEST(BalloonScroll, KeepsTheSpokenLineInSight) {
    const std::u16string text = u"12345 789 12345 6789";
    Lines lines(text, 50, fitting);
    lines.first(100);
    ASSERT_THAT(lines.laid(), ElementsAre(TextLine{0, 5}, TextLine{6, 9}, TextLine{10, 15}, TextLine{16, 20}));
    EXPECT_EQ(lines.firstShown(0, 2), 0U);
    EXPECT_EQ(lines.firstShown(9, 2), 0U);
    EXPECT_EQ(lines.firstShown(12, 2), 1U);
    EXPECT_EQ(lines.firstShown(20, 2), 2U);
    EXPECT_EQ(lines.firstShown(20, 4), 0U);
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
    const auto sideAt = [](int top) {
        return placeBalloon(200, 60, 18, {400, top, 500, top + 120}, {0, 0, 1280, 1024}).side;
    };
    EXPECT_EQ(sideAt(78), Side::above);
    EXPECT_EQ(sideAt(77), Side::below) << "its tail needs room as well";
}

TEST(BalloonPlace, IsBesideWhereThereIsRoomNeitherAboveNorBelow) {
    EXPECT_EQ(placeBalloon(200, 900, 18, {900, 100, 1000, 220}, {0, 0, 1280, 1024}).side, Side::left);
    EXPECT_EQ(placeBalloon(200, 900, 18, {300, 100, 400, 220}, {0, 0, 1280, 1024}).body, (Rect{418, 0, 618, 900}));
}

TEST(BalloonPlace, KeepsOffTheOtherCharacters) {
    const Rect character{400, 300, 500, 420}, screen{0, 0, 1280, 1024};
    const auto place = [&](const std::vector<Rect>& others) {
        const BalloonPlace found = placeBalloon(200, 60, 18, character, screen, others);
        for (const Rect& other : others) {
            EXPECT_EQ(sharedArea(found.body, other), 0) << "at " << found.body.left << "," << found.body.top;
        }
        return found;
    };
    EXPECT_EQ(place({{600, 200, 700, 320}}).body, (Rect{350, 222, 550, 282})) << "nobody is in its way";
    EXPECT_EQ(place({{300, 200, 400, 320}}).body, (Rect{400, 222, 600, 282})) << "a bit aside";
    EXPECT_EQ(place({{500, 200, 600, 320}}).body, (Rect{300, 222, 500, 282}));
    EXPECT_EQ(place({{400, 160, 500, 280}}).side, Side::below);
    EXPECT_EQ(place({{400, 160, 500, 280}, {400, 440, 500, 560}}).side, Side::right);
    EXPECT_EQ(place({{400, 160, 500, 280}, {400, 440, 500, 560}, {520, 300, 620, 420}}).side, Side::left);
}

TEST(BalloonPlace, CoversAsLittleOfTheOthersAsCanBe) {
    const Rect character{400, 300, 500, 420}, screen{0, 0, 1280, 1024};
    const std::vector<Rect> all_around{
        {0, 0, 1280, 290}, {0, 430, 1280, 1024}, {0, 0, 390, 1024}, {700, 310, 1280, 1024}};
    const BalloonPlace found = placeBalloon(200, 60, 18, character, screen, all_around);
    EXPECT_EQ(found.side, Side::right);
    EXPECT_GE(found.body.left, character.right);
}

} // namespace
} // namespace agent::stage
