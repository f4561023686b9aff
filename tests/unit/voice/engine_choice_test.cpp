#include "companions/agent/voice/engine_choice.h"

#include <gtest/gtest.h>

namespace agent::voice {
namespace {

// Speaks one language, by a sound of so many samples.
class OneLanguage final : public Engine {
  public:
    OneLanguage(std::uint16_t language_id, std::size_t length, std::vector<std::u16string> voices = {})
        : language_id_(language_id), length_(length), voices_(std::move(voices)) {}
    bool speaks(std::uint16_t language_id) const override { return language_id == language_id_; }
    std::vector<std::u16string> voices(std::uint16_t) const override { return voices_; }
    std::optional<Wave> synthesise(const std::u16string&, const Manner&, const std::stop_token&,
                                   std::string&) override {
        return Wave{22050, std::vector<std::int16_t>(length_)};
    }

  private:
    std::uint16_t language_id_;
    std::size_t length_;
    std::vector<std::u16string> voices_;
};

TEST(EngineChoice, SpeaksEachLanguageByTheFirstEngineThatHasAVoiceForIt) {
    std::vector<std::unique_ptr<Engine>> engines;
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1033}, 1));
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1031}, 2));
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1031}, 3));
    EngineChoice choice(std::move(engines));
    const auto length = [&](std::uint16_t language_id) {
        std::string error;
        const auto wave = choice.synthesise(u"words", {.language_id = language_id}, {}, error);
        EXPECT_EQ(wave.has_value(), error.empty());
        return wave ? wave->samples.size() : 0;
    };
    EXPECT_EQ(length(1033), 1U);
    EXPECT_EQ(length(1031), 2U);
    EXPECT_EQ(length(1036), 0U);
    EXPECT_TRUE(choice.speaks(1031));
    EXPECT_FALSE(choice.speaks(1036));
}

TEST(EngineChoice, SpeaksByTheEngineThatHasTheVoice) {
    std::vector<std::unique_ptr<Engine>> engines;
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1033}, 1, std::vector<std::u16string>{u"Ann"}));
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1031}, 2, std::vector<std::u16string>{u"Bert"}));
    engines.push_back(std::make_unique<OneLanguage>(std::uint16_t{1033}, 3, std::vector<std::u16string>{u"Cleo"}));
    EngineChoice choice(std::move(engines));
    const auto length = [&](const std::u16string& voice) {
        std::string error;
        const auto wave = choice.synthesise(u"words", {.language_id = 1033, .voice = voice}, {}, error);
        return wave ? wave->samples.size() : 0;
    };
    EXPECT_EQ(choice.voices(1033), (std::vector<std::u16string>{u"Ann", u"Cleo"}));
    EXPECT_TRUE(choice.voices(1036).empty());
    EXPECT_EQ(length(u"Cleo"), 3U);
    EXPECT_EQ(length(u"Ann"), 1U);
    EXPECT_EQ(length(u"Bert"), 1U) << "which speaks another language";
    EXPECT_EQ(length(u"nobody"), 1U);
}

} // namespace
} // namespace agent::voice
