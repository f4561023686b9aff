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
        made.emplace(*form, accounts,
                     SignInPage::Hooks{.sign_in = [this](const SignInRequest& request) { requests.push_back(request); },
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
        return *made;
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
             &page.ForgetButt, &page.NameBox, &page.DisplayNameTxt, &page.StatusList, &page.RememberCheck,
             &page.AutomaticCheck, &page.SignInButt}) {
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
