// Which lines are read by the options, and how these are kept.
#include "companions/messenger/reading/rules.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::reading {

namespace {

using testing::Contains;
using testing::ElementsAre;

Line line(const std::u16string& text) {
    Line made;
    made.person = u"ann@net";
    made.name = u"Ann";
    made.text = text;
    return made;
}

std::optional<Unread> whyNot(const Line& of, const Rules& rules = {}, const Surroundings& surroundings = {}) {
    const Judgement judgement = judge(of, rules, surroundings);
    EXPECT_EQ(judgement.text.empty(), judgement.unread.has_value());
    return judgement.unread;
}

TEST(RulesTest, OrdinaryLinesAreRead) {
    const Judgement judgement = judge(line(u"hello 😂 https://example.org/x"), {});
    EXPECT_EQ(judgement.unread, std::nullopt);
    EXPECT_EQ(judgement.text, u"hello (lol) a link to example.org");
}

TEST(RulesTest, TheOptionsOfCleaningAreThoseOfTheRules) {
    Rules rules;
    rules.links = Links::left_out;
    rules.other_emoji = OtherEmoji::left_out;
    rules.longest_line = 20;
    rules.shorten = false;
    rules.words = {{u"darn", u"sugar"}};
    EXPECT_EQ(judge(line(u"darn 🍕 https://example.org nooooooooooooooooo"), rules).text, u"sugar nooooooooooooo…");
}

TEST(RulesTest, OldLinesAreNot) {
    Line old = line(u"hello");
    old.old = true;
    EXPECT_EQ(whyNot(old), Unread::old);
    old.mine = true;
    EXPECT_EQ(whyNot(old), Unread::old);
}

TEST(RulesTest, OwnLinesAreReadUnlessTheUserDoesNotWantThem) {
    Line mine = line(u"Bob: hello");
    mine.mine = true;
    Rules rules;
    rules.addressed = false;
    rules.everyone = false;
    rules.ignored_people = {{u"ann@net", u"Ann"}};
    EXPECT_EQ(whyNot(mine, rules, {u"Ann", [](auto) { return true; }}), std::nullopt);
    rules.own = false;
    EXPECT_EQ(whyNot(mine, rules), Unread::own);
}

TEST(RulesTest, NoticesAndAnnouncementsHaveOptionsOfTheirOwn) {
    Line notice = line(u"server restarts");
    notice.kind = Line::Kind::notice;
    EXPECT_EQ(whyNot(notice), Unread::notice);
    Rules rules;
    rules.notices = true;
    EXPECT_EQ(whyNot(notice, rules), std::nullopt);

    Line announcement = line(u"Ann has subscribed");
    announcement.kind = Line::Kind::announcement;
    rules.everyone = false;
    EXPECT_EQ(whyNot(announcement, rules), std::nullopt);
    rules.announcements = false;
    EXPECT_EQ(whyNot(announcement, rules), Unread::announcement);
}

TEST(RulesTest, IgnoredPeopleAreNotRead) {
    Rules rules;
    EXPECT_TRUE(list(rules.ignored_people, u"ANN@net", u"Ann"));
    EXPECT_EQ(whyNot(line(u"hello"), rules), Unread::ignored);
    Line announcement = line(u"hello");
    announcement.kind = Line::Kind::announcement;
    EXPECT_EQ(whyNot(announcement, rules), Unread::ignored);
    unlist(rules.ignored_people, u"ann@NET");
    EXPECT_EQ(whyNot(line(u"hello"), rules), std::nullopt);
}

TEST(RulesTest, BotsAreNotRead) {
    Line bot = line(u"Welcome!");
    bot.bot = true;
    EXPECT_EQ(whyNot(bot), Unread::bot);
    bot.bot = false;
    bot.name = u"NightBot";
    EXPECT_EQ(whyNot(bot), Unread::bot);
    bot.name = u"ChanServ";
    EXPECT_EQ(whyNot(bot), Unread::bot);
    Rules rules;
    rules.bots = true;
    EXPECT_EQ(whyNot(bot, rules), std::nullopt);
    EXPECT_FALSE(isKnownBot(u"Ann"));
    for (const std::u16string_view name : {u"alis", u"streamelements", u"wzbot", u"own3d", u"pretzelrocks", u"eir"}) {
        EXPECT_TRUE(isKnownBot(name)) << murmelix::toUtf8(name);
    }
}

TEST(RulesTest, CommandsAreNotRead) {
    EXPECT_EQ(whyNot(line(u"!song")), Unread::command);
    EXPECT_EQ(whyNot(line(u"  !8ball will it rain?")), Unread::command);
    EXPECT_EQ(whyNot(line(u"!!! wow")), std::nullopt);
    EXPECT_EQ(whyNot(line(u"wow! really")), std::nullopt);
    Line mine = line(u"!song");
    mine.mine = true;
    EXPECT_EQ(whyNot(mine), Unread::command);
    Rules rules;
    rules.commands = true;
    EXPECT_EQ(whyNot(line(u"!song"), rules), std::nullopt);
}

TEST(RulesTest, ChosenOnesAloneAreReadWhereTheUserWantsThat) {
    Line moderator = line(u"hello"), subscriber = line(u"hello");
    moderator.moderator = true;
    subscriber.subscriber = true;
    Rules rules;
    rules.everyone = false;
    EXPECT_EQ(whyNot(line(u"hello"), rules), Unread::not_chosen);
    EXPECT_EQ(whyNot(moderator, rules), std::nullopt);
    EXPECT_EQ(whyNot(subscriber, rules), Unread::not_chosen);
    rules.moderators = false;
    rules.subscribers = true;
    EXPECT_EQ(whyNot(moderator, rules), Unread::not_chosen);
    EXPECT_EQ(whyNot(subscriber, rules), std::nullopt);
    rules.chosen_people = {{u"ann@net", u"Ann"}};
    EXPECT_EQ(whyNot(line(u"hello"), rules), std::nullopt);
    rules.chosen = false;
    EXPECT_EQ(whyNot(line(u"hello"), rules), Unread::not_chosen);
}

TEST(RulesTest, LinesToOthersAreNotReadWhereTheUserWantsThat) {
    const Surroundings here{u"Me", [](std::u16string_view name) { return murmelix::toLower(name) == u"bob"; }};
    Rules rules;
    EXPECT_EQ(whyNot(line(u"Bob: hello"), rules, here), std::nullopt);
    rules.addressed = false;
    EXPECT_EQ(whyNot(line(u"Bob: hello"), rules, here), Unread::addressed);
    EXPECT_EQ(whyNot(line(u"bob, hello"), rules, here), Unread::addressed);
    EXPECT_EQ(whyNot(line(u" @anybody hello"), rules, here), Unread::addressed);
    EXPECT_EQ(whyNot(line(u"@bob, hello"), rules, here), Unread::addressed);
    EXPECT_EQ(whyNot(line(u"Bob:"), rules, here), Unread::addressed);
    EXPECT_EQ(whyNot(line(u"me: hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"@ME hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"Bob says hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"Bob  hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"Bob:hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"Note: hello"), rules, here), std::nullopt);
    EXPECT_EQ(whyNot(line(u"Bob: hello"), rules), std::nullopt); // nobody is known
    EXPECT_EQ(whyNot(line(u"@ home"), rules, here), std::nullopt);
}

TEST(RulesTest, WhatIsEmptyIsNotRead) {
    EXPECT_EQ(whyNot(line(u"...")), Unread::empty);
    EXPECT_EQ(whyNot(line(u"")), Unread::empty);
}

TEST(RulesTest, RulesAreKeptAsLines) {
    Rules rules;
    rules.lines_a_minute = 7;
    rules.everyone = false;
    rules.links = Links::whole;
    rules.other_emoji = OtherEmoji::left_out;
    rules.ignored_people = {{u"a@b", u"An\tn\\"}, {u"c@d", u"Ćć"}};
    rules.words = {{u"darn", u""}, {u"a b", u"c"}};
    const auto lines = linesOf(rules);
    EXPECT_THAT(lines, Contains(u"lines a minute\t7"));
    EXPECT_THAT(lines, Contains(u"everyone\tno"));
    EXPECT_THAT(lines, Contains(u"links\twhole"));
    EXPECT_THAT(lines, Contains(u"ignored person\ta@b\tAn\\tn\\\\"));
    EXPECT_THAT(lines, Contains(u"word\tdarn\t"));
    // A tab in a name comes back as the blank that is shown for it.
    rules.ignored_people[0].name = u"An n\\";
    EXPECT_EQ(rulesOf(lines), rules);
    EXPECT_EQ(rulesOf(linesOf({})), Rules());
}

TEST(RulesTest, EveryOptionIsKept) {
    Rules other;
    other.lines_a_minute = 3;
    other.longest_line = 33;
    other.everyone = other.moderators = other.chosen = other.own = other.announcements = other.addressed =
        other.shorten = false;
    other.subscribers = other.notices = other.bots = other.commands = other.repeated = other.name_first =
        other.rest_shares = true;
    other.links = Links::left_out;
    other.other_emoji = OtherEmoji::left_out;
    other.seats = 2;
    other.ignored_people = other.chosen_people = {{u"a", u"b"}};
    other.pinned_people = {{u"c", u"d"}};
    other.words = {{u"e", u"f"}};
    const auto lines = linesOf(other), usual = linesOf({});
    EXPECT_EQ(rulesOf(lines), other);
    for (std::size_t i = 0; i < usual.size(); ++i) {
        EXPECT_NE(lines[i], usual[i]) << "is not another one: " << murmelix::toUtf8(lines[i]);
    }
}

TEST(RulesTest, WhatMakesNoSenseIsPassedOver) {
    const Rules rules =
        rulesOf({u"", u"\t", u"lines a minute", u"lines a minute\t", u"lines a minute\tmany", u"lines a minute\t12x",
                 u"seats\t99", u"longest line\t-5", u"everyone\tmaybe", u"links\tgone", u"word\t\tx", u"unknown\tyes",
                 u"ignored person\t\tNobody", u"ignored person\ta@b", u"ignored person\tA@B\tAgain",
                 u"lines a minute\t99999999999999999999", u"word\ta\\nb\tc\\u202Ed\te"});
    Rules expected;
    expected.seats = 6;
    expected.longest_line = 20;
    expected.ignored_people = {{u"a@b", u"a@b"}};
    expected.words = {{u"a b", u"cd"}};
    EXPECT_EQ(rules, expected);
}

TEST(RulesTest, ListsHaveBounds) {
    std::vector<std::u16string> lines;
    for (int i = 0; i < 2'000; ++i) {
        lines.push_back(u"ignored person\t" + murmelix::toText(i) + std::u16string(300, u'x'));
        lines.push_back(u"word\t" + murmelix::toText(i) + std::u16string(99, u'x') + u"😀");
    }
    const Rules rules = rulesOf(lines);
    ASSERT_EQ(rules.words.size(), most_listed);
    EXPECT_EQ(rules.words[0].word, u"0" + std::u16string(99, u'x'));
    ASSERT_EQ(rules.ignored_people.size(), most_listed);
    EXPECT_EQ(rules.ignored_people[0].person.size(), longest_listed);
    People full = rules.ignored_people;
    EXPECT_FALSE(list(full, u"one more", u""));
    EXPECT_FALSE(list(full, u"", u""));
}

TEST(RulesTest, EveryReasonHasItsText) {
    std::set<std::u16string_view> texts;
    for (int why = 0; why <= static_cast<int>(Unread::deleted); ++why) {
        EXPECT_TRUE(texts.insert(whyText(static_cast<Unread>(why))).second);
    }
    EXPECT_FALSE(texts.contains(u""));
}

} // namespace

} // namespace messenger_client::reading
