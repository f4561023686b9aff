#include <gmock/gmock.h>

#include "companions/agent/stage/animation_player.h"

namespace agent::stage {
namespace {

using testing::ElementsAre;

// An animation whose frames have 100 ms, and what the player shows of it: the frame's number each 10 ms.
struct Show {
    std::shared_ptr<acs::Animation> animation = std::make_shared<acs::Animation>();
    std::vector<int> rolls; // 0 to 99
    AnimationPlayer player{[this](int) {
        const int roll = rolls.empty() ? 0 : rolls.front();
        if (!rolls.empty()) {
            rolls.erase(rolls.begin());
        }
        return roll;
    }};
    Time now = 0;

    explicit Show(int frames) { animation->frames.resize(static_cast<std::size_t>(frames)); }
    int shown() const { return static_cast<int>(player.frame() - animation->frames.data()); }
    // The frames that were shown, in order, until the animation ends or the time is over.
    std::vector<int> frames(Time most) {
        player.start(animation, now);
        std::vector<int> seen{shown()};
        for (const Time end = now + most; now < end && player.playing(); now += 10) {
            for (int i = 0; i < 1000 && player.step(now); ++i) {
                if (player.playing()) {
                    seen.push_back(shown());
                }
            }
        }
        return seen;
    }
};

TEST(AnimationPlayer, HoldsEachFrameForItsDuration) {
    Show show(2);
    show.animation->frames[0].duration = 7; // 70 ms
    show.player.start(show.animation, 1000);
    EXPECT_FALSE(show.player.step(1069));
    EXPECT_EQ(show.shown(), 0);
    EXPECT_TRUE(show.player.step(1070));
    EXPECT_EQ(show.shown(), 1);
    EXPECT_FALSE(show.player.step(1169));
    EXPECT_TRUE(show.player.playing());
    EXPECT_TRUE(show.player.step(1170));
    EXPECT_FALSE(show.player.playing());
}

TEST(AnimationPlayer, GoesThroughTheFramesAndEndsPastTheLast) {
    EXPECT_THAT(Show(3).frames(5000), ElementsAre(0, 1, 2));
}

TEST(AnimationPlayer, TakesABranchWhereTheRollIsWithinItsProbability) {
    Show show(4);
    show.animation->frames[0].branches = {{2, 30}, {3, 20}};
    show.rolls = {29}; // r = 30
    EXPECT_THAT(show.frames(5000), ElementsAre(0, 2, 3));
}

TEST(AnimationPlayer, SubtractsThePassedBranchFromTheRoll) {
    Show show(4);
    show.animation->frames[0].branches = {{2, 30}, {3, 20}};
    show.rolls = {49}; // r = 50: 50 - 30 = 20
    EXPECT_THAT(show.frames(5000), ElementsAre(0, 3));
}

TEST(AnimationPlayer, GoesOnWhereNoBranchIsTaken) {
    Show show(4);
    show.animation->frames[0].branches = {{2, 30}, {3, 20}};
    show.rolls = {50}; // r = 51: 51 - 30 = 21
    EXPECT_THAT(show.frames(5000), ElementsAre(0, 1, 2, 3));
}

TEST(AnimationPlayer, TakesTheExitFrameOnceAStopIsAsked) {
    Show show(5);
    show.animation->frames[1].branches = {{0, 100}};
    show.animation->frames[1].exit_frame = 4;
    show.player.start(show.animation, 0);
    show.player.askStop(0);
    while (show.player.step(150)) {
    }
    EXPECT_EQ(show.shown(), 1);
    while (show.player.step(210)) {
    }
    EXPECT_EQ(show.shown(), 4);
}

TEST(AnimationPlayer, HoldsNoFrameForLongOnceAStopIsAsked) {
    auto animation = std::make_shared<acs::Animation>();
    animation->frames.resize(3);
    for (acs::Frame& frame : animation->frames) {
        frame.duration = 200; // 2 s
    }
    AnimationPlayer player([](int) { return 0; });
    player.start(animation, 0);
    player.step(500);
    player.askStop(1000);
    player.step(1090);
    EXPECT_EQ(player.frame(), &animation->frames[0]);
    for (Time now = 1100; now <= 1300; now += 10) {
        player.step(now);
    }
    EXPECT_FALSE(player.playing());
}

TEST(AnimationPlayer, ExitOfMinusOneEndsAndMinusTwoIsIgnored) {
    Show show(3);
    show.animation->frames[0].exit_frame = -2;
    show.animation->frames[1].exit_frame = -1;
    show.player.start(show.animation, 0);
    show.player.askStop(0);
    while (show.player.step(110)) {
    }
    EXPECT_EQ(show.shown(), 1);
    while (show.player.step(210)) {
    }
    EXPECT_FALSE(show.player.playing());
    EXPECT_EQ(show.shown(), 1);
}

TEST(AnimationPlayer, ExitFramesMeanNothingWhileNoStopIsAsked) {
    Show show(3);
    show.animation->frames[0].exit_frame = -1;
    EXPECT_THAT(show.frames(5000), ElementsAre(0, 1, 2));
}

TEST(AnimationPlayer, AnEndlessRunOfFramesWithoutDurationIsSlowedDown) {
    Show show(2);
    for (acs::Frame& frame : show.animation->frames) {
        frame.duration = 0;
    }
    show.animation->frames[1].branches = {{0, 100}};
    const auto seen = show.frames(1000);
    EXPECT_GT(seen.size(), 10U);
    EXPECT_LT(seen.size(), 250U);
}

TEST(AnimationPlayer, AFewFramesWithoutDurationTakeNoTime) {
    Show show(3);
    show.animation->frames[0].duration = show.animation->frames[1].duration = 0;
    show.player.start(show.animation, 0);
    while (show.player.step(0)) {
    }
    EXPECT_EQ(show.shown(), 2);
}

TEST(AnimationPlayer, AnAnimationThatFindsNoExitIsCutAfterFiveSeconds) {
    Show show(1);
    show.animation->frames[0].branches = {{0, 100}};
    show.player.start(show.animation, 0);
    show.player.askStop(1000);
    while (show.player.step(5900)) {
    }
    EXPECT_TRUE(show.player.playing());
    while (show.player.step(6000)) {
    }
    EXPECT_FALSE(show.player.playing());
}

TEST(AnimationPlayer, ALateClockIsMadeUpForOnlyInPart) {
    Show show(400);
    show.player.start(show.animation, 0);
    int steps = 0;
    while (show.player.step(30000)) {
        ++steps;
    }
    EXPECT_LE(steps, 10);
}

TEST(AnimationPlayer, KnowsALoopWithoutAWayOut) {
    Show show(3);
    show.animation->frames[1].branches = {{0, 60}, {1, 40}};
    show.player.start(show.animation, 0);
    EXPECT_TRUE(show.player.endless());
    Show other(3);
    other.animation->frames[1].branches = {{0, 60}, {1, 39}}; // one in a hundred goes on
    other.player.start(other.animation, 0);
    EXPECT_FALSE(other.player.endless());
}

// Makes the last frame of `show` an end mark; the others have a picture.
void endWithAMark(Show& show) {
    for (acs::Frame& frame : show.animation->frames) {
        frame.images.resize(1);
    }
    show.animation->frames.back() = acs::Frame{};
    show.animation->frames.back().duration = 0;
}

TEST(AnimationPlayer, AnEndMarkIsPassedAndWhatShowedStays) {
    Show show(3);
    endWithAMark(show);
    EXPECT_THAT(show.frames(5000), ElementsAre(0, 1, 1));
    EXPECT_FALSE(show.player.playing());
    EXPECT_EQ(show.shown(), 1);
    EXPECT_EQ(show.now, 210) << "no time of its own";
}

TEST(AnimationPlayer, OnlyALastFrameWithoutPicturesAndDurationIsAnEndMark) {
    Show first(3), lasting(3), drawn(3);
    for (Show* show : {&first, &lasting, &drawn}) {
        endWithAMark(*show);
    }
    first.animation->frames[0] = acs::Frame{};
    first.animation->frames[0].duration = 0;
    first.player.start(first.animation, 0);
    EXPECT_EQ(first.shown(), 0);
    lasting.animation->frames[2].duration = 1;
    EXPECT_THAT(lasting.frames(5000), ElementsAre(0, 1, 2));
    drawn.animation->frames[2].images.resize(1);
    EXPECT_THAT(drawn.frames(5000), ElementsAre(0, 1, 2));
}

TEST(AnimationPlayer, AnEndMarkHasItsBranchesAndItsSound) {
    Show show(3);
    endWithAMark(show);
    show.animation->frames[2].branches = {{0, 50}};
    show.animation->frames[2].sound = 7;
    show.player.start(show.animation, 0);
    show.rolls = {0};
    EXPECT_TRUE(show.player.step(100));
    EXPECT_TRUE(show.player.step(200));
    EXPECT_EQ(show.shown(), 1);
    EXPECT_EQ(show.player.sound(), 7);
    EXPECT_TRUE(show.player.step(200));
    EXPECT_EQ(show.shown(), 0);
    EXPECT_EQ(show.player.sound(), acs::no_sound);
}

TEST(AnimationPlayer, NothingButAnEndMarkLeavesWhatShows) {
    Show before(1), mark(1);
    endWithAMark(mark);
    AnimationPlayer player([](int) { return 0; });
    player.start(mark.animation, 0);
    EXPECT_EQ(player.frame(), nullptr);
    player.start(before.animation, 0);
    player.start(mark.animation, 100);
    EXPECT_EQ(player.frame(), before.animation->frames.data());
    EXPECT_TRUE(player.step(100));
    EXPECT_FALSE(player.playing());
    EXPECT_FALSE(player.leave(100));
}

// As their makers build them: the way there, a branch to the end mark, and behind it the way out.
Show posing() {
    Show show(6);
    endWithAMark(show);
    show.animation->frames[2].branches = {{5, 100}};
    show.animation->frames[2].exit_frame = 3;
    return show;
}

TEST(AnimationPlayer, AnAnimationThatHasEndedLeavesByTheExitOfTheFrameItStandsIn) {
    Show show = posing();
    show.rolls.assign(10, 0);
    AnimationPlayer player([](int) { return 0; });
    player.start(show.animation, 0);
    for (Time now = 0; now <= 1000; now += 10) {
        while (player.step(now)) {
        }
    }
    const acs::Frame* const frames = show.animation->frames.data();
    EXPECT_FALSE(player.playing());
    EXPECT_EQ(player.frame(), frames + 2);
    EXPECT_TRUE(player.leave(60'000));
    EXPECT_EQ(player.frame(), frames + 3) << "at once";
    while (player.step(60'100)) {
    }
    EXPECT_EQ(player.frame(), frames + 4);
    while (player.step(60'200)) {
    }
    EXPECT_FALSE(player.playing());
    EXPECT_EQ(player.frame(), frames + 4);
    EXPECT_FALSE(player.leave(60'300)) << "once";
}

TEST(AnimationPlayer, WhatWasStoppedOrCutOrHasNoExitHasNoWayOut) {
    const auto ended = [](Show& show, bool stop) {
        AnimationPlayer player([](int) { return 0; });
        player.start(show.animation, 0);
        if (stop) {
            player.askStop(0);
        }
        for (Time now = 0; now <= 2000; now += 10) {
            while (player.step(now)) {
            }
        }
        return player;
    };
    Show stopped = posing(), returning = posing(), bare = posing(), ending = posing(), cut = posing();
    EXPECT_FALSE(ended(stopped, true).leave(2000));
    returning.animation->transition = acs::Transition::return_animation;
    EXPECT_FALSE(ended(returning, false).leave(2000));
    bare.animation->frames[2].exit_frame = acs::exit_none;
    EXPECT_FALSE(ended(bare, false).leave(2000));
    ending.animation->frames[2].exit_frame = acs::exit_end;
    EXPECT_FALSE(ended(ending, false).leave(2000));
    AnimationPlayer player = ended(cut, false);
    player.cut();
    EXPECT_FALSE(player.leave(2000));
}

TEST(AnimationPlayer, AWayOutThatLeadsInACircleIsCut) {
    Show show = posing();
    show.animation->frames[4].exit_frame = 3;
    AnimationPlayer player([](int) { return 0; });
    player.start(show.animation, 0);
    for (Time now = 0; now <= 1000; now += 10) {
        while (player.step(now)) {
        }
    }
    ASSERT_TRUE(player.leave(1000));
    for (Time now = 1000; now < 6000; now += 10) {
        player.step(now);
    }
    EXPECT_TRUE(player.playing());
    player.step(6000);
    EXPECT_FALSE(player.playing());
}

TEST(AnimationPlayer, KnowsWhenItHasGoneRound) {
    Show show(3);
    show.animation->frames[2].branches = {{1, 100}};
    show.player.start(show.animation, 0);
    show.player.step(100);
    show.player.step(200);
    EXPECT_FALSE(show.player.wentRound());
    show.player.step(300);
    EXPECT_EQ(show.shown(), 1);
    EXPECT_TRUE(show.player.wentRound());
    show.player.start(show.animation, 300);
    EXPECT_FALSE(show.player.wentRound());
}

TEST(AnimationPlayer, WithoutFramesItIsOverAtOnce) {
    Show show(0);
    show.player.start(show.animation, 0);
    EXPECT_FALSE(show.player.playing());
    EXPECT_EQ(show.player.frame(), nullptr);
}

TEST(AnimationPlayer, FindsOutOnceForAllFramesWhetherTheyEnd) {
    Show show(4);
    auto& frames = show.animation->frames;
    frames[0].branches = {{2, 100}}; // 0 and 2 go round; 1 and 3 come to the end
    frames[2].branches = {{0, 60}, {0, 40}, {3, 100}};
    frames[1].branches = {{0, 0}, {0, 50}, {3, 1}};
    show.player.start(show.animation, 0);
    EXPECT_TRUE(show.player.endless());
    frames[0].branches.clear(); // not looked at again
    EXPECT_TRUE(show.player.endless());
    EXPECT_TRUE(show.player.step(100));
    EXPECT_EQ(show.shown(), 1);
    EXPECT_FALSE(show.player.endless());
    show.rolls = {99};
    EXPECT_TRUE(show.player.step(200));
    EXPECT_EQ(show.shown(), 2);
    EXPECT_TRUE(show.player.endless());
}

TEST(AnimationPlayer, FindsOutAnewForAnotherAnimation) {
    Show show(1);
    show.animation->frames[0].branches = {{0, 100}};
    show.player.start(show.animation, 0);
    EXPECT_TRUE(show.player.endless());
    show.player.start(Show(1).animation, 0);
    EXPECT_FALSE(show.player.endless());
}

} // namespace
} // namespace agent::stage
