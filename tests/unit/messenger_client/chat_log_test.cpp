#include "companions/messenger/chat/chat_log.h"

#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace messenger_client {

using Kind = LogEvent::Kind;

bool operator==(const LogEvent& a, const LogEvent& b) {
    return a.kind == b.kind && a.minute == b.minute && a.nick == b.nick && a.text == b.text;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string demo() {
    std::ifstream file(MURMELIX_SOURCE_DIR "/companions/messenger/demo/conversation.txt", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(ChatLog, EveryFormOfLine) {
    EXPECT_THAT(parseChatLog("[04:53] <ann> hello <all>\n"
                             "[04:54]  * bob waves\n"
                             "=== cy [~cy@host.example]  has joined #room\n"
                             "=== cy has joined #room\n"
                             "=== cy [~cy@host.example]  has left #room [\"bye\"]\n"
                             "=== cy has quit\n"
                             "=== cy [cy@host.example] has quit [reset]\n"
                             "=== cy was kicked off #room by ann (noise)\n"
                             "=== ann is now known as ann|away\n"),
                ElementsAre(LogEvent{Kind::says, 293, u"ann", u"hello <all>"},
                            LogEvent{Kind::acts, 294, u"bob", u"waves"}, LogEvent{Kind::joins, 294, u"cy", u""},
                            LogEvent{Kind::joins, 294, u"cy", u""}, LogEvent{Kind::leaves, 294, u"cy", u""},
                            LogEvent{Kind::leaves, 294, u"cy", u""}, LogEvent{Kind::leaves, 294, u"cy", u""},
                            LogEvent{Kind::leaves, 294, u"cy", u""},
                            LogEvent{Kind::renames, 294, u"ann", u"ann|away"}));
}

TEST(ChatLog, CrLfAndAMissingLastLineEndReadAlike) {
    const auto expected = ElementsAre(LogEvent{Kind::says, 0, u"a", u"x"}, LogEvent{Kind::says, 1, u"b", u"y"});
    EXPECT_THAT(parseChatLog("[00:00] <a> x\n[00:01] <b> y\n"), expected);
    EXPECT_THAT(parseChatLog("[00:00] <a> x\r\n[00:01] <b> y\r\n"), expected);
    EXPECT_THAT(parseChatLog("\xEF\xBB\xBF[00:00] <a> x\r\n[00:01] <b> y"), expected);
}

TEST(ChatLog, OtherLinesAreSkipped) {
    EXPECT_THAT(parseChatLog("\n\r\nhello\n[24:00] <a> x\n[12:60] <a> x\n[1:00] <a> x\n[12:00] a x\n[12:00] <a x\n"
                             "[12:00] <> x\n[12:00]<a> x\n===\n=== \n=== a\n=== a sighs\n=== a has left the building\n"
                             "=== a has joined in\n=== a is now known as \n=== a is now known as b c\n"
                             "=== [+o a] by b\n[12:00] * \n"),
                IsEmpty());
}

TEST(ChatLog, AnEmptyMessageIsAMessage) {
    EXPECT_THAT(parseChatLog("[00:05] <a> \n[00:05] <a>\n[00:05]  * a\n"),
                ElementsAre(LogEvent{Kind::says, 5, u"a", u""}, LogEvent{Kind::says, 5, u"a", u""},
                            LogEvent{Kind::acts, 5, u"a", u""}));
}

TEST(ChatLog, TimePassesMidnight) {
    const auto log = parseChatLog("[23:59] <a> 1\n[00:01] <a> 2\n[23:00] <a> 3\n[00:00] <a> 4\n");
    ASSERT_THAT(log, SizeIs(4));
    EXPECT_EQ(log[0].minute, 23 * 60 + 59);
    EXPECT_EQ(log[1].minute, 24 * 60 + 1);
    EXPECT_EQ(log[2].minute, 24 * 60 + 23 * 60);
    EXPECT_EQ(log[3].minute, 48 * 60);
}

TEST(ChatLog, TimePassesMidnightForThousandsOfYears) {
    LogClock clock;
    long long now = clock.pass(13 * 60);
    constexpr long long days = 2'000'000; // more minutes than 31 bits can count
    for (long long day = 1; day <= days; ++day) {
        clock.pass(59);
        now = clock.pass(13 * 60);
    }
    EXPECT_EQ(now, days * 24 * 60 + 13 * 60);
}

TEST(ChatLog, AClockSetBackStandsStill) {
    const auto log = parseChatLog("[12:10] <a> 1\n[12:05] <a> 2\n[12:11] <a> 3\n");
    ASSERT_THAT(log, SizeIs(3));
    EXPECT_EQ(log[1].minute, 12 * 60 + 10);
    EXPECT_EQ(log[2].minute, 12 * 60 + 11);
}

TEST(ChatLog, WhatComesBeforeTheFirstTimeHappensThen) {
    const auto log = parseChatLog("=== a has joined #r\n=== b has joined #r\n[10:00] <a> 1\n");
    ASSERT_THAT(log, SizeIs(3));
    EXPECT_EQ(log[0].minute, 600);
    EXPECT_EQ(log[1].minute, 600);
    EXPECT_EQ(parseChatLog("=== a has joined #r\n").at(0).minute, 0);
}

TEST(ChatLog, DamagedBytesStandAsReplacementCharacters) {
    EXPECT_THAT(parseChatLog("[00:00] <a\xFF> caf\xE9 \xE2\x82\n[00:00] <\xC3\xA4> \xF0\x9F\x98\x80\n"),
                ElementsAre(LogEvent{Kind::says, 0, u"a\xFFFD", u"caf\xFFFD \xFFFD\xFFFD"},
                            LogEvent{Kind::says, 0, u"\xE4", u"\xD83D\xDE00"}));
    const std::string with_nul("[00:00] <a> x\0y\n", 16);
    EXPECT_EQ(parseChatLog(with_nul).at(0).text, std::u16string(u"x\0y", 3));
}

TEST(ChatLog, VeryLongLinesAndNames) {
    const std::string name(10'000, 'n');
    const std::string text(1'000'000, 't');
    const auto log = parseChatLog("[00:00] <" + name + "> " + text + "\n=== " + name + " has quit\n" + text);
    ASSERT_THAT(log, SizeIs(2));
    EXPECT_EQ(log[0].nick.size(), 10'000U);
    EXPECT_EQ(log[0].text.size(), 1'000'000U);
}

TEST(ChatLog, CutAtEveryLength) {
    const std::string bytes = demo();
    ASSERT_GT(bytes.size(), 1000U);
    const auto whole = parseChatLog(bytes);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto part = parseChatLog(std::string_view(bytes).substr(0, length));
        ASSERT_LE(part.size(), whole.size());
        // Only the last line can be another one than in the whole.
        for (std::size_t i = 0; i + 1 < part.size(); ++i) {
            ASSERT_EQ(part[i].text, whole[i].text) << "cut at " << length;
        }
    }
}

TEST(ChatLog, EveryByteDamagedInTurn) {
    const std::string bytes = demo();
    const std::size_t events = parseChatLog(bytes).size();
    for (const char damage : {'\0', '\xFF', '\n', '[', '='}) {
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            std::string damaged = bytes;
            damaged[at] = damage;
            ASSERT_LE(parseChatLog(damaged).size(), events + 1) << "byte " << at;
        }
    }
}

TEST(ChatLog, TheDemoConversationIsRead) {
    const auto log = parseChatLog(demo());
    EXPECT_THAT(log, SizeIs(26));
    EXPECT_EQ(log.front().nick, u"hazel");
}

} // namespace

} // namespace messenger_client
