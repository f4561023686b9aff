#include "platform/connection.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/support/process.h"

namespace murmelix::platform {

namespace {

using test::pumpUntil;
using testing::HasSubstr;

std::uint16_t portOf(const std::string& server) {
    const char* port = std::getenv(("MURMELIX_SERVER_" + server).c_str());
    return static_cast<std::uint16_t>(port ? std::atoi(port) : 0);
}

// One connection, and all that was told of it.
struct Line {
    std::vector<std::string> told;
    std::string text;
    std::optional<ConnectionEnd> end;
    bool takes = true;
    std::unique_ptr<Connection> connection;

    explicit Line(ConnectionTarget target) { connection = std::make_unique<Connection>(std::move(target), events()); }
    Line(const std::string& server, bool tls, unsigned milliseconds = longest_opening)
        : Line(ConnectionTarget{u"127.0.0.1", portOf(server), tls, milliseconds}) {}

    ConnectionEvents events() {
        return {[this] { told.emplace_back("opened"); },
                [this] {
                    told.emplace_back("arrived");
                    if (takes) {
                        text += connection->take();
                    }
                },
                [this](const ConnectionEnd& how) {
                    told.emplace_back("closed");
                    end = how;
                },
                [this](const ConnectionEnd& how) {
                    told.emplace_back("failed");
                    end = how;
                }};
    }
    bool isOpen() const { return !told.empty() && told.front() == "opened"; }
    std::string why() const { return end ? toUtf8(end->why) : std::string(); }
};

ConnectionEnd endOf(const std::string& server, bool tls = true, unsigned milliseconds = longest_opening) {
    Line line(server, tls, milliseconds);
    EXPECT_TRUE(pumpUntil([&] { return line.end || line.isOpen(); })) << server;
    EXPECT_EQ(line.told, std::vector<std::string>{"failed"})
        << server << toUtf8(line.end.value_or(ConnectionEnd{}).why);
    return line.end.value_or(ConnectionEnd{});
}

std::string sentence(const ConnectionEnd& end) {
    return toUtf8(end.why);
}

// What a server sends that floods: each line begins with its place. The number of bytes, where all of them are right.
std::size_t wellNumbered(const std::string& text) {
    std::size_t place = 0;
    while (place < text.size()) {
        const std::size_t end = text.find("\r\n", place);
        if (end == std::string::npos || std::stoul(text.substr(place, 8)) != place) {
            return 0;
        }
        place = end + 2;
    }
    return place;
}
constexpr std::size_t flood = 24 * 1024 * 1024;

std::string manyBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 31 + i / 251);
    }
    return bytes;
}

class Connections : public testing::TestWithParam<bool> {};

} // namespace

INSTANTIATE_TEST_SUITE_P(Plain, Connections, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Tls, Connections, testing::Values(true));

TEST_P(Connections, CarryBytesBothWays) {
    Line line(GetParam() ? "GOOD" : "PLAIN", GetParam());
    EXPECT_TRUE(line.told.empty());
    EXPECT_FALSE(line.connection->send("too early"));
    ASSERT_TRUE(pumpUntil([&] { return !line.told.empty(); }));
    ASSERT_EQ(line.told, std::vector<std::string>{"opened"}) << line.why();
    EXPECT_TRUE(line.connection->send("PING x\r\n"));
    ASSERT_TRUE(pumpUntil([&] { return line.text.size() >= 8 || line.end; }));
    EXPECT_EQ(line.text, "PING x\r\n") << line.why();
    // More than a record, and than what the system takes at once.
    const std::string much = manyBytes(600'000);
    line.text.clear();
    EXPECT_TRUE(line.connection->send(much));
    ASSERT_TRUE(pumpUntil([&] { return line.text.size() >= much.size() || line.end; }));
    EXPECT_TRUE(line.text == much) << line.why();
}

TEST_P(Connections, TellTheEndAfterTheLastBytes) {
    Line line(GetParam() ? "LEAVES" : "PLAIN_LEAVES", GetParam());
    line.takes = false;
    ASSERT_TRUE(pumpUntil([&] { return line.told.size() == 2; }));
    // What waits is taken first, however long that takes.
    EXPECT_EQ(line.told, (std::vector<std::string>{"opened", "arrived"})) << line.why();
    while (line.told.size() == 2) {
        line.text += line.connection->take();
        line.takes = true;
        ASSERT_TRUE(pumpUntil([&] { return line.told.size() > 2; }));
    }
    ASSERT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
    EXPECT_EQ(line.text, "one\r\ntwo\r\n");
    EXPECT_EQ(line.told.back(), "closed");
    EXPECT_EQ(line.end->fault, ConnectionFault::none);
    EXPECT_EQ(line.why(), "127.0.0.1 has closed the connection.");
    EXPECT_FALSE(line.connection->send("too late"));
}

// A server that sends faster than is taken has to wait, and nothing is lost.
TEST_P(Connections, ReceiveNoMoreThanIsTaken) {
    Line line(GetParam() ? "FLOOD" : "PLAIN_FLOOD", GetParam());
    line.takes = false;
    ASSERT_TRUE(pumpUntil([&] { return line.told.size() == 2; }));
    // Windows gives the thread its turn: what could still be told would be told now.
    for (int turn = 0; turn < 20; ++turn) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        EXPECT_TRUE(pumpUntil([] { return true; }));
    }
    EXPECT_EQ(line.told, (std::vector<std::string>{"opened", "arrived"})) << line.why();
    line.text += line.connection->take();
    EXPECT_LE(line.text.size(), most_untaken);
    std::size_t most = 0;
    while (!line.end) {
        const std::size_t before = line.told.size();
        ASSERT_TRUE(pumpUntil([&] { return line.told.size() > before; }));
        const std::string bytes = line.connection->take();
        most = std::max(most, bytes.size());
        line.text += bytes;
    }
    EXPECT_LE(most, most_untaken);
    EXPECT_EQ(line.end->fault, ConnectionFault::none) << line.why();
    EXPECT_GE(line.text.size(), flood);
    EXPECT_EQ(wellNumbered(line.text), line.text.size());
}

// However much comes, timers of the thread come as well.
TEST_P(Connections, LeaveTheThreadTimeForOthers) {
    Line line(GetParam() ? "FLOOD" : "PLAIN_FLOOD", GetParam());
    static int ticks;
    ticks = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) { ++ticks; });
    std::size_t told_between = 0, most_between = 0;
    int seen = 0;
    // One message at a time, as a program's loop takes them.
    MSG message;
    while (!line.end && GetMessageW(&message, nullptr, 0, 0)) {
        const std::size_t before = line.told.size();
        DispatchMessageW(&message);
        told_between += line.told.size() - before;
        if (ticks != seen) {
            seen = ticks;
            most_between = std::max(most_between, told_between);
            told_between = 0;
        }
    }
    KillTimer(nullptr, timer);
    EXPECT_GT(ticks, 1);
    EXPECT_EQ(line.end->fault, ConnectionFault::none) << line.why();
    // A fraction of the blocks of the flood.
    EXPECT_LT(most_between, flood / most_untaken / 2);
}

TEST_P(Connections, RefuseToKeepMoreThanTheyMay) {
    // A server that takes nothing: what the system and the connection hold is bounded.
    Line line(GetParam() ? "TAKES_NOTHING" : "SILENT", GetParam());
    ASSERT_TRUE(pumpUntil([&] { return !line.told.empty(); }));
    ASSERT_EQ(line.told.front(), "opened") << line.why();
    if (!GetParam()) {
        EXPECT_FALSE(line.connection->send(std::string(most_unsent + 1, 'x')));
        return; // that one takes everything
    }
    const std::string line_of_text(64 * 1024, 'x');
    std::size_t taken = 0;
    while (taken < 256 * most_unsent && line.connection->send(line_of_text)) {
        taken += line_of_text.size();
    }
    EXPECT_LT(taken, 256 * most_unsent);
    EXPECT_FALSE(line.end);
}

TEST_P(Connections, MayEndInEveryEvent) {
    const std::string server = GetParam() ? "LEAVES" : "PLAIN_LEAVES";
    for (const std::string at : {"opened", "arrived", "closed", "failed"}) {
        std::unique_ptr<Connection> connection;
        std::string last;
        const auto told = [&](const std::string& what) {
            last = what;
            if (what == at) {
                connection.reset();
            } else if (what == "arrived") {
                connection->take();
            }
        };
        const std::string to = at == "failed" ? "REFUSING" : server;
        connection = std::make_unique<Connection>(ConnectionTarget{u"127.0.0.1", portOf(to), GetParam()},
                                                  ConnectionEvents{[&] { told("opened"); }, [&] { told("arrived"); },
                                                                   [&](const ConnectionEnd&) { told("closed"); },
                                                                   [&](const ConnectionEnd&) { told("failed"); }});
        EXPECT_TRUE(pumpUntil([&] { return !connection; })) << at;
        // Nothing comes after the last one.
        for (int turn = 0; turn < 5; ++turn) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
            EXPECT_TRUE(pumpUntil([] { return true; }));
        }
        EXPECT_EQ(last, at);
    }
}

TEST_P(Connections, MayEndAtAnyTime) {
    // At each step of opening, after as many messages as have come by then.
    for (int messages = 0; messages < 40; ++messages) {
        Line line(GetParam() ? "GOOD" : "PLAIN", GetParam());
        for (int i = 0; i < messages && line.told.empty(); ++i) {
            MSG message;
            ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
            DispatchMessageW(&message);
        }
    }
}

TEST(ConnectionsThatFail, TellOfAServerThatIsNotThere) {
    const ConnectionEnd refused = endOf("REFUSING");
    EXPECT_EQ(refused.fault, ConnectionFault::refused) << sentence(refused);
    EXPECT_EQ(sentence(refused), "Nobody answers at port " + std::to_string(portOf("REFUSING")) + " of 127.0.0.1.");

    Line nobody(ConnectionTarget{u"no-such-server.invalid", 6697});
    ASSERT_TRUE(pumpUntil([&] { return nobody.end.has_value(); }));
    // A machine without a network cannot know.
    EXPECT_TRUE(nobody.end->fault == ConnectionFault::no_such_host ||
                nobody.end->fault == ConnectionFault::unreachable);
    EXPECT_THAT(nobody.why(), HasSubstr("no-such-server.invalid"));

    for (const std::u16string& name : {std::u16string(), std::u16string(u"a b"), std::u16string(5000, u'x'),
                                       std::u16string(u"\u202egro.elpmaxe"), std::u16string(u"..")}) {
        Line line(ConnectionTarget{name, 6697, true, 60'000});
        EXPECT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
        EXPECT_EQ(line.told, std::vector<std::string>{"failed"});
    }
}

TEST(ConnectionsThatFail, TellWhatIsWrongWithACertificate) {
    const ConnectionEnd expired = endOf("EXPIRED");
    EXPECT_EQ(expired.fault, ConnectionFault::certificate_out_of_date);
    EXPECT_THAT(sentence(expired),
                testing::StartsWith("The certificate of 127.0.0.1 is out of date: it was good until "));
    const ConnectionEnd early = endOf("EARLY");
    EXPECT_EQ(early.fault, ConnectionFault::certificate_out_of_date);
    EXPECT_THAT(sentence(early), HasSubstr("is not good yet: it begins to be on "));
    const ConnectionEnd other = endOf("OTHER_NAME");
    EXPECT_EQ(other.fault, ConnectionFault::certificate_for_other_name);
    EXPECT_EQ(sentence(other), "The certificate of 127.0.0.1 is for another name: irc.other.example.");
    const ConnectionEnd stranger = endOf("STRANGER");
    EXPECT_EQ(stranger.fault, ConnectionFault::certificate_of_unknown_issuer);
    EXPECT_EQ(sentence(stranger),
              "The certificate of 127.0.0.1 was issued by somebody whom this computer does not know: Nobody In "
              "Particular.");
    EXPECT_EQ(endOf("PRETENDER").fault, ConnectionFault::certificate_invalid);
    EXPECT_EQ(endOf("OF_A_CLIENT").fault, ConnectionFault::certificate_invalid);
    EXPECT_EQ(endOf("SELF_SIGNED").fault, ConnectionFault::certificate_of_unknown_issuer);
    EXPECT_EQ(endOf("DEPUTY_ALONE").fault, ConnectionFault::certificate_of_unknown_issuer);
}

TEST(ConnectionsThatFail, TellOfAnAlert) {
    const ConnectionEnd handshake = endOf("ALERT_HANDSHAKE");
    EXPECT_EQ(handshake.fault, ConnectionFault::alert);
    EXPECT_EQ(sentence(handshake),
              "127.0.0.1 refuses the encrypted connection: it accepts none of the ways of encrypting (40).");
    EXPECT_EQ(endOf("ALERT_NAME").fault, ConnectionFault::alert);
    const ConnectionEnd version = endOf("ALERT_VERSION");
    EXPECT_EQ(version.fault, ConnectionFault::no_agreement);
    EXPECT_EQ(sentence(version), "This computer and 127.0.0.1 could not agree on how to encrypt (TLS 1.2).");
}

TEST(ConnectionsThatFail, TellOfAServerThatSpeaksSomethingElse) {
    const ConnectionEnd text = endOf("PLAIN_TEXT");
    EXPECT_EQ(text.fault, ConnectionFault::not_tls);
    EXPECT_EQ(sentence(text), "127.0.0.1 does not speak TLS at port " + std::to_string(portOf("PLAIN_TEXT")) + ".");
    EXPECT_EQ(endOf("ENDLESS").fault, ConnectionFault::no_agreement);
}

TEST(ConnectionsThatFail, DoNotWaitForEver) {
    const ConnectionEnd end = endOf("SILENT", true, 300);
    EXPECT_EQ(end.fault, ConnectionFault::timed_out);
    EXPECT_EQ(sentence(end), "127.0.0.1 does not answer.");
}

TEST(ConnectionsThatFail, AreBrokenOffAfterAnyByte) {
    // The server's part of agreeing takes more bytes than the last of these and fewer than twice as many.
    for (int visit = 0; visit < 16; ++visit) {
        Line line("CUTS", true);
        ASSERT_TRUE(pumpUntil([&] { return line.end || line.isOpen(); })) << visit;
        if (line.isOpen()) {
            ASSERT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
            EXPECT_EQ(line.told.back(), "closed");
            EXPECT_GT(visit, 9);
        } else {
            EXPECT_EQ(line.end->fault, ConnectionFault::broken_off) << visit << line.why();
        }
    }
}

TEST(ConnectionsByTls, TakeACertificateOfADeputy) {
    Line line("DEPUTY", true);
    ASSERT_TRUE(pumpUntil([&] { return !line.told.empty(); }));
    EXPECT_EQ(line.told.front(), "opened") << line.why();
}

TEST(ConnectionsByTls, GoOnWithoutACertificateOfTheirOwn) {
    Line line("ASKS_FOR_CERTIFICATE", true);
    ASSERT_TRUE(pumpUntil([&] { return !line.told.empty(); }));
    ASSERT_EQ(line.told.front(), "opened") << line.why();
    EXPECT_TRUE(line.connection->send("hello\r\n"));
    ASSERT_TRUE(pumpUntil([&] { return !line.text.empty() || line.end; }));
    EXPECT_EQ(line.text, "hello\r\n");
}

TEST(ConnectionsByTls, TakeRecordsAsSmallAsLines) {
    Line line("SMALL_RECORDS", true);
    ASSERT_TRUE(pumpUntil([&] { return line.text.size() >= 5000 * 10 || line.end; })) << line.text.size();
    std::string expected;
    for (int number = 0; number < 5000; ++number) {
        const std::string digits = std::to_string(number);
        expected += std::string(8 - digits.size(), '0') + digits + "\r\n";
    }
    EXPECT_TRUE(line.text == expected) << line.text.size() << line.why();
}

TEST(ConnectionsByTls, TakeWhatComesWithTheEndOfAgreeing) {
    Line line("TURNS_AWAY", true);
    ASSERT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
    EXPECT_EQ(line.told, (std::vector<std::string>{"opened", "arrived", "closed"}));
    EXPECT_EQ(line.text, "ERROR :Closing Link: the server is full\r\n");
    EXPECT_EQ(line.end->fault, ConnectionFault::none) << line.why();
}

TEST(ConnectionsByTls, EndWithoutGoodbyeAsWell) {
    Line line("LEAVES_RUDELY", true);
    ASSERT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
    EXPECT_EQ(line.told.back(), "closed");
    EXPECT_EQ(line.text, "one\r\ntwo\r\n");
}

TEST(ConnectionsByTcp, TellTheEndOfOneThatIsBrokenOff) {
    Line line("PLAIN_RESETS", false);
    ASSERT_TRUE(pumpUntil([&] { return !line.text.empty(); }));
    EXPECT_TRUE(line.connection->send("x"));
    ASSERT_TRUE(pumpUntil([&] { return line.end.has_value(); }));
    EXPECT_EQ(line.told, (std::vector<std::string>{"opened", "arrived", "closed"}));
    // Wine does not always know how it ended.
    if (line.end->fault == ConnectionFault::broken_off) {
        EXPECT_THAT(line.why(), testing::StartsWith("The connection to 127.0.0.1 was broken off: "));
    } else {
        EXPECT_EQ(line.end->fault, ConnectionFault::none);
    }
}

} // namespace murmelix::platform
