// Accounts, what is remembered of them, and signing in.
#include "companions/messenger/chat/accounts.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/auto_idle.h"
#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/signing_in.h"

namespace messenger_client {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::u16string>;

std::vector<std::string> signinsOf(const Accounts& accounts) {
    std::vector<std::string> names;
    for (const Account& account : accounts.all()) {
        names.push_back(murmelix::toUtf8(account.signin));
    }
    return names;
}

Accounts readFrom(const Lines& lines) {
    Accounts accounts;
    accounts.read(lines);
    return accounts;
}

TEST(RememberedAccounts, AreLinesOfTheirStore) {
    Accounts accounts;
    Account& ann = accounts.use(u"ann@x");
    ann.friendly = u"Ann\tB\\";
    ann.status = Status::busy;
    ann.unread = -1;
    ann.contacts = {std::make_shared<Contact>(Contact{u"cy@x", u"Cy :)", Status::away, true}),
                    std::make_shared<Contact>(Contact{u"di@x", u"Di", Status::offline, false})};
    accounts.remember(u"ANN@x", false);
    accounts.use(u"bob@x");
    accounts.remember(u"bob@x", true);
    accounts.use(u"guest@x");
    EXPECT_THAT(accounts.lines(), ElementsAre(u"bob@x\t2\tautomatic\t0\tbob", u"ann@x\t10\t-\t-1\tAnn\\tB\\\\",
                                              u"\tcy@x\t34\tblocked\tCy :)", u"\tdi@x\t1\t-\tDi"));
}

TEST(RememberedAccounts, ComeBackAsTheyWere) {
    const Accounts accounts = readFrom({u"bob@x\t2\tautomatic\t4\tbob", u"ann@x\t10\t-\t-1\tAnn\\tB\\\\",
                                        u"\tcy@x\t34\tblocked\tCy :)", u"\tdi@x\t1\t-\tDi"});
    EXPECT_THAT(signinsOf(accounts), ElementsAre("bob@x", "ann@x"));
    const Account* ann = accounts.find(u"Ann@X");
    ASSERT_TRUE(ann);
    EXPECT_EQ(ann->friendly, u"Ann\tB\\");
    EXPECT_EQ(ann->status, Status::busy);
    EXPECT_EQ(ann->unread, -1);
    EXPECT_TRUE(ann->remembered);
    EXPECT_FALSE(ann->automatic);
    ASSERT_EQ(ann->contacts.size(), 2U);
    EXPECT_EQ(ann->contacts[0]->friendly, u"Cy :)");
    EXPECT_EQ(ann->contacts[0]->status, Status::away);
    EXPECT_TRUE(ann->contacts[0]->blocked);
    EXPECT_FALSE(ann->contacts[1]->blocked);
    ASSERT_TRUE(accounts.automatic());
    EXPECT_EQ(accounts.automatic()->signin, u"bob@x");
    EXPECT_EQ(accounts.automatic()->unread, 4);
    EXPECT_EQ(accounts.lastRemembered()->signin, u"bob@x");
}

TEST(RememberedAccounts, OneAtMostSignsInAutomatically) {
    Accounts accounts = readFrom({u"a@x\t2\tautomatic\t0\tA", u"b@x\t2\tautomatic\t0\tB"});
    EXPECT_EQ(accounts.automatic()->signin, u"a@x");
    EXPECT_FALSE(accounts.find(u"b@x")->automatic);
    accounts.remember(u"b@x", true);
    EXPECT_EQ(accounts.automatic()->signin, u"b@x");
    EXPECT_FALSE(accounts.find(u"a@x")->automatic);
    accounts.remember(u"b@x", false);
    EXPECT_FALSE(accounts.automatic());
}

TEST(RememberedAccounts, TheLastUsedIsTheFirst) {
    Accounts accounts = readFrom({u"a@x\t2\t-\t0\tA", u"b@x\t2\t-\t0\tB", u"c@x\t2\t-\t0\tC"});
    EXPECT_EQ(accounts.use(u"C@X").friendly, u"C");
    EXPECT_THAT(signinsOf(accounts), ElementsAre("c@x", "a@x", "b@x"));
    accounts.use(u"new@x");
    EXPECT_THAT(signinsOf(accounts), ElementsAre("new@x", "c@x", "a@x", "b@x"));
    EXPECT_EQ(accounts.lastRemembered()->signin, u"c@x") << "the new one is not remembered";
}

TEST(RememberedAccounts, AreForgotten) {
    Accounts accounts = readFrom({u"a@x\t2\tautomatic\t0\tA", u"b@x\t2\t-\t0\tB"});
    EXPECT_TRUE(accounts.forget(u"A@x"));
    EXPECT_FALSE(accounts.forget(u"a@x"));
    EXPECT_FALSE(accounts.automatic());
    EXPECT_THAT(signinsOf(accounts), ElementsAre("b@x"));
}

TEST(RememberedAccounts, NonsenseIsLeftOut) {
    const std::u16string nul(u"n\0l@x\t2\t-\t0\tN", 13);
    const Accounts accounts =
        readFrom({u"", u"\t", u"\tcy@x\t2\t-\tCy of nobody", u"a@x", u"a@x\t2\t-\t0", u"\tdi@x\t2\t-\tDi of nobody",
                  u"\t\t\t\t", u"\t2\t-\t0\tno name", u"good@x\t2\t-\t0\tGood", u"\tcontact", u"\t\t2\t-\tno name",
                  u"\tee@x\t2\t-\tE\tE", u"GOOD@x\t2\t-\t0\tagain", u"\tff@x\t2\t-\tof the other",
                  u"odd@x\tmany\tperhaps\t99999999999\t", u"\tGG@x\t-5\t\t", nul});
    EXPECT_THAT(signinsOf(accounts), ElementsAre("good@x", "odd@x", "n l@x"));
    const Account& good = accounts.all()[0];
    ASSERT_EQ(good.contacts.size(), 1U);
    EXPECT_EQ(good.contacts[0]->friendly, u"E\tE");
    const Account& odd = accounts.all()[1];
    EXPECT_EQ(odd.friendly, u"odd");
    EXPECT_EQ(odd.status, Status::online);
    EXPECT_EQ(odd.unread, 0);
    EXPECT_FALSE(odd.automatic);
    ASSERT_EQ(odd.contacts.size(), 1U);
    EXPECT_EQ(odd.contacts[0]->status, Status::offline);
    EXPECT_EQ(odd.contacts[0]->friendly, u"GG");
}

TEST(RememberedAccounts, NobodySignsInAsIdleOrOffline) {
    for (const char16_t* code : {u"0", u"1", u"18", u"512", u"-1"}) {
        const Accounts accounts = readFrom({u"a@x\t" + std::u16string(code) + u"\t-\t0\tA"});
        ASSERT_EQ(accounts.all().size(), 1U);
        EXPECT_EQ(accounts.all()[0].status, Status::online) << murmelix::toUtf8(code);
    }
    EXPECT_EQ(readFrom({u"a@x\t6\t-\t0\tA"}).all()[0].status, Status::invisible);
}

TEST(RememberedAccounts, OwnAccountAndDoublesAreNoContacts) {
    const Accounts accounts =
        readFrom({u"a@x\t2\t-\t0\tA", u"\tA@X\t2\t-\tme", u"\tb@x\t2\t-\tB", u"\tB@x\t2\t-\tB again"});
    ASSERT_EQ(accounts.all()[0].contacts.size(), 1U);
    EXPECT_EQ(accounts.all()[0].contacts[0]->friendly, u"B");
}

TEST(RememberedAccounts, NamesOfAnyKindSurvive) {
    for (const std::u16string& name :
         {std::u16string(10'000, u'n'), std::u16string(u":) (k) :D (lol)"),
          std::u16string(u"((\xD800) \\u0041 \x7F\x1"), std::u16string(u"\u202E\u05D0\u4F60 \xD83D\xDE00")}) {
        Accounts accounts;
        accounts.use(u"a@x").friendly = name;
        accounts.remember(u"a@x", true);
        EXPECT_EQ(readFrom(accounts.lines()).all().at(0).friendly, name);
        for (const std::u16string& line : accounts.lines()) {
            EXPECT_EQ(line.find_first_of(std::u16string_view(u"\0\r\n", 3)), murmelix::npos);
        }
    }
}

TEST(RememberedAccounts, NameWithLineEndsAndNulsStaysOnOneLine) {
    const Accounts accounts = readFrom({u"a@x\t2\t-\t0\tone\\r\\ntwo\\u0000three"});
    EXPECT_EQ(accounts.all().at(0).friendly, u"one  two three");
}

TEST(RememberedAccounts, AreNotMoreThanAThousand) {
    Lines lines;
    for (int i = 0; i < 1500; ++i) {
        lines.push_back(u"account" + murmelix::toText(i) + u"@x\t2\t-\t0\tA");
    }
    for (std::size_t i = 0; i < most_contacts + 500; ++i) {
        lines.push_back(u"\tcontact" + murmelix::toText(static_cast<long long>(i)) + u"@x\t2\t-\tC");
    }
    EXPECT_EQ(readFrom(lines).all().size(), 1000U);
    lines.erase(lines.begin() + 1, lines.begin() + 1500);
    const Accounts one = readFrom(lines);
    ASSERT_EQ(one.all().size(), 1U);
    EXPECT_EQ(one.all()[0].contacts.size(), most_contacts);
    EXPECT_EQ(readFrom(one.lines()).lines(), one.lines());
}

TEST(RememberedAccounts, OfTooManyTheUnrememberedGoFirst) {
    Accounts accounts;
    accounts.use(u"kept@x");
    accounts.remember(u"kept@x", false);
    for (std::size_t i = 0; i < 3 * most_accounts; ++i) {
        accounts.use(u"account" + murmelix::toText(static_cast<long long>(i)) + u"@x");
    }
    EXPECT_EQ(accounts.all().size(), most_accounts);
    EXPECT_TRUE(accounts.find(u"kept@x"));
    EXPECT_FALSE(accounts.find(u"account0@x"));
    EXPECT_EQ(accounts.all().front().signin, u"account2999@x");
    for (const Account& account : std::vector(accounts.all())) {
        accounts.remember(account.signin, false);
    }
    accounts.use(u"new@x");
    EXPECT_EQ(accounts.all().size(), most_accounts);
    EXPECT_FALSE(accounts.find(u"kept@x")) << "the one not used for longest";
}

TEST(RememberedAccounts, AnyLinesAtAllAreHarmless) {
    std::mt19937 random(20051121);
    const std::u16string alphabet = u"a@x\t\t\t2-0\\u\xD800\xDC00\x1 automatic";
    for (int round = 0; round < 300; ++round) {
        Lines lines(random() % 20);
        for (std::u16string& line : lines) {
            for (auto i = random() % 30; i > 0; --i) {
                line += alphabet[random() % alphabet.size()];
            }
        }
        const Accounts accounts = readFrom(lines);
        const Lines written = accounts.lines();
        EXPECT_EQ(readFrom(written).lines(), written);
    }
}

TEST(SigninNames, ThatOneCanType) {
    EXPECT_EQ(faultOfSignin(u"ann@place.example"), u"");
    EXPECT_EQ(faultOfSignin(u"\u4F60@x"), u"");
    EXPECT_NE(faultOfSignin(u""), u"");
    for (const char16_t* name : {u"ann", u"@x", u"ann@", u"a@b@c", u"a b@x", u"a\t@x", u"a\\b@x", u"a\xD800@x"}) {
        EXPECT_NE(faultOfSignin(name), u"") << murmelix::toUtf8(name);
    }
    EXPECT_EQ(faultOfSignin(std::u16string(318, u'a') + u"@x"), u"");
    EXPECT_NE(faultOfSignin(std::u16string(319, u'a') + u"@x"), u"");
}

// A client whose changes are written down, as far as they are about the sign-in.
struct Signing : testing::Test {
    Client client;
    SigningIn signing{client};
    std::vector<std::string> seen;
    long long now = 10'000;

    void SetUp() override {
        client.listen([this](const Change& change) {
            if (change.kind == Change::Kind::signing_in) {
                seen.push_back(client.stage() == Stage::connecting ? "connecting" : "synchronising");
            }
            if (change.kind == Change::Kind::signed_in) {
                seen.push_back("in " + std::to_string(change.number));
            }
            if (change.kind == Change::Kind::signed_out) {
                seen.push_back("out");
            }
            if (change.kind == Change::Kind::window_destroyed) {
                seen.push_back("closed");
            }
            if (change.kind == Change::Kind::my_status) {
                seen.push_back("status " + std::to_string(static_cast<long>(client.me()->status)));
            }
        });
        signing.setTime(1000);
    }
    void begin(std::u16string_view signin, Status status = Status::online) { signing.begin(signin, u"", status, now); }
    void pass(long long milliseconds) {
        now += milliseconds;
        signing.advance(now);
    }
};

using SigningInTakesTime = Signing;

TEST_F(SigningInTakesTime, ThroughItsStagesByTheClock) {
    begin(u"ann@x", Status::busy);
    EXPECT_EQ(static_cast<long>(client.stage()), 0x200);
    EXPECT_FALSE(client.signedIn());
    EXPECT_EQ(signing.dueAt(), now + 500);
    pass(499);
    EXPECT_EQ(static_cast<long>(client.stage()), 0x200);
    pass(1);
    EXPECT_EQ(static_cast<long>(client.stage()), 0x300);
    EXPECT_EQ(signing.dueAt(), now + 500);
    pass(500);
    ASSERT_TRUE(client.signedIn());
    EXPECT_EQ(client.me()->signin, u"ann@x");
    EXPECT_EQ(signing.dueAt(), std::nullopt);
    EXPECT_THAT(seen, ElementsAre("connecting", "synchronising", "in 0", "status 10"));
}

TEST_F(SigningInTakesTime, ALateClockPassesEveryStage) {
    begin(u"ann@x");
    pass(60'000);
    EXPECT_THAT(seen, ElementsAre("connecting", "synchronising", "in 0", "status 2"));
}

TEST_F(SigningInTakesTime, NoneWhereNoneIsWanted) {
    signing.setTime(0);
    begin(u"ann@x");
    EXPECT_THAT(seen, ElementsAre("in 0", "status 2"));
}

TEST_F(SigningInTakesTime, HeldUntilItIsLetOn) {
    signing.setTime(0);
    signing.hold(true);
    begin(u"ann@x");
    EXPECT_EQ(signing.dueAt(), std::nullopt);
    pass(1'000'000);
    EXPECT_TRUE(signing.next(now));
    EXPECT_THAT(seen, ElementsAre("connecting", "synchronising"));
    EXPECT_TRUE(signing.next(now));
    EXPECT_TRUE(client.signedIn());
    EXPECT_FALSE(signing.next(now));
    EXPECT_FALSE(signing.finish());
    EXPECT_FALSE(signing.fail(-1));
}

TEST_F(SigningInTakesTime, FreedGoesOnByTheClock) {
    signing.hold(true);
    begin(u"ann@x");
    signing.hold(false);
    pass(1000);
    EXPECT_TRUE(client.signedIn());
}

TEST_F(SigningInTakesTime, FailingLeavesNobodySignedIn) {
    begin(u"ann@x");
    EXPECT_TRUE(signing.fail(-5));
    pass(10'000);
    EXPECT_FALSE(client.signedIn());
    EXPECT_EQ(client.stage(), Stage::out);
    EXPECT_THAT(seen, ElementsAre("connecting", "in -5"));
}

TEST_F(SigningInTakesTime, CancellingIsAFailureToo) {
    begin(u"ann@x");
    pass(500);
    EXPECT_TRUE(signing.cancel());
    begin(u"ann@x");
    client.signOut();
    EXPECT_THAT(seen, ElementsAre("connecting", "synchronising", "in -2147023673", "connecting", "in -2147023673"));
    EXPECT_EQ(signing.dueAt(), std::nullopt);
}

TEST_F(SigningInTakesTime, AnotherOneTakesItsPlace) {
    begin(u"ann@x");
    begin(u"bob@x");
    pass(1000);
    EXPECT_EQ(client.me()->signin, u"bob@x");
    EXPECT_THAT(seen, ElementsAre("connecting", "in -2147023673", "connecting", "synchronising", "in 0", "status 2"));
}

TEST_F(SigningInTakesTime, OneAtOnceTakesItsPlaceToo) {
    begin(u"ann@x");
    client.signIn(u"bob@x", u"");
    pass(10'000);
    EXPECT_EQ(client.me()->signin, u"bob@x");
    EXPECT_THAT(seen, ElementsAre("connecting", "in 0", "status 2"));
}

TEST_F(SigningInTakesTime, SwitchingAccountsClosesTheConversationsFirst) {
    client.signIn(u"ann@x", u"Ann");
    client.open({client.addContact(u"cy@x", u"Cy")});
    client.open({client.addContact(u"di@x", u"Di")});
    seen.clear();
    begin(u"bob@x");
    EXPECT_THAT(seen, ElementsAre("closed", "closed", "out", "connecting"));
    EXPECT_THAT(client.contacts(), IsEmpty());
}

using EachAccount = Signing;

TEST_F(EachAccount, KeepsItsNameContactsAndMail) {
    client.signIn(u"ann@x", u"Ann");
    client.setMyName(u"Annie");
    const ContactPtr cy = client.addContact(u"cy@x", u"Cy");
    client.setUnread(3);
    client.setMyStatus(Status::away);

    client.signIn(u"bob@x", u"");
    EXPECT_EQ(client.me()->friendly, u"bob");
    EXPECT_THAT(client.contacts(), IsEmpty());
    EXPECT_EQ(client.unread(), 0);
    client.addContact(u"di@x", u"Di");

    client.signIn(u"ANN@x", u"");
    EXPECT_EQ(client.me()->signin, u"ann@x");
    EXPECT_EQ(client.me()->friendly, u"Annie");
    EXPECT_THAT(client.contacts(), ElementsAre(cy)) << "the very same";
    EXPECT_EQ(client.unread(), 3);
    EXPECT_EQ(client.accounts().find(u"ann@x")->status, Status::away);
    EXPECT_EQ(client.me()->status, Status::online) << "a sign-in at once is as online where nothing else is said";
}

TEST_F(EachAccount, GetsTheNameThatIsGiven) {
    client.signIn(u"ann@x", u"Ann");
    client.signIn(u"ann@x", u"Anna");
    EXPECT_EQ(client.me()->friendly, u"Anna");
}

TEST_F(EachAccount, IsNotLeftIdleOrOffline) {
    client.signIn(u"ann@x", u"Ann", Status::busy);
    client.setMyStatus(Status::idle);
    client.signOut();
    EXPECT_EQ(client.accounts().find(u"ann@x")->status, Status::online);
    client.signIn(u"ann@x", u"Ann", Status::busy);
    client.setMyStatus(Status::offline);
    client.signOut();
    EXPECT_EQ(client.accounts().find(u"ann@x")->status, Status::online);
}

TEST_F(EachAccount, TakesContactsThatWereAddedBeforeTheSignIn) {
    client.addContact(u"cy@x", u"Cy");
    client.addContact(u"ann@x", u"oneself");
    client.setUnread(2);
    client.signIn(u"ann@x", u"Ann");
    ASSERT_EQ(client.contacts().size(), 1U);
    EXPECT_EQ(client.contacts()[0]->signin, u"cy@x");
    EXPECT_EQ(client.unread(), 2);
    client.signOut();
    EXPECT_THAT(client.contacts(), IsEmpty());
}

TEST_F(EachAccount, CanBeSignedInByItsOwnTexts) {
    for (int i = 0; i < 50; ++i) {
        client.signIn(u"account" + murmelix::toText(i) + u"@x", u"");
    }
    const Account& first = client.accounts().all().back();
    client.signIn(first.signin, first.friendly);
    EXPECT_EQ(client.me()->signin, u"account0@x");
    EXPECT_EQ(client.me()->friendly, u"account0");
}

TEST_F(EachAccount, ForgottenWhileSignedInIsNotRememberedAfterwards) {
    client.signIn(u"ann@x", u"Ann");
    client.accounts().remember(u"ann@x", true);
    EXPECT_TRUE(client.accounts().forget(u"ann@x"));
    client.signOut();
    EXPECT_THAT(client.accounts().lines(), IsEmpty());
}

TEST_F(EachAccount, SignsInAndOutTwentyTimesInARow) {
    for (int i = 0; i < 20; ++i) {
        client.signIn(i % 2 ? u"ann@x" : u"bob@x", u"");
        const auto talk = client.open({client.addContact(u"cy@x", u"Cy")});
        EXPECT_TRUE(client.say(talk, client.me(), u"hello"));
        client.signOut();
        EXPECT_TRUE(talk->closed());
    }
    EXPECT_EQ(client.accounts().all().size(), 2U);
}

TEST(BecomingIdle, WhenNothingWasTouchedForLongEnough) {
    AutoIdle idle(60'000);
    EXPECT_EQ(idle.look(Status::online, 59'999), std::nullopt);
    EXPECT_EQ(idle.look(Status::online, 60'000), Status::idle);
    EXPECT_EQ(idle.look(Status::idle, 70'000), std::nullopt);
    EXPECT_EQ(idle.look(Status::idle, 100), Status::online);
    EXPECT_EQ(idle.look(Status::online, 100), std::nullopt);
}

TEST(BecomingIdle, OnlyFromOnline) {
    AutoIdle idle(60'000);
    for (const Status status :
         {Status::busy, Status::away, Status::be_right_back, Status::invisible, Status::offline}) {
        EXPECT_EQ(idle.look(status, 1'000'000), std::nullopt);
    }
}

TEST(BecomingIdle, AnIdlenessByCommandStays) {
    AutoIdle idle(60'000);
    EXPECT_EQ(idle.look(Status::idle, 0), std::nullopt);
}

TEST(BecomingIdle, AStatusChosenMeanwhileStays) {
    AutoIdle idle(60'000);
    EXPECT_EQ(idle.look(Status::online, 60'000), Status::idle);
    EXPECT_EQ(idle.look(Status::busy, 61'000), std::nullopt);
    EXPECT_EQ(idle.look(Status::busy, 0), std::nullopt);
    EXPECT_EQ(idle.look(Status::idle, 0), std::nullopt);
}

TEST(BecomingIdle, NeverWhereItIsSwitchedOff) {
    AutoIdle idle(0);
    EXPECT_EQ(idle.look(Status::online, 1'000'000'000), std::nullopt);
}

TEST(BecomingIdle, LastsForMonths) {
    constexpr long long look = 5000, day = 24LL * 60 * 60 * 1000;
    constexpr long long start = 40 * day; // the 32 bits begin anew in the middle of it
    LastInput input;
    AutoIdle idle(60'000);
    const auto touched = static_cast<std::uint32_t>(start - 100 * look);
    EXPECT_EQ(input.since(start, touched), 0) << "the first look counts as one";
    Status status = Status::online;
    long long wrong = 0;
    for (long long now = start + look; now < start + 120 * day; now += look) {
        const long long since = input.since(now, touched);
        wrong += since != now - start;
        if (const auto next = idle.look(status, since)) {
            status = *next;
        }
        wrong += now >= start + 60'000 && status != Status::idle;
    }
    EXPECT_EQ(wrong, 0);
    const long long end = start + 120 * day;
    EXPECT_EQ(input.since(end, static_cast<std::uint32_t>(end - 300)), 300);
    EXPECT_EQ(idle.look(status, 300), Status::online);
}

TEST(BecomingIdle, AnInputAheadOfTheClockHasJustBeen) {
    LastInput input;
    EXPECT_EQ(input.since(1000, 900), 0);
    EXPECT_EQ(input.since(6000, 6016), 0);
    EXPECT_EQ(input.since(6100, 6016), 100);
    EXPECT_EQ(input.since(11'000, 8000), 3000);
    constexpr long long wrap = 0x1'0000'0000;
    EXPECT_EQ(input.since(wrap + 10, static_cast<std::uint32_t>(wrap - 20)), 30);
    EXPECT_EQ(input.since(wrap + 20, 30), 0) << "ahead, and already begun anew";
}

} // namespace

} // namespace messenger_client
