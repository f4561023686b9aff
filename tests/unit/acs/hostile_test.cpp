// Damaged and made-up files, by the thousand: each is refused with a sentence or gives a consistent character.
#include "companions/agent/acs/writer.h"
#include "tests/fuzz/acs/check_character.h"
#include "tests/unit/acs/sample_character.h"
#include "tests/unit/acs/tiny_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> corpus() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(MURMELIX_SOURCE_DIR "/tests/fuzz/acs/corpus")) {
        paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    std::vector<Bytes> files;
    for (const auto& path : paths) {
        std::ifstream in(path, std::ios::binary);
        files.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return files;
}

// One to six small changes: a byte, a number of special value, a piece removed, repeated or taken from another place.
void mutate(Bytes& bytes, std::mt19937& random) {
    const auto below = [&random](std::size_t bound) { return static_cast<std::size_t>(random()) % bound; };
    const auto at = [&bytes](std::size_t position) { return bytes.begin() + static_cast<std::ptrdiff_t>(position); };
    for (std::size_t change = 1 + below(6); change > 0 && !bytes.empty(); --change) {
        const std::size_t position = below(bytes.size());
        const std::size_t length = std::min(1 + below(20), bytes.size() - position);
        switch (below(5)) {
        case 0:
            bytes[position] = static_cast<std::uint8_t>(random());
            break;
        case 1: {
            constexpr std::array<std::uint32_t, 8> special{0,      1,          0xFF,       0x7FFF,
                                                           0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
            const std::uint32_t value = special[below(special.size())];
            for (std::size_t i = 0; i < std::min<std::size_t>(length, 4); ++i) {
                bytes[position + i] = static_cast<std::uint8_t>(value >> (8 * i));
            }
            break;
        }
        case 2:
            bytes.erase(at(position), at(position + length));
            break;
        case 3: {
            const Bytes piece(at(position), at(position + length));
            bytes.insert(at(below(bytes.size())), piece.begin(), piece.end());
            break;
        }
        default:
            std::copy_n(at(position), length, at(below(bytes.size() - length + 1)));
        }
    }
}

TEST(AcsHostile, CutAtEveryLength) {
    for (const Bytes& whole : {tinyFile(), agent::acs::write(sampleCharacter())}) {
        EXPECT_TRUE(checkCharacter(whole));
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_FALSE(checkCharacter(cut)) << length;
        }
    }
}

TEST(AcsHostile, EveryByteChangedInTurn) {
    agent::acs::Character character = sampleCharacter();
    character.palette.resize(4); // any colour is as good as any other
    for (Bytes file : {tinyFile(), agent::acs::write(character)}) {
        std::size_t refused = 0;
        for (std::uint8_t& byte : file) {
            const std::uint8_t original = byte;
            for (const int value : {0, 0xFF, 0x7F, original ^ 1, original ^ 0x80, original + 1, original - 1}) {
                byte = static_cast<std::uint8_t>(value);
                refused += checkCharacter(file) ? 0 : 1;
            }
            byte = original;
        }
        EXPECT_GT(refused, 300U);
    }
}

TEST(AcsHostile, MutatedCorpus) {
    const std::vector<Bytes> files = corpus();
    ASSERT_GE(files.size(), 5U);
    std::mt19937 random(20261121);
    for (int i = 0; i < 20'000; ++i) {
        Bytes bytes = files[static_cast<std::size_t>(i) % files.size()];
        mutate(bytes, random);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

TEST(AcsHostile, TheCorpusHasFilesOfBothKinds) {
    const std::vector<Bytes> files = corpus();
    EXPECT_EQ(std::ranges::count_if(files, [](const Bytes& file) { return checkCharacter(file); }), 6);
    EXPECT_EQ(files.size(), 7U);
}

TEST(AcsHostile, NoiseBehindAValidHeader) {
    std::mt19937 random(3);
    for (int i = 0; i < 2'000; ++i) {
        Bytes file = tinyFile();
        std::generate(file.begin() + 36 + random() % 150, file.end(),
                      [&random] { return static_cast<std::uint8_t>(random()); });
        checkCharacter(file);
    }
}

} // namespace
