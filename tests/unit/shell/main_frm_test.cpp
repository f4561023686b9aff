#include "tests/unit/shell/shell_fixture.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "common/text.h"

namespace murmelix {
namespace {

using fakes::MessageBox;
using fakes::ShellCall;
using testing::ElementsAre;
using testing::IsEmpty;

class MainFrmTest : public ShellTest {
  protected:
    MainFrmTest() { EXPECT_TRUE(start()); }
    void showOptions() {
        form().ReadOptnsButt_Click();
        ASSERT_NE(form().OptionsShown, 0);
    }
    // What the next start goes by.
    static std::optional<ui::Rect> lastPlace() {
        return platform::KeptPlace(u"Software\\MurmelixWindows", u"MainFrm").last();
    }
    // A conversation with two contacts, being read.
    std::shared_ptr<fakes::Window> startReading() {
        auto window = openConversation(1234);
        EXPECT_TRUE(fakes::click(form().StartConvButt));
        EXPECT_NE(IsReadingConversation, 0);
        return window;
    }
};

TEST_F(MainFrmTest, CaptionsAndTipsAreTheGivenOnes) {
    const auto is = [](const ui::Control& control, const char16_t* caption, const char16_t* tip) {
        EXPECT_EQ(control.Caption(), caption);
        EXPECT_EQ(control.ToolTipText(), tip);
    };
    MainFrm& f = form();
    is(f.SignInButt, u"&Sign in", u"Sign in Messenger");
    is(f.HelpButt, u"Help", u"Get online help");
    is(f.SignOutLbl, u"You are not currently signed in to your MSN/Windows Messenger. Please sign in first", u"");
    is(f.StartConvButt, u"&Start Reading Selected Conversation", u"Start/Stop reading the selected conversation");
    is(f.ReadOptnsButt, u"Show &Options ->", u"Show/hide options");
    is(f.AutoMinimizeCheck, u"&Minimize to System Tray on Startup",
       u"Automatically minimize Murmelix to the system tray on startup");
    is(f.UpdatesCheck, u"A&uto Check for Updates", u"Automatically check for updates on start up");
    is(f.CharFrame, u"Characte&r Options", u"");
    is(f.CharMatchupButt, u"Chara&cter Matchup...", u"Open Matchup window to matchup characters with users");
    is(f.AutoAttachCheck, u"Auto Attach to Con&versation Window",
       u"Automatically attaches all characters to the sides of the chat window");
    is(f.AutoHideBalloonCheck, u"&Auto Hide Balloon After Reading",
       u"Automatically hide the characters' balloon after reading");
    is(f.HideIdleCheck, u"Auto &Hide when Idle For a Short Time", u"Hide idel characters for a long time");
    is(f.ReadTextFrame, u"&Text Reading Options", u"");
    is(f.AutoCorrectTextCheck, u"Auto Correct &Long Text (Recommended)",
       u"Automatically have long text corrected - recommended");
    is(f.IgnoreCharsCheck, u"Ignore Reading The &Following Characters:", u"Ignore the characters below");
    EXPECT_EQ(f.IgnoreCharTxt.ToolTipText(), u"Characters to ignore");
    is(f.EmotReadingFrame, u"Emoticon Read&ing", u"");
    is(f.PlayReadEmoticonCheck, u"Enable Emotico&n Reading/Playing (Recommended)",
       u"Enable reading of emoticons when used in conversation - recommended");
    is(f.SoundSchemeLbl, u"Sound Scheme:", u"");
    EXPECT_EQ(f.SoundSchemeList.ToolTipText(), u"Select a sound scheme to use for reading emoticons");
    EXPECT_EQ(f.WindowResizeTimer.Interval(), 1000);
    EXPECT_FALSE(f.WindowResizeTimer.Enabled());
    EXPECT_EQ(f.CharzList.Pattern(), u"*.acs");
    EXPECT_EQ(f.ReadMoniter.Interval(), 10);
}

TEST_F(MainFrmTest, CaptionShowsNameStatusAndUnreadMail) {
    EXPECT_EQ(form().MainFrame.Caption(), u"Me - Online (0 Unread)");
}

TEST_F(MainFrmTest, EveryCheckBoxWritesItsSettingWhenClicked) {
    showOptions();
    struct Row {
        ui::CheckBox& box;
        const char* name;
        std::int16_t& flag;
        bool ticked; // at first, by its default
    };
    MainFrm& f = form();
    for (const Row& row : {Row{f.AutoAttachCheck, "AutoAttachChar", AutoAttachChar, true},
                           Row{f.AutoHideBalloonCheck, "AutoHideBalloon", AutoHideBalloon, true},
                           Row{f.HideIdleCheck, "AutoHideIdleChar", AutoHideIdleChar, false},
                           Row{f.AutoCorrectTextCheck, "AutoCorrectText", AutoCorrectText, true},
                           Row{f.IgnoreCharsCheck, "AutoIgnoreChars", AutoIgnoreChars, true},
                           Row{f.PlayReadEmoticonCheck, "PlayReadEmoticon", PlayReadEmoticon, true},
                           Row{f.AutoMinimizeCheck, "AutoMinimize", AutoMinimize, false},
                           Row{f.UpdatesCheck, "AutoUpdate", AutoUpdate, true}}) {
        EXPECT_EQ(row.box.Value(), row.ticked) << row.name;
        EXPECT_TRUE(fakes::click(row.box)) << row.name;
        EXPECT_EQ(stored(row.name), row.ticked ? "0" : "1");
        EXPECT_EQ(row.flag, row.ticked ? 0 : 1) << row.name;
        EXPECT_TRUE(fakes::click(row.box));
        EXPECT_EQ(stored(row.name), row.ticked ? "1" : "0");
        EXPECT_EQ(row.flag, row.ticked ? 1 : 0) << row.name;
    }
}

TEST_F(MainFrmTest, ClicksWhileSignedOutChangeTheMemoryAlone) {
    form().ShowSignOut();
    const auto before = fakes::registry().log.size();
    form().HideIdleCheck.setValue(1);
    form().IgnoreCharTxt.setText(u"x");
    EXPECT_EQ(AutoHideIdleChar, 1);
    EXPECT_EQ(IgnoredChars, u"x");
    EXPECT_EQ(fakes::registry().log.size(), before);
}

TEST_F(MainFrmTest, IgnoredCharactersAreWrittenOnEveryKeystroke) {
    showOptions();
    for (const char16_t* text : {u"^", u"^#", u""}) {
        EXPECT_TRUE(fakes::type(form().IgnoreCharTxt, text));
        EXPECT_EQ(IgnoredChars, text);
    }
    EXPECT_EQ(stored("IgnoredChars"), "");
}

TEST_F(MainFrmTest, ChecksEnableWhatBelongsToThem) {
    showOptions();
    EXPECT_TRUE(form().IgnoreCharTxt.Enabled());
    fakes::click(form().IgnoreCharsCheck);
    EXPECT_FALSE(form().IgnoreCharTxt.Enabled());
    EXPECT_TRUE(form().SoundSchemeList.Enabled());
    fakes::click(form().PlayReadEmoticonCheck);
    EXPECT_FALSE(form().SoundSchemeList.Enabled());
    fakes::click(form().PlayReadEmoticonCheck);
    EXPECT_TRUE(form().SoundSchemeList.Enabled());
}

TEST_F(MainFrmTest, StoredZerosLeaveWhatBelongsToThemDisabled) {
    for (const char* name : {"AutoIgnoreChars", "PlayReadEmoticon"}) {
        store(name, "0");
    }
    MainFormLoaded = 0;
    Loader another;
    another.Main();
    EXPECT_FALSE(another.MainFrm().IgnoreCharTxt.Enabled());
    EXPECT_FALSE(another.MainFrm().SoundSchemeList.Enabled());
}

TEST_F(MainFrmTest, LoadingWritesBackWhatDiffersFromTheControlsInOrder) {
    store("AutoHideIdleChar", "5"); // true, and written back as a ticked box
    store("AutoUpdate", "0");
    store("IgnoredChars", "abc");
    fakes::registry().log.clear();
    MainFormLoaded = 0;
    Loader another;
    another.Main();
    std::vector<std::string> written;
    for (const std::string& line : fakes::registry().log) {
        if (line.starts_with("set ")) {
            written.push_back(line);
        }
    }
    EXPECT_THAT(written, ElementsAre("set AutoHideIdleChar=1", "set AutoHideBalloon=1", "set PlayReadEmoticon=1",
                                     "set AutoAttachChar=1", "set AutoCorrectText=1", "set AutoIgnoreChars=1",
                                     "set IgnoredChars=abc", "set CurrentSoundScheme=default"));
    EXPECT_EQ(AutoHideIdleChar, 1);
}

TEST_F(MainFrmTest, SoundSchemesAreListedInTheOrderOfTheDirectory) {
    ui::DropDownList& list = form().SoundSchemeList;
    ASSERT_EQ(list.ListCount(), 3);
    EXPECT_EQ(list.List(0), u"bells");
    EXPECT_EQ(list.List(2), u"zoo");
    EXPECT_EQ(list.Text(), u"default");
}

TEST_F(MainFrmTest, PickedSoundSchemeIsStored) {
    showOptions();
    EXPECT_TRUE(fakes::pick(form().SoundSchemeList, 2));
    EXPECT_EQ(stored("CurrentSoundScheme"), "zoo");
    EXPECT_EQ(CurrentSoundScheme, u"zoo");
}

TEST_F(MainFrmTest, NewSoundSchemeIsListedWhenTheListIsFocused) {
    showOptions();
    fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {u"aliens", u"bells", u"default"};
    EXPECT_EQ(form().SoundSchemeList.List(0), u"bells");
    form().SoundSchemeList.SetFocus();
    EXPECT_EQ(form().SoundSchemeList.List(0), u"aliens");
    EXPECT_EQ(form().SoundSchemeList.Text(), u"default");
}

TEST_F(MainFrmTest, VanishedSoundSchemeGivesWayToTheFirstWhichIsStored) {
    showOptions();
    fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {u"Default", u"bells"};
    form().SoundSchemeList.SetFocus();
    EXPECT_EQ(form().SoundSchemeList.Text(), u"Default") << "compared by letter case";
    EXPECT_EQ(stored("CurrentSoundScheme"), "Default");
    EXPECT_EQ(CurrentSoundScheme, u"Default");
}

TEST_F(MainFrmTest, WithoutSoundSchemesNothingIsStored) {
    showOptions();
    fakes::system().subdirectories.clear();
    form().SoundSchemeList.SetFocus();
    EXPECT_EQ(form().SoundSchemeList.ListCount(), 0);
    form().SoundSchemeList_Click();
    EXPECT_EQ(stored("CurrentSoundScheme"), "default");
}

TEST_F(MainFrmTest, ConversationsAreListedAndTheFirstSelected) {
    openConversation(1234);
    ASSERT_EQ(form().ConversationsList.GetItemCount(), 1);
    const CItem& row = form().ConversationsList.Item(1);
    EXPECT_EQ(row.Caption, u"Conversation with:");
    EXPECT_EQ(row.Text, u"Ann, Bob");
    EXPECT_EQ(row.Key, u"%1234");
    EXPECT_EQ(row.Icon, form().ConvIcon.picture());
    EXPECT_EQ(form().ConversationsList.GetSelectedKey(), u"%1234");
}

TEST_F(MainFrmTest, EmptyListTellsWhatToDo) {
    EXPECT_EQ(form().ConversationsList.NoItemCaption(),
              u"Open a conversation in your Messenger[ENTER]and it appears here");
}

TEST_F(MainFrmTest, ConversationThatOpensWhileReadingIsNotSelected) {
    startReading();
    openConversation(5);
    EXPECT_EQ(form().ConversationsList.GetItemCount(), 2);
    EXPECT_EQ(form().ConversationsList.GetSelectedKey(), u"%1234");
    fakes::click(form().StartConvButt);
    openConversation(6);
    EXPECT_EQ(form().ConversationsList.GetSelectedKey(), u"%6");
}

TEST_F(MainFrmTest, StartButtonIsTheSameWithAnEmptyListWhicheverWayItCame) {
    const auto expect_nothing_to_start = [this](const char* when) {
        EXPECT_FALSE(form().StartConvButt.Enabled()) << when;
        EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Selected Conversation") << when;
    };
    expect_nothing_to_start("at first");
    const auto window = openConversation(7);
    EXPECT_TRUE(form().StartConvButt.Enabled());
    fakes::messenger().events.OnSignout();
    fakes::messenger().events.OnSignin(0);
    expect_nothing_to_start("after another sign-in");
    fakes::messenger().events.OnIMWindowCreated(window);
    EXPECT_TRUE(form().StartConvButt.Enabled());
    fakes::messenger().events.OnIMWindowDestroyed(window);
    expect_nothing_to_start("after the last conversation");
}

TEST_F(MainFrmTest, ConversationIsListedAgainAfterASignOutAndASignIn) {
    const auto window = openConversation(7);
    fakes::messenger().events.OnSignout();
    fakes::messenger().events.OnSignin(0);
    ASSERT_EQ(form().ConversationsList.GetItemCount(), 0);
    fakes::messenger().events.OnIMWindowCreated(window);
    EXPECT_EQ(form().ConversationsList.GetItemCount(), 1);
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    EXPECT_EQ(ReadingWindowHandle, 7);
}

TEST_F(MainFrmTest, RowsFillTheListWholly) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0, 7.5}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        form().onSettingsChange();
        CoolListBox& list = form().ConversationsList;
        const int height = list.P.surface().Height(), rows = height / list.ItemHeight();
        EXPECT_EQ(height % list.ItemHeight(), 0) << twips_per_pixel;
        EXPECT_GE(rows, 4);
        EXPECT_GE(list.ItemHeight() * twips_per_pixel, 600 - twips_per_pixel);
        list.ClearList();
        for (int row = 1; row <= rows + 1; ++row) {
            list.AddItem(u"Conversation with:", u"Ann", u"%" + toText(row), false);
            EXPECT_EQ(list.Scroll.Visible(), row > rows) << row;
        }
        EXPECT_EQ(list.Scroll.Max(), 1);
    }
}

TEST_F(MainFrmTest, ConversationIsChosenByControlAndArrowKeys) {
    const ui::Shortcut up{ui::Key::up, ui::control_key}, down{ui::Key::down, ui::control_key};
    CoolListBox& list = form().ConversationsList;
    EXPECT_TRUE(form().onKey(down));
    EXPECT_EQ(list.Selected(), 0) << "an empty list";
    for (const int handle : {1, 2, 3}) {
        openConversation(handle);
    }
    form().StartConvButt.SetFocus();
    EXPECT_EQ(list.GetSelectedKey(), u"%3");
    EXPECT_TRUE(form().onKey(down));
    EXPECT_EQ(list.GetSelectedKey(), u"%3");
    EXPECT_TRUE(form().onKey(up));
    EXPECT_TRUE(form().onKey(up));
    EXPECT_EQ(list.GetSelectedKey(), u"%1");
    EXPECT_TRUE(form().onKey(up));
    EXPECT_EQ(list.GetSelectedKey(), u"%1");
    form().StartConvButt_Click();
    EXPECT_EQ(ReadingWindowHandle, 1);
    EXPECT_TRUE(form().onKey(down));
    EXPECT_EQ(list.GetSelectedKey(), u"%1") << "what is read stays selected";
}

TEST_F(MainFrmTest, ConversationChosenByKeysComesIntoView) {
    CoolListBox& list = form().ConversationsList;
    for (int handle = 1; handle <= 40; ++handle) {
        openConversation(handle);
    }
    ASSERT_GT(list.Scroll.Value(), 0);
    for (int times = 0; times < 39; ++times) {
        form().onKey({ui::Key::up, ui::control_key});
    }
    EXPECT_EQ(list.Selected(), 1);
    EXPECT_EQ(list.Scroll.Value(), 0);
}

TEST_F(MainFrmTest, SoundSchemesAreReadAgainWhenTheWindowComesBackToTheirList) {
    showOptions();
    form().SoundSchemeList.SetFocus();
    fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {u"aliens", u"default"};
    EXPECT_FALSE(form().onActivate());
    EXPECT_EQ(form().SoundSchemeList.List(0), u"aliens");
    form().StartConvButt.setEnabled(true);
    form().StartConvButt.SetFocus();
    fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {u"default"};
    EXPECT_FALSE(form().onActivate());
    EXPECT_EQ(form().SoundSchemeList.ListCount(), 2) << "read when it is in use alone";
}

TEST_F(MainFrmTest, OptionsButtonBehindThePanelIsHeardByKeyboard) {
    fakes::messenger().status = 1;
    fakes::messenger().events.OnSignout();
    const ui::Shortcut alt_o{u'O', ui::alt_key};
    const int width = form().Width();
    EXPECT_TRUE(form().onKey(alt_o));
    EXPECT_EQ(form().Width(), width) << "nothing visible has changed";
    EXPECT_EQ(form().ReadOptnsButt.Caption(), u"Show &Options ->");
    fakes::messenger().status = 2;
    fakes::messenger().events.OnSignin(0);
    EXPECT_TRUE(form().onKey(alt_o));
    EXPECT_EQ(form().Width(), width) << "this one hides them";
    EXPECT_TRUE(form().onKey(alt_o));
    EXPECT_GT(form().Width(), width);
    EXPECT_EQ(form().focused(), &form().ReadOptnsButt);
}

TEST_F(MainFrmTest, StartReadsTheSelectedConversation) {
    const auto window = openConversation(1234);
    window->left = 77;
    window->top = -12;
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Stop Reading Conversation");
    EXPECT_EQ(ReadingWindowHandle, 1234);
    EXPECT_EQ(form().ReadingWindowLeft, 77);
    EXPECT_EQ(form().ReadingWindowTop, -12);
    EXPECT_FALSE(form().ConversationsList.EnabledIt());
    EXPECT_TRUE(LoadedCharacters.contains(u"ann@x"));
    EXPECT_TRUE(LoadedCharacters.contains(u"bob@x"));
    EXPECT_TRUE(form().WindowResizeTimer.Enabled());
    EXPECT_TRUE(form().ReadMoniter.Enabled());
    EXPECT_EQ(form().MSNControl->LastReadPosition, static_cast<std::int32_t>(window->history.size()) + 2);
    EXPECT_EQ(form().MSNControl->currentUser, u"");
    EXPECT_TRUE(form().TipEmotFrm->Visible());
    EXPECT_TRUE(form().SystemMenuStopReadingConver.Enabled());
}

TEST_F(MainFrmTest, PlaceOfAWindowFarAwayIsTheFarthestThatCanBeRecorded) {
    const auto window = openConversation(1234);
    window->left = -40000;
    window->top = 40000;
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    EXPECT_EQ(form().ReadingWindowLeft, -32768);
    EXPECT_EQ(form().ReadingWindowTop, 32767);
}

TEST_F(MainFrmTest, StopUndoesAllOfIt) {
    startReading();
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Conversation");
    EXPECT_TRUE(form().ConversationsList.EnabledIt());
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
    EXPECT_FALSE(form().ReadMoniter.Enabled());
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    EXPECT_EQ(ReadingWindowHandle, 0);
    EXPECT_EQ(form().ReadingWindowLeft, 0);
    EXPECT_EQ(form().ReadingWindowTop, 0);
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
}

TEST_F(MainFrmTest, StartWithNothingSelectedUndoesItself) {
    form().StartConvButt_Click();
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Conversation");
    EXPECT_TRUE(form().ConversationsList.EnabledIt());
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
    EXPECT_FALSE(form().ReadMoniter.Enabled());
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(MainFrmTest, StartWithARowWhoseWindowHasClosedUndoesItself) {
    openConversation(1234);
    form().ConversationsList.AddItem(u"Conversation with:", u"Gone", u"%99", true);
    form().StartConvButt_Click();
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(ReadingWindowHandle, 0);
}

TEST_F(MainFrmTest, StopWhileTheCharactersAreLoadedLeavesNothingRunning) {
    openConversation(1234);
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Show" && IsReadingConversation) {
            form().StartConvButt_Click();
        }
    };
    form().StartConvButt_Click();
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    EXPECT_FALSE(form().ReadMoniter.Enabled());
    EXPECT_FALSE(form().TipEmotFrm);
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Conversation");
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
}

TEST_F(MainFrmTest, WindowThatDoesNotTellItsPlaceIsReadAllTheSame) {
    const auto window = openConversation(1234);
    fakes::neighbours().failing = {"HWND", "Handle", "Top", "Left"};
    form().StartConvButt_Click();
    EXPECT_EQ(ReadingWindowHandle, 1234);
    fakes::neighbours().failing.clear();
    window->say(u"Ann", u"hello");
    fakes::state().agent.calls.clear();
    fakes::tick(form().ReadMoniter);
    EXPECT_FALSE(fakes::state().agent.calls.empty());
}

TEST_F(MainFrmTest, StartWithoutTheOptionsShowsNoTipAndFollowsNoWindow) {
    AutoAttachChar = 0;
    ShowEmotTipFrm = 0;
    startReading();
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    EXPECT_FALSE(form().TipEmotFrm);
}

TEST_F(MainFrmTest, NewMessageIsSpokenByItsWriter) {
    const auto window = startReading();
    fakes::state().agent.calls.clear();
    window->say(u"Ann", u"hello");
    fakes::tick(form().ReadMoniter);
    const auto& calls = fakes::state().agent.calls;
    EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), [](const fakes::AgentCall& call) {
        return call.key == u"ann@x" && call.call == u"Speak" && call.text == u"Hello";
    }));
}

TEST_F(MainFrmTest, TickDuringACallToANeighbourIsSkipped) {
    const auto window = startReading();
    const int reads = window->history_reads;
    fakes::neighbours().call_pending = true;
    fakes::tick(form().ReadMoniter);
    fakes::tick(form().WindowResizeTimer);
    EXPECT_EQ(window->history_reads, reads);
    fakes::neighbours().call_pending = false;
    fakes::tick(form().ReadMoniter);
    EXPECT_EQ(window->history_reads, reads + 1);
}

TEST_F(MainFrmTest, MovedWindowTakesTheCharactersAlongOnce) {
    const auto window = startReading();
    auto& calls = fakes::state().agent.calls;
    calls.clear();
    fakes::tick(form().WindowResizeTimer);
    EXPECT_THAT(calls, IsEmpty());
    for (std::int32_t* const side : {&window->left, &window->top}) {
        *side += 50;
        fakes::tick(form().WindowResizeTimer);
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(), [](const auto& call) { return call.call == u"MoveTo"; }),
                  2);
        calls.clear();
        fakes::tick(form().WindowResizeTimer);
        EXPECT_THAT(calls, IsEmpty()) << "the new place is the known one";
    }
}

TEST_F(MainFrmTest, VanishedWindowStopsTheReadingAtTheNextTick) {
    startReading();
    ReadingWindowHandle = 4321;
    fakes::tick(form().WindowResizeTimer);
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
}

TEST_F(MainFrmTest, WindowThatVanishedWithoutAWordCanBeStoppedAndReadAnew) {
    const auto window = startReading();
    fakes::neighbours().failing = {"HWND", "Handle", "Top", "Left", "Width", "Height", "Contacts", "History"};
    fakes::messenger().events.OnIMWindowDestroyed(window); // which one cannot be had any more
    for (int times = 0; times < 3; ++times) {
        fakes::tick(form().WindowResizeTimer);
        fakes::tick(form().ReadMoniter);
    }
    EXPECT_NE(IsReadingConversation, 0);
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
    fakes::neighbours().failing.clear();
    const auto next = openConversation(1234); // its handle is used again
    EXPECT_EQ(form().ConversationsList.GetItemCount(), 1);
    EXPECT_TRUE(fakes::click(form().StartConvButt));
    fakes::agent().calls.clear();
    next->say(u"Ann", u"hello");
    fakes::tick(form().ReadMoniter);
    EXPECT_FALSE(fakes::agent().calls.empty());
}

TEST_F(MainFrmTest, FailingWindowIsAskedAgainAtTheNextTick) {
    startReading();
    fakes::neighbours().gone = true;
    fakes::tick(form().WindowResizeTimer);
    fakes::tick(form().ReadMoniter);
    EXPECT_NE(IsReadingConversation, 0);
    EXPECT_TRUE(form().WindowResizeTimer.Enabled());
}

TEST_F(MainFrmTest, TimerTickDoesNothingWithoutReading) {
    openConversation(7);
    form().WindowResizeTimer_Timer();
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Selected Conversation");
    EXPECT_THAT(fakes::state().agent.log, IsEmpty());
}

TEST_F(MainFrmTest, AttachOptionStopsAndRestartsTheTimerWhileReading) {
    showOptions();
    startReading();
    fakes::click(form().AutoAttachCheck);
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    fakes::click(form().AutoAttachCheck);
    EXPECT_TRUE(form().WindowResizeTimer.Enabled());
}

TEST_F(MainFrmTest, AttachOptionLeavesTheTimerOffWithoutReading) {
    showOptions();
    fakes::click(form().AutoAttachCheck);
    fakes::click(form().AutoAttachCheck);
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
}

TEST_F(MainFrmTest, BalloonOptionChangesLoadedCharactersAtOnce) {
    showOptions();
    startReading();
    const auto style = [] { return fakes::state().agent.characters.at(u"ann@x")->balloon_style; };
    EXPECT_EQ(style() & 4, 4);
    fakes::click(form().AutoHideBalloonCheck);
    EXPECT_EQ(style() & 4, 0);
    fakes::click(form().AutoHideBalloonCheck);
    EXPECT_EQ(style() & 4, 4);
}

TEST_F(MainFrmTest, ClosedConversationStopsTheReadingWithoutTheTimer) {
    showOptions();
    const auto window = startReading();
    fakes::click(form().AutoAttachCheck);
    fakes::messenger().events.OnIMWindowDestroyed(window);
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(form().ConversationsList.GetItemCount(), 0);
    EXPECT_FALSE(form().StartConvButt.Enabled());
}

TEST_F(MainFrmTest, OptionsChangeTheWidthByTheFramesWidths) {
    const int main = form().MainFrame.Width(), options = form().MurmelixFrame.Width();
    EXPECT_EQ(form().Width(), main + 270);
    EXPECT_FALSE(form().MurmelixFrame.Enabled());
    EXPECT_TRUE(fakes::click(form().ReadOptnsButt));
    EXPECT_EQ(form().Width(), options + main + 135 + 270);
    EXPECT_EQ(form().ReadOptnsButt.Caption(), u"<- Hide &Options");
    for (const ui::Frame* frame :
         {&form().MurmelixFrame, &form().CharFrame, &form().ReadTextFrame, &form().EmotReadingFrame}) {
        EXPECT_TRUE(frame->Enabled());
    }
    EXPECT_TRUE(fakes::click(form().ReadOptnsButt));
    EXPECT_EQ(form().Width(), main + 270);
    EXPECT_EQ(form().ReadOptnsButt.Caption(), u"Show &Options ->");
    EXPECT_FALSE(form().EmotReadingFrame.Enabled());
}

TEST_F(MainFrmTest, HidingTheOptionsGoesBackToWhereTheWindowStood) {
    MainFrm& f = form();
    const int width = f.Place().width;
    const ui::Rect home{1024 - width, 90, width, f.Place().height};
    f.setPlace(home);
    showOptions();
    EXPECT_LT(f.Place().left, home.left) << "the options have no room at its right";
    ASSERT_TRUE(lastPlace());
    EXPECT_EQ(lastPlace()->left, home.left) << "where it is at home";
    f.ReadOptnsButt_Click();
    EXPECT_EQ(f.Place(), home);
    // Where the user moves it meanwhile it stays.
    showOptions();
    f.setPlace({7, 60, f.Place().width, f.Place().height});
    f.ReadOptnsButt_Click();
    EXPECT_EQ(f.Place(), (ui::Rect{7, 60, home.width, home.height}));
    // A sign-out hides them as well.
    f.setPlace(home);
    showOptions();
    f.ShowSignOut();
    EXPECT_EQ(f.Place(), home);
}

TEST_F(MainFrmTest, EveryControlIsInsideItsFrameAtEveryResolution) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0, 7.5}) {
        fakes::screen() = {};
        fakes::screen().twips_per_pixel = twips_per_pixel;
        MainFormLoaded = 0;
        Loader another;
        another.Main();
        MainFrm& f = another.MainFrm();
        f.ReadOptnsButt_Click();
        for (const ui::Frame* frame :
             {&f.SignOutFrame, &f.MainFrame, &f.MurmelixFrame, &f.CharFrame, &f.ReadTextFrame, &f.EmotReadingFrame}) {
            EXPECT_LE(frame->Left() + frame->Width(), f.ScaleWidth()) << twips_per_pixel;
            for (const ui::Control* control : frame->Children()) {
                EXPECT_GE(control->Left(), 0);
                EXPECT_LE(control->Left() + control->Width(), frame->Width());
                EXPECT_LE(control->Top() + control->Height(), frame->Height());
            }
        }
    }
}

TEST_F(MainFrmTest, OptionsAskedForWhileSignedOutAreHiddenByTheNextClick) {
    form().ShowSignOut();
    const int width = form().Width();
    form().ReadOptnsButt_Click();
    EXPECT_EQ(form().Width(), width);
    EXPECT_EQ(form().ReadOptnsButt.Caption(), u"Show &Options ->");
    EXPECT_NE(form().OptionsShown, 0);
    form().ShowSignOut(false);
    form().ReadOptnsButt_Click();
    EXPECT_EQ(form().Width(), width);
    EXPECT_EQ(form().OptionsShown, 0);
    EXPECT_FALSE(form().MurmelixFrame.Enabled());
}

TEST_F(MainFrmTest, SignOutClearsTheListHidesTheOptionsAndTheNotices) {
    openConversation(7);
    showOptions();
    fakes::messenger().events.OnSignout();
    EXPECT_EQ(SettingsKeyPath, u"");
    EXPECT_EQ(ShowMinimizeFrm, 0);
    EXPECT_EQ(ShowTipFrm, 0);
    EXPECT_EQ(ShowEmotTipFrm, 0);
    EXPECT_EQ(form().ConversationsList.GetItemCount(), 0);
    EXPECT_EQ(form().OptionsShown, 0);
    EXPECT_EQ(form().Width(), form().MainFrame.Width() + 270);
    EXPECT_TRUE(form().SignOutFrame.Visible());
    EXPECT_EQ(stored("ShowTipFrm"), "1") << "nothing is written";
}

TEST_F(MainFrmTest, SignOutGoesStepByStep) {
    for (int handle = 1; handle <= 40; ++handle) {
        openConversation(handle);
    }
    showOptions();
    form().SoundSchemeList.SetFocus();
    const int options = form().Width();
    std::vector<std::string> steps;
    const auto step = [&](const std::string& what) {
        steps.push_back(what + (SettingsKeyPath.empty() && !ShowTipFrm ? "" : ", of an account") +
                        (form().ConversationsList.GetItemCount() > 0 ? ", with rows" : "") +
                        (form().Width() == options ? ", with options" : "") +
                        (form().SignOutFrame.Visible() ? ", behind the panel" : ""));
    };
    form().ConversationsList.Scroll.Change = [&] { step("no rows to scroll"); };
    form().ConversationsList.P.GotFocus = [&] { step("focus away from the options"); };
    form().SignInButt.GotFocus = [&] { step("focus on the panel"); };
    fakes::messenger().events.OnSignout();
    EXPECT_THAT(steps, ElementsAre("no rows to scroll, with options", "focus away from the options",
                                   "focus on the panel, behind the panel"));
}

TEST_F(MainFrmTest, PanelKeepsWhatItCoversFromTheKeyboard) {
    openConversation(7);
    fakes::messenger().events.OnSignout();
    EXPECT_FALSE(fakes::click(form().StartConvButt));
    const int calls = fakes::messenger().signin_calls;
    EXPECT_TRUE(form().onMnemonicKey(u's'));
    EXPECT_EQ(fakes::messenger().signin_calls, calls + 1);
}

TEST_F(MainFrmTest, AcceleratorStartsTheReading) {
    openConversation(7);
    EXPECT_TRUE(form().onMnemonicKey(u's'));
    EXPECT_NE(IsReadingConversation, 0);
}

TEST_F(MainFrmTest, SignInWhileReadingLeavesTheWindowAsAfterAStop) {
    showOptions();
    startReading();
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(ReadingWindowHandle, 0);
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    EXPECT_EQ(form().ReadingWindowTop, 0);
    EXPECT_EQ(form().ReadingWindowLeft, 0);
    EXPECT_TRUE(form().ConversationsList.EnabledIt());
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
    EXPECT_EQ(form().StartConvButt.Caption(), u"&Start Reading Selected Conversation");
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
}

TEST_F(MainFrmTest, SignOutLeavesHiddenOptionsHidden) {
    form().ShowSignOut();
    EXPECT_EQ(form().OptionsShown, 0);
    EXPECT_EQ(form().ReadOptnsButt.Caption(), u"Show &Options ->");
    EXPECT_EQ(form().Width(), form().MainFrame.Width() + 270);
    EXPECT_FALSE(form().MurmelixFrame.Enabled());
}

TEST_F(MainFrmTest, ContactThatWasRemovedSaysNothingMoreInThisReading) {
    const auto window = startReading();
    fakes::agent().events.Command(u"ann@xR%");
    EXPECT_FALSE(fakes::agent().characters.contains(u"ann@x"));
    EXPECT_TRUE(LoadedCharacterKeys.contains(u"ann@x")) << "it is not given another one";
    fakes::agent().calls.clear();
    fakes::agent().log.clear();
    window->say(u"Ann", u"hello");
    fakes::tick(form().ReadMoniter);
    for (const fakes::AgentCall& call : fakes::agent().calls) {
        EXPECT_NE(call.key, u"ann@x");
    }
    fakes::messenger().events.OnIMWindowContactAdded(window->contacts[0], window);
    EXPECT_THAT(fakes::agent().log, IsEmpty());
    const auto& calls = fakes::agent().calls;
    window->say(u"Bob", u"hello");
    fakes::tick(form().ReadMoniter);
    EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), [](const fakes::AgentCall& call) {
        return call.key == u"bob@x" && call.call == u"Speak";
    }));
}

TEST_F(MainFrmTest, SignOutEndsTheReading) {
    startReading();
    fakes::messenger().events.OnSignout();
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_FALSE(form().ReadMoniter.Enabled());
    EXPECT_FALSE(form().WindowResizeTimer.Enabled());
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
    EXPECT_TRUE(form().SignOutFrame.Visible());
}

TEST_F(MainFrmTest, FocusGoesToThePanelAndComesBackFromIt) {
    openConversation(7);
    form().StartConvButt.SetFocus();
    fakes::messenger().status = 1;
    fakes::messenger().events.OnSignout();
    EXPECT_EQ(form().focused(), &form().SignInButt);
    fakes::messenger().status = 2;
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(form().focused(), &form().ConversationsList.P);
}

TEST_F(MainFrmTest, OptionsAskedForWhileSignedOutAreHiddenByTheFirstClickAfterSignIn) {
    fakes::messenger().status = 1;
    fakes::messenger().events.OnSignout();
    form().ReadOptnsButt_Click();
    fakes::messenger().status = 2;
    fakes::messenger().events.OnSignin(0);
    EXPECT_TRUE(fakes::click(form().ReadOptnsButt));
    EXPECT_EQ(form().OptionsShown, 0);
    EXPECT_FALSE(form().MurmelixFrame.Enabled());
    EXPECT_EQ(form().Width(), form().MainFrame.Width() + 270);
    EXPECT_TRUE(fakes::click(form().ReadOptnsButt)) << "the click after that shows them";
    EXPECT_TRUE(form().MurmelixFrame.Enabled());
}

TEST_F(MainFrmTest, OptionsStayOpenWhenTheScreenChanges) {
    showOptions();
    fakes::screen().twips_per_pixel = 7.5;
    form().onSettingsChange();
    EXPECT_EQ(form().Width(), form().MurmelixFrame.Width() + form().MainFrame.Width() + 135 + 270);
    EXPECT_TRUE(form().MurmelixFrame.Enabled());
    const ui::Rect& pixels = fakes::screen().bounds[form().StartConvButt.handle()];
    EXPECT_EQ(pixels.height, form().StartConvButt.Height() * 2 / 15);
    EXPECT_GE(form().ConversationsList.ItemHeight(), 80);
    form().ReadOptnsButt_Click();
    form().onSettingsChange();
    EXPECT_EQ(form().Width(), form().MainFrame.Width() + 270);
}

TEST_F(MainFrmTest, HelpOpensTheSigninPage) {
    form().ShowSignOut();
    fakes::system().shell_calls.clear();
    EXPECT_TRUE(fakes::click(form().HelpButt));
    EXPECT_THAT(shellCalls(),
                ElementsAre(ShellCall{u"Open", u"http://www.example.org/Murmelix/help/signin.html", u"0", u"0"}));
}

TEST_F(MainFrmTest, SigninThatFailsIsSilent) {
    form().ShowSignOut();
    fakes::neighbours().gone = true;
    EXPECT_TRUE(fakes::click(form().SignInButt));
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(MainFrmTest, MonstrousNamesAreShownWhole) {
    fakes::messenger().friendly_name = std::u16string(10000, u'W') + u"((((";
    fakes::messenger().events.OnMyFriendlyNameChange(0, u"Me");
    EXPECT_EQ(form().MainFrame.Caption().size(), 10004 + std::u16string_view(u" - Online (0 Unread)").size());
}

} // namespace
} // namespace murmelix
