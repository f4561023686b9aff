// The program acsinfo, run as a developer runs it.
#include "companions/agent/acs/writer.h"
#include "tests/unit/acs/sample_character.h"
#include "tests/unit/acs/tiny_file.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Outcome {
    std::string output;
    int status = -1;
};

Outcome acsinfo(const std::string& arguments) {
    Outcome outcome;
    std::FILE* pipe = popen(("timeout 60 \"$ACSINFO\" " + arguments + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        return outcome;
    }
    std::array<char, 4096> piece{};
    for (std::size_t count = 0; (count = std::fread(piece.data(), 1, piece.size(), pipe)) != 0;) {
        outcome.output.append(piece.data(), count);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

class AcsInfo : public testing::Test {
  protected:
    void SetUp() override {
        // Tests run side by side: each has a folder of its own.
        folder_ = std::filesystem::path(testing::TempDir()) /
                  ("acsinfo_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + "_" +
                   std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string save(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        const std::string path = (folder_ / name).string();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

  private:
    std::filesystem::path folder_;
};

TEST_F(AcsInfo, TellsAllOfATinyFileInOneLine) {
    const std::string path = save("tiny.acs", tinyFile());
    const Outcome outcome = acsinfo("--images '" + path + "'");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              "{\"file\":\"" + path +
                  "\",\"version\":\"2.1\",\"width\":80,\"height\":60,\"transparent\":10,\"style\":1048576,"
                  "\"names\":{},\"states\":{},\"animations\":{\"Hi\":1},"
                  "\"image_count\":1,\"sound_count\":0,"
                  "\"images\":[{\"width\":2,\"height\":1,\"crc32\":\"1217539c\"}]}\n");
}

TEST_F(AcsInfo, TellsNamesStatesAndAnimations) {
    const std::string path = save("sample.acs", agent::acs::write(sampleCharacter()));
    const Outcome outcome = acsinfo("'" + path + "'");
    EXPECT_EQ(outcome.status, 0);
    const auto told = nlohmann::ordered_json::parse(outcome.output);
    EXPECT_EQ(told["names"].dump(), R"({"1033":"Sample","1041":"見本"})");
    EXPECT_EQ(told["states"].dump(), R"({"SHOWING":["RESTPOSE"],"IDLINGLEVEL1":["Greet","RestPose"],"HEARING":[]})");
    EXPECT_EQ(told["animations"].dump(), R"({"RestPose":1,"Greet":3,"GreetReturn":1})");
    EXPECT_EQ(told["image_count"], 4);
    EXPECT_EQ(told["sound_count"], 2);
    EXPECT_FALSE(told.contains("images"));
}

TEST_F(AcsInfo, ARefusedFileHasItsLineAndTheOthersToo) {
    const std::string good = save("good.acs", tinyFile());
    const std::string bad = save("bad.acs", {0xD0, 0xCF, 0x11, 0xE0});
    const Outcome outcome = acsinfo("'" + bad + "' '" + bad + ".missing' '" + good + "'");
    EXPECT_EQ(outcome.status, 1);
    std::istringstream lines(outcome.output);
    std::string line;
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line,
              "{\"file\":\"" + bad +
                  "\",\"error\":\"The file is a character of version 1.5, stored as a compound file; only version 2 "
                  "can be read.\"}");
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line, "{\"file\":\"" + bad + ".missing\",\"error\":\"There is no such file.\"}");
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(nlohmann::json::parse(line)["animations"]["Hi"], 1);
    EXPECT_FALSE(std::getline(lines, line));
}

TEST_F(AcsInfo, WithoutAFileItTellsItsUse) {
    EXPECT_EQ(acsinfo("").status, 2);
    EXPECT_EQ(acsinfo("--images").status, 2);
    EXPECT_EQ(acsinfo("--pictures x").status, 2);
    const Outcome help = acsinfo("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output.find("Usage: acsinfo FILE... [--images]\n"), 0U);
}

} // namespace
