// What was said before, and what was not.
#include "companions/messenger/reading/repeats.h"

#include <string>

#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::reading {

namespace {

struct RepeatsTest : testing::Test {
    Repeats repeats;
    unsigned long long number = 0;
    std::optional<Unread> look(std::u16string_view text, std::u16string_view person = u"ann", long long now = 0) {
        return repeats.look(++number, person, text, now);
    }
};

TEST_F(RepeatsTest, TheSameAgainIsRepeated) {
    EXPECT_EQ(look(u"Come to my channel now"), std::nullopt);
    EXPECT_EQ(look(u"Come to my channel now"), Unread::repeated);
    EXPECT_EQ(look(u"COME to my channel, now!!!", u"bob"), Unread::repeated);
    EXPECT_EQ(look(u"Cooome tooo my channel nowww", u"cid"), Unread::repeated);
    EXPECT_EQ(look(u"What a fine day it is"), std::nullopt);
}

TEST_F(RepeatsTest, NearlyTheSameIsNearlyRepeated) {
    EXPECT_EQ(look(u"Come to my channel now, it is great"), std::nullopt);
    EXPECT_EQ(look(u"Come to my channel now, it is great 7"), Unread::nearly_repeated);
    EXPECT_EQ(look(u"xx come to my channel now, it is great"), Unread::nearly_repeated);
    EXPECT_EQ(look(u"Come to my channel later, it was great fun"), std::nullopt);
    EXPECT_EQ(look(u"I come to your house tomorrow, is that fine"), std::nullopt);
}

TEST_F(RepeatsTest, ShortAnswersOfSeveralPeopleAreHeard) {
    EXPECT_EQ(look(u"yes", u"ann"), std::nullopt);
    EXPECT_EQ(look(u"Yes!", u"ann"), Unread::repeated);
    EXPECT_EQ(look(u"yes", u"bob"), std::nullopt);
    EXPECT_EQ(look(u"yes", u"cid"), Unread::repeated);
    // Nearly the same is something else there.
    EXPECT_EQ(look(u"ten past six", u"ann"), std::nullopt);
    EXPECT_EQ(look(u"ten past sixt", u"ann"), std::nullopt);
}

TEST_F(RepeatsTest, SignsCountWhereThereIsNothingElse) {
    EXPECT_EQ(look(u":)"), std::nullopt);
    EXPECT_EQ(look(u":("), std::nullopt);
    EXPECT_EQ(look(u":)"), Unread::repeated);
}

TEST_F(RepeatsTest, ItIsForgottenInTime) {
    EXPECT_EQ(look(u"Come to my channel now", u"ann", 1'000), std::nullopt);
    EXPECT_EQ(look(u"Come to my channel now", u"ann", 61'000), Unread::repeated);
    EXPECT_EQ(look(u"Come to my channel now", u"ann", 61'001), std::nullopt);
}

TEST_F(RepeatsTest, ItIsForgottenAfterManyOthers) {
    EXPECT_EQ(look(u"Come to my channel now"), std::nullopt);
    for (int i = 1; i < 30; ++i) {
        EXPECT_EQ(look(murmelix::toText(i * 7'919 % 1'000'000)), std::nullopt);
    }
    EXPECT_EQ(look(u"Come to my channel now"), Unread::repeated);
    EXPECT_EQ(look(u"thirty"), std::nullopt);
    EXPECT_EQ(look(u"Come to my channel now"), std::nullopt);
}

TEST_F(RepeatsTest, WhatWasNotReadIsNew) {
    EXPECT_EQ(look(u"Come to my channel now"), std::nullopt);
    repeats.forget(1);
    EXPECT_EQ(look(u"Come to my channel now"), std::nullopt);
    repeats.forget(1);
    EXPECT_EQ(look(u"Come to my channel now"), Unread::repeated);
}

TEST_F(RepeatsTest, OtherScriptsAreComparedToo) {
    EXPECT_EQ(look(u"Приходите на мой канал сейчас"), std::nullopt);
    EXPECT_EQ(look(u"ПРИХОДИТЕ на мой канал сейчас!"), Unread::repeated);
    EXPECT_EQ(look(u"𝒜𝒷𝒸𝒹𝑒𝒻 𝒜𝒷𝒸𝒹𝑒𝒻 𝒜𝒷𝒸"), std::nullopt);
    EXPECT_EQ(look(u"𝒜𝒷𝒸𝒹𝑒𝒻𝒜𝒷𝒸𝒹𝑒𝒻𝒜𝒷𝒸"), Unread::repeated);
    EXPECT_EQ(look(u"𝒵𝒵𝒷𝒸𝒹𝑒𝒻"), std::nullopt);
}

TEST_F(RepeatsTest, LongLinesAreComparedAtTheirBeginning) {
    std::u16string text;
    for (int i = 0; i < 100; ++i) {
        text += murmelix::toText(i * 37 % 101);
    }
    EXPECT_EQ(look(text), std::nullopt);
    EXPECT_EQ(look(text.substr(0, 180) + u"and so on"), Unread::repeated);
}

} // namespace

} // namespace messenger_client::reading
