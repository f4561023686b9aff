// The window of a conversation of a chat network, on the imitated screen, with an account behind it that a server's
// text drives.
#include "companions/messenger/client/live_window.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/live/account.h"
#include "tests/fakes/live_hooks.h"
#include "tests/fakes/ui/windows.h"
#include "tests/fakes/user_store.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
using testing::ElementsAre;
using testing::IsEmpty;
using ui::Key;

TEST(Links, AreAddressesOfTheWebAlone) {
    EXPECT_EQ(webAddress(u"https://example.org/a?b=c#d"), u"https://example.org/a?b=c#d");
    EXPECT_EQ(webAddress(u"HTTPS://EXAMPLE.ORG"), u"HTTPS://EXAMPLE.ORG");
    EXPECT_EQ(webAddress(u"www.example.org"), u"http://www.example.org");
    EXPECT_EQ(webAddress(u"www.example.org?file://x"), u"http://www.example.org?file://x");
    EXPECT_EQ(webAddress(u"www.://x"), u"http://www.://x");
    EXPECT_EQ(webAddress(u""), u"http://");
    EXPECT_EQ(webAddress(u"file:///c:/x.exe"), u"http://file:///c:/x.exe");
    EXPECT_EQ(webAddress(u"http://x/\"&calc\\^|\xFC"), u"http://x/%22&calc%5C%5E%7C%C3%BC");
}

struct LiveWindows : testing::Test {
    Client client;
    long long now = 1'000'000;
    std::optional<unsigned> timer;
    std::string sent;
    std::unique_ptr<LiveAccount> account;
    std::unique_ptr<LiveWindow> window;
    std::vector<std::u16string> links;
    int logs = 0, reconnects = 0;

    LiveWindows() {
        fakes::userStores() = {};
        fakes::screen() = {};
        client.listen([this](const Change& change) {
            if (change.kind == Change::Kind::window_created) {
                window = std::make_unique<LiveWindow>(
                    client, change.conversation,
                    LiveWindow::Hooks{.open_link = [this](const std::u16string& link) { links.push_back(link); },
                                      .keep_log = [this](LiveWindow&) { ++logs; },
                                      .reconnect = [this] { ++reconnects; }},
                    ui::Rect{100, 100, 700, 500});
                window->ShowInactive();
            }
            if (window) {
                window->changed(change);
            }
            if (change.kind == Change::Kind::window_destroyed) {
                account->closed(change.conversation);
            }
        });
        LiveAccount::Hooks hooks = quietHooks();
        hooks.send = [this](std::string_view bytes) { sent += bytes; };
        hooks.milliseconds = [this] { return now; };
        hooks.set_timer = [this](unsigned milliseconds) { timer = milliseconds; };
        account = std::make_unique<LiveAccount>(client, roomSettings(), Status::online, std::move(hooks));
        account->start();
        account->connected();
        server(":irc.example.org 001 me :Welcome");
        server(":irc.example.org 005 me NETWORK=Example :are supported");
        server(":irc.example.org 422 me :No message");
        server(":me!u@h JOIN #room");
        server(":irc.example.org 353 me = #room :me @ann bob +cy");
        server(":irc.example.org 366 me #room :End");
        sent.clear();
    }
    ~LiveWindows() override {
        window.reset();
        fakes::screen() = {};
    }
    void server(const std::string& line) { account->received(line + "\r\n"); }
    void writes(const std::string& nick, const std::string& text) {
        server(":" + nick + "!u@h PRIVMSG #room :" + text);
    }
    void pass(long long milliseconds) {
        const long long until = now + milliseconds;
        while (timer && now + *timer <= until) {
            now += *std::exchange(timer, std::nullopt);
            account->tick();
        }
        now = until;
    }
    void draw() {
        while (window->ShowTimer.Enabled()) {
            fakes::tick(window->ShowTimer);
        }
        if (window->PeopleTimer.Enabled()) {
            fakes::tick(window->PeopleTimer);
        }
    }
    std::u16string shown() {
        draw();
        return fakes::screen().texts[window->History.handle()];
    }
    const std::vector<fakes::Run>& runs() { return fakes::screen().runs[window->History.handle()]; }
    ui::Colour colourOf(std::u16string_view text) {
        draw();
        for (const fakes::Run& run : runs()) {
            if (run.text.find(text) != std::u16string::npos) {
                return run.looks.colour;
            }
        }
        ADD_FAILURE() << "not shown: " << murmelix::toUtf8(text);
        return 0;
    }
    std::vector<std::u16string> people() {
        draw();
        std::vector<std::u16string> names;
        for (int row = 0; row < window->People.ListCount(); ++row) {
            names.push_back(window->People.List(row));
        }
        return names;
    }
    void choose(ui::MenuItem& item, const std::u16string& person) {
        const auto names = people();
        fakes::pick(window->People, static_cast<int>(std::ranges::find(names, person) - names.begin()));
        ASSERT_TRUE(fakes::choose(item));
    }
};

TEST_F(LiveWindows, ShowWhatIsSaidGreyUntilItIsRead) {
    writes("ann", "hello");
    EXPECT_EQ(shown(), u"ann: hello");
    EXPECT_EQ(colourOf(u"hello"), colour::unread);
    EXPECT_FALSE(runs()[0].looks.bold) << "whoever sees no colours sees it by the name";
    pass(1'000);
    EXPECT_EQ(colourOf(u"hello"), colour::text);
    EXPECT_EQ(colourOf(u"ann: "), colour::text);
    EXPECT_TRUE(runs()[0].looks.bold);
    writes("bob", "!command");
    pass(60'000);
    EXPECT_EQ(colourOf(u"!command"), colour::unread) << "it is not read";
}

TEST_F(LiveWindows, KindsOfLinesLookDifferent) {
    server(":ann!u@h PRIVMSG #room :\x01"
           "ACTION waves\x01");
    server(":ann!u@h NOTICE #room :take note");
    EXPECT_EQ(shown(), u"* ann waves\r\nann notes: take note");
    pass(10'000);
    draw();
    EXPECT_TRUE(runs()[0].looks.bold);
    EXPECT_FALSE(runs()[1].looks.bold);
}

TEST_F(LiveWindows, LinksAreOpenedByTheMenu) {
    EXPECT_FALSE(fakes::find(window->TalkMenuLinks, u"No link was written lately")->Enabled());
    writes("ann", "see http://a.example/x?y=1&z=2 and www.b.example");
    writes("bob", "again: www.b.example, " + std::string("http://c.example/") + std::string(200, 'c'));
    ui::Menu& menu = window->TalkMenuLinks;
    ui::MenuItem* newest = fakes::find(menu, u"www.b.example");
    ASSERT_TRUE(newest);
    EXPECT_EQ(menu.items().size(), 3u) << "each once";
    EXPECT_EQ(menu.items()[0], newest) << "the newest first";
    EXPECT_EQ(menu.items()[1]->Caption().size(), 81u);
    EXPECT_TRUE(fakes::choose(*menu.items()[2]));
    EXPECT_THAT(links, ElementsAre(u"http://a.example/x?y=1&z=2"));
    for (int i = 0; i < 20; ++i) {
        writes("ann", "http://example.org/" + std::to_string(i));
    }
    fakes::find(menu, u"");
    EXPECT_EQ(menu.items().size(), 10u);
}

TEST_F(LiveWindows, DeletedLinesVanishWhereverTheyStand) {
    writes("ann", "one");
    writes("bob", "two");
    writes("ann", "three");
    ASSERT_EQ(shown(), u"ann: one\r\nbob: two\r\nann: three");
    LiveLines& lines = window->talk().lines();
    lines.remove(lines.first() + 1);
    window->talk().lines_changed();
    EXPECT_EQ(shown(), u"ann: one\r\nann: three");
    lines.remove(lines.first());
    window->talk().lines_changed();
    EXPECT_EQ(shown(), u"ann: three");
    pass(20'000);
    EXPECT_EQ(colourOf(u"three"), colour::text) << "its place is still known";
    lines.remove(lines.first() + 2);
    window->talk().lines_changed();
    EXPECT_EQ(shown(), u"");
    writes("cy", "four");
    EXPECT_EQ(shown(), u"cy: four");
}

TEST_F(LiveWindows, KeepTheLastFiveThousandLines) {
    for (int i = 0; i < 12'000; ++i) {
        writes("ann", "n" + std::to_string(i));
        if (i % 1'000 == 0) {
            draw();
        }
    }
    const std::u16string text = shown();
    EXPECT_TRUE(text.ends_with(u"ann: n11998\r\nann: n11999"));
    const auto count = static_cast<std::size_t>(std::ranges::count(text, u'\n')) + 1;
    EXPECT_GE(count, LiveLines::most);
    EXPECT_LE(count, LiveLines::most + 500);
    EXPECT_TRUE(text.starts_with(u"ann: n")) << "without a line end before the first";
    EXPECT_EQ(window->History.Length(), static_cast<int>(text.size() - (count - 1)));
}

TEST_F(LiveWindows, LinksAreClicked) {
    writes("ann", "see http://example.org/ there");
    draw();
    ASSERT_EQ(runs().size(), 4u);
    EXPECT_EQ(runs()[2].text, u"http://example.org/");
    EXPECT_TRUE(runs()[2].looks.link);
    EXPECT_FALSE(runs()[3].looks.link);
    window->History.LinkClick(u"http://example.org/");
    EXPECT_THAT(links, ElementsAre(u"http://example.org/"));
    pass(1'000);
    draw();
    EXPECT_TRUE(runs()[2].looks.link) << "also when it has been read";
}

TEST_F(LiveWindows, LinksLeadIntoTheWebAlone) {
    writes("ann", "file://c/x.exe and irc://example.org/room, but www.example.org");
    draw();
    std::vector<std::u16string> shown_links;
    for (const fakes::Run& run : runs()) {
        if (run.looks.link) {
            shown_links.push_back(run.text);
        }
    }
    EXPECT_THAT(shown_links, ElementsAre(u"www.example.org"));
}

TEST_F(LiveWindows, ListThoseOnStageThenThoseWithARankThenTheOthers) {
    EXPECT_THAT(people(), ElementsAre(u"ann", u"cy", u"bob", u"me"));
    writes("bob", "hello");
    pass(1'000);
    EXPECT_THAT(people(), ElementsAre(u"bob", u"ann", u"cy", u"me"));
    const auto drawn = fakes::drawn(*window);
    EXPECT_TRUE(
        std::ranges::any_of(drawn, [](const auto& drawing) { return drawing.text == u"#room \x2013 4 people"; }));
}

TEST_F(LiveWindows, PeopleArePinnedIgnoredAndChosenByTheirMenu) {
    choose(window->PeopleMenuItems.Ignore, u"bob");
    EXPECT_TRUE(reading::isListed(window->talk().rules().ignored_people, u"bob@Example"));
    choose(window->PeopleMenuItems.Pin, u"ann");
    EXPECT_TRUE(reading::isListed(window->talk().rules().pinned_people, u"ann@Example"));
    choose(window->PeopleMenuItems.Choose, u"cy");
    EXPECT_TRUE(reading::isListed(window->talk().rules().chosen_people, u"cy@Example"));
    choose(window->PersonPopupItems.Ignore, u"bob");
    EXPECT_FALSE(reading::isListed(window->talk().rules().ignored_people, u"bob@Example"));
    window->PeopleMenu.Popup();
    EXPECT_FALSE(window->PeopleMenuItems.Ignore.Checked());
}

TEST_F(LiveWindows, MenuOfAPersonNeedsOne) {
    window->PeopleMenu.Popup();
    EXPECT_FALSE(window->PeopleMenuItems.Ignore.Enabled());
    window->PeopleMenuItems.Ignore.onClick();
    EXPECT_THAT(window->talk().rules().ignored_people, IsEmpty());
}

TEST_F(LiveWindows, TalkAloneByDoubleClick) {
    draw();
    fakes::doubleClick(window->People, 0);
    ASSERT_EQ(client.conversations().size(), 2u);
    EXPECT_EQ(client.conversations().back()->live()->title(), u"ann");
}

TEST_F(LiveWindows, WhatIsTypedGoesToTheServer) {
    fakes::type(window->Input, u"hello all");
    fakes::click(window->Send);
    EXPECT_EQ(sent, "PRIVMSG #room :hello all\r\n");
    EXPECT_EQ(window->Input.Text(), u"");
    sent.clear();
    fakes::click(window->Send);
    EXPECT_EQ(sent, "");
}

TEST_F(LiveWindows, AreSearched) {
    writes("ann", "one fish");
    writes("bob", "two fish");
    draw();
    EXPECT_FALSE(window->FindTxt.Visible());
    EXPECT_TRUE(fakes::key(*window, {u'F', ui::control_key}));
    ASSERT_TRUE(window->FindTxt.Visible());
    EXPECT_TRUE(window->FindTxt.Focused());
    fakes::type(window->FindTxt, u"FISH");
    fakes::click(window->FindNextButt);
    EXPECT_EQ(fakes::screen().selected_text[window->History.handle()], u"fish");
    fakes::type(window->FindTxt, u"three");
    fakes::click(window->FindPreviousButt);
    EXPECT_EQ(window->FindTxt.ForeColor(), colour::fault);
    EXPECT_EQ(fakes::screen().beeps, 1) << "for those who do not see the colour";
    EXPECT_TRUE(fakes::key(*window, Key::escape));
    EXPECT_FALSE(window->FindTxt.Visible());
    EXPECT_TRUE(window->Input.Focused());
    EXPECT_FALSE(fakes::key(*window, Key::escape));
    EXPECT_FALSE(window->conversation()->closed()) << "a channel is left on purpose alone";
}

TEST_F(LiveWindows, MenuDoesWhatItSays) {
    EXPECT_TRUE(fakes::choose(window->TalkMenuLog));
    EXPECT_EQ(logs, 1);
    EXPECT_TRUE(fakes::choose(window->TalkMenuReconnect));
    EXPECT_EQ(reconnects, 1);
    EXPECT_TRUE(fakes::choose(window->TalkMenuLeave));
    EXPECT_TRUE(window->conversation()->closed());
    EXPECT_EQ(sent, "PART #room\r\n");
}

TEST_F(LiveWindows, RulesAreChangedOnTheirPageAndByTheMenuOfPeople) {
    writes("bob", "!command");
    EXPECT_FALSE(window->RulesPage);
    EXPECT_TRUE(fakes::choose(window->TalkMenuRules));
    ASSERT_TRUE(window->RulesPage && window->RulesPage->Visible());
    EXPECT_TRUE(fakes::click(window->RulesPage->CommandsCheck));
    EXPECT_TRUE(window->talk().rules().commands);
    EXPECT_TRUE(fakes::click(window->RulesPage->CloseButt));
    EXPECT_TRUE(fakes::click(window->RulesButt));
    EXPECT_TRUE(window->RulesPage->Visible());
    choose(window->PeopleMenuItems.Ignore, u"bob");
    EXPECT_TRUE(window->talk().rules().commands) << "the page has kept up";
}

TEST_F(LiveWindows, NewsAreMarkedForWhoLookedAway) {
    window->onActivate();
    writes("ann", "seen");
    window->onDeactivate();
    writes("bob", "new");
    EXPECT_EQ(shown(), u"ann: seen\r\n\x2500\x2500 New since you looked away \x2500\x2500\r\nbob: new");
}

TEST_F(LiveWindows, TopicStandsInTheBand) {
    server(":ann!u@h TOPIC #room :all about fish");
    const auto drawn = fakes::drawn(*window);
    EXPECT_TRUE(std::ranges::any_of(drawn, [](const auto& drawing) { return drawing.text == u"all about fish"; }));
}

} // namespace

} // namespace messenger_client
