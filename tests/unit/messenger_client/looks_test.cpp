// What the client's windows draw alike, on the imitated surface of a button.
#include "companions/messenger/client/looks.h"

#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"
#include "ui/form.h"

namespace messenger_client {

namespace fakes = murmelix::fakes;
using fakes::Drawing;

namespace {

std::vector<Drawing> drawn(ui::Button::Draw draw) {
    ui::Form form(nullptr, u"", ui::FormStyle::window);
    ui::Button button(form, u"");
    button.setDraw(std::move(draw));
    return fakes::drawn(button, 100, 100);
}

std::vector<Drawing> avatarOf(const Contact& contact) {
    return drawn([&](ui::Surface& surface, const ui::Button::Looks&) {
        drawAvatar(surface, {10, 20, 30, 30}, contact);
    });
}

} // namespace

TEST(Looks, AnAvatarShowsTheFirstLetterOfTheNameAndTheStatus) {
    const auto shown = avatarOf({u"ada@home", u"[*] ada", Status::busy});
    ASSERT_EQ(shown.size(), 3U);
    EXPECT_EQ(shown[0].kind, Drawing::Kind::ellipse);
    EXPECT_EQ(shown[0].area, (ui::Rect{10, 20, 30, 30}));
    EXPECT_EQ(shown[1].text, u"A");
    EXPECT_TRUE(shown[1].bold);
    EXPECT_EQ(shown[2].area, (ui::Rect{29, 39, 12, 12}));
    EXPECT_EQ(shown[2].colour, colourOf(Status::busy));
}

TEST(Looks, ARingSetsAnAvatarOffFromItsGround) {
    const ui::Colour white = ui::rgb(255, 255, 255);
    const Contact ada{u"ada@home", u"Ada", Status::online};
    const auto ringed = drawn([&](ui::Surface& surface, const ui::Button::Looks&) {
        drawAvatar(surface, {10, 20, 30, 30}, ada, white);
    });
    EXPECT_EQ(ringed[0].edge, white);
    EXPECT_EQ(avatarOf(ada)[0].edge, avatarOf(ada)[0].colour);
    EXPECT_NE(avatarOf(ada)[0].colour, white);
}

TEST(Looks, AnAvatarNeedsNeitherLetterNorStatus) {
    EXPECT_EQ(avatarOf({u"ada@home", u"123", Status::unknown}).size(), 1U);
    EXPECT_EQ(avatarOf({u"ada@home", u"", Status::unknown}).size(), 1U);
}

TEST(Looks, ALetterOfTwoUnitsStaysWhole) {
    EXPECT_EQ(avatarOf({u"ada@home", u"\U0001F600 ada", Status::unknown})[1].text, u"\U0001F600");
    EXPECT_EQ(avatarOf({u"ada@home", u"\xD83D", Status::unknown})[1].text, u"\xD83D");
}

TEST(Looks, WhoIsOfflineIsGrey) {
    const auto here = avatarOf({u"ada@home", u"Ada", Status::online});
    const auto elsewhere = avatarOf({u"bob@home", u"Bob", Status::online});
    EXPECT_NE(here[0].colour, elsewhere[0].colour);
    EXPECT_EQ(avatarOf({u"ada@home", u"Ada", Status::offline})[0].colour,
              avatarOf({u"bob@home", u"Bob", Status::offline})[0].colour);
}

TEST(Looks, ColoursAreMixedPartByPart) {
    EXPECT_EQ(mixed(ui::rgb(0, 100, 255), ui::rgb(200, 0, 255), 1, 4), ui::rgb(50, 75, 255));
    EXPECT_EQ(mixed(ui::rgb(1, 2, 3), ui::rgb(4, 5, 6), 0, 3), ui::rgb(1, 2, 3));
    EXPECT_EQ(mixed(ui::rgb(1, 2, 3), ui::rgb(4, 5, 6), 3, 3), ui::rgb(4, 5, 6));
}

TEST(Looks, TheArrowPointsDownwards) {
    const auto arrow = drawn([](ui::Surface& surface, const ui::Button::Looks&) {
        drawDownArrow(surface, {40, 50}, colour::text);
    });
    ASSERT_GE(arrow.size(), 2U);
    EXPECT_GT(arrow.front().area.width, arrow.back().area.width);
    EXPECT_EQ(arrow.back().area.width, 1);
    EXPECT_LT(arrow.front().area.top, arrow.back().area.top);
    EXPECT_EQ(arrow.front().area.left + arrow.front().area.width / 2, arrow.back().area.left);
}

} // namespace messenger_client
