// The speech program of this machine, really started.
#include <algorithm>
#include <cmath>
#include <future>
#include <set>

#include <gtest/gtest.h>

#include "companions/agent/voice/speech.h"
#include "companions/agent/voice/win32/engines.h"

namespace agent::voice {
namespace {

class EspeakTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(engine) << "espeak-ng is missing: install the package espeak-ng"; }
    std::optional<Wave> say(const std::u16string& text, const Manner& manner = {}) {
        return engine->synthesise(text, manner, {}, error);
    }
    // How long what is heard of it lasts, in ms; 0 for silence.
    std::uint32_t audible(const std::u16string& text, const Manner& manner = {}) {
        const std::optional<Wave> wave = say(text, manner);
        EXPECT_TRUE(wave) << error;
        if (!wave) {
            return 0;
        }
        const auto [first, last] = audiblePart(*wave);
        return static_cast<std::uint32_t>((last - first) * 1000 / wave->rate);
    }

    // Of the voiced parts, in hertz, from the lowest; by how well the sound agrees with itself a period later.
    std::vector<double> pitches(const Manner& manner) {
        const auto wave = say(u"Nobody knows where the yellow lorry was going. Are you sure we may go on?", manner);
        EXPECT_TRUE(wave) << error;
        std::vector<double> found;
        if (!wave) {
            return found;
        }
        constexpr std::size_t length = 1024, step = 512;
        const std::size_t shortest = wave->rate / 450, longest = wave->rate / 50;
        for (std::size_t at = 0; at + length + longest < wave->samples.size(); at += step) {
            std::vector<double> agreement(longest + 1);
            double power = 0;
            for (std::size_t i = at; i < at + length; i += 4) {
                power += double{1} * wave->samples[i] * wave->samples[i];
            }
            for (std::size_t lag = shortest; lag <= longest; ++lag) {
                double together = 0, later = 0;
                for (std::size_t i = at; i < at + length; i += 4) {
                    together += double{1} * wave->samples[i] * wave->samples[i + lag];
                    later += double{1} * wave->samples[i + lag] * wave->samples[i + lag];
                }
                agreement[lag] = together / std::sqrt(std::max(1.0, power * later));
            }
            const double best = *std::max_element(agreement.begin(), agreement.end());
            if (4 * power / length < 400.0 * 400.0 || best < 0.8) {
                continue;
            }
            for (std::size_t lag = shortest + 1; lag < longest; ++lag) {
                if (agreement[lag] > 0.9 * best && agreement[lag] >= agreement[lag - 1] &&
                    agreement[lag] >= agreement[lag + 1]) {
                    found.push_back(static_cast<double>(wave->rate) / static_cast<double>(lag));
                    break;
                }
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    std::unique_ptr<Engine> engine = makeEspeak();
    std::string error;
};

TEST_F(EspeakTest, SaysHelloWorld) {
    const std::uint32_t ms = audible(u"Hello World");
    EXPECT_GE(ms, 300U);
    EXPECT_LE(ms, 3000U);
}

TEST_F(EspeakTest, IsHeardAtThePitchAskedFor) {
    for (const std::uint16_t gender : {std::uint16_t{1}, std::uint16_t{2}}) {
        for (const int hertz : {60, 100, 160, 240, 320}) {
            const auto heard = pitches({.pitch = static_cast<std::uint16_t>(hertz), .gender = gender});
            ASSERT_GT(heard.size(), 10U) << hertz;
            const double middle = heard[heard.size() / 2];
            EXPECT_NEAR(middle, hertz, hertz * 0.15) << "gender " << gender;
        }
    }
}

TEST_F(EspeakTest, LastsAsLongAtAnyPitch) {
    const std::uint32_t usual = audible(u"Where has the yellow lorry gone?");
    EXPECT_NEAR(audible(u"Where has the yellow lorry gone?", {.pitch = 240}), usual, usual * 0.2);
}

TEST_F(EspeakTest, MonotoneKeepsItsPitchAndAWhisperHasNone) {
    const auto spread = [](const std::vector<double>& heard) {
        return heard[heard.size() * 9 / 10] / heard[heard.size() / 10];
    };
    const auto usual = pitches({});
    const auto monotone = pitches({.delivery = Delivery::monotone});
    ASSERT_GT(usual.size(), 10U);
    ASSERT_GT(monotone.size(), 10U);
    EXPECT_GT(spread(usual), 1.15);
    EXPECT_LT(spread(monotone), 1.06);
    EXPECT_LT(pitches({.delivery = Delivery::whisper}).size(), usual.size() / 5);
}

TEST_F(EspeakTest, SpeaksItsLanguagesAndNoOthers) {
    for (const int language : {1033, 2057, 1031, 1036, 3082, 1040, 1049, 1041, 2052, 1028, 1025, 1037}) {
        EXPECT_TRUE(engine->speaks(static_cast<std::uint16_t>(language))) << language;
    }
    EXPECT_FALSE(engine->speaks(0));
    EXPECT_FALSE(engine->speaks(0xFFFF));
}

TEST_F(EspeakTest, SaysSomethingInEachOfThirtyOneLanguages) {
    const std::pair<std::uint16_t, const char16_t*> greetings[] = {
        {1025, u"صباح الخير"},     {1069, u"Egun on"},     {1050, u"Dobro jutro"},  {1029, u"Dobré ráno"},
        {1030, u"God morgen"},     {1043, u"Goedemorgen"}, {1033, u"Good morning"}, {2057, u"Good morning"},
        {1035, u"Hyvää huomenta"}, {1036, u"Bonjour"},     {1031, u"Guten Morgen"}, {1032, u"Καλημέρα"},
        {1037, u"בוקר טוב"},       {1038, u"Jó reggelt"},  {1040, u"Buongiorno"},   {1041, u"おはよう"},
        {1042, u"안녕하세요"},     {1044, u"God morgen"},  {1045, u"Dzień dobry"},  {2070, u"Bom dia"},
        {1046, u"Bom dia"},        {1048, u"Bună ziua"},   {1049, u"Доброе утро"},  {2052, u"早上好"},
        {1051, u"Dobré ráno"},     {1060, u"Dobro jutro"}, {3082, u"Buenos días"},  {1053, u"God morgon"},
        {1054, u"สวัสดี"},           {1028, u"早上好"},      {1055, u"Günaydın"}};
    EXPECT_EQ(std::size(greetings), 31U);
    std::set<std::vector<std::int16_t>> sounds;
    for (const auto& [language, words] : greetings) {
        const Manner manner{.language_id = language};
        EXPECT_TRUE(engine->speaks(language)) << language;
        EXPECT_GE(audible(words, manner), 250U) << language;
        sounds.insert(say(words, manner)->samples);
    }
    // One voice speaks both kinds of Chinese.
    EXPECT_EQ(sounds.size(), 30U);
}

TEST_F(EspeakTest, SaysGerman) {
    Manner german;
    german.language_id = 1031;
    const std::uint32_t ms = audible(u"Schöne Grüße aus Köln", german);
    EXPECT_GE(ms, 500U);
    EXPECT_LE(ms, 4000U);
    EXPECT_NE(say(u"Schöne Grüße aus Köln", german)->samples, say(u"Schöne Grüße aus Köln")->samples);
}

TEST_F(EspeakTest, SaysNumbersFasterWhenTold) {
    Manner fast;
    fast.speed = 400;
    EXPECT_LT(audible(u"one two three four five six", fast) * 3, audible(u"one two three four five six") * 2);
}

TEST_F(EspeakTest, VoicesDiffer) {
    Manner woman, man, whisper;
    woman.gender = 1;
    man.gender = 2;
    whisper.delivery = Delivery::whisper;
    const auto usual = say(u"hello")->samples;
    for (const Manner& manner : {woman, man, whisper}) {
        EXPECT_NE(say(u"hello", manner)->samples, usual);
    }
}

TEST_F(EspeakTest, HostileTextIsOnlyText) {
    for (const std::u16string& text :
         {std::u16string(u"\"quoted\" and 'single' $(reboot) `x` ; & | > out %PATH% \\"), std::u16string(u"--version"),
          std::u16string(u"-w out.wav"), std::u16string(u"line one\r\nline two\n\n\nline five"),
          std::u16string(u"<voice name=\"x\">markup</voice> <speak>"), std::u16string(u"phonemes [[h@loU]] here"),
          std::u16string(u"\1"
                         u"50S command \1 \1"
                         u"Y"),
          std::u16string{u'a', u'\0', u'b', char16_t{0xD800}, u' ', u'c'}, std::u16string(u"\U0001F600 smile"),
          std::u16string(u"שלום hello مرحبا")}) {
        EXPECT_GT(audible(text), 50U) << testing::PrintToString(text);
    }
}

TEST_F(EspeakTest, TextOfSignsAloneIsNoFailure) {
    EXPECT_TRUE(say(u"...")) << error;
}

TEST_F(EspeakTest, WhatSoundsForHoursIsRefused) {
    std::u16string text;
    while (text.size() < 100'000) {
        text += u"a ";
    }
    EXPECT_FALSE(say(text));
    EXPECT_EQ(error, "the program writes too much");
    EXPECT_GT(audible(u"still there"), 100U);
}

TEST_F(EspeakTest, AStopIsObeyed) {
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(engine->synthesise(u"hello", {}, stop.get_token(), error));
    EXPECT_GT(audible(u"hello"), 100U);
}

Speech spoken(const std::u16string& text) {
    std::promise<Speech> said;
    Service service(makeEngine());
    EXPECT_TRUE(service.available());
    service.order(text, {}, [&](Speech speech) { said.set_value(std::move(speech)); });
    std::future<Speech> answer = said.get_future();
    if (answer.wait_for(std::chrono::minutes(4)) == std::future_status::ready) {
        return answer.get();
    }
    ADD_FAILURE() << "nothing was said";
    return {};
}

TEST(EspeakService, SpeaksWithWordsAndMouth) {
    const Speech speech = spoken(u"Hello \\Mrk=3\\there, \\Pau=300\\my friend");
    EXPECT_EQ(speech.shown, u"Hello there, my friend");
    EXPECT_EQ(speech.words.size(), 4U);
    EXPECT_EQ(speech.bookmarks.size(), 1U);
    EXPECT_GT(speech.mouth.size(), 5U);
    EXPECT_GT(speech.sound.milliseconds(), 1000U);
    EXPECT_LT(speech.sound.milliseconds(), 6000U);
}

TEST(EspeakService, AHundredKilobytesAreShownWholeAndHeardInPart) {
    std::u16string text;
    while (text.size() < 100'000) {
        text += u"\"a -b 'c\n";
    }
    const Speech speech = spoken(text);
    EXPECT_EQ(speech.shown, text);
    EXPECT_EQ(speech.words.back().end, text.size() - 1);
    EXPECT_GT(audiblePart(speech.sound).second, 22050U * 60);
    EXPECT_LE(speech.sound.milliseconds(), 300'000U);
}

} // namespace
} // namespace agent::voice
