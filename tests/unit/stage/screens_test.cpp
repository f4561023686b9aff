#include <gmock/gmock.h>

#include "companions/agent/stage/screens.h"
#include "tests/unit/stage/rehearsal.h"

namespace agent::stage {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// Two side by side, the second one lower, each with a taskbar.
const Screens two{{{0, 0, 1000, 800}, {0, 0, 1000, 760}}, {{1000, 100, 1800, 700}, {1000, 100, 1800, 660}}};

TEST(Screens, TheScreenOfAnAreaHasMostOfIt) {
    EXPECT_EQ(screenOf(two, {950, 200, 1010, 300}), two[0]);
    EXPECT_EQ(screenOf(two, {990, 200, 1050, 300}), two[1]);
    EXPECT_EQ(screenOf(two, {1600, 2000, 1700, 2100}), two[1]) << "the nearest";
    EXPECT_EQ(screenOf(two, {-500, 0, -400, 100}), two[0]);
    EXPECT_EQ(screenOf({}, {0, 0, 10, 10}), Screen{});
}

TEST(Screens, KnowWhatCanBeSeen) {
    EXPECT_TRUE(canBeSeen(two, {-99, -99, 1, 1}));
    EXPECT_FALSE(canBeSeen(two, {-100, -100, 0, 0}));
    EXPECT_FALSE(canBeSeen(two, {1100, 0, 1200, 100})) << "above the second one";
    EXPECT_FALSE(canBeSeen({}, {0, 0, 100, 100}));
}

TEST(Screens, WhatAnEdgeCutsIsMovedOnto) {
    EXPECT_EQ(movedOnto(two, {-30, -20, 70, 80}), (Rect{0, 0, 100, 100}));
    EXPECT_EQ(movedOnto(two, {1750, 650, 1850, 750}), (Rect{1700, 600, 1800, 700}));
    EXPECT_EQ(movedOnto(two, {950, 50, 1050, 150}), (Rect{900, 50, 1000, 150})) << "the corner between the two";
    EXPECT_EQ(movedOnto(two, {-500, 750, 1500, 900}), (Rect{0, 650, 2000, 800})) << "wider than the screen";
}

TEST(Screens, WhatIsWhollyOnOrOffThemStays) {
    for (const Rect& area : {Rect{0, 0, 100, 100}, Rect{950, 200, 1050, 300}, Rect{-100, 0, 0, 100},
                             Rect{5000, 5000, 5100, 5100}, Rect{1100, 0, 1200, 100}}) {
        EXPECT_EQ(movedOnto(two, area), area);
    }
    EXPECT_EQ(movedOnto({}, {-50, -50, 50, 50}), (Rect{-50, -50, 50, 50}));
}

TEST(Screens, WhatWasSeenIsSeenAfterAChange) {
    const Screens small{{{0, 0, 640, 480}, {0, 0, 640, 440}}};
    EXPECT_EQ(afterChange(two, small, {1200, 300, 1300, 400}), (Rect{540, 300, 640, 400}));
    EXPECT_EQ(afterChange(two, small, {-50, 700, 50, 790}), (Rect{0, 390, 100, 480}));
    for (const Rect& area : {Rect{0, 0, 100, 100}, Rect{600, 400, 700, 500}, Rect{5000, 0, 5100, 100}}) {
        EXPECT_EQ(afterChange(two, small, area), area);
    }
    EXPECT_EQ(afterChange(two, {}, {0, 0, 100, 100}), (Rect{0, 0, 100, 100}));
}

struct KeptOnScreen : testing::Test {
    Rehearsal r;
    Actor* a = nullptr; // 100 × 120 pixels
    KeptOnScreen() {
        r.stage.setScreens({{{0, 0, 1000, 800}, {0, 0, 1000, 760}}});
        a = &r.onStage("a");
    }
    RequestRef moveTo(int x, int y, int speed) {
        Request request;
        request.kind = Kind::move_to;
        request.x = x;
        request.y = y;
        request.speed = speed;
        return r.ask(*a, request);
    }
};

TEST_F(KeptOnScreen, WhateverPlacesIt) {
    a->place(-40, -64, MoveCause::program);
    EXPECT_EQ(a->area(), (Rect{0, 0, 100, 120}));
    a->place(950, 790, MoveCause::program);
    EXPECT_EQ(a->area(), (Rect{900, 680, 1000, 800}));
    EXPECT_EQ(r.taken("a moved").size(), 1U) << "from where it was to where it is";
    moveTo(300, -64, 0);
    r.pass(50);
    EXPECT_EQ(a->area(), (Rect{300, 0, 400, 120}));
    moveTo(-99, 700, 500);
    r.pass(1000);
    EXPECT_EQ(a->area(), (Rect{0, 680, 100, 800}));
    a->resize(300, 300);
    EXPECT_EQ(a->area(), (Rect{0, 500, 300, 800}));
}

TEST_F(KeptOnScreen, WhereverTheUserDropsIt) {
    a->drag(970, 300);
    EXPECT_EQ(a->left(), 970) << "it follows the hand";
    r.taken();
    a->drop();
    EXPECT_EQ(a->area(), (Rect{900, 300, 1000, 420}));
    EXPECT_THAT(r.taken(), ElementsAre("a at 900,300", "a moved 1"));
}

TEST_F(KeptOnScreen, WhenItAppears) {
    Actor& hidden = r.enter("b");
    hidden.place(-10, -10, MoveCause::program);
    EXPECT_EQ(hidden.left(), -10) << "nothing is cut of what is not there";
    r.show(hidden);
    r.pass(100);
    EXPECT_EQ(hidden.area(), (Rect{0, 0, 100, 120}));
}

TEST_F(KeptOnScreen, WhenTheScreensChange) {
    a->place(800, 600, MoveCause::program);
    r.stage.setScreens({{{0, 0, 850, 650}, {0, 0, 850, 650}}});
    EXPECT_EQ(a->area(), (Rect{750, 530, 850, 650}));
}

TEST_F(KeptOnScreen, WhenTheScreensChangeAndItIsOnNone) {
    a->place(900, 700, MoveCause::program);
    r.stage.setScreens({{{0, 0, 640, 480}, {0, 0, 640, 440}}});
    EXPECT_EQ(a->area(), (Rect{540, 360, 640, 480}));
    // One that was sent off the screens stays there.
    a->place(700, 0, MoveCause::program);
    r.stage.setScreens({{{0, 0, 600, 400}, {0, 0, 600, 360}}});
    EXPECT_EQ(a->left(), 700);
    r.stage.setScreens({});
    EXPECT_EQ(a->left(), 700);
}

TEST_F(KeptOnScreen, ButNotWhereItIsSentOffOrThisIsSwitchedOff) {
    a->place(-100, 300, MoveCause::program);
    EXPECT_EQ(a->left(), -100);
    moveTo(5000, 5000, 300);
    r.pass(500);
    EXPECT_EQ(a->area(), (Rect{5000, 5000, 5100, 5120}));
    EXPECT_TRUE(r.stage.keepsOnScreen());
    r.stage.setKeepOnScreen(false);
    a->place(-40, -64, MoveCause::program);
    EXPECT_EQ(a->top(), -64);
    r.stage.setKeepOnScreen(true);
    EXPECT_EQ(a->area(), (Rect{0, 0, 100, 120}));
}

} // namespace
} // namespace agent::stage
