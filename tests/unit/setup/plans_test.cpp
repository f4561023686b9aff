#include <gmock/gmock.h>

#include "companions/setup/agent_plan.h"
#include "companions/setup/voice_plan.h"
#include "tests/unit/setup/machine.h"
#include "tests/unit/voice/fakes.h"

namespace setup {
namespace {

using testing::ElementsAre;

const std::u16string server = u"C:\\WINDOWS\\msagent\\AgentServer.exe";

class PlansTest : public SetupTest {
  protected:
    // The lines, the last one included.
    std::vector<std::u16string> linesOf(const Plan& plan) {
        Progress progress(plan);
        std::vector<std::u16string> lines;
        while (!progress.over()) {
            lines.push_back(progress.carryOutNext());
        }
        lines.push_back(progress.conclusion());
        status = progress.exitStatus();
        return lines;
    }

    int status = -1;
};

TEST_F(PlansTest, ServerIsRegisteredAndEveryCharacterInstalled) {
    EXPECT_THAT(linesOf(agentInstallation()),
                ElementsAre(server + u" is installed.", u"The character server is registered.",
                            u"C:\\WINDOWS\\msagent\\chars\\Anna.acs is installed.",
                            u"C:\\WINDOWS\\msagent\\chars\\Bert.acs is installed.", u"The character server is ready."));
    EXPECT_EQ(status, exit_ready);
    EXPECT_THAT(fakes::files().started, ElementsAre(fakes::Started{server, u"/regserver"}));
}

TEST_F(PlansTest, AgentOfSomebodyElseStays) {
    fakes::files().served_by[u"Agent.Control"] = u"\"C:\\other\\agent.exe\" -Embedding";
    EXPECT_THAT(linesOf(agentInstallation()),
                ElementsAre(u"Left alone: an Agent is installed on this computer already (C:\\other\\agent.exe). "
                            u"Nothing of it is changed.",
                            u"C:\\WINDOWS\\msagent\\chars\\Anna.acs is installed.",
                            u"C:\\WINDOWS\\msagent\\chars\\Bert.acs is installed.", u"The characters are ready."));
    EXPECT_FALSE(content().contains(server));
    EXPECT_TRUE(fakes::files().started.empty());
}

TEST_F(PlansTest, OurOwnServerIsInstalledAnew) {
    fakes::files().served_by[u"Agent.Control.2"] = u"C:\\old place\\AGENTSERVER.EXE /tray";
    EXPECT_EQ(linesOf(agentInstallation()).front(), server + u" is installed.");
}

TEST_F(PlansTest, ServerThatCannotBeRegisteredIsTold) {
    fakes::files().run = [](const fakes::Started&) { return murmelix::platform::ProgramEnd{3}; };
    EXPECT_EQ(linesOf(agentInstallation())[1],
              u"Failed: The character server cannot be registered: " + server + u" /regserver ended with status 3.");
    EXPECT_EQ(status, exit_failed);
    fakes::files().run = [](const fakes::Started&) { return murmelix::platform::ProgramEnd{{}, u"Timeout (1460)"}; };
    EXPECT_EQ(linesOf(agentInstallation())[1],
              u"Failed: The character server cannot be registered: " + server + u": Timeout (1460)");
}

TEST_F(PlansTest, SetupWithoutCharactersSaysSo) {
    std::erase_if(content(), [](const auto& file) { return file.first.ends_with(u".acs"); });
    const auto lines = linesOf(agentInstallation());
    EXPECT_EQ(lines[2], u"Failed: there are no character files in C:\\Murmelix\\msagent\\chars. Please get a complete "
                        u"copy of this setup.");
    EXPECT_EQ(lines.back(), u"Not everything could be done. The lines marked \"Failed\" say what and why.");
    EXPECT_EQ(status, exit_failed);
}

TEST_F(PlansTest, RemovalTakesAwayWhatWasInstalled) {
    linesOf(agentInstallation());
    content()[u"C:\\WINDOWS\\msagent\\chars\\Own.acs"] = "mine";
    content()[u"C:\\WINDOWS\\msagent\\chars\\Bert.acs"] = "changed";
    EXPECT_THAT(linesOf(agentRemoval()),
                ElementsAre(u"The character server is no longer registered.", server + u" is removed.",
                            u"C:\\WINDOWS\\msagent\\chars\\Anna.acs is removed.",
                            u"Left alone: C:\\WINDOWS\\msagent\\chars\\Bert.acs is another file of this name and is "
                            u"left as it is.",
                            u"C:\\WINDOWS\\msagent\\chars holds other files and stays.",
                            u"C:\\WINDOWS\\msagent holds other files and stays.", u"The character server is removed."));
    EXPECT_EQ(fakes::files().started.back(), (fakes::Started{server, u"/unregserver"}));
    EXPECT_TRUE(content().contains(u"C:\\WINDOWS\\msagent\\chars\\Own.acs"));
}

TEST_F(PlansTest, CharactersOfAnEarlierVersionAreReplacedAndThoseThatAreNoMoreRemoved) {
    const std::u16string before = u"C:\\Murmelix\\msagent.before\\", installed = u"C:\\WINDOWS\\msagent\\";
    for (const std::u16string& folder : {before, installed}) {
        content()[folder + u"chars\\Anna.acs"] = "Anna as she was";
        content()[folder + u"chars\\Zoe.acs"] = "Zoe";
        content()[folder + u"AgentServer.exe"] = "an older server";
    }
    content()[installed + u"chars\\Bert.acs"] = "somebody's own Bert";
    EXPECT_THAT(
        linesOf(agentInstallation()),
        ElementsAre(server + u" is installed.", u"The character server is registered.",
                    installed + u"chars\\Anna.acs is installed.",
                    u"Left alone: " + installed + u"chars\\Bert.acs is another file of this name and is left as it is.",
                    installed + u"chars\\Zoe.acs is removed.", u"The character server is ready."));
    EXPECT_EQ(content()[installed + u"chars\\Anna.acs"], "Anna's pictures");
    // One that was not replaced goes all the same when everything does.
    content()[installed + u"chars\\Anna.acs"] = "Anna as she was";
    content()[installed + u"chars\\Zoe.acs"] = "Zoe";
    content()[installed + u"AgentServer.exe"] = "an older server";
    content().erase(installed + u"chars\\Bert.acs");
    linesOf(agentRemoval());
    EXPECT_EQ(status, exit_ready);
    EXPECT_TRUE(std::ranges::none_of(content(), [&](const auto& file) { return file.first.starts_with(installed); }));
}

TEST_F(PlansTest, StepThatThrowsHasFailed) {
    Plan plan;
    plan.steps.push_back({u"Trying", []() -> Result { throw std::runtime_error("no memory"); }});
    EXPECT_EQ(linesOf(plan).front(), u"Failed: Trying: no memory");
    EXPECT_EQ(status, exit_failed);
}

class SilentEngine : public agent::voice::Engine {
  public:
    bool speaks(std::uint16_t) const override { return true; }
    std::optional<agent::voice::Wave> synthesise(const std::u16string&, const agent::voice::Manner&,
                                                 const std::stop_token&, std::string& error) override {
        error = "no voice data";
        return std::nullopt;
    }
};

TEST_F(PlansTest, AVoiceIsOneThatSaysAWord) {
    std::vector<agent::voice::fakes::Call> said;
    const auto tone = [&] { return std::make_unique<agent::voice::fakes::ToneEngine>(said); };
    const auto silent = [] { return std::make_unique<SilentEngine>(); };
    const auto none = [] { return nullptr; };
    EXPECT_THAT(linesOf(voiceInstallation({tone, none})),
                ElementsAre(u"Windows has a voice: the characters speak with it.", u"The characters have a voice."));
    EXPECT_EQ(said.size(), 1U);
    EXPECT_EQ(linesOf(voiceInstallation({silent, tone})).front(),
              u"espeak-ng has a voice: the characters speak with it.");
    EXPECT_TRUE(linesOf(voiceInstallation({silent, none}))
                    .front()
                    .starts_with(u"Failed: there is no voice on this computer. Voices of Windows: no voice data; "
                                 u"espeak-ng: not installed."));
    EXPECT_EQ(status, exit_failed);
    EXPECT_EQ(linesOf(voiceRemoval()).back(), u"Nothing was changed.");
}

} // namespace
} // namespace setup
