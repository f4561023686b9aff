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
    std::vector<std::shared_ptr<const Character>> all(const std::vector<std::string>& names) {
        std::vector<std::filesystem::path> files;
        for (const std::string& name : names) {
            files.push_back(directory / name);
        }
        return installed.all(files);
    }
    std::vector<int> ids(const std::vector<std::string>& names) {
        std::vector<int> ids;
        for (const auto& character : all(names)) {
            ids.push_back(character->guid[0]);
        }
        return ids;
    }

    const std::filesystem::path directory = std::filesystem::path(testing::TempDir()) / "murmelix installed";
    InstalledCharacters installed;
};

TEST_F(InstalledCharactersTest, AreInTheOrderOfTheFiles) {
    put("b.acs", 2);
    put("A.ACS", 1);
    put("c.acs", 3);
    EXPECT_THAT(ids({"c.acs", "A.ACS", "b.acs"}), ElementsAre(3, 1, 2));
}

TEST_F(InstalledCharactersTest, WhatIsNoneIsLeftOut) {
    put("broken.acs", {0xC3, 0xAB, 0xCD, 0xAB, 1});
    put("empty.acs", std::vector<std::uint8_t>());
    std::filesystem::create_directory(directory / "folder.acs");
    put("good.acs", 4);
    EXPECT_THAT(ids({"broken.acs", "empty.acs", "folder.acs", "good.acs", "nowhere.acs"}), ElementsAre(4));
}

TEST_F(InstalledCharactersTest, HaveTheirNamesAndVoicesAlone) {
    put("a.acs", 1);
    const auto found = all({"a.acs"});
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]->names, sampleCharacter().names);
    EXPECT_EQ(found[0]->voice, sampleCharacter().voice);
    EXPECT_TRUE(found[0]->animations.empty());
    EXPECT_TRUE(found[0]->images.empty());
}

TEST_F(InstalledCharactersTest, AreReadAgainOnlyWhereTheyHaveChanged) {
    put("a.acs", 1);
    put("b.acs", 2);
    const auto before = all({"a.acs", "b.acs"});
    put("b.acs", 3);
    std::filesystem::last_write_time(directory / "b.acs",
                                     std::filesystem::last_write_time(directory / "a.acs") + std::chrono::hours(1));
    const auto after = all({"a.acs", "b.acs"});
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[1]->guid[0], 3);
    std::filesystem::remove(directory / "a.acs");
    EXPECT_THAT(ids({"a.acs", "b.acs"}), ElementsAre(3));
}

TEST_F(InstalledCharactersTest, AreSoManyAtMost) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i <= 200; ++i) {
        names.push_back(std::to_string(1000 + i) + ".acs");
        put(names.back(), static_cast<std::uint8_t>(i));
    }
    const auto found = ids(names);
    ASSERT_EQ(found.size(), 200u);
    EXPECT_EQ(found.back(), 199);
}

} // namespace
