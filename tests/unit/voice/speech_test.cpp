#include "companions/agent/voice/speech.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

using acs::MouthShape;
using fakes::Call;
using fakes::ToneEngine;

struct Made {
    Speech speech;
    std::vector<Call> calls;
};

Made make(std::u16string_view text, bool engine = true, const Manner& manner = {}) {
    Made made;
    ToneEngine tones(made.calls);
    std::optional<Speech> speech = makeSpeech(readTags(text, manner, {}), engine ? &tones : nullptr, {});
    EXPECT_TRUE(speech.has_value());
    if (speech) {
        made.speech = std::move(*speech);
    }
    return made;
}

std::vector<std::u16string> wordsOf(const Speech& speech) {
    std::vector<std::u16string> words;
    for (const Word& word : speech.words) {
        words.push_back(speech.shown.substr(word.begin, word.end - word.begin));
    }
    return words;
}

void expectInOrder(const Speech& speech) {
    std::uint32_t last = 0;
    std::size_t end = 0;
    for (const Word& word : speech.words) {
        EXPECT_GE(word.at, last);
        EXPECT_LE(word.at, speech.sound.milliseconds());
        EXPECT_GE(word.begin, end);
        EXPECT_LT(word.begin, word.end);
        EXPECT_LE(word.end, speech.shown.size());
        last = word.at;
        end = word.end;
    }
    last = 0;
    for (const MouthMove& move : speech.mouth) {
        EXPECT_GE(move.at, last);
        last = move.at;
    }
    EXPECT_LE(last, speech.sound.milliseconds());
    ASSERT_FALSE(speech.mouth.empty());
    EXPECT_EQ(speech.mouth.back().shape, MouthShape::closed);
}

TEST(Speech, WordsShareTheSoundByTheirLength) {
    const Speech speech = make(u"ab abcdefgh ab").speech;
    EXPECT_EQ(wordsOf(speech), (std::vector<std::u16string>{u"ab", u"abcdefgh", u"ab"}));
    expectInOrder(speech);
    const std::uint32_t first = speech.words[1].at - speech.words[0].at,
                        second = speech.words[2].at - speech.words[1].at;
    EXPECT_NEAR(second, first * 3, 5);
    // 1.4 s of tone; 50 ms of silence before it, of which 20 are kept.
    EXPECT_EQ(speech.words[0].at, 20U);
    EXPECT_NEAR(speech.words[2].at, 20 + 1400 * 12 / 15, 5);
}

TEST(Speech, SilenceAroundASoundIsCutShort) {
    EXPECT_NEAR(make(u"abcd").speech.sound.milliseconds(), 400 + 20 + 50, 2);
}

TEST(Speech, AllOfTheShownTextIsInWords) {
    for (const bool engine : {true, false}) {
        std::u16string text;
        for (int i = 0; i < 3000; ++i) {
            text += u"word ";
        }
        const Speech speech = make(text, engine).speech;
        EXPECT_EQ(speech.shown, text);
        EXPECT_EQ(speech.words.size(), 3000U);
        expectInOrder(speech);
    }
}

TEST(Speech, AMegabyteIsHeardInPartAndShownWhole) {
    const std::u16string text(std::size_t{1} << 20, u'x');
    const Made made = make(text);
    EXPECT_EQ(made.speech.shown.size(), text.size());
    ASSERT_EQ(made.calls.size(), 1U);
    EXPECT_EQ(made.calls[0].text.size(), 4000U);
    EXPECT_LE(made.speech.sound.milliseconds(), 5U * 60 * 1000);
}

TEST(Speech, AMegabyteOfTagsIsBounded) {
    for (const std::u16string_view unit :
         {u"\\Pau=2550\\", u"\\Emp\\a ", u"\\Spd=100\\a\\Rst\\b", u"\\Mrk=1\\", u"\\Map=\"\"=\"a\"\\"}) {
        std::u16string text;
        while (text.size() < (1U << 20)) {
            text += unit;
        }
        const Made made = make(text);
        EXPECT_LE(made.speech.sound.milliseconds(), 5U * 60 * 1000);
        EXPECT_LE(made.calls.size(), 64U);
        expectInOrder(made.speech);
    }
}

TEST(Speech, WithoutAnEngineItIsSilentAsLongAsReadingTakes) {
    const Speech speech = make(u"These words have about seven of units", false).speech;
    // 37 units and the last word's blank, 180 words of six units a minute.
    EXPECT_NEAR(speech.sound.milliseconds(), 38 * 60000 / (180 * 6), 2);
    EXPECT_EQ(audiblePart(speech.sound).second, 0U);
    expectInOrder(speech);
    EXPECT_GT(speech.mouth.size(), 14U);
}

TEST(Speech, AFasterReaderReadsFaster) {
    Manner fast;
    fast.speed = 360;
    EXPECT_NEAR(make(u"one two three four", false, fast).speech.sound.milliseconds() * 2.0,
                make(u"one two three four", false).speech.sound.milliseconds(), 3);
}

TEST(Speech, ALanguageTheEngineLacksIsSilent) {
    Manner german;
    german.language_id = 0x0407;
    const Made made = make(u"Guten Tag", true, german);
    EXPECT_TRUE(made.calls.empty());
    EXPECT_EQ(audiblePart(made.speech.sound).second, 0U);
    EXPECT_GT(made.speech.sound.milliseconds(), 300U);
}

class FailingEngine : public Engine {
  public:
    explicit FailingEngine(std::optional<Wave> wave) : wave_(std::move(wave)) {}
    bool speaks(std::uint16_t) const override { return true; }
    std::optional<Wave> synthesise(const std::u16string&, const Manner&, const std::stop_token&,
                                   std::string& error) override {
        error = "failed";
        return wave_;
    }

  private:
    std::optional<Wave> wave_;
};

TEST(Speech, AnEngineThatFailsLeavesSilenceWithTheText) {
    for (const std::optional<Wave>& wave :
         {std::optional<Wave>{}, std::optional<Wave>{Wave{0, {1, 2, 3}}},
          std::optional<Wave>{Wave{4000000000U, {1, 2, 3}}}, std::optional<Wave>{Wave{}}}) {
        FailingEngine engine(wave);
        const std::optional<Speech> speech = makeSpeech(readTags(u"Hello there", {}, {}), &engine, {});
        ASSERT_TRUE(speech);
        EXPECT_EQ(speech->shown, u"Hello there");
        EXPECT_EQ(speech->words.size(), 2U);
        EXPECT_GT(speech->sound.milliseconds(), 300U);
        expectInOrder(*speech);
    }
}

TEST(Speech, VolumeScalesTheSoundAndNotTheMouth) {
    const Speech loud = make(u"abcd").speech, soft = make(u"\\Vol=32768\\abcd").speech,
                 mute = make(u"\\Vol=0\\abcd").speech;
    const auto peak = [](const Speech& speech) {
        return *std::max_element(speech.sound.samples.begin(), speech.sound.samples.end());
    };
    EXPECT_NEAR(peak(loud), 8000, 20);
    EXPECT_NEAR(peak(soft), 4000, 20);
    EXPECT_EQ(peak(mute), 0);
    EXPECT_EQ(mute.mouth.size(), loud.mouth.size());
    EXPECT_EQ(mute.sound.samples.size(), loud.sound.samples.size());
}

TEST(Speech, PausesAndBookmarksHaveTheirPlace) {
    const Speech speech = make(u"\\Mrk=1\\abcd\\Mrk=2\\\\Pau=1000\\\\Mrk=3\\ef\\Mrk=4\\").speech;
    ASSERT_EQ(speech.bookmarks.size(), 4U);
    EXPECT_EQ(speech.bookmarks[0].at, 0U);
    EXPECT_NEAR(speech.bookmarks[1].at, 470, 2);
    EXPECT_NEAR(speech.bookmarks[2].at, 1470, 2);
    EXPECT_EQ(speech.bookmarks[3].at, speech.sound.milliseconds());
    EXPECT_EQ(speech.bookmarks[3].id, 4);
}

TEST(Speech, WhatIsShownForAnotherTextIsTimedByItsSound) {
    const Made made = make(u"\\Map=\"one long spoken text\"=\"a b\"\\ c");
    EXPECT_EQ(made.calls.at(0).text, u"one long spoken text");
    EXPECT_EQ(wordsOf(made.speech), (std::vector<std::u16string>{u"a", u"b", u"c"}));
    EXPECT_NEAR(made.speech.words[1].at, 20 + 1000, 5);
    expectInOrder(made.speech);
}

TEST(Speech, BlanksAloneAskNoEngine) {
    const Made made = make(u"  \t\r\n ");
    EXPECT_TRUE(made.calls.empty());
    EXPECT_EQ(made.speech.sound.milliseconds(), 0U);
    EXPECT_EQ(made.speech.shown, u"  \t\r\n ");
}

TEST(Speech, EnginesGetNoControlsAndNoBrokenPairs) {
    const std::u16string text{u'a',
                              u'\0',
                              u'\1',
                              u'b',
                              char16_t{0xD83D},
                              char16_t{0xDE00},
                              char16_t{0xD83D},
                              u'c',
                              char16_t{0xDE00},
                              char16_t{0x9F},
                              char16_t{0xFFFF}};
    const std::u16string given{u'a', u' ', u' ', u'b', char16_t{0xD83D}, char16_t{0xDE00}, u' ',
                               u'c', u' ', u' ', u' '};
    EXPECT_EQ(speakable(text), given);
    EXPECT_EQ(make(text).calls.at(0).text, given);
    EXPECT_EQ(make(text).speech.shown, text);
}

TEST(Speech, ALongTextIsNotCutInACharacter) {
    std::u16string text(3999, u'x');
    text += u"\xD83D\xDE00 and more";
    const Made made = make(text);
    EXPECT_EQ(made.calls.at(0).text, std::u16string(3999, u'x'));
}

TEST(Speech, IdeographsAreWords) {
    EXPECT_EQ(splitWords(u"你好 ok吗").size(), 4U);
    EXPECT_EQ(splitWords(u"  a\u3000b ").size(), 2U);
}

TEST(Speech, StoppedIsNothing) {
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(makeSpeech(readTags(u"a", {}, {}), nullptr, stop.get_token()).has_value());
}

} // namespace
} // namespace agent::voice
