#include <gmock/gmock.h>

#include "tests/unit/stage/rehearsal.h"

namespace agent::stage {
namespace {

Request interruption(const RequestRef& target) {
    Request request;
    request.kind = Kind::interrupt;
    request.target = target;
    return request;
}

TEST(Wait, LastsUntilTheOtherCharactersRequestIsOver) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto wave = r.play(a, u"Wave"); // 300 ms
    const auto wait = r.wait(b, wave);
    const auto after = r.play(b, u"Wave");
    r.pass(200);
    EXPECT_EQ(wait->status, Status::in_progress);
    EXPECT_EQ(after->status, Status::pending);
    r.pass(150);
    EXPECT_EQ(wait->status, Status::complete);
    EXPECT_EQ(after->status, Status::in_progress);
}

TEST(Wait, ForARequestThatIsOverEndsAtOnce) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto wave = r.play(a, u"Wave");
    r.pass(500);
    const auto wait = r.wait(b, wave);
    r.pass(10);
    EXPECT_EQ(wait->status, Status::complete);
}

TEST(Wait, ForTheSameCharacterFails) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    const auto wait = r.wait(a, wave);
    r.pass(500);
    EXPECT_EQ(wait->status, Status::failed);
    EXPECT_EQ(wait->failure, Failure::bad_target);
}

TEST(Wait, InACircleFailsWhereTheCircleCloses) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    Actor& c = r.onStage("c");
    // Each waits for what stands behind another's wait.
    const auto of_a = r.stage.newRequest({});
    const auto of_b = r.stage.newRequest({});
    const auto of_c = r.stage.newRequest({});
    of_a->text = of_b->text = of_c->text = u"Wave";
    of_a->actor = a.id();
    of_b->actor = b.id();
    of_c->actor = c.id();
    const auto first = r.wait(a, of_b);
    a.add(of_a);
    const auto second = r.wait(b, of_c);
    b.add(of_b);
    const auto third = r.wait(c, of_a);
    c.add(of_c);
    r.pass(3000);
    EXPECT_EQ(third->status, Status::failed);
    EXPECT_EQ(third->failure, Failure::deadlock);
    EXPECT_EQ(first->status, Status::complete);
    EXPECT_EQ(second->status, Status::complete);
    EXPECT_EQ(of_a->status, Status::complete);
}

TEST(Wait, ForALoopEndsTheLoop) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto look = r.play(a, u"Look");
    const auto wait = r.wait(b, look);
    r.pass(1000);
    EXPECT_EQ(look->status, Status::complete);
    EXPECT_EQ(wait->status, Status::complete);
}

TEST(Wait, EndsWhenTheOtherCharacterLeaves) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.speech_late = true;
    const auto speak = r.speak(a, u"one");
    const auto wait = r.wait(b, speak);
    r.pass(100);
    r.stage.leave(a.id());
    r.pass(10);
    EXPECT_EQ(wait->status, Status::complete);
}

TEST(Wait, ALongChainIsGivenUpWithoutRunningOutOfStack) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    RequestRef last = r.play(a, u"Wave");
    for (int i = 0; i < 200000; ++i) {
        last = r.wait(i % 2 == 0 ? b : a, last);
    }
    last.reset();
    a.stop();
    b.stop();
    r.pass(10);
}

TEST(Interrupt, StopsTheOtherCharactersRequestAtItsTurn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto look = r.play(a, u"Look");
    r.play(b, u"Wave"); // 300 ms
    const auto interrupt = r.ask(b, interruption(look));
    r.pass(200);
    EXPECT_EQ(look->status, Status::in_progress);
    r.pass(150);
    EXPECT_EQ(look->status, Status::interrupted);
    EXPECT_EQ(interrupt->status, Status::complete);
}

TEST(Interrupt, OfTheSameCharacterFails) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto wave = r.play(a, u"Wave");
    const auto interrupt = r.ask(a, interruption(wave));
    r.pass(500);
    EXPECT_EQ(wave->status, Status::complete);
    EXPECT_EQ(interrupt->status, Status::failed);
}

} // namespace
} // namespace agent::stage
