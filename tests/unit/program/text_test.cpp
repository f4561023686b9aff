#include "tests/unit/program/program_test.h"

namespace murmelix::test {

namespace {

TEST(Text, LongTextsAreFoundWithoutCaseLikeShortOnes) {
    const std::u16string wanted = u"aabaabaabaabaabaabaac";
    EXPECT_EQ(find(u"xAABAABAABAABAABAABAABAABAAC", wanted, 0, LetterCase::ignored), 7u);
    EXPECT_EQ(find(u"xAABAABAABAABAABAABAABAABAA", wanted, 0, LetterCase::ignored), npos);
    EXPECT_EQ(find(wanted, wanted, 1, LetterCase::ignored), npos);
    EXPECT_EQ(find(u"", wanted, 0, LetterCase::ignored), npos);
}

TEST(Text, EmptyTextIsFoundWhereTheSearchBegins) {
    EXPECT_EQ(find(u"abc", u"", 0, LetterCase::ignored), 0u);
    EXPECT_EQ(find(u"abc", u"", 3, LetterCase::ignored), 3u);
    EXPECT_EQ(find(u"abc", u"", 4, LetterCase::ignored), npos);
}

TEST(Text, SixteenBitNumbersRoundHalvesToEven) {
    EXPECT_EQ(toInt16(0.5), 0);
    EXPECT_EQ(toInt16(1.5), 2);
    EXPECT_EQ(toInt16(-2.5), -2);
    EXPECT_EQ(toInt16(1e300), 32767);
    EXPECT_EQ(toInt16(-1e300), -32768);
}

TEST(Text, ProperCaseRaisesTheFirstLetterOfEachWord) {
    EXPECT_EQ(toProperCase(u"HELLO world"), u"Hello World");
    EXPECT_EQ(toProperCase(u"a\tb\nc-d"), u"A\tB\nC-d");
    EXPECT_EQ(toProperCase(u"\u00E9COLE don't"), u"\u00C9cole Don't");
}

} // namespace

} // namespace murmelix::test
