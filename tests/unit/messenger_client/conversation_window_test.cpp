// The window of a conversation as a user works with it, on the imitated screen.
#include "companions/messenger/client/conversation_window.h"

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/client/account.h"
#include "tests/fakes/ui/windows.h"
#include "tests/fakes/user_store.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
using fakes::Drawing;
using testing::ElementsAre;
using ui::Key;

struct ConversationWindows : testing::Test {
    Client client;
    ContactPtr ann, bob, cy;
    ConversationPtr conversation;
    std::unique_ptr<ConversationWindow> window;

    ConversationWindows() {
        fakes::userStores() = {};
        fakes::screen() = {};
        client.signIn(u"me@x", u"Mia");
        ann = client.addContact(u"ann@x", u"Ann");
        bob = client.addContact(u"bob@x", u"Bob");
        cy = client.addContact(u"cy@x", u"Cy");
        client.listen([this](const Change& change) {
            if (window) {
                window->changed(change);
            }
        });
        conversation = client.open({ann, bob});
        open();
    }
    ~ConversationWindows() override {
        window.reset();
        fakes::screen() = {};
    }
    void open() {
        window.reset();
        window = std::make_unique<ConversationWindow>(client, conversation, ui::Rect{300, 100, 566, 480});
        window->ShowInactive();
    }
    std::vector<std::u16string> peopleShown() const {
        std::vector<std::u16string> names;
        for (int row = 0; row < window->People.ListCount(); ++row) {
            names.push_back(window->People.List(row));
        }
        return names;
    }
    std::vector<std::u16string> writers() const {
        std::vector<std::u16string> names;
        for (int entry = 0; entry < window->TypeAs.ListCount(); ++entry) {
            names.push_back(window->TypeAs.List(entry));
        }
        return names;
    }
    std::vector<std::u16string> guests() {
        fakes::click(window->Invite);
        std::vector<std::u16string> names;
        for (const ui::MenuItem* item : window->Guests.items()) {
            names.push_back(item->Caption());
        }
        return names;
    }
    std::u16string shown() {
        while (window->ShowTimer.Enabled()) {
            fakes::tick(window->ShowTimer);
        }
        return fakes::screen().texts[window->History.handle()];
    }
    bool says(std::u16string_view end) const { return conversation->history().ends_with(end); }
    bool draws(const std::u16string& text) const {
        const auto all = fakes::drawn(*window);
        return std::any_of(all.begin(), all.end(), [&](const Drawing& drawing) { return drawing.text == text; });
    }
};

TEST_F(ConversationWindows, SayWhatIsTyped) {
    ASSERT_TRUE(fakes::type(window->Input, u"hello :)\r\nall"));
    ASSERT_TRUE(fakes::click(window->Send));
    EXPECT_TRUE(says(u"\r\nMia says:\r\nhello :)\r\nall"));
    EXPECT_EQ(window->Input.Text(), u"");
}

TEST_F(ConversationWindows, SendByEnterAndBreakLinesByShiftEnter) {
    fakes::type(window->Input, u"one");
    EXPECT_TRUE(window->Input.KeyPress({Key::enter, ui::shift_key}));
    EXPECT_EQ(window->Input.Text(), u"one\r\n");
    EXPECT_FALSE(window->Input.KeyPress({Key::left}));
    EXPECT_FALSE(says(u"one"));
    EXPECT_TRUE(fakes::key(*window, Key::enter));
    EXPECT_TRUE(says(u"\r\nMia says:\r\none"));
}

TEST_F(ConversationWindows, EnterSendsWhereverElseTheKeyboardIs) {
    fakes::type(window->Input, u"from the list");
    fakes::pick(window->People, 1);
    EXPECT_TRUE(fakes::key(*window, Key::enter));
    EXPECT_TRUE(says(u"from the list"));
}

TEST_F(ConversationWindows, TypeIntoTheInputAtFirst) {
    EXPECT_TRUE(window->Input.Focused());
}

TEST_F(ConversationWindows, CloseByEscapeAndByTheCloseBox) {
    EXPECT_TRUE(fakes::key(*window, Key::escape));
    EXPECT_TRUE(conversation->closed());
    conversation = client.open({ann});
    open();
    fakes::close(*window);
    EXPECT_TRUE(conversation->closed());
}

TEST_F(ConversationWindows, OneTypesAsAParticipant) {
    EXPECT_THAT(writers(), ElementsAre(u"Me", u"Ann", u"Bob"));
    fakes::pick(window->TypeAs, 2);
    EXPECT_TRUE(window->Input.Focused()) << "what is typed next is for the conversation";
    fakes::type(window->Input, u"it is me");
    fakes::click(window->Send);
    EXPECT_TRUE(says(u"\r\nBob says:\r\nit is me"));
    client.leave(conversation, ann);
    EXPECT_EQ(window->TypeAs.Text(), u"Bob");
    client.join(conversation, cy);
    EXPECT_EQ(window->TypeAs.Text(), u"Bob");
    client.leave(conversation, bob);
    EXPECT_EQ(window->TypeAs.Text(), u"Me");
}

TEST_F(ConversationWindows, WhatAnotherProgramChoseToTypeAsCounts) {
    fakes::screen().selected[window->TypeAs.handle()] = 1;
    fakes::type(window->Input, u"by a program");
    fakes::click(window->Send);
    EXPECT_TRUE(says(u"\r\nAnn says:\r\nby a program"));
}

TEST_F(ConversationWindows, TheTypingGoesOnWhateverWasPressed) {
    const auto leave = [&] {
        window->People.SetFocus();
        ASSERT_FALSE(window->Input.Focused());
    };
    leave();
    fakes::click(window->Send);
    EXPECT_TRUE(window->Input.Focused());
    window->TypeAs.SetFocus();
    fakes::pick(window->TypeAs, 1);
    EXPECT_TRUE(fakes::key(*window, Key::enter));
    EXPECT_TRUE(window->Input.Focused()) << "chosen by the arrows, taken by Enter";
    leave();
    guests();
    ASSERT_TRUE(fakes::choose(*fakes::find(window->Guests, u"Cy")));
    EXPECT_TRUE(window->Input.Focused());
}

TEST_F(ConversationWindows, AltAGoesToTheWriters) {
    EXPECT_TRUE(fakes::key(*window, {u'A', ui::alt_key}));
    EXPECT_TRUE(window->TypeAs.Focused());
    const auto all = fakes::drawn(*window);
    const auto marked = std::find_if(all.begin(), all.end(), [](const Drawing& drawing) { return drawing.underline; });
    ASSERT_NE(marked, all.end());
    EXPECT_EQ(marked->text, u"a");
}

TEST_F(ConversationWindows, FollowWhoComesAndGoes) {
    EXPECT_EQ(window->Caption(), u"Ann, Bob - Conversation");
    EXPECT_THAT(peopleShown(), ElementsAre(u"Ann", u"Bob"));
    EXPECT_TRUE(draws(u"2 participants"));
    fakes::pick(window->People, 1);
    client.join(conversation, cy);
    client.leave(conversation, ann);
    EXPECT_THAT(peopleShown(), ElementsAre(u"Bob", u"Cy"));
    EXPECT_THAT(writers(), ElementsAre(u"Me", u"Bob", u"Cy"));
    EXPECT_EQ(window->People.ListIndex(), 0) << "still Bob";
    client.rename(cy, u"Cyril");
    EXPECT_THAT(peopleShown(), ElementsAre(u"Bob", u"Cyril"));
    EXPECT_THAT(writers(), ElementsAre(u"Me", u"Bob", u"Cyril"));
    EXPECT_EQ(window->Caption(), u"Bob, Cyril - Conversation");
    client.leave(conversation, bob);
    EXPECT_TRUE(draws(u"1 participant"));
    client.leave(conversation, cy);
    EXPECT_EQ(window->Caption(), u"Empty - Conversation");
    EXPECT_TRUE(draws(u"Nobody else is here"));
}

TEST_F(ConversationWindows, OthersAreNoneOfTheirs) {
    const ConversationPtr other = client.open({bob});
    client.join(other, cy);
    client.leave(other, bob);
    client.say(other, cy, u"elsewhere");
    EXPECT_THAT(peopleShown(), ElementsAre(u"Ann", u"Bob"));
    EXPECT_EQ(shown().find(u"elsewhere"), std::u16string::npos);
}

TEST_F(ConversationWindows, ARowShowsWhoItIs) {
    client.setStatus(bob, Status::away);
    const auto row = fakes::drawn(window->People, 1, 148, 38, {.selected = true, .focused = true});
    ASSERT_EQ(row.size(), 6U);
    EXPECT_EQ(row[0].colour, colour::chosen);
    EXPECT_EQ(row[2].text, u"B");
    EXPECT_EQ(row[3].colour, colourOf(Status::away));
    EXPECT_EQ(row[4].text, u"Bob");
    EXPECT_EQ(row[5].kind, Drawing::Kind::focus);
}

TEST_F(ConversationWindows, OnlyWhoIsThereCanBeInvited) {
    EXPECT_THAT(guests(), ElementsAre(u"Cy"));
    client.setStatus(cy, Status::offline);
    EXPECT_THAT(guests(), ElementsAre(u"Nobody else of your list is online"));
    EXPECT_FALSE(window->Guests.items().front()->Enabled());
    client.setStatus(cy, Status::busy);
    ASSERT_TRUE(fakes::choose(*fakes::find(window->Guests, u"Cy")));
    EXPECT_THAT(peopleShown(), ElementsAre(u"Ann", u"Bob", u"Cy"));
    EXPECT_THAT(guests(), ElementsAre(u"Everybody of your list is here"));
}

TEST_F(ConversationWindows, AMenuOfGuestsIsNoLongerThanTheScreen) {
    for (int i = 0; i < 100; ++i) {
        client.addContact(u"guest" + std::u16string(static_cast<std::size_t>(i) + 1, u'g') + u"@x",
                          std::u16string(1000, u'&'));
    }
    EXPECT_EQ(guests().size(), 30U);
    EXPECT_EQ(window->Guests.items().back()->Caption(), std::u16string(120, u'&')) << "letters, no accelerators";
}

TEST_F(ConversationWindows, AParticipantIsMadeToLeaveByTheMenu) {
    EXPECT_TRUE(fakes::askForMenu(window->People));
    EXPECT_TRUE(fakes::screen().popups.empty()) << "nobody is chosen";
    fakes::pick(window->People, 1);
    fakes::askForMenu(window->People);
    EXPECT_THAT(fakes::screen().popups, ElementsAre(&window->Person));
    EXPECT_TRUE(fakes::choose(window->Leaves));
    EXPECT_THAT(peopleShown(), ElementsAre(u"Ann"));
}

TEST_F(ConversationWindows, ShowTheHistoryALittleLater) {
    client.say(conversation, ann, u"one\r\ntwo");
    EXPECT_EQ(fakes::screen().texts[window->History.handle()], u"");
    EXPECT_EQ(window->ShowTimer.Interval(), 40);
    EXPECT_EQ(shown(), conversation->history());
    EXPECT_FALSE(window->ShowTimer.Enabled());
    const auto& runs = fakes::screen().runs[window->History.handle()];
    ASSERT_EQ(runs.size(), 3U);
    EXPECT_EQ(runs[1].text, u"\r\nAnn says:");
    EXPECT_TRUE(runs[1].looks.bold);
    EXPECT_EQ(runs[1].looks.colour, colour::soft_text);
    EXPECT_EQ(runs[2].text, u"\r\none\r\ntwo");
    EXPECT_FALSE(runs[2].looks.bold);
    EXPECT_GT(runs[2].looks.indent, 0);
}

TEST_F(ConversationWindows, ShowTheLastThousandMessages) {
    const std::size_t before = ConversationWindow::most_shown + ConversationWindow::left_at_once - 1;
    for (std::size_t number = 1; number <= before; ++number) {
        client.say(conversation, ann, u"number " + murmelix::toText(static_cast<long long>(number)) + u".");
    }
    EXPECT_EQ(shown(), conversation->history());
    client.say(conversation, bob, u"the last");
    const std::u16string now = shown();
    EXPECT_TRUE(now.starts_with(u"\r\nAnn says:\r\nnumber 51.\r\n")) << murmelix::toUtf8(now.substr(0, 60));
    EXPECT_TRUE(now.ends_with(u"number 1049.\r\nBob says:\r\nthe last"));
    EXPECT_TRUE(conversation->history().ends_with(now));
    EXPECT_NE(conversation->history().find(u"number 1."), std::u16string::npos) << "the history is whole";
}

TEST_F(ConversationWindows, ShowALongHistoryInPartsOfWholeCharacters) {
    shown();
    std::u16string text = u"\r\n";
    while (text.size() < 30'000) {
        text += u"\U0001F600\r\n";
    }
    client.append(conversation, text + u"end");
    fakes::tick(window->ShowTimer);
    EXPECT_LT(fakes::screen().texts[window->History.handle()].size(), 10'000U);
    EXPECT_TRUE(window->ShowTimer.Enabled());
    EXPECT_EQ(shown(), conversation->history());
    for (const fakes::Run& run : fakes::screen().runs[window->History.handle()]) {
        EXPECT_NE(run.text.back() & 0xFC00, 0xD800);
        EXPECT_NE(run.text.back(), u'\r');
    }
}

TEST_F(ConversationWindows, PartLinesThatAreTooLongBetweenWords) {
    const std::u16string before = shown();
    std::u16string words;
    for (int i = 0; i < 300; ++i) {
        words += u"marbles ";
    }
    client.append(conversation, u"\r\n" + words + std::u16string(1200, u'x'));
    const std::u16string added = shown().substr(before.size() + 2);
    std::u16string joined;
    std::size_t longest = 0, from = 0;
    for (std::size_t end = 0; end != std::u16string::npos; from = end + 2) {
        end = added.find(u"\r\n", from);
        const std::u16string line = added.substr(from, end == std::u16string::npos ? end : end - from);
        longest = std::max(longest, line.size());
        EXPECT_TRUE(line.back() == u' ' || line.back() == u'x') << "a word is torn apart";
        joined += line;
    }
    EXPECT_EQ(longest, 500U);
    EXPECT_EQ(joined, words + std::u16string(1200, u'x')) << "nothing is lost";
}

TEST_F(ConversationWindows, PutEachPartInItsPlaceAtEverySizeAndResolution) {
    for (const double twips_per_pixel : {15.0, 10.0, 7.5}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        open();
        for (const auto& [width, height] : {std::pair{560, 440}, {1900, 1000}, {420, 320}, {1, 1}}) {
            fakes::resize(*window, 15 * width, 15 * height);
            const ui::Rect inside = fakes::screen().bounds[window->handle()];
            EXPECT_EQ(window->People.Visible(), width > 430);
            EXPECT_EQ(window->Invite.Visible(), width > 430);
            std::vector<ui::Rect> places;
            for (const ui::Control* child : window->Children()) {
                if (!child->Visible()) {
                    continue;
                }
                const ui::Rect place = fakes::screen().bounds[child->handle()];
                EXPECT_GT(place.width, 0);
                EXPECT_GT(place.height, 0);
                EXPECT_GE(place.left, 0);
                EXPECT_GE(place.top, px(30)) << "below the band";
                EXPECT_LE(place.left + place.width, inside.width) << width << " at " << twips_per_pixel;
                EXPECT_LE(place.top + place.height, inside.height) << height << " at " << twips_per_pixel;
                for (const ui::Rect& other : places) {
                    const bool apart = place.left >= other.left + other.width ||
                                       other.left >= place.left + place.width ||
                                       place.top >= other.top + other.height || other.top >= place.top + place.height;
                    EXPECT_TRUE(apart) << width << " x " << height << " at " << twips_per_pixel;
                }
                places.push_back(place);
            }
        }
    }
}

TEST_F(ConversationWindows, TheHistoryTakesWhatRoomIsLeft) {
    fakes::resize(*window, 15 * 560, 15 * 440);
    const int input = window->Input.Height(), history = window->History.Height(), people = window->People.Width();
    fakes::resize(*window, 15 * 760, 15 * 640);
    EXPECT_EQ(window->Input.Height(), input);
    EXPECT_EQ(window->History.Height(), history + 15 * 200);
    EXPECT_EQ(window->People.Width(), people);
}

TEST(PlacesOfConversations, LeaveRoomAboveForACharacter) {
    const ui::Rect screen{0, 0, 1024, 740};
    for (std::size_t others = 0; others < 20; ++others) {
        const ui::Rect place = placeOfConversation(screen, others, {}, {});
        EXPECT_GE(place.top, 300);
        EXPECT_LE(place.top + place.height, 740);
        EXPECT_GE(place.height, 320);
        EXPECT_GE(place.left, 0);
        EXPECT_LE(place.left + place.width, 1024);
    }
    EXPECT_NE(placeOfConversation(screen, 0, {}, {}), placeOfConversation(screen, 1, {}, {}));
    EXPECT_EQ(placeOfConversation({0, 0, 1920, 1080}, 0, {}, {}), (ui::Rect{330, 300, 560, 480}));
}

TEST(PlacesOfConversations, StayOnTheScreenWhereThereIsLessRoom) {
    fakes::screen() = {};
    fakes::screen().twips_per_pixel = 7.5;
    for (const ui::Rect screen : {ui::Rect{0, 0, 1920, 1080}, {0, 40, 1366, 728}, {-800, -600, 800, 600}}) {
        for (std::size_t others = 0; others < 10; ++others) {
            const ui::Rect place = placeOfConversation(screen, others, {}, {});
            EXPECT_GE(place.top, screen.top);
            EXPECT_GE(place.left, screen.left);
            EXPECT_LE(place.top + place.height, std::max(screen.top + screen.height, screen.top + 640));
        }
    }
    EXPECT_EQ(placeOfConversation({0, 0, 1920, 1080}, 0, {}, {}).top, 440);
    fakes::screen() = {};
}

TEST(PlacesOfConversations, AreTheWantedOnes) {
    const ui::Rect screen{0, 0, 1024, 768};
    EXPECT_EQ(placeOfConversation(screen, 0, {700, 60, 420, 300}, {}), (ui::Rect{700, 60, 420, 300}));
    EXPECT_EQ(placeOfConversation(screen, 2, {700, 60, 420, 300}, {}), (ui::Rect{756, 116, 420, 300}));
    EXPECT_EQ(placeOfConversation(screen, 0, {{}, {}, {}, 700}, {}), (ui::Rect{330, 68, 560, 700}));
}

TEST(PlacesOfConversations, GoOnFromWhereTheUserHasLeftOne) {
    const ui::Rect screen{100, 50, 1024, 768}, last{500, 300, 600, 480};
    EXPECT_EQ(placeOfConversation(screen, 0, {}, last), last);
    EXPECT_EQ(placeOfConversation(screen, 1, {}, last), (ui::Rect{528 - 425, 328, 600, 480}))
        << "where it would reach out of the screen it is at the near side";
    for (std::size_t others = 0; others < 20; ++others) {
        const ui::Rect place = placeOfConversation(screen, others, {}, last);
        EXPECT_GE(place.left, 100);
        EXPECT_LE(place.left + place.width, 1124);
        EXPECT_GE(place.top, 50);
        EXPECT_LE(place.top + place.height, 818);
    }
    EXPECT_EQ(placeOfConversation(screen, 3, {}, screen), screen) << "as large as the screen";
    EXPECT_EQ(placeOfConversation(screen, 0, {700, 60, 420, 300}, last), (ui::Rect{700, 60, 420, 300}));
}

TEST_F(ConversationWindows, KeepThePlaceThatTheUserGivesThem) {
    window->ShowInactive();
    window->rememberPlace();
    EXPECT_FALSE(conversationPlace().last()) << "it stands where it was opened";
    window->setPlace({20, 30, 640, 500});
    window->rememberPlace();
    EXPECT_EQ(conversationPlace().last(), (ui::Rect{20, 30, 640, 500}));
    window->setPlace({40, 50, 640, 500});
    client.shutDown();
    EXPECT_EQ(conversationPlace().last(), (ui::Rect{40, 50, 640, 500}));
    window->setPlace({0, 0, 1024, 768});
    window->setWindowState(ui::Form::State::maximized);
    window->rememberPlace();
    EXPECT_EQ(conversationPlace().last(), (ui::Rect{40, 50, 640, 500})) << "as large as the screen is no place";
}

} // namespace

} // namespace messenger_client
