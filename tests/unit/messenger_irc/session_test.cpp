// The way of a session: connecting, registering, staying connected, sending, leaving.
#include "companions/messenger/irc/session.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

Settings withAccount() {
    Settings settings = ircSettings();
    settings.account = u"account";
    settings.password = u"hunter2";
    return settings;
}

// Its lines until the first 001.
void offer(Chat& chat, const std::string& capabilities) {
    chat.connect();
    chat.sent();
    chat.server(":s.example CAP * LS :" + capabilities);
}

TEST(Registration, OnAServerWithoutCapabilities) {
    Chat chat;
    chat.session.start(chat.now);
    EXPECT_EQ(chat.session.state(), State::connecting);
    EXPECT_EQ(chat.opened, 1);
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.session.connected(chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me"));
    chat.server(":irc.example.org 421 * CAP :Unknown command");
    chat.server("PING :cookie");
    EXPECT_THAT(chat.sent(), ElementsAre("PONG cookie"));
    EXPECT_EQ(chat.session.state(), State::registering);
    chat.welcome("me", "NETWORK=Example");
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #room"));
    EXPECT_EQ(chat.session.state(), State::online);
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "registering", "online me Example"));
}

TEST(Registration, ANetworkWithoutANameIsCalledAsItsServer) {
    Chat chat;
    chat.connect();
    chat.server(":s 001 me :Welcome");
    chat.server(":s 422 me :No MOTD");
    EXPECT_THAT(chat.told(), Contains("online me irc.example.org"));
}

TEST(Registration, AsksForWhatIsOfferedAlone) {
    Chat chat;
    offer(chat, "message-tags server-time=x unknown batch draft/chathistory sasl=PLAIN,EXTERNAL");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :message-tags server-time batch"));
    chat.server(":s.example CAP * ACK :message-tags server-time batch ");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Registration, ReadsAListOfSeveralLines) {
    Chat chat;
    chat.connect();
    chat.sent();
    chat.server(":s.example CAP * LS * :message-tags away-notify");
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.server(":s.example CAP * LS :batch");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :message-tags away-notify batch"));
}

TEST(Registration, WithoutAnyCapabilityItGoesOn) {
    Chat chat;
    offer(chat, "");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Registration, WhatIsRefusedTogetherIsAskedForOneByOne) {
    Chat chat;
    offer(chat, "batch setname");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :setname batch"));
    chat.server(":s.example CAP * NAK :setname batch");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ setname", "CAP REQ batch"));
    chat.server(":s.example CAP * NAK :setname");
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.server(":s.example CAP * ACK :batch");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Registration, ANewCapabilityIsAskedForOnce) {
    Chat chat;
    chat.enter();
    for (int i = 0; i < 3; ++i) {
        chat.server(":s.example CAP me NEW :echo-message sasl unknown");
        chat.server(":s.example CAP me ACK :echo-message");
        chat.server(":s.example CAP me DEL :echo-message");
    }
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ echo-message"));
}

TEST(Sasl, SendsThePassword) {
    Chat chat(withAccount());
    offer(chat, "sasl=EXTERNAL,PLAIN");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ sasl"));
    chat.server(":s.example CAP me ACK :sasl");
    EXPECT_THAT(chat.sent(), ElementsAre("AUTHENTICATE PLAIN"));
    chat.server("AUTHENTICATE +");
    EXPECT_THAT(chat.sent(), ElementsAre("AUTHENTICATE YWNjb3VudABhY2NvdW50AGh1bnRlcjI="));
    chat.server(":s.example 900 me me!u@h account :You are now logged in as account");
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.server(":s.example 903 me :SASL authentication successful");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Sasl, WithoutAnAccountsNameItIsThatOfTheNick) {
    Settings settings = withAccount();
    settings.account.clear();
    Chat chat(settings);
    offer(chat, "sasl");
    chat.server(":s.example CAP me ACK :sasl");
    chat.server("AUTHENTICATE +");
    EXPECT_THAT(chat.sent(), Contains("AUTHENTICATE bWUAbWUAaHVudGVyMg=="));
}

TEST(Sasl, ALongPasswordComesInPieces) {
    for (const std::size_t length : {283U, 284U, 285U, 584U}) {
        Settings settings = withAccount();
        settings.password = std::u16string(length, u'x');
        Chat chat(settings);
        offer(chat, "sasl");
        chat.server(":s.example CAP me ACK :sasl");
        chat.server("AUTHENTICATE +");
        std::vector<std::string> lines = chat.sent();
        lines.erase(lines.begin(), lines.begin() + 2);
        const std::size_t digits = (length + 16 + 2) / 3 * 4, begin = std::string("AUTHENTICATE ").size();
        ASSERT_EQ(lines.size(), digits / 400 + 1) << length;
        for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
            EXPECT_EQ(lines[i].size() - begin, 400U);
        }
        EXPECT_EQ(lines.back().substr(begin).size(), digits % 400 == 0 ? 1 : digits % 400);
        EXPECT_EQ(lines.back() == "AUTHENTICATE +", digits % 400 == 0);
    }
}

TEST(Sasl, AWrongPasswordIsRefusedForGood) {
    for (const char* number : {"902", "904", "905", "906"}) {
        Chat chat(withAccount());
        offer(chat, "sasl");
        chat.server(":s.example CAP me ACK :sasl");
        chat.server("AUTHENTICATE +");
        chat.sent();
        chat.server(std::string(":s.example ") + number + " me :SASL authentication failed");
        EXPECT_EQ(chat.session.state(), State::refused);
        EXPECT_EQ(chat.closed, 1);
        EXPECT_THAT(chat.sent(), IsEmpty());
        EXPECT_EQ(chat.session.nextTick(), std::nullopt);
        EXPECT_THAT(chat.told(), Contains("refused: The server does not accept the account’s name or password: SASL "
                                          "authentication failed"));
        chat.session.start(chat.now);
        EXPECT_EQ(chat.session.state(), State::connecting) << "the user may try again";
    }
}

TEST(Sasl, GoesOnWhereOneIsSignedInAlready) {
    Chat chat(withAccount());
    offer(chat, "sasl");
    chat.server(":s.example CAP me ACK :sasl");
    chat.sent();
    chat.server(":s.example 907 me :You have already authenticated");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Sasl, WithoutItTheUserIsTold) {
    for (const char* capabilities : {"batch", "batch sasl=EXTERNAL"}) {
        Chat chat(withAccount());
        offer(chat, capabilities);
        EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ batch"));
        EXPECT_THAT(chat.told(), Contains(HasSubstr("going on without the account")));
    }
}

TEST(Passwords, StayHereWithoutTls) {
    Settings settings = withAccount();
    settings.address.tls = false;
    settings.server_password = u"door";
    Chat chat(settings);
    chat.connect();
    EXPECT_THAT(chat.sent(), ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me"));
    EXPECT_THAT(chat.told(), Contains("told: The password was not sent, because the connection is not encrypted."));
    chat.server(":s.example CAP * LS :sasl");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP END"));
}

TEST(Passwords, GoWithoutTlsWhereTheUserWishes) {
    Settings settings = withAccount();
    settings.address.tls = false;
    settings.server_password = u"door";
    settings.password_in_the_clear = true;
    Chat chat(settings);
    chat.connect();
    EXPECT_THAT(chat.sent(), ElementsAre("CAP LS 302", "PASS door", "NICK me", "USER me 0 * me"));
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "registering"));
    chat.server(":s.example CAP * LS :sasl");
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ sasl"));
}

TEST(Passwords, AreNeverTold) {
    Settings settings = withAccount();
    settings.server_password = u"opensesame";
    Chat chat(settings);
    offer(chat, "sasl");
    chat.server(":s.example NOTICE * :You sent PASS opensesame");
    chat.server(":s.example CAP me ACK :sasl");
    chat.server("AUTHENTICATE +");
    chat.server(":s.example 904 me :HUNTER2 is wrong");
    chat.session.start(chat.now);
    chat.session.connected(chat.now);
    chat.server("ERROR :no hunter2 here");
    chat.session.reconnectNow(chat.now);
    chat.session.lost(u"hunter2", chat.now);
    const std::vector<std::string> told = chat.told();
    EXPECT_THAT(told, Contains("told: You sent PASS …"));
    EXPECT_THAT(told, Contains(HasSubstr("password: … is wrong")));
    EXPECT_THAT(told, Contains(HasSubstr("no … here")));
    EXPECT_THAT(told, Each(Not(HasSubstr("hunter2"))));
}

TEST(Nicks, InUseAreReplaced) {
    Chat chat;
    chat.connect();
    chat.sent();
    for (int i = 0; i < 4; ++i) {
        chat.server(":s.example 433 * me :Nickname is already in use");
    }
    EXPECT_THAT(chat.sent(), ElementsAre("NICK me_", "NICK me__", "NICK me__100", "NICK me__10100"));
    chat.welcome("me_");
    EXPECT_THAT(chat.told(), Contains("online me_ irc.example.org"));
}

TEST(Nicks, AreNotTriedWithoutEnd) {
    Chat chat;
    chat.connect();
    for (int i = 0; i < most_nicks; ++i) {
        chat.server(":s.example 433 * me :Nickname is already in use");
    }
    EXPECT_EQ(chat.session.state(), State::waiting);
    EXPECT_THAT(chat.told(), Contains(HasSubstr("nick is in use")));
}

TEST(Nicks, ThatNoServerTakesAreRefused) {
    Chat chat;
    chat.connect();
    chat.server(":s.example 432 * 1x :Erroneous nickname");
    EXPECT_EQ(chat.session.state(), State::refused);
    Settings settings = ircSettings();
    for (const std::u16string nick : {u"", u"a b", u":a"}) {
        settings.nick = nick;
        Chat odd(settings);
        odd.connect();
        EXPECT_EQ(odd.session.state(), State::refused);
        EXPECT_THAT(odd.sent(), IsEmpty());
    }
}

TEST(Nicks, ThatTheUserTakesAreThoseOfTheNextConnection) {
    Chat chat;
    chat.enter();
    chat.session.nick(u"myself", chat.now);
    chat.server(":me!user@host NICK myself");
    chat.server(":myself!user@host NICK Guest1");
    chat.sent();
    chat.session.reconnectNow(chat.now);
    chat.session.connected(chat.now);
    EXPECT_THAT(chat.sent(), Contains("NICK myself"));
}

TEST(Nicks, ThatTheServerGivesAreNotThoseOfTheNextConnection) {
    Chat chat;
    chat.enter();
    chat.session.nick(u"ann", chat.now);
    chat.server(":s.example 433 me ann :Nickname is already in use");
    chat.server(":me!user@host NICK Guest1");
    chat.sent();
    chat.session.reconnectNow(chat.now);
    chat.session.connected(chat.now);
    EXPECT_THAT(chat.sent(), Contains("NICK me"));
}

TEST(Nicks, InUseWhileOnlineAreTold) {
    Chat chat;
    chat.enter();
    chat.session.nick(u"ann", chat.now);
    chat.server(":s.example 433 me ann :Nickname is already in use");
    EXPECT_THAT(chat.sent(), ElementsAre("NICK ann"));
    EXPECT_THAT(chat.told(), ElementsAre("told: ann: Nickname is already in use"));
}

TEST(Registration, AServerThatLetsNobodyInIsNotAskedAgain) {
    for (const char* number : {"464", "465"}) {
        Chat chat;
        chat.connect();
        chat.server(std::string(":s.example ") + number + " me :Go away");
        EXPECT_EQ(chat.session.state(), State::refused);
    }
}

TEST(Registration, AnUnusableCertificateIsNotTriedAgain) {
    Chat chat;
    chat.session.start(chat.now);
    chat.session.failed(u"The certificate is out of date.", chat.now);
    EXPECT_EQ(chat.session.state(), State::refused);
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "refused: The certificate is out of date."));
    chat.pass(1'000'000);
    EXPECT_EQ(chat.opened, 1);
}

TEST(KeepAlive, AnswersAtOnce) {
    Chat chat;
    chat.enter();
    chat.server("PING :a b");
    chat.server(":s.example PING token");
    EXPECT_THAT(chat.sent(), ElementsAre("PONG :a b", "PONG token"));
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(KeepAlive, AsksAfterSilenceAndGivesUp) {
    Chat chat;
    chat.enter();
    chat.pass(89'999);
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.pass(1);
    EXPECT_THAT(chat.sent(), ElementsAre("PING still-there"));
    chat.pass(59'999);
    EXPECT_EQ(chat.session.state(), State::online);
    chat.pass(1);
    EXPECT_EQ(chat.session.state(), State::waiting);
    EXPECT_EQ(chat.closed, 1);
    EXPECT_THAT(chat.sent(), IsEmpty());
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("lost: The server has become silent.")));
}

TEST(KeepAlive, AnyWordIsAnAnswer) {
    Chat chat;
    chat.enter();
    chat.pass(90'000);
    chat.sent();
    chat.pass(59'000);
    chat.server(":s.example PONG s.example :still-there");
    chat.pass(80'000);
    EXPECT_EQ(chat.session.state(), State::online);
    EXPECT_THAT(chat.sent(), IsEmpty());
}

TEST(Reconnecting, PausesGrow) {
    Chat chat;
    chat.session.start(chat.now);
    std::vector<long long> pauses;
    for (int i = 0; i < 10; ++i) {
        chat.session.lost(u"No way there.", chat.now);
        EXPECT_EQ(chat.session.state(), State::waiting);
        pauses.push_back(*chat.session.nextTick() - chat.now);
        chat.pass(pauses.back() - 1);
        EXPECT_EQ(chat.session.state(), State::waiting);
        chat.pass(1);
        EXPECT_EQ(chat.session.state(), State::connecting);
    }
    EXPECT_THAT(pauses, ElementsAre(2000, 4000, 8000, 16'000, 32'000, 64'000, 128'000, 256'000, 300'000, 300'000));
    EXPECT_EQ(chat.opened, 11);
}

TEST(Reconnecting, HasALittleChanceInIt) {
    Chat chat;
    chat.random = 250;
    chat.session.start(chat.now);
    chat.session.lost(u"", chat.now);
    EXPECT_EQ(*chat.session.nextTick() - chat.now, 2250);
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "lost:  again at 1002250"));
    chat.random = 0xFFFFFFFF;
    for (int i = 0; i < 20; ++i) {
        chat.session.reconnectNow(chat.now);
        chat.session.lost(u"", chat.now);
        EXPECT_LE(*chat.session.nextTick() - chat.now, 2500);
    }
}

TEST(Reconnecting, IsAtOnceWhereTheUserAsks) {
    Chat chat;
    chat.session.start(chat.now);
    for (int i = 0; i < 5; ++i) {
        chat.session.lost(u"", chat.now);
        chat.pass(*chat.session.nextTick() - chat.now);
    }
    chat.session.lost(u"", chat.now);
    chat.session.reconnectNow(chat.now);
    EXPECT_EQ(chat.session.state(), State::connecting);
    chat.session.lost(u"", chat.now);
    EXPECT_EQ(*chat.session.nextTick() - chat.now, 2000) << "and the pauses begin anew";
}

TEST(Reconnecting, AnAskingUserLeavesAConnectionThatIsThere) {
    Chat chat;
    chat.enter();
    chat.session.reconnectNow(chat.now);
    EXPECT_EQ(chat.closed, 1);
    EXPECT_EQ(chat.opened, 2);
    chat.session.received("PING :late\r\n", chat.now);
    EXPECT_THAT(chat.sent(), IsEmpty());
}

TEST(Reconnecting, ALastingConnectionBeginsWithTheShortestPause) {
    Chat chat;
    chat.session.start(chat.now);
    for (int i = 0; i < 4; ++i) {
        chat.session.lost(u"", chat.now);
        chat.pass(*chat.session.nextTick() - chat.now);
    }
    chat.session.connected(chat.now);
    chat.welcome();
    chat.session.lost(u"", chat.now);
    EXPECT_EQ(*chat.session.nextTick() - chat.now, 32'000) << "it has not lasted";
    chat.session.reconnectNow(chat.now);
    for (int i = 0; i < 4; ++i) {
        chat.session.lost(u"", chat.now);
        chat.pass(*chat.session.nextTick() - chat.now);
    }
    chat.session.connected(chat.now);
    chat.welcome();
    chat.pass(60'000);
    chat.session.lost(u"", chat.now);
    EXPECT_EQ(*chat.session.nextTick() - chat.now, 2000);
}

TEST(Reconnecting, JoinsTheSameChannelsAgain) {
    Chat chat;
    chat.enter();
    chat.session.join({u"#b", u"#c", u"#d", u"#e"}, chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #b,#c,#d,#e"));
    for (const char* channel : {"#b", "#c", "#d"}) {
        chat.server(std::string(":me!user@host JOIN ") + channel);
    }
    chat.session.part(u"#B", u"good night", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("PART #b :good night"));
    chat.server(":ann!u@h KICK #c me :out");
    chat.server(":s.example 474 me #e :Cannot join channel (+b)");
    chat.server(":me!user@host JOIN #forced");
    chat.session.lost(u"", chat.now);
    chat.pass(2000);
    chat.session.connected(chat.now);
    chat.sent();
    chat.welcome();
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #room,#d")) << "where the user wants to be, and may be";
}

TEST(Reconnecting, DoesNotJoinWhereTheServerHasPutOne) {
    Chat chat;
    chat.connect();
    chat.server(":s.example 001 me :Welcome back");
    chat.server(":me!user@host JOIN #room");
    chat.sent();
    chat.server(":s.example 376 me :End");
    EXPECT_THAT(chat.sent(), IsEmpty());
}

TEST(Reconnecting, ManyChannelsNeedSeveralLines) {
    Settings settings = ircSettings();
    settings.address.channels.clear();
    for (char16_t letter = u'a'; letter < u'm'; ++letter) {
        settings.address.channels.push_back(u"#" + std::u16string(100, letter));
    }
    Chat chat(settings);
    chat.connect();
    chat.sent();
    chat.welcome();
    chat.pass(10'000);
    std::size_t channels = 0;
    for (const std::string& line : chat.sent()) {
        EXPECT_LE(line.size(), 510U);
        EXPECT_THAT(line, StartsWith("JOIN #"));
        channels += static_cast<std::size_t>(std::count(line.begin(), line.end(), '#'));
    }
    EXPECT_EQ(channels, 12U);
}

TEST(Sending, IsTold) {
    Chat chat;
    chat.enter();
    chat.session.say(u"#room", u"hello all", chat.now);
    chat.session.act(u"#room", u"waves", chat.now);
    chat.session.say(u"Ann", u"psst", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room :hello all",
                                         "PRIVMSG #room :\x01"
                                         "ACTION waves\x01",
                                         "PRIVMSG ann psst"));
    EXPECT_THAT(chat.told(), ElementsAre("#room me says: hello all [own]", "#room me acts: waves [own]",
                                         "with ann me says: psst [own]"));
}

TEST(Sending, IsToldByTheServerWhereItDoesSo) {
    Chat chat;
    offer(chat, "echo-message");
    chat.server(":s.example CAP me ACK :echo-message");
    chat.welcome();
    chat.server(":me!user@host JOIN #room");
    chat.sent();
    chat.told();
    chat.session.say(u"#room", u"hello", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room hello"));
    EXPECT_THAT(chat.told(), IsEmpty());
    chat.server(":me!user@host PRIVMSG #room :hello");
    chat.server(":me!user@host PRIVMSG ann :psst");
    EXPECT_THAT(chat.told(), ElementsAre("#room me says: hello [own]", "with ann me says: psst [own]"));
}

TEST(Sending, HasItsPace) {
    Chat chat;
    chat.enter();
    for (int i = 1; i <= 8; ++i) {
        chat.session.say(u"#room", murmelix::toText(i), chat.now);
    }
    EXPECT_THAT(chat.sent(), SizeIs(5));
    EXPECT_THAT(chat.told(), SizeIs(5)) << "what waits is not said yet";
    EXPECT_EQ(*chat.session.nextTick() - chat.now, 500);
    chat.pass(499);
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.pass(1);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room 6"));
    chat.pass(500);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room 7"));
    chat.server("PING :x");
    EXPECT_THAT(chat.sent(), ElementsAre("PONG x")) << "answers do not wait";
    chat.pass(500);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room 8"));
    chat.pass(2500);
    for (int i = 1; i <= 8; ++i) {
        chat.session.say(u"#room", u"x", chat.now);
    }
    EXPECT_THAT(chat.sent(), SizeIs(5)) << "the burst is there again";
}

TEST(Sending, WithoutEndIsRefused) {
    Chat chat;
    chat.enter();
    std::u16string lines;
    for (std::size_t i = 0; i <= most_unsent; ++i) {
        lines += u"line\n";
    }
    chat.session.say(u"#room", lines, chat.now);
    EXPECT_THAT(chat.sent(), IsEmpty()) << "all or nothing";
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("told #room: Not sent: these are too many lines")));
    for (int i = 0; i < 200; ++i) {
        chat.session.nick(u"other", chat.now);
    }
    EXPECT_THAT(chat.told(), Contains(HasSubstr("too many lines wait")));
}

TEST(Sending, WhatWaitedIsToldWhenTheConnectionEnds) {
    Chat chat;
    chat.enter();
    for (int i = 1; i <= 8; ++i) {
        chat.session.say(u"#room", u"x", chat.now);
    }
    chat.told();
    chat.session.lost(u"Gone.", chat.now);
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("told: 3 lines were not sent"), HasSubstr("lost: Gone.")));
}

TEST(Sending, CutsLongLinesSoThatOthersReceiveThemWhole) {
    Chat chat;
    chat.enter();
    std::u16string text;
    for (int i = 0; i < 300; ++i) {
        text += u"wörd ";
    }
    chat.session.say(u"#room", text, chat.now);
    chat.session.act(u"#room", text, chat.now);
    chat.pass(60'000);
    const std::vector<std::string> lines = chat.sent();
    EXPECT_THAT(lines, SizeIs(8)) << "as few as can be, of either";
    std::string said;
    for (const std::string& line : lines) {
        EXPECT_LE((":me!user@host " + line + "\r\n").size(), 512U);
        if (line.find('\x01') == std::string::npos) {
            said += line.substr(std::string("PRIVMSG #room :").size()) + " ";
        } else {
            EXPECT_TRUE(line.ends_with('\x01'));
        }
    }
    EXPECT_EQ(murmelix::trim(murmelix::fromUtf8(said)), murmelix::trim(text));
}

TEST(Sending, NeedsAConnection) {
    Chat chat;
    chat.session.say(u"#room", u"hello", chat.now);
    chat.connect();
    chat.session.say(u"#room", u"hello", chat.now);
    EXPECT_THAT(chat.sent(), Not(Contains(HasSubstr("hello"))));
    EXPECT_THAT(chat.told(), Contains("told #room: Not sent: there is no connection at the moment."));
}

TEST(Sending, NeverMakesTwoLinesOfOne) {
    Chat chat;
    chat.enter();
    chat.session.say(u"#room", u"hi\r\nQUIT\n\n/me", chat.now);
    chat.session.quote(u"TOPIC #room :x\r\nQUIT", chat.now);
    chat.session.part(u"#room", u"a\nQUIT", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("PRIVMSG #room hi", "PRIVMSG #room QUIT", "PRIVMSG #room /me",
                                         "TOPIC #room :xQUIT", "PART #room a"));
    chat.told();
    chat.pass(500);
    chat.session.say(u"a b", u"hi", chat.now);
    chat.session.say(u"", u"hi", chat.now);
    chat.session.nick(u"a b\r\n", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("NICK :a b")) << "which the server refuses";
    EXPECT_THAT(chat.told(), Each(HasSubstr("makes no line")));
}

TEST(Deeds, AreLines) {
    Chat chat;
    chat.enter();
    chat.session.nick(u"other", chat.now);
    chat.session.away(u"at lunch", chat.now);
    chat.session.away(u"", chat.now);
    chat.session.quote(u"WHOIS ann", chat.now);
    chat.session.part(u"#room", u"", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("NICK other", "AWAY :at lunch", "AWAY", "WHOIS ann", "PART #room"));
}

TEST(Deeds, JoiningIsRefusedWhereItCannotBe) {
    Chat chat;
    chat.enter();
    chat.session.join({u"room", u"#a b", u"#a,0", u"#ROOM", u"#" + std::u16string(150, u'ü')}, chat.now);
    EXPECT_THAT(chat.sent(), IsEmpty());
    EXPECT_THAT(chat.told(), SizeIs(4));
    std::vector<std::u16string> many;
    for (int i = 0; i < 200; ++i) {
        many.push_back(u"#c" + murmelix::toText(i));
    }
    chat.session.join(many, chat.now);
    EXPECT_THAT(chat.told(), Contains(HasSubstr("more channels than")).Times(101));
}

TEST(Quitting, SaysSo) {
    Chat chat;
    chat.enter();
    chat.session.quit(u"good night", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("QUIT :good night"));
    EXPECT_EQ(chat.closed, 1);
    EXPECT_EQ(chat.session.state(), State::idle);
    EXPECT_EQ(chat.session.nextTick(), std::nullopt);
    EXPECT_THAT(chat.told(), ElementsAre("ended"));
    chat.session.lost(u"late", chat.now);
    chat.session.received("PING :late\r\n", chat.now);
    EXPECT_THAT(chat.told(), IsEmpty());
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.session.start(chat.now);
    EXPECT_EQ(chat.session.state(), State::connecting);
}

TEST(Sending, OneLineThatWaitedIsOne) {
    Chat chat;
    chat.enter();
    for (int i = 1; i <= 6; ++i) {
        chat.session.say(u"#room", u"x", chat.now);
    }
    chat.told();
    chat.session.lost(u"Gone.", chat.now);
    EXPECT_THAT(chat.told(), Contains("told: One line was not sent: the connection ended before."));
}

TEST(Registration, NeedsAWelcomeEachTime) {
    Chat chat;
    chat.enter();
    chat.session.reconnectNow(chat.now);
    chat.session.connected(chat.now);
    chat.server(":s.example 376 me :End");
    EXPECT_EQ(chat.session.state(), State::registering);
}

TEST(Errors, OfTheServerEndTheConnection) {
    Chat chat;
    chat.enter();
    chat.server("ERROR :Closing Link: \x02shutdown");
    EXPECT_EQ(chat.session.state(), State::waiting);
    EXPECT_EQ(chat.closed, 1);
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("ended the connection: Closing Link: shutdown")));
    chat.session.lost(u"Closed.", chat.now);
    EXPECT_THAT(chat.told(), IsEmpty()) << "it is told once";
}

TEST(Reconnecting, WhatTheOldConnectionSaidIsNotTheNewOnes) {
    Chat chat;
    chat.enter();
    chat.connect_at_once = true;
    chat.on_event = [&](const Event& event) {
        if (std::holds_alternative<event::Said>(event)) {
            chat.session.reconnectNow(chat.now);
        }
    };
    const std::string rest(100'000, '\n');
    chat.session.received(":ann!u@h PRIVMSG #room :hello\r\nPING :a\r\n" + rest + "PING :b\r\nPI", chat.now);
    EXPECT_EQ(chat.session.state(), State::registering);
    chat.session.received("NG :c\r\nPING :d\r\n", chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me", "PONG d"));
}

TEST(Listeners, AreToldOneAfterTheOther) {
    Chat chat;
    chat.enter();
    int depth = 0;
    chat.on_event = [&](const Event&) {
        EXPECT_EQ(depth++, 0);
        if (chat.events.size() < 5) {
            chat.session.act(u"#room", u"waves", chat.now);
        }
        --depth;
    };
    chat.server(":ann!u@h PRIVMSG #room :hello");
    EXPECT_EQ(chat.events.size(), 5U);
}

TEST(Listeners, MayDoAnything) {
    const std::vector<std::function<void(Chat&)>> deeds{
        [](Chat& chat) { chat.session.quit(u"", chat.now); },
        [](Chat& chat) { chat.session.reconnectNow(chat.now); },
        [](Chat& chat) { chat.session.lost(u"", chat.now); },
        [](Chat& chat) { chat.session.say(u"#room", u"hello", chat.now); },
        [](Chat& chat) { chat.session.part(u"#room", u"", chat.now); },
    };
    for (const auto& deed : deeds) {
        for (std::size_t when = 0; when < 9; ++when) {
            Chat chat;
            std::size_t told = 0;
            chat.on_event = [&](const Event&) {
                if (told++ == when) {
                    deed(chat);
                }
            };
            chat.connect();
            chat.welcome();
            chat.server(":me!user@host JOIN #room\r\n:s 353 me = #room :me @ann bob\r\n:s 366 me #room :End");
            chat.server(":ann!u@h PRIVMSG #room :hello\r\n:ann!u@h NICK anna\r\n:anna!u@h QUIT :x\r\nERROR :bye");
            EXPECT_GT(told, when);
        }
    }
}

} // namespace

} // namespace messenger_client::irc
