#include "companions/messenger/live/log_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace messenger_client {

namespace {

using testing::EndsWith;
using testing::MatchesRegex;

LiveLine line(LiveLine::Kind kind, std::u16string writer, std::u16string text) {
    LiveLine made;
    made.kind = kind;
    made.writer = std::move(writer);
    made.text = std::move(text);
    made.time = 1'764'000'000'000;
    return made;
}

TEST(LogFile, LinesTellWhenAndWho) {
    EXPECT_THAT(logLine(line(LiveLine::Kind::message, u"ann",
                             u"gr\xFC\xDF"
                             u"e")),
                MatchesRegex("2025-11-2[345] [0-9][0-9]:[0-9][0-9]:[0-9][0-9] <ann> gr\xC3\xBC\xC3\x9F"
                             "e"));
    EXPECT_THAT(logLine(line(LiveLine::Kind::action, u"ann", u"waves")), EndsWith(" * ann waves"));
    EXPECT_THAT(logLine(line(LiveLine::Kind::notice, u"", u"Connected again.")), EndsWith(" Connected again."));
}

TEST(LogFile, NamesAreSuchAsEveryFileSystemTakes) {
    EXPECT_EQ(logFileName(u"#room"), u"#room.txt");
    EXPECT_EQ(logFileName(u"a\\b:c*?\"<>|\n d.e"), u"a_b_c________d_e.txt");
    EXPECT_EQ(logFileName(u"../x"), u"___x.txt");
    EXPECT_EQ(logFileName(std::u16string(500, u'a')).size(), 64u);
}

struct Logs : testing::Test {
    std::filesystem::path file = std::filesystem::temp_directory_path() / ("murmelix-log-" + std::to_string(getpid()));
    LiveTalk talk{u"#room", true, {}, 3};
    ~Logs() override { std::filesystem::remove(file); }
    std::string written() const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

TEST_F(Logs, EveryLineIsAddedAtOnce) {
    std::ofstream(file, std::ios::binary) << "before\r\n";
    ASSERT_EQ(keepLog(talk, file), u"");
    talk.log(line(LiveLine::Kind::message, u"ann", u"one"));
    EXPECT_THAT(written(), MatchesRegex("before\r\n2025-.* <ann> one\r\n"));
    talk.log(line(LiveLine::Kind::message, u"ann", u"two"));
    EXPECT_THAT(written(), EndsWith(" <ann> two\r\n"));
}

TEST_F(Logs, AFileThatCannotBeWrittenIsToldAndTheOldOneStays) {
    ASSERT_EQ(keepLog(talk, file), u"");
    EXPECT_EQ(keepLog(talk, file / "below" / "a file"), u"The file cannot be written.");
    EXPECT_EQ(keepLog(talk, {}), u"The file cannot be written.");
    talk.log(line(LiveLine::Kind::message, u"ann", u"still here"));
    EXPECT_THAT(written(), EndsWith(" <ann> still here\r\n"));
}

} // namespace

} // namespace messenger_client
