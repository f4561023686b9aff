#include "companions/messenger/chat/replay.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/conversations/chat_logs.h"

namespace messenger_client {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Script scriptOf(std::string_view log, const ReplayOptions& options = {}) {
    return makeScript(parseChatLog(log), options);
}

// One line a step: "person kind text".
std::vector<std::string> told(const Script& script) {
    static const std::map<Step::Kind, std::string> kinds{{Step::Kind::joins, "joins"},
                                                         {Step::Kind::leaves, "leaves"},
                                                         {Step::Kind::renamed, "renamed"},
                                                         {Step::Kind::says, "says"}};
    std::vector<std::string> lines;
    for (const Step& step : script.steps) {
        lines.push_back(murmelix::toUtf8(script.people[step.person].signin) + " " + kinds.at(step.kind) +
                        (step.text.empty() ? "" : " " + murmelix::toUtf8(step.text)));
    }
    return lines;
}

std::vector<double> times(const Script& script) {
    std::vector<double> all;
    for (const Step& step : script.steps) {
        all.push_back(step.at);
    }
    return all;
}

TEST(Replay, KeepsTheMostFrequentWritersInOrderOfAppearance) {
    const Script script = scriptOf("[00:00] <rare> 1\n[00:00] <two> 1\n[00:00] <three> 1\n[00:00] <three> 2\n"
                                   "[00:00] <two> 2\n[00:00] <three> 3\n",
                                   {.participants = 2});
    ASSERT_THAT(script.people, SizeIs(2));
    EXPECT_EQ(script.people[0].signin, u"two@messenger.example");
    EXPECT_EQ(script.people[0].messages, 2U);
    EXPECT_EQ(script.people[1].signin, u"three@messenger.example");
    EXPECT_THAT(told(script), ElementsAre("two@messenger.example says 1", "three@messenger.example says 1",
                                          "three@messenger.example says 2", "two@messenger.example says 2",
                                          "three@messenger.example says 3"));
}

TEST(Replay, OfEquallyFrequentWritersTheEarlierStays) {
    const Script script = scriptOf("[00:00] <a> 1\n[00:00] <b> 1\n[00:00] <c> 1\n", {.participants = 2});
    ASSERT_THAT(script.people, SizeIs(2));
    EXPECT_EQ(script.people[0].friendly, u"a");
    EXPECT_EQ(script.people[1].friendly, u"b");
}

TEST(Replay, ComingAndGoingAddAndRemove) {
    const Script script = scriptOf("[00:00] <a> 1\n=== b has joined #r\n[00:01] <b> 2\n=== b has quit\n"
                                   "=== b has joined #r\n=== nobody has joined #r\n=== a has left #r\n");
    ASSERT_THAT(script.people, SizeIs(2));
    EXPECT_TRUE(script.people[0].present);
    EXPECT_FALSE(script.people[1].present) << "who is first seen joining is not there before";
    EXPECT_THAT(told(script),
                ElementsAre("a@messenger.example says 1", "b@messenger.example joins", "b@messenger.example says 2",
                            "b@messenger.example leaves", "b@messenger.example joins", "a@messenger.example leaves"));
}

TEST(Replay, WhoSpeaksAfterLeavingIsBackFirst) {
    EXPECT_THAT(told(scriptOf("[00:00] <a> 1\n=== a has quit\n=== a has quit\n[00:00] <a> 2\n=== a has joined #r\n")),
                ElementsAre("a@messenger.example says 1", "a@messenger.example leaves", "a@messenger.example joins",
                            "a@messenger.example says 2"));
}

TEST(Replay, RenamesKeepThePerson) {
    const Script script = scriptOf("[00:00] <a> 1\n=== a is now known as z\n[00:00] <z> 2\n=== z is now known as a\n"
                                   "[00:00] <a> 3\n[00:00]  * a waves\n");
    ASSERT_THAT(script.people, SizeIs(1));
    EXPECT_EQ(script.people[0].friendly, u"a");
    EXPECT_EQ(script.people[0].messages, 4U);
    EXPECT_THAT(told(script), ElementsAre("a@messenger.example says 1", "a@messenger.example renamed z",
                                          "a@messenger.example says 2", "a@messenger.example renamed a",
                                          "a@messenger.example says 3", "a@messenger.example says * a waves"));
}

TEST(Replay, ARenameToATakenNameSendsItsBearerAway) {
    EXPECT_THAT(told(scriptOf("[00:00] <b> 1\n[00:00] <b_> 2\n=== b_ is now known as b\n[00:00] <b> 3\n")),
                ElementsAre("b@messenger.example says 1", "b_@messenger.example says 2", "b@messenger.example leaves",
                            "b_@messenger.example renamed b", "b_@messenger.example says 3"));
}

TEST(Replay, SigninNamesAreUnlikeWhateverTheNick) {
    const Script script = scriptOf("[00:00] <A b> 1\n[00:00] <|x|> 1\n[00:00] <_x_> 1\n[00:00] <X> 1\n[00:00] <x> 1\n",
                                   {.participants = 9});
    std::vector<std::u16string> names;
    for (const Person& person : script.people) {
        names.push_back(person.signin);
    }
    EXPECT_THAT(names, ElementsAre(u"a_b@messenger.example", u"_x_@messenger.example", u"_x_2@messenger.example",
                                   u"x@messenger.example", u"x2@messenger.example"));
}

TEST(Replay, EndsAfterTheWantedMessages) {
    EXPECT_THAT(told(scriptOf("[00:00] <a> 1\n[00:00] <b> 2\n=== b has quit\n[00:00] <a> 3\n", {.messages = 2})),
                ElementsAre("a@messenger.example says 1", "b@messenger.example says 2"));
}

TEST(Replay, EmptyMessagesAreDropped) {
    const Script script = scriptOf("[00:00] <a> \n[00:00] <b> 1\n");
    ASSERT_THAT(script.people, SizeIs(1));
    EXPECT_THAT(told(script), ElementsAre("b@messenger.example says 1"));
}

TEST(Replay, MessagesOfAMinuteAreSpreadOverIt) {
    EXPECT_THAT(times(scriptOf("[10:00] <a> 1\n[10:00] <b> 2\n=== b has quit\n[10:00] <a> 3\n[10:00] <a> 4\n")),
                ElementsAre(DoubleNear(0, 1e-9), DoubleNear(15, 1e-9), DoubleNear(15.5, 1e-9), DoubleNear(30, 1e-9),
                            DoubleNear(45, 1e-9)));
}

TEST(Replay, MinutesAreNotBoundToThirtyTwoBits) {
    constexpr long long late = 5'000'000'000;
    const Script script = makeScript({{LogEvent::Kind::says, late, u"a", u"1"},
                                      {LogEvent::Kind::says, late, u"a", u"2"},
                                      {LogEvent::Kind::says, late + 1, u"a", u"3"}},
                                     {.speed = 4});
    EXPECT_THAT(times(script), ElementsAre(0, DoubleNear(5, 1e-3), DoubleNear(10, 1e-3)));
}

TEST(Replay, AHundredThousandNicksThatLookAlikeGetTheirNamesAtOnce) {
    std::vector<LogEvent> log;
    constexpr std::size_t people = 100'000;
    for (std::size_t i = 0; i < people; ++i) {
        std::u16string nick;
        for (std::size_t rest = i; nick.size() < 6; rest /= 10) {
            nick += static_cast<char16_t>(0x4E00 + rest % 10);
        }
        log.push_back({LogEvent::Kind::says, 0, nick, u"x"});
    }
    const Script script = makeScript(log, {.participants = people});
    ASSERT_THAT(script.people, SizeIs(people));
    EXPECT_EQ(script.people.front().signin, u"______@messenger.example");
    EXPECT_EQ(script.people.back().signin, u"______100000@messenger.example");
}

TEST(Replay, LongGapsAreCutToTwentySecondsAtSpeedOne) {
    const auto log = "[10:00] <a> 1\n[10:05] <a> 2\n[23:59] <a> 3\n[00:00] <a> 4\n";
    EXPECT_THAT(times(scriptOf(log)), ElementsAre(0, DoubleNear(20, 1e-9), DoubleNear(40, 1e-9), DoubleNear(60, 1e-9)));
    EXPECT_THAT(times(scriptOf(log, {.speed = 10})),
                ElementsAre(0, DoubleNear(2, 1e-9), DoubleNear(4, 1e-9), DoubleNear(6, 1e-9)));
    EXPECT_THAT(times(scriptOf(log, {.speed = 0})), ElementsAre(0, 0, 0, 0));
}

TEST(Replay, NobodyLeavesOrIsRenamedWithinHalfASecondOfTheirLastWords) {
    const auto log = "[10:00] <a> 1\n=== a has quit\n[10:00] <b> 2\n=== b is now known as c\n[10:00] <c> 3\n";
    EXPECT_THAT(times(scriptOf(log, {.speed = 1000})),
                ElementsAre(0, DoubleNear(0.5, 1e-9), DoubleNear(0.5, 1e-9), DoubleNear(1, 1e-9), DoubleNear(1, 1e-9)));
    EXPECT_THAT(times(scriptOf(log, {.speed = 0})), ElementsAre(0, 0, 0, 0, 0));
}

TEST(Replay, StepsComeOnceWhenTheyAreDue) {
    Replay replay(scriptOf("[10:00] <a> 1\n[10:00] <a> 2\n[10:00] <a> 3\n").steps);
    EXPECT_FALSE(replay.done());
    EXPECT_THAT(replay.advance(-1), IsEmpty());
    EXPECT_THAT(replay.advance(0), SizeIs(1));
    EXPECT_THAT(replay.advance(0), IsEmpty());
    EXPECT_DOUBLE_EQ(replay.nextAt(), 20);
    EXPECT_THAT(replay.advance(19.9), IsEmpty());
    EXPECT_THAT(replay.advance(500), SizeIs(2));
    EXPECT_TRUE(replay.done());
    EXPECT_THAT(replay.advance(1000), IsEmpty());
}

TEST(Replay, AnEmptyLogHasNobody) {
    const Script script = scriptOf("");
    EXPECT_THAT(script.people, IsEmpty());
    EXPECT_TRUE(Replay(script.steps).done());
}

class RealLogs : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(RealLogs, AreReplayedWhole) {
    const std::string bytes = murmelix::test::contentsOf(GetParam());
    ASSERT_NE(bytes, "") << GetParam();
    const auto log = parseChatLog(bytes);

    // Counted from the lines themselves: every line that looks like a message is one.
    const std::regex message(R"(\[([01][0-9]|2[0-3]):[0-5][0-9]\] (<[^>]+>| *\* [^ ])[\s\S]*)");
    std::istringstream lines(bytes);
    std::size_t messages = 0;
    for (std::string line; std::getline(lines, line);) {
        // What a message starts with fits into the longest name; the rest may be as long as it likes.
        messages += std::regex_match(line.substr(0, 80), message);
    }
    EXPECT_EQ(std::count_if(
                  log.begin(), log.end(),
                  [](const LogEvent& e) { return e.kind == LogEvent::Kind::says || e.kind == LogEvent::Kind::acts; }),
              static_cast<long>(messages));

    const Script all = makeScript(log, {.participants = 100000});
    std::size_t said = 0;
    for (const Step& step : all.steps) {
        said += step.kind == Step::Kind::says;
    }
    std::size_t of_people = 0;
    for (const Person& person : all.people) {
        of_people += person.messages;
    }
    EXPECT_EQ(said, of_people);
    EXPECT_GE(said + 100, messages);
    EXPECT_TRUE(
        std::is_sorted(all.steps.begin(), all.steps.end(), [](const Step& a, const Step& b) { return a.at < b.at; }));

    const Script three = makeScript(log, {.participants = 3, .messages = 20, .speed = 10});
    ASSERT_THAT(three.people, SizeIs(3));
    std::vector<bool> present;
    for (const Person& person : three.people) {
        present.push_back(person.present);
    }
    std::size_t twenty = 0;
    for (const Step& step : three.steps) {
        switch (step.kind) {
        case Step::Kind::joins:
            EXPECT_FALSE(present[step.person]);
            present[step.person] = true;
            break;
        case Step::Kind::leaves:
            EXPECT_TRUE(present[step.person]);
            present[step.person] = false;
            break;
        case Step::Kind::says:
            EXPECT_TRUE(present[step.person]) << "only who is there speaks";
            ++twenty;
            break;
        case Step::Kind::renamed:
            break;
        }
    }
    EXPECT_EQ(twenty, 20U);
    EXPECT_LE(three.steps.back().at, 2.0 * static_cast<double>(three.steps.size()));
}

INSTANTIATE_TEST_SUITE_P(Days, RealLogs, testing::ValuesIn(murmelix::test::chatLogs()));

TEST(RealLogs, MostFrequentWritersOfADay) {
    const std::map<std::filesystem::path, std::vector<std::u16string>> writers{
        {"busy-day.txt", {u"Lena", u"thistle", u"Otis"}},
        {"ubuntu-2008-04-27.txt", {u"maco", u"Pelo", u"mouseclone"}},
    };
    for (const auto& file : murmelix::test::chatLogs()) {
        const auto known = writers.find(file.filename());
        if (known == writers.end()) {
            continue;
        }
        std::vector<std::u16string> names;
        for (const Person& person : makeScript(parseChatLog(murmelix::test::contentsOf(file)), {}).people) {
            names.push_back(person.friendly);
        }
        EXPECT_THAT(names, testing::UnorderedElementsAreArray(known->second)) << file;
    }
}

} // namespace

} // namespace messenger_client
