#include "companions/setup/voice_frm.h"

#include <gmock/gmock.h>

#include "companions/setup/setup.h"
#include "tests/unit/setup/machine.h"

namespace setup {
namespace {

using murmelix::ui::Key;
using testing::ElementsAre;
using Voice = VoiceFrm::Voice;

class VoiceFrmTest : public SetupTest {
  protected:
    static VoiceFrm::Sources sources(VoiceFrmTest& test) {
        VoiceFrm::Sources all;
        all.languages = {{1031, u"German"}, {1033, u"English (United States)"}};
        all.voices = [](std::uint16_t language) {
            return language == 1033 ? std::vector<Voice>{{u"Windows", u"Zoe"}, {u"espeak-ng", u"Max"}}
                                    : std::vector<Voice>{{u"espeak-ng", u"Max"}};
        };
        all.chosen = [&test](std::uint16_t language) { return test.chosen[language]; };
        all.choose = [&test](std::uint16_t language, const std::u16string& name) {
            test.chosen[language] = test.kept ? name : test.chosen[language];
            return test.kept;
        };
        all.listen = [&test](std::uint16_t language, const Voice& voice, Sample::Told tells) {
            test.listened.emplace_back(language, voice);
            test.told = std::move(tells);
        };
        return all;
    }
    static std::vector<std::u16string> rows(const VoiceFrm& form) {
        std::vector<std::u16string> all;
        for (int i = 0; i < form.VoicesList.ListCount(); ++i) {
            all.push_back(form.VoicesList.List(i));
        }
        return all;
    }

    std::map<std::uint16_t, std::u16string> chosen;
    bool kept = true;
    std::vector<std::pair<std::uint16_t, Voice>> listened;
    Sample::Told told;
};

TEST_F(VoiceFrmTest, ListsTheVoicesOfALanguageWithTheDefaultSelected) {
    chosen[1031] = u"Max";
    VoiceFrm form(sources(*this));
    form.Show();
    EXPECT_EQ(form.LanguageList.Text(), u"English (United States)");
    EXPECT_THAT(rows(form), ElementsAre(u"As each character was made (default)", u"Zoe, Windows", u"Max, espeak-ng"));
    EXPECT_EQ(form.VoicesList.ListIndex(), 0);
    EXPECT_TRUE(fakes::pick(form.LanguageList, 0));
    EXPECT_THAT(rows(form), ElementsAre(u"As each character was made", u"Max, espeak-ng (default)"));
    EXPECT_EQ(form.VoicesList.ListIndex(), 1);
    EXPECT_FALSE(form.UseButt.Enabled()) << "it is the default already";
}

TEST_F(VoiceFrmTest, ADefaultThatIsGoneIsNone) {
    chosen[1033] = u"Somebody";
    const VoiceFrm form(sources(*this));
    EXPECT_EQ(rows(form).front(), u"As each character was made (default)");
    EXPECT_EQ(form.VoicesList.ListIndex(), 0);
}

TEST_F(VoiceFrmTest, AVoiceIsChosenAndGivenUpAgain) {
    VoiceFrm form(sources(*this));
    form.Show();
    EXPECT_TRUE(fakes::pick(form.VoicesList, 1));
    EXPECT_TRUE(fakes::accelerator(form, u'u'));
    EXPECT_EQ(chosen[1033], u"Zoe");
    EXPECT_EQ(form.StateLbl.Caption(), u"English (United States) is spoken by Zoe from now on.");
    EXPECT_THAT(rows(form), ElementsAre(u"As each character was made", u"Zoe, Windows (default)", u"Max, espeak-ng"));
    EXPECT_EQ(form.VoicesList.ListIndex(), 1);
    EXPECT_FALSE(form.UseButt.Enabled());
    EXPECT_TRUE(form.VoicesList.Focused());
    EXPECT_TRUE(fakes::pick(form.VoicesList, 0));
    EXPECT_TRUE(fakes::click(form.UseButt));
    EXPECT_EQ(chosen[1033], u"");
    EXPECT_EQ(form.StateLbl.Caption(), u"English (United States) is spoken as each character was made.");
}

TEST_F(VoiceFrmTest, WhatCannotBeKeptIsSaid) {
    kept = false;
    VoiceFrm form(sources(*this));
    form.Show();
    fakes::pick(form.VoicesList, 1);
    EXPECT_TRUE(fakes::click(form.UseButt));
    EXPECT_EQ(form.StateLbl.Caption(), u"This cannot be kept: Windows does not let the settings be written.");
    EXPECT_EQ(rows(form).front(), u"As each character was made (default)");
    EXPECT_TRUE(form.UseButt.Enabled());
}

TEST_F(VoiceFrmTest, AVoiceIsListenedTo) {
    VoiceFrm form(sources(*this));
    form.Show();
    EXPECT_TRUE(fakes::accelerator(form, u'l'));
    EXPECT_TRUE(fakes::doubleClick(form.VoicesList, 2));
    EXPECT_THAT(listened, ElementsAre(std::pair(std::uint16_t{1033}, Voice{}),
                                      std::pair(std::uint16_t{1033}, Voice{u"espeak-ng", u"Max"})));
    EXPECT_EQ(form.StateLbl.Caption(), u"Max is about to speak…");
    told(Sample::State::speaking, {});
    EXPECT_EQ(form.StateLbl.Caption(), u"Max speaks…");
    told(Sample::State::heard, {});
    EXPECT_EQ(form.StateLbl.Caption(), u"Max has spoken.");
    told(Sample::State::failed, "no data");
    EXPECT_EQ(form.StateLbl.Caption(), u"Max cannot speak: no data");
    EXPECT_TRUE(chosen.empty() || chosen[1033].empty()) << "listening chooses nothing";
}

TEST_F(VoiceFrmTest, WithoutAnyVoiceItTellsHowToGetOne) {
    VoiceFrm form({});
    form.Show();
    EXPECT_TRUE(form.IntroductionLbl.Caption().starts_with(u"There is no voice on this computer."));
    EXPECT_NE(form.IntroductionLbl.Caption().find(u"espeak-ng"), std::u16string::npos);
    EXPECT_FALSE(form.VoicesList.Visible());
    EXPECT_FALSE(form.ListenButt.Visible());
    EXPECT_FALSE(fakes::accelerator(form, u'l'));
    EXPECT_TRUE(fakes::key(form, Key::escape));
    EXPECT_EQ(fakes::screen().quit, exit_failed);
}

TEST_F(VoiceFrmTest, EverythingIsInsideAndItEndsWell) {
    for (const double resolution : {15.0, 7.5}) {
        fakes::screen() = {};
        fakes::screen().twips_per_pixel = resolution;
        VoiceFrm form(sources(*this));
        form.Show();
        for (const murmelix::ui::Control* control : form.Children()) {
            const auto& place = control->Bounds();
            EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.left + place.width <= form.ScaleWidth() &&
                        place.top + place.height <= form.ScaleHeight());
        }
        EXPECT_GE(form.VoicesList.Height(), 6 * form.VoicesList.ItemHeight());
        EXPECT_TRUE(fakes::key(form, Key::enter));
        EXPECT_EQ(fakes::screen().quit, exit_ready);
    }
}

} // namespace
} // namespace setup
