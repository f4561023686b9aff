#include "companions/agent/acs/installed_characters.h"

#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include "companions/agent/acs/writer.h"
#include "tests/unit/acs/sample_character.h"

namespace {

using namespace agent::acs;
using testing::ElementsAre;

class InstalledCharactersTest : public testing::Test {
  protected:
    InstalledCharactersTest() {
        std::filesystem::remove_all(directory);
        std::filesystem::create_directories(directory);
    }
    ~InstalledCharactersTest() override { std::filesystem::remove_all(directory); }

    void put(const std::string& file, std::uint8_t id) const {
        Character character = sampleCharacter();
        character.guid = {id};
        put(file, write(character));
    }
    void put(const std::string& file, const std::vector<std::uint8_t>& bytes) const {
        std::ofstream(directory / file, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    std::vector<int> ids() {
        std::vector<int> ids;
        for (const auto& character : installed.all()) {
            ids.push_back(character->guid[0]);
        }
        return ids;
    }

    const std::filesystem::path directory = std::filesystem::path(testing::TempDir()) / "murmelix installed";
    InstalledCharacters installed{directory};
};

TEST_F(InstalledCharactersTest, AreInTheOrderOfTheirFiles) {
    put("b.acs", 2);
    put("A.ACS", 1);
    put("c.acs", 3);
    EXPECT_THAT(ids(), ElementsAre(1, 2, 3));
}

TEST_F(InstalledCharactersTest, WhatIsNoneIsLeftOut) {
    put("broken.acs", {0xC3, 0xAB, 0xCD, 0xAB, 1});
    put("empty.acs", std::vector<std::uint8_t>());
    put("ann.txt", 7);
    std::filesystem::create_directory(directory / "folder.acs");
    put("good.acs", 4);
    EXPECT_THAT(ids(), ElementsAre(4));
    EXPECT_TRUE(InstalledCharacters(directory / "nowhere").all().empty());
}

TEST_F(InstalledCharactersTest, HaveTheirNamesAndVoicesAlone) {
    put("a.acs", 1);
    const auto all = installed.all();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0]->names, sampleCharacter().names);
    EXPECT_EQ(all[0]->voice, sampleCharacter().voice);
    EXPECT_TRUE(all[0]->animations.empty());
    EXPECT_TRUE(all[0]->images.empty());
}

TEST_F(InstalledCharactersTest, AreReadAgainOnlyWhereTheyHaveChanged) {
    put("a.acs", 1);
    put("b.acs", 2);
    const auto before = installed.all();
    put("b.acs", 3);
    std::filesystem::last_write_time(directory / "b.acs",
                                     std::filesystem::last_write_time(directory / "a.acs") + std::chrono::hours(1));
    const auto after = installed.all();
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[1]->guid[0], 3);
    std::filesystem::remove(directory / "a.acs");
    EXPECT_THAT(ids(), ElementsAre(3));
}

TEST_F(InstalledCharactersTest, AreSoManyAtMost) {
    for (std::size_t i = 0; i <= InstalledCharacters::most_installed; ++i) {
        put(std::to_string(1000 + i) + ".acs", static_cast<std::uint8_t>(i));
    }
    const auto found = ids();
    ASSERT_EQ(found.size(), 200u);
    EXPECT_EQ(found.back(), 199);
}

} // namespace
