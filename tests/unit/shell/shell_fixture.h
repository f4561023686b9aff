// A fresh machine with a program that has not started yet.
#pragma once

#include <optional>

#include <gtest/gtest.h>

#include "app/loader.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "languages/language_table.h"
#include "matchups/matchup_store.h"
#include "platform/message_box.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {

inline const std::string account_key = "Software\\Murmelix\\me@x";

class ShellTest : public testing::Test {
  protected:
    ShellTest() { prepareMachine(); }
    ~ShellTest() override {
        clearStage();
        characterHost = {};
    }

    // Nothing stored, nobody on stage, two character files and three sound schemes.
    static void prepareMachine() {
        fakes::reset();
        fakes::screen() = {};
        WindowsDir = SettingsKeyPath = SoundsDir = CharPicsDir = u"";
        MainFormLoaded = IsReadingConversation = 0;
        ReadingWindowHandle = 0;
        ReadingNumber = 0;
        SpeechCheckAnswer = 0;
        AutoHideIdleChar = AutoAttachChar = AutoMinimize = AutoUpdate = AutoIgnoreChars = AutoCorrectText =
            AutoHideBalloon = PlayReadEmoticon = ShowMinimizeFrm = ShowTipFrm = ShowEmotTipFrm = 0;
        LanguageTable.Clear();
        Matchups.Clear();
        clearStage();
        fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {u"bells", u"default", u"zoo"};
        fakes::screen().files[u"C:\\WINDOWS\\msagent\\chars\\"] = {u"Anna.acs", u"Bert.acs"};
        fakes::state().agent.files[u"C:\\WINDOWS\\msagent\\chars\\Anna.acs"] = {u"Anna"};
        fakes::state().agent.files[u"C:\\WINDOWS\\msagent\\chars\\Bert.acs"] = {u"Bert"};
    }

    static void clearStage() {
        LoadedCharacters.Clear();
        LastRequests.Clear();
        LoadedCharacterKeys.Clear();
    }

    // Runs the start-up routine; tells whether the process is still there.
    bool start() {
        try {
            loader.Main();
            return true;
        } catch (const fakes::ProcessEnded&) {
            return false;
        }
    }
    MainFrm& form() { return loader.MainFrm(); }
    static void store(const std::string& name, const std::string& text) {
        fakes::registry().putText(account_key, name, text);
    }
    static std::optional<std::string> stored(const std::string& name) {
        return fakes::registry().text(account_key, name);
    }
    static const std::vector<fakes::MessageBox>& boxes() { return fakes::messageBoxes().shown; }
    static const std::vector<fakes::ShellCall>& shellCalls() { return fakes::system().shell_calls; }

    // A conversation window that Messenger opens.
    std::shared_ptr<fakes::Window> openConversation(std::int32_t handle) {
        auto window = std::make_shared<fakes::Window>(handle);
        window->contacts = {std::make_shared<fakes::Contact>(u"ann@x", u"Ann"),
                            std::make_shared<fakes::Contact>(u"bob@x", u"Bob")};
        fakes::messenger().events.OnIMWindowCreated(window);
        return window;
    }

    Loader loader;
};

} // namespace murmelix
