// Which lines are read when there are too many, and when.
#include "companions/messenger/reading/queue.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::reading {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A text of 17 units takes a second, and 0.9 seconds of pause follow.
constexpr std::u16string_view a_second = u"seventeen letters";

struct QueueTest : testing::Test {
    Queue queue{60};

    void arrive(unsigned long long number, long long now, const std::u16string& person = u"ann",
                std::u16string_view text = a_second) {
        Queue::Waiting waiting;
        waiting.line.number = number;
        waiting.line.id = u"id" + murmelix::toText(static_cast<long long>(number));
        waiting.line.person = person;
        waiting.text = text;
        queue.arrived(std::move(waiting), now);
    }
    // The numbers of all that are read until then, with when.
    std::vector<std::pair<unsigned long long, long long>> readUntil(long long end) {
        std::vector<std::pair<unsigned long long, long long>> read;
        long long now = 0;
        while (queue.dueAt() && std::max(*queue.dueAt(), now) <= end) {
            now = std::max(*queue.dueAt(), now);
            const auto line = queue.next(now);
            if (!line) {
                ADD_FAILURE() << "it was due";
                break;
            }
            read.emplace_back(line->line.number, now);
        }
        return read;
    }
    std::vector<unsigned long long> passedOver() {
        std::vector<unsigned long long> numbers;
        for (const auto& line : queue.takePassedOver()) {
            EXPECT_EQ(line.why, Unread::passed_over);
            numbers.push_back(line.number);
        }
        return numbers;
    }
};

TEST_F(QueueTest, SpeechTakesItsTime) {
    EXPECT_EQ(speechTime(u""), 0);
    EXPECT_EQ(speechTime(a_second), 1'000);
    EXPECT_EQ(speechTime(u"seventeen, and:-)"), 2'200);
}

TEST_F(QueueTest, ALineIsReadAtOnceWhereNobodySpeaks) {
    EXPECT_EQ(queue.dueAt(), std::nullopt);
    EXPECT_EQ(queue.next(0), std::nullopt);
    arrive(1, 5'000);
    ASSERT_TRUE(queue.dueAt());
    EXPECT_LE(*queue.dueAt(), 5'000);
    EXPECT_EQ(queue.next(5'000)->line.number, 1u);
    EXPECT_EQ(queue.next(5'000), std::nullopt);
}

TEST_F(QueueTest, LinesAreReadInTheirOrderWhenTheOneBeforeIsSpoken) {
    arrive(1, 0);
    arrive(2, 0, u"bob");
    arrive(3, 0, u"cid");
    EXPECT_THAT(readUntil(100'000), ElementsAre(std::pair(1, 0), std::pair(2, 1'900), std::pair(3, 3'800)));
    EXPECT_THAT(queue.takePassedOver(), IsEmpty());
}

TEST_F(QueueTest, NoMoreAreReadInAMinuteThanAreAskedFor) {
    queue.setPace(4);
    for (unsigned long long i = 0; i < 12; ++i) {
        arrive(i, static_cast<long long>(i) * 4'000, u"p" + murmelix::toText(static_cast<long long>(i % 7)), u"ha");
        readUntil(static_cast<long long>(i) * 4'000);
    }
    // Four at once, and the last two that came, when a minute has passed since the first and the second.
    EXPECT_THAT(passedOver(), ElementsAre(4, 5, 6, 7, 8, 9));
    EXPECT_THAT(readUntil(200'000), ElementsAre(std::pair(10, 60'000), std::pair(11, 64'000)));
}

TEST_F(QueueTest, TheNewestWin) {
    queue.setPace(10); // five wait
    for (unsigned long long i = 0; i < 9; ++i) {
        arrive(i, static_cast<long long>(i), u"p" + murmelix::toText(static_cast<long long>(i)), u"ha");
    }
    EXPECT_THAT(passedOver(), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(queue.waiting(), 5u);
    EXPECT_EQ(readUntil(100'000).front().first, 4u);
}

TEST_F(QueueTest, PeopleWhoHaveNotBeenReadForLongAreHeardFirst) {
    queue.setPace(6); // three wait
    arrive(1, 1'000, u"loud", u"ha");
    ASSERT_TRUE(queue.next(1'000));
    arrive(2, 2'000, u"quiet", u"ha");
    arrive(3, 3'000, u"loud", u"ha");
    arrive(4, 4'000, u"loud", u"ha");
    arrive(5, 5'000, u"loud", u"ha");
    EXPECT_THAT(passedOver(), ElementsAre(3));
    EXPECT_EQ(readUntil(100'000).front().first, 2u);
}

TEST_F(QueueTest, WhatTakesTooLongToSayDoesNotWait) {
    const std::u16string long_text(17 * 12, u'x'); // twelve seconds
    for (unsigned long long i = 1; i <= 4; ++i) {
        arrive(i, 0, u"p" + murmelix::toText(static_cast<long long>(i)), long_text);
    }
    EXPECT_THAT(passedOver(), ElementsAre(1, 2));
    EXPECT_EQ(queue.waiting(), 2u);
}

TEST_F(QueueTest, OneWhoFloodsIsCut) {
    for (unsigned long long i = 1; i <= 6; ++i) {
        arrive(i, static_cast<long long>(i), u"ann", u"ha");
    }
    EXPECT_THAT(passedOver(), ElementsAre(1, 2));
}

TEST_F(QueueTest, TheUpcomingLineStays) {
    queue.setPace(4); // two wait
    EXPECT_EQ(queue.upcoming(), nullptr);
    arrive(1, 0, u"ann", u"ha");
    ASSERT_TRUE(queue.upcoming());
    EXPECT_EQ(queue.upcoming()->line.number, 1u);
    for (unsigned long long i = 2; i <= 5; ++i) {
        arrive(i, static_cast<long long>(i), u"p" + murmelix::toText(static_cast<long long>(i)), u"ha");
    }
    for (unsigned long long i = 6; i <= 12; ++i) {
        arrive(i, static_cast<long long>(i), u"ann", u"ha");
    }
    EXPECT_EQ(queue.upcoming()->line.number, 1u);
    EXPECT_EQ(queue.next(100)->line.number, 1u);
}

TEST_F(QueueTest, TheUpcomingLineStaysWhenItsWriterFloods) {
    arrive(1, 0, u"ann", u"ha");
    queue.upcoming();
    for (unsigned long long i = 2; i <= 6; ++i) {
        arrive(i, static_cast<long long>(i), u"ann", u"ha");
    }
    EXPECT_THAT(passedOver(), ElementsAre(2, 3));
    EXPECT_EQ(queue.next(100)->line.number, 1u);
}

TEST_F(QueueTest, ADeletedLineIsNeverRead) {
    arrive(1, 0);
    arrive(2, 0, u"bob");
    arrive(3, 0, u"cid");
    EXPECT_EQ(queue.upcoming()->line.number, 1u);
    queue.deleted(u"id2");
    queue.deleted(u"id1");
    queue.deleted(u"id9");
    EXPECT_THAT(queue.takePassedOver(),
                ElementsAre(Queue::PassedOver{2, Unread::deleted}, Queue::PassedOver{1, Unread::deleted}));
    EXPECT_THAT(readUntil(100'000), ElementsAre(std::pair(3, 0)));
    EXPECT_THAT(queue.takePassedOver(), IsEmpty());
}

TEST_F(QueueTest, LinesWithoutAnIdAreNobodys) {
    Queue::Waiting waiting;
    waiting.text = u"hi";
    queue.arrived(waiting, 0);
    queue.deleted(u"");
    EXPECT_EQ(queue.waiting(), 1u);
}

TEST_F(QueueTest, AllOfOneAndAllOfAllCanBeDeleted) {
    arrive(1, 0);
    arrive(2, 0, u"bob");
    arrive(3, 0);
    queue.deletedOf(u"ann");
    EXPECT_THAT(queue.takePassedOver(), SizeIs(2));
    EXPECT_EQ(queue.waiting(), 1u);
    queue.deletedAll();
    EXPECT_THAT(queue.takePassedOver(), ElementsAre(Queue::PassedOver{2, Unread::deleted}));
    EXPECT_EQ(queue.dueAt(), std::nullopt);
    // Their time is not counted any more.
    const std::u16string long_text(17 * 20, u'x');
    arrive(4, 0, u"ann", long_text);
    arrive(5, 0, u"bob");
    arrive(6, 0, u"cid");
    EXPECT_THAT(queue.takePassedOver(), IsEmpty());
}

TEST_F(QueueTest, WhatWaitsIsJudgedAgain) {
    arrive(1, 0);
    arrive(2, 0, u"bob");
    queue.judgeAgain([](const Line& line) {
        return line.number == 1 ? Judgement{Unread::ignored, {}} : Judgement{std::nullopt, u"another text"};
    });
    EXPECT_THAT(queue.takePassedOver(), ElementsAre(Queue::PassedOver{1, Unread::ignored}));
    EXPECT_EQ(queue.next(0)->text, u"another text");
}

TEST_F(QueueTest, AClockThatGoesBackDoesNotStopIt) {
    arrive(1, 1'000'000);
    ASSERT_TRUE(queue.next(1'000'000));
    arrive(2, 5);
    EXPECT_EQ(queue.next(5), std::nullopt);
    EXPECT_EQ(queue.dueAt(), 1'001'900);
    EXPECT_EQ(queue.next(1'001'900)->line.number, 2u);
}

TEST_F(QueueTest, ABurstLeavesNoMoreThanWaits) {
    queue.setPace(15);
    for (unsigned long long i = 0; i < 100'000; ++i) {
        arrive(i, static_cast<long long>(i / 100), u"p" + murmelix::toText(static_cast<long long>(i % 1'000)), u"ha");
    }
    EXPECT_EQ(queue.waiting(), 7u);
    const auto passed = queue.takePassedOver();
    ASSERT_EQ(passed.size(), Queue::most_passed_over);
    EXPECT_EQ(passed.back().number, 99'992u);
    ASSERT_TRUE(queue.dueAt());
    EXPECT_EQ(queue.next(2'000)->line.number, 99'993u);
}

// An evening: whoever is read is forgotten again, and the pace is kept to the end.
TEST_F(QueueTest, ALongEveningIsReadAtItsPace) {
    queue.setPace(12);
    std::vector<long long> times;
    long long now = 0;
    for (unsigned long long i = 0; i < 288'000; ++i, now += 100) {
        arrive(i, now, u"p" + murmelix::toText(static_cast<long long>(i)), u"ha");
        if (queue.next(now)) {
            times.push_back(now);
        }
    }
    EXPECT_EQ(times.size(), 8u * 60 * 12);
    EXPECT_EQ(queue.peopleKnown(), Queue::most_people);
    for (std::size_t i = 12; i < times.size(); ++i) {
        ASSERT_GE(times[i] - times[i - 12], 60'000);
    }
}

} // namespace

} // namespace messenger_client::reading
