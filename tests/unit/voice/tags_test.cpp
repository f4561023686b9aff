#include "companions/agent/voice/tags.h"

#include <gtest/gtest.h>

namespace agent::voice {
namespace {

Script read(std::u16string_view text, std::u16string_view last = {}) {
    return readTags(text, Manner{}, last);
}

const Piece& only(const Script& script) {
    EXPECT_EQ(script.pieces.size(), 1U);
    return script.pieces.at(0);
}

TEST(Tags, PlainTextIsOnePiece) {
    const Script script = read(u"Hello there, you.");
    EXPECT_EQ(script.shown, u"Hello there, you.");
    EXPECT_EQ(only(script).spoken, u"Hello there, you.");
    EXPECT_EQ(only(script).begin, 0U);
    EXPECT_EQ(only(script).end, 17U);
}

TEST(Tags, EmptyTextHasNoPieces) {
    EXPECT_TRUE(read(u"").pieces.empty());
    EXPECT_TRUE(read(u"").shown.empty());
}

TEST(Tags, ChrChangesTheDelivery) {
    const Script script = read(u"\\Chr=\"Whisper\"\\one \\chr=\"Monotone\"\\two \\CHR=\"Normal\"\\three");
    EXPECT_EQ(script.shown, u"one two three");
    ASSERT_EQ(script.pieces.size(), 3U);
    EXPECT_EQ(script.pieces[0].manner.delivery, Delivery::whisper);
    EXPECT_EQ(script.pieces[1].manner.delivery, Delivery::monotone);
    EXPECT_EQ(script.pieces[2].manner.delivery, Delivery::normal);
}

TEST(Tags, CtxIsNotShown) {
    EXPECT_EQ(read(u"\\Ctx=\"Address\"\\12 High St").shown, u"12 High St");
    EXPECT_EQ(read(u"\\Ctx=E-mail\\a@b.c").shown, u"a@b.c");
}

TEST(Tags, VctChangesNothingAndIsNotShown) {
    const Script script = read(u"one \\Vct=\"Mary\"\\two \\vct=Sam\\three");
    EXPECT_EQ(script.shown, u"one two three");
    EXPECT_EQ(only(script).spoken, u"one two three");
}

TEST(Tags, EmpStressesTheNextWordAlone) {
    const Script script = read(u"I \\Emp\\ really mean it");
    EXPECT_EQ(script.shown, u"I  really mean it");
    ASSERT_EQ(script.pieces.size(), 3U);
    EXPECT_EQ(script.pieces[1].spoken, u"really");
    EXPECT_TRUE(script.pieces[1].manner.emphasis);
    EXPECT_FALSE(script.pieces[0].manner.emphasis);
    EXPECT_FALSE(script.pieces[2].manner.emphasis);
    const Script mapped = read(u"\\Emp\\\\Map=\"too lay\"=\"tuile\"\\ is it");
    ASSERT_EQ(mapped.pieces.size(), 2U);
    EXPECT_TRUE(mapped.pieces[0].manner.emphasis);
    EXPECT_FALSE(mapped.pieces[1].manner.emphasis);
}

TEST(Tags, LstRepeatsTheLastText) {
    const Script first = read(u"Hello \\Spd=200\\you");
    const Script second = read(u"\\Lst\\", first.remembered);
    EXPECT_EQ(second.shown, u"Hello you");
    EXPECT_EQ(second.pieces.at(1).manner.speed, 200U);
    EXPECT_EQ(read(u"\\lst\\", second.remembered).shown, u"Hello you");
}

TEST(Tags, LstDoesNotMakeTextsGrow) {
    std::u16string last = u"ab";
    for (int i = 0; i < 100; ++i) {
        last = read(u"\\Lst\\\\Lst\\x\\Lst\\", last).remembered;
    }
    EXPECT_EQ(last, u"x");
    EXPECT_EQ(read(u"\\Lst\\\\Lst\\x", u"a\\Lst\\b").shown, u"abx");
}

TEST(Tags, LstWithNothingBeforeIsNothing) {
    EXPECT_EQ(read(u"\\Lst\\").shown, u"");
}

TEST(Tags, MapSpeaksOneAndShowsTheOther) {
    const Script script = read(u"It is \\Map=\"too lay\"=\"tuile\"\\!");
    EXPECT_EQ(script.shown, u"It is tuile!");
    ASSERT_EQ(script.pieces.size(), 3U);
    EXPECT_TRUE(script.pieces[1].mapped);
    EXPECT_EQ(script.pieces[1].spoken, u"too lay");
    EXPECT_EQ(script.pieces[1].begin, 6U);
    EXPECT_EQ(script.pieces[1].end, 11U);
    EXPECT_EQ(script.pieces[2].spoken, u"!");
}

TEST(Tags, MapMayHoldBackslashesAndNothing) {
    EXPECT_EQ(read(u"\\Map=\"see\"=\"C:\\x\\\"\\").shown, u"C:\\x\\");
    EXPECT_EQ(read(u"\\Map=\"\"=\"shown\"\\").shown, u"shown");
    EXPECT_EQ(only(read(u"\\Map=\"heard\"=\"\"\\")).spoken, u"heard");
}

TEST(Tags, MrkIsABookmark) {
    const Script script = read(u"a\\Mrk=5\\b\\mrk=-7\\");
    EXPECT_EQ(script.shown, u"ab");
    ASSERT_EQ(script.pieces.size(), 4U);
    EXPECT_EQ(script.pieces[1].kind, Piece::Kind::bookmark);
    EXPECT_EQ(script.pieces[1].bookmark, 5);
    EXPECT_EQ(script.pieces[3].bookmark, -7);
}

TEST(Tags, PauStaysWithinItsBounds) {
    EXPECT_EQ(only(read(u"\\Pau=500\\")).pause, 500U);
    EXPECT_EQ(only(read(u"\\Pau=0\\")).pause, 10U);
    EXPECT_EQ(only(read(u"\\Pau=9\\")).pause, 10U);
    EXPECT_EQ(only(read(u"\\Pau=2550\\")).pause, 2550U);
    EXPECT_EQ(only(read(u"\\Pau=2551\\")).pause, 2550U);
    EXPECT_EQ(only(read(u"\\Pau=-5\\")).pause, 10U);
    EXPECT_EQ(only(read(u"\\Pau=99999999999999999999999999\\")).pause, 2550U);
}

TEST(Tags, PitSpdVolChangeWhatFollows) {
    const Script script = read(u"a\\Pit=150\\b\\Spd=120\\c\\Vol=100\\d");
    ASSERT_EQ(script.pieces.size(), 4U);
    EXPECT_EQ(script.pieces[0].manner.pitch, 0);
    EXPECT_EQ(script.pieces[1].manner.pitch, 150);
    EXPECT_EQ(script.pieces[2].manner.speed, 120U);
    EXPECT_EQ(script.pieces[3].volume, 100);
    EXPECT_EQ(script.pieces[2].volume, 65535);
}

TEST(Tags, NumbersAreClamped) {
    EXPECT_EQ(only(read(u"\\Pit=1\\a")).manner.pitch, 50);
    EXPECT_EQ(only(read(u"\\Pit=99999\\a")).manner.pitch, 400);
    EXPECT_EQ(only(read(u"\\Spd=1\\a")).manner.speed, 50U);
    EXPECT_EQ(only(read(u"\\Spd=9999999999\\a")).manner.speed, 450U);
    EXPECT_EQ(only(read(u"\\Vol=65536\\a")).volume, 65535);
    EXPECT_EQ(only(read(u"\\Vol=-1\\a")).volume, 0);
    EXPECT_EQ(only(read(u"\\Mrk=99999999999\\")).bookmark, INT32_MAX);
    EXPECT_EQ(only(read(u"\\Mrk=-99999999999\\")).bookmark, INT32_MIN);
}

TEST(Tags, RstPutsEverythingBack) {
    Manner usual;
    usual.speed = 170;
    const Script script = readTags(u"\\Spd=300\\\\Vol=0\\\\Chr=\"Whisper\"\\a\\Rst\\b", usual, {});
    ASSERT_EQ(script.pieces.size(), 2U);
    EXPECT_EQ(script.pieces[0].manner.speed, 300U);
    EXPECT_EQ(script.pieces[1].manner, usual);
    EXPECT_EQ(script.pieces[1].volume, 65535);
}

TEST(Tags, WhatIsNotATagIsText) {
    for (const std::u16string_view text : {u"\\",
                                           u"\\\\",
                                           u"a\\b",
                                           u"\\\\server\\share",
                                           u"C:\\Maps\\x",
                                           u"\\Foo\\",
                                           u"\\Pau\\",
                                           u"\\Pau=\\",
                                           u"\\Pau=x\\",
                                           u"\\Pau=5",
                                           u"\\Pau=5x\\",
                                           u"\\Pau=1.5\\",
                                           u"\\Emp",
                                           u"\\Emp=1\\",
                                           u"\\Map=\"a\"\\",
                                           u"\\Map=\"a\"=\"b\"",
                                           u"\\Map=\"a",
                                           u"\\Chr=\\",
                                           u"\\Chr=\"Whisper\"",
                                           u"\\Rst \\",
                                           u"\\ Rst\\",
                                           u"\\Em"}) {
        const Script script = read(text);
        EXPECT_EQ(script.shown, text);
        EXPECT_EQ(only(script).spoken, text);
    }
}

TEST(Tags, ABackslashBeforeATagIsText) {
    const Script script = read(u"\\\\Mrk=1\\");
    EXPECT_EQ(script.shown, u"\\");
    ASSERT_EQ(script.pieces.size(), 2U);
    EXPECT_EQ(script.pieces[1].bookmark, 1);
}

TEST(Tags, HostileUnitsStayInTheShownText) {
    const std::u16string text{u'a', u'\0', u'\\', char16_t{0xD800}, u'\\', u'E',
                              u'm', u'p',  u'\\', char16_t{0xDC00}, u'b'};
    const std::u16string shown{u'a', u'\0', u'\\', char16_t{0xD800}, char16_t{0xDC00}, u'b'};
    EXPECT_EQ(read(text).shown, shown);
}

// A reading that looks from every backslash to the text's end would take minutes for these.
TEST(Tags, AMegabyteOfAnythingIsReadInProportion) {
    for (const std::u16string_view unit : {u"\\", u"\\Map=\"", u"\\Map=\"\"=\"", u"\\Mrk=1", u"\\Mrk=1\\", u"\\Lst\\",
                                           u"|", u"\\Chr=", u"\\Emp\\ a", u"\"", u"\\Map=\"a\"=\"b\"\\", u"\\Rst\\x"}) {
        std::u16string text;
        while (text.size() < (1U << 20)) {
            text += unit;
        }
        const Script script = read(text, text);
        std::size_t end = 0;
        for (const Piece& piece : script.pieces) {
            if (piece.kind != Piece::Kind::words) {
                continue;
            }
            EXPECT_EQ(piece.begin, end);
            end = piece.end;
        }
        EXPECT_EQ(end, script.shown.size());
    }
}

TEST(Alternatives, EachIsChosen) {
    EXPECT_EQ(chooseAlternative(u"one|two|three", 0), u"one");
    EXPECT_EQ(chooseAlternative(u"one|two|three", 1), u"two");
    EXPECT_EQ(chooseAlternative(u"one|two|three", 2), u"three");
    EXPECT_EQ(chooseAlternative(u"one|two|three", 3), u"one");
}

TEST(Alternatives, EmptyOnesAreNoChoice) {
    for (std::uint64_t random = 0; random < 5; ++random) {
        EXPECT_EQ(chooseAlternative(u":|", random), u":");
        EXPECT_EQ(chooseAlternative(u"||a||", random), u"a");
        EXPECT_EQ(chooseAlternative(u"|", random), u"");
        EXPECT_EQ(chooseAlternative(u"", random), u"");
        EXPECT_EQ(chooseAlternative(u"whole", random), u"whole");
    }
}

TEST(Tags, BookmarksBeyondAllMeasureAreLeftOut) {
    std::u16string text = u"begin ";
    for (int i = 0; i < 71'000; ++i) {
        text += u"\\Mrk=1\\";
    }
    const Script script = readTags(text + u"end", {}, {});
    EXPECT_EQ(std::ranges::count(script.pieces, Piece::Kind::bookmark, &Piece::kind), 1000);
    EXPECT_EQ(script.shown, u"begin end");
}

} // namespace
} // namespace agent::voice
