#include "companions/messenger/live/lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

LiveLine line(std::u16string text) {
    return {.kind = LiveLine::Kind::message, .writer = u"ann", .text = std::move(text), .signin = u"ann@x"};
}

TEST(LiveLinesTest, KeepTheLastFiveThousand) {
    LiveLines lines;
    for (int i = 1; i <= 5'010; ++i) {
        EXPECT_EQ(lines.add(line(murmelix::toText(i))), static_cast<LineNumber>(i));
    }
    EXPECT_EQ(lines.first(), 11u);
    EXPECT_EQ(lines.next(), 5'011u);
    EXPECT_EQ(lines.find(10), nullptr);
    EXPECT_EQ(lines.find(5'011), nullptr);
    ASSERT_TRUE(lines.find(11));
    EXPECT_EQ(lines.find(11)->text, u"11");
    EXPECT_EQ(lines.find(5'010)->text, u"5010");
}

TEST(LiveLinesTest, TellEachAlteredLineOnce) {
    LiveLines lines;
    lines.add(line(u"a"));
    lines.add(line(u"b"));
    lines.add(line(u"c"));
    EXPECT_THAT(lines.takeAltered(), IsEmpty());
    lines.tell(2);
    lines.tell(2);
    lines.remove(2);
    lines.remove(1);
    EXPECT_THAT(lines.takeAltered(), ElementsAre(2u, 1u));
    EXPECT_THAT(lines.takeAltered(), IsEmpty());
    EXPECT_TRUE(lines.find(1)->gone);
    EXPECT_EQ(lines.find(1)->text, u"");
    lines.tell(1);
    EXPECT_FALSE(lines.find(1)->told) << "what is gone is not told";
    lines.remove(77);
    EXPECT_THAT(lines.takeAltered(), IsEmpty());
}

TEST(LiveLinesTest, AlteredLinesThatFallOutAreNoLongerTold) {
    LiveLines lines;
    lines.add(line(u"first"));
    lines.tell(1);
    for (std::size_t i = 0; i < LiveLines::most; ++i) {
        lines.tell(lines.add(line(u"more")));
    }
    const auto altered = lines.takeAltered();
    EXPECT_EQ(altered.size(), LiveLines::most);
    EXPECT_EQ(altered.front(), 2u);
}

TEST(LiveLinesTest, WhereNobodyLooksNothingPilesUp) {
    LiveLines lines;
    for (int i = 0; i < 100'000; ++i) {
        lines.tell(lines.add(line(u"x")));
    }
    EXPECT_EQ(lines.takeAltered().size(), LiveLines::most);
}

TEST(LiveLinesTest, ThoseThatAreMeantAreRemoved) {
    LiveLines lines;
    lines.add(line(u"keep"));
    lines.add(line(u"go"));
    lines.add(line(u"go"));
    lines.removeThose([](const LiveLine& one) { return one.text == u"go"; });
    EXPECT_FALSE(lines.find(1)->gone);
    EXPECT_TRUE(lines.find(2)->gone);
    EXPECT_TRUE(lines.find(3)->gone);
}

} // namespace

} // namespace messenger_client
