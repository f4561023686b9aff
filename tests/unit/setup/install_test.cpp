#include "companions/setup/install.h"

#include "tests/unit/setup/machine.h"

namespace setup {
namespace {

const std::u16string source = u"C:\\Murmelix\\msagent\\AgentServer.exe";
const std::u16string target = u"C:\\WINDOWS\\msagent\\AgentServer.exe";

class InstallTest : public SetupTest {};

TEST_F(InstallTest, FileIsCopiedUnderItsNameAlone) {
    const Result result = installFile(source, target, Existing::replaced);
    EXPECT_EQ(result.outcome, Outcome::done);
    EXPECT_EQ(result.text, target + u" is installed.");
    EXPECT_EQ(content()[target], "the server");
    EXPECT_FALSE(content().contains(target + u".new"));
}

TEST_F(InstallTest, CopyThatFailsHalfWayLeavesNothingBehind) {
    fakes::files().full.insert(target + u".new");
    const Result result = installFile(source, target, Existing::replaced);
    EXPECT_EQ(result.outcome, Outcome::failed);
    EXPECT_EQ(result.text, source + u" cannot be copied to " + target + u".new: The disk is full (112)");
    EXPECT_FALSE(content().contains(target + u".new"));
    EXPECT_FALSE(content().contains(target));
}

TEST_F(InstallTest, OldFileStaysWhereTheNewOneCannotTakeItsPlace) {
    content()[target] = "an older server";
    fakes::files().refused.insert(target);
    const Result result = installFile(source, target, Existing::replaced);
    EXPECT_EQ(result.outcome, Outcome::failed);
    EXPECT_EQ(result.text, target + u" cannot be written: Access denied (5)");
    EXPECT_FALSE(content().contains(target + u".new"));
    EXPECT_EQ(content()[target], "an older server");
}

TEST_F(InstallTest, FolderThatCannotBeMadeIsNamed) {
    content()[u"C:\\WINDOWS\\msagent"] = "a file where the folder should be";
    const Result result = installFile(source, target, Existing::replaced);
    EXPECT_EQ(result.outcome, Outcome::failed);
    EXPECT_EQ(result.text, u"C:\\WINDOWS\\msagent cannot be made: Access denied (5)");
}

TEST_F(InstallTest, FileThatIsThereIsNotCopiedAgain) {
    content()[target] = "the server";
    fakes::files().refused.insert(target);
    EXPECT_EQ(installFile(source, target, Existing::replaced).text, target + u" is there already.");
}

TEST_F(InstallTest, AnotherFileOfTheNameIsReplacedOrKept) {
    content()[target] = "mine";
    EXPECT_EQ(installFile(source, target, Existing::kept).outcome, Outcome::kept);
    EXPECT_EQ(content()[target], "mine");
    EXPECT_EQ(installFile(source, target, Existing::replaced).outcome, Outcome::done);
    EXPECT_EQ(content()[target], "the server");
}

TEST_F(InstallTest, OnlyWhatIsOursIsRemoved) {
    EXPECT_EQ(removeFile(target, {source}).text, target + u" is not there.");
    content()[target] = "mine";
    EXPECT_EQ(removeFile(target, {source}).outcome, Outcome::kept);
    EXPECT_TRUE(content().contains(target));
    content()[target] = "the server";
    fakes::files().refused.insert(target);
    EXPECT_EQ(removeFile(target, {source}).text, target + u" cannot be removed: Access denied (5)");
    fakes::files().refused.clear();
    EXPECT_EQ(removeFile(target, {source}).text, target + u" is removed.");
    EXPECT_FALSE(content().contains(target));
}

TEST_F(InstallTest, WhatAnEarlierVersionHasInstalledIsOurs) {
    const std::u16string earlier = u"C:\\Murmelix\\msagent.before\\AgentServer.exe";
    content()[earlier] = "an older server";
    content()[target] = "an older server";
    EXPECT_EQ(installFile(source, target, Existing::kept, earlier).text, target + u" is installed.");
    EXPECT_EQ(content()[target], "the server");
    content()[target] = "mine";
    EXPECT_EQ(installFile(source, target, Existing::kept, earlier).outcome, Outcome::kept);
    content()[target] = "an older server";
    EXPECT_EQ(removeFile(target, {source, earlier}).outcome, Outcome::done);
    EXPECT_FALSE(content().contains(target));
}

TEST_F(InstallTest, FolderGoesWhenNothingIsLeftInIt) {
    const std::u16string folder = u"C:\\WINDOWS\\msagent";
    content()[target] = "mine";
    EXPECT_EQ(removeFolder(folder).text, folder + u" holds other files and stays.");
    content().erase(target);
    EXPECT_EQ(removeFolder(folder).text, folder + u" is removed.");
}

} // namespace
} // namespace setup
