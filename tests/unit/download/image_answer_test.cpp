#include "download/image_answer.h"

#include <gmock/gmock.h>

#include "tests/fakes/fakes.h"

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string header = "HTTP/1.0 200 OK\r\nServer: x\r\nContent-Length: 8\r\nContent-Type: image/gif\r\n\r\n";

class ImageAnswerTest : public testing::Test {
  protected:
    ImageAnswerTest() { fakes::reset(); }

    // The percentages that are told of an answer in these pieces.
    std::vector<int> told(std::initializer_list<std::string_view> pieces) {
        answer = {};
        std::vector<int> percents;
        for (const auto piece : pieces) {
            if (const auto percent = answer.take(piece)) {
                percents.push_back(*percent);
            }
        }
        return percents;
    }

    ImageAnswer answer;
};

TEST_F(ImageAnswerTest, PercentsAreToldFromThePacketAfterTheHeaderOn) {
    EXPECT_THAT(told({header + "ab", "cd", "e", "fgh"}), ElementsAre(50, 62, 100));
    EXPECT_TRUE(answer.found());
    EXPECT_EQ(answer.body(), "abcdefgh");
}

TEST_F(ImageAnswerTest, AnySplitGivesTheSameFile) {
    const std::string body("GIF89a\0\r\n\r\n\xFF\x1A", 13);
    const std::string all = header + body;
    for (std::size_t first = 0; first <= all.size(); ++first) {
        for (std::size_t second = first; second <= all.size(); ++second) {
            ImageAnswer split;
            split.take(std::string_view(all).substr(0, first));
            split.take(std::string_view(all).substr(first, second - first));
            split.take(std::string_view(all).substr(second));
            ASSERT_TRUE(split.found()) << first << " " << second;
            ASSERT_EQ(split.body(), body) << first << " " << second;
        }
    }
    ImageAnswer bytewise;
    for (const char byte : all) {
        bytewise.take({&byte, 1});
    }
    EXPECT_EQ(bytewise.body(), body);
}

TEST_F(ImageAnswerTest, StatusLineAloneIsNotFound) {
    answer.take("HTTP/1.0 200 OK\r\n\r\nGIF");
    EXPECT_TRUE(answer.hasHeader());
    EXPECT_FALSE(answer.found());
}

TEST_F(ImageAnswerTest, OtherStatusIsNotFoundWhateverComesBehind) {
    for (const std::string_view status :
         {"HTTP/1.0 404 Not Found\r\nA: b\r\n\r\n", "HTTP/1.0 302 Found\r\nA: b\r\n\r\n",
          "HTTP/1.0 200 ok\r\nA: b\r\n\r\n", "\r\n\r\n", "HTTP/1.0 200 OK \r\nA: b\r\n\r\n"}) {
        ImageAnswer other;
        EXPECT_EQ(other.take(status), std::nullopt);
        EXPECT_EQ(other.take("HTTP/1.0 200 OK\r\nA: b\r\n\r\n"), std::nullopt);
        EXPECT_TRUE(other.hasHeader());
        EXPECT_FALSE(other.found()) << status;
    }
}

TEST_F(ImageAnswerTest, WithoutALengthEachByteIsAHundredPercent) {
    EXPECT_THAT(told({"HTTP/1.0 200 OK\r\nA: b\r\n\r\n", "x", "yz"}), ElementsAre(100, 300));
    EXPECT_THAT(told({"HTTP/1.0 200 OK\r\ncontent-length: 5\r\n\r\n", "x"}), ElementsAre(100)); // another spelling
}

TEST_F(ImageAnswerTest, LengthsAreReadAsNumbersWithBlanksSkipped) {
    const auto percentOf = [&](const std::string& length) {
        return told({"HTTP/1.0 200 OK\r\nContent-Length:" + length + "\r\n\r\n", "abc"});
    };
    EXPECT_THAT(percentOf("   12"), ElementsAre(25));
    EXPECT_THAT(percentOf("6 bytes"), ElementsAre(50));
    EXPECT_THAT(percentOf(""), IsEmpty());
    EXPECT_THAT(percentOf("many"), IsEmpty());
    EXPECT_THAT(percentOf("0"), IsEmpty());
    EXPECT_THAT(percentOf("1e-300"), ElementsAre(2147483647));
    EXPECT_THAT(percentOf("-3"), ElementsAre(-100));
    EXPECT_THAT(percentOf("1e400"), ElementsAre(0));
}

TEST_F(ImageAnswerTest, HalvesGoToTheEvenNeighbour) {
    EXPECT_THAT(told({"HTTP/1.0 200 OK\r\nContent-Length: 200\r\n\r\n", "a", "b", "c", "d", "e"}),
                ElementsAre(0, 1, 2, 2, 2));
}

TEST_F(ImageAnswerTest, LongerThanAnyPictureIsToldFromTheFirstByteTooMany) {
    answer.take("HTTP/1.0 200 OK\r\nA: b\r\n\r\n");
    const std::string megabyte(1024 * 1024, 'x');
    for (int i = 0; i < 16; ++i) {
        answer.take(megabyte);
    }
    EXPECT_FALSE(answer.tooLong());
    answer.take("x");
    EXPECT_TRUE(answer.tooLong());
}

TEST_F(ImageAnswerTest, HeaderWithoutAnEndIsTooLong) {
    for (int i = 0; i < 1024; ++i) {
        answer.take(std::string(64, 'h'));
    }
    EXPECT_FALSE(answer.tooLong());
    answer.take("h");
    EXPECT_TRUE(answer.tooLong());
    EXPECT_FALSE(answer.hasHeader());
    answer.take("\r\n\r\n");
    EXPECT_TRUE(answer.tooLong());
}

TEST(ImageRequest, IsFourLinesWithTheNameInLowerCase) {
    fakes::reset();
    EXPECT_EQ(imageRequest(u"Robby"), "GET /murmelix/download/charimgs/robby.gif HTTP/1.0\r\n"
                                      "Accept: */*\r\n"
                                      "Accept: image/gif\r\n"
                                      "\r\n");
    EXPECT_EQ(imageRequest(u"\u00C4nn"), "GET /murmelix/download/charimgs/\xE4nn.gif HTTP/1.0\r\n"
                                         "Accept: */*\r\nAccept: image/gif\r\n\r\n");
}

TEST(ImageRequest, NamesThatLeadElsewhereAreNoNames) {
    fakes::reset();
    for (const std::u16string_view name :
         {u"",     u".",        u"..",    u"..\\Robby", u"a/b",       u"C:x",    u"a\r\nHost: b",
          u"a\tb", u"a\u007Fb", u"who?",  u"a*",        u"\"a\"",     u"<a",     u"a>",
          u"a|b",  u"con",      u"NUL.x", u"Com1",      u"lpt9 .gif", u"\u4E2D", u"x\uFF0Fy"}) {
        EXPECT_FALSE(isFileName(name)) << std::string(name.begin(), name.end());
    }
    EXPECT_FALSE(isFileName(std::u16string(1, u'\0')));
    EXPECT_FALSE(isFileName(std::u16string(10'000, u'\x01')));
    EXPECT_FALSE(isFileName(std::u16string(252, u'a')));
    EXPECT_TRUE(isFileName(std::u16string(251, u'a')));
    for (const std::u16string_view name : {u"Robby", u"A b.c", u"...a", u"command", u"com", u"\u00C9lise"}) {
        EXPECT_TRUE(isFileName(name)) << std::string(name.begin(), name.end());
    }
}

} // namespace
} // namespace murmelix
