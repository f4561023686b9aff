// The page of what is read, as its user meets it: every option, and what it makes of the last lines.
#include "companions/messenger/client/reading_page.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
using fakes::choose;
using fakes::click;
using fakes::drawn;
using fakes::key;
using fakes::pick;
using fakes::screen;
using fakes::type;
using reading::Rules;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct Owner : ui::Form {
    Owner() : Form(nullptr, u"#murmelix", ui::FormStyle::sizable) {}
};

struct ReadingPages : testing::Test {
    Rules rules;
    std::vector<reading::Line> lines;
    int changes = 0;
    std::optional<Owner> owner;
    std::optional<ReadingPage> made;

    ReadingPages() {
        fakes::reset();
        screen() = {};
        say(u"Ann", u"hello 😂 🍕");
        say(u"bob", u"!song");
        say(u"Cid", u"see https://example.org/x");
    }

    void say(const std::u16string& name, const std::u16string& text) {
        reading::Line line;
        line.number = lines.size() + 1;
        line.name = name;
        line.person = murmelix::toLower(name) + u"@net";
        line.text = text;
        line.time = static_cast<long long>(lines.size()) * 10'000;
        lines.push_back(line);
    }
    ReadingPage& open() {
        owner.emplace();
        made.emplace(
            *owner, u"#murmelix",
            ReadingPage::Hooks{
                .rules = [this] { return rules; },
                .changed =
                    [this](const Rules& changed) {
                        rules = changed;
                        ++changes;
                    },
                .lines = [this] { return lines; },
                .surroundings =
                    [] {
                        return reading::Surroundings{u"Me", [](std::u16string_view name) { return name == u"Ann"; }};
                    }});
        made->present();
        return *made;
    }
    std::vector<std::string> preview() const { return rows(made->PreviewList); }
    static std::vector<std::string> rows(const ui::ListBox& list) {
        std::vector<std::string> all;
        for (int i = 0; i < list.ListCount(); ++i) {
            all.push_back(murmelix::toUtf8(list.List(i)));
        }
        return all;
    }
    // The colours in which the texts of a row are written.
    static std::map<std::u16string, ui::Colour> colours(const ui::ListBox& list, int row) {
        std::map<std::u16string, ui::Colour> all;
        for (const auto& drawing : drawn(list, row, 500, 20)) {
            if (drawing.kind == fakes::Drawing::Kind::text) {
                all[drawing.text] = drawing.colour;
            }
        }
        return all;
    }
};

TEST_F(ReadingPages, TellsWhatIsReadAndWhyTheRestIsNot) {
    ReadingPage& page = open();
    EXPECT_EQ(page.Caption(), u"What is read in #murmelix");
    EXPECT_TRUE(page.Visible());
    EXPECT_THAT(preview(), ElementsAre("Ann: hello (lol) [pizza]", "bob: !song (not read: a command)",
                                       "Cid: see a link to example.org"));
    EXPECT_EQ(page.PreviewLbl.Caption(), u"&Preview: of the last 3 lines, 2 are read");
    EXPECT_EQ(page.PreviewList.ListIndex(), 2);
}

TEST_F(ReadingPages, DrawsWhatIsReadInBlackAndTheRestInGrey) {
    ReadingPage& page = open();
    const auto read = colours(page.PreviewList, 0), unread = colours(page.PreviewList, 1);
    EXPECT_EQ(read.at(u"hello (lol) [pizza]"), colour::text);
    EXPECT_EQ(read.at(u"Ann"), colour::link);
    const ui::Colour grey = unread.at(u"!song");
    EXPECT_NE(grey, colour::text);
    EXPECT_EQ(unread.at(u"bob"), grey);
    EXPECT_EQ(unread.at(u"a command"), grey);
}

TEST_F(ReadingPages, SaysSoWhereThereIsNothingToPreview) {
    lines.clear();
    ReadingPage& page = open();
    EXPECT_EQ(page.PreviewLbl.Caption(), u"&Preview: nobody has said anything yet");
    EXPECT_THAT(preview(), IsEmpty());
    say(u"Ann", u"hello");
    page.linesChanged();
    EXPECT_EQ(page.PreviewLbl.Caption(), u"&Preview: of the last 1 line, 1 is read");
}

TEST_F(ReadingPages, EveryBoxSetsItsRuleAtOnce) {
    ReadingPage& page = open();
    struct Box {
        ui::CheckBox& box;
        bool Rules::*rule;
        bool opposite;
        int on_page;
    };
    const Box boxes[] = {{page.ShortenCheck, &Rules::shorten, false, 0},
                         {page.NameCheck, &Rules::name_first, false, 0},
                         {page.BotsCheck, &Rules::bots, true, 0},
                         {page.CommandsCheck, &Rules::commands, true, 0},
                         {page.RepeatedCheck, &Rules::repeated, true, 0},
                         {page.AddressedCheck, &Rules::addressed, true, 0},
                         {page.NoticesCheck, &Rules::notices, true, 0},
                         {page.AnnouncementsCheck, &Rules::announcements, true, 0},
                         {page.OwnCheck, &Rules::own, true, 0},
                         {page.ShareCheck, &Rules::rest_shares, false, 1},
                         {page.ModeratorsCheck, &Rules::moderators, false, 1},
                         {page.SubscribersCheck, &Rules::subscribers, false, 1},
                         {page.ChosenCheck, &Rules::chosen, false, 1}};
    page.Pages.setSelected(1);
    ASSERT_TRUE(pick(page.WhoList, 1));
    for (const Box& each : boxes) {
        page.Pages.setSelected(each.on_page);
        const std::string caption = murmelix::toUtf8(each.box.Caption());
        EXPECT_EQ(each.box.Value() != 0, rules.*each.rule != each.opposite) << caption;
        Rules expected = rules;
        expected.*each.rule = !(rules.*each.rule);
        const int before = changes;
        ASSERT_TRUE(click(each.box)) << caption;
        EXPECT_EQ(rules, expected) << caption;
        EXPECT_EQ(changes, before + 1) << caption;
    }
}

TEST_F(ReadingPages, AnOptionChangesThePreviewAtOnce) {
    ReadingPage& page = open();
    ASSERT_TRUE(click(page.CommandsCheck));
    EXPECT_EQ(preview()[1], "bob: !song");
    EXPECT_EQ(page.PreviewLbl.Caption(), u"&Preview: of the last 3 lines, 3 are read");
    ASSERT_TRUE(click(page.NameCheck));
    EXPECT_EQ(preview()[1], "bob: bob: !song");
    ASSERT_TRUE(pick(page.EmojiList, 1));
    EXPECT_EQ(preview()[0], "Ann: Ann: hello (lol)");
    ASSERT_TRUE(pick(page.LinksList, 1));
    EXPECT_EQ(preview()[2], "Cid: Cid: see");
    ASSERT_TRUE(pick(page.LinksList, 2));
    EXPECT_EQ(preview()[2], "Cid: Cid: see https://example.org/x");
}

TEST_F(ReadingPages, ThePreviewKeepsItsPlaceMeanwhile) {
    ReadingPage& page = open();
    ASSERT_TRUE(pick(page.PreviewList, 0));
    ASSERT_TRUE(click(page.CommandsCheck));
    EXPECT_EQ(page.PreviewList.ListIndex(), 0);
}

TEST_F(ReadingPages, NumbersAreTheUsualOnesAndTheOneThatItIs) {
    rules.lines_a_minute = 17;
    ReadingPage& page = open();
    EXPECT_EQ(page.PaceList.Text(), u"17");
    EXPECT_EQ(page.LengthList.Text(), u"200");
    EXPECT_EQ(page.LengthList.ListCount(), 7);
    ASSERT_TRUE(pick(page.PaceList, 0));
    EXPECT_EQ(rules.lines_a_minute, 1);
    ASSERT_TRUE(pick(page.LengthList, 6));
    EXPECT_EQ(rules.longest_line, 1'000);
    page.Pages.setSelected(1);
    ASSERT_TRUE(pick(page.SeatsList, 3));
    EXPECT_EQ(rules.seats, 3);
}

TEST_F(ReadingPages, SomeAloneCanBeRead) {
    ReadingPage& page = open();
    page.Pages.setSelected(1);
    EXPECT_FALSE(page.ModeratorsCheck.Enabled());
    ASSERT_TRUE(pick(page.WhoList, 1));
    EXPECT_FALSE(rules.everyone);
    EXPECT_TRUE(page.ModeratorsCheck.Enabled());
    EXPECT_THAT(preview(), Contains("Ann: hello 😂 🍕 (not read: not of those who are read)"));
    ASSERT_TRUE(pick(page.WhoList, 0));
    EXPECT_TRUE(rules.everyone);
}

TEST_F(ReadingPages, PeopleAreThoseWhoWriteAndThoseOnTheLists) {
    reading::list(rules.ignored_people, u"zoe@net", u"Zoe");
    reading::list(rules.chosen_people, u"ann@net", u"Ann before");
    ReadingPage& page = open();
    page.Pages.setSelected(1);
    EXPECT_THAT(rows(page.PeopleList), ElementsAre("Ann", "bob", "Cid", "Zoe"));
    EXPECT_FALSE(page.IgnoreCheck.Enabled());
    ASSERT_TRUE(pick(page.PeopleList, 3));
    EXPECT_EQ(page.IgnoreCheck.Value(), 1);
    EXPECT_EQ(page.ChooseCheck.Value(), 0);
    EXPECT_THAT(colours(page.PeopleList, 3), Contains(std::pair(std::u16string(u"not read"), colour::soft_text)));
    ASSERT_TRUE(click(page.IgnoreCheck));
    EXPECT_THAT(rules.ignored_people, IsEmpty());
    EXPECT_THAT(rows(page.PeopleList), ElementsAre("Ann", "bob", "Cid")) << "and nothing more is known of Zoe";
}

TEST_F(ReadingPages, APersonIsMarkedByTheBoxes) {
    ReadingPage& page = open();
    page.Pages.setSelected(1);
    ASSERT_TRUE(pick(page.PeopleList, 0));
    ASSERT_TRUE(click(page.IgnoreCheck));
    EXPECT_EQ(rules.ignored_people, (reading::People{{u"ann@net", u"Ann"}}));
    EXPECT_EQ(preview()[0], "Ann: hello 😂 🍕 (not read: on the ignore list)");
    EXPECT_EQ(page.PeopleList.ListIndex(), 0);
    ASSERT_TRUE(click(page.ChooseCheck));
    ASSERT_TRUE(click(page.PinCheck));
    EXPECT_EQ(rules.chosen_people, (reading::People{{u"ann@net", u"Ann"}}));
    EXPECT_EQ(rules.pinned_people, (reading::People{{u"ann@net", u"Ann"}}));
    EXPECT_TRUE(colours(page.PeopleList, 0).contains(u"not read, chosen, on stage"));
    ASSERT_TRUE(pick(page.PeopleList, 1));
    EXPECT_EQ(page.IgnoreCheck.Value(), 0);
    EXPECT_EQ(changes, 3) << "to select somebody changes nothing";
}

TEST_F(ReadingPages, TheWriterOfALineHasAMenu) {
    ReadingPage& page = open();
    ASSERT_TRUE(pick(page.PreviewList, 2));
    ASSERT_TRUE(fakes::askForMenu(page.PreviewList));
    EXPECT_THAT(screen().popups, ElementsAre(&page.PersonMenu));
    EXPECT_FALSE(page.PersonMenuIgnore.Checked());
    ASSERT_TRUE(choose(page.PersonMenuIgnore));
    EXPECT_EQ(rules.ignored_people, (reading::People{{u"cid@net", u"Cid"}}));
    ASSERT_TRUE(fakes::askForMenu(page.PreviewList));
    EXPECT_TRUE(page.PersonMenuIgnore.Checked());
    ASSERT_TRUE(choose(page.PersonMenuIgnore));
    EXPECT_THAT(rules.ignored_people, IsEmpty());
    ASSERT_TRUE(choose(page.PersonMenuPin));
    EXPECT_EQ(rules.pinned_people, (reading::People{{u"cid@net", u"Cid"}}));
}

TEST_F(ReadingPages, TheUserIsNoOneToBeIgnored) {
    lines.back().mine = true;
    ReadingPage& page = open();
    page.Pages.setSelected(1);
    EXPECT_THAT(rows(page.PeopleList), ElementsAre("Ann", "bob"));
    ASSERT_TRUE(pick(page.PreviewList, 2));
    ASSERT_TRUE(fakes::askForMenu(page.PreviewList));
    EXPECT_THAT(screen().popups, IsEmpty());
}

TEST_F(ReadingPages, WordsAreAddedChangedAndRemoved) {
    ReadingPage& page = open();
    page.Pages.setSelected(2);
    EXPECT_FALSE(page.AddButt.Enabled());
    ASSERT_TRUE(type(page.WordTxt, u" hello\t"));
    ASSERT_TRUE(type(page.ReplacementTxt, u"good morning"));
    ASSERT_TRUE(click(page.AddButt));
    EXPECT_EQ(rules.words, (std::vector<reading::WordRule>{{u"hello", u"good morning"}}));
    EXPECT_EQ(preview()[0], "Ann: good morning (lol) [pizza]");
    EXPECT_EQ(page.WordTxt.Text(), u"");
    EXPECT_TRUE(page.WordTxt.Focused());

    ASSERT_TRUE(type(page.WordTxt, u"see"));
    ASSERT_TRUE(key(page, {ui::Key::enter}));
    EXPECT_THAT(rows(page.WordsList), ElementsAre("hello: good morning", "see: nothing"));
    EXPECT_EQ(preview()[2], "Cid: a link to example.org");

    ASSERT_TRUE(pick(page.WordsList, 0));
    EXPECT_EQ(page.WordTxt.Text(), u"hello");
    EXPECT_EQ(page.ReplacementTxt.Text(), u"good morning");
    ASSERT_TRUE(type(page.ReplacementTxt, u"hi"));
    ASSERT_TRUE(click(page.AddButt));
    EXPECT_THAT(rows(page.WordsList), ElementsAre("hello: hi", "see: nothing"));

    ASSERT_TRUE(pick(page.WordsList, 0));
    page.WordsList.SetFocus();
    ASSERT_TRUE(key(page, {ui::Key::del}));
    ASSERT_TRUE(click(page.RemoveButt));
    EXPECT_THAT(rules.words, IsEmpty());
    EXPECT_FALSE(page.RemoveButt.Enabled());
    EXPECT_EQ(preview()[2], "Cid: see a link to example.org");
}

TEST_F(ReadingPages, WhatIsNoWordIsNotAdded) {
    ReadingPage& page = open();
    page.Pages.setSelected(2);
    ASSERT_TRUE(type(page.WordTxt, u" \u202E "));
    EXPECT_FALSE(page.AddButt.Enabled());
    ASSERT_TRUE(key(page, {ui::Key::enter}));
    EXPECT_EQ(screen().beeps, 1);
    EXPECT_EQ(changes, 0);
    ASSERT_TRUE(type(page.WordTxt, std::u16string(500, u'x')));
    ASSERT_TRUE(click(page.AddButt));
    EXPECT_EQ(rules.words.at(0).word, std::u16string(100, u'x'));
}

TEST_F(ReadingPages, UsualSettingsLeaveTheLists) {
    rules.lines_a_minute = 3;
    rules.commands = true;
    rules.words = {{u"a", u"b"}};
    reading::list(rules.ignored_people, u"zoe@net", u"Zoe");
    ReadingPage& page = open();
    ASSERT_TRUE(click(page.UsualButt));
    Rules expected;
    expected.words = {{u"a", u"b"}};
    expected.ignored_people = {{u"zoe@net", u"Zoe"}};
    EXPECT_EQ(rules, expected);
    EXPECT_EQ(page.PaceList.Text(), u"15");
    EXPECT_EQ(page.CommandsCheck.Value(), 1);
    ASSERT_TRUE(click(page.UsualButt));
    EXPECT_EQ(changes, 1);
}

TEST_F(ReadingPages, NewLinesAreShownAFewAtATime) {
    ReadingPage& page = open();
    say(u"Dan", u"new one");
    page.linesChanged();
    EXPECT_EQ(preview().back(), "Dan: new one");
    EXPECT_EQ(page.PreviewList.ListIndex(), 3);
    say(u"Eve", u"newer one");
    page.linesChanged();
    EXPECT_EQ(preview().size(), 4u);
    fakes::tick(page.PreviewTimer);
    EXPECT_EQ(preview().back(), "Eve: newer one");
    fakes::tick(page.PreviewTimer);
    EXPECT_FALSE(page.PreviewTimer.Enabled());
}

TEST_F(ReadingPages, ASelectedLineStaysSelectedWhileOthersCome) {
    ReadingPage& page = open();
    ASSERT_TRUE(pick(page.PreviewList, 1));
    say(u"Dan", u"new one");
    lines.erase(lines.begin());
    page.linesChanged();
    EXPECT_EQ(page.PreviewList.ListIndex(), 0);
    EXPECT_EQ(preview()[0], "bob: !song (not read: a command)");
    lines.erase(lines.begin());
    fakes::tick(page.PreviewTimer);
    EXPECT_EQ(page.PreviewList.ListIndex(), 1);
}

TEST_F(ReadingPages, RulesThatChangeElsewhereAreShown) {
    ReadingPage& page = open();
    reading::list(rules.ignored_people, u"ann@net", u"Ann");
    rules.bots = true;
    page.rulesChanged();
    EXPECT_EQ(page.BotsCheck.Value(), 0);
    EXPECT_EQ(preview()[0], "Ann: hello 😂 🍕 (not read: on the ignore list)");
    EXPECT_EQ(changes, 0);
}

TEST_F(ReadingPages, HiddenItAsksForNothing) {
    ReadingPage& page = open();
    ASSERT_TRUE(key(page, {ui::Key::escape}));
    EXPECT_FALSE(page.Visible());
    say(u"Dan", u"new one");
    rules.bots = true;
    page.linesChanged();
    page.rulesChanged();
    EXPECT_EQ(preview().size(), 3u);
    EXPECT_EQ(page.BotsCheck.Value(), 1);
    page.present();
    EXPECT_EQ(preview().size(), 4u);
    EXPECT_EQ(page.BotsCheck.Value(), 0);
    fakes::close(page);
    EXPECT_FALSE(page.Visible());
    page.present();
    ASSERT_TRUE(click(page.CloseButt));
    EXPECT_FALSE(page.Visible());
}

TEST_F(ReadingPages, EveryLetterIsOneControls) {
    ReadingPage& page = open();
    for (const ui::TabPage* tab : page.Pages.Pages()) {
        std::map<char16_t, std::string> letters;
        std::vector<const ui::Control*> controls{tab, &page.PreviewLbl, &page.UsualButt, &page.CloseButt};
        while (!controls.empty()) {
            const ui::Control* control = controls.back();
            controls.pop_back();
            controls.insert(controls.end(), control->Children().begin(), control->Children().end());
            const char16_t letter = murmelix::ui::mnemonicOf(control->Caption());
            if (letter != 0 && !dynamic_cast<const ui::TextBox*>(control)) {
                const auto [at, first] = letters.emplace(letter, murmelix::toUtf8(control->Caption()));
                EXPECT_TRUE(first) << at->second << " and " << murmelix::toUtf8(control->Caption());
            }
        }
    }
}

TEST_F(ReadingPages, TheKeyboardGoesEverywhere) {
    ReadingPage& page = open();
    for (int tab = 0; tab < 3; ++tab) {
        page.Pages.setSelected(tab);
        page.Pages.SetFocus();
        std::set<const ui::Control*> met;
        for (int i = 0; i < 60; ++i) {
            key(page, {ui::Key::tab});
            met.insert(page.focused());
        }
        EXPECT_TRUE(met.contains(&page.PreviewList));
        EXPECT_TRUE(met.contains(&page.CloseButt));
        EXPECT_EQ(met.contains(&page.OwnCheck), tab == 0);
        EXPECT_EQ(met.contains(&page.PeopleList), tab == 1);
        EXPECT_EQ(met.contains(&page.WordTxt), tab == 2);
    }
    page.Pages.setSelected(1);
    EXPECT_TRUE(fakes::accelerator(page, u'P'));
    EXPECT_TRUE(page.PreviewList.Focused());
    EXPECT_TRUE(fakes::accelerator(page, u'W'));
    EXPECT_TRUE(page.PeopleList.Focused());
}

TEST_F(ReadingPages, NothingCoversAnythingAndAllIsInSight) {
    ReadingPage& page = open();
    for (const auto& [width, height] :
         {std::pair{page.leastScale().width, page.leastScale().height}, {1'000 * 15, 680 * 15}}) {
        fakes::resize(page, width, height);
        for (int tab = 0; tab < 3; ++tab) {
            page.Pages.setSelected(tab);
            std::vector<const ui::Control*> holders{&page, page.Pages.Pages()[static_cast<std::size_t>(tab)],
                                                    &page.UnreadFrame, &page.PeopleFrame, &page.WordsFrame};
            for (const ui::Control* holder : holders) {
                for (const ui::Control* child : holder->Children()) {
                    const ui::Rect& of = child->Bounds();
                    const int right = holder == &page ? page.ScaleWidth() : holder->Width();
                    const int bottom = holder == &page ? page.ScaleHeight() : holder->Height();
                    EXPECT_GT(of.width, 0) << murmelix::toUtf8(child->Caption());
                    EXPECT_GT(of.height, 0) << murmelix::toUtf8(child->Caption());
                    EXPECT_LE(of.left + of.width, right) << murmelix::toUtf8(child->Caption());
                    EXPECT_LE(of.top + of.height, bottom) << murmelix::toUtf8(child->Caption());
                }
            }
        }
    }
    EXPECT_LE(page.leastScale().width, 1'000 * 15);
    EXPECT_LE(page.leastScale().height, 680 * 15);
}

} // namespace

} // namespace messenger_client
