// Lines that nobody would write by accident.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "companions/messenger/reading/characters.h"
#include "companions/messenger/reading/reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace messenger_client::reading {

namespace {

TEST(HostileReading, PromisesHoldForTheCorpusAndWhateverIsNearIt) {
    std::mt19937 random(20261122);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MURMELIX_SOURCE_DIR "/tests/fuzz/reading/corpus")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> whole{std::istreambuf_iterator<char>(file), {}};
        const auto check = [](const std::vector<char>& bytes) {
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        };
        ASSERT_FALSE(whole.empty()) << entry.path();
        check(whole);
        for (int i = 0; i < 200; ++i) {
            auto bytes = whole;
            bytes[random() % bytes.size()] = static_cast<char>(random());
            bytes.resize(1 + random() % bytes.size());
            check(bytes);
        }
        ++files;
    }
    EXPECT_EQ(files, 2U);
}

// What costs more than its length is found by the time that it takes: each of these took seconds if it grew with the
// square.
TEST(HostileReading, LongLinesOfAnyKindAreTaken) {
    for (const std::u16string_view piece :
         {u"a", u" ", u"!", u"1", u"😂", u"👩\u200D", u"🇩", u"\u0301", u"ab ", u"www.", u"https://", u"(", u"[",
          u"http://a@", u"\\", u"a\u200D", u"ha", u"\U000E0067", u"1\uFE0F\u20E3"}) {
        std::u16string text;
        while (text.size() < 1'000'000) {
            text += piece;
        }
        Line line;
        line.person = u"ann@net";
        line.text = text;
        for (std::size_t at = 0; at < text.size(); at += 3) {
            line.emotes.push_back({at, at + 2});
        }
        Reader reader;
        reader.arrived(line, 0);
        EXPECT_LE(cleaned(text, line.emotes, {}).size(), longest_cleaned);
        EXPECT_LE(seatName(text, text).size(), 2 * most_in_cluster * longest_seat_name);
    }
}

} // namespace

} // namespace messenger_client::reading
