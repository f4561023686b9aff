// A server is a stranger: whatever it sends, the session stays as it is meant to be.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/unit/messenger_irc/chat.h"

namespace messenger_client::irc {

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using namespace std::string_literals;

Settings withPassword() {
    Settings settings = ircSettings();
    settings.password = u"hunter2";
    return settings;
}

// All that a server says to withPassword(), from the first to the last.
const std::vector<std::string> recorded{
    ":s.example NOTICE * :*** Looking up your hostname...",
    ":s.example CAP * LS * :message-tags server-time multi-prefix account-tag",
    ":s.example CAP * LS :sasl=PLAIN batch extended-join",
    ":s.example CAP me ACK :message-tags server-time multi-prefix account-tag extended-join batch sasl",
    "AUTHENTICATE +",
    ":s.example 900 me me!user@host me :You are now logged in as me",
    ":s.example 903 me :SASL authentication successful",
    "@time=2026-11-21T18:00:00.000Z :s.example 001 me :Welcome to the Example network",
    ":s.example 005 me CASEMAPPING=rfc1459 CHANTYPES=# PREFIX=(ov)@+ NETWORK=Example :are supported",
    ":s.example 376 me :End of /MOTD command.",
    "@time=2026-11-21T18:00:01.000Z :me!user@host JOIN #room me :me",
    ":s.example 332 me #room :About everything",
    ":s.example 353 me = #room :me @ann +bob",
    ":s.example 366 me #room :End of /NAMES list.",
    ":s.example BATCH +1 chathistory #room",
    "@batch=1;time=2026-11-21T17:00:00.000Z;account=Ann :ann!u@h PRIVMSG #room :before",
    ":s.example BATCH -1",
    "@time=2026-11-21T18:00:02.000Z;account=Ann :ann!u@h PRIVMSG #room :caf\xC3\xA9 \xF0\x9F\x98\x82",
    ":ann!u@h MODE #room +v ann",
    ":bob!u@h NICK robert",
    ":robert!u@h QUIT :a.example b.example",
    "PING :still there?",
    "ERROR :Closing Link",
};

std::string recordedBytes() {
    std::string bytes;
    for (const std::string& line : recorded) {
        bytes += line + "\r\n";
    }
    return bytes;
}

TEST(Hostile, TheRecordedSessionIsAGoodOne) {
    Chat chat(withPassword());
    chat.connect();
    chat.session.received(recordedBytes(), chat.now);
    EXPECT_THAT(chat.told(),
                ElementsAre("connecting", "registering", "told: *** Looking up your hostname...", "online me Example",
                            "identified me me", "in #room", "topic #room: About everything",
                            "people #room @ann +bob me", "identified ann Ann",
                            "#room ann says: before [history] [moderator] [at 1795280400000]",
                            "#room ann says: café 😂 [moderator] [at 1795284002000]", "marked #room @mod voice ann",
                            "renamed bob to robert", "netsplit a.example b.example",
                            "left #room robert netsplit: a.example b.example",
                            "lost: The server has ended the connection: Closing Link again at 1002000"));
    EXPECT_THAT(chat.sent(),
                ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me",
                            "CAP REQ :message-tags server-time multi-prefix account-tag extended-join batch sasl",
                            "AUTHENTICATE PLAIN", "AUTHENTICATE bWUAbWUAaHVudGVyMg==", "CAP END", "JOIN #room",
                            "PONG :still there?"));
}

TEST(Hostile, BytesInAnyPortionsMeanTheSame) {
    const std::string bytes = recordedBytes();
    Chat whole(withPassword());
    whole.connect();
    whole.session.received(bytes, whole.now);
    const std::vector<std::string> told = whole.told(), sent = whole.sent();
    for (std::size_t portion = 1; portion < 100; ++portion) {
        Chat chat(withPassword());
        chat.connect();
        for (std::size_t at = 0; at < bytes.size(); at += portion) {
            chat.session.received(std::string_view(bytes).substr(at, portion), chat.now);
        }
        EXPECT_EQ(chat.told(), told) << portion;
        EXPECT_EQ(chat.sent(), sent) << portion;
    }
}

TEST(Hostile, ACloseAfterAnyByteIsFollowedByAnotherConnection) {
    const std::string bytes = recordedBytes();
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        Chat chat(withPassword());
        chat.connect();
        chat.session.received(std::string_view(bytes).substr(0, length), chat.now);
        chat.session.lost(u"The server closed the connection.", chat.now);
        ASSERT_EQ(chat.session.state(), State::waiting) << length;
        chat.pass(2000);
        ASSERT_EQ(chat.session.state(), State::connecting) << length;
        chat.session.connected(chat.now);
        chat.told();
        chat.session.received(bytes, chat.now);
        ASSERT_THAT(chat.told(), Contains("people #room @ann +bob me")) << length << ": nothing is left of before";
    }
}

TEST(Hostile, SilenceAfterAnyStepIsFollowedByAnotherConnection) {
    for (std::size_t steps = 0; steps < recorded.size(); ++steps) {
        Chat chat(withPassword());
        chat.connect();
        for (std::size_t i = 0; i < steps; ++i) {
            chat.server(recorded[i]);
        }
        const bool online = chat.session.state() == State::online;
        chat.sent();
        chat.pass(online ? 150'000 : 60'000);
        EXPECT_EQ(chat.session.state(), State::waiting) << steps;
        EXPECT_EQ(chat.closed, 1);
        EXPECT_THAT(chat.sent(), Each("PING still-there"));
        chat.pass(2000);
        EXPECT_EQ(chat.opened, 2);
    }
    Chat chat;
    chat.session.start(chat.now);
    chat.pass(60'000);
    EXPECT_EQ(chat.session.state(), State::waiting) << "nor does connecting take for ever";
}

TEST(Hostile, ALineWithoutEnd) {
    Chat chat;
    chat.enter();
    const std::string much(1024 * 1024, 'x');
    for (int i = 0; i < 20; ++i) {
        chat.session.received(much, chat.now);
    }
    chat.server("");
    chat.server(":ann!u@h PRIVMSG #room :hello");
    EXPECT_THAT(chat.told(), ElementsAre("#room ann says: hello [moderator]"));
}

TEST(Hostile, TagsOfEightKilobytes) {
    Chat chat;
    chat.enter();
    chat.server("@time=2026-11-21T18:00:00.000Z;x=" + std::string(8150, 'x') + " :ann!u@h PRIVMSG #room :hello");
    chat.server("@" + std::string(8190, ';') + " :ann!u@h PRIVMSG #room :hello");
    chat.server("@msgid=" + std::string(8000, 'i') + ";account=" + std::string(8000, 'a') +
                " :ann!u@h PRIVMSG #room :hello");
    const std::vector<std::string> told = chat.told();
    ASSERT_THAT(told, SizeIs(4));
    EXPECT_THAT(told[0], HasSubstr("says: hello"));
    EXPECT_THAT(told[3], HasSubstr("[id " + std::string(100, 'i') + "]"));
    const PersonPtr ann = std::get<event::Said>(chat.events.back()).writer;
    EXPECT_EQ(ann->account.size(), longest_person_name);
}

TEST(Hostile, NulAndCrInTheMiddle) {
    Chat chat;
    chat.enter();
    chat.server(":ann!u@h PRIVMSG #room :a\0b\rc"s);
    chat.server(":ann!u@h PRIVMSG #room :hello\r:bob!u@h PRIVMSG #room :I am ann"s);
    EXPECT_THAT(chat.told(), ElementsAre("#room ann says: ab c [moderator]",
                                         "#room ann says: hello :bob!u@h PRIVMSG #room :I am ann [moderator]"));
    chat.server("PING :a\0b\rQUIT"s);
    EXPECT_THAT(chat.sent(), ElementsAre("PONG abQUIT"));
}

TEST(Hostile, AHundredThousandLines) {
    Chat chat;
    chat.enter();
    std::size_t said = 0;
    chat.recording = false;
    chat.on_event = [&](const Event& event) { said += std::holds_alternative<event::Said>(event) ? 1 : 0; };
    std::string bytes;
    for (int i = 0; i < 100'000; ++i) {
        const std::string writer = i % 10 == 0 ? "writer" + std::to_string(i) : "ann";
        bytes += ":" + writer + "!u@h PRIVMSG #room :hello\r\n";
    }
    chat.session.received(bytes, chat.now);
    EXPECT_EQ(said, 100'000U);
    EXPECT_LE(chat.session.network().knownPeople(), most_absent + 3);
}

TEST(Hostile, AHundredThousandPings) {
    Chat chat;
    chat.enter();
    for (int i = 0; i < 100'000; ++i) {
        chat.server("PING :x");
    }
    EXPECT_THAT(chat.sent(), SizeIs(20)) << "a flood is not answered by a flood";
    chat.pass(100);
    chat.server("PING :x");
    EXPECT_THAT(chat.sent(), SizeIs(1));
}

TEST(Hostile, FiftyThousandPeopleJoin) {
    Chat chat;
    chat.enter();
    std::size_t joined = 0;
    chat.recording = false;
    chat.on_event = [&](const Event& event) { joined += std::holds_alternative<event::Joined>(event) ? 1 : 0; };
    std::string bytes;
    for (int i = 0; i < 50'000; ++i) {
        bytes += ":nick" + std::to_string(i) + "!u@h JOIN #room\r\n";
    }
    chat.session.received(bytes, chat.now);
    EXPECT_EQ(joined, most_members - 3);
    EXPECT_LE(chat.session.network().knownPeople(), most_people);
    chat.server(":nick49999!u@h PRIVMSG #room :hello");
    chat.server(":nick49998!u@h PRIVMSG #room :hello");
    for (int i = 0; i < 50'000; ++i) {
        chat.server(":nick" + std::to_string(i) + "!u@h QUIT :bye");
    }
    EXPECT_LE(chat.session.network().knownPeople(), most_absent + 3);
}

TEST(Hostile, ManyChannelsOfManyPeople) {
    Chat chat;
    chat.enter();
    chat.recording = false;
    for (int c = 0; c < 110; ++c) {
        const std::string channel = "#c" + std::to_string(c);
        std::string bytes = ":me!user@host JOIN " + channel + "\r\n";
        for (int i = 0; i < 320; ++i) {
            bytes += ":nick" + std::to_string(c) + "x" + std::to_string(i) + "!u@h JOIN " + channel + "\r\n";
        }
        chat.session.received(bytes, chat.now);
    }
    EXPECT_EQ(chat.session.network().knownPeople(), most_people);
    EXPECT_TRUE(chat.session.network().isIn("#c98"));
    EXPECT_FALSE(chat.session.network().isIn("#c99")) << "most_channels with #room";
    chat.session.lost(u"", chat.now);
    EXPECT_LE(chat.session.network().knownPeople(), most_absent);
}

TEST(Hostile, ANickThatIsAPathOrARegistryName) {
    const std::vector<std::string> nicks{"..\\..\\x",
                                         "C:\\Windows\\x",
                                         "\\\\host\\share",
                                         "../../etc/passwd",
                                         "CON",
                                         "HKEY_USERS\\x",
                                         "HKCU\\Software\\x",
                                         "a*b?c",
                                         "a\"b<c>d|e",
                                         "%PATH%",
                                         "a~b",
                                         "a@b",
                                         "a,b;c"};
    Chat chat;
    chat.enter();
    std::set<std::u16string> signins;
    for (const std::string& nick : nicks) {
        chat.server(":" + nick + "!user@host PRIVMSG #room :hello");
        const auto& said = std::get<event::Said>(chat.events.back());
        const std::u16string signin = signinName(*said.writer);
        EXPECT_EQ(signin.find_first_of(u"\\/:*?\"<>|~,; "), murmelix::npos) << murmelix::toUtf8(signin);
        EXPECT_EQ(std::count(signin.begin(), signin.end(), u'@'), 1) << murmelix::toUtf8(signin);
        EXPECT_TRUE(signins.insert(signin).second);
    }
    EXPECT_TRUE(signins.contains(u"..%5C..%5Cx@irc.example.org"));
    EXPECT_TRUE(signins.contains(u"%25PATH%25@irc.example.org"));
}

TEST(Hostile, NamesWithControlCharactersAndMarksThatTurnTheText) {
    Chat chat;
    chat.enter();
    chat.server(":an\xE2\x80\xAEn\x02\x07!u\x01@h\xE2\x80\x8F PRIVMSG #room :hello");
    const PersonPtr odd = std::get<event::Said>(chat.events.back()).writer;
    EXPECT_EQ(odd->nick, u"an\xFFFDn\xFFFD\xFFFD");
    EXPECT_EQ(odd->user, u"u\xFFFD");
    EXPECT_EQ(odd->host, u"h\xFFFD");
    chat.server(":an\xE2\x80\xADn\x02\x07!u@h PRIVMSG #room :hello");
    const PersonPtr other = std::get<event::Said>(chat.events.back()).writer;
    EXPECT_NE(odd, other);
    EXPECT_NE(signinName(*odd), signinName(*other)) << "though both look the same";
    chat.server(":me!user@host JOIN #\xE2\x80\xAE\x03x");
    EXPECT_EQ(std::get<event::ChannelJoined>(chat.events[chat.events.size() - 1]).channel, u"#\xFFFD\xFFFDx");
}

TEST(Hostile, ANickOfAnyLength) {
    Chat chat;
    chat.enter();
    chat.server(":" + std::string(longest_nick + 1, 'x') + "!u@h PRIVMSG #room :hello");
    chat.server(":!u@h PRIVMSG #room :hello");
    chat.server(": PRIVMSG #room :hello");
    chat.server(":ann!u@h NICK " + std::string(5000, 'x'));
    chat.server(":ann!u@h NICK");
    EXPECT_THAT(chat.told(), ElementsAre("told #room: hello", "told #room: hello")) << "the server's, perhaps";
    chat.server(":" + std::string(longest_nick, 'x') + "!" + std::string(3000, 'u') + "@" + std::string(3000, 'h') +
                " PRIVMSG #room :hello");
    const PersonPtr person = std::get<event::Said>(chat.events.back()).writer;
    EXPECT_EQ(person->nick.size(), longest_person_name);
    EXPECT_LE(person->host.size(), 200U);
}

TEST(Hostile, ErrorAtAnyStepEndsTheConnectionOnce) {
    for (std::size_t steps = 0; steps < recorded.size(); ++steps) {
        Chat chat(withPassword());
        chat.connect();
        for (std::size_t i = 0; i < steps; ++i) {
            chat.server(recorded[i]);
        }
        chat.told();
        chat.server("ERROR :\x03"
                    "4Closing\r\nERROR :again\r\nPING :x");
        EXPECT_EQ(chat.closed, 1);
        EXPECT_EQ(chat.session.state(), State::waiting);
        EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("ended the connection: Closing again at")));
        EXPECT_THAT(chat.sent(), Not(Contains("PONG x")));
    }
}

TEST(Hostile, ThePasswordIsSentWhereItWasAskedForAlone) {
    // What a server says to be given it, or to be given it again.
    const std::vector<std::string> tricks{
        "AUTHENTICATE +",
        "AUTHENTICATE PLAIN",
        ":s.example CAP me ACK :sasl",
        ":s.example 908 me PLAIN :are available SASL mechanisms",
        ":s.example 010 me other.example 6667 :Please use this server",
        ":s.example CAP me NEW :sasl=PLAIN",
        ":s.example NOTICE me :Please send your password",
        ":s.example 464 me :Password required",
    };
    Chat early(withPassword());
    early.connect();
    for (const std::string& trick : tricks) {
        early.server(trick);
    }
    EXPECT_THAT(early.sent(), ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me"));
    Chat late(withPassword());
    late.connect();
    for (std::size_t i = 0; i < 10; ++i) {
        late.server(recorded[i]);
    }
    EXPECT_THAT(late.sent(), Contains("AUTHENTICATE bWUAbWUAaHVudGVyMg==").Times(1));
    for (const std::string& trick : tricks) {
        late.server(trick);
    }
    EXPECT_THAT(late.sent(), IsEmpty());
    Chat other(withPassword());
    other.connect();
    for (std::size_t i = 0; i < 4; ++i) {
        other.server(recorded[i]);
    }
    other.sent();
    other.server("AUTHENTICATE SCRAM-SHA-256");
    other.server(":s.example 908 me SCRAM-SHA-256 :are available SASL mechanisms");
    EXPECT_THAT(other.sent(), IsEmpty()) << "the mechanism was another one";
    other.server("AUTHENTICATE +");
    other.server("AUTHENTICATE +");
    EXPECT_THAT(other.sent(), SizeIs(1));
}

TEST(Hostile, AListOfCapabilitiesThatNeverEnds) {
    Chat chat;
    chat.connect();
    chat.sent();
    for (int i = 0; i < 10'000; ++i) {
        chat.server(":s.example CAP * LS * :batch unknown" + std::to_string(i));
    }
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ batch"));
    for (int i = 0; i < 10'000; ++i) {
        chat.server(":s.example CAP * NAK :batch");
        chat.server(":s.example CAP * LS :batch");
    }
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
    Chat other;
    other.connect();
    other.server(":s.example CAP * LS :batch setname");
    other.sent();
    for (int i = 0; i < 10'000; ++i) {
        other.server(":s.example CAP * NAK :batch setname");
    }
    EXPECT_THAT(other.sent(), ElementsAre("CAP REQ setname", "CAP REQ batch", "CAP END"));
    chat.pass(60'000);
    EXPECT_EQ(chat.session.state(), State::waiting);
}

TEST(Hostile, BatchesThatAreNeverClosed) {
    Chat chat;
    chat.enter();
    for (int i = 0; i < 10'000; ++i) {
        chat.server("BATCH +" + std::to_string(i) + " chathistory #room");
    }
    chat.server("@batch=9999 :ann!u@h PRIVMSG #room :before");
    chat.server("@batch=0 :ann!u@h PRIVMSG #room :now");
    chat.server("BATCH +" + std::string(5000, 'x') + " chathistory #room");
    chat.server("BATCH");
    chat.server("BATCH +");
    EXPECT_THAT(chat.told(),
                ElementsAre("#room ann says: before [history] [moderator]", "#room ann says: now [moderator]"));
}

TEST(Hostile, NamesThatNeverEndOrEndAgainAndAgain) {
    Chat chat;
    chat.connect();
    chat.welcome();
    chat.server(":me!user@host JOIN #room");
    chat.told();
    for (int i = 0; i < 30'000; ++i) {
        chat.server(":s 353 me = #room :@nick" + std::to_string(i));
    }
    EXPECT_THAT(chat.told(), IsEmpty());
    chat.server(":s 366 me #room :End");
    ASSERT_THAT(chat.told(), SizeIs(1));
    EXPECT_THAT(std::get<event::People>(chat.events.back()).members, SizeIs(most_members));
    for (int i = 0; i < 10'000; ++i) {
        chat.server(":s 366 me #room :End");
    }
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(Hostile, ManyPeopleOfOneName) {
    Chat chat;
    chat.enter();
    for (int i = 0; i < 3'000; ++i) {
        chat.server(":x!u@h JOIN #room");
        chat.server(":x!u@h PRIVMSG #room :hello");
        chat.server(":x!u@h NICK x" + std::to_string(i));
    }
    std::set<std::u16string> signins;
    for (const Event& event : chat.events) {
        if (const auto* said = std::get_if<event::Said>(&event)) {
            signins.insert(signinName(*said->writer));
        }
    }
    EXPECT_EQ(signins.size(), 3'000U);
}

TEST(Hostile, ACaseMappingThatChanges) {
    Chat chat;
    chat.enter("CASEMAPPING=ascii");
    chat.server(":w[]!u@h JOIN #room");
    chat.server(":w{}!u@h JOIN #room");
    for (int i = 0; i < 1000; ++i) {
        chat.server(":s 005 me CASEMAPPING=rfc1459 :are supported");
        chat.server(":s 005 me CASEMAPPING=ascii :are supported");
    }
    chat.server(":w{}!u@h PRIVMSG #room :hello");
    chat.session.lost(u"", chat.now);
    chat.pass(2000);
    chat.session.connected(chat.now);
    chat.welcome("w[]", "CASEMAPPING=rfc1459");
    chat.server(":w{}!user@host JOIN #room");
    EXPECT_THAT(chat.told(), Contains("in #room"));
    chat.server(":ann!u@h PRIVMSG #room :hello");
    EXPECT_THAT(chat.told(), ElementsAre("#room ann says: hello"));
}

TEST(Hostile, AnythingAnywhere) {
    const std::vector<std::string> commands{"001",       "005",     "301",          "305",       "332",
                                            "353",       "366",     "376",          "396",       "403",
                                            "432",       "433",     "464",          "900",       "903",
                                            "904",       "ACCOUNT", "AUTHENTICATE", "AWAY",      "BATCH",
                                            "CAP",       "CHGHOST", "CLEARCHAT",    "CLEARMSG",  "GLOBALUSERSTATE",
                                            "INVITE",    "JOIN",    "KICK",         "MODE",      "NICK",
                                            "NOTICE",    "PART",    "PING",         "PRIVMSG",   "QUIT",
                                            "ROOMSTATE", "TOPIC",   "USERNOTICE",   "USERSTATE", "WHISPER"};
    const std::vector<std::string> prefixes{"", ":", ":me!u@h ", ":ann!u@h ", ":s.example ", ":#room "};
    const std::vector<std::string> parameters{"",
                                              " ",
                                              " :",
                                              " me",
                                              " #room",
                                              " me #room",
                                              " #room me",
                                              " me me me me",
                                              " * LS *",
                                              " #room +oooo me",
                                              " #room -v+v me ann :",
                                              " +1 chathistory"};
    for (const bool twitch : {false, true}) {
        for (const std::string& command : commands) {
            Chat chat(twitch ? twitchSettings() : ircSettings());
            chat.connect();
            if (command > "AUTH") {
                chat.welcome();
                chat.server(":me!u@h JOIN #room\r\n:s 353 me = #room :@ann me\r\n:s 366 me #room :");
            }
            chat.sent();
            for (const std::string& prefix : prefixes) {
                for (const std::string& parameter : parameters) {
                    chat.server(prefix + command + parameter);
                }
            }
            for (const std::string& line : chat.sent()) {
                EXPECT_THAT(line,
                            testing::AnyOf(StartsWith("PONG"), StartsWith("CAP"), StartsWith("NICK"), "JOIN #room"))
                    << command;
            }
        }
    }
}

} // namespace

} // namespace messenger_client::irc
