// The place where one signs in, inside the main window: what it proposes, takes and refuses.
#include "companions/messenger/client/sign_in_page.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"
#include "ui/form.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
using fakes::accelerator;
using fakes::click;
using fakes::key;
using fakes::pick;
using fakes::type;
using testing::ElementsAre;
using testing::IsEmpty;

struct SignInPages : testing::Test {
    Accounts accounts;
    std::optional<ui::Form> form;
    std::optional<SignInPage> made;
    std::vector<SignInRequest> requests;
    std::vector<NetworkRequest> connections;
    std::vector<std::u16string> forgotten;

    SignInPages() {
        fakes::reset();
        fakes::screen() = {};
    }
    void account(const std::u16string& signin, const std::u16string& name, Status status = Status::online) {
        Account& added = accounts.use(signin);
        added.friendly = name;
        added.status = status;
        accounts.remember(signin, false);
    }
    SignInPage& open() {
        form.emplace(nullptr, u"", ui::FormStyle::sizable);
        made.emplace(
            *form, accounts,
            SignInPage::Hooks{.sign_in = [this](const SignInRequest& request) { requests.push_back(request); },
                              .connect = [this](const NetworkRequest& request) { connections.push_back(request); },
                              .forget =
                                  [this](const std::u16string& signin) {
                                      forgotten.push_back(signin);
                                      accounts.forget(signin);
                                      made->accountsChanged();
                                  }});
        form->DefaultButton = &made->SignInButt;
        made->accountsChanged();
        made->propose({});
        form->Show();
        layOut();
        return *made;
    }
    void layOut() { made->layout().place({0, 0, 4380, 9000}); }
    // The user picks it.
    SignInPage& open(AccountKind kind) {
        open();
        pick(made->KindList, static_cast<int>(kind));
        layOut();
        return *made;
    }
    void keepNetwork(NetworkAccount account, std::string secret = {}) {
        Account& added = accounts.use(signinOf(account));
        added.secret = std::move(secret);
        added.network = std::move(account);
        accounts.remember(added.signin, false);
    }
    void expectTabs(std::initializer_list<const ui::Control*> order) {
        for (const ui::Control* next : order) {
            ASSERT_TRUE(key(*form, ui::Key::tab));
            EXPECT_TRUE(next->Focused()) << next - *order.begin();
        }
    }
};

TEST_F(SignInPages, TheFirstOneIsProposedAnAccountForALook) {
    SignInPage& page = open();
    EXPECT_EQ(page.NameBox.Text(), u"you@messenger.example");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"You");
    EXPECT_EQ(page.StatusList.Text(), u"Online");
    EXPECT_EQ(page.StatusList.ListCount(), 7);
    EXPECT_FALSE(page.ForgetButt.Enabled()) << "nobody is remembered";
}

TEST_F(SignInPages, TabGoesThroughTheFieldsInOrder) {
    account(u"ann@x", u"Ann");
    SignInPage& page = open();
    page.focusFirst();
    ASSERT_TRUE(page.SignInButt.Focused());
    for (const ui::Control* next : std::initializer_list<const ui::Control*>{
             &page.ForgetButt, &page.KindList, &page.NameBox, &page.DisplayNameTxt, &page.StatusList,
             &page.RememberCheck, &page.AutomaticCheck, &page.SignInButt}) {
        ASSERT_TRUE(key(*form, ui::Key::tab));
        EXPECT_TRUE(next->Focused());
    }
}

TEST_F(SignInPages, LettersLeadToTheirFields) {
    account(u"ann@x", u"Ann");
    SignInPage& page = open();
    const std::vector<std::pair<char16_t, const ui::Control*>> letters{
        {u'n', &page.NameBox}, {u'd', &page.DisplayNameTxt}, {u't', &page.StatusList}};
    for (const auto& [letter, control] : letters) {
        EXPECT_TRUE(accelerator(*form, letter));
        EXPECT_TRUE(control->Focused());
    }
    EXPECT_TRUE(accelerator(*form, u'a'));
    EXPECT_EQ(page.AutomaticCheck.Value(), 1);
    EXPECT_EQ(page.RememberCheck.Value(), 1) << "what signs in by itself is remembered";
    EXPECT_TRUE(accelerator(*form, u'r'));
    EXPECT_EQ(page.RememberCheck.Value(), 0);
    EXPECT_EQ(page.AutomaticCheck.Value(), 0);
    EXPECT_TRUE(accelerator(*form, u's'));
    EXPECT_EQ(requests.size(), 1U);
    EXPECT_TRUE(accelerator(*form, u'g'));
    EXPECT_THAT(forgotten, ElementsAre(u"ann@x"));
}

TEST_F(SignInPages, WhatWasFilledInIsSignedInWith) {
    SignInPage& page = open();
    ASSERT_TRUE(type(page.NameBox, u" kim@x "));
    ASSERT_TRUE(type(page.DisplayNameTxt, u" Kim :) "));
    ASSERT_TRUE(pick(page.StatusList, 3));
    ASSERT_TRUE(click(page.AutomaticCheck));
    ASSERT_TRUE(key(*form, ui::Key::enter));
    ASSERT_EQ(requests.size(), 1U);
    const SignInRequest& request = requests.front();
    EXPECT_EQ(request.signin, u"kim@x");
    EXPECT_EQ(request.friendly, u"Kim :)");
    EXPECT_EQ(request.status, Status::away);
    EXPECT_TRUE(request.remember);
    EXPECT_TRUE(request.automatic);
}

TEST_F(SignInPages, ANameWithoutAPlaceIsCompletedAndGetsNobodysName) {
    SignInPage& page = open();
    type(page.NameBox, u"kim");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"") << "the name that the form proposed is another's";
    click(page.SignInButt);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests.front().signin, u"kim@messenger.example");
    EXPECT_EQ(requests.front().friendly, u"");
}

TEST_F(SignInPages, WhatIsNoSignInNameIsSaid) {
    SignInPage& page = open();
    for (const std::u16string& name : {std::u16string(u""), std::u16string(u"@"), std::u16string(u"a b@x"),
                                       std::u16string(u"a\\b@x"), std::u16string(10'000, u'x') + u"@x"}) {
        page.tellFault({});
        type(page.NameBox, name);
        page.SignInButt.SetFocus();
        ASSERT_TRUE(click(page.SignInButt));
        EXPECT_NE(page.FaultLbl.Caption(), u"");
        EXPECT_TRUE(page.NameBox.Focused());
    }
    EXPECT_THAT(requests, IsEmpty());
    EXPECT_EQ(fakes::screen().beeps, 5);
    type(page.NameBox, u"kim@x");
    click(page.SignInButt);
    EXPECT_EQ(page.FaultLbl.Caption(), u"");
}

TEST_F(SignInPages, ARememberedAccountFillsTheFieldsIn) {
    account(u"cy@x", u"Cy");
    account(u"bob@x", u"Bob :)", Status::on_the_phone);
    account(u"ann@x", u"Ann");
    SignInPage& page = open();
    EXPECT_THAT(page.NameBox.Items(), ElementsAre(u"ann@x", u"bob@x", u"cy@x"));
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"Ann");
    ASSERT_TRUE(pick(page.NameBox, 1));
    EXPECT_EQ(page.NameBox.Text(), u"bob@x");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"Bob :)");
    EXPECT_EQ(page.StatusList.Text(), u"On the phone");
    EXPECT_EQ(page.RememberCheck.Value(), 1);
    EXPECT_TRUE(page.ForgetButt.Enabled());
    type(page.NameBox, u"bo");
    EXPECT_FALSE(page.ForgetButt.Enabled());
}

TEST_F(SignInPages, AnAccountIsForgotten) {
    account(u"bob@x", u"Bob");
    account(u"ann@x", u"Ann");
    SignInPage& page = open();
    ASSERT_TRUE(click(page.ForgetButt));
    EXPECT_THAT(forgotten, ElementsAre(u"ann@x"));
    EXPECT_THAT(page.NameBox.Items(), ElementsAre(u"bob@x"));
    EXPECT_EQ(page.NameBox.Text(), u"");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"");
    EXPECT_EQ(page.RememberCheck.Value(), 0);
    EXPECT_FALSE(page.ForgetButt.Enabled());
    EXPECT_TRUE(page.NameBox.Focused());
    page.focusFirst();
    EXPECT_TRUE(page.NameBox.Focused()) << "there is nobody to sign in yet";
}

TEST_F(SignInPages, ProposesWhoIsAskedForAndKeepsWhatWasTyped) {
    account(u"bob@x", u"Bob");
    account(u"ann@x", u"Ann");
    SignInPage& page = open();
    page.propose(u"bob@x");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"Bob");
    type(page.DisplayNameTxt, u"Somebody else");
    page.propose(u"BOB@x");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"Somebody else");
    page.propose({});
    EXPECT_EQ(page.NameBox.Text(), u"ann@x");
    page.proposeNobody();
    EXPECT_EQ(page.NameBox.Text(), u"");
    EXPECT_EQ(page.DisplayNameTxt.Text(), u"");
}

const NetworkAccount ann{.address = {.host = u"irc.oftc.net", .channels = {u"#murmelix", u"#help"}}, .nick = u"ann"};
const NetworkAccount reader{.address = {.dialect = irc::Dialect::twitch,
                                        .host = std::u16string(irc::twitch_host),
                                        .channels = {u"#some_streamer"}}};

TEST_F(SignInPages, ShowTheFieldsOfTheKindThatIsPicked) {
    SignInPage& page = open();
    EXPECT_THAT(std::vector<std::u16string>({page.KindList.List(0), page.KindList.List(1), page.KindList.List(2)}),
                ElementsAre(u"On this computer", u"IRC network", u"Streaming chat"));
    EXPECT_TRUE(page.LocalPanel.Visible() && !page.IrcPanel.Visible() && !page.StreamingPanel.Visible());
    pick(page.KindList, 1);
    EXPECT_TRUE(!page.LocalPanel.Visible() && page.IrcPanel.Visible() && !page.StreamingPanel.Visible());
    pick(page.KindList, 2);
    EXPECT_TRUE(!page.LocalPanel.Visible() && !page.IrcPanel.Visible() && page.StreamingPanel.Visible());
    EXPECT_TRUE(page.NoteLbl.Caption().starts_with(u"A channel's name is enough"));
    // What was filled in is there again.
    pick(page.KindList, 0);
    EXPECT_EQ(page.NameBox.Text(), u"you@messenger.example");
}

TEST_F(SignInPages, TabGoesThroughTheFieldsOfANetwork) {
    SignInPage& page = open(AccountKind::irc);
    pick(page.NetworkList, NetworkFields::other_network);
    page.KindList.SetFocus();
    expectTabs({&page.NetworkList, &page.ServerTxt, &page.PortTxt, &page.NickBox, &page.ChannelsTxt, &page.AccountTxt,
                &page.PasswordTxt, &page.PlainCheck, &page.RememberCheck, &page.AutomaticCheck, &page.SignInButt});
    pick(page.KindList, 2);
    layOut();
    page.KindList.SetFocus();
    expectTabs({&page.ChannelBox, &page.WriterTxt, &page.TokenTxt, &page.RememberCheck});
}

TEST_F(SignInPages, LettersLeadToTheFieldsOfANetwork) {
    SignInPage& page = open(AccountKind::irc);
    pick(page.NetworkList, NetworkFields::other_network);
    for (const auto& [letter, control] :
         std::vector<std::pair<char16_t, const ui::Control*>>{{u'k', &page.KindList},
                                                              {u'w', &page.NetworkList},
                                                              {u'v', &page.ServerTxt},
                                                              {u'p', &page.PortTxt},
                                                              {u'n', &page.NickBox},
                                                              {u'c', &page.ChannelsTxt},
                                                              {u'o', &page.AccountTxt},
                                                              {u'd', &page.PasswordTxt}}) {
        EXPECT_TRUE(accelerator(*form, letter));
        EXPECT_TRUE(control->Focused()) << static_cast<char>(letter);
    }
    EXPECT_TRUE(accelerator(*form, u'e'));
    EXPECT_EQ(page.PlainCheck.Value(), 1);
    EXPECT_TRUE(accelerator(*form, u'u'));
    EXPECT_EQ(page.PlainPasswordCheck.Value(), 1);
    pick(page.KindList, 2);
    layOut();
    for (const auto& [letter, control] : std::vector<std::pair<char16_t, const ui::Control*>>{
             {u'c', &page.ChannelBox}, {u'n', &page.WriterTxt}, {u'o', &page.TokenTxt}}) {
        EXPECT_TRUE(accelerator(*form, letter));
        EXPECT_TRUE(control->Focused()) << static_cast<char>(letter);
    }
}

TEST_F(SignInPages, AChannelOfTheStreamingChatIsFourStepsAway) {
    SignInPage& page = open();
    ASSERT_TRUE(pick(page.KindList, 2));
    layOut();
    ASSERT_TRUE(type(page.ChannelBox, u"Some_Streamer"));
    ASSERT_TRUE(click(page.SignInButt));
    ASSERT_EQ(connections.size(), 1U);
    EXPECT_EQ(connections.front().account, reader);
    EXPECT_FALSE(connections.front().remember);
    EXPECT_THAT(requests, IsEmpty());
}

TEST_F(SignInPages, WhatWasFilledInIsConnectedTo) {
    SignInPage& page = open(AccountKind::irc);
    pick(page.NetworkList, 1);
    type(page.NickBox, u"ann");
    type(page.ChannelsTxt, u"murmelix #help");
    type(page.AccountTxt, u"Ann");
    type(page.PasswordTxt, u"correct horse");
    click(page.RememberCheck);
    EXPECT_TRUE(page.PasswordTxt.Masked() && page.TokenTxt.Masked());
    ASSERT_TRUE(key(*form, ui::Key::enter));
    ASSERT_EQ(connections.size(), 1U);
    NetworkAccount wanted = ann;
    wanted.account = u"Ann";
    wanted.password = u"correct horse";
    EXPECT_EQ(connections.front().account, wanted);
    EXPECT_TRUE(connections.front().remember);
    EXPECT_EQ(page.PasswordTxt.Text(), u"") << "it is not shown again, and nobody finds it there";
}

TEST_F(SignInPages, AnotherServerHasFieldsOfItsOwn) {
    SignInPage& page = open(AccountKind::irc);
    EXPECT_EQ(page.ServerTxt.Text(), u"irc.libera.chat");
    EXPECT_EQ(page.PortTxt.Text(), u"6697");
    EXPECT_FALSE(page.ServerTxt.Enabled());
    pick(page.NetworkList, NetworkFields::other_network);
    EXPECT_TRUE(page.ServerTxt.Enabled() && page.PortTxt.Enabled());
    EXPECT_FALSE(page.PlainPasswordCheck.Enabled());
    click(page.PlainCheck);
    EXPECT_EQ(page.PortTxt.Text(), u"6667");
    EXPECT_TRUE(page.PlainPasswordCheck.Enabled());
    click(page.PlainPasswordCheck);
    click(page.PlainCheck);
    EXPECT_EQ(page.PortTxt.Text(), u"6697");
    EXPECT_FALSE(page.PlainPasswordCheck.Enabled());
    EXPECT_EQ(page.PlainPasswordCheck.Value(), 0);
    type(page.PortTxt, u"7000");
    click(page.PlainCheck);
    EXPECT_EQ(page.PortTxt.Text(), u"7000");
}

TEST_F(SignInPages, TheFieldThatIsWrongIsShown) {
    SignInPage& page = open(AccountKind::irc);
    click(page.SignInButt);
    EXPECT_TRUE(page.NickBox.Focused());
    EXPECT_NE(page.FaultLbl.Caption(), u"");
    type(page.NickBox, u"ann");
    type(page.PasswordTxt, u"secret");
    click(page.PlainCheck);
    click(page.SignInButt);
    EXPECT_TRUE(page.PasswordTxt.Focused());
    EXPECT_TRUE(page.FaultLbl.Caption().starts_with(u"Without encryption"));
    EXPECT_EQ(page.FaultLbl.Caption().find(u"secret"), murmelix::npos);
    click(page.PlainPasswordCheck);
    click(page.SignInButt);
    EXPECT_EQ(page.FaultLbl.Caption(), u"");
    ASSERT_EQ(connections.size(), 1U);
    EXPECT_TRUE(connections.front().account.password_in_the_clear);
}

TEST_F(SignInPages, ARememberedNetworkFillsTheFieldsIn) {
    keepNetwork(reader);
    account(u"bob@x", u"Bob");
    keepNetwork(ann, "protected");
    SignInPage& page = open();
    EXPECT_EQ(page.KindList.ListIndex(), 1) << "it was used last";
    EXPECT_EQ(page.NetworkList.Text(), u"OFTC");
    EXPECT_EQ(page.NickBox.Text(), u"ann");
    EXPECT_EQ(page.ChannelsTxt.Text(), u"#murmelix, #help");
    EXPECT_EQ(page.PasswordTxt.Text(), u"");
    EXPECT_EQ(page.PasswordLbl.Caption(), u"Passwor&d (kept)");
    EXPECT_EQ(page.RememberCheck.Value(), 1);
    EXPECT_TRUE(page.ForgetButt.Enabled());
    EXPECT_THAT(page.NickBox.Items(), ElementsAre(u"ann@irc.oftc.net"));
    EXPECT_THAT(page.NameBox.Items(), ElementsAre(u"bob@x"));
    EXPECT_THAT(page.ChannelBox.Items(), ElementsAre(u"#some_streamer@twitch"));
    click(page.SignInButt);
    ASSERT_EQ(connections.size(), 1U);
    EXPECT_TRUE(connections.front().kept_password);
    type(page.NickBox, u"anna");
    EXPECT_NE(page.PasswordLbl.Caption(), u"Passwor&d (kept)") << "it is another's";
    pick(page.NickBox, 0);
    EXPECT_EQ(page.NickBox.Text(), u"ann");
    EXPECT_EQ(page.PasswordLbl.Caption(), u"Passwor&d (kept)");
    pick(page.KindList, 2);
    layOut();
    pick(page.ChannelBox, 0);
    EXPECT_EQ(page.ChannelBox.Text(), u"#some_streamer");
    EXPECT_TRUE(page.ForgetButt.Enabled());
    click(page.ForgetButt);
    EXPECT_THAT(forgotten, ElementsAre(u"#some_streamer@twitch"));
    EXPECT_EQ(page.ChannelBox.Text(), u"");
    EXPECT_TRUE(page.ChannelBox.Focused());
}

TEST_F(SignInPages, IsAsHighAsTheHighestKind) {
    SignInPage& page = open();
    const int least = page.leastHeight(3600);
    for (int kind = 0; kind < 3; ++kind) {
        pick(page.KindList, kind);
        EXPECT_LE(page.layout().needed(3600).height, least);
    }
}

TEST_F(SignInPages, ALongFaultGetsTheLinesItNeeds) {
    SignInPage& page = open();
    const auto place = [&] { page.layout().place({0, 0, 3600, 9000}); };
    place();
    const int two_lines = page.FaultLbl.Height(), button = page.SignInButt.Top();
    page.tellFault(std::u16string(500, u'x'));
    place();
    EXPECT_GT(page.FaultLbl.Height(), two_lines);
    EXPECT_EQ(page.SignInButt.Top() - button, page.FaultLbl.Height() - two_lines);
}

} // namespace

} // namespace messenger_client
