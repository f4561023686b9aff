// Who is in which channel, and who is who.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/unit/messenger_irc/chat.h"

namespace messenger_client::irc {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string signinOf(const PersonPtr& person) {
    return murmelix::toUtf8(signinName(*person));
}

// Of the last line that was said.
PersonPtr writerOf(const Chat& chat) {
    for (auto event = chat.events.rbegin(); event != chat.events.rend(); ++event) {
        if (const auto* said = std::get_if<event::Said>(&*event)) {
            return said->writer;
        }
    }
    return nullptr;
}

PersonPtr says(Chat& chat, const std::string& prefix) {
    chat.server(prefix + " PRIVMSG #room :hello");
    return writerOf(chat);
}

TEST(Channels, TellTheirPeople) {
    Chat chat;
    chat.connect();
    chat.welcome();
    chat.told();
    chat.server(":me!user@host JOIN #room");
    chat.server(":s.example 332 me #room :What it is \x02"
                "about\x02");
    chat.server(":s.example 333 me #room ann 1700000000");
    chat.server(":s.example 353 me = #room :me @ann +bob");
    chat.server(":s.example 353 me = #room :@+cy dora!user@host");
    chat.server(":s.example 366 me #room :End of NAMES");
    EXPECT_THAT(chat.told(),
                ElementsAre("in #room", "topic #room: What it is about", "people #room @ann +bob @cy dora me"));
}

TEST(Channels, TellWhoComesAndGoes) {
    Chat chat;
    chat.enter();
    chat.server(":cy!u@h JOIN :#room");
    chat.server(":cy!u@h JOIN #elsewhere");
    chat.server(":cy!u@h JOIN #room");
    chat.server(":cy!u@h PART #room :see \x1Dyou");
    chat.server(":bob!u@h PART #room");
    chat.server(":bob!u@h PART #room");
    chat.server(":ann!u@h QUIT :Quit: bye");
    chat.server(":nobody!u@h QUIT :Quit: bye");
    chat.server(":me!user@host QUIT :Quit: bye");
    EXPECT_THAT(chat.told(), ElementsAre("joined #room cy", "left #room cy parted: see you", "left #room bob parted",
                                         "left #room ann quit: Quit: bye"));
}

TEST(Channels, TellWhoIsKicked) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h KICK #room bob :be nice");
    chat.server(":s.example KICK #room me");
    EXPECT_THAT(chat.told(), ElementsAre("left #room bob kicked by ann: be nice", "out of #room kicked"));
    chat.server(":ann!u@h PRIVMSG #room :hello");
    EXPECT_THAT(chat.told(), IsEmpty()) << "one is not there any more";
}

TEST(Channels, AreLeft) {
    Chat chat;
    chat.enter();
    chat.server(":me!user@host PART #ROOM :bye");
    EXPECT_THAT(chat.told(), ElementsAre("out of #room parted: bye"));
}

TEST(Channels, ThatCannotBeEnteredAreTold) {
    Chat chat;
    chat.enter();
    for (const char* number : {"403", "405", "437", "470", "471", "473", "474", "475", "476", "477", "489"}) {
        chat.server(std::string(":s.example ") + number + " me #other :Cannot join channel");
        EXPECT_THAT(chat.told(), ElementsAre("out of #other refused: Cannot join channel")) << number;
    }
    chat.server(":s.example 477 me #room :You cannot do that");
    EXPECT_THAT(chat.told(), ElementsAre("told #room: #room: You cannot do that"));
}

TEST(Channels, AreTheSameInTheServersCaseMapping) {
    Chat chat;
    chat.enter("CASEMAPPING=rfc1459");
    chat.server(":x!u@h JOIN #ROOM");
    chat.server(":Ann!u@h PRIVMSG #Room :hello");
    EXPECT_THAT(chat.told(), ElementsAre("joined #room x", "#room ann says: hello [moderator]"));
    chat.server(":w[]\\~!u@h JOIN #room");
    chat.server(":W{}|^!u@h PART #room");
    EXPECT_THAT(chat.told(), ElementsAre("joined #room w[]\\~", "left #room w[]\\~ parted"));
    Chat ascii;
    ascii.enter("CASEMAPPING=ascii");
    ascii.server(":w[]!u@h JOIN #room");
    ascii.server(":W{}!u@h PART #room");
    EXPECT_THAT(ascii.told(), ElementsAre("joined #room w[]"));
}

TEST(Marks, AreToldAsTheyChange) {
    Chat chat;
    chat.enter("PREFIX=(qov)~@+ CHANMODES=b,k,l,imnt");
    chat.server(":ann!u@h MODE #room +ov bob bob");
    chat.server(":ann!u@h MODE #room -o+kbl-v+q bob key mask 5 bob ann");
    chat.server(":ann!u@h MODE #room +o nobody");
    chat.server(":ann!u@h MODE #room +o");
    chat.server(":ann!u@h MODE me +i");
    EXPECT_THAT(chat.told(), ElementsAre("marked #room @mod bob", "marked #room @mod voice bob",
                                         "marked #room +voice bob", "marked #room bob", "marked #room ~mod ann"));
}

TEST(Marks, MakeModeratorsOfWhoSpeaks) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h PRIVMSG #room :hello");
    chat.server(":bob!u@h PRIVMSG #room :hello");
    EXPECT_THAT(chat.told(), ElementsAre("#room ann says: hello [moderator]", "#room bob says: hello"));
}

TEST(Renames, KeepThePerson) {
    Chat chat;
    chat.enter();
    const PersonPtr ann = says(chat, ":ann!u@h");
    chat.told();
    chat.server(":ann!u@h NICK :Anna");
    const PersonPtr anna = says(chat, ":Anna!u@h");
    EXPECT_EQ(ann, anna);
    EXPECT_EQ(signinOf(anna), "ann@irc.example.org");
    EXPECT_EQ(shownName(*anna), u"Anna");
    EXPECT_THAT(chat.told(), ElementsAre("renamed ann to Anna", "#room Anna says: hello [moderator]"));
}

TEST(Renames, WhoTakesAnOldNickIsSomebodyElse) {
    Chat chat;
    chat.enter();
    const PersonPtr ann = says(chat, ":ann!u@h");
    chat.server(":ann!u@h NICK anna");
    chat.server(":ann!other@h JOIN #room");
    const PersonPtr other = says(chat, ":ann!other@h");
    EXPECT_NE(ann, other);
    EXPECT_NE(signinOf(ann), signinOf(other));
    EXPECT_EQ(signinOf(ann), "ann@irc.example.org");
}

TEST(Renames, OfOneselfAreFollowed) {
    Chat chat;
    chat.enter();
    chat.server(":me!user@host NICK myself");
    EXPECT_THAT(chat.told(), ElementsAre("renamed me to myself"));
    chat.server(":bob!u@h PRIVMSG myself :psst");
    EXPECT_THAT(chat.told(), ElementsAre("with bob bob says: psst"));
}

TEST(Renames, OntoSomebodyEndThatOne) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h NICK bob");
    EXPECT_THAT(chat.told(), ElementsAre("left #room bob quit", "renamed ann to bob"));
    chat.server(":bob!u@h NICK me");
    chat.server(":bob!u@h NICK :");
    EXPECT_THAT(chat.told(), IsEmpty()) << "nobody becomes oneself";
}

TEST(SigninNames, AreTheAccountWhereItIsKnownByTheFirstLine) {
    Chat chat;
    chat.enter("NETWORK=Example");
    const PersonPtr ann = says(chat, "@account=Annie :ann!u@h");
    EXPECT_EQ(signinOf(ann), "Annie");
    EXPECT_THAT(chat.told(), ElementsAre("identified ann Annie", "#room ann says: hello [moderator]"));
    const PersonPtr bob = says(chat, ":bob!u@h");
    EXPECT_EQ(signinOf(bob), "bob@Example");
    chat.server(":bob!u@h ACCOUNT Robert");
    EXPECT_EQ(bob->account, u"Robert");
    EXPECT_EQ(signinOf(bob), "bob@Example") << "a person who has spoken keeps the name";
    chat.server(":cy!u@h JOIN #room Cynthia :Real Name");
    chat.server(":dora!u@h JOIN #room * :Real Name");
    EXPECT_EQ(signinOf(says(chat, ":cy!u@h")), "Cynthia");
    const PersonPtr dora = says(chat, ":dora!u@h");
    EXPECT_EQ(signinOf(dora), "dora@Example");
    EXPECT_EQ(dora->account, u"");
}

TEST(SigninNames, OfAnAccountBelongToOneNickAtATime) {
    Chat chat;
    chat.enter();
    EXPECT_EQ(signinOf(says(chat, "@account=Annie :ann!u@h")), "Annie");
    EXPECT_EQ(signinOf(says(chat, "@account=Annie :ann_phone!u@h")), "ann_phone@irc.example.org");
}

TEST(SigninNames, StayWhenSomebodyComesBack) {
    Chat chat;
    chat.enter();
    const PersonPtr ann = says(chat, ":ann!u@h");
    chat.server(":ann!u@h QUIT :bye");
    chat.session.lost(u"", chat.now);
    chat.pass(2000);
    chat.session.connected(chat.now);
    chat.welcome("me2");
    chat.server(":me2!user@host JOIN #room");
    chat.server(":ann!u2@h2 JOIN #room");
    EXPECT_EQ(says(chat, ":ann!u2@h2"), ann);
    EXPECT_EQ(ann->host, u"h2");
}

TEST(SigninNames, OfAnotherAccountIsAnotherPerson) {
    Chat chat;
    chat.enter();
    const PersonPtr ann = says(chat, "@account=Annie :ann!u@h");
    chat.server(":ann!u@h QUIT :bye");
    const PersonPtr other = says(chat, "@account=Thief :ann!u@h");
    EXPECT_NE(ann, other);
    EXPECT_EQ(signinOf(other), "Thief");
}

TEST(Accounts, AreLost) {
    Chat chat;
    chat.enter();
    chat.server(":bob!u@h ACCOUNT Robert");
    chat.server(":bob!u@h ACCOUNT *");
    EXPECT_THAT(chat.told(), ElementsAre("identified bob Robert", "identified bob bob@irc.example.org"));
}

TEST(Away, IsTold) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h AWAY :at lunch");
    chat.server(":ann!u@h AWAY");
    chat.server(":s.example 306 me :You have been marked as being away");
    chat.server(":s.example 305 me :You are no longer marked as being away");
    chat.server(":s.example 301 me bob :gone fishing");
    EXPECT_THAT(chat.told(),
                ElementsAre("away ann: at lunch", "back ann", "away me", "back me", "away bob: gone fishing"));
}

TEST(Hosts, AreFollowed) {
    Chat chat;
    chat.enter();
    const PersonPtr ann = says(chat, ":ann!u@h");
    chat.server(":ann!u@h CHGHOST other cloak.example");
    EXPECT_EQ(ann->user, u"other");
    EXPECT_EQ(ann->host, u"cloak.example");
    chat.server(":s.example 396 me my.cloak.example :is now your displayed host");
    EXPECT_EQ(chat.session.me()->host, u"my.cloak.example");
    chat.server(":s.example 396 me new@your.cloak :is now your displayed host");
    EXPECT_EQ(chat.session.me()->user, u"new");
    EXPECT_EQ(chat.session.me()->host, u"your.cloak");
}

TEST(Topics, AreToldWithWhoSetThem) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h TOPIC #room :News");
    chat.server(":s.example TOPIC #room :");
    EXPECT_THAT(chat.told(), ElementsAre("topic #room by ann: News", "topic #room: "));
}

TEST(Netsplits, AreToldOnce) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h QUIT :a.example.net b.example.net");
    chat.server(":bob!u@h QUIT :a.example.net b.example.net");
    EXPECT_THAT(chat.told(), ElementsAre("netsplit a.example.net b.example.net",
                                         "left #room ann netsplit: a.example.net b.example.net",
                                         "left #room bob netsplit: a.example.net b.example.net"));
    chat.server(":ann!u@h JOIN #room");
    chat.server(":cy!u@h JOIN #room");
    EXPECT_THAT(chat.told(), ElementsAre("joined #room ann again", "joined #room cy"));
    chat.server(":ann!u@h PART #room");
    chat.server(":ann!u@h JOIN #room");
    EXPECT_THAT(chat.told(), ElementsAre("left #room ann parted", "joined #room ann"));
    chat.now += split_time + 1;
    chat.server(":ann!u@h QUIT :a.example.net b.example.net");
    EXPECT_THAT(chat.told(), Contains("netsplit a.example.net b.example.net")) << "another one, later";
}

TEST(Netsplits, AreNotWhatPeopleSay) {
    for (const char* why : {"Quit: a.b c.d", "see you.", "go to x.example now", "a.b", "a.b c.d e.f", "a.b http://c.d",
                            "Ping timeout: 240 seconds", ". .", ""}) {
        Chat chat;
        chat.enter();
        chat.server(std::string(":ann!u@h QUIT :") + why);
        EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("left #room ann quit"))) << why;
    }
}

TEST(Answers, OfTheServerAreTold) {
    Chat chat;
    chat.enter();
    chat.server(":s.example 401 me nobody :No such nick/channel");
    chat.server(":s.example 404 me #room :Cannot send to channel");
    chat.server(":s.example 311 me ann user host * :Ann Example");
    chat.server(":s.example 372 me :- message of the day");
    chat.server(":s.example NOTICE me :*** Going down");
    chat.server("NOTICE AUTH :*** Looking up");
    chat.server(":ann!u@h INVITE me #party");
    EXPECT_THAT(chat.told(),
                ElementsAre("told: nobody: No such nick/channel", "told #room: #room: Cannot send to channel",
                            "told: ann user host *: Ann Example", "told: *** Going down", "told: *** Looking up",
                            "told: ann invites you to #party."));
}

} // namespace

} // namespace messenger_client::irc
