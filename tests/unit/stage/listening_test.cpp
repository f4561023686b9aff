// The listener's hand on what is said.
#include <set>

#include <gmock/gmock.h>

#include "tests/unit/stage/rehearsal.h"

namespace agent::stage {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

RequestRef think(Rehearsal& r, Actor& actor, const std::u16string& text) {
    return r.ask(actor, {.kind = Kind::think, .text = text});
}

TEST(Skip, InterruptsWhatIsSaidAndGoesOnWithTheNext) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto one = r.speak(a, u"one");
    const auto two = r.speak(b, u"two");
    const auto three = r.speak(a, u"three");
    r.pass(300);
    ASSERT_EQ(one->status, Status::in_progress);
    r.taken();
    r.stage.skip();
    EXPECT_EQ(one->status, Status::interrupted);
    EXPECT_THAT(r.taken(), ElementsAre("a balloon closed", "silence", "a breaks off Speak one"));
    EXPECT_EQ(a.mouth(), std::nullopt);
    r.pass(200);
    EXPECT_EQ(two->status, Status::in_progress);
    r.stage.skip();
    EXPECT_EQ(two->status, Status::interrupted);
    r.pass(3000);
    EXPECT_EQ(three->status, Status::complete);
}

TEST(Skip, LeavesEverythingElseInTheQueues) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto wave = r.play(b, u"Wave");
    const auto one = r.speak(a, u"one");
    const auto point = r.play(a, u"Point");
    r.pass(100);
    r.stage.skip();
    EXPECT_EQ(one->status, Status::interrupted);
    EXPECT_EQ(wave->status, Status::in_progress);
    r.pass(2000);
    EXPECT_EQ(wave->status, Status::complete);
    EXPECT_EQ(point->status, Status::complete);
}

TEST(Skip, TakesWhatIsNextWhereNothingIsSaidYet) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.speech_late = true;
    const auto two = r.speak(b, u"two");
    const auto one = r.speak(a, u"one");
    r.pass(100);
    r.stage.skip();
    EXPECT_EQ(two->status, Status::interrupted) << "it was asked for first";
    EXPECT_EQ(one->status, Status::pending);
    r.stage.skip();
    EXPECT_EQ(one->status, Status::interrupted);
    r.taken();
    r.stage.skip();
    EXPECT_THAT(r.taken(), IsEmpty()) << "there is nothing to skip";
}

TEST(Reading, ABalloonStaysForAsLongAsTheUserNeeds) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setListening({.balloon_stays = 5000});
    const auto one = r.speak(a, u"one");
    const auto wave = r.play(a, u"Wave");
    const auto two = r.speak(a, u"two");
    r.pass(1200);
    EXPECT_EQ(one->status, Status::complete) << "it is said all the same";
    r.pass(1000);
    EXPECT_EQ(wave->status, Status::complete) << "what leaves the balloon open goes on";
    r.pass(3500);
    EXPECT_TRUE(a.balloonOpen());
    EXPECT_EQ(two->status, Status::pending) << "what takes its place waits";
    r.taken();
    r.pass(1000);
    EXPECT_EQ(two->status, Status::in_progress);
    EXPECT_THAT(r.taken("a balloon"), ElementsAre("a balloon closed"));
}

TEST(Reading, NothingClosesABalloonThatIsRead) {
    for (const Kind kind : {Kind::move_to, Kind::hide, Kind::think}) {
        Rehearsal r;
        Actor& a = r.onStage("a");
        r.stage.setListening({.balloon_stays = Listening::until_read});
        r.speak(a, u"one");
        const auto next = r.ask(a, {.kind = kind, .text = u"two", .x = 300, .y = 200, .speed = 100});
        r.pass(3'600'000);
        EXPECT_TRUE(a.balloonOpen());
        EXPECT_EQ(next->status, Status::pending);
        a.dismissBalloon();
        EXPECT_FALSE(a.balloonOpen());
        r.pass(3000);
        EXPECT_EQ(next->status, Status::complete);
    }
}

TEST(Reading, OthersSpeakMeanwhileAndASkipGoesOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b", usualCast(), 1);
    r.stage.setListening({.balloon_stays = Listening::until_read});
    r.speak(a, u"one");
    r.pass(1500);
    const auto three = r.speak(a, u"three"), two = r.speak(b, u"two");
    r.pass(500);
    EXPECT_EQ(two->status, Status::in_progress);
    r.stage.skip();
    EXPECT_EQ(two->status, Status::interrupted) << "what is said goes first";
    EXPECT_TRUE(a.balloonOpen());
    r.pass(100);
    EXPECT_EQ(three->status, Status::pending);
    r.stage.skip();
    EXPECT_EQ(three->status, Status::pending) << "it was not heard yet";
    r.pass(500);
    EXPECT_EQ(three->status, Status::in_progress);
}

TEST(Reading, AClickClosesNoBalloonWhoseWordsStillCome) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(300);
    a.dismissBalloon();
    EXPECT_TRUE(a.balloonOpen());
    r.pass(1000);
    a.dismissBalloon();
    EXPECT_FALSE(a.balloonOpen());
}

TEST(Reading, ASettingHoldsForTheBalloonThatIsOpen) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setListening({.balloon_stays = Listening::until_read});
    r.speak(a, u"one");
    const auto two = r.speak(a, u"two");
    r.pass(10'000);
    ASSERT_EQ(two->status, Status::pending);
    r.stage.setListening({});
    r.pass(100);
    EXPECT_EQ(two->status, Status::in_progress);
}

TEST(Reading, WordsComeAllAtOnceWhereTheUserWantsIt) {
    for (const Listening& wanted : {Listening{.words_at_once = true}, Listening{.calm = true}}) {
        Rehearsal r;
        Actor& a = r.onStage("a");
        r.stage.setListening(wanted);
        r.speak(a, u"one two three");
        r.pass(500);
        EXPECT_THAT(r.taken("a words"), ElementsAre("a words 13"));
    }
}

TEST(Calm, NobodyIdlesAndNobodyWalks) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setListening({.calm = true});
    const auto move = r.ask(a, {.kind = Kind::move_to, .x = 300, .y = 200, .speed = 1000});
    r.pass(100);
    EXPECT_EQ(move->status, Status::complete);
    EXPECT_EQ(a.left(), 300);
    EXPECT_EQ(a.top(), 200);
    r.pass(5000);
    r.taken();
    const auto pictures = [&](int seconds) {
        std::set<const acs::Frame*> seen;
        for (int i = 0; i < 10 * seconds; ++i) {
            r.pass(100);
            seen.insert(a.frame());
        }
        return seen.size();
    };
    EXPECT_EQ(pictures(400), 1u);
    EXPECT_THAT(r.taken(), Contains("a idles")) << "programs hear of it as ever";
    r.stage.setListening({});
    EXPECT_GT(pictures(20), 1u);
}

TEST(Skip, TakesAThoughtWhereNobodySpeaks) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto thought = think(r, a, u"one two three four five six seven");
    const auto speak = r.speak(b, u"one");
    r.pass(200);
    r.stage.skip();
    EXPECT_EQ(speak->status, Status::interrupted);
    EXPECT_EQ(thought->status, Status::in_progress);
    r.stage.skip();
    EXPECT_EQ(thought->status, Status::interrupted);
}

TEST(Pause, HoldsWhatIsSaidInTheMiddleAndNothingBegins) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto one = r.speak(a, u"one");
    const auto two = r.speak(b, u"two");
    r.pass(400);
    ASSERT_EQ(a.mouth(), acs::MouthShape::wide1);
    r.taken();
    r.stage.setPaused(true);
    r.pass(60'000);
    EXPECT_EQ(one->status, Status::in_progress);
    EXPECT_EQ(two->status, Status::pending);
    EXPECT_EQ(a.mouth(), acs::MouthShape::closed);
    EXPECT_TRUE(a.balloonOpen());
    EXPECT_THAT(r.taken(), Not(Contains(StartsWith("a words"))));
    r.stage.setPaused(false);
    r.pass(10);
    EXPECT_EQ(a.mouth(), acs::MouthShape::wide1);
    r.pass(560);
    EXPECT_EQ(one->status, Status::in_progress);
    r.pass(60);
    EXPECT_EQ(one->status, Status::complete);
    r.pass(2000);
    EXPECT_EQ(two->status, Status::complete);
}

TEST(Pause, HoldsThoughtsAndWhatMakesNoSound) {
    Rehearsal r;
    r.sound_fails = true;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto thought = think(r, a, u"one two three four"); // 1 s
    const auto silent = r.speak(b, u"unheard");              // 1 s
    r.pass(500);
    r.stage.setPaused(true);
    const auto later = think(r, a, u"later");
    r.pass(60'000);
    EXPECT_EQ(thought->status, Status::in_progress);
    EXPECT_EQ(silent->status, Status::in_progress);
    r.stage.setPaused(false);
    r.pass(450);
    EXPECT_EQ(thought->status, Status::in_progress);
    EXPECT_EQ(silent->status, Status::in_progress);
    r.pass(100);
    EXPECT_EQ(thought->status, Status::complete);
    EXPECT_EQ(silent->status, Status::complete);
    EXPECT_EQ(later->status, Status::in_progress);
}

TEST(Pause, LetsNoThoughtBegin) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.stage.setPaused(true);
    const auto thought = think(r, a, u"one");
    r.pass(1000);
    EXPECT_EQ(thought->status, Status::pending);
    r.stage.setPaused(false);
    r.pass(100);
    EXPECT_EQ(thought->status, Status::in_progress);
}

TEST(Pause, IsQuiet) {
    auto cast = usualCast();
    cast->add(u"Bang").frames[0].sound = 3;
    Rehearsal r;
    Actor& a = r.onStage("a", cast);
    r.stage.setPaused(true);
    const auto bang = r.play(a, u"Bang");
    r.pass(500);
    EXPECT_EQ(bang->status, Status::complete);
    EXPECT_THAT(r.taken(), Not(Contains("a noise 3")));
    r.stage.setPaused(false);
    r.play(a, u"Bang");
    r.pass(500);
    EXPECT_THAT(r.taken(), Contains("a noise 3"));
}

TEST(Pause, LetsAllElseGoOn) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.stage.setPaused(true);
    r.speak(a, u"one");
    const auto wave = r.play(b, u"Wave");
    const auto move = r.ask(b, {.kind = Kind::move_to, .x = 50, .y = 50, .speed = 100});
    r.pass(1000);
    EXPECT_EQ(wave->status, Status::complete);
    EXPECT_EQ(move->status, Status::complete);
}

TEST(Pause, CanBeStoppedAndSkipped) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one");
    const auto two = r.speak(a, u"two");
    r.pass(300);
    r.stage.setPaused(true);
    r.pass(100);
    r.stage.skip();
    EXPECT_EQ(one->status, Status::interrupted);
    r.pass(5000);
    EXPECT_EQ(two->status, Status::pending) << "it is paused still";
    a.stop();
    EXPECT_EQ(two->status, Status::interrupted);
}

TEST(Pause, FailsWhatAHiddenCharacterShouldSay) {
    Rehearsal r;
    Actor& a = r.enter("a");
    r.stage.setPaused(true);
    const auto one = r.speak(a, u"one");
    const auto thought = think(r, a, u"two");
    r.pass(100);
    EXPECT_EQ(one->failure, Failure::hidden);
    EXPECT_EQ(thought->failure, Failure::hidden);
}

TEST(Silence, OfOneCharacterShowsItsWordsAndHoldsNobodyUp) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    a.setSilenced(true);
    const auto one = r.speak(a, u"one");
    const auto two = r.speak(b, u"two");
    r.pass(300);
    EXPECT_EQ(one->status, Status::in_progress);
    EXPECT_EQ(two->status, Status::in_progress);
    EXPECT_THAT(r.taken(), AllOf(Contains("a says one"), Contains("b says two"), Contains("sounds unheard x1")));
    r.pass(2000);
    EXPECT_EQ(one->status, Status::complete);
    EXPECT_EQ(two->status, Status::complete);
}

TEST(Silence, BeginsInTheMiddleOfAWordAndLetsTheNextSpeak) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    const auto one = r.speak(a, u"one");
    const auto two = r.speak(b, u"two");
    r.pass(300);
    ASSERT_EQ(two->status, Status::pending);
    r.taken();
    a.setSilenced(true);
    a.setSilenced(true);
    EXPECT_THAT(r.taken(), ElementsAre("a noises end", "now unheard x1"));
    r.pass(100);
    EXPECT_EQ(one->status, Status::in_progress);
    EXPECT_EQ(two->status, Status::in_progress);
}

TEST(Silence, EndsInTheMiddleOfAWordWhereNobodyElseSpeaks) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    a.setSilenced(true);
    r.speak(a, u"one");
    r.pass(300);
    r.taken();
    a.setSilenced(false);
    EXPECT_THAT(r.taken(), ElementsAre("now x1"));
    const auto two = r.speak(b, u"two");
    r.pass(300);
    EXPECT_EQ(two->status, Status::pending) << "it waits for its turn again";
    // Where somebody speaks, what has begun unheard stays so.
    r.pass(1000);
    ASSERT_EQ(two->status, Status::in_progress);
    a.setSilenced(true);
    const auto three = r.speak(a, u"three");
    r.pass(200);
    ASSERT_EQ(three->status, Status::in_progress);
    r.taken();
    a.setSilenced(false);
    EXPECT_THAT(r.taken(), ElementsAre("now unheard x1"));
}

TEST(Silence, OfWhoWaitsForItsTurnGivesTheTurnUp) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    Actor& c = r.onStage("c");
    r.speak(a, u"one");
    const auto two = r.speak(b, u"two");
    const auto three = r.speak(c, u"three");
    r.pass(100);
    b.setSilenced(true);
    r.pass(100);
    EXPECT_EQ(two->status, Status::in_progress);
    EXPECT_EQ(three->status, Status::pending);
    r.pass(1000);
    EXPECT_EQ(three->status, Status::in_progress);
}

TEST(Silence, MakesNoNoiseEither) {
    auto cast = usualCast();
    cast->add(u"Bang").frames[0].sound = 3;
    Rehearsal r;
    Actor& a = r.onStage("a", cast);
    a.setSilenced(true);
    r.play(a, u"Bang");
    r.pass(500);
    EXPECT_THAT(r.taken(), Not(Contains("a noise 3")));
    a.setSilenced(false);
    r.play(a, u"Bang");
    r.pass(500);
    EXPECT_THAT(r.taken(), Contains("a noise 3"));
}

TEST(Silence, CutsTheNoiseThatIsHeard) {
    auto cast = usualCast();
    cast->add(u"Bang").frames[0].sound = 3;
    Rehearsal r;
    Actor& a = r.onStage("a", cast);
    Actor& b = r.onStage("b", cast);
    r.play(a, u"Bang");
    r.play(b, u"Bang");
    r.pass(50);
    r.taken();
    a.setSilenced(true);
    EXPECT_THAT(r.taken(), ElementsAre("a noises end"));
    a.setSilenced(true);
    a.setSilenced(false);
    EXPECT_THAT(r.taken(), Not(Contains("a noises end")));
}

TEST(Speed, ChangesInTheMiddleOfASentence) {
    Rehearsal r;
    r.speech_length = 4000;
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one");
    r.pass(1000);
    r.taken();
    r.stage.setListening({.tempo = 2});
    EXPECT_THAT(r.taken(), ElementsAre("now x2"));
    r.pass(1400);
    EXPECT_EQ(one->status, Status::in_progress);
    r.pass(200);
    EXPECT_EQ(one->status, Status::complete);
    r.speak(a, u"two");
    r.pass(100);
    EXPECT_THAT(r.taken(), Contains("sounds x2"));
}

TEST(Speed, IsThatOfThoughtsToo) {
    Rehearsal r;
    r.stage.setListening({.tempo = 2});
    Actor& a = r.onStage("a");
    const auto thought = think(r, a, u"one two three four five six seven eight nine"); // 2 s
    r.pass(900);
    EXPECT_EQ(thought->status, Status::in_progress);
    r.pass(200);
    EXPECT_EQ(thought->status, Status::complete);
}

TEST(Speed, StaysWithinWhatCanBeUnderstood) {
    Rehearsal r;
    for (const auto& [wanted, got] : {std::pair{1e9, 2.0}, {0.0, 0.25}, {-3.0, 0.25}}) {
        r.stage.setListening({.tempo = wanted});
        EXPECT_EQ(r.stage.tempo(), got);
    }
}

TEST(Longest, EndsARequestWithTheWordInWhichItsTimeEnds) {
    Rehearsal r;
    r.speech_length = 10'000; // its second word begins at 5 s
    r.stage.setListening({.longest = 4000});
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one two");
    const auto two = r.speak(a, u"three four");
    r.pass(4500);
    EXPECT_EQ(one->status, Status::in_progress);
    r.taken();
    r.pass(600);
    EXPECT_EQ(one->status, Status::complete);
    EXPECT_THAT(r.taken(), AllOf(Contains("silence"), Contains("a words 7"), Contains("a bookmark 7")))
        << "all is shown, and counts as said";
    r.pass(500);
    EXPECT_EQ(two->status, Status::in_progress);
}

TEST(Longest, WaitsForNoWordWithoutAnEnd) {
    Rehearsal r;
    r.speech_length = 60'000;
    r.stage.setListening({.longest = 4000});
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one");
    r.pass(5400);
    EXPECT_EQ(one->status, Status::in_progress);
    r.pass(300);
    EXPECT_EQ(one->status, Status::complete);
}

TEST(Longest, ActsOnWhatIsBeingSaidAndCountsNoPause) {
    Rehearsal r;
    r.speech_length = 60'000;
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one");
    r.pass(3000);
    r.stage.setPaused(true);
    r.pass(30'000);
    r.stage.setPaused(false);
    r.stage.setListening({.longest = 5000});
    r.pass(1500);
    EXPECT_EQ(one->status, Status::in_progress);
    r.pass(2500);
    EXPECT_EQ(one->status, Status::complete);
    const auto thought = think(r, a, std::u16string(400, u'x') + u" " + std::u16string(400, u'y'));
    r.pass(1000);
    EXPECT_EQ(thought->status, Status::complete);
}

// Speeches of 1 s each, made when their turn comes; before, each counts as long as its 18 units take to read.
const std::u16string second_long = u"abcdef abcdef abcd";

TEST(Hurry, GoesFasterTheMoreWaits) {
    Rehearsal r;
    r.stage.setListening({.most_waiting = 4000});
    Actor& a = r.onStage("a");
    for (int i = 0; i < 4; ++i) {
        r.speak(a, second_long);
    }
    r.pass(20);
    EXPECT_EQ(r.stage.tempo(), 1);
    for (int i = 0; i < 3; ++i) {
        r.speak(a, second_long);
    }
    r.taken();
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 1.5) << "6 s wait, and one is being said";
    EXPECT_THAT(r.taken(), Contains("now x1.5")) << "in the middle of it";
    r.pass(20'000);
    EXPECT_EQ(r.stage.tempo(), 1);
    EXPECT_THAT(r.taken("a breaks off"), IsEmpty());
}

TEST(Hurry, LetsTheOldestGoWhereTwiceAsFastIsTooSlow) {
    Rehearsal r;
    r.stage.setListening({.most_waiting = 2000});
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    std::vector<RequestRef> all;
    for (int i = 0; i < 8; ++i) {
        all.push_back(r.speak(i % 2 == 0 ? a : b, second_long));
    }
    const auto wave = r.play(a, u"Wave");
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 2);
    std::vector<Status> statuses;
    for (const RequestRef& request : all) {
        statuses.push_back(request->status);
    }
    const auto gone = Status::interrupted, waits = Status::pending;
    EXPECT_THAT(std::vector(statuses.begin() + 1, statuses.begin() + 4), Each(gone));
    EXPECT_THAT(std::vector(statuses.begin() + 4, statuses.end()), Each(waits));
    r.pass(20'000);
    EXPECT_EQ(wave->status, Status::complete) << "what is not said is not let go";
    for (std::size_t i = 4; i < all.size(); ++i) {
        EXPECT_EQ(all[i]->status, Status::complete) << i;
    }
}

TEST(Hurry, KeepsTheNewestHoweverLongItIs) {
    Rehearsal r;
    r.stage.setListening({.most_waiting = 1000});
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(50);
    const auto first = r.speak(a, std::u16string(1000, u'x'));
    const auto second = r.speak(a, std::u16string(1000, u'y'));
    r.pass(10);
    EXPECT_EQ(first->status, Status::interrupted);
    EXPECT_NE(second->status, Status::interrupted);
}

TEST(Hurry, CountsNothingThatIsSilencedOrCutShort) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.pass(50);
    const std::u16string ten_seconds(180, u'x');
    r.lengths[ten_seconds] = 10'000;
    for (int i = 0; i < 6; ++i) {
        r.speak(a, ten_seconds);
    }
    r.stage.setListening({.longest = 1000, .most_waiting = 10'000});
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 1) << "6 s at most";
    r.stage.setListening({.most_waiting = 100'000});
    EXPECT_EQ(r.stage.tempo(), 1);
    r.stage.setListening({.most_waiting = 40'000});
    EXPECT_EQ(r.stage.tempo(), 1.5);
    a.setSilenced(true);
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 1);
    EXPECT_THAT(r.taken("a breaks off"), IsEmpty());
}

TEST(Hurry, CountsWhatASpeechTurnsOutToBe) {
    Rehearsal r;
    r.stage.setListening({.most_waiting = 4000});
    Actor& a = r.onStage("a");
    Actor& b = r.onStage("b");
    r.speak(a, u"one");
    r.pass(50);
    r.speech_late = true;
    r.lengths[u"27 81 365"] = 6000; // much for so few units
    r.speak(b, u"27 81 365");
    r.pass(50);
    EXPECT_EQ(r.stage.tempo(), 1);
    r.deliver();
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 1.5);
}

TEST(Hurry, CountsNothingThatHasBegun) {
    Rehearsal r;
    r.speech_length = 20'000;
    r.stage.setListening({.most_waiting = 4000});
    Actor& a = r.onStage("a");
    const auto one = r.speak(a, u"one");
    r.pass(100);
    ASSERT_EQ(one->status, Status::in_progress);
    EXPECT_EQ(r.stage.tempo(), 1) << "nothing waits behind it";
}

TEST(Hurry, ForgetsWhatIsStopped) {
    Rehearsal r;
    r.stage.setListening({.most_waiting = 3000});
    Actor& a = r.onStage("a");
    for (int i = 0; i < 6; ++i) {
        r.speak(a, second_long);
    }
    r.pass(10);
    ASSERT_GT(r.stage.tempo(), 1);
    a.stop();
    r.pass(10);
    EXPECT_EQ(r.stage.tempo(), 1);
}

TEST(Hurry, IsOffAtFirst) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    std::vector<RequestRef> all;
    for (int i = 0; i < 100; ++i) {
        all.push_back(r.speak(a, second_long));
    }
    r.pass(200'000);
    for (const RequestRef& request : all) {
        EXPECT_EQ(request->status, Status::complete);
    }
}

TEST(Voices, WhatWasMadeAheadIsMadeAnew) {
    Rehearsal r;
    Actor& a = r.onStage("a");
    r.speak(a, u"one");
    r.speak(a, u"two");
    r.pass(100);
    const int before = r.orders;
    r.stage.voicesChanged();
    EXPECT_EQ(r.orders, before + 1) << "the next one, and not what is being said";
    EXPECT_EQ(r.cancelled, 0) << "it had been delivered";
    r.pass(3000);
    EXPECT_EQ(r.taken("a ends Speak").size(), 2U);
}

} // namespace
} // namespace agent::stage
