#include "controls/property_bag.h"

#include <gtest/gtest.h>

namespace murmelix {
namespace {

TEST(PropertyBag, KeepsWhatDiffersFromItsDefault) {
    PropertyBag bag;
    bag.WriteProperty(u"a", std::int64_t{5}, std::int64_t{5});
    bag.WriteProperty(u"b", std::int64_t{6}, std::int64_t{5});
    EXPECT_FALSE(bag.contains(u"a"));
    EXPECT_EQ(bag.ReadProperty(u"b", 5, 0, 9), 6);
    bag.WriteProperty(u"b", std::int64_t{5}, std::int64_t{5});
    EXPECT_EQ(bag.Count(), 0u);
}

TEST(PropertyBag, ReadsDefaultsOfItsOwnForEveryReader) {
    const PropertyBag bag;
    EXPECT_TRUE(bag.ReadProperty(u"a", true));
    EXPECT_EQ(bag.ReadProperty(u"a", u"none"), u"none");
    EXPECT_EQ(bag.ReadProperty(u"a", -3, 0, 9), -3) << "whatever the range is";
}

TEST(PropertyBag, NamesAreKeptLetterForLetter) {
    PropertyBag bag;
    bag.WriteProperty(u"Name", true, false);
    EXPECT_FALSE(bag.ReadProperty(u"name", false));
    EXPECT_TRUE(bag.ReadProperty(u"Name", false));
}

TEST(PropertyBag, ReadsNothingOfAnotherType) {
    PropertyBag bag;
    bag.WriteProperty(u"text", std::u16string(u"1"), std::u16string());
    bag.WriteProperty(u"yes", true, false);
    bag.WriteProperty(u"one", std::int64_t{1}, std::int64_t{0});
    EXPECT_EQ(bag.ReadProperty(u"text", 7, 0, 9), 7);
    EXPECT_EQ(bag.ReadProperty(u"yes", 7, 0, 9), 7);
    EXPECT_FALSE(bag.ReadProperty(u"one", false));
    EXPECT_EQ(bag.ReadProperty(u"one", u"none"), u"none");
}

TEST(PropertyBag, ReadsNumbersWithinTheirRangeAlone) {
    PropertyBag bag;
    bag.WriteProperty(u"n", std::int64_t{10}, std::int64_t{0});
    EXPECT_EQ(bag.ReadProperty(u"n", 1, 0, 9), 1);
    EXPECT_EQ(bag.ReadProperty(u"n", 1, 11, 20), 1);
    EXPECT_EQ(bag.ReadProperty(u"n", 1, 10, 10), 10);
}

} // namespace
} // namespace murmelix
