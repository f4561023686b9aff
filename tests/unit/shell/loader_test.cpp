#include "tests/unit/shell/shell_fixture.h"

#include <gmock/gmock.h>

namespace murmelix {
namespace {

using fakes::MessageBox;
using fakes::ShellCall;
using testing::ElementsAre;
using testing::IsEmpty;

class LoaderTest : public ShellTest {};

TEST_F(LoaderTest, SecondStartShowsTheBoxAndEndsWithoutRegistryOrTray) {
    fakes::system().previous_instance = true;
    EXPECT_FALSE(start());
    EXPECT_THAT(boxes(),
                ElementsAre(MessageBox{
                    u"Another copy of Murmelix is currently running.\r\nMurmelix could be minimized to your system "
                    u"tray (beside your Windows' clock icon). Double click on the Murmelix icon there to restore it",
                    64, u"Murmelix already running!"}));
    EXPECT_TRUE(fakes::system().ended);
    EXPECT_THAT(fakes::registry().log, IsEmpty());
    EXPECT_THAT(fakes::screen().tray_calls, IsEmpty());
    EXPECT_EQ(fakes::messenger().status_reads, 0);
}

TEST_F(LoaderTest, FirstStartSetsTheModuleVariables) {
    ASSERT_TRUE(start());
    EXPECT_EQ(WindowsDir, u"C:\\WINDOWS\\");
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\me@x");
    EXPECT_EQ(SoundsDir, u"C:\\Murmelix\\sounds\\");
    EXPECT_EQ(CharPicsDir, u"C:\\Murmelix\\CharPics");
    EXPECT_NE(MainFormLoaded, 0);
    EXPECT_EQ(LanguageTable.Count(), 31u);
    EXPECT_TRUE(fakes::state().agent.request_errors);
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(LoaderTest, StatusIsReadFiveTimesForTheKeyAndOnceForTheCaption) {
    ASSERT_TRUE(start());
    EXPECT_EQ(fakes::messenger().status_reads, 6);
}

TEST_F(LoaderTest, SignedOutStartWritesNothing) {
    for (const int status : {1, 0x100, 0x200, 0x300, 0x400}) {
        fakes::messenger().status = status;
        Loader another;
        MainFormLoaded = 0;
        another.Main();
        EXPECT_EQ(SettingsKeyPath, u"") << status;
        EXPECT_TRUE(another.MainFrm().SignOutFrame.Visible()) << status;
    }
    for (const std::string& line : fakes::registry().log) {
        EXPECT_FALSE(line.starts_with("set ") || line.starts_with("create ")) << line;
    }
}

TEST_F(LoaderTest, WindowsDirectoryIsCutAtTheNulAndEndsInABackslash) {
    for (const auto& [directory, expected] : {std::pair{"C:\\WINNT", u"C:\\WINNT\\"}, {"D:\\", u"D:\\"}}) {
        fakes::system().windows_directory = directory;
        loader.GetWindowsDir();
        EXPECT_EQ(WindowsDir, expected);
    }
}

TEST_F(LoaderTest, WindowsDirectoryThatCannotBeHadIsEmpty) {
    fakes::system().windows_directory.clear();
    loader.GetWindowsDir();
    EXPECT_EQ(WindowsDir, u"");
}

TEST_F(LoaderTest, WindowsDirectoryLongerThanFiftyCharactersLeavesABackslash) {
    fakes::system().windows_directory = "C:\\" + std::string(60, 'w');
    loader.GetWindowsDir();
    EXPECT_EQ(WindowsDir, u"\\");
}

TEST_F(LoaderTest, EmptyWindowsDirectoryLooksForTheCharactersInTheCurrentOne) {
    fakes::system().windows_directory.clear();
    fakes::system().directories = {u"msagent\\chars\\"};
    EXPECT_TRUE(start());
}

TEST_F(LoaderTest, MinWhileSignedOutStartsHiddenAlthoughZeroIsStored) {
    fakes::messenger().status = 1;
    fakes::registry().putText("", "AutoMinimize", "0");
    fakes::system().command_line = u"/Min";
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().Visible());
    EXPECT_NE(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Restore Murmelix");
    EXPECT_NE(AutoMinimize, 0);
    EXPECT_EQ(form().AutoMinimizeCheck.Value(), 1);
    EXPECT_EQ(fakes::registry().text("", "AutoMinimize"), "0");
}

TEST_F(LoaderTest, MinWhileSignedInLeavesItToTheStoredValue) {
    fakes::system().command_line = u"/Min";
    store("AutoMinimize", "0");
    ASSERT_TRUE(start());
    EXPECT_TRUE(form().Visible());
}

TEST_F(LoaderTest, StoredMinimizeHidesWithoutAnySwitch) {
    store("AutoMinimize", "1");
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().Visible());
    EXPECT_FALSE(form().MinimizeFrm) << "the notice is not shown at start";
}

TEST_F(LoaderTest, OtherCommandLinesDoNotMinimize) {
    fakes::messenger().status = 1;
    for (const char16_t* line : {u"/min", u"/MIN", u"/Min x", u"/Min/Min", u"-Min", u"\"/Min\"", u""}) {
        fakes::system().command_line = line;
        MainFormLoaded = 0;
        Loader another;
        another.Main();
        EXPECT_TRUE(another.MainFrm().Visible());
    }
}

TEST_F(LoaderTest, MissingAgentIsInstalledAndTheProgramEnds) {
    fakes::state().agent.installed = false;
    EXPECT_FALSE(start());
    EXPECT_THAT(boxes(),
                ElementsAre(MessageBox{u"Agent is not installed. Murmelix will now install it after you press the "
                                       u"'Ok' button. Please follow the setup.",
                                       16, u"Agent NOT installed"},
                            MessageBox{u"Speech Input will now be installed. Murmelix will install it after you press "
                                       u"the 'Ok' button. Please follow the setup.",
                                       16, u"Speech Engine NOT installed"},
                            MessageBox{u"Please make sure you restart your computer after both files are installed.",
                                       16, u"Please Restart"}));
    EXPECT_THAT(shellCalls(), ElementsAre(ShellCall{u"", u"C:\\Murmelix\\MSAGENT.exe", u"", u"C:\\Murmelix"},
                                          ShellCall{u"", u"C:\\Murmelix\\tv_enua.exe", u"", u"C:\\Murmelix"}));
    EXPECT_EQ(fakes::screen().tray_calls.size(), 1u);
    EXPECT_EQ(fakes::screen().tray_calls.front().message, ui::TrayMessage::remove);
    EXPECT_TRUE(fakes::system().ended);
}

const MessageBox speech_question{
    u"Speech Input is not installed or has been disabled. Please go to 'http://www.example.org/Murmelix/download/'. If "
    u"you have the speech engine installed, check the 'Play Spoken Audio' checkbox in the 'Character Options' window. "
    u"Would you like to view the 'Character Options' window now?",
    68, u"Speech Engine NOT Installed Or Disabled"};

TEST_F(LoaderTest, DisabledSpeechAnsweredNoEndsWithoutThePropertySheet) {
    fakes::state().agent.audio_output = false;
    fakes::messageBoxes().answers = {platform::answer_no};
    EXPECT_FALSE(start());
    EXPECT_THAT(boxes(), ElementsAre(speech_question));
    EXPECT_EQ(SpeechCheckAnswer, 7);
    EXPECT_FALSE(fakes::state().agent.property_sheet_visible);
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
}

TEST_F(LoaderTest, DisabledSpeechAnsweredYesShowsTheOutputPage) {
    fakes::state().agent.audio_output = false;
    fakes::messageBoxes().answers = {platform::answer_yes};
    EXPECT_FALSE(start());
    EXPECT_THAT(boxes(),
                ElementsAre(speech_question,
                            MessageBox{u"Please check the 'Play Spoken Audio' checkbox and Press the 'Ok' button. "
                                       u"After pressing the 'Ok' button, Murmelix will close itself. Please restart "
                                       u"your computer and then run Murmelix again.",
                                       64, u"Play Spoken Audio"}));
    EXPECT_EQ(SpeechCheckAnswer, 6);
    EXPECT_EQ(fakes::state().agent.property_page, u"Output");
    EXPECT_TRUE(fakes::state().agent.property_sheet_visible);
    EXPECT_TRUE(fakes::system().ended);
}

TEST_F(LoaderTest, MissingCharacterDirectoryEndsTheProgram) {
    fakes::system().directories.clear();
    EXPECT_FALSE(start());
    EXPECT_THAT(boxes(), ElementsAre(MessageBox{u"The character directory is not avaiable! Please reinstall Murmelix "
                                                u"to fix this problem!\r\nPlease restart your computer after the "
                                                u"installation",
                                                16, u"Character Directory not found!"}));
    EXPECT_EQ(MainFormLoaded, 0);
    ASSERT_EQ(fakes::screen().tray_calls.size(), 1U);
    EXPECT_EQ(fakes::screen().tray_calls.front().message, ui::TrayMessage::remove);
    EXPECT_TRUE(fakes::system().ended);
}

TEST_F(LoaderTest, MatchupsOfTheAccountAreLoaded) {
    SettingsKeyPath = u"Software\\Murmelix\\me@x";
    AddMatchup(u"ann@x", u"Bert");
    SettingsKeyPath = u"Software\\Murmelix\\other@x";
    AddMatchup(u"bob@x", u"Anna");
    Matchups.Clear();
    ASSERT_TRUE(start());
    ASSERT_EQ(Matchups.Count(), 1U);
    EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Bert");
    openConversation(7);
    form().StartConvButt_Click();
    EXPECT_EQ(fakes::agent().characters.at(u"ann@x")->name, u"Bert");
    fakes::messenger().signin_name = u"other@x";
    fakes::messenger().events.OnSignin(0);
    ASSERT_EQ(Matchups.Count(), 1U);
    EXPECT_EQ(GetMatchupCharacter(u"bob@x"), u"Anna");
}

TEST_F(LoaderTest, MinimizedStartShowsTheTipAndRunsTheUpdaterAllTheSame) {
    store("AutoMinimize", "1");
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().Visible());
    ASSERT_TRUE(form().TipFrm);
    EXPECT_TRUE(form().TipFrm->Visible());
    ASSERT_EQ(shellCalls().size(), 1U);
    EXPECT_EQ(shellCalls().front().file, u"C:\\Murmelix\\updater.exe");
}

TEST_F(LoaderTest, CharacterFilesThatCameLaterAreUsed) {
    ASSERT_TRUE(start());
    fakes::screen().files[u"C:\\WINDOWS\\msagent\\chars\\"] = {u"Aaron.acs", u"Anna.acs", u"Bert.acs"};
    fakes::agent().files[u"C:\\WINDOWS\\msagent\\chars\\Aaron.acs"] = {u"Aaron"};
    openConversation(7);
    form().StartConvButt_Click();
    EXPECT_EQ(fakes::agent().characters.at(u"ann@x")->name, u"Aaron");
    fakes::screen().files[u"C:\\WINDOWS\\msagent\\chars\\"] = {u"Bert.acs"};
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(form().CharzList.names(), std::vector<std::u16string>{u"Bert.acs"});
}

TEST_F(LoaderTest, FirstStartShowsTheWindowAddsTheIconAndRunsTheUpdater) {
    ASSERT_TRUE(start());
    EXPECT_EQ(form().Caption(), u"Murmelix v1.2.3");
    EXPECT_TRUE(form().Visible());
    EXPECT_EQ(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenu.Caption(), u"");
    EXPECT_FALSE(form().SystemMenu.Enabled());
    EXPECT_EQ(form().CharzList.ListIndex(), 0);
    ASSERT_EQ(fakes::screen().tray_calls.size(), 1u);
    EXPECT_EQ(fakes::screen().tray_calls.front().message, ui::TrayMessage::add);
    EXPECT_THAT(shellCalls(), ElementsAre(ShellCall{u"", u"C:\\Murmelix\\updater.exe",
                                                    u"http://www.example.org/Murmelix/download/", u"C:\\Murmelix"}));
    ASSERT_TRUE(form().TipFrm);
    EXPECT_TRUE(form().TipFrm->Visible());
}

TEST_F(LoaderTest, NoUpdaterWithoutTheOption) {
    store("AutoUpdate", "0");
    ASSERT_TRUE(start());
    EXPECT_THAT(shellCalls(), IsEmpty());
}

TEST_F(LoaderTest, SignInAppliesTheNewAccountWithoutASecondIconUpdateOrTable) {
    ASSERT_TRUE(start());
    form().TipFrm->OkButt_Click();
    LanguageTable.Clear();
    fakes::messenger().signin_name = u"other@x";
    fakes::registry().putText("Software\\Murmelix\\other@x", "AutoHideIdleChar", "1");
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\other@x");
    EXPECT_EQ(form().HideIdleCheck.Value(), 1);
    EXPECT_TRUE(form().TipFrm->Visible()) << "the tip is shown again";
    EXPECT_EQ(fakes::screen().tray_calls.size(), 1u);
    EXPECT_EQ(shellCalls().size(), 1u);
    EXPECT_EQ(LanguageTable.Count(), 0u);
    EXPECT_FALSE(form().SignOutFrame.Visible());
}

TEST_F(LoaderTest, SignInChecksTheMachineAgain) {
    ASSERT_TRUE(start());
    fakes::state().agent.audio_output = false;
    EXPECT_THROW(fakes::messenger().events.OnSignin(0), fakes::ProcessEnded);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes().front().title, u"Speech Engine NOT Installed Or Disabled");
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
}

TEST_F(LoaderTest, SignInMissesTheCharacterDirectory) {
    ASSERT_TRUE(start());
    fakes::system().directories.clear();
    EXPECT_THROW(fakes::messenger().events.OnSignin(0), fakes::ProcessEnded);
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes().front().title, u"Character Directory not found!");
}

TEST_F(LoaderTest, SignInWithStoredMinimizeHidesTheWindow) {
    ASSERT_TRUE(start());
    store("AutoMinimize", "1");
    fakes::messenger().events.OnSignin(0);
    EXPECT_FALSE(form().Visible());
    EXPECT_NE(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Restore Murmelix");
}

TEST_F(LoaderTest, SignInShowsAWindowThatWasInTheTray) {
    ASSERT_TRUE(start());
    form().MurmelixMenuMinimize_Click();
    fakes::messenger().events.OnSignin(0);
    EXPECT_TRUE(form().Visible());
    EXPECT_EQ(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Minimize Murmelix");
}

TEST_F(LoaderTest, FailedSignInShowsThePanelAndStopsReading) {
    ASSERT_TRUE(start());
    openConversation(1234);
    form().StartConvButt_Click();
    fakes::messenger().status = 1;
    fakes::messenger().events.OnSignin(-1);
    EXPECT_TRUE(form().SignOutFrame.Visible());
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
}

TEST_F(LoaderTest, MessengerThatComesBackSignedInIsMetAsASignIn) {
    ASSERT_TRUE(start());
    fakes::messenger().events.OnSignout(); // as it is told for one that ended without a word
    fakes::messenger().status = 1;
    fakes::messenger().events.Returned();
    EXPECT_TRUE(form().SignOutFrame.Visible()) << "nobody has signed in to it yet";
    EXPECT_EQ(SettingsKeyPath, u"");
    fakes::messenger().status = 2;
    fakes::messenger().signin_name = u"other@x";
    fakes::messenger().events.Returned();
    EXPECT_FALSE(form().SignOutFrame.Visible());
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\other@x");
}

TEST_F(LoaderTest, MessengerThatReturnsInTheMiddleOfASessionChangesNothing) {
    ASSERT_TRUE(start());
    openConversation(7);
    form().StartConvButt_Click();
    fakes::messenger().events.Returned();
    EXPECT_NE(IsReadingConversation, 0);
}

TEST_F(LoaderTest, MessengerThatTellsOfItsSignInWhileItIsJoinedIsMetOnce) {
    ASSERT_TRUE(start());
    fakes::messenger().events.OnSignout();
    int names_asked = 0;
    bool told = false;
    fakes::neighbours().during = [&](std::string_view call) {
        names_asked += call == "MySigninName" ? 1 : 0;
        if (call == "MyStatus" && !std::exchange(told, true)) {
            fakes::messenger().events.OnSignin(0);
        }
    };
    fakes::messenger().events.Returned();
    EXPECT_EQ(names_asked, 1) << "by the joining alone";
    EXPECT_FALSE(form().SignOutFrame.Visible());
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\me@x");
}

TEST_F(LoaderTest, SignInInTheMiddleOfABeginningBeginsOnceMoreAndTheNextOneOnce) {
    ASSERT_TRUE(start());
    int beginnings = 0, interruptions = 1;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "MySigninName") {
            ++beginnings;
            if (interruptions-- > 0) {
                fakes::messenger().events.OnSignin(0);
            }
        }
    };
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(beginnings, 2);
    beginnings = 0;
    fakes::messenger().events.OnSignin(0);
    EXPECT_EQ(beginnings, 1);
}

TEST_F(LoaderTest, SignInButtonJoinsAMessengerThatIsSignedInAlready) {
    fakes::messenger().status = 1;
    ASSERT_TRUE(start());
    fakes::messenger().status = 2; // its word of it went unheard
    EXPECT_TRUE(fakes::click(form().SignInButt));
    EXPECT_EQ(fakes::messenger().signin_calls, 1);
    EXPECT_FALSE(form().SignOutFrame.Visible());
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\me@x");
}

TEST_F(LoaderTest, SignInButtonLeavesThePanelUntilTheSignInIsTold) {
    fakes::messenger().status = 1;
    ASSERT_TRUE(start());
    EXPECT_TRUE(fakes::click(form().SignInButt));
    EXPECT_TRUE(form().SignOutFrame.Visible());
    fakes::messenger().status = 2;
    fakes::messenger().events.OnSignin(0);
    EXPECT_FALSE(form().SignOutFrame.Visible());
}

TEST_F(LoaderTest, ShutdownOfMessengerRemovesTheIconAndEnds) {
    ASSERT_TRUE(start());
    EXPECT_THROW(fakes::messenger().events.OnAppShutdown(), fakes::ProcessEnded);
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
}

TEST_F(LoaderTest, ShutdownOfAgentRemovesTheIconAndEnds) {
    ASSERT_TRUE(start());
    EXPECT_THROW(fakes::state().agent.events.Shutdown(), fakes::ProcessEnded);
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
}

TEST_F(LoaderTest, RestartOfAgentRemovesTheIconAndEnds) {
    ASSERT_TRUE(start());
    EXPECT_THROW(fakes::state().agent.events.Restart(), fakes::ProcessEnded);
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
}

TEST_F(LoaderTest, StartsWithAnUnwritableRegistry) {
    fakes::registry().unwritable = true;
    ASSERT_TRUE(start());
    EXPECT_EQ(form().UpdatesCheck.Value(), 1);
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(LoaderTest, AnyFailingCallOfANeighbourLeavesTheStartWhole) {
    for (int call = 1; call <= 12; ++call) {
        fakes::reset();
        fakes::screen() = {};
        fakes::neighbours().fail_at = call;
        MainFormLoaded = 0;
        Loader another;
        try {
            another.Main();
            EXPECT_NE(MainFormLoaded, 0) << call;
        } catch (const fakes::ProcessEnded&) {
            EXPECT_FALSE(boxes().empty()) << call; // Agent alone is worth an end, with its messages
        }
    }
}

TEST_F(LoaderTest, WindowComesWhereItWasLast) {
    const platform::KeptPlace kept(u"Software\\MurmelixWindows", u"MainFrm");
    kept.keep({130, 70, 1, 1});
    ASSERT_TRUE(start());
    const ui::Rect first = form().Place();
    EXPECT_EQ(first.left, 130);
    EXPECT_EQ(first.top, 70);
    EXPECT_GT(first.width, 1) << "its size is its own";
    form().setPlace({210, 90, first.width, first.height});
    EXPECT_EQ(kept.last(), (ui::Rect{210, 90, first.width, first.height}));
    form().Hide();
    form().setPlace({0, 0, first.width, first.height});
    EXPECT_EQ(kept.last(), (ui::Rect{210, 90, first.width, first.height})) << "nobody sees it there";
}

TEST_F(LoaderTest, WindowOffEveryScreenIsBroughtOntoOne) {
    const platform::KeptPlace kept(u"Software\\MurmelixWindows", u"MainFrm");
    kept.keep({-5000, 4000, 400, 300});
    ASSERT_TRUE(start());
    const ui::Rect place = form().Place();
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.top + place.height, 768);
}

} // namespace
} // namespace murmelix
