// The matchup window: what it lists, and how contacts come to characters and back, by mouse and by keyboard.
#include "matchups/matchup_frm.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/shell_state.h"
#include "common/ansi.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/gif.h"
#include "tests/fakes/ui/drag_drop.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ui::Shortcut ctrl_x{u'X', ui::control_key}, ctrl_v{u'V', ui::control_key}, del{ui::Key::del},
    ctrl_up{ui::Key::up, ui::control_key}, ctrl_down{ui::Key::down, ui::control_key};

class MatchupWindow : public testing::Test {
  protected:
    MatchupWindow() {
        fakes::reset();
        fakes::screen() = {};
        fakes::dragDrop() = {};
        Matchups.Clear();
        SettingsKeyPath = u"Software\\Murmelix\\me@x";
        WindowsDir = u"C:\\WINDOWS\\";
        CharPicsDir = u"C:\\Murmelix\\CharPics";
        characters({u"Anna.acs", u"Bert.ACS", u"Max.acs"});
        messenger_ = platform::createMessengerApi({});
        renew();
    }
    ~MatchupWindow() override {
        form.reset();
        Matchups.Clear();
        SettingsKeyPath = WindowsDir = CharPicsDir = u"";
    }

    void renew() {
        form.reset();
        form = std::make_unique<MatchupFrm>(nullptr, *messenger_);
    }
    static void characters(const std::vector<std::u16string>& files) {
        fakes::screen().files[u"C:\\WINDOWS\\msagent\\chars\\"] = files;
    }
    static void contact(const std::u16string& signin_name, const std::u16string& friendly_name) {
        fakes::messenger().contacts.push_back(std::make_shared<fakes::Contact>(signin_name, friendly_name));
    }
    static void threeContacts() {
        contact(u"ann@x", u"Ann");
        contact(u"bob@x", u"Bob (at work)");
        contact(u"cyn@x", u"Cyn");
    }
    void open() {
        form->Show();
        fill();
    }
    // The contacts come in as the window is served.
    void fill() {
        for (int rounds = 0; form->ContactTimer.Enabled(); ++rounds) {
            ASSERT_LT(rounds, 10'000);
            fakes::tick(form->ContactTimer);
        }
    }

    static std::vector<std::u16string> keys(const CoolListBox& list) {
        std::vector<std::u16string> all;
        for (std::int16_t i = 1; i <= list.GetItemCount(); ++i) {
            all.push_back(list.Item(i).Key);
        }
        return all;
    }
    std::vector<std::u16string> contacts() { return keys(form->ContactList); }
    // That of a character, in view.
    CoolListBox& listOf(const std::u16string& character) {
        const std::int16_t position = form->MatchUpList.GetPositionFromKey(character);
        if (form->Visible()) {
            form->MatchUpList.ShowPanel(position);
            while (form->MatchUpList.Sliding()) {
                fakes::tick(form->MatchUpList.SlideTimer);
            }
        }
        return form->MatchUpList.ListItems(position);
    }
    std::vector<std::u16string> of(const std::u16string& character) { return keys(listOf(character)); }
    static std::optional<std::string> stored(const std::u16string& contact) {
        return fakes::registry().text("Software\\Murmelix\\me@x\\Matchup", toAnsi(ScrambleMatchupName(contact)));
    }
    // Drags a row of a list, the first one at 1, to another list.
    static ui::DropEffect drag(CoolListBox& from, int row, CoolListBox& to) {
        ui::DropEffect happened = ui::drop_none;
        fakes::dragDrop().let_go = [&](const fakes::Drag& drag) { return happened = fakes::drop(to.P, drag); };
        const double y = (row - 0.5) * from.ItemHeight();
        fakes::dragMouse(from.P, 5, y, 50, y);
        return happened;
    }
    static ui::DropEffect dropText(CoolListBox& to, const std::u16string& text) {
        fakes::Drag foreign{{}, ui::drop_move};
        foreign.data.SetText(text);
        return fakes::drop(to.P, foreign);
    }
    static bool press(CoolListBox& list, const ui::Shortcut& key) {
        list.P.SetFocus();
        return fakes::key(list.form(), key);
    }

    std::unique_ptr<MatchupFrm> form;

  private:
    std::unique_ptr<platform::MessengerApi> messenger_;
};

TEST_F(MatchupWindow, HasItsTitle) {
    EXPECT_EQ(form->Caption(), u"Character Matchup");
}

TEST_F(MatchupWindow, ListsContactsWithoutAMatchupAndAllCharacters) {
    threeContacts();
    open();
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x"));
    EXPECT_EQ(form->ContactList.Item(2).Caption, u"Bob");
    EXPECT_EQ(form->ContactList.Item(2).Text, u"");
    EXPECT_EQ(form->ContactList.Selected(), 1) << "the first row added to an empty list";
    ASSERT_EQ(form->MatchUpList.GetListCount(), 3);
    EXPECT_EQ(form->MatchUpList.ListFrame(1).Caption(), u"Anna");
    EXPECT_EQ(form->MatchUpList.ListFrame(2).Caption(), u"Bert");
    EXPECT_EQ(form->MatchUpList.ListFrame(3).Caption(), u"Max");
}

TEST_F(MatchupWindow, NeverListsAContactThatAlreadyHasAMatchup) {
    threeContacts();
    AddMatchup(u"bob@x", u"Max");
    open();
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x"));
    EXPECT_THAT(of(u"Max"), ElementsAre(u"bob@x"));
    EXPECT_EQ(listOf(u"Max").Item(1).Caption, u"Bob");
}

TEST_F(MatchupWindow, ContactThatTheClientDoesNotKnowIsShownByItsSignInName) {
    AddMatchup(u"gone@x", u"Max");
    open();
    EXPECT_EQ(listOf(u"Max").Item(1).Caption, u"gone@x");
}

TEST_F(MatchupWindow, MatchedCharacterThatIsNotInstalledHasAPanel) {
    AddMatchup(u"ann@x", u"Gone");
    open();
    EXPECT_EQ(form->MatchUpList.GetListCount(), 4);
    EXPECT_THAT(of(u"Gone"), ElementsAre(u"ann@x"));
}

TEST_F(MatchupWindow, NoInstalledCharactersShowTwoPlaceholders) {
    characters({});
    open();
    ASSERT_EQ(form->MatchUpList.GetListCount(), 2);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u"Empty1"), 1);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u"Empty2"), 2);
    for (const std::int16_t position : {std::int16_t{1}, std::int16_t{2}}) {
        EXPECT_EQ(form->MatchUpList.ListFrame(position).Caption(), u"");
        EXPECT_FALSE(form->MatchUpList.ListFrame(position).Enabled());
    }
}

TEST_F(MatchupWindow, OneInstalledCharacterIsShownWithAnEmptyPlaceholder) {
    characters({u"Max.acs"});
    open();
    ASSERT_EQ(form->MatchUpList.GetListCount(), 2);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u"Max"), 1);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u""), 2);
    EXPECT_FALSE(form->MatchUpList.ListFrame(2).Enabled());
}

TEST_F(MatchupWindow, OneCharacterOfAMatchupCountsAsARow) {
    characters({});
    AddMatchup(u"ann@x", u"Gone");
    open();
    ASSERT_EQ(form->MatchUpList.GetListCount(), 2);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u"Gone"), 1);
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u""), 2);
}

TEST_F(MatchupWindow, CharacterWithoutACachedPictureIsListedWithAnEmptyPath) {
    fakes::files().content[u"C:\\Murmelix\\CharPics\\Max.gif"] = fakes::plainGif(4, 4, "\xFF\xFF\xFF");
    open();
    EXPECT_TRUE(form->MatchUpList.ItemImage(1).Enabled()) << "blank, to be fetched by a click";
    EXPECT_FALSE(form->MatchUpList.ItemImage(3).Enabled());
}

TEST_F(MatchupWindow, FileThatIsNothingButItsEndingIsNoCharacter) {
    characters({u".acs", u"Max.acs"});
    open();
    EXPECT_EQ(form->MatchUpList.GetPositionFromKey(u"Max"), 1);
}

TEST_F(MatchupWindow, ContactDraggedOntoACharacterIsMatched) {
    threeContacts();
    open();
    EXPECT_EQ(drag(form->ContactList, 2, listOf(u"Max")), ui::drop_move);
    EXPECT_EQ(GetMatchupCharacter(u"bob@x"), u"Max");
    EXPECT_EQ(stored(u"bob@x"), "Max");
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x"));
    EXPECT_THAT(of(u"Max"), ElementsAre(u"bob@x"));
    EXPECT_EQ(form->StatusLbl.Caption(), u"Max speaks for Bob from now on.");
}

TEST_F(MatchupWindow, ContactDraggedBackLosesItsMatchupAtOnce) {
    threeContacts();
    AddMatchup(u"bob@x", u"Max");
    open();
    ASSERT_EQ(stored(u"bob@x"), "Max");
    EXPECT_EQ(drag(listOf(u"Max"), 1, form->ContactList), ui::drop_move);
    EXPECT_FALSE(MatchupExists(u"bob@x"));
    EXPECT_EQ(stored(u"bob@x"), std::nullopt);
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x", u"bob@x"));
    EXPECT_EQ(form->ContactList.Item(3).Caption, u"Bob");
    EXPECT_EQ(form->ContactList.Selected(), 1) << "the list was not empty";
    EXPECT_THAT(of(u"Max"), IsEmpty());
}

TEST_F(MatchupWindow, ContactDraggedBackToAnEmptyListIsSelected) {
    contact(u"ann@x", u"Ann");
    AddMatchup(u"ann@x", u"Max");
    open();
    EXPECT_EQ(form->ContactList.NoItemCaption(),
              u"Every contact has a character[ENTER] [ENTER]Drag contacts back here to take them back");
    drag(listOf(u"Max"), 1, form->ContactList);
    EXPECT_EQ(form->ContactList.Selected(), 1);
}

TEST_F(MatchupWindow, ContactMovesFromOneCharacterToAnother) {
    contact(u"ann@x", u"Ann");
    AddMatchup(u"ann@x", u"Max");
    open();
    drag(listOf(u"Max"), 1, listOf(u"Anna"));
    EXPECT_EQ(stored(u"ann@x"), "Anna");
    EXPECT_THAT(of(u"Max"), IsEmpty());
    EXPECT_THAT(of(u"Anna"), ElementsAre(u"ann@x"));
    EXPECT_THAT(contacts(), IsEmpty());
}

TEST_F(MatchupWindow, DragThatIsCalledOffChangesNothing) {
    threeContacts();
    open();
    fakes::dragMouse(form->ContactList.P, 5, 5, 50, 5);
    ASSERT_EQ(fakes::dragDrop().drags.size(), 1U);
    EXPECT_EQ(fakes::dragDrop().drags[0].data.Text(), u"ann@x") << "the sign-in name is what is dragged";
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x"));
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(MatchupWindow, RowThatIsNotThereIsNotDragged) {
    open();
    fakes::dragMouse(form->ContactList.P, 5, 5, 50, 5);
    EXPECT_THAT(fakes::dragDrop().drags, IsEmpty());
}

TEST_F(MatchupWindow, DropOfNothingOrOfAStrangersTextOnTheContactsDoesNothing) {
    threeContacts();
    open();
    fakes::registry().log.clear();
    for (const std::u16string& text :
         {std::u16string(), std::u16string(u"some words"), std::u16string(1 << 20, u'x')}) {
        EXPECT_EQ(dropText(form->ContactList, text), ui::drop_none);
    }
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x"));
    EXPECT_THAT(fakes::registry().log, IsEmpty());
}

// It may be a contact that the client has not told of: it is taken, and stays listed in one place.
TEST_F(MatchupWindow, TextOfAnotherProgramIsMatchedMovedAndTakenBackLikeAContact) {
    threeContacts();
    open();
    EXPECT_NE(dropText(listOf(u"Max"), u"stranger@x"), ui::drop_none);
    EXPECT_EQ(stored(u"stranger@x"), "Max");
    EXPECT_NE(dropText(listOf(u"Anna"), u"stranger@x"), ui::drop_none);
    EXPECT_EQ(stored(u"stranger@x"), "Anna");
    EXPECT_THAT(of(u"Max"), IsEmpty());
    EXPECT_THAT(of(u"Anna"), ElementsAre(u"stranger@x"));
    drag(listOf(u"Anna"), 1, form->ContactList);
    EXPECT_EQ(stored(u"stranger@x"), std::nullopt);
    EXPECT_THAT(of(u"Anna"), IsEmpty());
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x", u"stranger@x"));
    drag(form->ContactList, 4, listOf(u"Bert"));
    EXPECT_EQ(stored(u"stranger@x"), "Bert");
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x"));
}

TEST_F(MatchupWindow, ContactDraggedHereByAnotherProgramIsMatchedAndTakenBack) {
    threeContacts();
    open();
    dropText(listOf(u"Max"), u"bob@x");
    EXPECT_EQ(stored(u"bob@x"), "Max");
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x"));
    dropText(form->ContactList, u"bob@x");
    dropText(form->ContactList, u"bob@x");
    EXPECT_EQ(stored(u"bob@x"), std::nullopt);
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x", u"bob@x"));
    EXPECT_THAT(of(u"Max"), IsEmpty());
}

TEST_F(MatchupWindow, DropOfAListedContactOnItsOwnListLeavesItThere) {
    threeContacts();
    open();
    drag(form->ContactList, 1, form->ContactList);
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x", u"cyn@x"));
}

TEST_F(MatchupWindow, RefusedDeletionLeavesNoMessage) {
    contact(u"ann@x", u"Ann");
    AddMatchup(u"ann@x", u"Max");
    open();
    fakes::registry().unwritable = true;
    drag(listOf(u"Max"), 1, form->ContactList);
    EXPECT_FALSE(MatchupExists(u"ann@x"));
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x"));
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
}

TEST_F(MatchupWindow, CloseBoxAndEscapeLeaveItOpenAndTellHowToLeave) {
    open();
    fakes::close(*form);
    EXPECT_TRUE(form->Visible());
    EXPECT_EQ(form->StatusLbl.Caption(), u"Press Done to close this window. Every change is stored already.");
    form->StatusLbl.setCaption(u"");
    EXPECT_TRUE(fakes::key(*form, {ui::Key::escape}));
    EXPECT_TRUE(form->Visible());
    EXPECT_NE(form->StatusLbl.Caption(), u"");
}

TEST_F(MatchupWindow, DoneButtonUnloadsIt) {
    open();
    EXPECT_TRUE(fakes::click(form->DoneButt));
    EXPECT_FALSE(form->Visible());
    EXPECT_FALSE(form->Loaded());
}

TEST_F(MatchupWindow, HelpButtonOpensItsPage) {
    open();
    EXPECT_TRUE(fakes::click(form->HelpButt));
    ASSERT_EQ(fakes::system().shell_calls.size(), 1U);
    EXPECT_EQ(fakes::system().shell_calls[0].verb, u"Open");
    EXPECT_EQ(fakes::system().shell_calls[0].file, u"http://www.example.org/Murmelix/help/matchup.html");
}

TEST_F(MatchupWindow, IsFilledAnewEachTimeItIsOpened) {
    threeContacts();
    open();
    drag(form->ContactList, 1, listOf(u"Max"));
    form->DoneButt_Click();
    fakes::messenger().contacts.pop_back();
    contact(u"dan@x", u"Dan");
    characters({u"Max.acs", u"Otto.acs"});
    open();
    EXPECT_THAT(contacts(), ElementsAre(u"bob@x", u"dan@x"));
    EXPECT_EQ(form->ContactList.Selected(), 1);
    EXPECT_EQ(form->MatchUpList.GetListCount(), 2);
    EXPECT_THAT(of(u"Max"), ElementsAre(u"ann@x"));
}

TEST_F(MatchupWindow, OtherAccountsMatchupsAreShownAfterItsSignIn) {
    threeContacts();
    AddMatchup(u"ann@x", u"Max");
    open();
    SettingsKeyPath = u"Software\\Murmelix\\other@x";
    LoadMatchups();
    fakes::messenger().contacts.clear();
    contact(u"ann@x", u"Ann");
    form->Refill();
    fill();
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x"));
    EXPECT_THAT(of(u"Max"), IsEmpty());
}

// A thousand contacts come in while the window is served.

TEST_F(MatchupWindow, AnswersWhileItsContactsComeIn) {
    for (int i = 0; i < 1000; ++i) {
        contact(u"c" + fromAnsi(std::to_string(i)) + u"@x", u"C");
    }
    form->Show();
    EXPECT_EQ(form->MatchUpList.GetListCount(), 3) << "the characters are there at once";
    EXPECT_EQ(fakes::neighbours().calls, 0);
    fakes::neighbours().during = [](std::string_view) { fakes::clock().microseconds += 2'000; };
    fakes::tick(form->ContactTimer);
    EXPECT_EQ(form->ContactList.GetItemCount(), 5) << "of three calls each, for 30 milliseconds";
    EXPECT_EQ(fakes::neighbours().calls, 2 + 3 * 5);
    fakes::neighbours().during = [](std::string_view) { fakes::clock().microseconds += 1'000'000; };
    fakes::tick(form->ContactTimer);
    EXPECT_EQ(form->ContactList.GetItemCount(), 6) << "slow ones come in as well";
    // One that is given away meanwhile is not listed again.
    EXPECT_EQ(drag(form->ContactList, 3, listOf(u"Max")), ui::drop_move);
    fill();
    EXPECT_EQ(form->ContactList.GetItemCount(), 999);
    EXPECT_THAT(of(u"Max"), ElementsAre(u"c2@x"));
}

TEST_F(MatchupWindow, MatchedContactsAreThereBeforeTheirNames) {
    threeContacts();
    AddMatchup(u"cyn@x", u"Max");
    AddMatchup(u"bob@x", u"Max");
    form->Show();
    EXPECT_THAT(of(u"Max"), ElementsAre(u"cyn@x", u"bob@x"));
    EXPECT_EQ(listOf(u"Max").Item(2).Caption, u"bob@x");
    fill();
    EXPECT_THAT(of(u"Max"), ElementsAre(u"cyn@x", u"bob@x"));
    EXPECT_EQ(listOf(u"Max").Item(2).Caption, u"Bob");
}

TEST_F(MatchupWindow, WaitsWhileAnotherCallIsUnderWay) {
    threeContacts();
    form->Show();
    fakes::neighbours().call_pending = true;
    fakes::tick(form->ContactTimer);
    EXPECT_EQ(fakes::neighbours().calls, 0);
    fakes::neighbours().call_pending = false;
    fill();
    EXPECT_EQ(contacts().size(), 3U);
}

TEST_F(MatchupWindow, FailureOfAnyCallIsPassedOver) {
    threeContacts();
    AddMatchup(u"cyn@x", u"Max");
    open();
    const int all = fakes::neighbours().calls;
    ASSERT_EQ(all, 2 + 3 * 3);
    for (int at = 1; at <= all; ++at) {
        form->DoneButt_Click();
        fakes::neighbours().calls = 0;
        fakes::neighbours().fail_at = at;
        open();
        EXPECT_EQ(form->ContactList.GetItemCount(), at <= 2 ? 0 : at <= 8 ? 1 : 2) << at;
        EXPECT_THAT(of(u"Max"), ElementsAre(u"cyn@x")) << at;
        EXPECT_EQ(listOf(u"Max").Item(1).Caption, at <= 2 || at > 8 ? u"cyn@x" : u"Cyn") << at;
    }
}

// A client whose contacts cannot be counted, and none of which can be had.
class Endless final : public platform::MessengerApi {
  public:
    struct Contacts final : platform::MessengerContacts {
        std::int32_t Count() override { return 2'000'000'000; }
        std::shared_ptr<platform::MessengerContact> Item(std::int32_t) override {
            throw platform::NeighbourError(-1, "no such contact");
        }
    };
    std::int32_t MyStatus() override { return 2; }
    std::u16string MySigninName() override { return u"me@x"; }
    std::u16string MyFriendlyName() override { return u"Me"; }
    std::int32_t UnreadEmailCount(std::int32_t) override { return 0; }
    std::shared_ptr<platform::MessengerContacts> MyContacts() override {
        const auto contacts = std::make_shared<Contacts>();
        given = contacts;
        return contacts;
    }
    void Signin(std::int32_t, const std::u16string&, const std::u16string&) override {}

    std::weak_ptr<Contacts> given;
};

TEST_F(MatchupWindow, CountThatCannotBeIsHeldWithinTheList) {
    Endless client;
    form = std::make_unique<MatchupFrm>(nullptr, client);
    open();
    EXPECT_THAT(contacts(), IsEmpty());
    EXPECT_EQ(form->ContactList.NoItemCaption(), u"Your Messenger lists no contacts");
    form.reset();
}

TEST_F(MatchupWindow, NothingOfTheClientIsHeldOnceTheContactsAreListed) {
    Endless client;
    form = std::make_unique<MatchupFrm>(nullptr, client);
    open();
    EXPECT_TRUE(client.given.expired());
    form.reset();
}

TEST_F(MatchupWindow, DownloadEndsWithTheWindow) {
    open();
    bool ended = false;
    fakes::screen().while_modal = [&](const ui::Form& download) {
        EXPECT_TRUE(download.Loaded());
        form->Unload(); // by a sign-out
        ended = !download.Loaded();
    };
    form->MatchUpList.ItemImage_Click(1);
    EXPECT_TRUE(ended);
    EXPECT_FALSE(form->Loaded());
}

// What comes in the middle of each call: the window is closed, or closed and opened again.
TEST_F(MatchupWindow, MayCloseInTheMiddleOfAnyCall) {
    threeContacts();
    AddMatchup(u"cyn@x", u"Max");
    for (const bool opens_again : {false, true}) {
        for (int at = 1; at <= 2 + 3 * 3; ++at) {
            int calls = 0;
            fakes::neighbours().during = [&](std::string_view) {
                if (++calls == at) {
                    form->Unload();
                    if (opens_again) {
                        form->Show();
                    }
                }
            };
            open();
            fakes::neighbours().during = nullptr;
            EXPECT_EQ(form->Loaded(), opens_again) << at;
            EXPECT_FALSE(form->ContactTimer.Enabled());
            if (opens_again) {
                EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x")) << at;
                EXPECT_THAT(of(u"Max"), ElementsAre(u"cyn@x")) << at;
                EXPECT_EQ(form->MatchUpList.GetListCount(), 3) << at;
            }
            form->Unload();
        }
    }
}

// The keyboard.

TEST_F(MatchupWindow, KeysGiveAContactToACharacterAndTakeItBack) {
    threeContacts();
    open();
    EXPECT_TRUE(press(form->ContactList, ctrl_down));
    EXPECT_EQ(form->ContactList.GetSelectedKey(), u"bob@x");
    EXPECT_EQ(form->StatusLbl.Caption(), u"bob@x") << "two contacts can have one name";
    EXPECT_TRUE(press(form->ContactList, ctrl_x));
    EXPECT_TRUE(press(listOf(u"Max"), ctrl_v));
    EXPECT_EQ(stored(u"bob@x"), "Max");
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x"));

    // It is there once: a second time nothing is taken along.
    EXPECT_TRUE(press(listOf(u"Anna"), ctrl_v));
    EXPECT_EQ(stored(u"bob@x"), "Max");

    EXPECT_TRUE(press(listOf(u"Max"), ctrl_down));
    EXPECT_TRUE(press(listOf(u"Max"), ctrl_x));
    EXPECT_TRUE(press(form->ContactList, ctrl_v));
    EXPECT_EQ(stored(u"bob@x"), std::nullopt);
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"cyn@x", u"bob@x"));
}

TEST_F(MatchupWindow, DeleteTakesAContactBack) {
    threeContacts();
    AddMatchup(u"bob@x", u"Max");
    open();
    EXPECT_TRUE(press(listOf(u"Max"), del)); // nothing is selected there
    EXPECT_TRUE(MatchupExists(u"bob@x"));
    press(listOf(u"Max"), ctrl_down);
    EXPECT_TRUE(press(listOf(u"Max"), del));
    EXPECT_FALSE(MatchupExists(u"bob@x"));
    EXPECT_EQ(form->StatusLbl.Caption(), u"Bob has no character of its own any more.");
}

TEST_F(MatchupWindow, KeysMoveAContactBetweenCharacters) {
    contact(u"ann@x", u"Ann");
    AddMatchup(u"ann@x", u"Max");
    open();
    press(listOf(u"Max"), ctrl_down);
    press(listOf(u"Max"), ctrl_x);
    press(listOf(u"Anna"), ctrl_v);
    EXPECT_EQ(stored(u"ann@x"), "Anna");
    EXPECT_THAT(of(u"Max"), IsEmpty());
}

TEST_F(MatchupWindow, ContactTakenAlongIsForgottenWhenItIsFilledAnew) {
    threeContacts();
    open();
    const std::function<void()> anew[] = {[&] {
                                              form->Unload();
                                              open();
                                          },
                                          [&] { // somebody else has signed in
                                              form->Refill();
                                              fill();
                                          }};
    for (const auto& fillAnew : anew) {
        EXPECT_TRUE(press(form->ContactList, ctrl_x));
        fillAnew();
        EXPECT_TRUE(press(listOf(u"Anna"), ctrl_v));
        EXPECT_EQ(Matchups.Count(), 0U);
        EXPECT_EQ(contacts().size(), 3U);
    }
}

TEST_F(MatchupWindow, NamesAreToldWithAllTheirCharacters) {
    contact(u"tom&jerry@x", u"Tom & Jerry");
    open();
    EXPECT_EQ(drag(form->ContactList, 1, listOf(u"Anna")), ui::drop_move);
    EXPECT_EQ(form->StatusLbl.Caption(), u"Anna speaks for Tom & Jerry from now on.");
    EXPECT_FALSE(form->StatusLbl.UseMnemonic());
}

TEST_F(MatchupWindow, ContactTakenAlongIsStillThereAfterAPlaceholderRefusedIt) {
    characters({u"Max.acs"});
    contact(u"ann@x", u"Ann");
    open();
    press(form->ContactList, ctrl_x);
    form->MatchUpList.PanelKey(ctrl_v, 2);
    EXPECT_FALSE(MatchupExists(u"ann@x"));
    press(listOf(u"Max"), ctrl_v);
    EXPECT_EQ(stored(u"ann@x"), "Max");
}

TEST_F(MatchupWindow, ArrowsWithControlStayWithinTheList) {
    threeContacts();
    open();
    press(form->ContactList, ctrl_up);
    EXPECT_EQ(form->ContactList.Selected(), 1);
    for (int i = 0; i < 5; ++i) {
        press(form->ContactList, ctrl_down);
    }
    EXPECT_EQ(form->ContactList.Selected(), 3);
    EXPECT_TRUE(press(listOf(u"Max"), ctrl_down)) << "also where there is none";
}

TEST_F(MatchupWindow, OtherKeysAreLeftToTheList) {
    threeContacts();
    open();
    EXPECT_FALSE(form->ContactList.P.KeyPress({ui::Key::down}));
    EXPECT_FALSE(form->ContactList.P.KeyPress({u'A', ui::control_key}));
    EXPECT_FALSE(form->ContactList.P.KeyPress({ui::Key::tab}));
}

TEST_F(MatchupWindow, TabReachesListsAndButtons) {
    threeContacts();
    open();
    std::vector<const ui::Control*> passed{form->focused()};
    EXPECT_EQ(passed.front(), &form->ContactList.P) << "where a user begins";
    do {
        fakes::key(*form, {ui::Key::tab});
        passed.push_back(form->focused());
        ASSERT_LT(passed.size(), 50U);
    } while (passed.back() != passed.front());
    EXPECT_THAT(passed, testing::IsSupersetOf({static_cast<const ui::Control*>(&listOf(u"Anna").P),
                                               static_cast<const ui::Control*>(&form->HelpButt),
                                               static_cast<const ui::Control*>(&form->DoneButt)}));
}

TEST_F(MatchupWindow, AcceleratorsLeadToTheListsAndButtons) {
    threeContacts();
    open();
    form->DoneButt.SetFocus();
    EXPECT_TRUE(form->onMnemonicKey(u'w'));
    EXPECT_EQ(form->focused(), &form->ContactList.P);
    EXPECT_TRUE(form->onMnemonicKey(u'd'));
    EXPECT_FALSE(form->Visible());
}

TEST_F(MatchupWindow, FitsASmallScreenAtEveryResolution) {
    for (const double dpi : {96.0, 144.0, 192.0}) {
        fakes::screen().twips_per_pixel = 1440 / dpi;
        renew();
        const ui::Rect place = form->Place();
        EXPECT_LE(place.width, 1024) << dpi;
        EXPECT_LE(place.height, 768) << dpi;
        EXPECT_LE(form->DoneButt.Left() + form->DoneButt.Width(), form->ScaleWidth()) << dpi;
        EXPECT_LE(form->DoneButt.Top() + form->DoneButt.Height(), form->ScaleHeight()) << dpi;
        EXPECT_GE(form->MatchUpList.Width(), 2 * form->ContactList.Width() / 3) << dpi;
    }
}

} // namespace
} // namespace murmelix
