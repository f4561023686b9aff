#include "companions/updater/published.h"

#include <gmock/gmock.h>

#include "common/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace updater {
namespace {

using murmelix::toUtf8;

std::optional<Version> versionIn(std::string_view bytes) {
    const auto published = readPublished(bytes);
    return published ? std::optional(published->version) : std::nullopt;
}

// Of what is new, in UTF-8.
std::string newsIn(const std::string& lines) {
    const auto published = readPublished("1.0.0\n" + lines);
    return published ? toUtf8(published->news) : "refused";
}

TEST(Published, VersionsAreOrderedByTheirNumbers) {
    EXPECT_LT(versionIn("1.0.9"), versionIn("1.0.10"));
    EXPECT_LT(versionIn("1.9.0"), versionIn("1.10.0"));
    EXPECT_LT(versionIn("9.0.0"), versionIn("10.0.0"));
    EXPECT_LT(versionIn("1.65535.65535"), versionIn("2.0.0"));
    EXPECT_EQ(versionIn("1.0.10"), (Version{1, 0, 10}));
    EXPECT_EQ(versionText({1, 0, 10}), u"1.0.10");
}

TEST(Published, FirstLineIsTheVersionAndNothingElse) {
    for (const char* file : {"1.2.3", "1.2.3\n", "1.2.3\r\n", "1.2.3 \t \r\nnews",
                             "\xEF\xBB\xBF"
                             "1.2.3\n",
                             "01.00002.003"}) {
        EXPECT_EQ(versionIn(file), (Version{1, 2, 3})) << file;
    }
    EXPECT_EQ(versionIn("0.0.0"), (Version{0, 0, 0}));
    EXPECT_EQ(versionIn("65535.65535.65535"), (Version{65535, 65535, 65535}));
    for (const char* file : {"",
                             "\n",
                             "\n1.2.3",
                             "\xEF\xBB\xBF",
                             " 1.2.3",
                             "1",
                             "1.2",
                             "1.2.",
                             "1..3",
                             ".2.3",
                             "1.2.3.",
                             "1.2.3.4",
                             "1.2.x",
                             "a.2.3",
                             "1.2.3 news",
                             "1.2.3\rnews\r",
                             "v1.2.3",
                             "1.2.-3",
                             "+1.2.3",
                             "1. 2.3",
                             "1,2,3",
                             "0x1.2.3",
                             "65536.0.0",
                             "0.65536.0",
                             "0.0.65536",
                             "000001.2.3",
                             "4294967297.0.0",
                             "99999999999999999999.0.0",
                             "<!doctype html>\n",
                             "\xFF\xFE"
                             "1.2.3",
                             "1.2.3\xC2\xA0",
                             "\xEF\xBB\xBF\xEF\xBB\xBF"
                             "1.2.3",
                             "."}) {
        EXPECT_FALSE(readPublished(file)) << file;
    }
    using namespace std::string_literals;
    EXPECT_FALSE(readPublished("1.2.3\0"s));
    EXPECT_FALSE(readPublished("\0\0\0\0"s));
}

TEST(Published, LinesBelowAreWhatIsNew) {
    EXPECT_EQ(newsIn(""), "");
    EXPECT_EQ(newsIn("one"), "one");
    EXPECT_EQ(newsIn("one\n  two\n"), "one\r\n  two");
    EXPECT_EQ(newsIn("one  \r\ntwo\r\n"), "one\r\ntwo");
    EXPECT_EQ(newsIn("\n \r\none\n\n\t\n\ntwo\n\n"), "one\r\n\r\ntwo");
    EXPECT_EQ(newsIn("\tt\xC3\xA9 \xF0\x9F\x98\x80"), " t\xC3\xA9 \xF0\x9F\x98\x80");
}

TEST(Published, NothingHidesOrTurnsRoundWhatIsShown) {
    using namespace std::string_literals;
    EXPECT_EQ(newsIn("a\0b\x01\x1B\x7F"
                     "c\rd\v"s),
              "abcd");
    for (const unsigned hidden :
         {0x80U,   0x9FU,   0xADU,   0x61CU,  0x180EU, 0x200BU, 0x200EU, 0x200FU, 0x2028U, 0x2029U, 0x202AU,
          0x202EU, 0x2060U, 0x2066U, 0x2069U, 0x206FU, 0xFEFFU, 0xFFF9U, 0xFFFBU, 0xFFFEU, 0xFFFFU}) {
        const std::u16string sign(1, static_cast<char16_t>(hidden));
        EXPECT_EQ(newsIn("a" + toUtf8(sign) + "b"), "ab") << std::hex << hidden;
    }
    EXPECT_EQ(newsIn("a\xF3\xA0\x81\x81"
                     "b"),
              "ab"); // U+E0041
    EXPECT_EQ(newsIn("a\xE2\x80\x8D"
                     "b\xE2\x80\x8C"),
              "a\xE2\x80\x8D"
              "b\xE2\x80\x8C")
        << "joiners are letters of their scripts";
    EXPECT_EQ(newsIn("\xE2\x80\xAE\n\nx"), "x") << "a line of nothing that shows is empty";
}

TEST(Published, DamagedTextIsMarked) {
    EXPECT_EQ(newsIn("a\xFF"
                     "b\xC3("),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD(");
    EXPECT_EQ(newsIn("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD") << "half of a pair";
}

TEST(Published, FileHasALimit) {
    const std::string head = "1.2.3\n";
    EXPECT_TRUE(readPublished(head + std::string(most_bytes - head.size(), 'x')));
    EXPECT_FALSE(readPublished(head + std::string(most_bytes - head.size() + 1, 'x')));
}

TEST(Published, LongLinesAreRows) {
    const std::string whole(longest_row, 'x');
    EXPECT_EQ(newsIn(whole), whole);
    EXPECT_EQ(newsIn(whole + "y"), whole + "\r\ny");
    EXPECT_EQ(newsIn(whole + " y"), whole + "\r\ny");
    EXPECT_EQ(newsIn("one two   " + whole), "one two\r\n" + whole) << "at a blank";
    EXPECT_EQ(newsIn("  " + whole), "  " + std::string(longest_row - 2, 'x') + "\r\nxx")
        << "but for those before a word";
    EXPECT_EQ(newsIn(std::string(longest_row - 1, 'x') + "\xF0\x9F\x98\x80"),
              std::string(longest_row - 1, 'x') + "\r\n\xF0\x9F\x98\x80")
        << "no character is parted";
    EXPECT_EQ(newsIn(std::string(longest_row - 1, ' ') + "\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80") << "no row is empty";
    EXPECT_EQ(newsIn(std::string(10 * longest_row, ' ') + "x"), "x");
}

TEST(Published, RowsHaveALimit) {
    const std::string cut = "\xE2\x80\xA6";
    std::string lines, shown;
    for (std::size_t i = 0; i < most_rows; ++i) {
        lines += "x\n";
        shown += i ? "\r\nx" : "x";
    }
    EXPECT_EQ(newsIn(lines), shown);
    EXPECT_EQ(newsIn(lines + "\n \n"), shown);
    EXPECT_EQ(newsIn(lines + "y\nz"), shown + cut);
    const std::string one_line = newsIn(std::string(most_rows * longest_row, 'x'));
    EXPECT_EQ(one_line.size(), most_rows * longest_row + 2 * (most_rows - 1));
    EXPECT_EQ(newsIn(std::string(most_rows * longest_row + 1, 'x')), one_line + cut);
    std::string spaced;
    for (std::size_t i = 0; i < most_rows; ++i) {
        spaced += "x\n\n";
    }
    EXPECT_EQ(std::ranges::count(newsIn(spaced), '\n'), most_rows - 2) << "empty rows count";
}

TEST(Published, PromisesHoldForTheCorpusAndWhateverIsNearIt) {
    std::mt19937 random(20261121);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MURMELIX_SOURCE_DIR "/tests/fuzz/updater/corpus")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> whole{std::istreambuf_iterator<char>(file), {}};
        const auto check = [](const std::vector<char>& bytes) {
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        };
        ASSERT_FALSE(whole.empty()) << entry.path();
        check(whole);
        for (int i = 0; i < 500; ++i) {
            auto bytes = whole;
            bytes[random() % bytes.size()] = static_cast<char>(random());
            bytes.resize(1 + random() % bytes.size());
            check(bytes);
        }
        ++files;
    }
    EXPECT_EQ(files, 5U);
}

} // namespace
} // namespace updater
