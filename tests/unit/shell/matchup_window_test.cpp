// The matchup window as the shell opens and closes it, and what a matchup made there does to the next reading.
#include "tests/unit/shell/shell_fixture.h"

#include <functional>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "tests/fakes/ui/drag_drop.h"
#include "ui/screen.h"

namespace murmelix {
namespace {

using fakes::MessageBox;
using testing::ElementsAre;
using testing::IsEmpty;

class MatchupWindowOfTheShell : public ShellTest {
  protected:
    MatchupWindowOfTheShell() {
        store("ShowTipFrm", "0");
        store("ShowEmotTipFrm", "0");
        fakes::messenger().contacts = {std::make_shared<fakes::Contact>(u"ann@x", u"Ann"),
                                       std::make_shared<fakes::Contact>(u"bob@x", u"Bob")};
        EXPECT_TRUE(start());
        form().ReadOptnsButt_Click();
    }
    // Presses the button; `what` happens while the window is open.
    void open(std::function<void()> what) {
        int opened = 0;
        fakes::screen().while_modal = [&](const ui::Form& shown) {
            ++opened;
            EXPECT_EQ(&shown, form().MatchupFrm.get());
            fill();
            what();
        };
        EXPECT_TRUE(fakes::click(form().CharMatchupButt));
        fakes::screen().while_modal = nullptr;
        EXPECT_EQ(opened, 1);
    }
    MatchupFrm& window() { return *form().MatchupFrm; }
    void fill() {
        for (int rounds = 0; window().ContactTimer.Enabled(); ++rounds) {
            ASSERT_LT(rounds, 100);
            fakes::tick(window().ContactTimer);
        }
    }
    void drag(int row, const std::u16string& character) {
        CoolListBox& to = window().MatchUpList.ListItems(window().MatchUpList.GetPositionFromKey(character));
        fakes::dragDrop().let_go = [&](const fakes::Drag& drag) { return fakes::drop(to.P, drag); };
        const double y = (row - 0.5) * window().ContactList.ItemHeight();
        fakes::dragMouse(window().ContactList.P, 5, y, 50, y);
    }
    static void signIn(const std::u16string& account) {
        fakes::messenger().status = 2;
        fakes::messenger().signin_name = account;
        fakes::messenger().events.OnSignin(0);
    }
};

TEST_F(MatchupWindowOfTheShell, OpensWheneverNothingIsRead) {
    for (int i = 0; i < 2; ++i) {
        open([&] {
            EXPECT_TRUE(window().Visible());
            EXPECT_EQ(window().ContactList.GetItemCount(), 2);
            EXPECT_TRUE(fakes::click(window().DoneButt));
        });
        EXPECT_FALSE(window().Visible());
    }
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(MatchupWindowOfTheShell, IsRefusedWhileReading) {
    openConversation(7);
    form().StartConvButt_Click();
    ASSERT_NE(IsReadingConversation, 0);
    EXPECT_TRUE(fakes::click(form().CharMatchupButt));
    EXPECT_THAT(boxes(),
                ElementsAre(MessageBox{u"There is a conversation currently being monitered for reading!\r\nYou can't "
                                       u"add/edit any matchups until you stop reading the current conversation!",
                                       16, u"Can't Add/Edit Matchup While In Conversation!"}));
    EXPECT_FALSE(form().MatchupFrm);
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
    form().StartConvButt_Click();
    open([&] { window().DoneButt_Click(); });
}

TEST_F(MatchupWindowOfTheShell, TraysRestoreItemWaits) {
    open([&] {
        EXPECT_FALSE(form().SystemMenuRestoreWindow.Enabled());
        const auto twips = static_cast<float>(ui::twipsPerPixel());
        form().SystemTrayPic_MouseMove(0, 0, 515 * twips, 0);
        EXPECT_TRUE(form().Visible()) << "a double click on the icon does nothing";
        EXPECT_EQ(form().MinimizedToTray, 0);
        window().DoneButt_Click();
    });
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
}

TEST_F(MatchupWindowOfTheShell, SignOutUnloadsItFirstOfAll) {
    open([&] {
        fakes::screen().hidden.clear();
        fakes::messenger().events.OnSignout();
        EXPECT_FALSE(window().Loaded());
        ASSERT_FALSE(fakes::screen().hidden.empty());
        EXPECT_EQ(fakes::screen().hidden.front(), window().handle());
    });
    EXPECT_TRUE(form().SignOutFrame.Visible());
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
}

TEST_F(MatchupWindowOfTheShell, SignOutInTheMiddleOfADragUnloadsIt) {
    open([&] {
        fakes::dragDrop().let_go = [&](const fakes::Drag&) {
            fakes::messenger().events.OnSignout();
            return ui::drop_none; // the button is let go over what is there instead
        };
        fakes::dragMouse(window().ContactList.P, 5, 5, 50, 5);
        EXPECT_FALSE(window().Loaded());
    });
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(MatchupWindowOfTheShell, SignOutInTheMiddleOfEveryCallUnloadsIt) {
    for (int at = 1; at <= 2 + 2 * 3; ++at) {
        signIn(u"me@x");
        if (!form().OptionsShown) {
            form().ReadOptnsButt_Click();
        }
        int calls = 0;
        fakes::screen().while_modal = [&](const ui::Form&) {
            fakes::neighbours().during = [&](std::string_view) {
                if (++calls == at) {
                    fakes::messenger().events.OnSignout();
                }
            };
            fill();
            fakes::neighbours().during = nullptr;
            EXPECT_FALSE(window().Loaded()) << at;
        };
        EXPECT_TRUE(fakes::click(form().CharMatchupButt)) << at;
        EXPECT_TRUE(calls >= at && calls <= at + 2) << "no further contact is asked for";
        EXPECT_FALSE(window().ContactTimer.Enabled());
    }
    fakes::screen().while_modal = nullptr;
}

TEST_F(MatchupWindowOfTheShell, SignInOfAnotherAccountShowsItsMatchups) {
    fakes::registry().putText("Software\\Murmelix\\other@x\\Matchup", "kxxJ\x82", "Anna"); // ann@x
    open([&] {
        drag(2, u"Bert");
        ASSERT_EQ(GetMatchupCharacter(u"bob@x"), u"Bert");
        signIn(u"other@x");
        fill();
        EXPECT_TRUE(window().Visible());
        ASSERT_EQ(window().ContactList.GetItemCount(), 1);
        EXPECT_EQ(window().ContactList.Item(1).Key, u"bob@x");
        EXPECT_EQ(window().MatchUpList.ListItems(1).GetItemCount(), 1);
        drag(1, u"Bert");
        window().DoneButt_Click();
    });
    EXPECT_EQ(fakes::registry().key("Software\\Murmelix\\other@x\\Matchup")->size(), 2U);
    EXPECT_EQ(fakes::registry().key(account_key + "\\Matchup")->size(), 1U);
}

TEST_F(MatchupWindowOfTheShell, FailedSignInUnloadsIt) {
    open([&] {
        fakes::messenger().status = 1;
        fakes::messenger().events.OnSignin(-1);
        EXPECT_FALSE(window().Loaded());
    });
    EXPECT_TRUE(form().SignOutFrame.Visible());
}

TEST_F(MatchupWindowOfTheShell, MatchupIsFoundByTheNextReading) {
    open([&] {
        drag(1, u"Bert");
        window().DoneButt_Click();
    });
    Matchups.Clear();
    signIn(u"me@x"); // as after a restart
    openConversation(7);
    form().StartConvButt_Click();
    ASSERT_TRUE(LoadedCharacters.contains(u"ann@x"));
    EXPECT_EQ(LoadedCharacters.Item(u"ann@x")->Name(), u"Bert");
    EXPECT_EQ(LoadedCharacters.Item(u"bob@x")->Name(), u"Anna");
}

TEST_F(MatchupWindowOfTheShell, ExitFromTheTrayEndsTheProgram) {
    open([&] { EXPECT_THROW(fakes::choose(form().SystemMenuExitMurmelix), fakes::ProcessEnded); });
}

} // namespace
} // namespace murmelix
