// Lines that go in, and what is told of them.
#include "companions/messenger/reading/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace messenger_client::reading {

namespace {

Line line(unsigned long long number, const std::u16string& person, const std::u16string& text) {
    Line made;
    made.number = number;
    made.person = person + u"@net";
    made.name = person;
    made.text = text;
    return made;
}

TEST(ReaderTest, SeatsAreToldBeforeTheLine) {
    Reader reader;
    EXPECT_EQ(reader.arrived(line(1, u"ann", u"hello 🍕😂"), 1'000), std::nullopt);
    auto reading = reader.next(1'000);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->seats, (SeatChanges{{SeatChange::Kind::added, {u"ann@net", u"ann"}}}));
    EXPECT_FALSE(reading->has_line);
    EXPECT_FALSE(reader.next(1'399));
    EXPECT_EQ(reader.dueAt(), 1'400);
    reading = reader.next(1'400);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->text, u"hello [pizza] (lol)");
    EXPECT_EQ(reading->speaker, (Seat{u"ann@net", u"ann"}));
    EXPECT_EQ(reading->number, 1u);
    EXPECT_EQ(reader.dueAt(), std::nullopt);
}

} // namespace

} // namespace messenger_client::reading
