#include "tests/unit/program/program_test.h"

#include "characters/action_script.h"

namespace murmelix::test {

namespace {

class ActionScript : public ProgramTest {
  protected:
    ActionScript() { character_ = putOnStage(u"a@x"); }

    std::shared_ptr<fakes::Character> character_;
};

TEST_F(ActionScript, SpeakStopsRestsAndSpeaksInProperCase) {
    RunCharacterCommand(u"a@x", u"speak", u"HELLO world");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"Hello World"));
}

TEST_F(ActionScript, SpeakLeavesIgnoredCharactersOut) {
    RunCharacterCommand(u"a@x", u"speak", u"a#b(c)");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"Abc"));
}

TEST_F(ActionScript, SpeakKeepsAllCharactersWithTheOptionOff) {
    AutoIgnoreChars = 0;
    RunCharacterCommand(u"a@x", u"speak", u"a#b(c)");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"A#b(c)"));
}

TEST_F(ActionScript, FlagCountsAsOnWheneverItIsNotZero) {
    AutoIgnoreChars = -1;
    RunCharacterCommand(u"a@x", u"speak", u"a#b");
    EXPECT_EQ(calls().back().text, u"Ab");
}

TEST_F(ActionScript, WavSpeaksABlankWithTheSound) {
    CurrentSoundScheme = u"robots";
    RunCharacterCommand(u"a@x", u"wav", {}, {}, u"laugh");
    ASSERT_EQ(calls().size(), 3u);
    EXPECT_EQ(calls()[0], stopCall(u"a@x"));
    EXPECT_EQ(calls()[1], playCall(u"a@x", u"restpose"));
    EXPECT_EQ(calls()[2].text, u" ");
    EXPECT_EQ(calls()[2].url, u"S:\\sounds\\robots\\laugh.wav");
}

TEST_F(ActionScript, WavThatKeepsThePoseTakesNoRestPose) {
    RunCharacterCommand(u"a@x", u"wav", {}, {}, u"laugh", true);
    EXPECT_THAT(calls(), ElementsAre(stopCall(u"a@x"), soundCall(u"a@x", u"laugh")));
}

TEST_F(ActionScript, ListenHideShowAndPlay) {
    RunCharacterCommand(u"a@x", u"listen");
    RunCharacterCommand(u"a@x", u"hide");
    RunCharacterCommand(u"a@x", u"show");
    RunCharacterCommand(u"a@x", u"play", {}, u"sad");
    EXPECT_THAT(calls(), ElementsAre(stopCall(u"a@x"), playCall(u"a@x", u"StartListening"), hideCall(u"a@x"),
                                     showCall(u"a@x"), playCall(u"a@x", u"sad")));
}

TEST_F(ActionScript, EveryCommandKeepsItsRequest) {
    std::shared_ptr<platform::AgentRequest> last;
    for (const char16_t* command : {u"speak", u"wav", u"listen", u"hide", u"show", u"play"}) {
        RunCharacterCommand(u"a@x", command, u"text", u"sad", u"laugh");
        EXPECT_NE(LastRequests.Item(u"a@x"), last);
        last = LastRequests.Item(u"a@x");
    }
}

TEST_F(ActionScript, UnknownWordLeavesTheLastRequest) {
    RunCharacterCommand(u"a@x", u"show");
    const auto request = LastRequests.Item(u"a@x");
    calls().clear();
    for (const char16_t* command : {u"dance", u"", u"Speak", u"SHOW", u"play "}) {
        RunCharacterCommand(u"a@x", command, u"text", u"sad");
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(LastRequests.Item(u"a@x"), request);
    EXPECT_EQ(LoadedCharacters.Item(u"a@x"), character_);
}

TEST_F(ActionScript, MissingAnimationLeavesTheCharacterUsable) {
    fakes::agent().missing_animations = {u"sad", u"restpose"};
    RunCharacterCommand(u"a@x", u"show");
    const auto request = LastRequests.Item(u"a@x");
    RunCharacterCommand(u"a@x", u"play", {}, u"sad");
    EXPECT_EQ(LastRequests.Item(u"a@x"), request);
    calls().clear();
    RunCharacterCommand(u"a@x", u"speak", u"still here");
    EXPECT_EQ(calls(), speakCalls(u"a@x", u"Still Here"));
    EXPECT_NE(LastRequests.Item(u"a@x"), request);
}

TEST_F(ActionScript, CharacterThatFailsAtEverythingStaysInTheCollections) {
    fakes::neighbours().gone = true;
    for (const char16_t* command : {u"speak", u"wav", u"listen", u"hide", u"show", u"play"}) {
        RunCharacterCommand(u"a@x", command, u"text", u"sad", u"laugh");
    }
    EXPECT_EQ(LoadedCharacters.Item(u"a@x"), character_);
    EXPECT_EQ(LastRequests.Item(u"a@x"), nullptr);
}

TEST_F(ActionScript, UnknownKeyDoesNothing) {
    RunCharacterCommand(u"b@x", u"speak", u"text");
    RunCharacterCommand(u"", u"speak", u"text");
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(LoadedCharacters.Count(), 1u);
}

TEST_F(ActionScript, KeyWithoutARequestDoesNothing) {
    LastRequests.Remove(u"a@x");
    RunCharacterCommand(u"a@x", u"speak", u"text");
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ActionScript, CommandMovesItsCharacterToTheEndButNotItsKey) {
    putOnStage(u"b@x");
    RunCharacterCommand(u"a@x", u"show");
    EXPECT_EQ(LoadedCharacters.KeyAt(2), u"a@x");
    EXPECT_EQ(LastRequests.KeyAt(2), u"a@x");
    EXPECT_EQ(LoadedCharacterKeys.KeyAt(1), u"a@x");
    EXPECT_EQ(LoadedCharacterKeys.KeyAt(2), u"b@x");
}

TEST_F(ActionScript, CharacterUnloadedInTheMiddleIsNotPutBack) {
    fakes::neighbours().during = [](std::string_view call) {
        if (call == "Speak" && LoadedCharacters.contains(u"a@x")) {
            LoadedCharacterKeys.Remove(u"a@x");
            LoadedCharacters.Remove(u"a@x");
            LastRequests.Remove(u"a@x");
        }
    };
    RunCharacterCommand(u"a@x", u"speak", u"text");
    EXPECT_EQ(LoadedCharacters.Count(), 0u);
    EXPECT_EQ(LastRequests.Count(), 0u);
}

TEST_F(ActionScript, EventInTheMiddleOfACommandCanUseTheSameCharacter) {
    fakes::neighbours().during = [](std::string_view call) {
        if (call == "Stop") {
            RunCharacterCommand(u"a@x", u"hide");
        }
    };
    RunCharacterCommand(u"a@x", u"speak", u"text");
    EXPECT_EQ(calls(), joined(std::vector{hideCall(u"a@x")}, speakCalls(u"a@x", u"Text")));
    EXPECT_EQ(LoadedCharacters.Count(), 1u);
}

TEST_F(ActionScript, EventWhenTheFormerRequestIsLetGoOfFindsTheCharacterAndCanTakeItAway) {
    struct Request : platform::AgentRequest {
        ~Request() override {
            EXPECT_EQ(LoadedCharacters.Count(), 1u);
            LoadedCharacters.Clear();
            LastRequests.Clear();
        }
    };
    LastRequests.Item(u"a@x") = std::make_shared<Request>();
    RunCharacterCommand(u"a@x", u"speak", u"text");
    EXPECT_EQ(LoadedCharacters.Count(), 0u);
    EXPECT_EQ(LastRequests.Count(), 0u);
}

TEST_F(ActionScript, IgnoredCharactersAreReadAfreshAndWithTheirCase) {
    IgnoredChars = u"aX\u00DF";
    EXPECT_EQ(StripIgnoredChars(u"aAxX\u00DFb"), u"Axb");
    IgnoredChars = u"";
    EXPECT_EQ(StripIgnoredChars(u"aAxX"), u"aAxX");
    IgnoredChars = std::u16string{u'\0', char16_t{0xD800}};
    EXPECT_EQ(StripIgnoredChars(std::u16string{u'a', u'\0', char16_t{0xD800}, u'b'}), u"ab");
}

} // namespace

} // namespace murmelix::test
