#include <gmock/gmock.h>

#include "tests/unit/stage/rehearsal.h"

namespace agent::stage {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(Stop, WithoutARequestClearsTheQueueAndStopsWhatPlays) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    const auto speak = r.speak(a, u"one");
    r.pass(50);
    r.taken();
    a.stop();
    EXPECT_EQ(static_cast<int>(wave->status), 3);
    EXPECT_EQ(static_cast<int>(speak->status), 3);
    EXPECT_THAT(r.taken(), ElementsAre("a breaks off Play Wave", "a breaks off Speak one"));
    r.pass(1000);
    EXPECT_EQ(a.frame(), &a.repertoire().animation(u"RestPose")->frames[0]);
}

TEST(Stop, SilencesSpeechAndClosesItsBalloon) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(50);
    r.taken();
    a.stop();
    EXPECT_THAT(r.taken(), ElementsAre("a balloon closed", "silence", "a breaks off Speak one"));
    EXPECT_EQ(a.mouth(), std::nullopt);
}

TEST(Stop, TakesTheExitOfALoopBeforeTheNext) {
    Rehearsal r;
    auto cast = usualCast();
    auto& nod = cast->add(u"Nod", 3);
    nod.frames[1].branches = {{0, 100}};
    nod.frames[0].exit_frame = nod.frames[1].exit_frame = 2;
    Actor& a = r.onStage("a", cast);
    r.play(a, u"Nod");
    r.pass(50);
    a.stop();
    const auto wave = r.play(a, u"Wave");
    r.pass(100);
    EXPECT_EQ(a.frame(), &cast->animation(u"Nod")->frames[2]);
    EXPECT_EQ(wave->status, Status::pending);
    r.pass(100);
    EXPECT_EQ(wave->status, Status::in_progress);
}

TEST(Stop, OfAQueuedRequestRemovesThatOneAlone) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto first = r.play(a, u"Wave");
    const auto second = r.play(a, u"Point");
    const auto third = r.play(a, u"Wave");
    r.pass(50);
    a.stop(second);
    EXPECT_EQ(second->status, Status::interrupted);
    r.pass(1000);
    EXPECT_EQ(first->status, Status::complete);
    EXPECT_EQ(third->status, Status::complete);
}

TEST(Stop, OfTheRequestThatPlaysStopsItAndTheQueueGoesOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto first = r.play(a, u"Look");
    r.pass(50);
    a.stop(first);
    EXPECT_EQ(first->status, Status::interrupted);
    const auto second = r.play(a, u"Wave");
    r.pass(1000);
    EXPECT_EQ(second->status, Status::complete);
}

TEST(Stop, OfARequestThatIsOverOrAnothersChangesNothing) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto done = r.play(a, u"Wave");
    r.pass(500);
    const auto foreign = r.play(b, u"Look");
    r.pass(50);
    a.stop(done);
    a.stop(foreign);
    EXPECT_EQ(done->status, Status::complete);
    EXPECT_EQ(foreign->status, Status::in_progress);
}

TEST(Stop, OfASpeakThatWaitsForTheChannelLetsOthersHaveIt) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    Actor& c = r.onStage("c");
    r.speak(a, u"one");
    r.pass(30);
    const auto second = r.speak(b, u"two");
    r.pass(30);
    const auto third = r.speak(c, u"three");
    r.pass(30);
    b.stop(second);
    r.pass(1200);
    EXPECT_EQ(third->status, Status::in_progress);
}

TEST(Stop, OfSpeechThatIsStillMadeCancelsTheOrder) {
    Rehearsal r;
    r.speech_late = true;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(30);
    a.stop();
    EXPECT_EQ(r.cancelled, 1);
}

TEST(Stop, DuringHideLeavesTheCharacterVisible) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Request hide;
    hide.kind = Kind::hide;
    r.ask(a, hide);
    r.pass(50);
    a.stop();
    r.pass(1000);
    EXPECT_TRUE(a.visible());
}

TEST(Stop, DuringMoveToLeavesTheCharacterWhereItIs) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Request move;
    move.kind = Kind::move_to;
    move.x = 1000;
    move.speed = 1000;
    r.ask(a, move);
    r.pass(510);
    a.stop();
    r.pass(1000);
    EXPECT_EQ(a.left(), 500);
}

TEST(StopAll, TakesTheNamedKindsAlone) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto look = r.play(a, u"Look");
    const auto speak = r.speak(a, u"one");
    Request move;
    move.kind = Kind::move_to;
    move.x = 10;
    const auto moving = r.ask(a, move);
    const auto wave = r.play(a, u"Wave");
    r.pass(50);
    a.stopAll({StopKind::play});
    EXPECT_EQ(look->status, Status::interrupted);
    EXPECT_EQ(wave->status, Status::interrupted);
    EXPECT_EQ(speak->status, Status::pending);
    a.stopAll({StopKind::move, StopKind::speak});
    EXPECT_EQ(speak->status, Status::interrupted);
    EXPECT_EQ(moving->status, Status::interrupted);
}

TEST(Leaving, BreaksOffAllRequestsAndVanishes) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    r.pass(50);
    r.taken();
    const ActorId id = a.id();
    r.stage.leave(id);
    EXPECT_EQ(wave->status, Status::interrupted);
    EXPECT_THAT(r.taken(), Contains("a hidden 3"));
    EXPECT_EQ(r.stage.find(id), nullptr);
    r.pass(100);
}

TEST(Leaving, WithSpeechUnderWayIsSafe) {
    Rehearsal r;
    r.speech_late = true;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(50);
    r.stage.leave(a.id());
    r.deliver();
    r.pass(100);
    EXPECT_EQ(r.cancelled, 1);
}

} // namespace
} // namespace agent::stage
