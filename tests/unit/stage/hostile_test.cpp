// Damaged character files on the stage, by the hundred: whatever can be opened is drawn, played and heard.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "tests/fuzz/acs/check_playing.h"

namespace agent::stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> corpus() {
    std::vector<Bytes> files;
    for (const auto& entry : std::filesystem::directory_iterator(MURMELIX_SOURCE_DIR "/tests/fuzz/acs/corpus")) {
        std::ifstream in(entry.path(), std::ios::binary);
        files.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return files;
}

TEST(HostileCharacters, OfTheCorpusPlay) {
    int played = 0;
    for (const Bytes& file : corpus()) {
        played += checkPlaying(file) ? 1 : 0;
    }
    EXPECT_GE(played, 5);
}

TEST(HostileCharacters, PlayOrAreRefused) {
    std::mt19937 random(20261121);
    int played = 0;
    for (const Bytes& file : corpus()) {
        for (int i = 0; i < 200; ++i) {
            Bytes bytes = file;
            for (std::size_t change = 1 + random() % 4; change > 0; --change) {
                bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
            }
            played += checkPlaying(bytes) ? 1 : 0;
        }
    }
    EXPECT_GT(played, 100);
}

} // namespace
} // namespace agent::stage
