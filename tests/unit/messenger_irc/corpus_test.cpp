// The conversations that the fuzz target begins with, whole and broken off.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace messenger_client::irc {

namespace {

TEST(HostileCorpus, IsNoTroubleToTheSession) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MURMELIX_SOURCE_DIR "/tests/fuzz/irc/corpus")) {
        std::ifstream file(entry.path(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(file)), {});
        for (int settings = 0; settings < 16; ++settings) {
            bytes.front() = static_cast<char>(settings);
            for (std::size_t size = bytes.size(); size > 0; size -= size / 20 + 1) {
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), size);
            }
        }
        ++files;
    }
    EXPECT_GE(files, 3U);
}

} // namespace

} // namespace messenger_client::irc
