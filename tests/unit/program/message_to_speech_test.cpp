#include "characters/message_to_speech.h"

#include <random>
#include <sstream>

#include "characters/emoticons.h"
#include "tests/conversations/chat_logs.h"
#include "tests/unit/program/described_speech.h"
#include "tests/unit/program/program_test.h"

namespace murmelix::test {

namespace {

using namespace std::string_literals;

const std::u16string piece_separator = u" .0%// ";

class Speech : public ProgramTest {
  protected:
    Speech() { character_ = putOnStage(u"a@x"); }

    static std::vector<AgentCall> said(const std::u16string& text) {
        calls().clear();
        SpeakMessage(u"a@x", text);
        return calls();
    }

    static std::vector<AgentCall> justSpeak(const std::u16string& text) { return speakCalls(u"a@x", text); }

    std::shared_ptr<fakes::Character> character_;
};

TEST_F(Speech, BrbIsSpokenInFullThenTheCharacterHides) {
    EXPECT_EQ(said(u"brb"), joined(justSpeak(u"Be Right Back"), std::vector{hideCall(u"a@x")}));
}

TEST_F(Speech, BeRightBackTypedInFullHidesToo) {
    EXPECT_EQ(said(u"I'll BE RIGHT BACK."), joined(justSpeak(u"I'll Be Right Back."), std::vector{hideCall(u"a@x")}));
}

TEST_F(Speech, LolPlaysTheLaughAlone) {
    EXPECT_EQ(said(u"lol"), soundCalls(u"a@x", u"laugh"));
}

TEST_F(Speech, LolInBracketsIsAWordToo) {
    AutoIgnoreChars = 0;
    EXPECT_EQ(said(u"(lol)"), joined(justSpeak(u"("), soundCalls(u"a@x", u"laugh"), justSpeak(u")")));
}

TEST_F(Speech, LolIsNothingWithEmoticonsOff) {
    PlayReadEmoticon = 0;
    EXPECT_THAT(said(u"lol"), IsEmpty());
}

TEST_F(Speech, LowerCaseSInBracketsIsSpoken) {
    EXPECT_EQ(said(u"(s)"), justSpeak(u"S"));
}

TEST_F(Speech, UpperCaseSInBracketsSnores) {
    EXPECT_EQ(said(u"(S)"), soundCalls(u"a@x", u"snore"));
}

TEST_F(Speech, GrinInTheMiddleOfALine) {
    EXPECT_EQ(said(u"hi :D there"), joined(justSpeak(u"Hi "), std::vector{playCall(u"a@x", u"pleased")},
                                           soundCalls(u"a@x", u"evil-laugh"), justSpeak(u" There")));
}

TEST_F(Speech, IcInsideOfAWordStays) {
    EXPECT_EQ(said(u"picnic"), justSpeak(u"Picnic"));
}

TEST_F(Speech, IcBeforeAnExclamationMarkIsReplaced) {
    EXPECT_EQ(said(u"ic!"), justSpeak(u"I See!"));
}

TEST_F(Speech, LinkKeepsItsWww) {
    AutoIgnoreChars = 0;
    EXPECT_EQ(said(u"see http://www.xxx.org wwww"), justSpeak(u"See Http://www.x.org W"));
    EXPECT_EQ(said(u"HTTP://WWW.a"), justSpeak(u"Http://www.a"));
}

TEST_F(Speech, PlaceholderTypedByAContactBecomesTheLinkStart) {
    AutoIgnoreChars = 0;
    EXPECT_EQ(said(u"<%VOXIL%URL%TAG%>a"), justSpeak(u"Http://www.a"));
    EXPECT_EQ(said(u"<%voxil%url%tag%>a"), justSpeak(u"<%voxil%url%tag%>a"));
}

TEST_F(Speech, RunsStayWithCorrectionOff) {
    AutoCorrectText = 0;
    EXPECT_EQ(said(u"sooo!!!"), justSpeak(u"Sooo!!!"));
}

TEST_F(Speech, HiddenCharacterIsShownFirst) {
    character_->visible = false;
    EXPECT_EQ(said(u"hi"), joined(std::vector{showCall(u"a@x")}, justSpeak(u"Hi")));
}

TEST_F(Speech, OthersListenToEverySpokenPiece) {
    putOnStage(u"b@x");
    putOnStage(u"c@x");
    const auto listening = joined(listenCalls(u"b@x"), listenCalls(u"c@x"));
    EXPECT_EQ(said(u"a (r) b"),
              joined(listening, justSpeak(u"A "), justSpeak(u"Rainbow"), listening, justSpeak(u" B")));
}

TEST_F(Speech, NobodyListensUnlessAsked) {
    putOnStage(u"b@x");
    SpeakMarkedMessage(u"hi", u"a@x");
    EXPECT_EQ(calls(), justSpeak(u"Hi"));
}

TEST_F(Speech, UnknownWriterLeavesTheOthersListening) {
    SpeakMessage(u"", u"hi");
    EXPECT_EQ(calls(), listenCalls(u"a@x"));
}

TEST_F(Speech, ContactWithoutACharacterListensToNothing) {
    LoadedCharacterKeys.Add(u"b@x", u"b@x");
    EXPECT_EQ(said(u"hi"), justSpeak(u"Hi"));
}

TEST_F(Speech, EmptyMessageIsNothing) {
    EXPECT_THAT(said(u""), IsEmpty());
    EXPECT_THAT(said(u"   "), IsEmpty());
}

TEST_F(Speech, LineBreakAtTheEndIsKept) {
    EXPECT_EQ(said(u" hi \r\n"), justSpeak(u"Hi \r\n"));
}

TEST_F(Speech, EveryEmoticonDoesWhatItsRowSays) {
    AutoIgnoreChars = 0;
    for (const auto& [name, commands] : emoticonCommands()) {
        // "lol" is put in brackets where it stands as a word, in brackets or not.
        const std::u16string typed = name == u"(s)" ? u"(S)" : name == u"(lol)" ? u"lol" : name;
        EXPECT_EQ(said(typed), callsOf(u"a@x", commands)) << toUtf8(name);
    }
}

TEST_F(Speech, MarkTypedByAContactIsTakenForOne) {
    EXPECT_EQ(said(u"Emot+Hello"), justSpeak(u"Hello"));
    EXPECT_EQ(said(u"a .0%// Emot+:x .0%// b"), joined(justSpeak(u"A"), justSpeak(u":x"), justSpeak(u"B")));
    EXPECT_EQ(said(u"Emot+(S)"), joined(justSpeak(u""), soundCalls(u"a@x", u"snore")));
    EXPECT_EQ(said(u"emot+Hello"), justSpeak(u"Emot+hello"));
}

TEST_F(Speech, SeparatorTypedByAContactParts) {
    EXPECT_EQ(said(u"a .0%// b"), joined(justSpeak(u"A"), justSpeak(u"B")));
    EXPECT_THAT(said(u" .0%// "), testing::SizeIs(3)); // trimmed, it parts no more
}

TEST_F(Speech, RestOfAMessageIsNotSpokenByALaterCharacter) {
    // In the middle of the message reading is stopped and started again.
    bool done = false;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Speak" && !done) {
            done = true;
            LoadedCharacters.Remove(u"a@x");
            LastRequests.Remove(u"a@x");
            LoadedCharacterKeys.Remove(u"a@x");
            putOnStage(u"a@x", u"Other");
        }
    };
    EXPECT_EQ(said(u"one :) two"), justSpeak(u"One "));
}

TEST_F(Speech, NothingOfAMessageIsDoneByALaterCharacter) {
    putOnStage(u"b@x");
    const auto takeOff = [] {
        LoadedCharacters.Remove(u"a@x");
        LastRequests.Remove(u"a@x");
        LoadedCharacterKeys.Remove(u"a@x");
    };
    takeOff();
    for (const char16_t* message : {u"one ;) two (SNIFF) brb", u"(?)"}) {
        for (int number = 1, calls_made = number; calls_made >= number; ++number) {
            putOnStage(u"a@x", u"First")->visible = false;
            fakes::neighbours().calls = 0;
            fakes::neighbours().during = [&](std::string_view) {
                if (fakes::neighbours().calls == number) {
                    takeOff();
                    putOnStage(u"a@x", u"Later")->id = u"later";
                }
            };
            said(message);
            fakes::neighbours().during = nullptr;
            calls_made = fakes::neighbours().calls;
            for (const AgentCall& call : calls()) {
                EXPECT_NE(call.key, u"later") << toUtf8(message) << ", at call " << number;
            }
            calls().clear();
            takeOff();
        }
    }
}

TEST_F(Speech, LaterCharacterDoesNotHideForAnEarliersMessage) {
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Speak") {
            LoadedCharacters.Remove(u"a@x");
            LastRequests.Remove(u"a@x");
            LoadedCharacterKeys.Remove(u"a@x");
            putOnStage(u"a@x", u"Other");
        }
    };
    EXPECT_EQ(said(u"brb"), justSpeak(u"Be Right Back"));
}

TEST(ReplaceWord, ReplacesWholeWordsWithoutCase) {
    EXPECT_EQ(ReplaceWord(u"BRB, brb.brb", u"brb", u"be right back"), u"be right back, be right back.be right back");
    EXPECT_EQ(ReplaceWord(u"brb2 xbrb brbx \u00E9brb", u"brb", u"X"), u"brb2 xbrb brbx \u00E9X");
    EXPECT_EQ(ReplaceWord(u"a\r\nbrb\r\nc", u"brb", u"X"), u"a\r\nX\r\nc");
    EXPECT_EQ(ReplaceWord(u"lollol lol", u"lol", u"(lol)"), u"lollol (lol)");
}

TEST(ReplaceWord, TrimsBlanksAlone) {
    EXPECT_EQ(ReplaceWord(u"  a  ", u"brb", u"X"), u"a");
    EXPECT_EQ(ReplaceWord(u" \ta\r\n ", u"brb", u"X"), u"\ta\r\n");
    EXPECT_EQ(ReplaceWord(u"", u"brb", u"X"), u"");
    EXPECT_EQ(ReplaceWord(u" a ", u"", u"X"), u"a");
}

TEST(CollapseRepeats, MakesRunsOfThreeAndMoreSingle) {
    EXPECT_EQ(CollapseRepeats(u"sooo"), u"so");
    EXPECT_EQ(CollapseRepeats(u"!!!!"), u"!");
    EXPECT_EQ(CollapseRepeats(u"NOOO"), u"No");
    EXPECT_EQ(CollapseRepeats(u"AaAbBb"), u"ab");
    EXPECT_EQ(CollapseRepeats(u"aabb!!"), u"aabb!!");
}

TEST(CollapseRepeats, KnowsItsFortyCharacters) {
    for (const char16_t c : u"abcdefghijklmnopqrstuvwxyz!?/\\*&^%$#@:\";"s) {
        EXPECT_EQ(CollapseRepeats(std::u16string(5, c)), std::u16string(1, c));
    }
    for (const char16_t c : u"0123456789.,-+=()[]{}<>|~_' \r\n\u00E9"s) {
        EXPECT_EQ(CollapseRepeats(std::u16string(5, c)), std::u16string(5, c));
    }
}

TEST(MarkEmoticons, SpellsTheMarkAsTheListDoes) {
    EXPECT_EQ(MarkEmoticons(u":D", true, u"|"), u"||Emot+:d||");
    EXPECT_EQ(MarkEmoticons(u"(LOL)", true, u"|"), u"||Emot+(lol)||");
    EXPECT_EQ(MarkEmoticons(u"a:-oB", true, u"|"), u"|a|Emot+:-O|B|");
}

TEST(MarkEmoticons, BlanksTheFirstTwoListsOnly) {
    EXPECT_EQ(MarkEmoticons(u"Ann:)(Y)(6)(lol)", false), u"Ann   (lol)");
    EXPECT_EQ(MarkEmoticons(u"(s)(S)", false), u"(s) ");
}

TEST(MarkEmoticons, EarlierEntryWinsWhereTwoOverlap) {
    EXPECT_EQ(MarkEmoticons(u":(l)", false), u": ");   // list 1 before list 2
    EXPECT_EQ(MarkEmoticons(u":-(h)", false), u":- "); // (h) before :-(
    EXPECT_EQ(MarkEmoticons(u":(a)", false), u" a)");  // :( before (a)
    EXPECT_EQ(MarkEmoticons(u":(lol)", true, u"|"), u"||Emot+:(|lol)|");
}

// Against the plain form of every step.

class DescribedSpeech : public ProgramTest {
  protected:
    DescribedSpeech() {
        putOnStage(u"a@x");
        putOnStage(u"b@x");
    }

    static void compare(const std::u16string& text) {
        ASSERT_EQ(CollapseRepeats(text), plainCollapseRepeats(text));
        ASSERT_EQ(MarkEmoticons(text, true, piece_separator), plainMarkEmoticons(text, true, piece_separator));
        ASSERT_EQ(MarkEmoticons(text, false), plainMarkEmoticons(text, false, u""));
        for (const char16_t* word : {u"brb", u"lol", u"ic", u"-", u"aa"}) {
            ASSERT_EQ(ReplaceWord(text, word, u"X y"), plainReplaceWord(text, word, u"X y"));
        }
        calls().clear();
        LoadedCharacters.Item(u"a@x");
        fakes::agent().characters[u"a@x"]->visible = true;
        SpeakMessage(u"a@x", text);
        ASSERT_EQ(calls(), plainSpeakMessage(u"a@x", text, {u"b@x"}));
    }
};

TEST_F(DescribedSpeech, IsKeptOnTheChatLogs) {
    std::size_t lines = 0;
    for (const auto& file : chatLogs()) {
        std::istringstream log(contentsOf(file));
        for (std::string line; std::getline(log, line); ++lines) {
            const std::size_t message = line.find("> ");
            ASSERT_NO_FATAL_FAILURE(compare(fromUtf8(message == std::string::npos ? line : line.substr(message + 2))))
                << file << ": " << line;
        }
    }
    EXPECT_GT(lines, 3000u);
}

TEST_F(DescribedSpeech, IsKeptOnRandomText) {
    std::vector<std::u16string> fragments{
        u"brb",
        u"LOL",
        u"ic",
        u"Ic",
        u"be right back",
        u"http://www.",
        u"HTTP://WWW.",
        u"<%VOXIL%URL%TAG%>",
        u"<%VOXIL",
        u"%TAG%>",
        u" .0%// ",
        u" .0%//",
        u".0%// ",
        u"//",
        u"Emot+",
        u"emot+",
        u" ",
        u"  ",
        u"\r\n",
        u"\r",
        u"\n",
        u"\t",
        u"a",
        u"A",
        u"aa",
        u"aaa",
        u"aAa",
        u"ww",
        u"!",
        u"!!",
        u"!!!!",
        u":",
        u"::",
        u":::",
        u";",
        u";;;",
        u":-",
        u":'",
        u"(",
        u")",
        u"((",
        u"-",
        u"--",
        u"0",
        u"9",
        u"\u00E9",
        u"\u00C9\u00C9\u00C9",
        u"\u0130",
        u"\u212A\u212A\u212A",
        u"\u05D0\u05D1",
        u"\U0001F600",
        u"\\",
        u"\\\\\\",
        u"\\Spd=80\\",
        u"#",
        u"###",
        u"%",
        u"%%%",
        u"x",
        u"l",
        u"o",
        u"s",
    };
    fragments.push_back(std::u16string(1, u'\0'));
    fragments.push_back(std::u16string(3, u'\0'));
    fragments.push_back(std::u16string(1, char16_t{0xD83D}));
    fragments.push_back(std::u16string(3, char16_t{0xDE00}));
    std::vector<std::u16string> emoticons;
    for (const auto& row : emoticonCommands()) {
        emoticons.push_back(row.first);
    }

    std::mt19937 random(20260101);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (int round = 0; round < 2000; ++round) {
        std::u16string text;
        const std::size_t length = below(20);
        for (std::size_t i = 0; i < length; ++i) {
            std::u16string part =
                below(3) == 0 ? emoticons[below(emoticons.size())] : fragments[below(fragments.size())];
            if (below(3) == 0) {
                for (char16_t& unit : part) {
                    unit = toUpper(unit);
                }
            }
            if (below(8) == 0) {
                part.erase(below(part.size() + 1));
            }
            text += part;
        }
        AutoCorrectText = below(4) != 0;
        AutoIgnoreChars = below(2) != 0;
        PlayReadEmoticon = below(4) != 0;
        IgnoredChars = below(2) ? u"^#$/\\()" : u"a:S \u00E9";
        ASSERT_NO_FATAL_FAILURE(compare(text)) << "round " << round << ": " << toUtf8(text);
    }
}

TEST_F(DescribedSpeech, IsKeptOnEveryPairOfEmoticons) {
    for (const auto& [first, first_commands] : emoticonCommands()) {
        for (const auto& [second, second_commands] : emoticonCommands()) {
            std::u16string overlapped = first;
            overlapped.pop_back();
            for (const std::u16string& text : {first + second, overlapped + second, first + second.substr(1)}) {
                ASSERT_EQ(MarkEmoticons(text, true, piece_separator), plainMarkEmoticons(text, true, piece_separator))
                    << toUtf8(text);
                ASSERT_EQ(MarkEmoticons(text, false), plainMarkEmoticons(text, false, u"")) << toUtf8(text);
            }
        }
    }
}

TEST_F(Speech, LineOfAQuarterMegabyteIsReadWhatever) {
    const std::size_t units = 1 << 17;
    for (const std::u16string& part :
         {u"a"s, u"aaab"s, u":-"s, u"(lol)"s, u"brb "s, u" .0%// "s, u":(l)"s, std::u16string(1, char16_t{0xD800})}) {
        std::u16string text;
        while (text.size() < units) {
            text += part;
        }
        EXPECT_THAT(said(text), testing::Not(IsEmpty()));
        character_->visible = true;
    }
}

} // namespace

} // namespace murmelix::test
