#include "companions/messenger/chat/client.h"

#include <map>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/chat/escapes.h"
#include "companions/messenger/chat/event_log.h"
#include "companions/messenger/chat/switches.h"

namespace messenger_client {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char16_t notice[] = u"Keep your password and card numbers to yourself: nobody needs them in a conversation.";

struct Signed : testing::Test {
    Client client;
    ContactPtr ann, bob;
    ConversationPtr talk;
    std::vector<std::string> seen;

    void SetUp() override {
        client.signIn(u"me@x", u"Me");
        ann = client.addContact(u"ann@x", u"Ann");
        bob = client.addContact(u"bob@x", u"Bob");
        talk = client.open({ann, bob});
        client.listen([this](const Change& change) { note(change); });
    }

    static constexpr std::size_t most_noted = 1000; // characters

    void note(const Change& change) {
        static const std::map<Change::Kind, std::string> names{
            {Change::Kind::signing_in, "signing"},      {Change::Kind::signed_in, "in"},
            {Change::Kind::signed_out, "out"},          {Change::Kind::contact_added, "added"},
            {Change::Kind::contact_removed, "removed"}, {Change::Kind::contact_renamed, "renamed"},
            {Change::Kind::contact_status, "status"},   {Change::Kind::my_name, "my-name"},
            {Change::Kind::my_status, "my-status"},     {Change::Kind::unread, "unread"},
            {Change::Kind::window_created, "created"},  {Change::Kind::window_destroyed, "destroyed"},
            {Change::Kind::window_joined, "joined"},    {Change::Kind::window_left, "left"},
            {Change::Kind::text_appended, "text"},      {Change::Kind::said, "said"},
            {Change::Kind::shutting_down, "shutdown"}};
        std::string line = names.at(change.kind);
        if (change.contact) {
            line += " " + murmelix::toUtf8(change.contact->signin);
        }
        if (change.number) {
            line += " " + std::to_string(change.number);
        }
        if (!change.text.empty()) {
            line += " " + escaped(change.text.substr(0, most_noted));
        }
        seen.push_back(line);
    }
};

using History = Signed;

TEST_F(History, BeginsWithTheClientsOwnLine) {
    EXPECT_EQ(talk->history(), notice);
}

TEST_F(History, MessagesFollowAsNameAndLines) {
    client.say(talk, ann, u"hi");
    client.say(talk, bob, u"one\r\ntwo\rthree\nfour");
    client.say(talk, client.me(), u"bye");
    EXPECT_EQ(talk->history(), std::u16string(notice) + u"\r\nAnn says:\r\nhi"
                                                        u"\r\nBob says:\r\none\r\ntwo\r\nthree\r\nfour"
                                                        u"\r\nMe says:\r\nbye");
}

TEST_F(History, AReaderAfterTheEndStandsOnTheLineFeedBeforeTheNextName) {
    const std::size_t from = talk->history().size() + 2; // counted from 1
    client.say(talk, ann, u"hi");
    EXPECT_EQ(talk->history().substr(from - 1), u"\nAnn says:\r\nhi");
}

TEST_F(History, NeverEndsInALineEnd) {
    for (const auto* text : {u"hi\r\n", u"hi\n\n\n", u"\r\n\r\nhi\r"}) {
        EXPECT_TRUE(client.say(talk, ann, text));
        EXPECT_TRUE(talk->history().ends_with(u"hi"));
    }
    EXPECT_TRUE(talk->history().ends_with(u"Ann says:\r\n\r\n\r\nhi"));
}

TEST_F(History, MessagesWithoutALineAreNotSaid) {
    for (const auto* text : {u"", u"\r\n", u"\n\r\n\r"}) {
        EXPECT_FALSE(client.say(talk, ann, text));
    }
    EXPECT_EQ(talk->history(), notice);
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(History, NulsAndUnpairedSurrogatesPassWithoutHarm) {
    const std::u16string text(u"a\0b\xD800", 4);
    EXPECT_TRUE(client.say(talk, ann, text));
    EXPECT_TRUE(talk->history().ends_with(u"\r\na\xFFFD"
                                          u"b\xD800"));
    client.rename(ann, std::u16string(u"A\0n\r\nn", 6));
    EXPECT_EQ(ann->friendly, u"A n  n");
}

TEST_F(History, RawTextIsAppendedAsItIs) {
    client.append(talk, std::u16string(u"\0x\r\n", 4));
    EXPECT_EQ(talk->history().size(), std::u16string(notice).size() + 4);
}

TEST_F(History, AMillionUnitsInOneMessage) {
    client.say(talk, ann, std::u16string(1'000'000, u'x'));
    EXPECT_EQ(talk->history().size(),
              std::u16string(notice).size() + 1'000'000 + std::u16string(u"\r\nAnn says:\r\n").size());
}

TEST_F(Signed, TheWritersNameIsTheOneAtTheTime) {
    client.say(talk, ann, u"1");
    client.rename(ann, u"Anna");
    client.say(talk, ann, u"2");
    EXPECT_TRUE(talk->history().ends_with(u"\r\nAnn says:\r\n1\r\nAnna says:\r\n2"));
    EXPECT_THAT(seen, ElementsAre("said ann@x 1", "text \\r\\nAnn says:\\r\\n1", "renamed ann@x Ann", "said ann@x 2",
                                  "text \\r\\nAnna says:\\r\\n2"));
}

TEST_F(Signed, JoiningTwiceAndLeavingTwiceIsToldOnce) {
    client.leave(talk, bob);
    client.leave(talk, bob);
    client.join(talk, bob);
    client.join(talk, bob);
    EXPECT_THAT(seen, ElementsAre("left bob@x", "joined bob@x"));
    EXPECT_THAT(talk->participants(), ElementsAre(ann, bob));
}

TEST_F(Signed, SigningOutClosesTheConversationsFirst) {
    const auto other = client.open({bob});
    seen.clear();
    client.signOut();
    EXPECT_THAT(seen, ElementsAre("destroyed", "destroyed", "out"));
    EXPECT_TRUE(talk->closed());
    EXPECT_TRUE(other->closed());
    EXPECT_FALSE(client.say(talk, ann, u"x"));
    client.signOut();
    EXPECT_EQ(seen.size(), 3U);
}

TEST_F(Signed, SigningInAgainIsANewAccount) {
    client.signIn(u"other@x", u"");
    EXPECT_EQ(client.me()->friendly, u"other");
    EXPECT_THAT(seen, ElementsAre("destroyed", "out", "in", "my-status"));
    client.failSignIn(-5);
    EXPECT_FALSE(client.signedIn());
    EXPECT_EQ(seen.back(), "in -5");
}

TEST_F(Signed, ContactsAreFoundWithoutLetterCase) {
    EXPECT_EQ(client.find(u"ANN@X"), ann);
    EXPECT_EQ(client.find(u"ME@x"), client.me());
    EXPECT_EQ(client.find(u"nobody"), nullptr);
    EXPECT_EQ(client.addContact(u"Ann@x", u"Other"), ann);
    EXPECT_EQ(ann->friendly, u"Ann");
}

TEST_F(Signed, ContactsThatAreRemovedAreNotFoundAndCanComeBack) {
    client.removeContact(client.contacts().front());
    EXPECT_EQ(client.find(u"ann@x"), nullptr);
    const ContactPtr again = client.addContact(u"ANN@x", u"Ann");
    EXPECT_NE(again, ann);
    EXPECT_EQ(client.find(u"ann@x"), again);
    client.signOut();
    EXPECT_EQ(client.find(u"ann@x"), nullptr);
}

TEST_F(Signed, TheListTakesTenThousandAndNoMore) {
    for (std::size_t i = client.contacts().size(); i < most_contacts; ++i) {
        ASSERT_TRUE(client.addContact(u"c" + murmelix::toText(static_cast<long long>(i)) + u"@x", u"C"));
    }
    seen.clear();
    EXPECT_EQ(client.addContact(u"one@x", u"Too many"), nullptr);
    EXPECT_EQ(client.addContact(u"c2@x", u"C"), client.contacts()[2]) << "who is known is found";
    EXPECT_EQ(client.contacts().size(), most_contacts);
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(Signed, NamesOfMegabytesAreCut) {
    client.rename(ann, std::u16string(3'000'000, u'n'));
    EXPECT_EQ(ann->friendly.size(), longest_name);
    std::u16string pairs(longest_name - 1, u'n');
    pairs += u"\xD83D\xDE00";
    client.rename(ann, pairs);
    EXPECT_EQ(ann->friendly, std::u16string(longest_name - 1, u'n')) << "no half of a pair";
    const ContactPtr big = client.addContact(std::u16string(1'000'000, u's'), u"Big");
    EXPECT_EQ(client.addContact(std::u16string(1'000'000, u's'), u"Big"), big);
    EXPECT_EQ(client.contacts().size(), 3U);
}

TEST_F(History, EndsWhereItsLimitIs) {
    ASSERT_TRUE(client.append(talk, std::u16string(longest_history - talk->history().size() - 20, u'x')));
    seen.clear();
    EXPECT_TRUE(client.say(talk, ann, u"12")) << "just fits";
    EXPECT_FALSE(client.say(talk, ann, u"1"));
    EXPECT_FALSE(client.append(talk, u"1234567890"));
    EXPECT_EQ(seen.size(), 2U);
    EXPECT_TRUE(talk->history().ends_with(u"Ann says:\r\n12"));
}

TEST_F(Signed, ConversationsAreNotEndlesslyMany) {
    while (client.conversations().size() < most_conversations) {
        ASSERT_TRUE(client.open({ann}));
    }
    EXPECT_EQ(client.open({ann}), nullptr);
    EXPECT_EQ(client.openWith(bob), nullptr);
    EXPECT_TRUE(client.openWith(ann)) << "is open already";
    client.close(talk);
    EXPECT_TRUE(client.openWith(bob));
}

TEST_F(Signed, AConversationThatCannotBeShownIsNotThere) {
    client.listen([](const Change& change) {
        if (change.kind == Change::Kind::window_created) {
            throw std::runtime_error("no window");
        }
    });
    EXPECT_THROW(client.open({bob}), std::runtime_error);
    EXPECT_THAT(client.conversations(), ElementsAre(talk));
    EXPECT_EQ(seen.back(), "destroyed");
}

TEST_F(Signed, OneConversationForOneContact) {
    const auto alone = client.openWith(ann);
    EXPECT_NE(alone, talk);
    EXPECT_EQ(client.openWith(ann), alone);
    client.close(alone);
    client.close(alone);
    EXPECT_NE(client.openWith(ann), alone);
    EXPECT_THAT(seen, ElementsAre("created", "destroyed", "created"));
}

struct Controlled : Signed {
    void SetUp() override {
        Signed::SetUp();
        control.takeOrders();
    }

    Faults faults;
    int replays = 0;
    int shut = 0;
    bool delivered = false;
    long long now = 0;
    std::string called; // of the other hooks, the last one
    SigningIn signing{client};
    Control control{client,
                    signing,
                    faults,
                    [this] { return now; },
                    {.start_replay = [this] { return ++replays == 1; },
                     .connect =
                         [this](const std::u16string& signin, const std::u16string& friendly) {
                             called = "connect " + murmelix::toUtf8(signin + u" " + friendly);
                         },
                     .accounts_changed = [this] { called = "accounts"; },
                     .untouched =
                         [this](std::optional<long long> milliseconds) {
                             called = "untouched " + (milliseconds ? std::to_string(*milliseconds) : "really");
                         },
                     .window =
                         [this](std::u16string_view deed) {
                             called = "window " + murmelix::toUtf8(deed);
                             return deed == u"hide";
                         },
                     .shut_down = [this] { ++shut; },
                     .exit = [] {},
                     .delivered = [this] { return delivered; }}};
};

using ControlCommands = Controlled;

TEST_F(ControlCommands, AreNotTakenWhereNobodyAllowedThem) {
    Control closed(client, signing, faults, [] { return 0LL; }, {});
    for (const char* line : {"say ann@x hi", "hang 8000", "vanish", "exit", "fill 10", "shutdown", "", "dance"}) {
        EXPECT_EQ(closed.execute(line), Result::no_orders) << line;
    }
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_TRUE(faults.empty());
}

TEST_F(ControlCommands, AreNotLongerThanTheirLimit) {
    std::string line = "append ";
    line.resize(longest_order, 'x');
    EXPECT_EQ(control.execute(line), Result::done);
    seen.clear();
    line += 'x';
    EXPECT_EQ(control.execute(line), Result::bad_arguments);
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(ControlCommands, ActOnTheClient) {
    for (const char* line :
         {"say ann@x hi\\nthere", "say me \\u0041\\\\", "append \\r\\nraw", "join cy@x Cy D", "part bob@x",
          "rename cy@x Cyrus  X", "rename me Mine", "status cy@x 34", "status me 10", "add di@x Di", "remove di@x",
          "unread -1", "open ann@x", "close", "use 1", "close", "signout"}) {
        EXPECT_EQ(control.execute(line), Result::done) << line;
    }
    EXPECT_THAT(seen,
                ElementsAre("said ann@x hi\\r\\nthere", "text \\r\\nAnn says:\\r\\nhi\\r\\nthere", "said me@x A\\\\",
                            "text \\r\\nMe says:\\r\\nA\\\\", "text \\r\\nraw", "added cy@x", "joined cy@x",
                            "left bob@x", "renamed cy@x Cy D", "my-name Me", "status cy@x", "my-status", "added di@x",
                            "removed di@x", "unread -1", "created", "destroyed", "destroyed", "out"));
}

TEST_F(ControlCommands, RefuseWhatCannotBe) {
    EXPECT_EQ(control.execute(""), Result::unknown_command);
    EXPECT_EQ(control.execute("dance"), Result::unknown_command);
    EXPECT_EQ(control.execute("say nobody@x hi"), Result::refused);
    EXPECT_EQ(control.execute("say ann@x "), Result::refused);
    EXPECT_EQ(control.execute("hang x"), Result::bad_arguments);
    EXPECT_EQ(control.execute("hang"), Result::bad_arguments);
    EXPECT_EQ(control.execute("fail 80004005"), Result::bad_arguments);
    EXPECT_EQ(control.execute("fail 1 1"), Result::bad_arguments);
    EXPECT_EQ(control.execute("use 2"), Result::refused);
    EXPECT_EQ(control.execute("fill -1"), Result::bad_arguments);
    EXPECT_EQ(control.execute("status ann@x"), Result::bad_arguments);
    EXPECT_EQ(control.execute("signin"), Result::bad_arguments);
    EXPECT_EQ(control.execute("replay"), Result::bad_arguments);
    client.signOut();
    EXPECT_EQ(control.execute("say ann@x hi"), Result::refused);
    EXPECT_EQ(control.execute("say me hi"), Result::refused);
    EXPECT_EQ(control.execute("append x"), Result::refused);
    EXPECT_EQ(control.execute("open ann@x"), Result::refused);
    EXPECT_EQ(control.execute("close"), Result::refused);
}

TEST_F(ControlCommands, ReplayAndShutdownAreHandedOn) {
    EXPECT_EQ(control.execute("replay start"), Result::done);
    EXPECT_EQ(control.execute("replay start"), Result::refused);
    EXPECT_EQ(control.execute("shutdown"), Result::done);
    EXPECT_EQ(shut, 1);
}

TEST_F(ControlCommands, SignInsOnTheWay) {
    EXPECT_EQ(control.execute("connect ann@x Ann B"), Result::done);
    EXPECT_EQ(called, "connect ann@x Ann B");
    EXPECT_EQ(control.execute("connect"), Result::bad_arguments);
    for (const char* line : {"signing next", "signing finish", "signing cancel", "signing fail 80004005"}) {
        EXPECT_EQ(control.execute(line), Result::refused) << line << ": nothing is under way";
    }
    EXPECT_EQ(control.execute("signing fail 1"), Result::bad_arguments);
    EXPECT_EQ(control.execute("signing fail"), Result::bad_arguments);
    EXPECT_EQ(control.execute("signing up"), Result::bad_arguments);
    EXPECT_EQ(control.execute("signing hold"), Result::done);
    signing.begin(u"bob@x", u"", Status::online, 0);
    EXPECT_EQ(client.stage(), Stage::connecting);
    EXPECT_EQ(control.execute("signing next"), Result::done);
    EXPECT_EQ(client.stage(), Stage::synchronising);
    EXPECT_EQ(control.execute("signing finish"), Result::done);
    EXPECT_EQ(client.me()->signin, u"bob@x");
    signing.begin(u"bob@x", u"", Status::online, 0);
    EXPECT_EQ(control.execute("signing fail 80004005"), Result::done);
    EXPECT_FALSE(client.signedIn());
    EXPECT_EQ(seen.back(), "in -2147467259");
    signing.begin(u"bob@x", u"", Status::online, 0);
    EXPECT_EQ(control.execute("signing cancel"), Result::done);
    EXPECT_EQ(seen.back(), "in -2147023673");
    EXPECT_EQ(control.execute("signing free"), Result::done);
    signing.begin(u"bob@x", u"", Status::online, 0);
    EXPECT_TRUE(signing.dueAt());
}

TEST_F(ControlCommands, Accounts) {
    EXPECT_EQ(control.execute("accounts has ann@x"), Result::refused);
    EXPECT_EQ(control.execute("accounts remember ann@x Ann B"), Result::done);
    EXPECT_EQ(called, "accounts");
    EXPECT_EQ(control.execute("accounts has ANN@x"), Result::done);
    EXPECT_EQ(client.accounts().find(u"ann@x")->friendly, u"Ann B");
    EXPECT_FALSE(client.accounts().automatic());
    EXPECT_EQ(control.execute("accounts automatic bob@x"), Result::done);
    EXPECT_EQ(client.accounts().automatic()->signin, u"bob@x");
    EXPECT_EQ(control.execute("accounts has me@x"), Result::refused) << "used, but not remembered";
    EXPECT_EQ(control.execute("accounts forget bob@x"), Result::done);
    EXPECT_EQ(control.execute("accounts forget bob@x"), Result::refused);
    for (const char* line : {"accounts", "accounts has", "accounts love ann@x"}) {
        EXPECT_EQ(control.execute(line), Result::bad_arguments) << line;
    }
}

TEST_F(ControlCommands, WindowAndInput) {
    EXPECT_EQ(control.execute("window hide"), Result::done);
    EXPECT_EQ(called, "window hide");
    EXPECT_EQ(control.execute("window dance"), Result::bad_arguments);
    EXPECT_EQ(control.execute("untouched 90"), Result::done);
    EXPECT_EQ(called, "untouched 90000");
    EXPECT_EQ(control.execute("untouched real"), Result::done);
    EXPECT_EQ(called, "untouched really");
    for (const char* line : {"untouched", "untouched -1", "untouched long"}) {
        EXPECT_EQ(control.execute(line), Result::bad_arguments) << line;
    }
}

TEST_F(ControlCommands, OpenIsRefusedWhereThereAreTooMany) {
    while (client.conversations().size() < most_conversations) {
        ASSERT_EQ(control.execute("open ann@x"), Result::done);
    }
    EXPECT_EQ(control.execute("open ann@x"), Result::refused);
    EXPECT_EQ(control.execute("say ann@x hi"), Result::done) << "in the last one";
}

TEST_F(ControlCommands, OpenAddsWhoIsNew) {
    EXPECT_EQ(control.execute("open eve@x"), Result::refused) << "nobody without a name";
    EXPECT_EQ(control.execute("open eve@x Eve A"), Result::done);
    EXPECT_EQ(client.find(u"eve@x")->friendly, u"Eve A");
    EXPECT_EQ(client.conversations().back()->participants().at(0)->signin, u"eve@x");
}

TEST_F(ControlCommands, FillAppendsSoManyUnitsWithoutALineEndAtTheEnd) {
    const std::size_t before = talk->history().size();
    for (const int units : {0, 1, 2, 3, 77, 78, 79, 80, 10'000}) {
        const std::size_t length = talk->history().size();
        EXPECT_EQ(control.execute("fill " + std::to_string(units)), Result::done);
        EXPECT_EQ(talk->history().size(), length + static_cast<std::size_t>(units));
        EXPECT_NE(talk->history().back(), u'\n');
        EXPECT_NE(talk->history().back(), u'\r');
    }
    EXPECT_GT(talk->history().size(), before);
}

TEST_F(ControlCommands, FaultsMeetTheNamedMemberAsOftenAsWanted) {
    EXPECT_EQ(control.execute("fail 8001010A 2 history"), Result::done);
    EXPECT_EQ(control.execute("hang 50"), Result::done);
    auto met = faults.take(u"HWND");
    ASSERT_EQ(met.size(), 1U);
    EXPECT_EQ(met[0].kind, Fault::Kind::hang);
    EXPECT_EQ(met[0].amount, 50);
    EXPECT_THAT(faults.take(u"HWND"), IsEmpty());
    met = faults.take(u"History");
    ASSERT_EQ(met.size(), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(met[0].amount), 0x8001010AU);
    EXPECT_EQ(faults.take(u"History").size(), 1U);
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(control.execute("vanish Contacts"), Result::done);
    EXPECT_EQ(control.execute("heal"), Result::done);
    EXPECT_TRUE(faults.empty());
}

TEST_F(ControlCommands, DeliveredTellsWhetherEveryEventIs) {
    EXPECT_EQ(control.execute("delivered"), Result::refused);
    delivered = true;
    EXPECT_EQ(control.execute("delivered"), Result::done);
}

TEST(Escapes, ThereAndBack) {
    const std::u16string text = std::u16string(u"\\ \r\n\t\0 \x7F ä \xD83D\xDE00 \xD800 \xDC00 \\u0041", 24);
    EXPECT_EQ(unescaped(murmelix::fromUtf8(escaped(text))), text);
    EXPECT_EQ(escaped(u"a\r\n\t\\ \x1 \xD800"), "a\\r\\n\\t\\\\ \\u0001 \\uD800");
}

TEST(Escapes, ALoneBackslashStandsForItself) {
    EXPECT_EQ(unescaped(u"\\"), u"\\");
    EXPECT_EQ(unescaped(u"a\\x \\u12 \\u12G4 \\"), u"a\\x \\u12 \\u12G4 \\");
}

TEST(Switches, AllOfThem) {
    const Switches s = parseSwitches({u"/conversation", u"C:\\a b.txt",
                                      u"/Participants", u"4",
                                      u"/messages",     u"20",
                                      u"-speed",        u"2.5",
                                      u"/wait",         u"/exit-when-done",
                                      u"/log",          u"l.txt",
                                      u"/signin",       u"n@x",
                                      u"/friendly",     u"N N",
                                      u"/left",         u"-5",
                                      u"/top",          u"6",
                                      u"/width",        u"700",
                                      u"/height",       u"500"});
    EXPECT_EQ(s.error, u"");
    EXPECT_EQ(s.task, Switches::Task::run);
    EXPECT_EQ(s.conversation, u"C:\\a b.txt");
    EXPECT_EQ(s.replay.participants, 4U);
    EXPECT_EQ(s.replay.messages, 20U);
    EXPECT_EQ(s.replay.speed, 2.5);
    EXPECT_TRUE(s.wait);
    EXPECT_TRUE(s.exit_when_done);
    EXPECT_EQ(s.log, u"l.txt");
    EXPECT_EQ(s.signin, u"n@x");
    EXPECT_EQ(s.friendly, u"N N");
    EXPECT_FALSE(s.signed_out);
    EXPECT_EQ(s.left, -5);
    EXPECT_EQ(s.height, 500);
    EXPECT_FALSE(s.orders);
    EXPECT_TRUE(parseSwitches({u"/Orders"}).orders);
}

TEST(Switches, Tasks) {
    EXPECT_EQ(parseSwitches({u"/regserver"}).task, Switches::Task::register_server);
    EXPECT_EQ(parseSwitches({u"-UnRegServer"}).task, Switches::Task::unregister_server);
    EXPECT_TRUE(parseSwitches({u"-Embedding"}).embedding);
    const Switches send = parseSwitches({u"/send", u"say me hi"});
    EXPECT_EQ(send.task, Switches::Task::send);
    EXPECT_EQ(send.command, u"say me hi");
}

TEST(Switches, HowLongASignInTakes) {
    EXPECT_EQ(parseSwitches({}).connect, 900);
    EXPECT_FALSE(parseSwitches({}).hold);
    EXPECT_EQ(parseSwitches({u"/connect", u"0"}).connect, 0);
    EXPECT_TRUE(parseSwitches({u"/connect", u"Hold"}).hold);
    EXPECT_EQ(parseSwitches({u"/connect", u"soon"}).error, u"/connect cannot be soon.");
    EXPECT_EQ(parseSwitches({u"/connect", u"-1"}).error, u"/connect cannot be -1.");
    EXPECT_EQ(parseSwitches({}).idle, 10);
    EXPECT_EQ(parseSwitches({u"/idle", u"0.5"}).idle, 0.5);
    EXPECT_EQ(parseSwitches({u"/idle", u"-2"}).error, u"/idle cannot be -2.");
}

TEST(Switches, NumbersAreNumbersToTheirEnd) {
    for (const char16_t* text :
         {u"-", u".", u"1.2.3", u"1-2", u"", u"--5", u"0x10", u"1e3", u"nan", u"99999999999999"}) {
        EXPECT_NE(parseSwitches({u"/speed", text}).error, u"") << murmelix::toUtf8(text);
    }
    EXPECT_EQ(parseSwitches({u"/speed", u".5"}).replay.speed, 0.5);
}

TEST(Switches, WhatIsWrongIsSaid) {
    EXPECT_EQ(parseSwitches({u"/dance"}).error, u"Unknown switch: /dance");
    EXPECT_EQ(parseSwitches({u"wait"}).error, u"Unknown switch: wait");
    EXPECT_EQ(parseSwitches({u""}).error, u"Unknown switch: ");
    EXPECT_EQ(parseSwitches({u"/log"}).error, u"/log needs a value.");
    EXPECT_EQ(parseSwitches({u"/messages", u"0"}).error, u"/messages cannot be 0.");
    EXPECT_EQ(parseSwitches({u"/messages", u"many"}).error, u"/messages cannot be many.");
    EXPECT_EQ(parseSwitches({u"/speed", u"-1"}).error, u"/speed cannot be -1.");
    EXPECT_EQ(parseSwitches({u"/left", u"99999"}).error, u"/left cannot be 99999.");
}

TEST(EventLog, OneLineAnEvent) {
    const auto file = std::filesystem::temp_directory_path() /
                      ("messenger_client_log_" + std::to_string(std::random_device{}()) + ".txt");
    long long now = 1'000'000;
    EventLog log([&now] { return now; });
    ASSERT_TRUE(log.open(file));
    Client client;
    client.listen([&](const Change& change) {
        now += 500;
        log.write(change, client);
    });
    client.signIn(u"me@x", u"M\tE");
    const auto ann = client.addContact(u"ann@x", u"Ann");
    const auto talk = client.open({client.addContact(u"bob@x", u"Bob")});
    client.join(talk, ann);
    client.say(talk, ann, u"a\nb");
    client.rename(ann, u"Anna");
    client.leave(talk, ann);
    client.setUnread(7);
    client.failSignIn(-2147467259);
    client.setStage(Stage::connecting);
    client.setStage(Stage::synchronising);
    client.shutDown();
    log.write("done", {}, {});
    std::ifstream in(file, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(in), {});
    std::filesystem::remove(file);
    EXPECT_EQ(text, "1000500\t0.000500\tsignin\tme@x\tM\\tE\n"
                    "1002500\t0.002500\twindow\t\topened\n"
                    "1002500\t0.002500\tpresent\tbob@x\tBob\n"
                    "1003000\t0.003000\tjoin\tann@x\tAnn\n"
                    "1003500\t0.003500\tmessage\tann@x\ta\\r\\nb\n"
                    "1004500\t0.004500\trename\tann@x\tAnna\n"
                    "1005000\t0.005000\tleave\tann@x\tAnna\n"
                    "1005500\t0.005500\tunread\tme@x\t7\n"
                    "1006000\t0.006000\twindow\t\tclosed\n"
                    "1006500\t0.006500\tsignout\t\t\n"
                    "1007000\t0.007000\tsignin-failed\t\t80004005\n"
                    "1007500\t0.007500\tsigning\t\tconnecting\n"
                    "1008000\t0.008000\tsigning\t\tsynchronising\n"
                    "1008500\t0.008500\tshutdown\t\t\n"
                    "1008500\t0.008500\tdone\t\t\n");
}

TEST(EventLog, AFileThatCannotBeWrittenIsSaid) {
    EventLog log([] { return 0LL; });
    EXPECT_FALSE(log.open(std::filesystem::path(MURMELIX_SOURCE_DIR) / "no/such/folder/log.txt"));
    log.write("done", {}, {});
}

TEST(Statuses, CodesAndNames) {
    EXPECT_EQ(nameOf(Status::away), u"Away");
    for (const long code : {1, 2, 6, 10, 14, 18, 34, 50, 66}) {
        EXPECT_TRUE(isStatus(code)) << code;
    }
    for (const long code : {0, 3, 100, 0x100, -1}) {
        EXPECT_FALSE(isStatus(code)) << code;
    }
}

} // namespace

} // namespace messenger_client
