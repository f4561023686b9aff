#include <gmock/gmock.h>

#include "tests/unit/stage/rehearsal.h"

namespace agent::stage {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

Request moveTo(int x, int y, int speed = 1000) {
    Request request;
    request.kind = Kind::move_to;
    request.x = x;
    request.y = y;
    request.speed = speed;
    return request;
}

Request plain(Kind kind, const std::u16string& text = {}) {
    Request request;
    request.kind = kind;
    request.text = text;
    return request;
}

TEST(Queue, ACallReturnsAtOnceAndIsPendingUntilItsTurn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto first = r.play(a, u"Wave");
    const auto second = r.play(a, u"Wave");
    EXPECT_EQ(static_cast<int>(first->status), 2);
    r.pass(10);
    EXPECT_EQ(static_cast<int>(first->status), 4);
    EXPECT_EQ(static_cast<int>(second->status), 2);
    r.pass(1000);
    EXPECT_EQ(static_cast<int>(first->status), 0);
    EXPECT_EQ(static_cast<int>(second->status), 0);
}

TEST(Queue, ACharacterPlaysItsQueueStrictlyInOrder) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.play(a, u"Wave");
    r.speak(a, u"one two");
    r.play(a, u"Point");
    r.pass(5000);
    EXPECT_THAT(r.taken("a "),
                ElementsAre("a starts Play Wave", "a ends Play Wave", "a starts Speak one two", "a says one two",
                            "a words 3", "a words 7", "a bookmark 7", "a words 7", "a ends Speak one two",
                            "a starts Play Point", "a ends Play Point", "a balloon closed"));
}

TEST(Queue, CharactersPlaySideBySide) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.play(a, u"Wave");
    r.play(b, u"Wave");
    r.pass(10);
    EXPECT_THAT(r.taken(), ElementsAre("a starts Play Wave", "b starts Play Wave"));
    r.pass(400);
    EXPECT_THAT(r.taken(), ElementsAre("a ends Play Wave", "b ends Play Wave"));
}

TEST(Queue, RequestNumbersCountUpOverAllCharacters) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto first = r.play(a, u"Wave");
    const auto second = r.play(b, u"Wave");
    EXPECT_EQ(second->number, first->number + 1);
}

TEST(Queue, ManyThousandRequestsAreTaken) {
    Rehearsal r;
    Actor& a = r.enter("a"); // hidden: each fails at its turn
    std::vector<RequestRef> requests;
    for (int i = 0; i < 20000; ++i) {
        requests.push_back(r.play(a, u"Wave"));
    }
    r.pass(10);
    EXPECT_EQ(requests.back()->status, Status::pending) << "one tick must not do it all";
    r.pass(10000);
    EXPECT_EQ(requests.back()->status, Status::failed);
}

TEST(Play, OfAnUnknownAnimationFails) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto request = r.play(a, u"Juggle");
    r.pass(10);
    EXPECT_EQ(static_cast<int>(request->status), 1);
    EXPECT_EQ(request->failure, Failure::no_animation);
    EXPECT_THAT(r.taken(), ElementsAre("a starts Play Juggle", "a fails Play Juggle"));
}

TEST(Play, ComparesNamesWithoutLetterCase) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto request = r.play(a, u"wAVE");
    r.pass(400);
    EXPECT_EQ(request->status, Status::complete);
}

TEST(Play, ALoopIsEndedByItsExitWhenSomethingFollows) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto look = r.play(a, u"Look");
    r.pass(5000);
    EXPECT_EQ(look->status, Status::in_progress);
    const auto wave = r.play(a, u"Wave");
    r.pass(200);
    EXPECT_EQ(look->status, Status::complete);
    EXPECT_EQ(wave->status, Status::in_progress);
}

TEST(Play, ALoopGoesRoundOnceBeforeItMakesRoom) {
    Rehearsal r;
    auto cast = usualCast();
    auto& spin = cast->add(u"Spin", 4); // out of the second one
    spin.frames[2].branches = {{0, 100}};
    spin.frames[0].exit_frame = 3;
    Actor& a = r.onStage("a", cast);
    const auto look = r.play(a, u"Spin");
    r.play(a, u"Wave");
    std::vector<std::ptrdiff_t> seen;
    for (int i = 0; i < 6; ++i) {
        r.pass(i == 0 ? 50 : 100);
        seen.push_back(a.frame() - spin.frames.data());
    }
    EXPECT_EQ(std::vector(seen.begin(), seen.begin() + 5), (std::vector<std::ptrdiff_t>{0, 1, 2, 0, 3}));
    EXPECT_EQ(look->status, Status::complete);
    EXPECT_EQ(a.frame(), cast->animation(u"Wave")->frames.data());
}

TEST(Play, ALoopThatTakesHoursToGoRoundMakesRoomAfterAWhile) {
    Rehearsal r;
    auto cast = usualCast();
    auto& crawl = cast->add(u"Crawl", 100);
    for (acs::Frame& frame : crawl.frames) {
        frame.duration = 60'000; // ten minutes
        frame.exit_frame = acs::exit_end;
    }
    crawl.frames[99].branches = {{0, 100}};
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Crawl");
    const auto wave = r.play(a, u"Wave");
    r.pass(19'000);
    EXPECT_EQ(wave->status, Status::pending);
    r.pass(2'000);
    EXPECT_EQ(wave->status, Status::complete);
}

TEST(Play, ALoopWithoutAnExitDoesNotHangTheQueue) {
    Rehearsal r;
    auto cast = usualCast();
    cast->add(u"Spin").frames[0].branches = {{0, 100}};
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Spin");
    const auto wave = r.play(a, u"Wave");
    r.pass(6000);
    EXPECT_EQ(wave->status, Status::complete);
}

TEST(Play, AnAnimationThatEndsByItselfIsNotCutByWhatFollows) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave"); // 300 ms
    r.play(a, u"Look");
    r.pass(290);
    EXPECT_EQ(wave->status, Status::in_progress);
    r.pass(20);
    EXPECT_EQ(wave->status, Status::complete);
}

TEST(Play, TheReturnAnimationComesBeforeTheNext) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.play(a, u"Point"); // 100 ms
    const auto wave = r.play(a, u"Wave");
    r.pass(150);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"PointReturn")->frames[0]);
    EXPECT_EQ(wave->status, Status::pending);
    r.pass(100);
    EXPECT_EQ(wave->status, Status::in_progress);
}

TEST(Play, OfTheReturnAnimationItselfPlaysItOnce) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.play(a, u"Point");
    const auto back = r.play(a, u"PointReturn");
    r.pass(120);
    EXPECT_EQ(back->status, Status::in_progress);
}

TEST(Play, FrameSoundsAreHeardUnlessSwitchedOff) {
    Rehearsal r;
    auto cast = usualCast();
    cast->add(u"Ring").frames[0].sound = 3;
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Ring");
    r.pass(200);
    EXPECT_THAT(r.taken(), Contains("a noise 3"));
    a.sound_effects_on = false;
    r.play(a, u"Ring");
    r.pass(200);
    EXPECT_THAT(r.taken(), Not(Contains("a noise 3")));
}

TEST(Rest, ShowsAWhileAfterTheLastQueuedAnimation) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.idle_on = false;
    r.play(a, u"Point");
    r.pass(12'000);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"Point")->frames[0]) << "it stands there";
    r.pass(150);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"PointReturn")->frames[0]);
    r.pass(100);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"RestPose")->frames[0]);
}

// A cast whose Explain goes into a pose with a mouth (frame 1) and ends there, behind which stand its way out (frame 2)
// and an end mark.
std::shared_ptr<Cast> explainingCast() {
    auto cast = usualCast();
    auto& explain = cast->add(u"Explain", 4);
    explain.transition = acs::Transition::exit_branches;
    for (acs::Frame& frame : explain.frames) {
        frame.images.resize(1);
    }
    explain.frames[1].mouths.resize(1);
    explain.frames[1].branches = {{3, 100}};
    explain.frames[1].exit_frame = 2;
    explain.frames[3] = acs::Frame{};
    explain.frames[3].duration = 0;
    return cast;
}

TEST(Pose, IsStoodInUntilTheNextRequestAndThenLeftByItsExit) {
    Rehearsal r;
    const auto cast = explainingCast();
    Actor& a = r.onStage("a", cast);
    const acs::Frame* const frames = cast->animation(u"Explain")->frames.data();
    const auto explain = r.play(a, u"Explain");
    r.pass(10'000);
    EXPECT_EQ(explain->status, Status::complete);
    EXPECT_EQ(a.frame(), frames + 1);
    const auto wave = r.play(a, u"Wave");
    r.pass(50);
    EXPECT_EQ(a.frame(), frames + 2);
    EXPECT_EQ(wave->status, Status::pending);
    r.pass(100);
    EXPECT_EQ(a.frame(), &cast->animation(u"Wave")->frames[0]);
    r.pass(1000);
    EXPECT_EQ(wave->status, Status::complete);
    EXPECT_EQ(a.frame(), &cast->animation(u"Wave")->frames[2]) << "that one has no way out";
}

TEST(Pose, IsSpokenInAgainAndAgain) {
    Rehearsal r;
    const auto cast = explainingCast();
    Actor& a = r.onStage("a", cast);
    const acs::Frame* const pose = &cast->animation(u"Explain")->frames[1];
    r.play(a, u"Explain");
    r.speak(a, u"one two");
    r.pass(500);
    EXPECT_EQ(a.frame(), pose);
    EXPECT_NE(a.mouth(), std::nullopt);
    r.pass(3000);
    EXPECT_EQ(a.frame(), pose);
    Request think;
    think.kind = Kind::think;
    think.text = u"well";
    r.ask(a, think);
    r.speak(a, u"three");
    for (int i = 0; i < 30; ++i) {
        r.pass(50);
        ASSERT_EQ(a.frame(), pose) << i;
    }
    const auto move = r.ask(a, moveTo(50, 50, 300));
    for (int i = 0; i < 500 && move->status == Status::pending; ++i) {
        r.pass(10);
    }
    EXPECT_EQ(a.frame(), &cast->animation(u"GoLeft")->frames[0]) << "another request leaves it";
    r.pass(1000);
    EXPECT_EQ(move->status, Status::complete);
    EXPECT_EQ(a.frame(), &cast->animation(u"RestPose")->frames[0]) << "no pose is left of a way";
}

TEST(Pose, WithAReturnAnimationIsSpokenInToo) {
    Rehearsal r;
    auto cast = usualCast();
    auto& present = cast->add(u"Present");
    present.transition = acs::Transition::return_animation;
    present.return_animation = u"PointReturn";
    present.frames[0].mouths.resize(1);
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Present");
    r.pass(5000);
    r.speak(a, u"one two");
    r.pass(500);
    EXPECT_EQ(a.frame(), present.frames.data());
    r.pass(1000);
    r.play(a, u"Wave");
    r.pass(60);
    EXPECT_EQ(a.frame(), cast->animation(u"PointReturn")->frames.data());
}

TEST(Pose, WithoutAMouthIsLeftForSpeaking) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.play(a, u"Point");
    r.pass(1000);
    r.speak(a, u"one two");
    r.pass(50);
    EXPECT_EQ(a.frame(), a.repertoire().animation(u"PointReturn")->frames.data());
    r.pass(100);
    EXPECT_EQ(a.frame(), a.repertoire().animation(u"Talk")->frames.data());
}

TEST(Pose, OfRestIsNoneToSpeakIn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.play(a, u"RestPose");
    r.pass(500);
    r.speak(a, u"one two");
    r.pass(50);
    EXPECT_EQ(a.frame(), a.repertoire().animation(u"Talk")->frames.data());
}

TEST(Pose, OfTheSpeakingStateGoesWithTheWords) {
    Rehearsal r;
    auto cast = usualCast();
    auto& talk = cast->add(u"Gesticulate");
    talk.transition = acs::Transition::return_animation;
    talk.return_animation = u"PointReturn";
    talk.frames[0].mouths.resize(1);
    cast->state(u"SPEAKING", {u"Gesticulate"});
    Actor& a = r.onStage("a", cast);
    r.speak(a, u"one two");
    r.pass(900);
    EXPECT_EQ(a.frame(), talk.frames.data());
    r.pass(180);
    EXPECT_EQ(a.frame(), cast->animation(u"PointReturn")->frames.data());
    r.pass(100);
    EXPECT_EQ(a.frame(), cast->animation(u"RestPose")->frames.data());
    for (const bool stopped : {false, true}) {
        const auto speak = r.speak(a, u"one two");
        r.pass(500);
        if (stopped) {
            a.stop(speak);
        }
        r.pass(stopped ? 60 : 560);
        EXPECT_EQ(a.frame(), cast->animation(u"PointReturn")->frames.data()) << stopped;
        r.pass(500);
    }
}

TEST(Pose, IsLeftByAStop) {
    Rehearsal r;
    const auto cast = explainingCast();
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Explain");
    r.pass(1000);
    a.stop();
    r.pass(50);
    EXPECT_EQ(a.frame(), &cast->animation(u"Explain")->frames[2]);
    r.pass(200);
    EXPECT_EQ(a.frame(), &cast->animation(u"RestPose")->frames[0]);
}

TEST(Pose, OfAWayLastsAsLongAsTheWay) {
    Rehearsal r;
    auto cast = usualCast();
    auto& fly = cast->add(u"Fly", 3);
    for (acs::Frame& frame : fly.frames) {
        frame.images.resize(1);
    }
    fly.frames[2] = acs::Frame{};
    fly.frames[2].duration = 0;
    fly.transition = acs::Transition::return_animation;
    fly.return_animation = u"PointReturn";
    cast->state(u"MOVINGLEFT", {u"Fly"});
    Actor& a = r.onStage("a", cast);
    r.ask(a, moveTo(1000, 0, 1000));
    for (int i = 0; i < 9; ++i) {
        r.pass(100);
        ASSERT_EQ(a.frame(), fly.frames.data() + std::min(i, 1)) << i;
    }
    r.pass(150);
    EXPECT_EQ(a.frame(), cast->animation(u"PointReturn")->frames.data());
}

TEST(Pose, AWayBackWithoutAnEndHoldsNobodyUp) {
    Rehearsal r;
    auto cast = usualCast();
    auto& back = cast->add(u"Back", 2);
    back.frames[1].branches = {{0, 100}};
    auto& away = cast->add(u"Away");
    away.transition = acs::Transition::return_animation;
    away.return_animation = u"Back";
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Away");
    const auto wave = r.play(a, u"Wave");
    r.pass(6000);
    EXPECT_EQ(wave->status, Status::complete);
}

TEST(Hidden, PlayAndSpeakFailWhenTheirTurnComes) {
    Rehearsal r;
    Actor& a = r.enter("a");
    const auto play = r.play(a, u"Wave");
    const auto speak = r.speak(a, u"hello");
    EXPECT_EQ(play->status, Status::pending);
    r.pass(10);
    EXPECT_EQ(static_cast<int>(play->status), 1);
    EXPECT_EQ(play->failure, Failure::hidden);
    EXPECT_EQ(static_cast<int>(speak->status), 1);
}

TEST(Hidden, ShowAndMoveToWork) {
    Rehearsal r;
    Actor& a = r.enter("a");
    r.ask(a, moveTo(30, 40));
    r.show(a);
    const auto play = r.play(a, u"Wave");
    r.pass(500);
    EXPECT_THAT(r.taken(),
                ElementsAre("a starts MoveTo", "a at 30,40 unseen", "a moved 2", "a ends MoveTo", "a starts Show",
                            "a at 30,40", "a shown 4", "a ends Show", "a starts Play Wave", "a ends Play Wave"));
    EXPECT_EQ(play->status, Status::complete);
}

TEST(Show, PlaysAnAnimationOfTheShowingState) {
    Rehearsal r;
    Actor& a = r.enter("a");
    const auto show = r.show(a, false);
    r.pass(10);
    EXPECT_TRUE(a.visible());
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"Show")->frames[0]);
    EXPECT_EQ(show->status, Status::in_progress);
    r.pass(300);
    EXPECT_EQ(show->status, Status::complete);
}

TEST(Show, OfAVisibleCharacterIsOverAtOnceAndTellsNothing) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.show(a, false);
    r.pass(20);
    EXPECT_THAT(r.taken(), ElementsAre("a starts Show", "a ends Show"));
}

TEST(Hide, PlaysAnAnimationOfTheHidingStateAndThenVanishes) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.ask(a, plain(Kind::hide));
    r.pass(100);
    EXPECT_TRUE(a.visible());
    r.pass(200);
    EXPECT_FALSE(a.visible());
    EXPECT_THAT(r.taken(), ElementsAre("a starts Hide", "a at 0,0 unseen", "a hidden 3", "a ends Hide"));
}

TEST(States, OneOfSeveralAnimationsIsChosenAtRandom) {
    Rehearsal r;
    auto cast = usualCast();
    cast->state(u"SHOWING", {u"Show", u"Wave", u"Point"});
    Actor& a = r.enter("a", cast);
    r.rolls = {1};
    r.show(a, false);
    r.pass(10);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"Wave")->frames[0]);
}

TEST(MoveTo, GlidesInItsTimeWithTheAnimationOfItsDirection) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto move = r.ask(a, moveTo(100, 50, 500));
    r.pass(10);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"GoLeft")->frames[0]) << "the character's own left";
    r.pass(250);
    EXPECT_EQ(a.left(), 50);
    EXPECT_EQ(a.top(), 25);
    EXPECT_EQ(move->status, Status::in_progress);
    r.pass(300);
    EXPECT_EQ(a.left(), 100);
    EXPECT_EQ(a.top(), 50);
    EXPECT_EQ(move->status, Status::complete);
    EXPECT_THAT(r.taken(), Contains("a moved 2"));
}

TEST(MoveTo, ChoosesTheDirectionOfTheLongerWay) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.place(500, 500, MoveCause::program);
    const auto shown = [&](int x, int y) {
        a.place(500, 500, MoveCause::program);
        r.ask(a, moveTo(x, y, 100));
        r.pass(20);
        const auto* frame = a.frame();
        r.pass(500);
        for (const char16_t* name : {u"GoLeft", u"GoRight", u"GoUp", u"GoDown"}) {
            if (frame == &a.repertoire().animation(name)->frames[0]) {
                return std::u16string(name);
            }
        }
        return std::u16string();
    };
    EXPECT_EQ(shown(100, 400), u"GoRight");
    EXPECT_EQ(shown(900, 600), u"GoLeft");
    EXPECT_EQ(shown(400, 100), u"GoUp");
    EXPECT_EQ(shown(600, 900), u"GoDown");
}

TEST(MoveTo, WithoutTimeIsThereAtOnce) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto move = r.ask(a, moveTo(-40, 700, 0));
    r.pass(10);
    EXPECT_EQ(a.left(), -40);
    EXPECT_EQ(a.top(), 700);
    EXPECT_EQ(move->status, Status::complete);
}

TEST(MoveTo, IsOverWhereTheUserTakesTheCharacterInHand) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto move = r.ask(a, moveTo(1000, 0, 1000));
    r.pass(100);
    a.drag(70, 80);
    a.drop();
    r.pass(300);
    EXPECT_EQ(move->status, Status::complete);
    EXPECT_EQ(a.left(), 70);
    EXPECT_EQ(a.moveCause(), MoveCause::user);
}

TEST(GestureAt, PointsToTheSideOfThePlace) {
    Rehearsal r;
    Actor& a = r.onStage("a"); // 100 × 120 at 0,0
    const auto shown = [&](int x, int y) {
        Request gesture = plain(Kind::gesture_at);
        gesture.x = x;
        gesture.y = y;
        r.ask(a, gesture);
        r.pass(20);
        const auto* frame = a.frame();
        r.pass(500);
        return frame;
    };
    const auto frame = [&](const char16_t* name) { return &a.repertoire().animation(name)->frames[0]; };
    EXPECT_EQ(shown(60, 900), frame(u"GestDown"));
    EXPECT_EQ(shown(60, -900), frame(u"GestUp"));
    EXPECT_EQ(shown(900, 60), frame(u"GestLeft")) << "the character's own left";
    EXPECT_EQ(shown(-900, 60), frame(u"GestRight"));
}

TEST(Speak, ShowsItsWordsAsTheyAreHeardAndMovesTheMouth) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one two");
    r.pass(30);
    EXPECT_EQ(a.mouth(), acs::MouthShape::wide1);
    EXPECT_THAT(r.taken(), ElementsAre("a starts Speak one two", "a says one two", "a words 3"));
    r.pass(500);
    EXPECT_EQ(a.mouth(), acs::MouthShape::closed);
    EXPECT_THAT(r.taken(), ElementsAre("a words 7", "a bookmark 7"));
    r.pass(600);
    EXPECT_EQ(a.mouth(), std::nullopt);
    EXPECT_THAT(r.taken(), ElementsAre("a words 7", "a ends Speak one two"));
}

TEST(Speak, PlaysAnAnimationOfTheSpeakingState) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one two");
    r.pass(30);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"Talk")->frames[0]);
}

TEST(Speak, WithoutAutoPaceShowsAllWordsAtOnce) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.balloon_style = 1 | 2;
    r.speak(a, u"one two");
    r.pass(30);
    EXPECT_THAT(r.taken("a words"), ElementsAre("a words 7"));
}

TEST(Speak, WithAutoHideTheBalloonClosesAWhileAfter) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.balloon_style = 1 | 4;
    r.speak(a, u"one two");
    r.pass(2000);
    EXPECT_TRUE(a.balloonOpen());
    r.pass(1000);
    EXPECT_FALSE(a.balloonOpen());
}

TEST(Speak, WithoutAutoHideTheBalloonStaysUntilTheNext) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.balloon_style = 1;
    r.speak(a, u"one two");
    r.pass(11000);
    EXPECT_TRUE(a.balloonOpen());
    r.taken();
    r.speak(a, u"three");
    r.pass(30);
    EXPECT_THAT(r.taken("a "), ElementsAre("a starts Speak three", "a balloon closed", "a says three", "a words 5"));
}

TEST(Speak, WithTheBalloonOffShowsNone) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.balloon_style = 14;
    r.speak(a, u"one two");
    r.pass(100);
    EXPECT_FALSE(a.balloonOpen());
}

TEST(Speak, OfASingleBlankShowsNoBalloon) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto sound = r.speak(a, u" ", u"S:\\sounds\\default\\laugh.wav");
    r.pass(100);
    EXPECT_FALSE(a.balloonOpen());
    r.pass(1500);
    EXPECT_EQ(sound->status, Status::complete);
}

TEST(Speak, OfBlanksAndLineBreaksAloneIsHeardWithoutABalloon) {
    for (const std::u16string text : {u"\r\n", u"\n", u"  \t ", u"", u"\u00A0\u3000\u2028\uFEFF"}) {
        Rehearsal r;
        Actor& a = r.onStage("a");
        const auto speak = r.speak(a, text);
        r.pass(100);
        EXPECT_EQ(speak->status, Status::in_progress);
        EXPECT_FALSE(a.balloonOpen());
        r.pass(1500);
        EXPECT_EQ(speak->status, Status::complete);
    }
}

TEST(Speak, OfASoundFileThatCannotBePlayedFailsAndTheQueueGoesOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speech_fails = true;
    const auto sound = r.speak(a, u" ", u"S:\\missing.wav");
    const auto wave = r.play(a, u"Wave");
    r.pass(500);
    EXPECT_EQ(sound->status, Status::failed);
    EXPECT_EQ(sound->failure, Failure::no_sound);
    EXPECT_EQ(wave->status, Status::complete);
}

TEST(Speak, ASoundThatCannotBeStartedIsShownInItsTimeAndHoldsNobodyUp) {
    for (const bool throws : {false, true}) {
        Rehearsal r;
        Actor& a = r.onStage("a");
        Actor& b = r.onStage("b");
        r.sound_fails = true;
        r.device_throws = throws;
        const auto unheard = r.speak(a, u"one two");
        r.pass(900);
        EXPECT_FALSE(unheard->over()) << "as long as it would sound";
        r.sound_fails = r.device_throws = false;
        const auto next = r.speak(b, u"three four");
        r.pass(200);
        EXPECT_EQ(unheard->status, Status::complete);
        r.pass(1500);
        EXPECT_EQ(next->status, Status::complete);
        EXPECT_THAT(r.taken("a "),
                    ElementsAre("a starts Speak one two", "a says one two", "a words 3", "a words 7", "a bookmark 7",
                                "a words 7", "a ends Speak one two", "a balloon closed"));
    }
}

TEST(Speak, WhatCannotBeOrderedFailsAndTheQueueGoesOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.order_throws = true;
    const auto lost = r.speak(a, u"lost");
    r.pass(100);
    r.order_throws = false;
    const auto next = r.speak(a, u"next");
    r.pass(2000);
    EXPECT_EQ(lost->status, Status::failed);
    EXPECT_EQ(next->status, Status::complete);
}

TEST(Speak, OnlyOneCharacterUsesTheAudioChannelAtATime) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    Actor& c = r.onStage("c");
    const auto first = r.speak(a, u"one");
    const auto second = r.speak(b, u"two");
    const auto third = r.speak(c, u"three");
    r.pass(500);
    EXPECT_EQ(first->status, Status::in_progress);
    EXPECT_EQ(second->status, Status::pending);
    r.pass(600);
    EXPECT_EQ(first->status, Status::complete);
    EXPECT_EQ(second->status, Status::in_progress);
    EXPECT_EQ(third->status, Status::pending);
    r.pass(2000);
    EXPECT_EQ(third->status, Status::complete);
}

TEST(Speak, ACharacterThatLeavesGivesTheChannelBack) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.speak(a, u"one");
    const auto second = r.speak(b, u"two");
    r.pass(100);
    r.stage.leave(a.id());
    r.pass(100);
    EXPECT_EQ(second->status, Status::in_progress);
}

TEST(Speak, TheNextOneIsMadeWhileTheOneBeforeIsHeard) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.speak(a, u"two");
    r.speak(a, u"three");
    r.pass(100);
    EXPECT_EQ(r.orders, 2);
}

TEST(Speak, IsMadeFromTheMomentItIsAskedFor) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& hidden = r.enter("hidden");
    r.speak(a, u"one");
    EXPECT_EQ(r.orders, 1);
    r.speak(a, u"two");
    EXPECT_EQ(r.orders, 1) << "one by one";
    r.speak(hidden, u"never heard");
    EXPECT_EQ(r.orders, 1);
}

TEST(Speak, WaitsForItsSound) {
    Rehearsal r;
    r.speech_late = true;
    Actor& a = r.onStage("a");
    const auto speak = r.speak(a, u"one");
    r.pass(5000);
    EXPECT_EQ(speak->status, Status::pending);
    r.deliver();
    r.pass(20);
    EXPECT_EQ(speak->status, Status::in_progress);
}

TEST(Think, ShowsItsWordsWithoutTheAudioChannel) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.speak(a, u"one");
    r.pass(50);
    r.taken();
    const auto think = r.ask(b, plain(Kind::think, u"hm well"));
    r.pass(800);
    EXPECT_EQ(think->status, Status::complete);
    EXPECT_THAT(r.taken("b "), ElementsAre("b starts Think hm well", "b thinks hm well", "b words 2", "b words 7",
                                           "b words 7", "b ends Think hm well"));
    EXPECT_EQ(r.orders, 1);
}

TEST(Idle, BeginsOnceAfterAWhileOfNothing) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.pass(11000);
    EXPECT_THAT(r.taken(), IsEmpty());
    r.pass(60000);
    EXPECT_THAT(r.taken(), ElementsAre("a idles"));
    (void)a;
}

TEST(Idle, ANewRequestEndsIt) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.pass(15000);
    r.taken();
    r.play(a, u"Wave");
    r.pass(1000);
    EXPECT_THAT(r.taken(), ElementsAre("a wakes", "a starts Play Wave", "a ends Play Wave"));
    r.pass(12000);
    EXPECT_THAT(r.taken(), ElementsAre("a idles"));
}

TEST(Idle, LevelsRiseAsItGoesOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto next = [&] {
        for (int i = 0; i < 1000; ++i) {
            r.pass(10);
            for (const char16_t* name : {u"Idle1", u"Idle2", u"Idle3"}) {
                if (a.frame() == &a.repertoire().animation(name)->frames[0]) {
                    r.pass(200);
                    return std::u16string(name);
                }
            }
        }
        return std::u16string();
    };
    r.pass(11000);
    EXPECT_EQ(next(), u"Idle1");
    r.pass(60000);
    EXPECT_EQ(next(), u"Idle2");
    r.pass(120000);
    EXPECT_EQ(next(), u"Idle3");
}

TEST(Idle, DoesNotComeWhereItIsSwitchedOffOrTheCharacterIsHidden) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.enter("b");
    a.idle_on = false;
    r.pass(60000);
    EXPECT_THAT(r.taken(), IsEmpty());
}

TEST(Size, IsTold) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.resize(50, 60);
    EXPECT_EQ(a.width(), 50);
    EXPECT_THAT(r.taken(), ElementsAre("a at 0,0", "a resized"));
}

TEST(Size, HasItsBounds) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.resize(12000, 32767);
    EXPECT_EQ(a.width(), largest_side);
    EXPECT_EQ(a.height(), largest_side);
    a.resize(-5, 0);
    EXPECT_EQ(a.width(), 1);
    EXPECT_EQ(a.height(), 1);
    EXPECT_THAT(r.taken(), Contains("a resized").Times(2));
}

TEST(Size, FollowsTheScaleOfTheStage) {
    Rehearsal r;
    Actor& a = r.onStage("a"); // 100 × 120
    r.stage.setScale(2);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(200, 240));
    EXPECT_THAT(r.taken(), ElementsAre("a at 0,0", "a resized"));
    Actor& late = r.enter("late");
    EXPECT_EQ(std::pair(late.width(), late.height()), std::pair(200, 240));
    r.stage.setScale(0.75);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(75, 90));
    r.taken();
    r.stage.setScale(0.75);
    EXPECT_THAT(r.taken(), IsEmpty());
}

TEST(Size, OfAClientGrowsWithTheScaleOfTheStage) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setScale(2);
    a.resize(101, 50);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(101, 50)) << "on the screen";
    r.stage.setScale(4);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(202, 100));
    r.stage.setScale(1);
    r.stage.setScale(2);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(101, 50)) << "whatever was rounded between";
}

TEST(Size, KeepsItsProportionsWhereTheScaleIsTooLarge) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setScale(50);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(667, largest_side));
    r.stage.setScale(0.001);
    EXPECT_EQ(std::pair(a.width(), a.height()), std::pair(1, 1));
}

TEST(Size, KeepsTheCharacterOnTheScreen) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}}});
    a.place(700, 480, MoveCause::program);
    r.stage.setScale(2);
    EXPECT_EQ(a.area(), (Rect{600, 360, 800, 600}));
}

TEST(UserHides, BreaksEverythingOff) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto speak = r.speak(a, u"one");
    r.pass(100);
    a.hideByUser();
    EXPECT_FALSE(a.visible());
    EXPECT_EQ(speak->status, Status::interrupted);
    EXPECT_EQ(a.visibilityCause(), VisibilityCause::user_hid);
    r.pass(1000);
}

TEST(Balloon, IsShownOnWhereItWasAboutToGo) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto speak = r.speak(a, u"one");
    while (speak->status != Status::complete) {
        r.pass(10);
    }
    r.pass(1000);
    ASSERT_TRUE(a.balloonOpen()) << "it goes one and a half seconds after its words";
    a.showBalloon();
    r.pass(10000);
    EXPECT_TRUE(a.balloonOpen());
    r.speak(a, u"two");
    r.pass(10000);
    EXPECT_FALSE(a.balloonOpen()) << "with other words it goes as ever";
}

TEST(Balloon, IsShownAgainWithItsLastWords) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    a.showBalloon();
    EXPECT_FALSE(a.balloonOpen()) << "it had no words yet";
    r.speak(a, u"one");
    r.pass(10000);
    ASSERT_FALSE(a.balloonOpen());
    r.taken();
    a.showBalloon();
    EXPECT_TRUE(a.balloonOpen());
    EXPECT_THAT(r.taken("a says"), testing::ElementsAre("a says one"));
    r.pass(10000);
    EXPECT_TRUE(a.balloonOpen()) << "until it is hidden";
    a.hideBalloon();
    EXPECT_FALSE(a.balloonOpen());
    a.balloon_style &= ~balloon_on;
    a.showBalloon();
    EXPECT_FALSE(a.balloonOpen());
}

TEST(Get, HasItsTurnInTheQueue) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    const auto there = r.ask(a, {.kind = Kind::get, .text = u"Wave"});
    const auto missing = r.ask(a, {.kind = Kind::get, .text = u"Fly", .failure = Failure::no_animation});
    r.pass(50);
    EXPECT_EQ(there->status, Status::pending);
    r.pass(1000);
    EXPECT_EQ(wave->status, Status::complete);
    EXPECT_EQ(there->status, Status::complete);
    EXPECT_EQ(missing->status, Status::failed);
    EXPECT_EQ(missing->failure, Failure::no_animation);
}

TEST(Get, IsStoppedByItsKind) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    const auto get = r.ask(a, {.kind = Kind::get, .text = u"Wave"});
    r.pass(50);
    a.stopAll({StopKind::get});
    EXPECT_EQ(get->status, Status::interrupted);
    EXPECT_EQ(wave->status, Status::in_progress);
}

} // namespace
} // namespace agent::stage
