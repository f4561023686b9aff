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

TEST(Text, DamagedUtf8BecomesReplacementCharacters) {
    EXPECT_EQ(fromUtf8("a\xC3\xA9\xF0\x9F\x98\x80"), u"a\u00E9\U0001F600");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xE0\x9F\xBF"), u"\uFFFD\uFFFD\uFFFD"); // longer than it need be
    EXPECT_EQ(fromUtf8("\xF0\x8F\xBF\xBF"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD"); // a surrogate
    EXPECT_EQ(fromUtf8("\xF4\x90\x80\x80x"), u"\uFFFD\uFFFD\uFFFD\uFFFDx");
    EXPECT_EQ(fromUtf8("\xE2\x82x"), u"\uFFFD\uFFFDx");
}

TEST(Text, UnpairedSurrogatesBecomeReplacementCharactersInUtf8) {
    EXPECT_EQ(toUtf8(u"a\u00E9\U0001F600"), "a\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(std::u16string{char16_t{0xD83D}}), "\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(std::u16string{char16_t{0xDE00}, u'a'}), "\xEF\xBF\xBD"
                                                              "a");
}

TEST(Text, EveryOccurrenceIsReplacedFromTheLeft) {
    EXPECT_EQ(replaceAll(u"aaa", u"aa", u"b"), u"ba");
    EXPECT_EQ(replaceAll(u"aXAx", u"x", u"xx", LetterCase::ignored), u"axxAxx");
    EXPECT_EQ(replaceAll(u"abc", u"", u"x"), u"abc");
}

TEST(Text, TrimCutsBlanksAlone) {
    EXPECT_EQ(trim(u"  a b  "), u"a b");
    EXPECT_EQ(trim(u" \t\r\n "), u"\t\r\n");
    EXPECT_EQ(trim(u"   "), u"");
}

TEST(Text, NumberAtTheStartIsRead) {
    EXPECT_EQ(leadingNumber(u" 12abc"), 12);
    EXPECT_EQ(leadingNumber(u"-1.5e1"), -15);
    EXPECT_EQ(leadingNumber(u"abc"), 0);
    EXPECT_EQ(leadingNumber(u""), 0);
}

TEST(KeyedCollection, KeepsOrderAndRefusesWhatIsNotThere) {
    KeyedCollection<int> numbers;
    numbers.Add(1, u"one");
    numbers.Add(2, u"two");
    EXPECT_THROW(numbers.Add(3, u"one"), CollectionError);
    EXPECT_THROW(numbers.Item(u"ONE"), CollectionError);
    EXPECT_THROW(numbers.Item(0), CollectionError);
    EXPECT_THROW(numbers.Item(3), CollectionError);
    EXPECT_THROW(numbers.Remove(u"three"), CollectionError);
    numbers.Remove(u"one");
    EXPECT_EQ(numbers.position(u"two"), 1u);
    numbers.Remove(1);
    EXPECT_EQ(numbers.Count(), 0u);
}

TEST(RemoveBracketedText, CutsEveryGroupAndTrims) {
    EXPECT_EQ(RemoveBracketedText(u"Ann - Online (3 Unread)"), u"Ann - Online");
    EXPECT_EQ(RemoveBracketedText(u"((a)b) c"), u"b) c");
    EXPECT_EQ(RemoveBracketedText(u"a)(b"), u"a)(b");
    EXPECT_EQ(RemoveBracketedText(u"a) b (c) d"), u"a) b  d");
    EXPECT_EQ(RemoveBracketedText(u" no group "), u" no group ");
    EXPECT_EQ(RemoveBracketedText(u" (a) b (c) "), u"b");
}

TEST(Text, ProperCaseRaisesTheFirstLetterOfEachWord) {
    EXPECT_EQ(toProperCase(u"HELLO world"), u"Hello World");
    EXPECT_EQ(toProperCase(u"a\tb\nc-d"), u"A\tB\nC-d");
    EXPECT_EQ(toProperCase(u"\u00E9COLE don't"), u"\u00C9cole Don't");
}

TEST(Text, LettersOfEveryScriptWithCasesHaveBoth) {
    const std::vector<std::pair<std::u16string, std::u16string>> texts{
        {u"HELLO \u00C9COLE", u"hello \u00E9cole"},
        {u"\u0218I \u021AARA", u"\u0219i \u021Bara"},                                   // Romanian
        {u"TI\u1EBENG VI\u1EC6T \u01A0 \u01AF", u"ti\u1EBFng vi\u1EC7t \u01A1 \u01B0"}, // Vietnamese
        {u"\u054D\u0561\u0575", u"\u057D\u0561\u0575"},                                 // Armenian
        {u"\uFF28\uFF29", u"\uFF48\uFF49"},                                             // full-width
        {u"\u03A9\u0386\u1F08", u"\u03C9\u03AC\u1F00"},                                 // Greek
        {u"\u0416\u0401\u0490\u0492", u"\u0436\u0451\u0491\u0493"},                     // Cyrillic
        {u"\u2C00\u2C80\uA640", u"\u2C30\u2C81\uA641"},
    };
    for (const auto& [upper, lower] : texts) {
        EXPECT_EQ(toLower(std::u16string_view(upper)), lower);
        EXPECT_TRUE(sameText(upper, lower, LetterCase::ignored));
    }
    EXPECT_EQ(toProperCase(u"\u0218I \u021AARA"), u"\u0218i \u021Aara");
    EXPECT_EQ(toProperCase(u"\u0561\u0562"), u"\u0531\u0562");
}

TEST(Text, LettersWithoutACaseOfTheirOwnAreLeftAlone) {
    for (const char16_t unit :
         {u'\u0130', u'\u0131', u'\u00DF', u'\u1E9E', u'\u017F', u'\u212A', u'\u00B5', u'\u00D7', u'\u00F7', u'\u10D0',
          u'\u1C90', u'\u10A0', u'\u2D00', u'\u4E00', u'\u0000', u'\uFFFF'}) {
        EXPECT_EQ(toLower(unit), unit) << std::hex << static_cast<unsigned>(unit);
        EXPECT_EQ(toUpper(unit), unit) << std::hex << static_cast<unsigned>(unit);
    }
}

TEST(Text, CaseOfEveryUnitLeadsBack) {
    int pairs = 0;
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const auto letter = static_cast<char16_t>(unit);
        EXPECT_EQ(toLower(toLower(letter)), toLower(letter)) << std::hex << unit;
        EXPECT_EQ(toUpper(toUpper(letter)), toUpper(letter)) << std::hex << unit;
        if (toLower(letter) != letter) {
            EXPECT_EQ(toUpper(toLower(letter)), letter) << std::hex << unit;
            ++pairs;
        }
    }
    EXPECT_GT(pairs, 900);
}

} // namespace

} // namespace murmelix::test
