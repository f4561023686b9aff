#include "characters/character_loading.h"

#include "tests/unit/program/program_test.h"

namespace murmelix::test {

namespace {

class CharacterLoading : public ProgramTest {
  protected:
    CharacterLoading() {
        characterHost.characterFiles = [this] { return file_list_; };
        characterHost.conversationWindow = [this] { return window_; };
    }

    // A character file whose character has this name; by default that of the file.
    void install(const std::u16string& name, const std::u16string& character_name = {}) {
        file_list_.push_back(name + u".acs");
        fakes::agent().files[u"C:\\WINDOWS\\msagent\\chars\\" + name + u".acs"] = {
            character_name.empty() ? name : character_name};
    }

    static std::u16string nameOf(const std::u16string& key) {
        return LoadedCharacters.contains(key) ? LoadedCharacters.Item(key)->Name() : u"";
    }

    static std::vector<std::u16string> keys() {
        std::vector<std::u16string> all;
        for (std::size_t i = 1; i <= LoadedCharacterKeys.Count(); ++i) {
            EXPECT_EQ(LoadedCharacterKeys.Item(i), LoadedCharacterKeys.KeyAt(i));
            all.push_back(LoadedCharacterKeys.Item(i));
        }
        return all;
    }

    std::vector<std::u16string> file_list_;
    std::shared_ptr<fakes::Window> window_ = std::make_shared<fakes::Window>(5);
};

TEST_F(CharacterLoading, ContactGetsTheMatchedCharacter) {
    install(u"Max");
    install(u"Nelly");
    AddMatchup(u"a@x", u"Nelly");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(nameOf(u"a@x"), u"Nelly");
    EXPECT_THAT(fakes::agent().log, ElementsAre(u"Load a@x C:\\WINDOWS\\msagent\\chars\\Nelly.acs"));
}

TEST_F(CharacterLoading, SecondContactWithTheSameMatchupGetsTheFirstFreeFile) {
    install(u"Max");
    install(u"Nelly");
    AddMatchup(u"a@x", u"Nelly");
    AddMatchup(u"b@x", u"Nelly");
    LoadCharacterForContact(u"a@x");
    LoadCharacterForContact(u"b@x");
    EXPECT_EQ(nameOf(u"a@x"), u"Nelly");
    EXPECT_EQ(nameOf(u"b@x"), u"Max");
}

TEST_F(CharacterLoading, FreeFilesAreTakenInListOrder) {
    install(u"a");
    install(u"b");
    putOnStage(u"x@x", u"a");
    EXPECT_EQ(PickFreeCharacter(), u"b.acs");
    putOnStage(u"y@x", u"b");
    EXPECT_EQ(PickFreeCharacter(), u"ALL_CHARS_LOADED");
}

TEST_F(CharacterLoading, NoFilesAtAll) {
    EXPECT_EQ(PickFreeCharacter(), u"NO_CHARS");
}

TEST_F(CharacterLoading, NamesCompareWithTheirCase) {
    install(u"Max");
    putOnStage(u"x@x", u"max");
    EXPECT_EQ(PickFreeCharacter(), u"Max.acs");
}

TEST_F(CharacterLoading, CharacterNamedOtherThanItsFileIsNeverInUse) {
    install(u"Max", u"Sir Max");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(PickFreeCharacter(), u"Max.acs");
}

TEST_F(CharacterLoading, ContactWithoutAMatchupGetsAFreeCharacter) {
    install(u"Max");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(nameOf(u"a@x"), u"Max");
}

TEST_F(CharacterLoading, EmptyMatchupIsDoneWithoutACharacter) {
    install(u"Max");
    AddMatchup(u"a@x", u"");
    const MatchedCharacter matched = LoadMatchedCharacter(u"a@x");
    EXPECT_TRUE(matched.done);
    EXPECT_EQ(matched.character, nullptr);
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(LoadedCharacters.Count(), 0u);
    EXPECT_THAT(keys(), ElementsAre(u"a@x"));
}

TEST_F(CharacterLoading, CharacterIsSetUpPlacedAndShownInOrder) {
    install(u"Max");
    LoadCharacterForContact(u"a@x");
    const auto command = [](const char16_t* suffix, const char16_t* caption, bool enabled) {
        return AgentCall{.key = u"a@x",
                         .call = u"AddCommand",
                         .text = std::u16string(u"a@x") + suffix,
                         .animation = caption,
                         .x = enabled,
                         .y = 1};
    };
    EXPECT_THAT(calls(), ElementsAre(command(u"Q%", u"&Quick Message", true), command(u"1%", u" ", false),
                                     command(u"W%", u"&Who Am I?", true), command(u"2%", u" ", false),
                                     command(u"L%", u"&Change My Language", true), command(u"3%", u" ", false),
                                     command(u"R%", u"&Remove Me", true),
                                     AgentCall{.key = u"a@x", .call = u"LanguageID", .x = 1033},
                                     AgentCall{.key = u"a@x", .call = u"BalloonStyle", .x = 15},
                                     AgentCall{.key = u"a@x", .call = u"MoveTo", .x = 36, .y = 72}, showCall(u"a@x")));
    EXPECT_NE(LastRequests.Item(u"a@x"), nullptr);
}

TEST_F(CharacterLoading, BalloonStyleFollowsTheOption) {
    EXPECT_EQ(BalloonStyleFor(1, true), 15);
    EXPECT_EQ(BalloonStyleFor(1, false), 11);
    EXPECT_EQ(BalloonStyleFor(0x05201B05, false), 0x05201B0B);
    AutoHideBalloon = 0;
    install(u"Max");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(fakes::agent().characters[u"a@x"]->balloon_style, 11);
}

TEST_F(CharacterLoading, EveryFurtherCharacterTakesTheNextSlot) {
    install(u"Max");
    install(u"Nelly");
    LoadCharacterForContact(u"a@x");
    LoadCharacterForContact(u"b@x");
    EXPECT_EQ(fakes::agent().characters[u"b@x"]->left, 436);
}

TEST_F(CharacterLoading, NoFilesOfferTheDownload) {
    fakes::messageBoxes().answers = {6};
    LoadCharacterForContact(u"a@x");
    EXPECT_THAT(fakes::messageBoxes().shown,
                ElementsAre(fakes::MessageBox{
                    u"You have no character files on your computer! You must have at least one character to use this "
                    u"application!\r\nPlease download some characters from "
                    u"http://www.example.org/Murmelix/download/d_characters.html\r\nWould you like to go there now?",
                    4 + 16, u"No Characters To Use!"}));
    EXPECT_THAT(fakes::system().shell_calls,
                ElementsAre(fakes::ShellCall{u"Open", u"http://www.example.org/Murmelix/download/d_characters.html",
                                             u"", u""}));
    EXPECT_THAT(keys(), ElementsAre(u"a@x"));
}

TEST_F(CharacterLoading, AllInUseOffersTheDownload) {
    install(u"Max");
    LoadCharacterForContact(u"a@x");
    LoadCharacterForContact(u"b@x");
    EXPECT_THAT(fakes::messageBoxes().shown,
                ElementsAre(fakes::MessageBox{
                    u"All characters have been loaded and used. You need at least one more character!\r\nPlease "
                    u"download one more character file from "
                    u"http://www.example.org/Murmelix/download/d_characters.html\r\nWould you like to go there now?",
                    20, u"All Characters Loaded!"}));
    EXPECT_THAT(fakes::system().shell_calls, IsEmpty()); // answered No
    EXPECT_THAT(keys(), ElementsAre(u"a@x", u"b@x"));
}

TEST_F(CharacterLoading, ContactIsTriedOnce) {
    LoadCharacterForContact(u"a@x");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(fakes::messageBoxes().shown.size(), 1u);
}

TEST_F(CharacterLoading, FailingLoadEndsItForThatContactAlone) {
    install(u"Max");
    file_list_.insert(file_list_.begin(), u"Damaged.acs");
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(LoadedCharacters.Count(), 0u);
    EXPECT_EQ(LastRequests.Count(), 0u);
    EXPECT_THAT(keys(), ElementsAre(u"a@x"));
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
    file_list_.erase(file_list_.begin());
    LoadCharacterForContact(u"b@x");
    EXPECT_EQ(nameOf(u"b@x"), u"Max");
}

TEST_F(CharacterLoading, FailuresAfterTheLoadAreSkipped) {
    install(u"Max");
    fakes::neighbours().failing = {"AddCommand", "setLanguageID", "BalloonStyle", "MoveTo", "Show"};
    LoadCharacterForContact(u"a@x");
    EXPECT_NE(loadedCharacter(u"a@x"), nullptr);
    EXPECT_EQ(LastRequests.Item(u"a@x"), nullptr);
}

TEST_F(CharacterLoading, ContactsThatComeMeanwhileTakeOtherCharacters) {
    install(u"Max");
    install(u"Nelly");
    fakes::neighbours().during = [](std::string_view call) {
        if (call == "Load") {
            LoadCharacterForContact(u"a@x");
            LoadCharacterForContact(u"b@x");
        }
    };
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(nameOf(u"a@x"), u"Max");
    EXPECT_EQ(nameOf(u"b@x"), u"Nelly");
    EXPECT_THAT(keys(), ElementsAre(u"a@x", u"b@x"));
}

TEST_F(CharacterLoading, ContactDroppedMeanwhileLeavesNoCharacter) {
    install(u"Max");
    for (const char* moment : {"Load", "Character", "AddCommand", "Window.Left", "MoveTo", "Show"}) {
        fakes::neighbours().during = [&](std::string_view call) {
            if (call == moment && LoadedCharacterKeys.contains(u"a@x")) {
                LoadedCharacterKeys.Remove(u"a@x");
            }
        };
        LoadCharacterForContact(u"a@x");
        EXPECT_EQ(LoadedCharacters.Count(), 0u) << moment;
        EXPECT_EQ(fakes::agent().characters.size(), 0u) << moment;
        EXPECT_THAT(keys(), IsEmpty()) << moment;
    }
}

TEST_F(CharacterLoading, ContactDroppedAndAskedForAgainMeanwhileIsLoadedOnce) {
    install(u"Max");
    bool done = false;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Show" && !std::exchange(done, true)) {
            LoadedCharacterKeys.Remove(u"a@x");
            LoadCharacterForContact(u"a@x");
        }
    };
    LoadCharacterForContact(u"a@x");
    EXPECT_EQ(LoadedCharacters.Count(), 1u);
    EXPECT_EQ(LoadedCharacters.Item(1), fakes::agent().characters[u"a@x"]);
}

} // namespace

} // namespace murmelix::test
