#include <gmock/gmock.h>

#include "companions/agent/settings/settings_frm.h"
#include "companions/agent/settings/settings_store.h"
#include "companions/agent/settings/tray.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace agent::settings {
namespace {

namespace fakes = murmelix::fakes;
namespace ui = murmelix::ui;
using testing::ElementsAre;
using ui::Key;

class SettingsTest : public testing::Test {
  protected:
    SettingsTest() {
        fakes::reset();
        fakes::screen() = {};
        form =
            std::make_unique<SettingsFrm>([this] { return facts; }, SettingsFrm::Switches{[this](bool on) {
                                                                                              facts.sound_enabled = on;
                                                                                              heard.push_back(on);
                                                                                          },
                                                                                          [this](bool on) {
                                                                                              facts.keep_on_screen = on;
                                                                                              kept.push_back(on);
                                                                                          },
                                                                                          [this](int percent) {
                                                                                              facts.size = percent;
                                                                                              sizes.push_back(percent);
                                                                                          }});
    }

    SettingsFrm::Facts facts{true, true, true};
    std::vector<bool> heard, kept;
    std::vector<int> sizes;
    std::unique_ptr<SettingsFrm> form;
};

TEST_F(SettingsTest, PagesAreKnownByTheirNames) {
    EXPECT_EQ(form->page(), u"Speech");
    EXPECT_TRUE(form->setPage(u"oUtPut"));
    EXPECT_EQ(form->page(), u"Output");
    EXPECT_FALSE(form->setPage(u"Other"));
    EXPECT_FALSE(form->setPage(u""));
    EXPECT_EQ(form->page(), u"Output");
    EXPECT_FALSE(form->Visible()) << "choosing a page shows nothing";
    form->present();
    EXPECT_TRUE(form->Visible());
    EXPECT_EQ(form->page(), u"Output");
    EXPECT_TRUE(form->setPage(u"Copyright"));
    EXPECT_TRUE(form->CopyrightLbl.reachable());
    EXPECT_FALSE(form->OutputLbl.reachable());
}

TEST_F(SettingsTest, SpeechPageTellsWhetherThereIsAVoice) {
    facts.voice = false;
    form->present();
    EXPECT_TRUE(form->SpeechLbl.Caption().starts_with(u"No text-to-speech voice is installed"));
    facts.voice = true; // found later
    form->setPage(u"Output");
    form->setPage(u"Speech");
    EXPECT_TRUE(form->SpeechLbl.Caption().starts_with(u"A text-to-speech voice is installed"));
}

TEST_F(SettingsTest, BoxSwitchesTheSound) {
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->SoundCheck.Value(), 1);
    EXPECT_TRUE(heard.empty()) << "what is so already is told to nobody";
    EXPECT_TRUE(fakes::click(form->SoundCheck));
    EXPECT_TRUE(fakes::accelerator(*form, u'p'));
    EXPECT_THAT(heard, ElementsAre(false, true));
}

TEST_F(SettingsTest, BoxLetsCharactersLeaveTheScreen) {
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->KeepOnScreenCheck.Value(), 1);
    EXPECT_TRUE(kept.empty());
    EXPECT_TRUE(fakes::click(form->KeepOnScreenCheck));
    EXPECT_TRUE(fakes::accelerator(*form, u'k'));
    EXPECT_THAT(kept, ElementsAre(false, true));
    EXPECT_TRUE(heard.empty());
}

TEST_F(SettingsTest, ListSetsTheSize) {
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->SizeList.Text(), u"100 %");
    EXPECT_TRUE(sizes.empty()) << "what is so already is told to nobody";
    EXPECT_EQ(form->SizeList.List(0), u"75 %");
    EXPECT_EQ(form->SizeList.List(form->SizeList.ListCount() - 1), u"300 %");
    EXPECT_TRUE(fakes::pick(form->SizeList, 5));
    EXPECT_THAT(sizes, ElementsAre(200));
    EXPECT_TRUE(fakes::accelerator(*form, u's'));
    EXPECT_TRUE(form->SizeList.Focused());
}

TEST_F(SettingsTest, ListHasTheSizeThatItIs) {
    facts.size = 110;
    form->present();
    EXPECT_EQ(form->SizeList.Text(), u"110 %");
    EXPECT_EQ(form->SizeList.List(2), u"110 %");
    facts.size = 75;
    form->present();
    EXPECT_EQ(form->SizeList.Text(), u"75 %");
    EXPECT_EQ(form->SizeList.List(2), u"125 %");
    EXPECT_TRUE(sizes.empty());
}

TEST_F(SettingsTest, BoxShowsWhatOthersHaveSet) {
    form->present();
    form->Hide();
    facts.sound_enabled = false;
    facts.keep_on_screen = false;
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->SoundCheck.Value(), 0);
    EXPECT_EQ(form->KeepOnScreenCheck.Value(), 0);
    EXPECT_TRUE(heard.empty());
    EXPECT_TRUE(kept.empty());
}

TEST_F(SettingsTest, BoxOfAPageBehindIsOutOfReach) {
    form->present();
    EXPECT_FALSE(fakes::click(form->SoundCheck));
    EXPECT_FALSE(fakes::accelerator(*form, u'p'));
    EXPECT_TRUE(heard.empty());
}

TEST_F(SettingsTest, ControlTabTurnsThePages) {
    form->present();
    const ui::Shortcut next{Key::tab, ui::control_key}, back{Key::tab, ui::control_key | ui::shift_key};
    std::vector<std::u16string> pages;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(fakes::key(*form, next));
        pages.push_back(form->page());
    }
    EXPECT_TRUE(fakes::key(*form, back));
    pages.push_back(form->page());
    EXPECT_THAT(pages, ElementsAre(u"Output", u"Copyright", u"Speech", u"Copyright"));
}

TEST_F(SettingsTest, TabGoesThroughWhatTakesTheKeyboard) {
    form->setPage(u"Output");
    form->present();
    EXPECT_TRUE(form->CloseButt.Focused());
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->Pages.Focused());
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->SoundCheck.Focused());
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->KeepOnScreenCheck.Focused());
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->SizeList.Focused());
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->CloseButt.Focused());
    fakes::key(*form, {Key::tab, ui::shift_key});
    EXPECT_TRUE(form->SizeList.Focused());
}

TEST_F(SettingsTest, EverythingThatClosesItKeepsItsPage) {
    const std::vector<std::function<void()>> ways{[&] { fakes::key(*form, Key::escape); },
                                                  [&] { fakes::key(*form, Key::enter); },
                                                  [&] { fakes::click(form->CloseButt); }, [&] { fakes::close(*form); }};
    form->setPage(u"Copyright");
    for (const auto& way : ways) {
        form->present();
        ASSERT_TRUE(form->Visible());
        way();
        EXPECT_FALSE(form->Visible());
        EXPECT_EQ(form->page(), u"Copyright");
    }
}

TEST_F(SettingsTest, PagesHoldWhatIsOnThemAtEveryResolution) {
    for (const double twips_per_pixel : {15.0, 7.5}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        form->onSettingsChange();
        for (const ui::TabPage* page : form->Pages.Pages()) {
            EXPECT_GT(page->Width(), 4000);
            for (const ui::Control* control : page->Children()) {
                EXPECT_GT(control->Height(), 0);
                EXPECT_LE(control->Left() + control->Width(), page->Width());
                EXPECT_LE(control->Top() + control->Height(), page->Height());
            }
        }
        EXPECT_GE(form->SoundCheck.Top(), form->OutputLbl.Top() + form->OutputLbl.Height());
        EXPECT_GE(form->KeepOnScreenCheck.Top(), form->SoundCheck.Top() + form->SoundCheck.Height());
        EXPECT_GE(form->SizeList.Top(), form->KeepOnScreenCheck.Top() + form->KeepOnScreenCheck.Height());
        EXPECT_GE(form->SizeList.Left(), form->SizeLbl.Left() + form->SizeLbl.Width());
        EXPECT_GE(form->CloseButt.Top(), form->Pages.Top() + form->Pages.Height());
    }
}

TEST_F(SettingsTest, CharactersAreKeptOnTheScreenUntilThatIsSwitchedOff) {
    EXPECT_TRUE(readKeepOnScreen());
    writeKeepOnScreen(false);
    EXPECT_FALSE(readKeepOnScreen());
    EXPECT_TRUE(readSoundEnabled()) << "each has a value of its own";
}

TEST_F(SettingsTest, SizeIsKeptWithinItsBounds) {
    EXPECT_EQ(readSize(), 100);
    writeSize(250);
    EXPECT_EQ(readSize(), 250);
    for (const auto& [written, read] : {std::pair{0U, 75}, {74U, 75}, {301U, 300}, {0xFFFFFFFFU, 300}}) {
        fakes::state().user_stores.values[u"Software\\Murmelix AgentServer\\Size"] = written;
        EXPECT_EQ(readSize(), read);
    }
}

TEST_F(SettingsTest, SoundIsOnUntilItIsSwitchedOff) {
    EXPECT_TRUE(readSoundEnabled());
    writeSoundEnabled(false);
    EXPECT_FALSE(readSoundEnabled());
    EXPECT_EQ(
        std::get<std::uint32_t>(fakes::state().user_stores.values.at(u"Software\\Murmelix AgentServer\\SoundEnabled")),
        0U);
    writeSoundEnabled(true);
    EXPECT_TRUE(readSoundEnabled());
}

TEST_F(SettingsTest, IconShowsTheWindowRestartsTheServerAndEndsIt) {
    int restarted = 0, ended = 0;
    {
        Tray tray(
            *form, [&] { ++restarted; }, [&] { ++ended; });
        ASSERT_EQ(fakes::screen().tray_icons.size(), 1U);
        EXPECT_EQ(tray.Icon.Tip(), u"AgentServer");
        tray.Icon.DblClick();
        EXPECT_TRUE(form->Visible());
        fakes::close(*form);
        tray.Icon.ContextMenu();
        EXPECT_THAT(fakes::screen().popups, ElementsAre(&tray.IconMenu));
        EXPECT_TRUE(tray.PropertiesItem.Default());
        EXPECT_TRUE(fakes::choose(tray.PropertiesItem));
        EXPECT_TRUE(form->Visible());
        EXPECT_TRUE(fakes::choose(tray.RestartItem));
        EXPECT_EQ(restarted, 1);
        EXPECT_EQ(ended, 0);
        EXPECT_TRUE(fakes::choose(tray.ExitItem));
        EXPECT_EQ(ended, 1);
    }
    EXPECT_TRUE(fakes::screen().tray_icons.empty());
}

} // namespace
} // namespace agent::settings
