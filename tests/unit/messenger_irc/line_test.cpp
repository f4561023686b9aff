// Lines of the protocol.
#include "companions/messenger/irc/line.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace messenger_client::irc {

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(LineReader& reader) {
    std::vector<std::string> lines;
    while (auto line = reader.next()) {
        lines.push_back(*line);
    }
    return lines;
}

std::vector<std::string> linesOf(std::string_view bytes) {
    LineReader reader;
    reader.feed(bytes);
    return linesOf(reader);
}

std::vector<std::string> parametersOf(std::string_view line) {
    const Message message(line);
    return {message.parameters().begin(), message.parameters().end()};
}

TEST(LineReaderTest, EndsLinesAtLf) {
    EXPECT_THAT(linesOf("PING a\r\nPING b\n\r\n\nPING c\r\nPI"), ElementsAre("PING a", "PING b", "PING c"));
}

TEST(LineReaderTest, TakesLinesInAnyPortions) {
    const std::string bytes = "PING a\r\n:x PRIVMSG #y :hello\r\nPING b\n";
    for (std::size_t portion = 1; portion <= bytes.size(); ++portion) {
        LineReader reader;
        std::vector<std::string> lines;
        for (std::size_t at = 0; at < bytes.size(); at += portion) {
            reader.feed(std::string_view(bytes).substr(at, portion));
            for (const std::string& line : linesOf(reader)) {
                lines.push_back(line);
            }
        }
        EXPECT_THAT(lines, ElementsAre("PING a", ":x PRIVMSG #y :hello", "PING b")) << portion;
    }
}

TEST(LineReaderTest, ForgetsALineThatIsCleared) {
    LineReader reader;
    reader.feed("PING a\nPRIV");
    reader.clear();
    reader.feed("MSG\nPING b\n");
    EXPECT_THAT(linesOf(reader), ElementsAre("MSG", "PING b"));
}

TEST(LineReaderTest, LeavesACrInTheMiddleToTheText) {
    EXPECT_THAT(linesOf("A b\rC d\r\n"), ElementsAre("A b\rC d"));
}

TEST(LineReaderTest, TheLongestLineIsTaken) {
    const std::string line(longest_line, 'x');
    EXPECT_THAT(linesOf(line + "\r\n"), ElementsAre(line));
    EXPECT_THAT(linesOf(line + "x\r\nPING a\n"), ElementsAre("PING a"));
}

TEST(HostileLines, ALineWithoutEndIsNotKept) {
    LineReader reader;
    const std::string much(64 * 1024, 'x');
    for (int i = 0; i < 1000; ++i) {
        reader.feed(much);
        EXPECT_FALSE(reader.next());
        EXPECT_LE(reader.size(), longest_line + 1);
    }
    reader.feed("its end\r\nPING a\r\n");
    EXPECT_THAT(linesOf(reader), ElementsAre("PING a"));
}

TEST(MessageTest, HasItsParts) {
    const Message message("@time=now;+vendor/key=a :ann!user@host PRIVMSG #room :hello you");
    EXPECT_EQ(message.command(), "PRIVMSG");
    EXPECT_EQ(message.prefix().nick, "ann");
    EXPECT_EQ(message.prefix().user, "user");
    EXPECT_EQ(message.prefix().host, "host");
    EXPECT_FALSE(message.prefix().isServer());
    EXPECT_EQ(message.parameter(0), "#room");
    EXPECT_EQ(message.last(), "hello you");
    EXPECT_EQ(message.parameter(2), "");
    EXPECT_EQ(message.tag("time"), "now");
    EXPECT_EQ(message.tag("+vendor/key"), "a");
    EXPECT_TRUE(message.hasTag("time"));
    EXPECT_FALSE(message.hasTag("tim"));
}

TEST(MessageTest, PrefixesMayMissParts) {
    EXPECT_TRUE(Message(":irc.example.org 001 me").prefix().isServer());
    const Message without_user(":ann@host PING");
    EXPECT_EQ(without_user.prefix().nick, "ann");
    EXPECT_EQ(without_user.prefix().user, "");
    EXPECT_EQ(without_user.prefix().host, "host");
    EXPECT_EQ(Message(":ann JOIN #a").prefix().nick, "ann");
    EXPECT_EQ(Message("PING x").prefix().nick, "");
}

TEST(MessageTest, ParametersArePartedByBlanks) {
    EXPECT_THAT(parametersOf("A b  c :d e"), ElementsAre("b", "c", "d e"));
    EXPECT_THAT(parametersOf("A b :"), ElementsAre("b", ""));
    EXPECT_THAT(parametersOf("A  "), IsEmpty());
    EXPECT_THAT(parametersOf("A ::)"), ElementsAre(":)"));
    EXPECT_THAT(parametersOf("A b:c"), ElementsAre("b:c"));
}

TEST(MessageTest, TheFifteenthParameterTakesTheRest) {
    const auto parameters = parametersOf("A 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17");
    ASSERT_EQ(parameters.size(), most_parameters);
    EXPECT_EQ(parameters.back(), "15 16 17");
}

TEST(MessageTest, TagsAreUnescaped) {
    const Message message(R"(@a=\:\s\\\r\n;b=x\y\;c;d=;e=1;e=2 X)");
    EXPECT_EQ(message.tag("a"), "; \\\r\n");
    EXPECT_EQ(message.tag("b"), "xy") << "a backslash before nothing is dropped";
    EXPECT_TRUE(message.hasTag("c"));
    EXPECT_EQ(message.tag("c"), "");
    EXPECT_EQ(message.tag("d"), "");
    EXPECT_EQ(message.tag("e"), "2");
}

TEST(HostileLines, HavePartsAllTheSame) {
    for (const std::string_view line :
         {"", " ", "@", "@ ", ":", ": ", "@;;;=;= :! @", "@a=b", ":a", "@a :b", "   :x"}) {
        EXPECT_EQ(Message(line).parameters().size(), Message(line).parameter(0).empty() ? 0U : 1U) << line;
    }
    EXPECT_EQ(Message("@a=b :c D").command(), "D");
    EXPECT_EQ(Message("@a=b   :c   D   e").command(), "D");
    const Message odd(":!@ PRIVMSG");
    EXPECT_EQ(odd.prefix().nick, "");
    EXPECT_EQ(odd.prefix().user, "");
}

TEST(HostileLines, TagsOfEightKilobytesAreRead) {
    std::string tags;
    while (tags.size() < 8191 - 4) {
        tags += "a=b;";
    }
    const std::string tagged = "@first=1;" + tags + "last=1 PING x";
    const Message many(tagged);
    EXPECT_EQ(many.command(), "PING");
    EXPECT_TRUE(many.hasTag("first"));
    EXPECT_FALSE(many.hasTag("last")) << "more than most_tags";
    const std::string value(8000, '\\');
    const std::string line = "@a=" + value + " PING x";
    EXPECT_EQ(Message(line).tag("a"), std::string(4000, '\\'));
}

TEST(SentLines, AreFormatted) {
    EXPECT_EQ(formatLine({"PING", "x"}), "PING x\r\n");
    EXPECT_EQ(formatLine({"PRIVMSG", "#a", "hello you"}), "PRIVMSG #a :hello you\r\n");
    EXPECT_EQ(formatLine({"TOPIC", "#a", ""}), "TOPIC #a :\r\n");
    EXPECT_EQ(formatLine({"PRIVMSG", "#a", ":)"}), "PRIVMSG #a ::)\r\n");
}

TEST(SentLines, NeverHoldMoreThanOneLine) {
    EXPECT_EQ(formatLine({"PRIVMSG", "#a", "hi\r\nQUIT\0!"s}), "PRIVMSG #a hiQUIT!\r\n");
    EXPECT_EQ(formatRawLine("  PRIVMSG #a :hi\nQUIT"), "PRIVMSG #a :hiQUIT\r\n");
    EXPECT_EQ(formatLine({"PRIVMSG", "#a b", "hi"}), std::nullopt);
    EXPECT_EQ(formatLine({"PRIVMSG", "", "hi"}), std::nullopt);
    EXPECT_EQ(formatLine({"PRIVMSG", ":a", "hi"}), std::nullopt);
    EXPECT_EQ(formatLine({""}), std::nullopt);
    EXPECT_EQ(formatLine({"\n"}), std::nullopt);
    EXPECT_EQ(formatLine({"PRIVMSG", "\r", "hi"}), std::nullopt);
    EXPECT_EQ(formatRawLine("  "), std::nullopt);
    EXPECT_EQ(formatRawLine("\r"), std::nullopt);
}

TEST(SentLines, HaveAtMost512Bytes) {
    const std::string longest(longest_sent_line - 2 - 5, 'x');
    EXPECT_EQ(formatLine({"PING", longest}), "PING " + longest + "\r\n");
    EXPECT_EQ(formatLine({"PING", longest + "x"}), std::nullopt);
    EXPECT_EQ(formatRawLine("PING " + longest + "x"), std::nullopt);
}

} // namespace

} // namespace messenger_client::irc
