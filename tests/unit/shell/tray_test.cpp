#include "tests/unit/shell/shell_fixture.h"

#include <cstring>

#include <gmock/gmock.h>

namespace murmelix {
namespace {

using fakes::MessageBox;
using fakes::ShellCall;
using testing::ElementsAre;

class TrayTest : public ShellTest {
  protected:
    // As the shell sends it: the message's number as the horizontal place in pixels.
    void iconMessage(int number) { form().SystemTrayPic.MouseMove(1, 0, number, 0); }
};

TEST_F(TrayTest, RecordIsTheGivenOne) {
    ASSERT_TRUE(start());
    const ui::TrayIconRecord& record = fakes::screen().tray_calls.front().record;
    EXPECT_EQ(record.size, 88u);
    EXPECT_EQ(record.owner, &form().SystemTrayPic);
    EXPECT_EQ(record.id, 1u);
    EXPECT_EQ(record.flags, 7u);
    EXPECT_EQ(record.callback_message, 512u);
    EXPECT_EQ(record.icon, form().SystemTrayPic.picture());
    EXPECT_STREQ(record.tip.data(), "Double click here to restore Murmelix's window");
    EXPECT_EQ(std::memchr(record.tip.data(), 0, record.tip.size()), record.tip.data() + 46);
}

TEST_F(TrayTest, RightClickShowsTheMenuWithStopOnlyWhileReading) {
    ASSERT_TRUE(start());
    iconMessage(516);
    EXPECT_THAT(fakes::screen().popups, ElementsAre(&form().SystemMenu));
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
    openConversation(5);
    form().StartConvButt_Click();
    EXPECT_TRUE(form().SystemMenuStopReadingConver.Enabled());
    fakes::choose(form().SystemMenuStopReadingConver);
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_FALSE(form().SystemMenuStopReadingConver.Enabled());
}

TEST_F(TrayTest, OnlyTheTwoMessagesDoAnything) {
    ASSERT_TRUE(start());
    for (int message = 0x200; message <= 0x20E; ++message) {
        if (message != 515 && message != 516) {
            iconMessage(message);
        }
    }
    EXPECT_TRUE(form().Visible());
    EXPECT_THAT(fakes::screen().popups, testing::IsEmpty());
}

TEST_F(TrayTest, MessagesAreDecodedAtEveryResolution) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0, 7.5}) {
        fakes::screen() = {};
        fakes::screen().twips_per_pixel = twips_per_pixel;
        MainFormLoaded = 0;
        Loader another;
        another.Main();
        another.MainFrm().SystemTrayPic.MouseMove(1, 0, 515, 0);
        EXPECT_FALSE(another.MainFrm().Visible()) << twips_per_pixel;
        another.MainFrm().SystemTrayPic.MouseMove(1, 0, 516, 0);
        EXPECT_EQ(fakes::screen().popups.size(), 1u) << twips_per_pixel;
    }
}

TEST_F(TrayTest, DoubleClickTogglesAndTheCaptionNamesTheNextStep) {
    ASSERT_TRUE(start());
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Minimize Murmelix");
    iconMessage(515);
    EXPECT_FALSE(form().Visible());
    EXPECT_NE(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Restore Murmelix");
    EXPECT_TRUE(form().MinimizeFrm->Visible());
    iconMessage(515);
    EXPECT_TRUE(form().Visible());
    EXPECT_EQ(form().MinimizedToTray, 0);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Minimize Murmelix");
}

TEST_F(TrayTest, DoubleClickDoesNothingWhileTheRestoreItemIsDisabled) {
    ASSERT_TRUE(start());
    form().SystemMenuRestoreWindow.setEnabled(false);
    iconMessage(515);
    EXPECT_TRUE(form().Visible());
    EXPECT_EQ(form().MinimizedToTray, 0);
}

TEST_F(TrayTest, DoubleClickDoesNothingWhileTheAboutWindowIsOpen) {
    ASSERT_TRUE(start());
    fakes::screen().while_modal = [&](const ui::Form&) {
        iconMessage(515);
        EXPECT_TRUE(form().Visible());
        EXPECT_FALSE(fakes::choose(form().SystemMenuRestoreWindow));
        EXPECT_EQ(form().MinimizedToTray, 0);
    };
    fakes::choose(form().HelpMenuAbout);
    iconMessage(515);
    EXPECT_FALSE(form().Visible()) << "afterwards it hides the window again";
}

TEST_F(TrayTest, SingleLeftClickDoesNothing) {
    ASSERT_TRUE(start());
    iconMessage(513);
    iconMessage(514);
    EXPECT_TRUE(form().Visible());
    EXPECT_TRUE(fakes::screen().popups.empty());
}

TEST_F(TrayTest, MinimizedStartShowsNoNoticeAndTheIconRestores) {
    store("AutoMinimize", "1");
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().MinimizeFrm);
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Restore Murmelix");
    iconMessage(515);
    EXPECT_TRUE(form().Visible());
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Minimize Murmelix");
}

TEST_F(TrayTest, CloseBoxHidesShowsTheNoticeAndKeepsRunning) {
    ASSERT_TRUE(start());
    form().onClose();
    EXPECT_FALSE(form().Visible());
    EXPECT_NE(form().MinimizedToTray, 0);
    EXPECT_TRUE(form().MinimizeFrm->Visible());
    EXPECT_EQ(form().SystemMenuRestoreWindow.Caption(), u"&Restore Murmelix");
    EXPECT_FALSE(fakes::system().ended);
}

TEST_F(TrayTest, MenuItemShowsTheNoticeOnlyWithAnAccountTheTrayAlwaysAsksTheFlagAlone) {
    fakes::messenger().status = 1;
    ASSERT_TRUE(start());
    ShowMinimizeFrm = 1;
    fakes::choose(form().MurmelixMenuMinimize);
    EXPECT_FALSE(form().MinimizeFrm);
    iconMessage(515);
    iconMessage(515);
    ASSERT_TRUE(form().MinimizeFrm);
    EXPECT_TRUE(form().MinimizeFrm->Visible());
}

TEST_F(TrayTest, ExitWithoutReadingEndsAtOnce) {
    ASSERT_TRUE(start());
    EXPECT_THROW(fakes::choose(form().MurmelixMenuExit), fakes::ProcessEnded);
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(fakes::screen().tray_calls.back().message, ui::TrayMessage::remove);
    EXPECT_EQ(fakes::screen().tray_calls.back().record.id, 1u);
}

TEST_F(TrayTest, ExitWhileReadingAsks) {
    ASSERT_TRUE(start());
    openConversation(5);
    form().StartConvButt_Click();
    constexpr int not_shown = 0; // for want of memory
    fakes::messageBoxes().answers = {not_shown, platform::answer_no, platform::answer_yes};
    fakes::choose(form().SystemMenuExitMurmelix);
    EXPECT_FALSE(fakes::system().ended);
    fakes::messageBoxes().shown.clear();
    fakes::choose(form().SystemMenuExitMurmelix);
    EXPECT_THAT(boxes(), ElementsAre(MessageBox{u"There is a conversation currently being monitered for reading. Close "
                                                u"Murmelix anyway?",
                                                20, u"Closing Murmelix"}));
    EXPECT_FALSE(fakes::system().ended);
    EXPECT_NE(IsReadingConversation, 0);
    EXPECT_THROW(fakes::choose(form().MurmelixMenuExit), fakes::ProcessEnded);
}

TEST_F(TrayTest, MenusAreTheGivenOnes) {
    ASSERT_TRUE(start());
    std::vector<std::u16string> captions;
    for (const ui::Menu* menu : form().menus()) {
        captions.push_back(u"[" + menu->Caption() + u"]");
        for (const ui::MenuItem* item : menu->items()) {
            captions.push_back(item->Caption());
        }
    }
    EXPECT_THAT(captions, ElementsAre(u"[&Murmelix]", u"&Minimize to System Tray", u"-", u"&Get More Characters",
                                      u"Get More &Languages && Voices", u"-", u"E&xit Murmelix", u"[&Help]",
                                      u"&About Murmelix...", u"-", u"&Learn Tips and Tricks", u"Find Hel&p on Website",
                                      u"-", u"&Tell a Friend About Murmelix", u"[]", u"&Minimize Murmelix", u"-",
                                      u"&Stop Reading Conversation", u"-", u"E&xit Murmelix"));
}

TEST_F(TrayTest, EveryItemButSeparatorsHasAPicture) {
    std::vector<std::u16string> pictures;
    ASSERT_TRUE(start());
    for (const ui::Menu* menu : form().menus()) {
        for (const ui::MenuItem* item : menu->items()) {
            EXPECT_EQ(static_cast<bool>(item->picture()), !item->separator());
            pictures.push_back(item->picture().name);
        }
    }
    EXPECT_THAT(pictures, testing::ElementsAre(u"menu_minimize", u"", u"menu_characters", u"menu_voices", u"",
                                               u"menu_exit", u"menu_about", u"", u"menu_tips", u"menu_help", u"",
                                               u"menu_friend", u"menu_restore", u"", u"menu_stop", u"", u"menu_exit"));
}

TEST_F(TrayTest, ItemsOpenTheirPages) {
    ASSERT_TRUE(start());
    fakes::system().shell_calls.clear();
    for (ui::MenuItem* item : {&form().MurmelixMenuGetMoreChars, &form().MurmelixMenuGetMoreLangVoice,
                               &form().HelpMenuTips, &form().HelpMenuHelp, &form().HelpMenuTellAFriend}) {
        fakes::choose(*item);
    }
    const auto page = [](const std::u16string& path) {
        return ShellCall{u"Open", u"http://www.example.org/Murmelix/" + path, u"0", u"0"};
    };
    EXPECT_THAT(shellCalls(), ElementsAre(page(u"download/d_characters.html"), page(u"download/langauges.html"),
                                          page(u"help/tips.html"), page(u"help/"), page(u"sendmail/")));
}

} // namespace
} // namespace murmelix
