// The main window as its user meets it: clicks, keys, menus, and what is seen of them.
#include "companions/messenger/client/main_window.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/client/account.h"
#include "companions/messenger/client/looks.h"
#include "platform/message_box.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
namespace platform = murmelix::platform;
using fakes::choose;
using fakes::click;
using fakes::key;
using fakes::screen;
using fakes::type;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct MainWindows : testing::Test {
    Client client;
    std::vector<std::string> done; // what the window has asked for
    std::vector<SignInRequest> requests;
    std::optional<MainWindow> made;

    MainWindows() {
        fakes::reset();
        screen() = {};
    }

    MainWindow& open() {
        made.emplace(client, MainWindow::Hooks{.sign_in =
                                                   [this](const SignInRequest& request) {
                                                       requests.push_back(request);
                                                       client.signIn(request.signin, request.friendly, request.status);
                                                   },
                                               .forget =
                                                   [this](const std::u16string& signin) {
                                                       done.push_back("forget " + murmelix::toUtf8(signin));
                                                       client.accounts().forget(signin);
                                                       made->accountsChanged();
                                                   },
                                               .switch_to =
                                                   [this](const std::u16string& signin) {
                                                       done.push_back("switch " + murmelix::toUtf8(signin));
                                                   },
                                               .bring_up = [this](const Conversation&) { done.push_back("bring up"); },
                                               .command =
                                                   [this](std::string_view line) {
                                                       done.push_back("order " + std::string(line));
                                                       return std::intptr_t{7};
                                                   },
                                               .user_acts = [] {},
                                               .quit = [this] { done.push_back("quit"); }});
        client.listen([this](const Change& change) {
            if (made) {
                made->changed(change);
            }
        });
        made->accountsChanged();
        made->propose({});
        made->Show();
        return *made;
    }
    MainWindow& openSignedIn() {
        client.signIn(u"kim@x", u"Kim");
        return open();
    }
    ContactPtr contact(const std::u16string& signin, const std::u16string& name, Status status = Status::online) {
        return client.addContact(signin, name, status);
    }
    std::vector<std::u16string> rows() const {
        std::vector<std::u16string> all;
        for (int i = 0; i < made->Contacts.ListCount(); ++i) {
            all.push_back(made->Contacts.List(i));
        }
        return all;
    }
    std::vector<std::u16string> captions(ui::Menu& menu) const {
        ui::raise(menu.Popup);
        std::vector<std::u16string> all;
        for (const ui::MenuItem* item : menu.items()) {
            all.push_back(item->Caption());
        }
        return all;
    }
    std::vector<std::u16string> marked(ui::Menu& menu) const {
        ui::raise(menu.Popup);
        std::vector<std::u16string> all;
        for (const ui::MenuItem* item : menu.items()) {
            if (item->Checked()) {
                all.push_back(item->Caption());
            }
        }
        return all;
    }
    bool chooseIn(ui::Menu& menu, std::u16string_view caption) const {
        ui::MenuItem* item = fakes::find(menu, caption);
        return item && choose(*item);
    }
    static std::vector<std::u16string> texts(const std::vector<fakes::Drawing>& drawings) {
        std::vector<std::u16string> all;
        for (const auto& drawing : drawings) {
            if (drawing.kind == fakes::Drawing::Kind::text) {
                all.push_back(drawing.text);
            }
        }
        return all;
    }
    static const std::vector<fakes::MessageBox>& boxes() { return fakes::messageBoxes().shown; }
};

TEST_F(MainWindows, ShowsWhereOneSignsInWhileNobodyIsSignedIn) {
    MainWindow& form = open();
    EXPECT_TRUE(form.SignIn.SignInButt.reachable());
    for (const ui::Control* control :
         std::initializer_list<const ui::Control*>{&form.NameButt, &form.StatusButt, &form.MailButt, &form.RenameTxt,
                                                   &form.Contacts, &form.EmptyLbl, &form.SigningIn}) {
        EXPECT_FALSE(control->Visible());
    }
    EXPECT_TRUE(form.SignIn.SignInButt.Focused());
    EXPECT_EQ(form.Caption(), u"Messenger");
    EXPECT_THAT(texts(fakes::drawings(form.Band.surface())),
                ElementsAre(u"Welcome", u"Sign in to meet your contacts."));
    EXPECT_FALSE(choose(form.ContactMenuAdd));
    EXPECT_FALSE(choose(form.FileMenuRename));
    EXPECT_FALSE(choose(form.FileMenuSignOut));
    EXPECT_FALSE(key(form, {u'N', ui::control_key}) && form.AddContact);
}

TEST_F(MainWindows, EnterSignsInAndTheKeyboardGoesToTheContacts) {
    MainWindow& form = open();
    contact(u"ann@x", u"Ann");
    ASSERT_TRUE(key(form, ui::Key::enter));
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests.front().signin, u"you@messenger.example");
    EXPECT_FALSE(form.SignIn.Visible());
    EXPECT_TRUE(form.Contacts.Visible());
    EXPECT_TRUE(form.Contacts.Focused());
    EXPECT_EQ(form.NameButt.Caption(), u"You");
    EXPECT_EQ(form.StatusButt.Caption(), u"Online");
    EXPECT_EQ(form.MailButt.Caption(), u"No new mail");
    EXPECT_EQ(form.Caption(), u"You - Messenger");
}

TEST_F(MainWindows, WhereNobodyIsListedItSaysHowToAddSomebody) {
    MainWindow& form = openSignedIn();
    EXPECT_TRUE(form.EmptyLbl.Visible());
    EXPECT_FALSE(form.Contacts.Visible());
    EXPECT_TRUE(form.StatusButt.Focused());
    const ContactPtr ann = contact(u"ann@x", u"Ann");
    EXPECT_FALSE(form.EmptyLbl.Visible());
    EXPECT_TRUE(form.Contacts.Visible());
    client.removeContact(ann);
    EXPECT_TRUE(form.EmptyLbl.Visible());
    EXPECT_FALSE(form.Contacts.Visible());
}

TEST_F(MainWindows, AHeadingIsNeverMarked) {
    client.signIn(u"kim@x", u"Kim");
    contact(u"bob@x", u"Bob", Status::offline);
    const ContactPtr cy = contact(u"cy@x", u"Cy");
    MainWindow& form = open();
    EXPECT_TRUE(form.Contacts.Focused());
    const auto is_focus = [](const fakes::Drawing& drawing) { return drawing.kind == fakes::Drawing::Kind::focus; };
    EXPECT_TRUE(std::ranges::none_of(fakes::drawn(form.Contacts, 0, 200, 40, {false, true}), is_focus));
    EXPECT_TRUE(std::ranges::any_of(fakes::drawn(form.Contacts, 1, 200, 40, {false, true}), is_focus));
    EXPECT_TRUE(key(form, ui::Key::down));
    EXPECT_EQ(form.Contacts.selected(), cy);
}

TEST_F(MainWindows, ASignInUnderWayIsShownAndCancelled) {
    MainWindow& form = open();
    form.setSigningIn(u"kim@x", u"");
    client.setStage(Stage::connecting);
    EXPECT_FALSE(form.SignIn.Visible());
    EXPECT_EQ(form.SigningIn.ProgressLbl.Caption(), u"Connecting …");
    EXPECT_EQ(form.Caption(), u"Signing in - Messenger");
    EXPECT_THAT(texts(fakes::drawings(form.Band.surface())), ElementsAre(u"Signing in", u"kim@x"));
    EXPECT_TRUE(form.SigningIn.CancelButt.Focused());
    EXPECT_TRUE(form.SigningIn.Turn.Enabled());
    const auto before = fakes::drawings(form.SigningIn.Ring.surface());
    fakes::tick(form.SigningIn.Turn);
    EXPECT_NE(fakes::drawings(form.SigningIn.Ring.surface()), before) << "the light runs round";
    client.setStage(Stage::synchronising);
    EXPECT_EQ(form.SigningIn.ProgressLbl.Caption(), u"Fetching your contacts …");
    EXPECT_TRUE(key(form, ui::Key::escape));
    EXPECT_EQ(client.stage(), Stage::out);
    EXPECT_TRUE(form.SignIn.Visible());
    EXPECT_FALSE(form.SigningIn.Turn.Enabled());
    EXPECT_EQ(form.SignIn.FaultLbl.Caption(), u"") << "who cancels knows why";

    client.setStage(Stage::connecting);
    EXPECT_TRUE(key(form, ui::Key::enter)) << "on the only button";
    EXPECT_EQ(client.stage(), Stage::out);
}

TEST_F(MainWindows, TheLightStandsStillWhereTheUserWantsNoMovement) {
    screen().animates = false;
    MainWindow& form = open();
    form.setSigningIn(u"kim@x", u"Kim");
    client.setStage(Stage::connecting);
    EXPECT_TRUE(form.SigningIn.Visible());
    EXPECT_FALSE(form.SigningIn.Turn.Enabled());
}

TEST_F(MainWindows, AFailureIsToldAndWhatWasTypedStays) {
    MainWindow& form = open();
    ASSERT_TRUE(type(form.SignIn.DisplayNameTxt, u"Somebody else"));
    form.setSigningIn(u"you@messenger.example", u"");
    client.setStage(Stage::connecting);
    client.failSignIn(static_cast<std::int32_t>(0x80004005));
    EXPECT_EQ(form.SignIn.FaultLbl.Caption(), u"You could not be signed in. Please try again. (80004005)");
    EXPECT_EQ(form.SignIn.DisplayNameTxt.Text(), u"Somebody else");
    client.signIn(u"you@messenger.example", u"");
    EXPECT_EQ(form.SignIn.FaultLbl.Caption(), u"");
}

TEST_F(MainWindows, ListsContactsInTwoGroupsByName) {
    openSignedIn();
    contact(u"cy@x", u"cy", Status::offline);
    contact(u"bob@x", u"Bob");
    const ContactPtr ann = contact(u"ann@x", u"ann", Status::away);
    contact(u"di@x", u"Di", Status::offline);
    EXPECT_THAT(rows(), ElementsAre(u"Online", u"ann", u"Bob", u"Offline", u"cy", u"Di"));
    client.rename(ann, u"Zoe");
    EXPECT_THAT(rows(), ElementsAre(u"Online", u"Bob", u"Zoe", u"Offline", u"cy", u"Di"));
    client.setStatus(ann, Status::offline);
    EXPECT_THAT(rows(), ElementsAre(u"Online", u"Bob", u"Offline", u"cy", u"Di", u"Zoe"));
    client.removeContact(client.find(u"bob@x"));
    EXPECT_THAT(rows(), ElementsAre(u"Offline", u"cy", u"Di", u"Zoe"));
}

TEST_F(MainWindows, WhatIsSelectedStaysSelectedWhateverComesGoesOrChanges) {
    MainWindow& form = openSignedIn();
    const ContactPtr bob = contact(u"bob@x", u"Bob");
    ASSERT_TRUE(fakes::pick(form.Contacts, 1));
    const ContactPtr ann = contact(u"ann@x", u"Ann");
    EXPECT_EQ(form.Contacts.selected(), bob);
    client.setStatus(ann, Status::offline);
    client.rename(bob, u"Aaron");
    EXPECT_EQ(form.Contacts.selected(), bob);
    client.setStatus(bob, Status::offline);
    EXPECT_EQ(form.Contacts.selected(), bob) << "in the other group";
    client.removeContact(ann);
    EXPECT_EQ(form.Contacts.selected(), bob);
    client.removeContact(bob);
    EXPECT_EQ(form.Contacts.selected(), nullptr);
}

TEST_F(MainWindows, ThousandsOfContactsInAnyOrderEndUpSorted) {
    openSignedIn();
    std::vector<std::u16string> wanted;
    for (int i = 0; i < 2000; ++i) {
        const std::u16string number = murmelix::toText(10'000 + (i * 7919) % 2000);
        contact(u"c" + number + u"@x", u"Contact " + number);
        wanted.push_back(u"Contact " + number);
    }
    std::sort(wanted.begin(), wanted.end());
    wanted.insert(wanted.begin(), u"Online");
    EXPECT_EQ(rows(), wanted);
}

TEST_F(MainWindows, TheSameNameIsToldApartBySignInName) {
    MainWindow& form = openSignedIn();
    const ContactPtr second = contact(u"b@x", u"Sam"), first = contact(u"a@x", u"SAM"), third = contact(u"c@x", u"sam");
    EXPECT_EQ(form.Contacts.contactAt(1), first);
    EXPECT_EQ(form.Contacts.contactAt(2), second);
    EXPECT_EQ(form.Contacts.contactAt(3), third);
    client.removeContact(second);
    EXPECT_EQ(form.Contacts.contactAt(1), first);
    EXPECT_EQ(form.Contacts.contactAt(2), third);
}

TEST_F(MainWindows, RowsShowNameAndStatus) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann", Status::busy);
    contact(u"bob@x", u"Bob", Status::offline);
    contact(u"cy@x", u"Cy", Status::invisible);
    EXPECT_THAT(texts(fakes::drawn(form.Contacts, 0, 200, 40)), ElementsAre(u"Online (1)"));
    EXPECT_THAT(texts(fakes::drawn(form.Contacts, 2, 200, 40)), ElementsAre(u"Offline (2)"));
    const auto row = fakes::drawn(form.Contacts, 1, 200, 40);
    EXPECT_THAT(texts(row), ElementsAre(u"A", u"Ann", u"Busy"));
    const auto is_focus = [](const fakes::Drawing& drawing) { return drawing.kind == fakes::Drawing::Kind::focus; };
    EXPECT_FALSE(std::any_of(row.begin(), row.end(), is_focus));
    const auto focused = fakes::drawn(form.Contacts, 1, 200, 40, {true, true});
    EXPECT_TRUE(std::any_of(focused.begin(), focused.end(), is_focus));
}

TEST_F(MainWindows, ArrowsGoFromContactToContactOverTheHeadings) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    contact(u"bob@x", u"Bob", Status::offline);
    form.Contacts.SetFocus();
    EXPECT_FALSE(key(form, ui::Key::up)) << "nobody is there";
    EXPECT_EQ(form.Contacts.ListIndex(), -1);
    EXPECT_TRUE(key(form, ui::Key::down));
    EXPECT_EQ(form.Contacts.ListIndex(), 1);
    EXPECT_TRUE(key(form, ui::Key::down));
    EXPECT_EQ(form.Contacts.ListIndex(), 3) << "over the heading of who is offline";
    EXPECT_FALSE(key(form, ui::Key::down));
    EXPECT_TRUE(key(form, ui::Key::up));
    EXPECT_EQ(form.Contacts.ListIndex(), 1);
    EXPECT_FALSE(key(form, ui::Key::up));
    EXPECT_EQ(form.Contacts.ListIndex(), 1);
}

TEST_F(MainWindows, AConversationIsOpenedByDoubleClickEnterAndMenus) {
    MainWindow& form = openSignedIn();
    const ContactPtr ann = contact(u"ann@x", u"Ann");
    EXPECT_TRUE(key(form, ui::Key::enter));
    EXPECT_THAT(done, IsEmpty()) << "nobody is selected";
    ASSERT_TRUE(fakes::doubleClick(form.Contacts, 1));
    EXPECT_EQ(client.conversations().size(), 1U);
    ASSERT_TRUE(form.Contacts.Focused());
    ASSERT_TRUE(key(form, ui::Key::enter));
    ASSERT_TRUE(choose(form.ContactMenuOpen));
    ASSERT_TRUE(choose(form.ContactPopupOpen));
    EXPECT_THAT(done, ElementsAre("bring up", "bring up", "bring up", "bring up"));
    EXPECT_EQ(client.conversations().size(), 1U) << "the one with her";
    done.clear();
    fakes::pick(form.Contacts, 0);
    key(form, ui::Key::enter);
    EXPECT_THAT(done, IsEmpty()) << "of a heading there is nothing to open";
}

TEST_F(MainWindows, EnterOnAButtonOfTheBandPressesIt) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    fakes::pick(form.Contacts, 1);
    form.StatusButt.SetFocus();
    ASSERT_TRUE(key(form, ui::Key::enter));
    EXPECT_THAT(screen().popups, ElementsAre(&form.StatusPopup));
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(MainWindows, ContactsHaveAMenuWhereOneIsSelected) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    fakes::askForMenu(form.Contacts);
    EXPECT_THAT(screen().popups, IsEmpty());
    fakes::pick(form.Contacts, 1);
    fakes::askForMenu(form.Contacts);
    EXPECT_THAT(screen().popups, ElementsAre(&form.ContactPopup));
    EXPECT_TRUE(form.ContactPopupOpen.Default());
}

TEST_F(MainWindows, RemovingAsksFirst) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    fakes::pick(form.Contacts, 1);
    ASSERT_TRUE(choose(form.ContactMenuRemove));
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes().front().text, u"Remove Ann from your list?");
    EXPECT_TRUE(client.find(u"ann@x"));
    fakes::messageBoxes().answers = {platform::answer_yes};
    ASSERT_TRUE(key(form, ui::Key::del));
    EXPECT_FALSE(client.find(u"ann@x"));
    choose(form.ContactPopupRemove);
    EXPECT_EQ(boxes().size(), 2U) << "nobody is selected any more";
}

TEST_F(MainWindows, TheOwnNameIsChangedInPlace) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    ASSERT_TRUE(key(form, ui::Key::f2));
    EXPECT_TRUE(form.RenameTxt.Focused());
    EXPECT_FALSE(form.NameButt.Visible());
    EXPECT_EQ(form.RenameTxt.Text(), u"Kim");
    ASSERT_TRUE(type(form.RenameTxt, u"  Kimberley (here) "));
    ASSERT_TRUE(key(form, ui::Key::enter));
    EXPECT_EQ(client.me()->friendly, u"Kimberley (here)");
    EXPECT_EQ(form.NameButt.Caption(), u"Kimberley (here)");
    EXPECT_EQ(form.Caption(), u"Kimberley (here) - Messenger");
    EXPECT_TRUE(form.NameButt.Visible());
    EXPECT_FALSE(form.RenameTxt.Visible());
    EXPECT_TRUE(form.Contacts.Focused());

    ASSERT_TRUE(choose(form.FileMenuRename));
    type(form.RenameTxt, u"never");
    ASSERT_TRUE(key(form, ui::Key::escape));
    EXPECT_EQ(client.me()->friendly, u"Kimberley (here)");
    EXPECT_FALSE(form.RenameTxt.Visible());

    ASSERT_TRUE(click(form.NameButt));
    type(form.RenameTxt, std::u16string(10'000, u'k'));
    ASSERT_TRUE(key(form, ui::Key::tab)); // leaving the field takes the name
    fakes::runPosted();
    EXPECT_EQ(client.me()->friendly.size(), 10'000U);
    EXPECT_EQ(form.NameButt.Caption().size(), 200U) << "as much as can be seen";
    EXPECT_TRUE(form.StatusButt.Focused()) << "where the key leads";

    click(form.NameButt);
    type(form.RenameTxt, u"  ");
    key(form, ui::Key::enter);
    EXPECT_EQ(client.me()->friendly.size(), 10'000U) << "nothing is no name";
    click(form.NameButt);
    type(form.RenameTxt, u"late");
    client.signOut();
    fakes::runPosted();
    EXPECT_FALSE(form.RenameTxt.Visible()) << "with the sign-out it is given up";
}

TEST_F(MainWindows, EveryStatusOfTheMenusIsTaken) {
    MainWindow& form = openSignedIn();
    for (ui::Menu* menu : {&form.FileMenuStatus, &form.StatusPopup, &form.TrayMenuStatus}) {
        EXPECT_THAT(captions(*menu), ElementsAre(u"Online", u"Busy", u"Be right back", u"Away", u"On the phone",
                                                 u"Out to lunch", u"Appear offline"));
        for (const Status status : chosen_statuses) {
            ASSERT_TRUE(chooseIn(*menu, nameOf(status)));
            EXPECT_EQ(client.me()->status, status);
            EXPECT_EQ(form.StatusButt.Caption(), nameOf(status));
            EXPECT_THAT(marked(*menu), ElementsAre(nameOf(status)));
        }
    }
    client.setMyStatus(Status::idle);
    EXPECT_EQ(form.StatusButt.Caption(), u"Idle");
    EXPECT_THAT(marked(form.FileMenuStatus), IsEmpty()) << "nobody chooses it";
    ASSERT_TRUE(click(form.StatusButt));
    EXPECT_THAT(screen().popups, ElementsAre(&form.StatusPopup));
}

TEST_F(MainWindows, MailIsCountedAndRead) {
    MainWindow& form = openSignedIn();
    const std::vector<std::pair<long, std::u16string>> counts{
        {-1, u"No mailbox"}, {0, u"No new mail"}, {1, u"1 new mail"}, {2147483647, u"2147483647 new mails"}};
    for (const auto& [count, text] : counts) {
        client.setUnread(count);
        EXPECT_EQ(form.MailButt.Caption(), text);
    }
    ASSERT_TRUE(chooseIn(form.MailMenu, u"A new mail arrives"));
    EXPECT_EQ(client.unread(), 2147483647) << "more cannot be told";
    ASSERT_TRUE(chooseIn(form.MailPopup, u"Mark all as read"));
    EXPECT_EQ(client.unread(), 0);
    client.setUnread(-1);
    ASSERT_TRUE(chooseIn(form.MailPopup, u"A new mail arrives"));
    EXPECT_EQ(client.unread(), 1);
    ASSERT_TRUE(click(form.MailButt));
    EXPECT_THAT(screen().popups, ElementsAre(&form.MailPopup));
}

TEST_F(MainWindows, TheAccountMenuOffersWhoIsRemembered) {
    client.accounts().use(u"bob&co@x");
    client.accounts().remember(u"bob&co@x", false);
    client.accounts().use(u"guest@x");
    client.signIn(u"kim@x", u"Kim");
    client.accounts().remember(u"kim@x", false);
    MainWindow& form = open();
    EXPECT_THAT(captions(form.FileMenuAccount), ElementsAre(u"kim@x", u"bob&&co@x", u"-", u"A&nother account…"));
    EXPECT_THAT(marked(form.FileMenuAccount), ElementsAre(u"kim@x"));
    ASSERT_TRUE(chooseIn(form.FileMenuAccount, u"bob&co@x"));
    ASSERT_TRUE(chooseIn(form.FileMenuAccount, u"Another account…"));
    EXPECT_THAT(done, ElementsAre("switch bob&co@x", "switch "));
    for (int i = 0; i < 30; ++i) {
        const std::u16string name = murmelix::toText(i) + u"@x";
        client.accounts().use(name);
        client.accounts().remember(name, false);
    }
    EXPECT_EQ(captions(form.FileMenuAccount).size(), 22U) << "twenty, and somebody else";
}

TEST_F(MainWindows, ClosingHidesItAndExitEndsIt) {
    MainWindow& form = openSignedIn();
    fakes::close(form);
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(form.Tray.Shown());
    EXPECT_EQ(form.Tray.Tip(), u"Messenger - Kim, Online");
    EXPECT_THAT(done, IsEmpty());
    client.setMyStatus(Status::busy);
    EXPECT_EQ(form.Tray.Tip(), u"Messenger - Kim, Busy");
    ui::raise(form.Tray.Click);
    EXPECT_TRUE(form.Visible());
    EXPECT_FALSE(form.Tray.Shown());

    EXPECT_TRUE((captions(form.FileMenu), form.FileMenuKeepRunning.Checked()));
    ASSERT_TRUE(choose(form.FileMenuKeepRunning));
    EXPECT_FALSE((captions(form.FileMenu), form.FileMenuKeepRunning.Checked()));
    fakes::close(form);
    EXPECT_THAT(done, ElementsAre("quit"));
    ASSERT_TRUE(choose(form.FileMenuExit));
    EXPECT_TRUE(key(form, {u'Q', ui::control_key}));
    EXPECT_THAT(done, ElementsAre("quit", "quit", "quit"));
}

TEST_F(MainWindows, WithoutANotificationAreaItIsMinimised) {
    screen().tray = false;
    MainWindow& form = openSignedIn();
    ASSERT_TRUE(key(form, {u'H', ui::control_key}));
    EXPECT_TRUE(form.Visible());
    EXPECT_EQ(form.WindowState(), ui::Form::State::minimized);
    form.BringUp();
    EXPECT_EQ(form.WindowState(), ui::Form::State::normal);
}

TEST_F(MainWindows, TheTrayHasAMenu) {
    MainWindow& form = openSignedIn();
    form.PutAway();
    ui::raise(form.Tray.ContextMenu);
    EXPECT_THAT(screen().popups, ElementsAre(&form.TrayMenu));
    ASSERT_TRUE(choose(form.TrayMenuSignOut));
    EXPECT_FALSE(client.signedIn());
    EXPECT_EQ(form.Tray.Tip(), u"Messenger - signed out");
    EXPECT_FALSE(choose(form.TrayMenuSignOut)) << "nobody is signed in";
    ASSERT_TRUE(choose(form.TrayMenuOpen));
    EXPECT_TRUE(form.Visible());
    choose(form.TrayMenuExit);
    EXPECT_THAT(done, ElementsAre("quit"));
}

TEST_F(MainWindows, OtherProgramsGiveOrdersByItsKindOfMessageAlone) {
    MainWindow& form = open();
    EXPECT_EQ(form.DataReceived(control_message, "say hello"), 7);
    EXPECT_EQ(form.DataReceived(control_message + 1, "say hello"), 0);
    EXPECT_THAT(done, ElementsAre("order say hello"));
}

TEST_F(MainWindows, AskingWhoSignsInBringsItUp) {
    MainWindow& form = open();
    form.PutAway();
    form.SignIn.NameBox.SetFocus();
    form.askSignIn();
    EXPECT_TRUE(form.Visible());
    EXPECT_TRUE(form.SignIn.SignInButt.Focused());
    form.proposeNobody();
    form.askSignIn();
    EXPECT_TRUE(form.SignIn.NameBox.Focused());
}

TEST_F(MainWindows, AContactIsAdded) {
    MainWindow& form = openSignedIn();
    ASSERT_TRUE(key(form, {u'N', ui::control_key}));
    ASSERT_TRUE(form.AddContact);
    AddContactFrm& dialog = *form.AddContact;
    EXPECT_TRUE(dialog.Visible());
    EXPECT_TRUE(dialog.NameTxt.Focused());
    const std::vector<std::pair<std::u16string, std::u16string>> refused{
        {u"", u"Please type a sign-in name."},
        {u"no body@x", u"A sign-in name has no blanks, and no signs but those that one sees."},
        {u"kim@x", u"That is your own sign-in name."}};
    for (const auto& [name, fault] : refused) {
        type(dialog.NameTxt, name);
        ASSERT_TRUE(key(dialog, ui::Key::enter));
        EXPECT_EQ(dialog.FaultLbl.Caption(), fault);
        EXPECT_TRUE(dialog.Visible());
        EXPECT_TRUE(dialog.NameTxt.Focused());
    }
    EXPECT_EQ(screen().beeps, 3);
    type(dialog.NameTxt, u" zoe ");
    type(dialog.FriendlyTxt, u" Zoe ");
    ASSERT_TRUE(key(dialog, ui::Key::enter));
    EXPECT_FALSE(dialog.Visible());
    const ContactPtr zoe = client.find(u"zoe@messenger.example");
    ASSERT_TRUE(zoe);
    EXPECT_EQ(zoe->friendly, u"Zoe");
    ASSERT_TRUE(choose(form.ContactMenuAdd));
    EXPECT_EQ(dialog.NameTxt.Text(), u"");
    EXPECT_EQ(dialog.FaultLbl.Caption(), u"");
    type(dialog.NameTxt, u"ZOE@messenger.example");
    click(dialog.AddButt);
    EXPECT_EQ(dialog.FaultLbl.Caption(), u"This contact is in your list already.");
    ASSERT_TRUE(key(dialog, ui::Key::escape));
    EXPECT_FALSE(dialog.Visible());
    choose(form.ContactMenuAdd);
    type(dialog.NameTxt, u"bea@x");
    key(dialog, ui::Key::enter);
    EXPECT_EQ(client.find(u"bea@x")->friendly, u"bea");
    choose(form.ContactMenuAdd);
    type(dialog.NameTxt, u"Max Muster");
    key(dialog, ui::Key::enter);
    EXPECT_EQ(client.find(u"max.muster@messenger.example")->friendly, u"Max Muster");
    choose(form.ContactMenuAdd);
    client.signOut();
    EXPECT_FALSE(dialog.Visible()) << "the list is gone";
}

TEST_F(MainWindows, ItsPartsStayInsideBesideOneAnother) {
    MainWindow& form = openSignedIn();
    contact(u"ann@x", u"Ann");
    for (const double twips : {15.0, 10.0, 7.5}) {
        screen().twips_per_pixel = twips;
        form.onSettingsChange();
        for (const auto& [width, height] : {std::pair{100, 100}, {4500, 7500}, {12'000, 5'000}}) {
            fakes::resize(form, width, height);
            const ui::Rect band = form.Band.Bounds(), list = form.Contacts.Bounds();
            EXPECT_EQ(band.top + band.height, list.top);
            EXPECT_EQ(list.top + list.height, form.ScaleHeight());
            EXPECT_EQ(list.width, form.ScaleWidth());
            EXPECT_GE(form.StatusButt.Top(), form.NameButt.Top() + form.NameButt.Height());
            EXPECT_GE(form.MailButt.Top(), form.StatusButt.Top() + form.StatusButt.Height());
            EXPECT_LE(form.MailButt.Top() + form.MailButt.Height(), band.height);
            EXPECT_LE(form.NameButt.Left() + form.NameButt.Width(), band.width);
        }
    }
}

TEST_F(MainWindows, TheSignInPlaceFitsIntoTheLeastSize) {
    MainWindow& form = open();
    fakes::resize(form, 0, 0);
    const ui::Rect note = form.SignIn.NoteLbl.Bounds();
    EXPECT_LE(form.SignIn.Top() + note.top + note.height, form.ScaleHeight());
    EXPECT_GE(note.height, form.SignIn.NoteLbl.neededSize(note.width).height);
    // A field is as high as its text needs it: more would show the text too high.
    EXPECT_EQ(form.SignIn.DisplayNameTxt.Height(), form.SignIn.DisplayNameTxt.neededSize().height);
}

TEST_F(MainWindows, ComesBackToItsPlace) {
    {
        MainWindow& form = open();
        form.setPlace({120, 80, 400, 600});
        client.shutDown();
        EXPECT_EQ(mainPlace().last(), (ui::Rect{120, 80, 400, 600}));
        made.reset();
    }
    EXPECT_EQ(open().Place(), (ui::Rect{120, 80, 400, 600}));
    made->setPlace({10, 20, 500, 700});
    made->PutAway();
    EXPECT_EQ(mainPlace().last(), (ui::Rect{10, 20, 500, 700}));
    made->setPlace({-32'000, -32'000, 100, 20});
    client.shutDown();
    EXPECT_EQ(mainPlace().last(), (ui::Rect{10, 20, 500, 700})) << "hidden, it has no place to come back to";
}

TEST_F(MainWindows, IsBroughtOntoTheScreenFromAPlaceBesideIt) {
    mainPlace().keep({4000, -300, 400, 600});
    EXPECT_EQ(open().Place(), (ui::Rect{1024 - 400, 0, 400, 600}));
    mainPlace().keep({-50, 700, 2000, 1600});
    EXPECT_EQ(open().Place(), (ui::Rect{0, 0, 1024, 768}));
}

TEST_F(MainWindows, APlaceIsKeptByLengthsOnTheScreen) {
    mainPlace().keep({100, 80, 400, 600});
    EXPECT_EQ(fakes::userStores().values[u"Software\\MessengerClient\\Place"],
              (fakes::UserStores::Value(std::vector<std::u16string>{u"1500", u"1200", u"6000", u"9000"})));
    screen().twips_per_pixel = 7.5;
    EXPECT_EQ(mainPlace().last(), (ui::Rect{200, 160, 800, 1200}));
}

TEST_F(MainWindows, AStoredPlaceThatIsNoneIsNotTaken) {
    for (const std::vector<std::u16string>& lines :
         std::vector<std::vector<std::u16string>>{{},
                                                  {u"1"},
                                                  {u"0", u"0", u"0", u"100"},
                                                  {u"0", u"0", u"1e300", u"100"},
                                                  {u"a", u"b", u"c", u"d"},
                                                  {u"1", u"2", u"3", u"4", u"5"}}) {
        fakes::userStores().values[u"Software\\MessengerClient\\Place"] = lines;
        EXPECT_FALSE(mainPlace().last());
    }
    mainPlace().keep({-10, 20, 300, 400});
    EXPECT_EQ(mainPlace().last(), (ui::Rect{-10, 20, 300, 400}));
}

} // namespace

} // namespace messenger_client
