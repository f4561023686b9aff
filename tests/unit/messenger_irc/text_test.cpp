// Text of a line, and text into lines.
#include "companions/messenger/irc/text.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::irc {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

TEST(ReceivedText, IsUtf8) {
    EXPECT_EQ(decoded("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x82"), u"café € 😂");
}

TEST(ReceivedText, BytesThatAreNotUtf8AreWindows1252) {
    EXPECT_EQ(decoded("caf\xE9 \x80 \x93quoted\x94"), u"café € “quoted”");
    EXPECT_EQ(decoded("caf\xE9"), u"café");
    EXPECT_EQ(decoded("both: \xC3\xA9 \xE9"), u"both: é é");
    EXPECT_EQ(decoded("\x81\xFF"), u"\xFFFDÿ");
    EXPECT_EQ(decoded("\xC0\xAF"), u"À¯") << "an overlong form is none of UTF-8";
    EXPECT_EQ(decoded("\xED\xA0\x80"), u"í\u00A0€") << "nor is a surrogate";
    EXPECT_EQ(decoded("\xEF\xBF\xBD"), u"\xFFFD");
    EXPECT_EQ(decoded("cut \xF0\x9F\x98"), u"cut ðŸ˜");
}

TEST(ReceivedText, LosesItsFormatting) {
    EXPECT_EQ(plainText(u"\x02\x62old\x02 \x1Di\x1F\x75\x1E\x73\x11m\x16r\x0Fx"), u"bold iusmrx");
    EXPECT_EQ(plainText(u"\x03"s + u"4red \x03"s + u"12,01blue\x03 none"), u"red blue none");
    EXPECT_EQ(plainText(u"\x03"s + u"123 \x03"s + u"1,234 \x03"s + u"1,x \x03,1"), u"3 4 ,x ,1");
    EXPECT_EQ(plainText(u"\x04"s + u"FF0000red\x04"s + u"00ff00,0000FFx \x04"s + u"FF00 \x04"s + u"FF0000,00"),
              u"redx FF00 ,00");
    EXPECT_EQ(plainText(u"\x03"), u"");
}

TEST(ReceivedText, CannotPretend) {
    EXPECT_EQ(plainText(u"a\u202Eb\u2066c\u200Fd\u0001e\u007Ff\u0085g\0h"s), u"abcdefgh");
    EXPECT_EQ(plainText(u"so\u00ADft ze\u200Bro fil\u3164ler"), u"soft zero filler");
    EXPECT_EQ(plainText(u"a\tb\rc\nd\u2028e"), u"a b c d e");
    EXPECT_EQ(plainText(u"👩\u200D👧"), u"👩\u200D👧") << "joiners stay";
}

TEST(ReceivedText, PlacesMoveWithIt) {
    std::vector<std::size_t> places{0, 1, 3, 4, 6, 99};
    EXPECT_EQ(plainText(u"\x02\x61\x02\x62\x63\u202Ed", &places), u"abcd");
    EXPECT_THAT(places, ElementsAre(0, 0, 1, 2, 3, 4));
}

TEST(ReceivedNames, ShowWhatTheyHide) {
    EXPECT_EQ(plainName("ann\xE2\x80\xAE\x01\r\n\t", 50), u"ann\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD");
    EXPECT_EQ(plainName("a\xE2\x80\x8Bnn", 50), u"a\xFFFDnn");
    EXPECT_EQ(plainName("..\\..\\CON", 50), u"..\\..\\CON");
    EXPECT_EQ(plainName(std::string(1000, 'x'), 50), std::u16string(50, u'x'));
    EXPECT_EQ(plainName("ab\xF0\x9F\x98\x82", 3), u"ab") << "no half of a character";
}

TEST(Requests, AreInMarks) {
    const auto action = requestIn("\x01"
                                  "ACTION waves to all\x01");
    ASSERT_TRUE(action);
    EXPECT_EQ(action->command, "ACTION");
    EXPECT_EQ(action->argument, "waves to all");
    EXPECT_EQ(requestIn("\x01"
                        "ACTION waves")
                  ->argument,
              "waves");
    EXPECT_EQ(requestIn("\x01VERSION\x01")->command, "VERSION");
    EXPECT_EQ(requestIn("\x01VERSION\x01")->argument, "");
    EXPECT_EQ(requestIn("\x01")->command, "");
    EXPECT_FALSE(requestIn("ACTION"));
    EXPECT_FALSE(requestIn(""));
}

TEST(SentText, IsCutAtBlanks) {
    EXPECT_THAT(piecesOf(u"one two three four", 20), ElementsAre("one two three four"));
    EXPECT_THAT(piecesOf(u"one two three four five", 16), ElementsAre("one two three", "four five"));
    EXPECT_THAT(piecesOf(u"0123456789012345 x", 16), ElementsAre("0123456789012345", "x"));
}

TEST(SentText, IsCutBetweenCharacters) {
    EXPECT_THAT(piecesOf(u"01234567890123456789", 16), ElementsAre("0123456789012345", "6789"));
    EXPECT_THAT(piecesOf(u"😂😂😂😂😂", 18), ElementsAre("😂😂😂😂", "😂"));
    EXPECT_THAT(piecesOf(u"aaaaaaaaaaaaaae\u0301x", 16), ElementsAre("aaaaaaaaaaaaaa", "e\u0301x"));
    EXPECT_THAT(piecesOf(u"aaaaaaaa👍🏽x", 16), ElementsAre("aaaaaaaa👍🏽", "x"));
    EXPECT_THAT(piecesOf(u"aaaaaaaaaa👍🏽x", 16), ElementsAre("aaaaaaaaaa", "👍🏽x"));
    EXPECT_THAT(piecesOf(u"aaaaaa👩\u200D👧x", 16), ElementsAre("aaaaaa", "👩\u200D👧x"));
}

TEST(SentText, IsCutAtLineEnds) {
    EXPECT_THAT(piecesOf(u"one\r\ntwo\n\n  \rthree", 100), ElementsAre("one", "two", "three"));
    EXPECT_THAT(piecesOf(u"", 100), IsEmpty());
    EXPECT_THAT(piecesOf(u" \r\n ", 100), IsEmpty());
    EXPECT_THAT(piecesOf(u"  indented", 100), ElementsAre("  indented"));
}

TEST(SentText, OfAnyKindFits) {
    const std::u16string accents = u"e" + std::u16string(1000, u'\u0301');
    const std::u16string halves(1000, u'\xD83D');
    for (const std::u16string& text : {accents, halves, std::u16string(1000, u'\u200D'), std::u16string(1000, u' '),
                                       std::u16string(u" ") + std::u16string(1000, u'€')}) {
        std::string together;
        for (const std::string& piece : piecesOf(text, 16)) {
            EXPECT_LE(piece.size(), 16U);
            EXPECT_FALSE(piece.empty());
            together += piece;
        }
        const std::u16string all = murmelix::fromUtf8(together);
        EXPECT_EQ(murmelix::trim(all), murmelix::trim(murmelix::fromUtf8(murmelix::toUtf8(text))));
    }
}

} // namespace

} // namespace messenger_client::irc
