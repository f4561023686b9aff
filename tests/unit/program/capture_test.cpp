#include "tests/unit/program/monitor_test.h"

namespace murmelix::test {

namespace {

using Chunk = std::pair<std::u16string, std::u16string>; // key and text

class Capture : public MonitorTest {
  protected:
    Capture() { window_ = open(1, {u"Ann", u"Bob"}); }

    // What a tick hands on; nothing when it is idle.
    std::optional<Chunk> tick() {
        const auto captured = monitor_.CaptureNewText();
        return captured ? std::optional(Chunk{captured->key, captured->text}) : std::nullopt;
    }

    static std::optional<Chunk> chunk(const std::u16string& key, const std::u16string& text) {
        return Chunk{key, text};
    }

    std::shared_ptr<fakes::Window> window_;
};

TEST_F(Capture, TextThatWasThereBeforeIsNeverSpoken) {
    window_->say(u"Ann", u"old");
    startReading(*window_);
    EXPECT_EQ(monitor_.LastReadPosition, static_cast<std::int32_t>(window_->history.size()) + 2);
    EXPECT_EQ(tick(), std::nullopt);
    window_->say(u"Ann", u"new");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"new"));
    EXPECT_EQ(tick(), std::nullopt);
}

TEST_F(Capture, MessageIsSpokenByItsWritersCharacterWithItsLineEnd) {
    startReading(*window_);
    calls().clear();
    window_->say(u"Ann", u"hi");
    window_->say(u"Bob", u"yo");
    monitor_.ReadMoniter_Timer();
    EXPECT_THAT(spoken(), ElementsAre(u"ann@x: Hi\r\n"));
    monitor_.ReadMoniter_Timer();
    EXPECT_THAT(spoken(), ElementsAre(u"bob@x: Yo"));
}

TEST_F(Capture, NameAtTheSecondCharacterIdentifiesAtTheThirdDoesNot) {
    window_->history = u"";
    monitor_.LastReadPosition = 1;
    IsReadingConversation = 1;
    ReadingWindowHandle = 1;
    window_->history = u" Ann says:\r\none\r\n";
    EXPECT_EQ(tick(), chunk(u"ann@x", u"one\r\n"));
    window_->history += u"  Bob says:\r\ntwo\r\n";
    EXPECT_EQ(tick(), chunk(u"ann@x", u"  Bob says:\r\ntwo\r\n"));
}

TEST_F(Capture, LineWithoutItsEndHasAHeadOfFourCharacters) {
    struct Row {
        std::u16string line, key, text;
    };
    for (const Row& row : {Row{u"Bob: hello", u"bob@x", u"hello"}, Row{u"Bob:", u"bob@x", u""},
                           Row{u"Bob", u"bob@x", u""}, Row{u"  Bob", u"", u"  Bob"}, Row{u"Bo", u"", u"Bo"}}) {
        window_->history = u"";
        IsReadingConversation = 1;
        ReadingWindowHandle = 1;
        monitor_.currentUser.clear();
        monitor_.LastReadPosition = 1;
        window_->history = row.line;
        EXPECT_EQ(tick(), chunk(row.key, row.text)) << toUtf8(row.line);
    }
}

TEST_F(Capture, NameWithoutItsEmoticonsIsSoughtWithItsBlanks) {
    window_->contacts = {contact(u":)Ann"), contact(u"Bob")};
    startReading(*window_);
    window_->say(u"Ann", u"one");
    EXPECT_EQ(tick(), chunk(u"", u"\nAnn says:\r\none"));
    tick();
    window_->say(u" Ann", u"two");
    EXPECT_EQ(tick(), chunk(window_->contacts[0]->signin_name, u"two"));
}

TEST_F(Capture, EmptyMessageShowsAHiddenCharacter) {
    startReading(*window_);
    fakes::agent().characters.at(u"ann@x")->visible = false;
    calls().clear();
    window_->history += u"\r\nAnn says:\r\n";
    monitor_.ReadMoniter_Timer();
    EXPECT_THAT(calls(), ElementsAre(showCall(u"ann@x")));
}

TEST_F(Capture, OwnLinesAreTheUsers) {
    startReading(*window_);
    window_->say(u"Me", u"mine");
    EXPECT_EQ(tick(), chunk(u"me@x", u"mine"));
}

TEST_F(Capture, LineWithoutACrHasAHeadOfFourCharacters) {
    startReading(*window_);
    window_->history += u"\r\nAnn says hello"; // "\nAnn" is the head: her name opens it
    EXPECT_EQ(tick(), chunk(u"ann@x", u"says hello"));
    window_->contacts[0]->friendly_name = u"Anna";
    window_->history += u"\r\nAnna says hello"; // cut to "\nAnn"
    EXPECT_EQ(tick(), chunk(u"ann@x", u"\nAnna says hello"));
}

TEST_F(Capture, EmptyNameMatchesEveryHead) {
    window_->contacts[0]->friendly_name = u"";
    startReading(*window_);
    window_->say(u"Bob", u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
}

TEST_F(Capture, UnrecognisedLineAfterAnIdleTickHasAnEmptyKey) {
    startReading(*window_);
    window_->say(u"Ann", u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
    EXPECT_EQ(monitor_.currentUser, u"ann@x");
    EXPECT_EQ(tick(), std::nullopt);
    EXPECT_EQ(monitor_.currentUser, u"");
    window_->say(u"Zoe", u"hi");
    EXPECT_EQ(tick(), chunk(u"", u"\nZoe says:\r\nhi"));
}

TEST_F(Capture, WriterLineAloneHandsOnAnEmptyMessage) {
    startReading(*window_);
    calls().clear();
    window_->history += u"\r\nAnn says:\r\n";
    EXPECT_EQ(tick(), chunk(u"ann@x", u""));
    window_->history += u"\r\nBob says:\r\n";
    monitor_.ReadMoniter_Timer();
    EXPECT_THAT(spoken(), IsEmpty());
}

TEST_F(Capture, LongMessageIsReadTwoLinesATickByItsWriter) {
    startReading(*window_);
    window_->say(u"Ann", u"1\r\n2\r\n3\r\n4");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"1\r\n"));
    EXPECT_EQ(tick(), chunk(u"ann@x", u"2\r\n3\r\n"));
    EXPECT_EQ(tick(), std::nullopt); // one character more than the position is needed
    window_->history += u"5";
    EXPECT_EQ(tick(), chunk(u"", u"45"));
}

TEST_F(Capture, EmptyLineCountsAsALine) {
    startReading(*window_);
    window_->say(u"Ann", u"1\r\n2\r\n\r\n3\r\n4");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"1\r\n"));
    EXPECT_EQ(tick(), chunk(u"ann@x", u"2\r\n\r\n"));
    EXPECT_EQ(tick(), chunk(u"ann@x", u"3\r\n4"));
}

TEST_F(Capture, LineAfterAnOddNumberOfLinesTakesTheNextWriterLineAlong) {
    startReading(*window_);
    window_->say(u"Ann", u"1\r\n2");
    window_->say(u"Bob", u"yo");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"1\r\n"));
    EXPECT_EQ(tick(), chunk(u"ann@x", u"2\r\nBob says:\r\n"));
    EXPECT_EQ(tick(), chunk(u"ann@x", u"yo"));
}

TEST_F(Capture, PrefixOfANameCapturesItsLines) {
    window_->contacts[1]->friendly_name = u"Annabel";
    startReading(*window_);
    window_->say(u"Annabel", u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
}

TEST_F(Capture, NamesAreComparedWithoutCase) {
    startReading(*window_);
    window_->say(u"ANN", u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
}

TEST_F(Capture, NameShownWithoutItsEmoticonsIsRecognised) {
    window_->contacts[0]->friendly_name = u"Ann:)Lee";
    fakes::messenger().friendly_name = u"Me(Y)";
    startReading(*window_);
    window_->say(u"Ann Lee", u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
    window_->say(u"Me ", u"yo");
    EXPECT_EQ(tick(), chunk(u"me@x", u"yo"));
}

TEST_F(Capture, NameFurtherOnKeepsItsOtherFormFromBeingTried) {
    window_->contacts[0]->friendly_name = u":)";
    startReading(*window_);
    window_->history += u"\r\n x:) says:\r\nhi"; // "\n " would open with the blanked name's blank at the second place
    EXPECT_EQ(tick(), chunk(u"", u"\n x:) says:\r\nhi"));
    window_->history += u"\r\n x says:\r\nhi";
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
}

TEST_F(Capture, TickWithNothingReadSwitchesTheTimerOff) {
    timer_on_ = true;
    monitor_.currentUser = u"ann@x";
    monitor_.ReadMoniter_Timer();
    EXPECT_FALSE(timer_on_);
    EXPECT_EQ(monitor_.currentUser, u"");
}

TEST_F(Capture, MissingWindowReadsAsNothingNew) {
    startReading(*window_);
    window_->say(u"Ann", u"1\r\n2\r\n3");
    tick();
    ReadingWindowHandle = 99;
    EXPECT_EQ(tick(), std::nullopt);
    EXPECT_EQ(monitor_.currentUser, u"");
    EXPECT_TRUE(timer_on_);
}

TEST_F(Capture, HistoryThatCannotBeReadLosesNothing) {
    startReading(*window_);
    window_->say(u"Ann", u"1\r\n2\r\n3");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"1\r\n"));
    fakes::neighbours().failing = {"History"};
    EXPECT_EQ(tick(), std::nullopt);
    fakes::neighbours().failing = {};
    EXPECT_EQ(tick(), chunk(u"ann@x", u"2\r\n3"));
}

TEST_F(Capture, HistoryThatCannotBeReadAtTheStartIsNotReadAloudLater) {
    fakes::neighbours().failing = {"History"};
    startReading(*window_);
    window_->say(u"Ann", u"perhaps old");
    EXPECT_EQ(tick(), std::nullopt);
    fakes::neighbours().failing = {};
    EXPECT_EQ(tick(), std::nullopt);
    window_->say(u"Ann", u"new");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"new"));
}

TEST_F(Capture, FailureWhileTheWriterIsSoughtHandsOnTheWholeChunk) {
    startReading(*window_);
    for (const char* failing : {"Contacts", "Count", "Item", "FriendlyName", "SigninName"}) {
        tick();
        fakes::neighbours().failing = {failing};
        window_->say(u"Ann", u"hi");
        EXPECT_EQ(tick(), chunk(u"", u"\nAnn says:\r\nhi")) << failing;
    }
}

TEST_F(Capture, TickInsideOfATickDoesNothing) {
    startReading(*window_);
    calls().clear();
    window_->say(u"Ann", u"one");
    window_->say(u"Bob", u"two");
    fakes::neighbours().during = [&](std::string_view) { monitor_.ReadMoniter_Timer(); };
    for (int i = 0; i < 4; ++i) {
        monitor_.ReadMoniter_Timer();
    }
    EXPECT_THAT(spoken(), ElementsAre(u"ann@x: One\r\n", u"bob@x: Two"));
}

// Every call lets events in; each of these happens in the middle of each call of a tick.
class Interrupted : public Capture {
  protected:
    // Runs `event` inside the n-th call from now on; tells whether there was one.
    bool tickWith(int call_number, const std::function<void()>& event) {
        int number = 0;
        fakes::neighbours().during = [&](std::string_view) {
            if (++number == call_number) {
                event();
            }
        };
        monitor_.ReadMoniter_Timer();
        fakes::neighbours().during = nullptr;
        return number >= call_number;
    }
};

TEST_F(Interrupted, ReadingThatStopsIsNotSpoken) {
    for (int call = 1;; ++call) {
        startReading(*window_);
        window_->say(u"Ann", u"hello");
        calls().clear();
        const bool happened = tickWith(call, [&] { stopReading(); });
        const auto said = spoken();
        if (!happened) {
            EXPECT_GT(call, 5);
            EXPECT_THAT(said, ElementsAre(u"ann@x: Hello"));
            return;
        }
        // The speech itself may have been under way.
        EXPECT_LE(said.size(), 1u) << call;
        monitor_.ReadMoniter_Timer();
        EXPECT_THAT(spoken(), IsEmpty()) << call;
        EXPECT_EQ(LoadedCharacters.Count(), 0u) << call;
        EXPECT_FALSE(timer_on_);
    }
}

TEST_F(Interrupted, AnotherReadingIsNeitherSpokenWithTheOldTextNorLeftAtItsPosition) {
    const auto other = open(2, {u"Cy"});
    for (int call = 1;; ++call) {
        startReading(*window_);
        window_->say(u"Ann", u"hello");
        calls().clear();
        const bool happened = tickWith(call, [&] {
            stopReading();
            startReading(*other);
        });
        if (!happened) {
            return;
        }
        const auto so_far = spoken();
        EXPECT_LE(so_far.size(), 1u) << call;
        for (const std::u16string& speech : so_far) {
            EXPECT_EQ(speech, u"ann@x: Hello") << call; // under way already
        }
        EXPECT_EQ(monitor_.LastReadPosition, static_cast<std::int32_t>(other->history.size()) + 2) << call;
        EXPECT_EQ(monitor_.currentUser, u"") << call;
        other->say(u"Cy", u"greetings");
        monitor_.ReadMoniter_Timer();
        EXPECT_THAT(spoken(), ElementsAre(u"cy@x: Greetings")) << call;
        stopReading();
    }
}

TEST_F(Interrupted, SameWindowReadAgainSpeaksNothingTwice) {
    for (int call = 1;; ++call) {
        startReading(*window_);
        window_->say(u"Ann", u"hello");
        calls().clear();
        const bool happened = tickWith(call, [&] {
            stopReading();
            startReading(*window_);
        });
        if (!happened) {
            return;
        }
        EXPECT_LE(spoken().size(), 1u) << call;
        window_->say(u"Bob", u"next");
        monitor_.ReadMoniter_Timer();
        EXPECT_THAT(spoken(), ElementsAre(u"bob@x: Next")) << call;
        stopReading();
    }
}

TEST_F(Interrupted, StartInterruptedByAnotherStartKeepsTheLatersPosition) {
    const auto other = open(2, {u"Cy"});
    other->history = std::u16string(500, u'x');
    bool done = false;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "History" && !std::exchange(done, true)) {
            stopReading();
            startReading(*other);
        }
    };
    startReading(*window_);
    EXPECT_EQ(monitor_.LastReadPosition, 502);
}

TEST_F(Interrupted, MessagesThatArriveInTheMiddleOfATickAreReadLater) {
    startReading(*window_);
    calls().clear();
    window_->say(u"Ann", u"0");
    std::vector<std::u16string> expected{u"ann@x: 0"};
    std::vector<std::u16string> said;
    for (int call = 1; call <= 20; ++call) {
        bool written = false;
        tickWith(call, [&] {
            written = true;
            window_->say(u"Bob", toText(call));
        });
        if (written) {
            expected.push_back(u"bob@x: " + toText(call));
        }
        for (std::u16string speech : spoken()) {
            while (speech.ends_with(u"\r\n")) {
                speech.resize(speech.size() - 2);
            }
            said.push_back(speech);
        }
    }
    for (int i = 0; i < 20; ++i) {
        monitor_.ReadMoniter_Timer();
    }
    for (std::u16string speech : spoken()) {
        said.push_back(speech);
    }
    EXPECT_EQ(said, expected);
}

// One whole scenario with the n-th call to a neighbour failing, for every n until it passes undisturbed.
TEST_F(Capture, NoCallThatFailsLosesOrRepeatsAMessage) {
    for (int failing = 1;; ++failing) {
        fakes::agent().characters.clear();
        fakes::neighbours().calls = 0;
        fakes::neighbours().fail_at = 0;
        window_->history = u"Never give out your password.";
        startReading(*window_);
        fakes::neighbours().calls = 0;
        fakes::neighbours().fail_at = failing;
        std::vector<std::u16string> handed_on;
        const auto ticks = [&](int count) {
            for (int i = 0; i < count; ++i) {
                if (const auto captured = monitor_.CaptureNewText()) {
                    handed_on.push_back(captured->text);
                    monitor_.ReadMoniter_Timer(); // in between: must neither take nor repeat anything by itself
                }
            }
        };
        window_->say(u"Ann", u"one");
        ticks(3);
        window_->say(u"Bob", u"two");
        ticks(3);
        window_->say(u"Me", u"three");
        ticks(3);
        ticks(2);
        std::u16string all;
        for (const std::u16string& text : handed_on) {
            all += text + u"|";
        }
        for (const char16_t* word : {u"one", u"two", u"three"}) {
            const std::size_t found = all.find(word);
            EXPECT_NE(found, npos) << failing << ": " << toUtf8(word);
            EXPECT_EQ(all.find(word, found + 1), npos) << failing << ": " << toUtf8(word);
        }
        stopReading();
        if (fakes::neighbours().calls < failing) {
            EXPECT_GT(failing, 30);
            EXPECT_EQ(all, u"one|two|three|");
            return;
        }
    }
}

TEST_F(Capture, WholeRunSurvivesEveryCallThatFails) {
    for (int failing = 1;; ++failing) {
        fakes::agent().characters.clear();
        fakes::neighbours().calls = 0;
        fakes::neighbours().fail_at = failing;
        const auto window = open(1000 + failing, {u"Ann", u"Bob"});
        startReading(*window);
        calls().clear();
        window->say(u"Ann", u"hello :) brb");
        window->say(u"Bob", u"fine");
        for (int i = 0; i < 4; ++i) {
            monitor_.ReadMoniter_Timer();
        }
        window->contacts.push_back(contact(u"Cy"));
        fakes::messenger().events.OnIMWindowContactAdded(window->contacts[2], window);
        window->say(u"Cy", u"late");
        for (int i = 0; i < 3; ++i) {
            monitor_.ReadMoniter_Timer();
        }
        for (const char16_t* piece : {u"Hello ", u"Fine", u"Late"}) {
            const auto times = std::count_if(calls().begin(), calls().end(), [&](const AgentCall& call) {
                return call.call == u"Speak" && call.text && call.text->find(piece) != npos;
            });
            EXPECT_LE(times, 1) << failing;
        }
        fakes::messenger().events.OnIMWindowContactRemoved(window->contacts[0], window);
        fakes::messenger().events.OnMyStatusChange(0, 2);
        fakes::messenger().events.OnIMWindowDestroyed(window);
        if (IsReadingConversation) { // its end went unheard
            stopReading();
        }
        EXPECT_EQ(LoadedCharacters.Count(), 0u) << failing;
        EXPECT_EQ(LoadedCharacterKeys.Count(), 0u) << failing;
        if (fakes::neighbours().calls < failing) {
            EXPECT_GT(failing, 100);
            return;
        }
    }
}

TEST_F(Capture, HostileTextIsHandedOnAsItIs) {
    startReading(*window_);
    std::vector<std::u16string> texts{std::u16string(1, char16_t{0xD800}), std::u16string(3, u'\0'),
                                      u"\u202E\u05D0\u05D1\u05D2", u"\\Spd=9999\\\\Mrk=1\\",
                                      std::u16string(1 << 19, u'a')};
    for (const std::u16string& text : texts) {
        window_->say(u"Ann", text);
        const auto captured = tick();
        ASSERT_TRUE(captured.has_value());
        EXPECT_EQ(captured->first, u"ann@x");
        EXPECT_EQ(captured->second, text);
        monitor_.ReadMoniter_Timer();
    }
}

TEST_F(Capture, HugeNamesAreSoughtInHugeHeads) {
    window_->contacts[0]->friendly_name = std::u16string(9999, u'a') + u"b";
    window_->contacts[1]->friendly_name = std::u16string(9999, u'a') + u":)b";
    startReading(*window_);
    window_->history += u"\r\nx" + std::u16string(1 << 19, u'a') + u"\r\nhi";
    EXPECT_EQ(tick()->first, u"");
    window_->say(window_->contacts[0]->friendly_name, u"hi");
    EXPECT_EQ(tick(), chunk(u"ann@x", u"hi"));
    window_->say(std::u16string(9999, u'a') + u" b", u"hi");
    EXPECT_EQ(tick(), chunk(u"bob@x", u"hi"));
}

} // namespace

} // namespace murmelix::test
