#include "tests/unit/shell/shell_fixture.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace murmelix {
namespace {

using fakes::ShellCall;

class NoticesTest : public ShellTest {};

TEST_F(NoticesTest, TextsAreTheGivenOnes) {
    MinimizeFrm minimize(nullptr);
    EXPECT_EQ(minimize.Caption(), u"Minimize Murmelix alert");
    EXPECT_EQ(minimize.Label1.Caption(),
              u"Murmelix will be minimized to your system tray and will still read your conversations.");
    EXPECT_EQ(minimize.Label2.Caption(), u"To restore Murmelix, simply double click it's icon in your system tray "
                                         u"(beside your system clock).");
    EXPECT_EQ(minimize.NeverShowMessAgainCheck.Caption(), u"&Never show this message again");
    EXPECT_EQ(minimize.NeverShowMessAgainCheck.ToolTipText(),
              u"Disable showing this window the next time you minimize Murmelix");

    TipFrm tip(nullptr);
    EXPECT_EQ(tip.Caption(), u"Getting Started");
    EXPECT_EQ(tip.WelcomeLbl.Caption(), u"Welcome to Murmelix.");
    EXPECT_EQ(tip.TipInfoLbl.Caption(),
              u"To use Murmelix, simply select the conversation you would like Murmelix to read to you and click on "
              u"the 'Start Reading Conversation' button. It's that easy!");
    EXPECT_EQ(tip.LiveDemoLbl.Caption(), u"Click here to see a live demo");
    EXPECT_EQ(tip.NeverShowMessAgainCheck.Caption(), u"&Never show this tip again");
    EXPECT_EQ(tip.NeverShowMessAgainCheck.ToolTipText(),
              u"Disable showing this tip everytime you are logged in to this account");

    TipEmotFrm emoticons(nullptr);
    EXPECT_EQ(emoticons.Caption(), u"Emoticons into Voice");
    EXPECT_EQ(emoticons.WelcomeLbl.Caption(), u"Translate Emoticons Into Fun Sounds");
    EXPECT_EQ(emoticons.TipInfoLbl.Caption(),
              u"Translate the emoticons you receive from your friends into fun sounds. This is the best part about "
              u"Murmelix. It's easy to do. Click the link below to learn how to do that.");
    EXPECT_EQ(emoticons.LiveDemoLbl.Caption(), u"Click here to hear fun sounds");
}

TEST_F(NoticesTest, TickedBoxAndOkWriteZeroForThisAccountAlone) {
    ASSERT_TRUE(start());
    TipFrm& tip = *form().TipFrm;
    EXPECT_TRUE(fakes::click(tip.NeverShowMessAgainCheck));
    EXPECT_EQ(stored("ShowTipFrm"), "1") << "only OK writes";
    EXPECT_TRUE(fakes::click(tip.OkButt));
    EXPECT_EQ(stored("ShowTipFrm"), "0");
    EXPECT_EQ(ShowTipFrm, 0);
    EXPECT_FALSE(tip.Visible());

    fakes::messenger().events.OnSignin(0);
    EXPECT_FALSE(tip.Visible());
    fakes::messenger().signin_name = u"other@x";
    fakes::messenger().events.OnSignin(0);
    EXPECT_TRUE(tip.Visible());
    EXPECT_EQ(tip.NeverShowMessAgainCheck.Value(), 0) << "a new notice";
}

TEST_F(NoticesTest, ClearBoxAndOkWriteOne) {
    ASSERT_TRUE(start());
    ShowTipFrm = 0;
    fakes::click(form().TipFrm->OkButt);
    EXPECT_EQ(stored("ShowTipFrm"), "1");
    EXPECT_EQ(ShowTipFrm, 1);
}

TEST_F(NoticesTest, EveryNoticeWritesItsOwnSetting) {
    ASSERT_TRUE(start());
    MinimizeFrm minimize(nullptr);
    TipFrm tip(nullptr);
    TipEmotFrm emoticons(nullptr);
    struct Row {
        NoticeFrm& notice;
        const char* name;
        std::int16_t& flag;
    };
    for (const Row& row : {Row{minimize, "ShowMinimizeFrm", ShowMinimizeFrm}, Row{tip, "ShowTipFrm", ShowTipFrm},
                           Row{emoticons, "ShowEmotTipFrm", ShowEmotTipFrm}}) {
        row.notice.Show();
        EXPECT_TRUE(row.notice.onMnemonicKey(u'n'));
        EXPECT_EQ(stored(row.name), "1") << row.name << ": OK alone writes";
        EXPECT_TRUE(row.notice.onKey(ui::Key::enter, false)) << "on the box Enter is OK";
        EXPECT_EQ(stored(row.name), "0");
        EXPECT_EQ(row.flag, 0) << row.name;
        row.notice.Show();
        EXPECT_EQ(row.notice.NeverShowMessAgainCheck.Value(), 0);
        row.notice.OkButt_Click();
        EXPECT_EQ(stored(row.name), "1");
        EXPECT_EQ(row.flag, 1) << row.name;
    }
}

TEST_F(NoticesTest, ClearBoxRevivesANoticeThatTheSignedOutStateSilenced) {
    ASSERT_TRUE(start());
    form().MurmelixMenuMinimize_Click();
    form().ShowSignOut();
    EXPECT_EQ(ShowMinimizeFrm, 0);
    const auto before = fakes::registry().log.size();
    form().MinimizeFrm->OkButt_Click();
    EXPECT_EQ(ShowMinimizeFrm, 1);
    EXPECT_EQ(fakes::registry().log.size(), before) << "nothing is written while signed out";
}

TEST_F(NoticesTest, EscapeDoesNotCloseANotice) {
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().TipFrm->onKey(ui::Key::escape, false));
    EXPECT_TRUE(form().TipFrm->Visible());
}

TEST_F(NoticesTest, AboutClosesOnEscapeAndOnAClickOnItsPicture) {
    AboutFRM about(nullptr);
    about.Show();
    EXPECT_TRUE(about.onKey(ui::Key::escape, false));
    EXPECT_FALSE(about.Visible());
    about.Show();
    about.AboutPic.onClick();
    EXPECT_FALSE(about.Visible());
    about.Show();
    about.onClose();
    EXPECT_FALSE(about.Visible());
    EXPECT_EQ(about.AboutPic.picture().name, u"picture_about");
}

TEST_F(NoticesTest, LinksOfTheAboutWindowAreTheSiteAndTheAddress) {
    AboutFRM about(nullptr);
    EXPECT_EQ(about.Label3.Caption(), u"http://www.example.org/Murmelix/");
    EXPECT_EQ(about.Label9.Caption(), u"support@example.org");
}

TEST_F(NoticesTest, SignOutUnloadsTheWindowsInTheirOrder) {
    ASSERT_TRUE(start());
    openConversation(7);
    form().StartConvButt_Click(); // the emoticon tip
    form().MurmelixMenuMinimize_Click();
    std::vector<std::uintptr_t> unloaded;
    fakes::screen().while_modal = [&](const ui::Form&) {
        const auto handle = [](const ui::Form& window) { return window.handle(); };
        const std::vector<std::uintptr_t> wanted{handle(*form().AboutFRM), handle(*form().MinimizeFrm),
                                                 handle(*form().TipFrm), handle(*form().TipEmotFrm)};
        fakes::screen().hidden.clear();
        fakes::messenger().events.OnSignout();
        for (const std::uintptr_t hidden : fakes::screen().hidden) {
            if (std::find(wanted.begin(), wanted.end(), hidden) != wanted.end()) {
                unloaded.push_back(hidden);
            }
        }
        EXPECT_EQ(unloaded, wanted);
    };
    fakes::choose(form().HelpMenuAbout);
    EXPECT_EQ(unloaded.size(), 4U);
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
}

TEST_F(NoticesTest, CloseBoxIsRefused) {
    ASSERT_TRUE(start());
    form().TipFrm->onClose();
    EXPECT_TRUE(form().TipFrm->Visible());
    EXPECT_TRUE(form().TipFrm->Loaded());
}

TEST_F(NoticesTest, NoneIsShownAndNothingWrittenWhileSignedOut) {
    fakes::messenger().status = 1;
    ASSERT_TRUE(start());
    EXPECT_FALSE(form().TipFrm);
    form().MurmelixMenuMinimize_Click();
    form().SystemMenuRestoreWindow_Click();
    form().SystemMenuRestoreWindow_Click();
    EXPECT_FALSE(form().MinimizeFrm);
}

TEST_F(NoticesTest, LinksOpenTheirPages) {
    ASSERT_TRUE(start());
    fakes::system().shell_calls.clear();
    fakes::click(form().TipFrm->LiveDemoLbl);
    TipEmotFrm emoticons(nullptr);
    emoticons.LiveDemoLbl_Click();
    EXPECT_THAT(
        shellCalls(),
        testing::ElementsAre(ShellCall{u"Open", u"http://www.example.org/Murmelix/help/livedemo.html", u"0", u"0"},
                             ShellCall{u"Open", u"http://www.example.org/Murmelix/help/emoticons.html", u"0", u"0"}));
}

TEST_F(NoticesTest, SignOutUnloadsThem) {
    ASSERT_TRUE(start());
    fakes::messenger().events.OnSignout();
    EXPECT_FALSE(form().TipFrm->Loaded());
    EXPECT_FALSE(form().TipFrm->Visible());
    EXPECT_TRUE(form().SignOutFrame.Visible());
}

TEST_F(NoticesTest, AboutShowsTheVersionAndOpensSiteAndMail) {
    ASSERT_TRUE(start());
    fakes::system().shell_calls.clear();
    bool restore_enabled = true;
    fakes::screen().while_modal = [&](const ui::Form& shown) {
        EXPECT_EQ(shown.Caption(), u"About Murmelix");
        restore_enabled = form().SystemMenuRestoreWindow.Enabled();
        AboutFRM& about = *form().AboutFRM;
        EXPECT_EQ(about.Label5.Caption(), u"Murmelix");
        EXPECT_EQ(about.Label6.Caption(), u"Version:");
        EXPECT_EQ(about.VersionText.Caption(), u"1.2.3");
        EXPECT_EQ(about.Label7.Caption(), u"Webpage:");
        fakes::click(about.Label3);
        fakes::click(about.Label9);
        about.onClick();
        EXPECT_FALSE(about.Visible());
    };
    fakes::choose(form().HelpMenuAbout);
    EXPECT_FALSE(restore_enabled);
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
    EXPECT_THAT(shellCalls(), testing::ElementsAre(ShellCall{u"Open", u"http://www.example.org/Murmelix/", u"0", u"0"},
                                                   ShellCall{u"Open", u"mailto:support@example.org", u"0", u"0"}));
}

} // namespace
} // namespace murmelix
