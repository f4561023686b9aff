// Lines that go in, and what is told of them.
#include "companions/messenger/reading/reader.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::reading {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Line line(unsigned long long number, const std::u16string& person, const std::u16string& text) {
    Line made;
    made.number = number;
    made.id = u"id" + murmelix::toText(static_cast<long long>(number));
    made.person = person + u"@net";
    made.name = person;
    made.text = text;
    return made;
}

struct ReaderTest : testing::Test {
    Rules rules;
    Reader reader;

    // "+ann", "ann: hello"; what is told until then.
    std::vector<std::string> told(long long end) {
        std::vector<std::string> all;
        long long now = 0;
        while (reader.dueAt() && std::max(*reader.dueAt(), now) <= end) {
            now = std::max(*reader.dueAt(), now);
            const auto reading = reader.next(now);
            if (!reading) {
                ADD_FAILURE() << "it was due at " << now;
                break;
            }
            for (const SeatChange& change : reading->seats) {
                all.push_back((change.kind == SeatChange::Kind::added     ? "+"
                               : change.kind == SeatChange::Kind::removed ? "-"
                                                                          : "=") +
                              murmelix::toUtf8(change.seat.name));
            }
            if (reading->has_line) {
                all.push_back(murmelix::toUtf8(reading->mine ? u"I" : reading->speaker.name) + "> " +
                              murmelix::toUtf8(reading->text));
            }
        }
        return all;
    }
};

TEST_F(ReaderTest, SeatsAreToldBeforeTheLine) {
    EXPECT_EQ(reader.arrived(line(1, u"ann", u"hello 🍕😂"), 1'000), std::nullopt);
    auto reading = reader.next(1'000);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->seats, (SeatChanges{{SeatChange::Kind::added, {u"ann@net", u"ann"}}}));
    EXPECT_FALSE(reading->has_line);
    EXPECT_FALSE(reader.next(1'399));
    EXPECT_EQ(reader.dueAt(), 1'400);
    reading = reader.next(1'400);
    ASSERT_TRUE(reading);
    EXPECT_TRUE(reading->has_line);
    EXPECT_THAT(reading->seats, IsEmpty());
    EXPECT_EQ(reading->text, u"hello [pizza] (lol)");
    EXPECT_EQ(reading->speaker, (Seat{u"ann@net", u"ann"}));
    EXPECT_EQ(reading->number, 1u);
    EXPECT_EQ(reader.dueAt(), std::nullopt);
}

// "ann" is being spoken for ten seconds, of 170 units, and then comes the pause.
struct ComingTest : ReaderTest {
    ComingTest() {
        const std::u16string text =
            u"a line of the usual words that takes whoever has to speak it a while, and so long that "
            u"there is time for somebody else to come on the stage and to look round before that.";
        EXPECT_EQ(text.size(), 170u);
        reader.arrived(line(1, u"ann", text), 1'000);
        EXPECT_EQ(told(1'000).size(), 2u);
    }
    static constexpr long long over = 1'000 + 10'000 + 900;
};

TEST_F(ComingTest, ACharacterComesWhileAnotherSpeaks) {
    reader.arrived(line(2, u"bob", u"hello"), 2'000);
    EXPECT_EQ(reader.dueAt(), over - 4'000);
    EXPECT_FALSE(reader.next(over - 4'001));
    const auto coming = reader.next(over - 4'000);
    ASSERT_TRUE(coming);
    EXPECT_EQ(coming->seats, (SeatChanges{{SeatChange::Kind::added, {u"bob@net", u"bob"}}}));
    EXPECT_FALSE(coming->has_line);
    EXPECT_EQ(reader.dueAt(), over);
    EXPECT_FALSE(reader.next(over - 1));
    ASSERT_TRUE(reader.next(over));
}

TEST_F(ComingTest, OneThatCameInVainLeavesTheTurnToTheNext) {
    reader.arrived(line(2, u"bob", u"hello"), 2'000);
    EXPECT_THAT(told(over - 2'000), ElementsAre("+bob"));
    reader.deleted(u"id2");
    reader.arrived(line(3, u"cid", u"hi"), over - 1'000);
    EXPECT_THAT(told(over + 399), ElementsAre("+cid", "cid> hi"));
}

TEST_F(ComingTest, WhoWaitsMayStillBePassedOverUntilThen) {
    reader.arrived(line(2, u"bob", u"hello"), 2'000);
    EXPECT_FALSE(reader.next(3'000));
    reader.deleted(u"id2");
    EXPECT_EQ(reader.dueAt(), std::nullopt);
}

TEST_F(ComingTest, TheUserNeedsNoCharacter) {
    Line mine = line(2, u"me", u"hello");
    mine.mine = true;
    reader.arrived(mine, 2'000);
    EXPECT_EQ(reader.dueAt(), over);
}

TEST_F(ComingTest, NoneIsTakenFromThoseWhoMayBeSpeaking) {
    rules.seats = 2;
    reader.setRules(rules);
    reader.seat(u"bob@net", u"bob");
    EXPECT_THAT(told(5'000), ElementsAre("+bob"));
    reader.arrived(line(2, u"cid", u"hello"), 6'000);
    EXPECT_EQ(reader.dueAt(), over) << "ann speaks, and bob may have to";
    EXPECT_THAT(told(over + 400), ElementsAre("-ann", "+cid", "cid> hello"));
}

TEST_F(ReaderTest, WhoHasASeatIsReadAtOnce) {
    reader.seat(u"ann@net", u"ann");
    EXPECT_THAT(told(0), ElementsAre("+ann"));
    reader.arrived(line(1, u"ann", u"hello"), 1'000);
    EXPECT_EQ(reader.next(1'000)->text, u"hello");
}

TEST_F(ReaderTest, ALineThatIsDeletedWhileItsCharacterComesIsNotTold) {
    reader.arrived(line(1, u"ann", u"something bad"), 1'000);
    EXPECT_FALSE(reader.next(1'000)->has_line);
    reader.deleted(u"id1");
    EXPECT_THAT(told(10'000), IsEmpty());
    EXPECT_THAT(reader.takePassedOver(), ElementsAre(Queue::PassedOver{1, Unread::deleted}));
    // Who says it anew is heard.
    EXPECT_EQ(reader.arrived(line(2, u"ann", u"something bad"), 11'000), std::nullopt);
}

TEST_F(ReaderTest, LinesOfTheDeletedAreNotTold) {
    reader.arrived(line(1, u"ann", u"one"), 0);
    reader.arrived(line(2, u"bob", u"two"), 0);
    reader.arrived(line(3, u"cid", u"three"), 0);
    reader.deletedOf(u"ann@net");
    EXPECT_THAT(told(1'000), ElementsAre("+bob", "bob> two", "+cid"));
    reader.deletedAll();
    EXPECT_THAT(told(100'000), IsEmpty());
}

TEST_F(ReaderTest, WhatIsNotReadIsToldAtOnce) {
    EXPECT_EQ(reader.arrived(line(1, u"ann", u"!song"), 0), Unread::command);
    EXPECT_EQ(reader.arrived(line(2, u"ann", u"come to my channel"), 0), std::nullopt);
    EXPECT_EQ(reader.arrived(line(3, u"bob", u"Come to my channel!"), 0), Unread::repeated);
    EXPECT_EQ(reader.arrived(line(4, u"bob", u"Come to my channels"), 0), Unread::nearly_repeated);
    EXPECT_THAT(told(100'000), ElementsAre("+ann", "ann> come to my channel"));
    EXPECT_THAT(reader.takePassedOver(), IsEmpty());
}

TEST_F(ReaderTest, RepetitionsAreReadWhereTheUserWantsThem) {
    rules.repeated = true;
    reader.setRules(rules);
    EXPECT_EQ(reader.arrived(line(1, u"ann", u"come to my channel"), 0), std::nullopt);
    EXPECT_EQ(reader.arrived(line(2, u"ann", u"come to my channel"), 0), std::nullopt);
}

TEST_F(ReaderTest, WhoSaysWhatWasPassedOverIsHeard) {
    rules.lines_a_minute = 1; // two wait
    reader.setRules(rules);
    reader.arrived(line(1, u"ann", u"the first of the lines"), 0);
    reader.arrived(line(2, u"bob", u"quite another thing"), 1);
    reader.arrived(line(3, u"cid", u"nothing of the kind"), 2);
    EXPECT_EQ(reader.arrived(line(4, u"dan", u"the first of the lines"), 3), std::nullopt);
    EXPECT_THAT(reader.takePassedOver(),
                ElementsAre(Queue::PassedOver{1, Unread::passed_over}, Queue::PassedOver{2, Unread::passed_over}));
}

TEST_F(ReaderTest, TheNameIsToldWhenTheWriterChanges) {
    rules.name_first = true;
    reader.setRules(rules);
    reader.arrived(line(1, u"ann", u"one"), 0);
    reader.arrived(line(2, u"ann", u"two"), 0);
    reader.arrived(line(3, u"bob", u"three"), 0);
    Line mine = line(4, u"me", u"four");
    mine.mine = true;
    reader.arrived(mine, 0);
    EXPECT_THAT(told(100'000),
                ElementsAre("+ann", "ann> ann: one", "ann> two", "+bob", "bob> bob: three", "I> me: four"));
}

TEST_F(ReaderTest, TheSharedSeatTellsTheNameEachTime) {
    rules.seats = 2;
    rules.rest_shares = true;
    reader.setRules(rules);
    reader.arrived(line(1, u"ann", u"one"), 0);
    reader.arrived(line(2, u"bob", u"two"), 0);
    reader.arrived(line(3, u"bob", u"three"), 0);
    EXPECT_THAT(told(100'000), ElementsAre("+ann", "ann> one", "+Everyone else", "Everyone else> bob: two",
                                           "Everyone else> bob: three"));
}

TEST_F(ReaderTest, ActionsAreToldWithTheName) {
    Line action = line(1, u"ann", u"waves");
    action.kind = Line::Kind::action;
    reader.arrived(action, 0);
    EXPECT_THAT(told(100'000), ElementsAre("+ann", "ann> ann waves"));
}

TEST_F(ReaderTest, TheUserHasNoSeat) {
    Line mine = line(1, u"me", u"hello");
    mine.mine = true;
    reader.arrived(mine, 0);
    EXPECT_THAT(told(100'000), ElementsAre("I> hello"));
    EXPECT_EQ(reader.seats().count(), 0u);
}

TEST_F(ReaderTest, WhatNobodyHasWrittenIsToldBySomebody) {
    Line announcement = line(1, u"", u"the stream begins");
    announcement.person.clear();
    announcement.kind = Line::Kind::announcement;
    reader.arrived(announcement, 0);
    EXPECT_THAT(told(100'000), ElementsAre("+Somebody", "Somebody> the stream begins"));
    EXPECT_NE(reader.seats().of(unknown_person), nullptr);
}

TEST_F(ReaderTest, PeopleLeaveAndAreRenamed) {
    reader.arrived(line(1, u"ann", u"one"), 0);
    told(100'000);
    reader.renamed(u"ann@net", u"Annie");
    EXPECT_THAT(told(100'000), ElementsAre("=Annie"));
    reader.left(u"ann@net");
    EXPECT_THAT(told(100'000), ElementsAre("-Annie"));
    EXPECT_EQ(reader.dueAt(), std::nullopt);
}

TEST_F(ReaderTest, ASeatThatIsLostMeanwhileIsTakenAgain) {
    reader.arrived(line(1, u"ann", u"one"), 0);
    EXPECT_FALSE(reader.next(0)->has_line);
    reader.left(u"ann@net");
    EXPECT_THAT(told(100'000), ElementsAre("-ann", "+ann", "ann> one"));
}

TEST_F(ReaderTest, ChangedRulesHoldForWhatWaits) {
    reader.arrived(line(1, u"ann", u"one https://example.org"), 0);
    reader.arrived(line(2, u"bob", u"two"), 0);
    list(rules.ignored_people, u"bob@net", u"bob");
    rules.links = Links::left_out;
    rules.seats = 1;
    reader.setRules(rules);
    EXPECT_THAT(reader.takePassedOver(), ElementsAre(Queue::PassedOver{2, Unread::ignored}));
    EXPECT_THAT(told(100'000), ElementsAre("+ann", "ann> one"));
}

TEST_F(ReaderTest, NamesAreKnownWhoeverTells) {
    rules.addressed = false;
    reader = Reader(rules, {{}, [](std::u16string_view name) { return name == u"bob" || name == u"me"; }});
    reader.setMyName(u"me");
    reader.seat(u"m@net", u"m");
    EXPECT_THAT(told(0), ElementsAre("+m 2"));
    EXPECT_EQ(reader.arrived(line(1, u"ann", u"bob: one"), 0), Unread::addressed);
    EXPECT_EQ(reader.arrived(line(2, u"ann", u"me: two"), 0), std::nullopt);
}

TEST_F(ReaderTest, ABusyChatIsReadWithoutEnd) {
    rules.seats = 2;
    reader.setRules(rules);
    int lines = 0;
    unsigned long long number = 0;
    for (long long now = 0; now < 600'000; now += 20) {
        ++number;
        reader.arrived(line(number, u"p" + murmelix::toText(static_cast<long long>(number % 997)),
                            murmelix::toText(static_cast<long long>(number * 7'919 % 1'000'003)) + u" thoughts"),
                       now);
        while (const auto reading = reader.next(now)) {
            lines += reading->has_line ? 1 : 0;
        }
        ASSERT_LE(reader.takePassedOver().size(), 10u);
    }
    EXPECT_GE(lines, 145);
    EXPECT_LE(lines, 150);
}

TEST(PreviewTest, ItTellsWhatWouldBeRead) {
    std::vector<Line> lines{line(0, u"ann", u"hello 😂"), line(0, u"bob", u"!song"), line(0, u"ann", u"hello 😂\r\nX"),
                            line(0, u"cid", u"a line that is deleted")};
    lines[3].old = true;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        lines[i].time = static_cast<long long>(i) * 10'000;
    }
    Rules rules;
    rules.name_first = true;
    EXPECT_THAT(preview(lines, rules),
                ElementsAre(Previewed{u"ann: hello (lol)", std::nullopt}, Previewed{u"!song", Unread::command},
                            Previewed{u"hello (lol) X", std::nullopt},
                            Previewed{u"a line that is deleted", Unread::old}));
}

TEST(PreviewTest, ItKeepsThePaceOfThatTime) {
    std::vector<Line> lines;
    for (unsigned long long i = 0; i < 100; ++i) {
        lines.push_back(line(5, u"p" + murmelix::toText(static_cast<long long>(i)),
                             murmelix::toText(static_cast<long long>(i * 7'919 % 1'000'003)) + u" thoughts"));
        lines.back().time = static_cast<long long>(i) * 1'000;
    }
    Rules rules;
    rules.lines_a_minute = 6;
    const auto previewed = preview(lines, rules);
    // Six in the first minute, six in the next, and what then still waits.
    EXPECT_EQ(std::ranges::count_if(previewed, [](const Previewed& of) { return !of.unread; }), 15);
    EXPECT_EQ(previewed[0].unread, std::nullopt);
    EXPECT_EQ(previewed[99].unread, std::nullopt);
    EXPECT_EQ(previewed[50].unread, Unread::passed_over);
    EXPECT_EQ(previewed[50].text, u"395950 thoughts");
}

TEST(PreviewTest, NothingComesOfNothing) {
    EXPECT_THAT(preview({}, {}), IsEmpty());
}

} // namespace

} // namespace messenger_client::reading
