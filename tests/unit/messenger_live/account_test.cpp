// An account of a chat network between what a server writes and what programs are told.
#include "companions/messenger/live/account.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/fakes/live_hooks.h"

namespace messenger_client {

namespace {

using murmelix::fromUtf8;
using murmelix::toUtf8;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// No two of them are alike.
std::string sentence(int number) {
    std::string words;
    for (unsigned state = static_cast<unsigned>(number) * 2654435761U + 1; words.size() < 30;) {
        state = state * 1664525U + 1013904223U;
        words += static_cast<char>('a' + (state >> 24) % 26);
        words += (state >> 16) % 5 == 0 ? " " : "";
    }
    return words;
}

struct LiveAccounts : testing::Test {
    Client client;
    long long now = 1'000'000;
    int opened = 0;
    std::string sent;
    std::optional<unsigned> timer;
    bool delivered = true;
    int characters = 9;
    std::vector<std::string> told; // what programs hear
    std::vector<std::string> sentences;
    std::u16string failure;
    std::map<std::u16string, reading::Rules> kept;
    std::vector<std::u16string> brought_up;
    std::unique_ptr<LiveAccount> account;

    LiveAccounts() {
        client.listen([this](const Change& change) { hear(change); });
        make(roomSettings());
    }

    void make(irc::Settings settings) {
        account = std::make_unique<LiveAccount>(
            client, std::move(settings), Status::online,
            LiveAccount::Hooks{
                .open = [this](const irc::Address&) { ++opened; },
                .send = [this](std::string_view bytes) { sent += bytes; },
                .close = [] {},
                .milliseconds = [this] { return now; },
                .today = [] { return 1'764'000'000'000; },
                .random = [] { return 0U; },
                .set_timer = [this](unsigned milliseconds) { timer = milliseconds; },
                .delivered = [this] { return delivered; },
                .failed = [this](const std::u16string& why) { failure = why; },
                .tell_user = [this](const std::u16string& what) { sentences.push_back(toUtf8(what)); },
                .bring_up =
                    [this](const Conversation& conversation) { brought_up.push_back(conversation.live()->title()); },
                .characters = [this] { return characters; },
                .rules_of = [this](const std::u16string& key) { return kept[key]; },
                .keep_rules = [this](const std::u16string& key, const reading::Rules& rules) { kept[key] = rules; }});
    }

    void hear(const Change& change) {
        const auto name = [&] { return toUtf8(change.contact->signin) + " " + toUtf8(change.contact->friendly); };
        switch (change.kind) {
        case Change::Kind::window_joined:
            told.push_back("joins " + name());
            break;
        case Change::Kind::window_left:
            told.push_back("leaves " + name());
            break;
        case Change::Kind::said:
            told.push_back(toUtf8(change.contact->friendly) + ": " + toUtf8(change.text));
            break;
        case Change::Kind::contact_renamed:
            told.push_back("renamed " + name());
            break;
        default:
            break;
        }
    }

    void server(const std::string& line) { account->received(line + "\r\n"); }
    // So many milliseconds pass, with every tick that was asked for.
    void pass(long long milliseconds) {
        const long long until = now + milliseconds;
        while (timer && now + *timer <= until) {
            now += *std::exchange(timer, std::nullopt);
            account->tick();
        }
        now = until;
    }
    void goOnline() {
        account->start();
        account->connected();
        server(":irc.example.org 001 me :Welcome");
        server(":irc.example.org 005 me NETWORK=Example PREFIX=(ov)@+ CASEMAPPING=rfc1459 :are supported");
        server(":irc.example.org 422 me :No message");
        pass(10);
    }
    ConversationPtr enter(const std::string& names = "me ann bob") {
        goOnline();
        server(":me!u@h JOIN #room");
        server(":irc.example.org 353 me = #room :" + names);
        server(":irc.example.org 366 me #room :End");
        sent.clear();
        told.clear();
        return client.conversations().empty() ? nullptr : client.conversations().back();
    }
    void writes(const std::string& nick, const std::string& text, const std::string& tags = "") {
        server(tags + ":" + nick + "!u@h PRIVMSG #room :" + text);
    }
    LiveTalk& talk() { return *client.conversations().front()->live(); }
    std::vector<std::string> shown(const LiveTalk& talk) const {
        std::vector<std::string> lines;
        for (LineNumber number = talk.lines().first(); number < talk.lines().next(); ++number) {
            const LiveLine& line = *talk.lines().find(number);
            if (!line.gone) {
                lines.push_back((line.told ? "+" : "-") + toUtf8(line.writer) + "|" + toUtf8(line.text));
            }
        }
        return lines;
    }
    std::vector<std::string> shown() { return shown(talk()); }
};

TEST_F(LiveAccounts, SignInStepByStepAndEnterTheirChannels) {
    std::vector<Stage> stages;
    client.listen([&](const Change&) {
        if (stages.empty() || stages.back() != client.stage()) {
            stages.push_back(client.stage());
        }
    });
    const ConversationPtr room = enter();
    EXPECT_THAT(stages, ElementsAre(Stage::connecting, Stage::synchronising, Stage::in));
    EXPECT_EQ(client.me()->signin, u"me@Example");
    EXPECT_EQ(client.me()->friendly, u"me");
    ASSERT_TRUE(room);
    EXPECT_EQ(talk().title(), u"#room");
    EXPECT_EQ(talk().peopleCount(), 3u);
    EXPECT_THAT(room->participants(), IsEmpty()) << "nobody is on stage before a word";
}

TEST_F(LiveAccounts, WhatSomebodyWritesIsToldAfterThemselves) {
    const ConversationPtr room = enter();
    writes("ann", "hello there");
    EXPECT_THAT(told, ElementsAre("joins ann@Example ann"));
    pass(reading::Reader::settling);
    EXPECT_THAT(told, ElementsAre("joins ann@Example ann", "ann: hello there"));
    EXPECT_TRUE(room->history().ends_with(u"\r\nann says:\r\nhello there"));
    EXPECT_THAT(shown(), Contains("+ann|hello there"));
}

TEST_F(LiveAccounts, WhoHasASeatIsHeardAtOnce) {
    enter();
    writes("ann", "first");
    pass(20'000);
    told.clear();
    writes("ann", "second");
    EXPECT_THAT(told, ElementsAre("ann: second")) << "without a tick between";
}

TEST_F(LiveAccounts, ALineWaitsUntilProgramsHaveDealtWithAChangeOfSeats) {
    enter();
    delivered = false;
    writes("ann", "hello");
    pass(1'000);
    EXPECT_THAT(told, ElementsAre("joins ann@Example ann"));
    delivered = true;
    pass(20);
    EXPECT_THAT(told, ElementsAre("joins ann@Example ann", "ann: hello"));
}

TEST_F(LiveAccounts, AProgramThatHangsHoldsALineForALimitedTime) {
    enter();
    delivered = false;
    writes("ann", "hello");
    pass(LiveAccount::longest_settling + 20);
    EXPECT_THAT(told, ElementsAre("joins ann@Example ann", "ann: hello"));
}

TEST_F(LiveAccounts, TheLongestNameOfContactsComesFirst) {
    const ConversationPtr room = enter("me ann anna");
    writes("ann", "I am Ann");
    pass(10'000);
    writes("anna", "I am Anna");
    pass(10'000);
    ASSERT_EQ(room->participants().size(), 2u);
    EXPECT_EQ(room->participants()[0]->friendly, u"anna");
    EXPECT_EQ(room->participants()[1]->friendly, u"ann");
}

TEST_F(LiveAccounts, SeventhWriterTakesTheSeatOfWhoWasSilentLongest) {
    enter("me a1 a2 a3 a4 a5 a6 a7");
    for (const char* const nick : {"a1", "a2", "a3", "a4", "a5", "a6"}) {
        writes(nick, std::string("it is ") + nick);
        pass(10'000);
    }
    told.clear();
    writes("a7", "and I am new here");
    pass(10'000);
    EXPECT_THAT(told, ElementsAre("leaves a1@Example a1", "joins a7@Example a7", "a7: and I am new here"));
}

TEST_F(LiveAccounts, ThereAreNoMoreSeatsThanCharacters) {
    characters = 2;
    const ConversationPtr room = enter("me a1 a2 a3");
    for (const char* const nick : {"a1", "a2", "a3"}) {
        writes(nick, std::string("it is ") + nick);
        pass(10'000);
    }
    EXPECT_EQ(room->participants().size(), 2u);
    reading::Rules rules = talk().rules();
    rules.seats = 3;
    talk().setRules(rules);
    writes("a1", "and me again, with a seat of my own");
    pass(10'000);
    EXPECT_EQ(room->participants().size(), 3u) << "the user knows better";
}

TEST_F(LiveAccounts, WithoutAnyCharacterThereIsOneSeat) {
    characters = 0;
    const ConversationPtr room = enter();
    writes("ann", "hello");
    pass(10'000);
    EXPECT_EQ(room->participants().size(), 1u);
}

TEST_F(LiveAccounts, WhoIsRenamedKeepsSeatAndSignInName) {
    const ConversationPtr room = enter();
    writes("ann", "hello");
    pass(10'000);
    told.clear();
    server(":ann!u@h NICK anna");
    EXPECT_THAT(told, ElementsAre("renamed ann@Example anna"));
    writes("anna", "it is still me");
    pass(1'000);
    EXPECT_THAT(told, Contains("anna: it is still me"));
    EXPECT_EQ(room->participants().front()->signin, u"ann@Example");
    EXPECT_THAT(shown(), Contains("-|ann is now called anna."));
}

TEST_F(LiveAccounts, WhoQuitsIsOfflineAndFreesTheSeat) {
    const ConversationPtr room = enter();
    writes("ann", "bye");
    pass(10'000);
    server(":ann!u@h QUIT :gone");
    pass(100);
    EXPECT_THAT(room->participants(), IsEmpty());
    EXPECT_EQ(client.find(u"ann@Example")->status, Status::offline);
    server(":ann!u@h JOIN #room");
    EXPECT_EQ(client.find(u"ann@Example")->status, Status::online);
}

TEST_F(LiveAccounts, ALineThatIsDeletedWhileItWaitsIsNeverTold) {
    make({.address = {.dialect = irc::Dialect::twitch, .host = u"irc.chat.twitch.tv", .channels = {u"#room"}}});
    account->start();
    account->connected();
    server(":tmi.twitch.tv CAP * ACK :twitch.tv/tags twitch.tv/commands");
    server(":tmi.twitch.tv 001 justinfan0 :Welcome, GLHF!");
    server(":tmi.twitch.tv 376 justinfan0 :>");
    server(":justinfan0!justinfan0@justinfan0.tmi.twitch.tv JOIN #room");
    const auto says = [&](const std::string& nick, const std::string& id, const std::string& text) {
        server("@display-name=" + nick + ";id=" + id + ";user-id=7" + id + " :" + nick + "!" + nick + "@" + nick +
               ".tmi.twitch.tv PRIVMSG #room :" + text);
    };
    says("ann", "1", "a first line that takes a while to be spoken by a voice of the usual speed");
    says("bob", "2", "something nasty");
    says("cy", "3", "something nice");
    server("@login=bob;target-msg-id=2 :tmi.twitch.tv CLEARMSG #room :something nasty");
    pass(30'000);
    EXPECT_THAT(told, Contains("cy: something nice"));
    EXPECT_THAT(told, Not(Contains(HasSubstr("nasty"))));
    EXPECT_THAT(shown(), Not(Contains(HasSubstr("nasty"))));
    EXPECT_EQ(client.find(u"71@twitch")->friendly, u"ann");
}

TEST_F(LiveAccounts, InTheStreamingChatWhoWritesIsListed) {
    make({.address = {.dialect = irc::Dialect::twitch, .host = u"irc.chat.twitch.tv", .channels = {u"#room"}}});
    account->start();
    account->connected();
    server(":tmi.twitch.tv CAP * ACK :twitch.tv/tags twitch.tv/commands");
    server(":tmi.twitch.tv 001 justinfan0 :Welcome, GLHF!");
    server(":tmi.twitch.tv 376 justinfan0 :>");
    server(":justinfan0!justinfan0@justinfan0.tmi.twitch.tv JOIN #room");
    const auto says = [&](const std::string& nick, int user, const std::string& badges) {
        server("@badges=" + badges + ";display-name=" + nick + ";user-id=" + std::to_string(user) + " :" + nick + "!" +
               nick + "@" + nick + ".tmi.twitch.tv PRIVMSG #room :hello from " + nick);
    };
    const std::size_t before = talk().peopleCount();
    says("ann", 1, "moderator/1");
    says("bob", 2, "");
    says("ann", 1, "moderator/1");
    EXPECT_EQ(talk().peopleCount(), before + 2);
    EXPECT_TRUE(talk().hasName(u"Bob"));
    const auto people = talk().people(10);
    EXPECT_EQ(people.front().name, u"ann");
    EXPECT_EQ(people.front().sign, u'@');
    EXPECT_TRUE(people.front().on_stage);
    for (int i = 0; i < 1'000; ++i) {
        says("viewer" + std::to_string(i), 100 + i, "");
    }
    EXPECT_EQ(talk().peopleCount(), before + LiveTalk::most_writers);
    EXPECT_FALSE(talk().hasName(u"bob")) << "silent for longest";
    EXPECT_TRUE(talk().hasName(u"viewer999"));
}

TEST_F(LiveAccounts, WhatIsTypedIsSentAndShown) {
    const ConversationPtr room = enter();
    talk().type(u"hello all");
    EXPECT_EQ(sent, "PRIVMSG #room :hello all\r\n");
    pass(1'000);
    EXPECT_THAT(told, ElementsAre("me: hello all"));
    EXPECT_TRUE(room->history().ends_with(u"\r\nme says:\r\nhello all"));
    sent.clear();
    talk().type(u"/me waves");
    EXPECT_EQ(sent, "PRIVMSG #room :\x01"
                    "ACTION waves\x01\r\n");
    sent.clear();
    talk().type(u"/dance");
    EXPECT_EQ(sent, "");
    EXPECT_THAT(shown().back(), testing::StartsWith("-|"));
}

TEST_F(LiveAccounts, WhoWritesToOneselfAloneHasAConversationWithASeat) {
    enter();
    server(":ann!u@h PRIVMSG me :psst");
    ASSERT_EQ(client.conversations().size(), 2u);
    const ConversationPtr alone = client.conversations().back();
    EXPECT_EQ(alone->live()->title(), u"ann");
    ASSERT_EQ(alone->participants().size(), 1u);
    EXPECT_EQ(alone->participants().front()->signin, u"ann@Example");
    pass(1'000);
    EXPECT_TRUE(alone->history().ends_with(u"\r\nann says:\r\npsst"));
    sent.clear();
    alone->live()->type(u"what?");
    EXPECT_EQ(sent, "PRIVMSG ann what?\r\n");
}

TEST_F(LiveAccounts, WhatANetworkSaysStandsInTheFirstConversation) {
    account->start();
    account->connected();
    server(":irc.example.org NOTICE * :*** Looking up your hostname");
    server(":irc.example.org 001 me :Welcome");
    server(":irc.example.org 422 me :No message");
    for (int i = 0; i < 100; ++i) {
        server(":irc.example.org NOTICE me :take note " + std::to_string(i));
    }
    EXPECT_THAT(sentences, IsEmpty());
    server(":me!u@h JOIN #room");
    EXPECT_EQ(shown().size(), LiveAccount::most_held);
    EXPECT_EQ(shown().front(), "-|take note 0");
    server(":irc.example.org NOTICE me :one more");
    EXPECT_EQ(shown().back(), "-|one more");
}

TEST_F(LiveAccounts, AChannelThatCannotBeEnteredIsTold) {
    goOnline();
    server(":irc.example.org 473 me #room :Cannot join channel (+i)");
    ASSERT_EQ(sentences.size(), 1u);
    EXPECT_THAT(sentences.front(), testing::StartsWith("#room could not be entered"));
}

TEST_F(LiveAccounts, StrangersOpenALimitedNumberOfWindows) {
    enter();
    for (int i = 0; i < 50; ++i) {
        server(":stranger" + std::to_string(i) + "!u@h PRIVMSG me :look at me");
    }
    EXPECT_EQ(client.conversations().size(), 1 + LiveAccount::most_talks);
    EXPECT_THAT(shown(), Contains("-|stranger49 writes to you alone: look at me"));
    server(":stranger3!u@h PRIVMSG me :again");
    EXPECT_THAT(shown(), Not(Contains(HasSubstr("again")))) << "that one has a window";
    talk().type(u"/msg stranger49 who are you?");
    EXPECT_EQ(client.conversations().size(), 2 + LiveAccount::most_talks) << "the user may";
}

TEST_F(LiveAccounts, TalksAloneAreOpenedByContactAndByQuery) {
    enter();
    writes("ann", "hello");
    pass(5'000);
    const ConversationPtr alone = account->talkWith(client.find(u"ann@Example"));
    ASSERT_TRUE(alone);
    EXPECT_EQ(account->talkWith(client.find(u"ann@Example")), alone);
    client.conversations().front()->live()->type(u"/query bob");
    EXPECT_THAT(brought_up, ElementsAre(u"bob"));
    client.conversations().front()->live()->type(u"/query nobody");
    EXPECT_THAT(shown(*client.conversations().front()->live()).back(), "-|Nobody called nobody is known here.");
}

TEST_F(LiveAccounts, FirstConnectionThatFailsIsToldAndNotTriedAgain) {
    account->start();
    long code = 0;
    client.listen([&](const Change& change) {
        if (change.kind == Change::Kind::signed_in) {
            code = change.number;
        }
    });
    account->failed(u"The server's certificate is out of date.");
    EXPECT_EQ(code, static_cast<std::int32_t>(0x800704CF));
    EXPECT_THAT(toUtf8(failure), HasSubstr("certificate is out of date"));
    EXPECT_EQ(client.stage(), Stage::out);
    pass(400'000);
    EXPECT_EQ(opened, 1);
}

TEST_F(LiveAccounts, ALostConnectionComesBackWithItsChannels) {
    const ConversationPtr room = enter();
    writes("ann", "hello");
    pass(10'000);
    account->lost(u"The server closed the connection.");
    EXPECT_TRUE(client.signedIn());
    EXPECT_THAT(shown().back(), HasSubstr("The connection was lost: The server closed the connection."));
    pass(3'000);
    EXPECT_EQ(opened, 2);
    account->connected();
    sent.clear();
    server(":irc.example.org 001 me :Welcome");
    server(":irc.example.org 422 me :No message");
    EXPECT_THAT(sent, HasSubstr("JOIN #room"));
    server(":me!u@h JOIN #room");
    EXPECT_EQ(client.conversations().size(), 1u) << "the same window";
    told.clear();
    writes("ann", "back again");
    pass(2'000);
    EXPECT_THAT(told, Contains("ann: back again"));
}

TEST_F(LiveAccounts, ClosingAWindowLeavesTheChannel) {
    const ConversationPtr room = enter();
    client.listen([&](const Change& change) {
        if (change.kind == Change::Kind::window_destroyed) {
            account->closed(change.conversation);
        }
    });
    client.close(room);
    EXPECT_EQ(sent, "PART #room\r\n");
    server(":me!u@h PART #room");
    writes("ann", "nobody hears it");
    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(client.conversations(), IsEmpty());
}

TEST_F(LiveAccounts, BeingRemovedIsSaidAndTheWindowStays) {
    enter();
    server(":ann!u@h KICK #room me :enough");
    EXPECT_THAT(shown().back(), "-|You were removed from #room by ann: enough");
    EXPECT_EQ(client.conversations().size(), 1u);
}

TEST_F(LiveAccounts, RulesAreKeptForEachConversation) {
    enter();
    reading::Rules rules;
    rules.lines_a_minute = 3;
    reading::list(rules.ignored_people, u"ann@Example", u"ann");
    talk().setRules(rules);
    EXPECT_EQ(kept[u"#room Example"], rules);
    writes("ann", "nobody reads me");
    pass(10'000);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(shown(), Contains("-ann|nobody reads me"));
}

TEST_F(LiveAccounts, HistoryGrowsByNoMoreThanIsRead) {
    const ConversationPtr room = enter();
    const std::size_t before = room->history().size();
    for (int i = 0; i < 600; ++i) {
        writes("ann", sentence(i));
        pass(100);
    }
    pass(5'000);
    std::size_t lines = 0;
    for (const std::string& what : told) {
        lines += what.starts_with("ann: ");
    }
    EXPECT_LE(lines, 17u) << "of six hundred a minute";
    EXPECT_GE(lines, 8u);
    EXPECT_LT(room->history().size() - before, lines * 60);
    EXPECT_EQ(shown().size(), 600u);
}

TEST_F(LiveAccounts, PeopleWhoFellSilentAreForgotten) {
    enter();
    for (int i = 0; i < 300; ++i) {
        const std::string nick = "guest" + std::to_string(i);
        server(":" + nick + "!u@h JOIN #room");
        writes(nick, sentence(i));
        pass(10'000);
    }
    EXPECT_LE(client.contacts().size(), LiveAccount::most_people);
    EXPECT_FALSE(client.find(u"guest0@Example"));
    EXPECT_TRUE(client.find(u"guest299@Example"));
}

TEST_F(LiveAccounts, StatusAndNameOfTheUserGoToTheNetwork) {
    enter();
    client.listen([&](const Change& change) {
        if (change.kind == Change::Kind::my_status) {
            account->statusChosen();
        } else if (change.kind == Change::Kind::my_name) {
            account->nameChosen();
        }
    });
    client.setMyStatus(Status::out_to_lunch);
    EXPECT_EQ(sent, "AWAY :Out to lunch\r\n");
    sent.clear();
    server(":irc.example.org 306 me :You have been marked as being away");
    EXPECT_EQ(client.me()->status, Status::out_to_lunch) << "it is none the less";
    client.setMyStatus(Status::idle);
    EXPECT_EQ(sent, "AWAY\r\n");
    server(":irc.example.org 305 me :You are no longer marked as being away");
    sent.clear();
    pass(10'000);
    client.setMyName(u"mia");
    EXPECT_EQ(sent, "NICK mia\r\n");
    EXPECT_EQ(client.me()->friendly, u"me") << "until the network agrees";
    server(":me!u@h NICK mia");
    EXPECT_EQ(client.me()->friendly, u"mia");
    EXPECT_EQ(client.me()->signin, u"me@Example");
}

TEST_F(LiveAccounts, ThoseOfNetworksAreNotKeptAmongTheAccountsHere) {
    enter();
    writes("ann", "hello");
    pass(2'000);
    client.keepAccount();
    client.signOut();
    EXPECT_THAT(client.accounts().all(), IsEmpty());
    EXPECT_THAT(client.contacts(), IsEmpty());
}

TEST_F(LiveAccounts, WhereNothingWasSeenThereAreNoNews) {
    enter();
    talk().setWatched(false);
    writes("ann", "the first line of all");
    EXPECT_EQ(talk().lines().find(1)->kind, LiveLine::Kind::message);
}

TEST_F(LiveAccounts, NewsHaveALineBeforeThem) {
    enter();
    writes("ann", "seen");
    talk().setWatched(false);
    writes("ann", "new");
    writes("bob", "newer");
    const auto kinds = [&] {
        std::vector<LiveLine::Kind> all;
        for (LineNumber number = talk().lines().first(); number < talk().lines().next(); ++number) {
            if (!talk().lines().find(number)->gone) {
                all.push_back(talk().lines().find(number)->kind);
            }
        }
        return all;
    };
    using Kind = LiveLine::Kind;
    EXPECT_THAT(kinds(), ElementsAre(Kind::message, Kind::news, Kind::message, Kind::message));
    talk().setWatched(true);
    EXPECT_THAT(kinds(), ElementsAre(Kind::message, Kind::news, Kind::message, Kind::message)) << "as it is read now";
    talk().setWatched(false);
    EXPECT_THAT(kinds(), ElementsAre(Kind::message, Kind::message, Kind::message));
}

} // namespace

} // namespace messenger_client
