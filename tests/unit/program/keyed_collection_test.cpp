#include "common/keyed_collection.h"

#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "common/text.h"

namespace murmelix {
namespace {

KeyedCollection<int> numbered(int count) {
    KeyedCollection<int> all;
    for (int i = 1; i <= count; ++i) {
        all.Add(i, u"k" + toText(i));
    }
    return all;
}

// Every key stands where its position says.
void expectConsistent(const KeyedCollection<int>& all) {
    for (std::size_t at = 1; at <= all.Count(); ++at) {
        ASSERT_EQ(all.position(all.KeyAt(at)), at);
        ASSERT_EQ(all.KeyAt(at), u"k" + toText(all.Item(at)));
    }
}

TEST(KeyedCollection, KeepsTheOrderOfAddingAndCountsFromOne) {
    const auto all = numbered(3);
    EXPECT_EQ(all.Item(1), 1);
    EXPECT_EQ(all.KeyAt(3), u"k3");
    EXPECT_EQ(all.Item(u"k2"), 2);
    EXPECT_EQ(all.position(u"K2"), 0u) << "letter for letter";
    EXPECT_FALSE(all.contains(u""));
}

TEST(KeyedCollection, FindsKeysHoweverManyComeAndGo) {
    for (const int count : {1, 15, 16, 17, 18, 40, 1000}) {
        auto all = numbered(count);
        expectConsistent(all);
        all.Remove(u"k1");
        EXPECT_FALSE(all.contains(u"k1"));
        expectConsistent(all);
        all.Add(1, u"k1");
        EXPECT_EQ(all.position(u"k1"), static_cast<std::size_t>(count));
        expectConsistent(all);
        while (all.Count() > 0) {
            all.Remove((all.Count() + 1) / 2);
        }
        EXPECT_FALSE(all.contains(u"k1"));
    }
}

TEST(KeyedCollection, FindsWhatCameWhileThereWereFew) {
    auto all = numbered(30);
    while (all.Count() > 5) {
        all.Remove(std::size_t{1});
    }
    for (int number = 31; number <= 60; ++number) {
        all.Add(number, u"k" + toText(number));
        expectConsistent(all);
    }
}

TEST(KeyedCollection, RefusesWhatIsThereAndWhatIsNot) {
    for (const int count : {3, 30}) {
        auto all = numbered(count);
        EXPECT_THROW(all.Add(9, u"k2"), CollectionError);
        EXPECT_EQ(all.Count(), static_cast<std::size_t>(count));
        EXPECT_THROW(all.Item(u"none"), CollectionError);
        EXPECT_THROW(all.Remove(u"none"), CollectionError);
        EXPECT_THROW(all.Item(0), CollectionError);
        EXPECT_THROW(all.Remove(all.Count() + 1), CollectionError);
    }
}

TEST(KeyedCollection, IsEmptyOnceCleared) {
    auto all = numbered(30);
    all.Clear();
    EXPECT_EQ(all.Count(), 0u);
    EXPECT_FALSE(all.contains(u"k1"));
    all.Add(1, u"k1");
    EXPECT_EQ(all.position(u"k1"), 1u);
}

// Objects of other programs let events in when they are let go of, and those use the same collection.
TEST(KeyedCollection, LettingGoOfAnItemMayUseTheCollection) {
    for (const int count : {4, 30}) {
        KeyedCollection<std::shared_ptr<int>> all;
        const auto add = [&](int number, const std::function<void()>& end) {
            all.Add(std::shared_ptr<int>(new int(number),
                                         [end](const int* item) {
                                             delete item;
                                             end();
                                         }),
                    u"k" + toText(number));
        };
        for (int i = 1; i <= count; ++i) {
            add(i, i == 2 ? [&] {
                all.Remove(u"k1");
                all.Remove(u"k3");
                add(99, [] {});
            } : std::function<void()>([] {}));
        }
        all.Remove(u"k2");
        ASSERT_EQ(all.Count(), static_cast<std::size_t>(count - 2));
        EXPECT_EQ(*all.Item(1), 4);
        EXPECT_EQ(*all.Item(u"k99"), 99);
        for (std::size_t at = 1; at <= all.Count(); ++at) {
            ASSERT_EQ(all.position(all.KeyAt(at)), at);
            ASSERT_EQ(all.KeyAt(at), u"k" + toText(*all.Item(at)));
        }

        add(50, [&] { add(51, [] {}); });
        all.Clear();
        ASSERT_EQ(all.Count(), 1u);
        EXPECT_EQ(*all.Item(u"k51"), 51);
    }
}

} // namespace
} // namespace murmelix
