// The ground of every test here: a fresh machine, the program's variables as after a first start, nobody on stage.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "common/text.h"
#include "languages/language_table.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/program/agent_calls.h"

namespace murmelix::fakes {
inline void PrintTo(const AgentCall& call, std::ostream* out) {
    *out << toUtf8(call.key) << '.' << toUtf8(call.call) << '(';
    for (const auto& part : {call.text, call.url, call.animation}) {
        *out << (part ? toUtf8(*part) : "-") << ',';
    }
    *out << call.x << ',' << call.y << ')';
}
inline void PrintTo(const MessageBox& box, std::ostream* out) {
    *out << toUtf8(box.title) << " [" << box.style << "]: " << toUtf8(box.text);
}
} // namespace murmelix::fakes

namespace murmelix::test {

using testing::ElementsAre;
using testing::IsEmpty;

class ProgramTest : public testing::Test {
  protected:
    ProgramTest() {
        fakes::reset();
        WindowsDir = u"C:\\WINDOWS\\";
        SettingsKeyPath.clear();
        SoundsDir = u"S:\\sounds\\";
        IsReadingConversation = 0;
        ReadingWindowHandle = 0;
        LoadSettings();
        InitLanguageTable();
        Matchups.Clear();
        clearStage();
        agent_ = platform::createAgentControl({});
        characterHost = {};
        characterHost.agent = agent_.get();
    }
    ~ProgramTest() override {
        characterHost = {};
        clearStage();
    }

    // A character of this contact, shown, as if loaded.
    std::shared_ptr<fakes::Character> putOnStage(const std::u16string& key, const std::u16string& name = u"Max") {
        auto character = fakes::agent().add(key, name);
        character->visible = true;
        LoadedCharacterKeys.Add(key, key);
        LoadedCharacters.Add(character, key);
        LastRequests.Add(nullptr, key);
        return character;
    }

    static std::vector<AgentCall>& calls() { return fakes::agent().calls; }

  private:
    static void clearStage() {
        LoadedCharacterKeys.Clear();
        LoadedCharacters.Clear();
        LastRequests.Clear();
    }

    std::unique_ptr<platform::AgentControl> agent_;
};

} // namespace murmelix::test
