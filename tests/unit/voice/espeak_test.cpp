#include "companions/agent/voice/espeak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::string_view voices =
    "Pty Language       Age/Gender VoiceName          File                 Other Languages\n"
    " 5  cmn             --/M      Chinese_(Mandarin)  sit/cmn              (zh-cmn 5)(zh 5)\n"
    " 2  en-us           --/M      English_(America)  gmw/en-US            (en 3)\r\n"
    " 5  eu              --/M      Basque             eu                   \n"
    " 5  fr-fr           --/M      French_(France)    roa/fr               (fr 5)";

TEST(Espeak, ListsLanguagesWithTheirOtherNames) {
    EXPECT_THAT(listedLanguages(voices),
                testing::IsSupersetOf({"cmn", "zh-cmn", "zh", "en-us", "en", "eu", "fr-fr", "fr"}));
    EXPECT_FALSE(listedLanguages(voices).contains("Language"));
}

TEST(Espeak, DamagedListsHoldNothing) {
    for (const std::string_view text : {"", "\n", "\n\n\n", "x", "\n5", "\n (", "\n((((", "\n ( ( ("}) {
        listedLanguages(text);
    }
    EXPECT_THAT(listedLanguages("heading\n5"), ElementsAre());
    EXPECT_THAT(listedLanguages(""), ElementsAre());
}

TEST(Espeak, KnowsTheLanguages) {
    const std::pair<std::uint16_t, std::string_view> expected[] = {
        {1025, "ar"},    {1069, "eu"},  {1050, "hr"},  {1029, "cs"}, {1030, "da"}, {1043, "nl"}, {1033, "en-us"},
        {2057, "en-gb"}, {1035, "fi"},  {1036, "fr"},  {1031, "de"}, {1032, "el"}, {1037, "he"}, {1038, "hu"},
        {1040, "it"},    {1041, "ja"},  {1042, "ko"},  {1044, "nb"}, {1045, "pl"}, {2070, "pt"}, {1046, "pt-br"},
        {1048, "ro"},    {1049, "ru"},  {2052, "cmn"}, {1051, "sk"}, {1060, "sl"}, {3082, "es"}, {1053, "sv"},
        {1054, "th"},    {1028, "cmn"}, {1055, "tr"}};
    for (const auto& [id, name] : expected) {
        EXPECT_EQ(espeakLanguage(id), name) << id;
    }
    EXPECT_EQ(espeakLanguage(0x0C07), "de"); // Austria
    EXPECT_EQ(espeakLanguage(0), "");
    EXPECT_EQ(espeakLanguage(0xFFFF), "");
}

TEST(Espeak, ArgumentsFollowTheManner) {
    EXPECT_THAT(espeakArguments({}), ElementsAre("-v", "en-us", "-b", "1", "-z", "--stdin", "--stdout"));
    Manner manner;
    manner.language_id = 1031;
    manner.gender = 1;
    manner.speed = 10000;
    manner.pitch = 400;
    manner.emphasis = true;
    EXPECT_THAT(espeakArguments(manner), ElementsAre("-v", "de+f2", "-b", "1", "-z", "--stdin", "--stdout", "-s", "450",
                                                     "-p", "99", "-a", "160"));
    manner.gender = 2;
    manner.speed = 1;
    manner.pitch = 1;
    manner.emphasis = false;
    EXPECT_THAT(espeakArguments(manner),
                ElementsAre("-v", "de+m3", "-b", "1", "-z", "--stdin", "--stdout", "-s", "80", "-p", "0"));
    manner.delivery = Delivery::whisper;
    EXPECT_EQ(espeakArguments(manner)[1], "de+whisper");
}

TEST(Espeak, AVoiceThatIsNamedIsAVariant) {
    EXPECT_EQ(espeakArguments({.gender = 1, .voice = u"Man 5"})[1], "en-us+m5");
    EXPECT_EQ(espeakArguments({.gender = 2, .voice = u"Grandmother"})[1], "en-us+grandma");
    EXPECT_EQ(espeakArguments({.gender = 1, .voice = u"Zira; rm"})[1], "en-us+f2") << "of another engine";
    // Its pitch is measured from that of its kind: the middle of a woman's voice is far above a man's.
    EXPECT_EQ(espeakArguments({.pitch = 197, .voice = u"Woman 3"}).back(), "50");
    EXPECT_EQ(espeakArguments({.pitch = 105, .gender = 1, .voice = u"Man 2"}).back(), "50");
}

TEST(Espeak, WhatTheVoiceCannotReachIsSpokenSlowerToBeHeardFaster) {
    Manner manner;
    manner.pitch = 240; // the usual voice reaches about 170
    const auto arguments = espeakArguments(manner);
    ASSERT_EQ(arguments.size(), 11U);
    EXPECT_EQ(arguments[7], "-s");
    EXPECT_EQ(arguments[8], "127"); // 175 words a minute, heard 1.4 times as fast
    EXPECT_EQ(arguments[9], "-p");
    EXPECT_EQ(arguments[10], "99");
    manner.pitch = 100;
    EXPECT_EQ(espeakArguments(manner)[7], "-p") << "one that it reaches is spoken as it is heard";
}

TEST(Espeak, MonotoneIsSpokenWithoutARangeOfPitch) {
    EXPECT_EQ(espeakText(u"one", Delivery::monotone), "\0010Rone\n");
    EXPECT_EQ(espeakText(u"one", Delivery::whisper), "one\n");
}

TEST(Espeak, TextHoldsNoCommands) {
    EXPECT_EQ(espeakText(u"ä [[p]] \1x"), "\xC3\xA4 [ [p]]  x\n");
    EXPECT_EQ(espeakText(u"[[[["), "[ [ [ [\n");
}

class EspeakRun : public testing::Test {
  protected:
    std::vector<ProgramRun> runs;
    std::optional<std::vector<std::uint8_t>> answer;
    Espeak engine{[this](const ProgramRun& run, const std::stop_token&, std::string& error) {
        runs.push_back(run);
        if (run.arguments == std::vector<std::string>{"--voices"}) {
            return std::optional(std::vector<std::uint8_t>(voices.begin(), voices.end()));
        }
        if (!answer) {
            error = "broken";
        }
        return answer;
    }};
};

TEST_F(EspeakRun, SpeaksWhatIsListedAndAsksOnce) {
    EXPECT_TRUE(engine.hasVoice());
    EXPECT_TRUE(engine.speaks(1033));
    EXPECT_TRUE(engine.speaks(1036));
    EXPECT_TRUE(engine.speaks(1028));
    EXPECT_FALSE(engine.speaks(1031));
    EXPECT_FALSE(engine.speaks(0));
    EXPECT_EQ(runs.size(), 1U);
}

TEST_F(EspeakRun, ReturnsTheSound) {
    answer = writeWave(fakes::tone(100));
    std::string error;
    const auto wave = engine.synthesise(u"hello", {}, {}, error);
    ASSERT_TRUE(wave);
    EXPECT_EQ(wave->samples, fakes::tone(100).samples);
    EXPECT_EQ(runs.back().input, "hello\n");
}

TEST_F(EspeakRun, ASoundHeardFasterIsAsMuchShorter) {
    answer = writeWave(fakes::tone(300));
    std::string error;
    Manner high;
    high.pitch = 349; // an octave above the highest that the voice reaches
    const auto wave = engine.synthesise(u"hello", high, {}, error);
    ASSERT_TRUE(wave);
    EXPECT_NEAR(wave->milliseconds(), 150, 2);
    EXPECT_EQ(wave->rate, fakes::tone(300).rate);
}

TEST_F(EspeakRun, FailuresAreTold) {
    std::string error;
    EXPECT_FALSE(engine.synthesise(u"hello", {}, {}, error));
    EXPECT_EQ(error, "broken");
    answer = std::vector<std::uint8_t>{'g', 'a', 'r', 'b', 'a', 'g', 'e'};
    EXPECT_FALSE(engine.synthesise(u"hello", {}, {}, error));
    EXPECT_EQ(error, "this is not a wave file");
    Manner german;
    german.language_id = 1031;
    EXPECT_FALSE(engine.synthesise(u"hallo", german, {}, error));
    EXPECT_EQ(error, "the program has no voice for this language");
}

TEST(Espeak, AProgramThatIsMissingHasNoVoice) {
    Espeak engine([](const ProgramRun&, const std::stop_token&, std::string&) { return std::nullopt; });
    EXPECT_FALSE(engine.hasVoice());
    EXPECT_FALSE(engine.speaks(1033));
}

} // namespace
} // namespace agent::voice
