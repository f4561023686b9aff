#include <gmock/gmock.h>

#include "common/text.h"
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
        listener = std::make_unique<Listener>();
        keys = std::make_unique<Keys>(*listener);
        listener->Changed = [this] {
            ++changes;
            form->refresh();
        };
        form = std::make_unique<SettingsFrm>(
            *listener, *keys, [this] { return facts; },
            SettingsFrm::Switches{[this](bool on) {
                                      facts.keep_on_screen = on;
                                      kept.push_back(on);
                                  },
                                  [this](int percent) {
                                      facts.size = percent;
                                      sizes.push_back(percent);
                                  }},
            VoicesPage::Sources{[this] { return characters; }, [](std::uint16_t language) { return language != 1036; },
                                [](std::uint16_t language) {
                                    return language == 1031 ? std::vector<std::u16string>{u"Heidi"}
                                                            : std::vector<std::u16string>{u"Zoe", u"Max"};
                                },
                                [this](const KnownCharacter& character) { listened.push_back(character.key); }});
    }
    static std::uint32_t stored(const std::u16string& name) {
        return std::get<std::uint32_t>(fakes::state().user_stores.values.at(key + name));
    }
    static void store(const std::u16string& name, fakes::UserStores::Value value) {
        fakes::state().user_stores.values[key + name] = std::move(value);
    }

    static inline const std::u16string key = u"Software\\Murmelix AgentServer\\";
    SettingsFrm::Facts facts{true, true};
    int changes = 0;
    std::vector<KnownCharacter> characters;
    std::vector<std::u16string> listened; // to
    std::vector<bool> kept;
    std::vector<int> sizes;
    std::unique_ptr<Listener> listener;
    std::unique_ptr<Keys> keys;
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
    EXPECT_EQ(changes, 0) << "what is so already is told to nobody";
    EXPECT_TRUE(fakes::click(form->SoundCheck));
    EXPECT_FALSE(listener->sound());
    EXPECT_TRUE(fakes::accelerator(*form, u'p'));
    EXPECT_TRUE(listener->sound());
    EXPECT_EQ(changes, 2);
}

TEST_F(SettingsTest, BoxLetsCharactersLeaveTheScreen) {
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->KeepOnScreenCheck.Value(), 1);
    EXPECT_TRUE(kept.empty());
    EXPECT_TRUE(fakes::click(form->KeepOnScreenCheck));
    EXPECT_TRUE(fakes::accelerator(*form, u'k'));
    EXPECT_THAT(kept, ElementsAre(false, true));
    EXPECT_EQ(changes, 0);
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
    listener->setSound(false);
    facts.keep_on_screen = false;
    form->setPage(u"Output");
    form->present();
    EXPECT_EQ(form->SoundCheck.Value(), 0);
    EXPECT_EQ(form->KeepOnScreenCheck.Value(), 0);
    EXPECT_EQ(changes, 1);
    listener->setSound(true);
    EXPECT_EQ(form->SoundCheck.Value(), 1) << "while it is shown, too";
    EXPECT_TRUE(kept.empty());
}

TEST_F(SettingsTest, BoxOfAPageBehindIsOutOfReach) {
    form->present();
    EXPECT_FALSE(fakes::click(form->SoundCheck));
    EXPECT_FALSE(fakes::accelerator(*form, u'p'));
    EXPECT_EQ(changes, 0);
}

TEST_F(SettingsTest, ControlTabTurnsThePages) {
    form->present();
    const ui::Shortcut next{Key::tab, ui::control_key}, back{Key::tab, ui::control_key | ui::shift_key};
    std::vector<std::u16string> pages;
    for (int i = 0; i < 7; ++i) {
        EXPECT_TRUE(fakes::key(*form, next));
        pages.push_back(form->page());
    }
    EXPECT_TRUE(fakes::key(*form, back));
    pages.push_back(form->page());
    EXPECT_THAT(pages, ElementsAre(u"Output", u"Listening", u"Balloons", u"Voices", u"Keys", u"Copyright", u"Speech",
                                   u"Copyright"));
}

TEST_F(SettingsTest, BalloonsAreAsTheUserReads) {
    form->setPage(u"Balloons");
    form->present();
    EXPECT_EQ(form->LettersList.Text(), u"100 %");
    EXPECT_EQ(form->ReadingList.Text(), u"As the character has it");
    EXPECT_EQ(form->WordByWordCheck.Value(), 1);
    EXPECT_EQ(form->CalmCheck.Value(), 0);
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(fakes::pick(form->LettersList, 4));
    EXPECT_EQ(listener->letters(), 200);
    EXPECT_EQ(stored(u"BalloonText"), 200u);
    EXPECT_TRUE(fakes::pick(form->ReadingList, 1));
    EXPECT_EQ(form->ReadingList.Text(), u"3 seconds");
    EXPECT_EQ(stored(u"BalloonStays"), 3u);
    EXPECT_TRUE(fakes::pick(form->ReadingList, form->ReadingList.ListCount() - 1));
    EXPECT_EQ(form->ReadingList.Text(), u"Until I click it");
    EXPECT_EQ(listener->reading(), reading_bounds.most);
    EXPECT_TRUE(fakes::click(form->WordByWordCheck));
    EXPECT_TRUE(fakes::click(form->CalmCheck));
    EXPECT_EQ(stored(u"WordByWord"), 0u);
    EXPECT_EQ(stored(u"LessMotion"), 1u);
    EXPECT_EQ(changes, 5);

    const Listener next;
    EXPECT_EQ(next.letters(), 200);
    EXPECT_EQ(next.reading(), reading_bounds.most);
    EXPECT_FALSE(next.wordByWord());
    EXPECT_TRUE(next.calm());
}

TEST_F(SettingsTest, WhatIsKeptOfBalloonsIsBroughtWithinItsBounds) {
    store(u"BalloonText", std::uint32_t{7});
    store(u"BalloonStays", std::uint32_t{0xFFFFFFFF});
    store(u"WordByWord", std::uint32_t{9});
    store(u"LessMotion", std::u16string(u"no number"));
    const Listener next;
    EXPECT_EQ(next.letters(), 100);
    EXPECT_EQ(next.reading(), reading_bounds.most);
    EXPECT_TRUE(next.wordByWord());
    EXPECT_FALSE(next.calm());
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
        EXPECT_EQ(form->VolumeList.Left(), form->WaitingList.Left());
        EXPECT_GE(form->HurryLbl.Top(), form->WaitingList.Top() + form->WaitingList.Height());
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

TEST_F(SettingsTest, ListsSetWhatTheListenerWants) {
    form->setPage(u"Listening");
    form->present();
    EXPECT_EQ(form->VolumeList.Text(), u"100 %");
    EXPECT_EQ(form->SpeedList.Text(), u"100 %");
    EXPECT_EQ(form->LongestList.Text(), u"As long as it takes");
    EXPECT_EQ(form->WaitingList.Text(), u"Never");
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(fakes::pick(form->VolumeList, 3));
    EXPECT_TRUE(fakes::pick(form->SpeedList, 8));
    EXPECT_TRUE(fakes::pick(form->LongestList, 2));
    EXPECT_TRUE(fakes::pick(form->WaitingList, 1));
    EXPECT_EQ(listener->volume(), 30);
    EXPECT_EQ(listener->speed(), 200);
    EXPECT_EQ(listener->longest(), 10);
    EXPECT_EQ(listener->mostWaiting(), 5);
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(form->LongestList.Text(), u"10 seconds");
    listener->setSpeed(111); // by another way
    EXPECT_EQ(form->SpeedList.Text(), u"111 %");
    for (const auto& [letter, list] : {std::pair<char16_t, ui::Control*>{u'v', &form->VolumeList},
                                       {u'e', &form->SpeedList},
                                       {u'm', &form->LongestList},
                                       {u'h', &form->WaitingList}}) {
        EXPECT_TRUE(fakes::accelerator(*form, letter));
        EXPECT_TRUE(list->Focused()) << static_cast<char>(letter);
    }
}

TEST_F(SettingsTest, FieldsSetTheKeys) {
    form->setPage(u"Keys");
    form->present();
    auto& [label, skip] = form->KeyRows[skip_deed];
    EXPECT_EQ(skip.Text(), u"None");
    EXPECT_TRUE(form->KeysLbl.Caption().starts_with(u"Keys that are heard in every program."));
    EXPECT_TRUE(fakes::accelerator(*form, u's'));
    ASSERT_TRUE(skip.Focused());
    const ui::Shortcut key{u'S', ui::control_key | ui::alt_key};
    EXPECT_TRUE(fakes::key(*form, key));
    EXPECT_EQ(skip.Text(), u"Ctrl+Alt+S");
    EXPECT_EQ(keys->key(skip_deed), key);
    // Another program has it: the field shows what is set, and the page why.
    fakes::screen().keys_of_others = {ui::Shortcut(ui::Key::f9)};
    EXPECT_TRUE(fakes::key(*form, ui::Shortcut(ui::Key::f9)));
    EXPECT_EQ(skip.Text(), u"Ctrl+Alt+S");
    EXPECT_TRUE(form->KeysLbl.Caption().starts_with(u"F9 is used by another program"));
    EXPECT_TRUE(fakes::key(*form, {u'S', 0})) << "heard, and refused";
    EXPECT_EQ(keys->key(skip_deed), key);
    EXPECT_FALSE(fakes::pressAnywhere(key)) << "the field is to be told";
    fakes::key(*form, Key::tab);
    EXPECT_TRUE(form->KeyRows[pause_deed].Box.Focused());
    form->CloseButt.SetFocus();
    EXPECT_TRUE(fakes::pressAnywhere(key));
    fakes::type(skip, u"Ctrl+Alt+"); // by Backspace
    EXPECT_EQ(skip.Text(), u"None");
    EXPECT_FALSE(keys->key(skip_deed));
}

TEST_F(SettingsTest, SkipsAndPauses) {
    int skipped = 0;
    listener->Skip = [&] { ++skipped; };
    form->setPage(u"Listening");
    form->present();
    EXPECT_TRUE(fakes::click(form->SkipButt));
    EXPECT_TRUE(fakes::accelerator(*form, u's'));
    EXPECT_EQ(skipped, 2);
    EXPECT_TRUE(fakes::accelerator(*form, u'p'));
    EXPECT_TRUE(listener->paused());
    listener->setPaused(false); // by a key
    EXPECT_EQ(form->PauseCheck.Value(), 0);
    EXPECT_EQ(changes, 2);
}

TEST_F(SettingsTest, WhatTheListenerWantsIsKept) {
    listener->setVolume(40);
    listener->setSpeed(150);
    listener->setLongest(20);
    listener->setMostWaiting(60);
    listener->setSound(false);
    listener->setAllSilenced(true);
    listener->setSilenced(u"{A}", true);
    listener->setSilenced(u"{b}", true);
    listener->setSilenced(u"{a}", false);
    listener->setPaused(true);
    const Listener again;
    EXPECT_EQ(again.volume(), 40);
    EXPECT_EQ(again.speed(), 150);
    EXPECT_EQ(again.longest(), 20);
    EXPECT_EQ(again.mostWaiting(), 60);
    EXPECT_FALSE(again.sound());
    EXPECT_TRUE(again.allSilenced());
    EXPECT_TRUE(again.silenced(u"{B}")) << "letter case makes no other character";
    EXPECT_FALSE(again.silenced(u"{A}"));
    EXPECT_FALSE(again.paused()) << "a server does not begin in silence";
}

TEST_F(SettingsTest, NumbersStayWithinTheirBounds) {
    for (const auto& [name, number, least, usual, most] : {std::tuple{u"Volume", &Listener::volume, 0, 100, 100},
                                                           {u"Speed", &Listener::speed, 50, 100, 200},
                                                           {u"LongestRequest", &Listener::longest, 0, 0, 300},
                                                           {u"MostWaiting", &Listener::mostWaiting, 0, 0, 3600}}) {
        EXPECT_EQ((Listener().*number)(), usual);
        store(name, 0xFFFFFFFFU);
        EXPECT_EQ((Listener().*number)(), most) << murmelix::toUtf8(name);
        store(name, 0U);
        EXPECT_EQ((Listener().*number)(), least);
        store(name, u"seven");
        EXPECT_EQ((Listener().*number)(), usual) << "of another type";
    }
    listener->setVolume(-5);
    listener->setSpeed(100'000);
    EXPECT_EQ(stored(u"Volume"), 0U);
    EXPECT_EQ(stored(u"Speed"), 200U);
}

TEST_F(SettingsTest, CharactersAreHeardUnlessThereIsNoSoundOrAllAreSilenced) {
    EXPECT_TRUE(listener->audible());
    listener->setAllSilenced(true);
    EXPECT_FALSE(listener->audible());
    listener->setSound(false);
    listener->setAllSilenced(false);
    EXPECT_FALSE(listener->audible());
    listener->setSound(true);
    EXPECT_TRUE(listener->audible());
    EXPECT_EQ(changes, 4);
    store(u"AllSilenced", u"yes");
    EXPECT_FALSE(readAllSilenced()) << "of another type";
}

TEST_F(SettingsTest, NothingIsToldThatIsSoAlready) {
    listener->setAllSilenced(false);
    listener->setVolume(1000);
    listener->setSpeed(100);
    listener->setLongest(-1);
    listener->setSound(true);
    listener->setPaused(false);
    listener->setSilenced(u"{a}", false);
    EXPECT_EQ(changes, 0);
    listener->setSilenced(u"{a}", true);
    listener->setSilenced(u"{A}", true);
    EXPECT_EQ(changes, 1);
}

TEST_F(SettingsTest, SilencedCharactersHaveALimit) {
    constexpr auto most = static_cast<int>(most_silenced);
    for (int i = 0; i <= most; ++i) {
        listener->setSilenced(murmelix::toText(i), true);
    }
    EXPECT_FALSE(listener->silenced(u"0")) << "the oldest is forgotten";
    EXPECT_TRUE(listener->silenced(u"1"));
    EXPECT_TRUE(listener->silenced(murmelix::toText(most)));
    listener->setSilenced(std::u16string(longest_key + 1, u'x'), true);
    listener->setSilenced(u"", true);
    EXPECT_EQ(readSilenced().size(), most_silenced);
    const Listener again;
    EXPECT_TRUE(again.silenced(u"1"));
}

TEST_F(SettingsTest, AListOfTheSilencedThatIsNoneIsLeftOut) {
    std::vector<std::u16string> lines{u"{a}", std::u16string(longest_key + 1, u'x'), u"{a}", u"{b}"};
    store(u"Silenced", lines);
    EXPECT_THAT(readSilenced(), ElementsAre(u"{a}", u"{b}"));
    store(u"Silenced", std::vector<std::u16string>(100'000, u"x"));
    EXPECT_TRUE(readSilenced().empty());
    store(u"Silenced", 7U);
    EXPECT_TRUE(readSilenced().empty());
}

class VoicesTest : public SettingsTest {
  protected:
    VoicesTest() {
        characters = {{u"{1}", u"Pip", 1033}, {u"{2}", u"Chip", 1031}};
        listener->VoicesChanged = [this] { ++voices_changed; };
        form->setPage(u"Voices");
    }
    static int indexOf(const ui::DropDownList& list, std::u16string_view text) {
        for (int i = 0; i < list.ListCount(); ++i) {
            if (list.List(i) == text) {
                return i;
            }
        }
        return -1;
    }
    int voices_changed = 0;
    VoicesPage& page = form->Voices;
};

TEST_F(VoicesTest, AreAsMadeAtFirst) {
    form->present();
    EXPECT_EQ(page.CharacterList.Text(), u"Pip");
    EXPECT_EQ(page.VoiceList.Text(), u"As it was made");
    EXPECT_EQ(page.LanguageList.Text(), u"As programs ask for");
    EXPECT_EQ(page.PitchList.Text(), u"As it was made");
    EXPECT_EQ(page.SpeedList.Text(), u"As it was made");
    EXPECT_EQ(indexOf(page.LanguageList, u"French"), -1) << "nobody speaks it";
    EXPECT_GE(indexOf(page.LanguageList, u"German"), 1);
    EXPECT_FALSE(page.NobodyLbl.Visible());
    EXPECT_EQ(voices_changed, 0);
}

TEST_F(VoicesTest, AreEachCharactersOwnAndKept) {
    form->present();
    EXPECT_TRUE(fakes::pick(page.VoiceList, indexOf(page.VoiceList, u"Max")));
    EXPECT_TRUE(fakes::pick(page.PitchList, 2));
    EXPECT_TRUE(fakes::pick(page.SpeedList, 3));
    EXPECT_EQ(voices_changed, 3);
    EXPECT_EQ(Listener().ownVoice(u"{1}"), (OwnVoice{u"Max", 0, 80, 125}));
    EXPECT_EQ(Listener().ownVoice(u"{2}"), OwnVoice{});
    EXPECT_TRUE(fakes::pick(page.CharacterList, 1));
    EXPECT_EQ(page.VoiceList.Text(), u"As it was made");
    EXPECT_EQ(page.VoiceList.List(1), u"Heidi");
    EXPECT_TRUE(fakes::pick(page.CharacterList, 0));
    EXPECT_EQ(page.VoiceList.Text(), u"Max");
    EXPECT_EQ(page.PitchList.Text(), u"80 hertz");
    EXPECT_EQ(page.SpeedList.Text(), u"125 words a minute");
    EXPECT_EQ(voices_changed, 3) << "looking at one changes nothing";
    EXPECT_TRUE(fakes::click(page.ResetButt));
    EXPECT_EQ(Listener().ownVoice(u"{1}"), OwnVoice{});
    EXPECT_EQ(page.VoiceList.Text(), u"As it was made");
}

TEST_F(VoicesTest, WhoHasNoneSpeaksWithTheDefaultOfTheLanguage) {
    EXPECT_EQ(listener->voiceOf(u"{1}", 1033), u"");
    EXPECT_TRUE(writeDefaultVoice(1033, u"Zoe"));
    listener->setOwnVoice(u"{2}", {u"Max", 0, 0, 0});
    EXPECT_EQ(listener->voiceOf(u"{1}", 1033), u"Zoe");
    EXPECT_EQ(listener->voiceOf(u"{1}", 1031), u"");
    EXPECT_EQ(listener->voiceOf(u"{2}", 1033), u"Max");
    EXPECT_TRUE(writeDefaultVoice(1033, u""));
    EXPECT_EQ(listener->voiceOf(u"{1}", 1033), u"");
}

TEST_F(VoicesTest, ADefaultThatIsTooLongIsNone) {
    EXPECT_TRUE(writeDefaultVoice(1033, std::u16string(longest_voice, u'v')));
    EXPECT_EQ(readDefaultVoice(1033).size(), longest_voice);
    EXPECT_TRUE(writeDefaultVoice(1033, std::u16string(longest_voice + 1, u'v')));
    EXPECT_EQ(readDefaultVoice(1033), u"");
}

TEST_F(VoicesTest, AVoiceGoesWithItsLanguage) {
    form->present();
    fakes::pick(page.VoiceList, 1);
    ASSERT_EQ(page.VoiceList.Text(), u"Zoe");
    EXPECT_TRUE(fakes::pick(page.LanguageList, indexOf(page.LanguageList, u"Italian")));
    EXPECT_EQ(page.VoiceList.Text(), u"Zoe");
    EXPECT_TRUE(fakes::pick(page.LanguageList, indexOf(page.LanguageList, u"German")));
    EXPECT_EQ(page.VoiceList.Text(), u"As it was made");
    EXPECT_EQ(page.VoiceList.List(1), u"Heidi");
    EXPECT_EQ(Listener().ownVoice(u"{1}"), (OwnVoice{u"", 1031, 0, 0}));
}

TEST_F(VoicesTest, AreListenedTo) {
    form->present();
    fakes::pick(page.CharacterList, 1);
    EXPECT_TRUE(fakes::click(page.ListenButt));
    EXPECT_TRUE(fakes::accelerator(*form, u'l'));
    EXPECT_THAT(listened, ElementsAre(u"{2}", u"{2}"));
}

TEST_F(VoicesTest, ACharacterIsSilencedHereToo) {
    form->present();
    fakes::pick(page.CharacterList, 1);
    EXPECT_TRUE(fakes::click(page.SilencedCheck));
    EXPECT_TRUE(listener->silenced(u"{2}"));
    EXPECT_FALSE(listener->silenced(u"{1}"));
    fakes::pick(page.CharacterList, 0);
    EXPECT_EQ(page.SilencedCheck.Value(), 0);
    EXPECT_TRUE(listener->silenced(u"{2}")) << "looking at another one changes nothing";
    listener->setSilenced(u"{1}", true); // by the menu
    EXPECT_EQ(page.SilencedCheck.Value(), 1);
    EXPECT_EQ(changes, 2);
}

TEST_F(VoicesTest, TheChosenCharacterStaysSoWhereOthersComeAndGo) {
    form->present();
    fakes::pick(page.CharacterList, 1);
    characters.insert(characters.begin(), {u"{0}", u"Ada", 1033});
    form->refresh();
    EXPECT_EQ(page.CharacterList.Text(), u"Chip");
    characters.clear();
    form->refresh();
    EXPECT_EQ(page.CharacterList.ListCount(), 0);
    EXPECT_TRUE(page.NobodyLbl.Visible());
    EXPECT_FALSE(fakes::click(page.ListenButt));
    EXPECT_FALSE(fakes::pick(page.VoiceList, 0));
    EXPECT_TRUE(listened.empty());
}

TEST_F(VoicesTest, BeginWithACharacterThatIsLoaded) {
    for (KnownCharacter& character : characters) {
        character.loaded = false;
    }
    form->present();
    EXPECT_EQ(page.CharacterList.ListIndex(), 0) << "any, where none is loaded";
    form->setVisible(false);
    characters.clear();
    form->refresh();
    form->present();
    characters = {{u"{4}", u"Ada", 1033, false}, {u"{5}", u"Bob", 1033, true}, {u"{6}", u"Cid", 1033, false}};
    form->refresh();
    EXPECT_EQ(page.CharacterList.Text(), u"Bob");
    fakes::pick(page.CharacterList, 2);
    form->refresh();
    EXPECT_EQ(page.CharacterList.Text(), u"Cid") << "what the user chose stays";
    EXPECT_TRUE(fakes::click(page.ListenButt));
    EXPECT_THAT(listened, ElementsAre(u"{6}"));
}

TEST_F(VoicesTest, OneThatIsGoneIsShownAllTheSame) {
    listener->setOwnVoice(u"{1}", {u"Gone", 1036, 0, 0});
    form->present();
    EXPECT_EQ(page.VoiceList.Text(), u"Gone");
    EXPECT_EQ(page.LanguageList.Text(), u"French");
}

TEST_F(VoicesTest, WhatIsKeptIsTakenOnlyWithinItsBounds) {
    const std::u16string place = u"Voices\\{1}\\";
    store(place + u"Voice", std::vector<std::u16string>{std::u16string(longest_voice + 1, u'x')});
    for (const std::uint32_t number : {1U, 49U, 401U, 451U, 0xFFFFFFFFU}) {
        store(place + u"Pitch", number);
        store(place + u"Speed", number == 401U ? 49U : number);
        store(place + u"Language", number);
        EXPECT_EQ(readOwnVoice(u"{1}"), OwnVoice{}) << number;
    }
    store(place + u"Voice", 7U);
    store(place + u"Pitch", u"high");
    store(place + u"Speed", 50U);
    store(place + u"Language", 1031U);
    EXPECT_EQ(readOwnVoice(u"{1}"), (OwnVoice{u"", 1031, 0, 50}));
    for (const std::u16string& key :
         {std::u16string(), std::u16string(u"..\\x"), std::u16string(longest_key + 1, u'x')}) {
        writeOwnVoice(key, {u"Max", 1031, 100, 100});
        EXPECT_EQ(readOwnVoice(key), OwnVoice{}) << "no name of a key";
    }
}

class TrayTest : public SettingsTest {
  protected:
    TrayTest()
        : tray(
              *form, *listener, *keys, [this] { return characters; }, [this] { ++restarted; }, [this] { ++ended; }) {
        characters = {{u"{1}", u"Pip"}, {u"{2}", u"Fish & Chip"}};
        listener->Skip = [this] { ++skipped; };
        listener->Changed = [this] { tray.showState(); };
    }
    ui::MenuItem& item(ui::Menu& menu, std::u16string_view caption) {
        ui::MenuItem* found = fakes::find(menu, caption);
        EXPECT_NE(found, nullptr) << testing::PrintToString(std::u16string(caption));
        return found ? *found : tray.ExitItem;
    }

    int skipped = 0, restarted = 0, ended = 0;
    Tray tray;
};

TEST_F(TrayTest, SkipsAndPauses) {
    EXPECT_TRUE(fakes::choose(tray.SkipItem));
    EXPECT_EQ(skipped, 1);
    EXPECT_TRUE(fakes::choose(tray.PauseItem));
    EXPECT_TRUE(listener->paused());
    EXPECT_EQ(tray.Icon.Tip(), u"AgentServer - paused");
    tray.IconMenu.Popup();
    EXPECT_TRUE(tray.PauseItem.Checked());
    EXPECT_TRUE(fakes::choose(tray.PauseItem));
    EXPECT_FALSE(listener->paused());
    tray.IconMenu.Popup();
    EXPECT_FALSE(tray.PauseItem.Checked());
    EXPECT_EQ(tray.Icon.Tip(), u"AgentServer");
}

TEST_F(TrayTest, TellsTheKeys) {
    keys->set(skip_deed, {Key::f9});
    tray.IconMenu.Popup();
    EXPECT_EQ(tray.SkipItem.Caption(), u"&Skip What Is Being Said\tF9");
    EXPECT_EQ(tray.PauseItem.Caption(), u"P&ause");
    keys->set(skip_deed, {});
    tray.IconMenu.Popup();
    EXPECT_EQ(tray.SkipItem.Caption(), u"&Skip What Is Being Said");
}

TEST_F(TrayTest, SilencesAllCharactersOrOne) {
    EXPECT_TRUE(fakes::choose(item(tray.SilenceMenu, u"All Characters")));
    EXPECT_TRUE(listener->allSilenced());
    EXPECT_TRUE(listener->sound()) << "programs that end without sound go on";
    EXPECT_EQ(tray.Icon.Tip(), u"AgentServer - all characters are silenced");
    EXPECT_TRUE(item(tray.SilenceMenu, u"All Characters").Checked());
    EXPECT_TRUE(fakes::choose(item(tray.SilenceMenu, u"All Characters")));
    EXPECT_FALSE(listener->allSilenced());
    EXPECT_TRUE(fakes::choose(item(tray.SilenceMenu, u"Pip")));
    EXPECT_TRUE(listener->silenced(u"{1}"));
    EXPECT_FALSE(listener->silenced(u"{2}"));
    EXPECT_TRUE(item(tray.SilenceMenu, u"Pip").Checked());
    EXPECT_EQ(tray.SilenceMenu.items().back()->Caption(), u"Fish && Chip");
    EXPECT_FALSE(tray.SilenceMenu.items().back()->Checked());
    EXPECT_TRUE(fakes::choose(item(tray.SilenceMenu, u"Pip")));
    EXPECT_FALSE(listener->silenced(u"{1}"));
    characters.clear();
    tray.SilenceMenu.Popup();
    EXPECT_EQ(tray.SilenceMenu.items().size(), 1U) << "without a line that parts it from nothing";
}

TEST_F(TrayTest, OpensTheMenuOfACharacter) {
    EXPECT_FALSE(fakes::find(tray.CharactersMenu, u"Nobody is on the screen")->Enabled());
    std::vector<std::string> opened;
    tray.CharactersOnScreen = [&] {
        return std::vector<Tray::OnScreen>{{u"Salt & Pepper", [&] { opened.push_back("pepper"); }},
                                           {u"Ottoline", [&] { opened.push_back("ottoline"); }}};
    };
    ui::MenuItem* pepper = fakes::find(tray.CharactersMenu, u"Salt & Pepper");
    ASSERT_TRUE(pepper);
    EXPECT_TRUE(fakes::choose(*pepper));
    EXPECT_TRUE(fakes::choose(*tray.CharactersMenu.items().at(1)));
    EXPECT_THAT(opened, ElementsAre("pepper", "ottoline"));
}

TEST_F(TrayTest, SetsVolumeAndSpeed) {
    EXPECT_TRUE(fakes::choose(item(tray.VolumeMenu, u"50 %")));
    EXPECT_EQ(listener->volume(), 50);
    EXPECT_TRUE(item(tray.VolumeMenu, u"50 %").Checked());
    EXPECT_FALSE(item(tray.VolumeMenu, u"100 %").Checked());
    listener->setSpeed(110);
    EXPECT_TRUE(item(tray.SpeedMenu, u"110 %").Checked());
    EXPECT_TRUE(fakes::choose(item(tray.SpeedMenu, u"200 %")));
    EXPECT_EQ(listener->speed(), 200);
    EXPECT_EQ(fakes::find(tray.SpeedMenu, u"110 %"), nullptr);
}

TEST_F(SettingsTest, IconShowsTheWindowRestartsTheServerAndEndsIt) {
    int restarted = 0, ended = 0;
    {
        Tray tray(
            *form, *listener, *keys, [] { return std::vector<KnownCharacter>(); }, [&] { ++restarted; },
            [&] { ++ended; });
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
