// What the client does in the course of time, on a clock of the test's.
#include "companions/messenger/chat/session.h"

#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/client/account.h"
#include "tests/fakes/fakes.h"

namespace messenger_client {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char16_t accounts_value[] = u"Software\\MessengerClient\\Accounts";

struct Sessions : testing::Test {
    Client client;
    Switches switches;
    std::optional<Session> session;
    long long now = 1'000'000; // microseconds
    long long untouched = 0;
    std::map<Session::Clock, long long> timers; // when they run off, in microseconds
    std::vector<std::string> told;
    int stored = 0;

    void begin() {
        session.emplace(
            client, switches,
            Session::Hooks{
                .microseconds = [this] { return now; },
                .untouched = [this] { return untouched; },
                .set_timer = [this](Session::Clock clock,
                                    unsigned milliseconds) { timers[clock] = now + milliseconds * 1000LL; },
                .store = [this](const Accounts&) { ++stored; },
                .accounts_changed = [this] { told.push_back("accounts"); },
                .signing_in = [this](const std::u16string& signin,
                                     const std::u16string&) { told.push_back("signing " + murmelix::toUtf8(signin)); },
                .network =
                    [this](const Account& account) { told.push_back("network " + murmelix::toUtf8(account.signin)); },
                .ask_other_account = [this] { told.push_back("other"); },
                .replayed = [this] { told.push_back("replayed"); },
                .unused = [this] { told.push_back("unused"); }});
    }
    // The timers that run off meanwhile do so.
    void pass(long long milliseconds) {
        const long long end = now + milliseconds * 1000;
        for (;;) {
            const auto next = std::min_element(timers.begin(), timers.end(),
                                               [](const auto& a, const auto& b) { return a.second < b.second; });
            if (next == timers.end() || next->second > end) {
                break;
            }
            const Session::Clock clock = next->first;
            now = std::max(now, next->second);
            timers.erase(next);
            session->tick(clock);
        }
        now = end;
    }
    std::string me() const { return client.me() ? murmelix::toUtf8(client.me()->signin) : ""; }
    void remember(const char16_t* signin, bool automatic) {
        client.accounts().use(signin);
        client.accounts().remember(signin, automatic);
    }
};

using AtItsStart = Sessions;

TEST_F(AtItsStart, ANewComputerHasTheDemoAccount) {
    begin();
    session->start();
    EXPECT_EQ(client.stage(), Stage::connecting);
    pass(900);
    EXPECT_EQ(me(), "you@messenger.example");
    EXPECT_EQ(client.contacts().size(), 5U) << "and somebody to meet";
}

TEST_F(AtItsStart, TheAutomaticAccountSignsIn) {
    remember(u"ann@x", true);
    remember(u"bob@x", false);
    begin();
    session->start();
    pass(900);
    EXPECT_EQ(me(), "ann@x");
}

TEST_F(AtItsStart, WithoutAnAutomaticOneItAsks) {
    remember(u"bob@x", false);
    begin();
    session->start();
    pass(10'000);
    EXPECT_EQ(me(), "");
    session->signInAutomatically();
    pass(900);
    EXPECT_EQ(me(), "bob@x") << "who is asked to sign in takes the one remembered";
}

TEST_F(AtItsStart, TheCommandLineSignsInAtOnceOrNot) {
    remember(u"ann@x", true);
    switches.signed_out = true;
    begin();
    session->start();
    pass(10'000);
    EXPECT_EQ(me(), "");
    session.reset();
}

TEST_F(AtItsStart, StartedByAnotherProgramNobodySignsIn) {
    switches.embedding = true;
    begin();
    session->start();
    pass(10'000);
    EXPECT_EQ(me(), "");
}

using Remembered = Sessions;

TEST_F(Remembered, OnlyWhoAskedForItAndGotIn) {
    begin();
    session->signIn({u"ann@x", u"Ann", Status::busy, true, true});
    EXPECT_FALSE(client.accounts().lastRemembered()) << "not before the sign-in has succeeded";
    pass(900);
    EXPECT_EQ(client.accounts().automatic()->signin, u"ann@x");
    EXPECT_EQ(client.me()->status, Status::busy);
    EXPECT_EQ(stored, 1);

    session->signIn({u"bob@x", u"", Status::online, true, false});
    client.signOut(); // given up
    session->connect(u"bob@x", u"");
    pass(900);
    EXPECT_FALSE(client.accounts().find(u"bob@x")->remembered);

    session->signIn({u"ann@x", u"Ann", Status::online, false, false});
    pass(900);
    EXPECT_FALSE(client.accounts().find(u"ann@x")->remembered) << "no longer";
}

TEST_F(Remembered, WhoIsSignedInAtOnceToo) {
    switches.connect = 0;
    begin();
    session->signIn({u"ann@x", u"Ann", Status::online, true, false});
    EXPECT_TRUE(client.accounts().find(u"ann@x")->remembered);
}

TEST_F(Remembered, SwitchingAsksForSomebodyElseOrSignsIn) {
    remember(u"bob@x", false);
    begin();
    session->signIn({u"ann@x", u"Ann"});
    pass(900);
    session->switchTo(u"bob@x");
    pass(900);
    EXPECT_EQ(me(), "bob@x");
    session->switchTo(u"");
    EXPECT_EQ(me(), "");
    EXPECT_EQ(told.back(), "other");
}

using Idling = Sessions;

TEST_F(Idling, BeginsAndEndsByTheClock) {
    switches.signin = u"ann@x";
    switches.idle = 1;
    begin();
    session->start();
    untouched = 61'000;
    pass(5000);
    EXPECT_EQ(client.me()->status, Status::idle);
    untouched = 2'200'000'000; // 25 days
    pass(5000);
    EXPECT_EQ(client.me()->status, Status::idle);
    untouched = 100;
    pass(5000);
    EXPECT_EQ(client.me()->status, Status::online);
    session->pretendUntouched(60'000);
    EXPECT_EQ(client.me()->status, Status::idle);
}

using Replaying = Sessions;

constexpr char log_text[] = "[10:00] <ann> one\n[10:00] <bob> two\n=== cy has joined #r\n[10:01] <cy> three\n"
                            "=== bob is now known as rob\n=== rob has quit\n";

TEST_F(Replaying, SaysWhatTheLogSays) {
    switches.signin = u"me@x";
    switches.connect = 0;
    switches.replay.speed = 10;
    begin();
    session->start();
    session->openReplay(log_text);
    EXPECT_TRUE(session->replaying());
    EXPECT_FALSE(session->startReplay()) << "already";
    ASSERT_EQ(client.conversations().size(), 1U);
    const ConversationPtr talk = client.conversations().front();
    EXPECT_EQ(talk->participants().size(), 2U) << "cy comes later";
    pass(60'000);
    EXPECT_TRUE(talk->history().ends_with(u"\r\nann says:\r\none\r\nbob says:\r\ntwo\r\ncy says:\r\nthree"))
        << murmelix::toUtf8(talk->history());
    EXPECT_EQ(talk->participants().size(), 2U);
    EXPECT_FALSE(client.find(u"rob@messenger.example"));
    EXPECT_EQ(client.find(u"bob@messenger.example")->friendly, u"rob");
    EXPECT_THAT(told, ElementsAre("replayed"));
    EXPECT_FALSE(session->replaying());
}

TEST_F(Replaying, WaitsForItsReader) {
    switches.signin = u"me@x";
    switches.wait = true;
    begin();
    session->start();
    session->openReplay(log_text);
    const ConversationPtr other = client.open({});
    const ConversationPtr talk = client.conversations().front();
    pass(60'000);
    session->historyRead(*other);
    EXPECT_FALSE(session->replaying());
    session->historyRead(*talk);
    EXPECT_TRUE(session->replaying());
    const std::size_t before = talk->history().size();
    pass(499);
    EXPECT_EQ(talk->history().size(), before) << "the reader is still setting its windows up";
    pass(1);
    EXPECT_GT(talk->history().size(), before);
}

TEST_F(Replaying, EndsWithItsConversation) {
    switches.signin = u"me@x";
    begin();
    session->start();
    session->openReplay(log_text);
    pass(0);
    client.signOut();
    pass(60'000);
    EXPECT_THAT(told, ElementsAre("replayed"));
}

TEST_F(Replaying, LetsTheRestOfTheProgramHaveItsTurn) {
    std::string log;
    for (int i = 0; i < 1800; ++i) {
        log += "[10:00] <ann> x\n";
    }
    switches.signin = u"me@x";
    switches.replay.speed = 0;
    begin();
    session->start();
    std::size_t said = 0;
    client.listen([&](const Change& change) { said += change.kind == Change::Kind::said; });
    session->openReplay(log);
    std::size_t most = 0;
    while (session->replaying()) {
        const std::size_t before = said;
        session->tick(Session::Clock::replay);
        most = std::max(most, said - before);
        EXPECT_TRUE(!session->replaying() || timers[Session::Clock::replay] == now) << "at once";
    }
    EXPECT_EQ(said, 1800U);
    EXPECT_EQ(most, 500U);
}

TEST_F(Replaying, AStepThatFailsIsLostAlone) {
    switches.signin = u"me@x";
    switches.replay.speed = 0;
    begin();
    session->start();
    client.listen([](const Change& change) {
        if (change.kind == Change::Kind::said && change.text == u"two") {
            throw std::bad_alloc();
        }
    });
    session->openReplay(log_text);
    pass(1000);
    EXPECT_TRUE(client.conversations().front()->history().ends_with(u"one\r\ncy says:\r\nthree"));
    EXPECT_THAT(told, ElementsAre("replayed"));
}

TEST_F(Replaying, HasNoMoreWritersThanTheListHasRoomFor) {
    std::string log;
    for (std::size_t i = 0; i < most_contacts + 100; ++i) {
        log += "[10:00] <nick" + std::to_string(i) + "> x\n";
    }
    switches.signin = u"me@x";
    switches.replay.participants = 1'000'000;
    switches.replay.speed = 0;
    begin();
    session->start();
    client.addContact(u"ann@x", u"Ann");
    session->openReplay(log);
    pass(1000);
    EXPECT_EQ(client.contacts().size(), most_contacts);
    EXPECT_THAT(told, ElementsAre("replayed"));
}

TEST_F(Replaying, ATimerWithoutAReplayIsThatOfAnUnusedClient) {
    begin();
    session->endWhenUnused();
    pass(1999);
    EXPECT_THAT(told, IsEmpty());
    pass(1);
    EXPECT_THAT(told, ElementsAre("unused"));
}

using WorkForLater = Sessions;

TEST_F(WorkForLater, IsDoneInOrderAndMayAddMore) {
    begin();
    session->soon([this] {
        told.push_back("one");
        session->soon([this] { told.push_back("three"); });
    });
    session->soon([this] { told.push_back("two"); });
    EXPECT_THAT(told, IsEmpty());
    pass(0);
    EXPECT_THAT(told, ElementsAre("one", "two", "three"));
}

TEST_F(WorkForLater, ThatThrowsLosesOnlyItself) {
    begin();
    session->soon([] { throw std::bad_alloc(); });
    session->soon([this] { told.push_back("two"); });
    EXPECT_THROW(pass(0), std::bad_alloc);
    pass(0);
    EXPECT_THAT(told, ElementsAre("two"));
    session->soon([] { throw std::bad_alloc(); });
    EXPECT_THROW(pass(0), std::bad_alloc);
    session->soon([this] { told.push_back("three"); });
    pass(0);
    EXPECT_THAT(told, ElementsAre("two", "three"));
}

struct Stored : testing::Test {
    void SetUp() override { murmelix::fakes::reset(); }
    std::map<std::u16string, murmelix::fakes::UserStores::Value>& values() {
        return murmelix::fakes::userStores().values;
    }
};

TEST_F(Stored, AccountsComeBack) {
    Accounts accounts;
    accounts.use(u"ann@x").friendly = u"Ann";
    accounts.remember(u"ann@x", true);
    storeAccounts(accounts);
    Accounts read;
    loadAccounts(read);
    EXPECT_EQ(read.lines(), accounts.lines());
    accounts.forget(u"ann@x");
    storeAccounts(accounts);
    EXPECT_THAT(values(), IsEmpty());
}

TEST_F(Stored, TheAccountOfAnOlderClientIsTakenOver) {
    values()[u"Software\\MessengerClient\\SigninName"] = u"old@x";
    values()[u"Software\\MessengerClient\\FriendlyName"] = u"Old\r\nOne";
    Accounts accounts;
    loadAccounts(accounts);
    ASSERT_TRUE(accounts.automatic());
    EXPECT_EQ(accounts.automatic()->friendly, u"Old  One");
    murmelix::fakes::userStores().unwritable = true;
    storeAccounts(accounts);
    EXPECT_EQ(values().size(), 2U) << "what could not be stored anew stays where it was";
    murmelix::fakes::userStores().unwritable = false;
    storeAccounts(accounts);
    EXPECT_EQ(values().size(), 1U);
}

TEST_F(Stored, OtherKindsOfValuesAndEndlessOnesAreNothing) {
    for (const murmelix::fakes::UserStores::Value& value :
         {murmelix::fakes::UserStores::Value(7U), murmelix::fakes::UserStores::Value(u"ann@x\t2\t-\t0\tAnn"),
          murmelix::fakes::UserStores::Value(std::vector{u"ann@x\t2\t-\t0\t" + std::u16string(longest_store, u'n')})}) {
        values() = {{accounts_value, value}};
        Accounts accounts;
        loadAccounts(accounts);
        EXPECT_THAT(accounts.all(), IsEmpty());
    }
    values() = {{u"Software\\MessengerClient\\SigninName", std::u16string(1'000'000, u'n')}};
    Accounts accounts;
    loadAccounts(accounts);
    ASSERT_EQ(accounts.all().size(), 1U);
    EXPECT_EQ(accounts.all()[0].signin.size(), longest_name);
}

TEST_F(Stored, WhatIsStoredIsReadAgainHoweverMuchItIs) {
    Accounts accounts;
    for (int i = 0; i < 900; ++i) {
        const std::u16string signin = u"account" + murmelix::toText(i) + u"@x";
        accounts.use(signin).friendly = std::u16string(longest_name, u'n');
        accounts.remember(signin, false);
    }
    storeAccounts(accounts);
    Accounts read;
    loadAccounts(read);
    EXPECT_GT(read.all().size(), 400U);
    EXPECT_LT(read.all().size(), 900U);
    EXPECT_EQ(read.all().front().signin, u"account899@x") << "the last used are kept";
}

TEST_F(Stored, WhetherItKeepsRunning) {
    EXPECT_TRUE(keepsRunning()) << "until somebody decides otherwise";
    keepRunning(false);
    EXPECT_FALSE(keepsRunning());
    keepRunning(true);
    EXPECT_TRUE(keepsRunning());
}

struct Forms : testing::Test {
    Accounts accounts;
    SignInForm form{accounts};
};

TEST_F(Forms, ProposeTheAccountUsedLast) {
    EXPECT_EQ(form.proposeLast().signin, u"you@messenger.example");
    accounts.read({u"ann@x\t10\t-\t0\tAnn", u"bob@x\t2\tautomatic\t0\tBob"});
    const SignInRequest& ann = form.proposeLast();
    EXPECT_EQ(ann.signin, u"ann@x");
    EXPECT_EQ(ann.friendly, u"Ann");
    EXPECT_EQ(ann.status, Status::busy);
    EXPECT_TRUE(ann.remember);
    EXPECT_FALSE(ann.automatic);
}

TEST_F(Forms, AreEmptyForSomebodyElse) {
    accounts.read({u"ann@x\t10\t-\t0\tAnn"});
    form.proposeLast();
    const SignInRequest& nobody = form.proposeNobody();
    EXPECT_EQ(nobody.signin, u"");
    EXPECT_EQ(nobody.friendly, u"");
    EXPECT_EQ(nobody.status, Status::online);
    EXPECT_FALSE(nobody.remember);
}

TEST_F(Forms, NobodyGetsAnothersName) {
    accounts.read({u"ann@x\t2\t-\t0\tAnn", u"bob@x\t2\t-\t0\tBob"});
    form.proposeLast();
    EXPECT_EQ(form.friendlyFor(u"ann@x", u"Ann"), std::nullopt);
    EXPECT_EQ(form.friendlyFor(u"kim@", u"Ann"), u"") << "a new account";
    EXPECT_EQ(form.friendlyFor(u"kim@x", u""), std::nullopt);
    EXPECT_EQ(form.friendlyFor(u" BOB@x ", u""), u"Bob") << "one that is known";
    EXPECT_EQ(form.friendlyFor(u"ann@x", u"Bob"), u"Ann");
    EXPECT_EQ(form.completed({u"kim@x", u"Ann"}).friendly, u"");
}

TEST_F(Forms, WhatIsTypedStays) {
    accounts.read({u"ann@x\t2\t-\t0\tAnn"});
    form.proposeLast();
    EXPECT_EQ(form.friendlyFor(u"kim@x", u"Kimberley"), std::nullopt);
    EXPECT_EQ(form.completed({u"kim@x", u" Kimberley "}).friendly, u"Kimberley");
    EXPECT_EQ(form.completed({u"ann@x", u"Anna"}).friendly, u"Anna");
}

TEST_F(Forms, ANameWithBlanksIsThatForPeopleToo) {
    form.proposeLast();
    EXPECT_EQ(form.friendlyFor(u"Kim", u"You"), u"");
    EXPECT_EQ(form.friendlyFor(u"Kim ", u""), std::nullopt);
    EXPECT_EQ(form.friendlyFor(u"Kim L", u""), u"Kim L") << "while it is typed";
    const SignInRequest kim = form.completed({u" Kim  Lee ", u"Kim L"});
    EXPECT_EQ(kim.signin, u"Kim.Lee@messenger.example");
    EXPECT_EQ(kim.friendly, u"Kim  Lee");
    EXPECT_EQ(faultOfSignin(kim.signin), u"");
    EXPECT_EQ(form.completed({u"Kim Lee", u"K."}).friendly, u"K.") << "what is typed stays";
}

TEST_F(Forms, AnyNameWillDo) {
    EXPECT_EQ(form.completed({u" kim ", u""}).signin, u"kim@messenger.example");
    EXPECT_EQ(form.completed({u"kim@x", u""}).signin, u"kim@x");
    EXPECT_EQ(form.completed({u"", u""}).signin, u"");
    EXPECT_EQ(faultOfSignin(form.completed({u"kim", u""}).signin), u"");
    EXPECT_NE(faultOfSignin(form.completed({u"kim k@x", u""}).signin), u"");
    EXPECT_NE(faultOfSignin(form.completed({std::u16string(320, u'k'), u""}).signin), u"");
    const SignInRequest automatic = form.completed({u"kim", u"", Status::online, false, true});
    EXPECT_TRUE(automatic.remember) << "what signs in by itself is remembered";
}

TEST_F(Sessions, AnAccountOfANetworkIsConnectedTo) {
    Account& account = client.accounts().use(u"ann@irc.example.org");
    account.network = NetworkAccount{.address = {.host = u"irc.example.org"}, .nick = u"ann"};
    client.accounts().remember(u"ann@irc.example.org", true);
    begin();
    session->start();
    EXPECT_THAT(told, testing::ElementsAre("network ann@irc.example.org"));
    told.clear();
    session->switchTo(u"ANN@irc.example.org");
    session->connect(u"ann@irc.example.org", {});
    EXPECT_THAT(told, testing::ElementsAre("network ann@irc.example.org", "network ann@irc.example.org"));
    pass(60'000);
    EXPECT_FALSE(client.signedIn());
}

} // namespace

} // namespace messenger_client
