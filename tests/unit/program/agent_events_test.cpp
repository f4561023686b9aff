#include "characters/agent_events.h"

#include "characters/character_loading.h"
#include "tests/unit/program/program_test.h"
#include "ui/screen.h"

namespace murmelix::test {

namespace {

class AgentEvents : public ProgramTest {
  protected:
    AgentEvents() : messenger_(platform::createMessengerApi({})) {
        character_ = putOnStage(u"a@x");
        characterHost.messenger = [this] { return messenger_.get(); };
        characterHost.removeMoniteredContact = [this](const std::u16string& key) {
            removed_.push_back(key);
            LoadedCharacterKeys.Remove(key);
            LoadedCharacters.Remove(key);
            LastRequests.Remove(key);
        };
        characterHost.deleteSystemTrayIcon = [this] { ++tray_icons_deleted_; };
    }

    static void addContact(const std::u16string& signin, const std::u16string& friendly) {
        fakes::messenger().contacts.push_back(std::make_shared<fakes::Contact>(signin, friendly));
    }

    std::shared_ptr<fakes::Character> character_;
    std::unique_ptr<platform::MessengerApi> messenger_;
    std::vector<std::u16string> removed_;
    int tray_icons_deleted_ = 0;
};

TEST_F(AgentEvents, OtherCommandsAreIgnored) {
    for (const char16_t* name : {u"", u"%", u"a@xQ", u"Open", u"a@xR% ", u"a@x1%", u"a@x2%", u"a@x3%", u"a@xq%"}) {
        Agent_Command(name);
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(removed_, IsEmpty());
}

TEST_F(AgentEvents, WhoAmINamesTheFriendlyName) {
    AutoIgnoreChars = 0;
    addContact(u"other@x", u"Other");
    addContact(u"a@x", u" Ann :) ");
    Agent_Command(u"a@xW%");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"I Am A@x.\r\nBest Known As: Ann"));
}

TEST_F(AgentEvents, WhoAmIOfAnUnknownContactNamesTheKeyAlone) {
    addContact(u"A@X", u"Ann");
    Agent_Command(u"a@xW%");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"I Am A@x."));
}

TEST_F(AgentEvents, WhoAmIOfEmoticonsAloneNamesNothing) {
    addContact(u"a@x", u":) (Y)");
    Agent_Command(u"a@xW%");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"I Am A@x.\r\nBest Known As: "));
}

TEST_F(AgentEvents, WhoAmIIsAnsweredWithoutMessenger) {
    for (const char* failing : {"MyContacts", "Count", "Item", "SigninName", "FriendlyName"}) {
        calls().clear();
        addContact(u"a@x", u"Ann");
        fakes::neighbours().failing = {failing};
        Agent_Command(u"a@xW%");
        EXPECT_EQ(calls(), speakCalls(u"a@x", u"I Am A@x.")) << failing;
    }
}

TEST_F(AgentEvents, QuickMessageOpensRightBelowTheCharacter) {
    std::vector<std::tuple<std::u16string, int, int>> opened;
    characterHost.openQuickMessage = [&](const std::u16string& key, std::int32_t left, std::int32_t top) {
        opened.emplace_back(key, left, top);
    };
    character_->left = 10;
    character_->top = 20;
    Agent_Command(u"a@xQ%");
    agentEvents().DblClick(u"a@x", 1, 0, 5, 5);
    const auto expected = std::tuple(std::u16string(u"a@x"), ui::toTwips(10), ui::toTwips(148));
    EXPECT_THAT(opened, ElementsAre(expected, expected));
    fakes::neighbours().failing = {"Height"};
    Agent_DblClick(u"a@x");
    Agent_DblClick(u"nobody@x");
    EXPECT_EQ(opened.size(), 2u);
}

TEST_F(AgentEvents, RemoveMeKeepsTheContactFromGettingAnother) {
    AutoAttachChar = 0;
    Agent_Command(u"a@xR%");
    EXPECT_THAT(removed_, ElementsAre(u"a@x"));
    EXPECT_TRUE(LoadedCharacterKeys.contains(u"a@x"));
    LoadCharacterForContact(u"a@x");
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
    EXPECT_EQ(LoadedCharacters.Count(), 0u);
}

TEST_F(AgentEvents, RemoveMeArrangesTheOthersAgain) {
    const auto window = std::make_shared<fakes::Window>(5);
    characterHost.conversationWindow = [&] { return window; };
    putOnStage(u"b@x");
    Agent_Command(u"a@xR%");
    EXPECT_THAT(calls(), ElementsAre(AgentCall{.key = u"b@x", .call = u"MoveTo", .x = 36, .y = 72}));
}

TEST_F(AgentEvents, LanguageIsChangedAndReadBack) {
    character_->left = 10;
    character_->top = 20;
    std::pair<int, int> place;
    characterHost.chooseLanguage = [&](const std::u16string& key, std::int32_t left, std::int32_t top) {
        EXPECT_EQ(key, u"a@x");
        place = {left, top};
        EXPECT_EQ(LanguageToSwitch, 1033);
        LanguageToSwitch = 1031;
    };
    Agent_Command(u"a@xL%");
    EXPECT_EQ(place, std::pair(ui::toTwips(10), ui::toTwips(20)));
    EXPECT_EQ(character_->language_id, 1031);
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
}

TEST_F(AgentEvents, ClosedLanguageWindowChangesNothing) {
    characterHost.chooseLanguage = [](const std::u16string&, std::int32_t, std::int32_t) {};
    character_->language_id = 1034;
    Agent_Command(u"a@xL%");
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
}

TEST_F(AgentEvents, LanguageWithoutAVoiceIsTold) {
    characterHost.chooseLanguage = [](const std::u16string&, std::int32_t, std::int32_t) { LanguageToSwitch = 1037; };
    for (const bool call_fails : {false, true}) {
        fakes::messageBoxes().shown.clear();
        if (call_fails) {
            fakes::neighbours().failing = {"setLanguageID"};
        }
        Agent_Command(u"a@xL%");
        EXPECT_EQ(character_->language_id, 1033);
        EXPECT_THAT(fakes::messageBoxes().shown,
                    ElementsAre(fakes::MessageBox{
                        u"You don't have that language installed! Please download more languages and try again!", 16,
                        u"Error Switching Languages"}));
    }
}

TEST_F(AgentEvents, IdleCharacterHidesWithTheOptionOn) {
    agentEvents().IdleStart(u"a@x");
    EXPECT_THAT(calls(), IsEmpty());
    AutoHideIdleChar = -1;
    agentEvents().IdleStart(u"a@x");
    EXPECT_THAT(calls(), ElementsAre(hideCall(u"a@x")));
}

TEST_F(AgentEvents, RestartEndsTheProgram) {
    EXPECT_THROW(agentEvents().Restart(), fakes::ProcessEnded);
    EXPECT_THAT(fakes::messageBoxes().shown,
                ElementsAre(fakes::MessageBox{u"Microsoft Agent was restarted! Murmelix will now close!", 16,
                                              u"MSAgent Restart Alert!"}));
    EXPECT_EQ(tray_icons_deleted_, 1);
}

TEST_F(AgentEvents, ShutdownEndsTheProgram) {
    EXPECT_THROW(agentEvents().Shutdown(), fakes::ProcessEnded);
    EXPECT_THAT(fakes::messageBoxes().shown,
                ElementsAre(fakes::MessageBox{u"Microsoft Agent was shutdown! Murmelix will now close!", 16,
                                              u"MSAgent Shutdown Alert!"}));
    EXPECT_EQ(tray_icons_deleted_, 1);
}

TEST_F(AgentEvents, AnEndThatIsHeardAgainIsToldOnce) {
    fakes::messageBoxes().while_open = [] {
        agentEvents().Shutdown();
        agentEvents().Restart();
    };
    characterHost.deleteSystemTrayIcon = [this] {
        ++tray_icons_deleted_;
        agentEvents().Shutdown();
    };
    EXPECT_THROW(agentEvents().Shutdown(), fakes::ProcessEnded);
    EXPECT_EQ(fakes::messageBoxes().shown.size(), 1U);
    EXPECT_EQ(tray_icons_deleted_, 1);
}

} // namespace

} // namespace murmelix::test
