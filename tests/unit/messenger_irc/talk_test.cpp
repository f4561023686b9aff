// What people say, and what is told again.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/messenger/irc/batches.h"
#include "companions/messenger/irc/server_time.h"
#include "tests/unit/messenger_irc/chat.h"

namespace messenger_client::irc {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Talk, IsOfSeveralKinds) {
    Chat chat;
    chat.enter();
    chat.server(":bob!u@h PRIVMSG #room :hello \x02you\x02");
    chat.server(":bob!u@h PRIVMSG #room :\x01"
                "ACTION waves \x1Dtwice\x1D\x01");
    chat.server(":bob!u@h NOTICE #room :take care");
    chat.server(":bob!u@h PRIVMSG me :psst");
    chat.server(":bob!u@h NOTICE ME :hush");
    chat.server(":bob!u@h PRIVMSG @#room :among operators");
    EXPECT_THAT(chat.told(), ElementsAre("#room bob says: hello you", "#room bob acts: waves twice",
                                         "#room bob notices: take care", "with bob bob says: psst",
                                         "with bob bob notices: hush", "#room bob says: among operators"));
}

TEST(Talk, OfAStrangerIsAPrivateTalk) {
    Chat chat;
    chat.enter();
    chat.server(":stranger!u@h PRIVMSG me :hello");
    EXPECT_THAT(chat.told(), ElementsAre("with stranger stranger says: hello"));
    chat.server(":stranger!u@h PRIVMSG #elsewhere :hello");
    chat.server(":stranger!u@h PRIVMSG #room");
    chat.server(":stranger!u@h PRIVMSG me :");
    chat.server(":stranger!u@h PRIVMSG me :\x02\x03");
    chat.server(":stranger!u@h PRIVMSG me :  \t ");
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(Talk, HasItsTimeAndId) {
    Chat chat;
    chat.enter();
    chat.server("@time=2026-11-21T18:00:00.250Z;msgid=abc :bob!u@h PRIVMSG #room :hello");
    EXPECT_THAT(chat.told(), ElementsAre("#room bob says: hello [id abc] [at 1795284000250]"));
}

TEST(Talk, InAnyEncoding) {
    Chat chat;
    chat.enter();
    chat.server(":bob!u@h PRIVMSG #room :caf\xE9 caf\xC3\xA9");
    chat.server(":caf\xE9!u@h PRIVMSG me :hello");
    chat.told();
    chat.session.say(u"caf\u00E9", u"hello", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG caf\xC3\xA9 hello"));
}

TEST(Requests, AreAnsweredRarely) {
    Settings settings = ircSettings();
    settings.program = u"Messenger 1.0";
    Chat chat(settings);
    chat.enter();
    chat.server(":bob!u@h PRIVMSG me :\x01VERSION\x01");
    EXPECT_THAT(chat.sent(), ElementsAre("NOTICE bob :\x01VERSION Messenger 1.0\x01"));
    chat.server(":bob!u@h PRIVMSG me :\x01VERSION\x01");
    chat.server(":bob!u@h PRIVMSG me :\x01PING 123\x01");
    EXPECT_THAT(chat.sent(), IsEmpty()) << "too soon";
    chat.pass(10'000);
    chat.server(":bob!u@h PRIVMSG me :\x01PING 123\x01");
    EXPECT_THAT(chat.sent(), ElementsAre("NOTICE bob :\x01PING 123\x01"));
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(Requests, AreNotAnsweredElse) {
    Settings settings = ircSettings();
    settings.program = u"Messenger 1.0";
    Chat chat(settings);
    chat.enter();
    chat.server(":bob!u@h PRIVMSG #room :\x01VERSION\x01");
    chat.server(":bob!u@h NOTICE me :\x01VERSION\x01");
    chat.server(":me!user@host PRIVMSG me :\x01VERSION\x01");
    chat.server(":irc.example.org PRIVMSG me :\x01VERSION\x01");
    chat.server(":bob!u@h PRIVMSG me :\x01"
                "DCC SEND file 1 2 3\x01");
    chat.server(":bob!u@h PRIVMSG me :\x01\x01");
    EXPECT_THAT(chat.sent(), IsEmpty());
    Chat nameless;
    nameless.enter();
    nameless.server(":bob!u@h PRIVMSG me :\x01VERSION\x01");
    EXPECT_THAT(nameless.sent(), IsEmpty());
}

TEST(History, IsInABatch) {
    for (const char* type : {"chathistory #room", "znc.in/playback #room"}) {
        Chat chat;
        chat.enter();
        chat.server(std::string(":s.example BATCH +1 ") + type);
        chat.server("@batch=1 :bob!u@h PRIVMSG #room :before");
        chat.server("@batch=1 :bob!u@h PART #room");
        chat.server(":bob!u@h PRIVMSG #room :now");
        chat.server("@batch=1 :s.example BATCH +2 inner");
        chat.server("@batch=2 :bob!u@h PRIVMSG #room :also before");
        chat.server(":s.example BATCH -2");
        chat.server(":s.example BATCH -1");
        chat.server("@batch=1 :bob!u@h PRIVMSG #room :after");
        EXPECT_THAT(chat.told(), ElementsAre("#room bob says: before [history]", "#room bob says: now",
                                             "#room bob says: also before [history]", "#room bob says: after"));
    }
}

TEST(History, IsOlderThanTheJoin) {
    Chat chat;
    chat.connect();
    chat.server("@time=2026-11-21T18:00:00.000Z :s.example 001 me :Welcome");
    chat.server(":s.example 376 me :End");
    chat.server("@time=2026-11-21T18:00:10.000Z :me!user@host JOIN #room");
    chat.told();
    chat.server("@time=2026-11-21T18:00:09.999Z :bob!u@h PRIVMSG #room :before");
    chat.server("@time=2026-11-21T18:00:10.000Z :bob!u@h PRIVMSG #room :now");
    chat.server("@time=2026-11-21T17:59:59.000Z :bob!u@h PRIVMSG me :before");
    chat.server("@time=2026-11-21T18:00:09.000Z :bob!u@h PRIVMSG me :now");
    chat.server("@time=nonsense :bob!u@h PRIVMSG #room :now");
    EXPECT_THAT(chat.told(), ElementsAre("#room bob says: before [history] [at 1795284009999]",
                                         "#room bob says: now [at 1795284010000]",
                                         "with bob bob says: before [history] [at 1795283999000]",
                                         "with bob bob says: now [at 1795284009000]", "#room bob says: now"));
}

TEST(ServerTime, IsRead) {
    EXPECT_EQ(parseServerTime("1970-01-01T00:00:00.000Z"), 0);
    EXPECT_EQ(parseServerTime("2000-02-29T12:34:56.789Z"), 951827696789);
    EXPECT_EQ(parseServerTime("2016-12-31T23:59:60.000Z"), 1483228800000) << "a leap second";
    for (const char* odd :
         {"", "2026-11-21", "2026-11-21T18:00:00Z", "2026-13-21T18:00:00.000Z", "2026-02-30T18:00:00.000Z",
          "2026-11-21T24:00:00.000Z", "2026-11-21T18:61:00.000Z", "2026-11-21T18:00:61.000Z",
          "2O26-11-21T18:00:00.000Z", "2026-11-21 18:00:00.000Z", "-026-11-21T18:00:00.000Z"}) {
        EXPECT_EQ(parseServerTime(odd), std::nullopt) << odd;
    }
}

TEST(BatchesTest, AreBounded) {
    Batches batches;
    for (int i = 0; i < 100'000; ++i) {
        const std::string line = "BATCH +" + std::to_string(i) + " chathistory #room";
        batches.read(Message(line));
    }
    EXPECT_EQ(batches.size(), most_batches);
    EXPECT_TRUE(batches.isHistory(Message("@batch=99999 PRIVMSG")));
    EXPECT_FALSE(batches.isHistory(Message("@batch=0 PRIVMSG")));
}

} // namespace

} // namespace messenger_client::irc
