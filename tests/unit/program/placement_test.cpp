#include "characters/placement.h"

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <string_view>

#include "characters/character_loading.h"
#include "tests/unit/program/program_test.h"

namespace murmelix::test {

namespace {

class Placement : public ProgramTest {
  protected:
    Placement() {
        characterHost.conversationWindow = [this] { return window_; };
        character_ = putOnStage(u"a@x");
    }

    // Where the character goes; nothing when it is not moved.
    std::optional<std::pair<int, int>> place(std::int16_t slot) {
        calls().clear();
        PlaceCharacter(*character_, slot);
        if (calls().empty()) {
            return std::nullopt;
        }
        EXPECT_EQ(calls().size(), 1u);
        EXPECT_EQ(calls()[0].call, u"MoveTo");
        return std::pair(calls()[0].x, calls()[0].y);
    }

    void setWindow(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        window_->left = left;
        window_->top = top;
        window_->width = width;
        window_->height = height;
    }

    std::shared_ptr<fakes::Window> window_ = std::make_shared<fakes::Window>(5); // at 100, 200, of 400 x 300
    std::shared_ptr<fakes::Character> character_;                                // of 128 x 128
};

using Spot = std::optional<std::pair<int, int>>;

Spot at(int x, int y) {
    return std::pair(x, y);
}

TEST_F(Placement, EightSlotsStandAroundTheWindow) {
    EXPECT_EQ(place(0), at(36, 72));
    EXPECT_EQ(place(1), at(436, 72));
    EXPECT_EQ(place(2), at(236, 72));
    EXPECT_EQ(place(3), at(4, 286));
    EXPECT_EQ(place(4), at(468, 286));
    EXPECT_EQ(place(5), at(36, 468));
    EXPECT_EQ(place(6), at(436, 468));
    EXPECT_EQ(place(7), at(236, 468));
}

TEST_F(Placement, NinthAndLaterCharactersAreNotMoved) {
    EXPECT_EQ(place(8), std::nullopt);
    EXPECT_EQ(place(100), std::nullopt);
}

TEST_F(Placement, MinimisedWindowLinesTheCharactersUpAtTheTop) {
    setWindow(-32000, -32000, 160, 31);
    EXPECT_EQ(place(0), at(128, 0));
    EXPECT_EQ(place(3), at(512, 0));
    EXPECT_EQ(place(8), at(1152, 0));
    setWindow(100, -1, 400, 300);
    EXPECT_EQ(place(1), at(256, 0));
    setWindow(-70000, 100, 400, 300);
    EXPECT_EQ(place(0), at(128, 0));
}

TEST_F(Placement, WindowInTheCornerOfTheScreenIsOnIt) {
    setWindow(0, 0, 400, 300);
    EXPECT_EQ(place(0), at(-64, -128));
    EXPECT_EQ(place(1), at(336, -128));
}

TEST_F(Placement, HalvesRoundToEven) {
    character_->width = 125; // half 62.5, quarter 31.25
    character_->height = 127;
    setWindow(100, 200, 401, 301);
    EXPECT_EQ(place(0), at(38, 73));   // 37.5
    EXPECT_EQ(place(2), at(238, 73));  // 238.0
    EXPECT_EQ(place(3), at(6, 287));   // 6.25, 287.0
    EXPECT_EQ(place(4), at(470, 287)); // 469.75
    EXPECT_EQ(place(5), at(38, 469));  // 469.25
    setWindow(101, 200, 400, 300);
    EXPECT_EQ(place(0), at(38, 73)); // 38.5
}

TEST_F(Placement, OverflowLeavesTheCharacter) {
    setWindow(100, 200, 32700, 300);
    EXPECT_EQ(place(1), std::nullopt); // left + width
    EXPECT_EQ(place(0), at(36, 72));   // needs no width
    EXPECT_EQ(place(2), at(16386, 72));
    setWindow(100, 200, 400, 32700);
    EXPECT_EQ(place(5), std::nullopt); // top + height
    EXPECT_EQ(place(1), at(436, 72));
    setWindow(70000, 200, 400, 300);
    EXPECT_EQ(place(0), std::nullopt);
    setWindow(100, 200, 100000, 300);
    EXPECT_EQ(place(2), std::nullopt);
    setWindow(-1, 0, 400, 300);
    EXPECT_EQ(place(255), std::nullopt); // 256 x 128
    EXPECT_EQ(place(254), at(32640, 0));
    EXPECT_EQ(place(32767), std::nullopt);
}

TEST_F(Placement, ExtremeValuesOfEveryKindAreSurvived) {
    const std::vector<std::int32_t> values{0,
                                           1,
                                           32767,
                                           32768,
                                           65535,
                                           65536,
                                           std::numeric_limits<std::int32_t>::max(),
                                           std::numeric_limits<std::int32_t>::min()};
    for (const std::int32_t value : values) {
        for (const std::int16_t size : {std::int16_t{-32768}, std::int16_t{32767}, std::int16_t{0}}) {
            character_->width = character_->height = size;
            for (const int number : {-32768, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 32767}) {
                const auto slot = static_cast<std::int16_t>(number);
                setWindow(value, 100, value, value);
                place(slot);
                setWindow(100, value, value, value);
                place(slot);
            }
        }
    }
}

TEST_F(Placement, SlotIsTheNumberOfCharactersUnlessGiven) {
    putOnStage(u"b@x");
    calls().clear();
    PlaceCharacter(*character_);
    EXPECT_EQ(calls()[0].x, 236); // slot 2
}

TEST_F(Placement, WithoutAWindowNothingMoves) {
    window_ = nullptr;
    EXPECT_EQ(place(0), std::nullopt);
    ReArrangeLoadedCharacterPositions();
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Placement, FailingReadLeavesTheCharacter) {
    fakes::neighbours().failing = {"Window.Width"};
    EXPECT_EQ(place(1), std::nullopt);
    EXPECT_EQ(place(0), at(36, 72)); // reads no width
}

TEST_F(Placement, ArrangingAgainFillsTheSlotsInLoadingOrder) {
    LoadedCharacterKeys.Add(u"none@x", u"none@x"); // without a character: takes no slot
    putOnStage(u"b@x");
    LoadedCharacters.Remove(u"a@x"); // as a command does: the order of loading stays
    LoadedCharacters.Add(character_, u"a@x");
    calls().clear();
    ReArrangeLoadedCharacterPositions();
    ASSERT_EQ(calls().size(), 2u);
    EXPECT_EQ(calls()[0].key, u"a@x");
    EXPECT_EQ(calls()[0].x, 36);
    EXPECT_EQ(calls()[1].key, u"b@x");
    EXPECT_EQ(calls()[1].x, 436);
}

TEST_F(Placement, ArrangingAsksForThePlaceOfTheWindowOnce) {
    for (const char16_t* key : {u"b@x", u"c@x", u"d@x", u"e@x", u"f@x", u"g@x", u"h@x"}) {
        putOnStage(key);
    }
    calls().clear();
    std::map<std::string, int, std::less<>> asked;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call.starts_with("Window.")) {
            ++asked[std::string(call)];
        }
    };
    ReArrangeLoadedCharacterPositions();
    fakes::neighbours().during = {};
    const std::map<std::string, int, std::less<>> once{
        {"Window.Left", 1}, {"Window.Top", 1}, {"Window.Width", 1}, {"Window.Height", 1}};
    EXPECT_EQ(asked, once);
    EXPECT_EQ(calls().size(), 8u);
}

TEST_F(Placement, ArrangingPlacesThoseThatNeedNothingThatFails) {
    putOnStage(u"b@x");
    putOnStage(u"c@x");
    putOnStage(u"d@x");
    calls().clear();
    fakes::neighbours().failing = {"Window.Width"};
    ReArrangeLoadedCharacterPositions();
    ASSERT_EQ(calls().size(), 2u);
    EXPECT_EQ(calls()[0].key, u"a@x"); // slot 0
    EXPECT_EQ(calls()[1].key, u"d@x"); // slot 3
}

TEST_F(Placement, ArrangingEndsWithItsConversation) {
    putOnStage(u"b@x");
    calls().clear();
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "MoveTo") {
            window_ = nullptr;
        }
    };
    ReArrangeLoadedCharacterPositions();
    fakes::neighbours().during = {};
    EXPECT_EQ(calls().size(), 1u);
}

// A screen of 1280 x 1024 left of the first one, and one above it: there a window has negative places.
TEST_F(Placement, OnScreensLeftOfAndAboveTheFirstCharactersLineUpAtItsTop) {
    setWindow(-1180, 200, 400, 300);
    EXPECT_EQ(place(0), at(128, 0));
    EXPECT_EQ(place(7), at(1024, 0));
    setWindow(100, -824, 400, 300);
    EXPECT_EQ(place(4), at(640, 0));
    setWindow(-1180, -824, 400, 300);
    EXPECT_EQ(place(1), at(256, 0));
    setWindow(-1, 200, 400, 300); // from one screen to the other
    EXPECT_EQ(place(0), at(128, 0));
}

TEST_F(Placement, OnScreensRightOfAndBelowTheFirstCharactersStandAroundTheWindow) {
    setWindow(2900, 200, 400, 300);
    EXPECT_EQ(place(0), at(2836, 72));
    EXPECT_EQ(place(4), at(3268, 286));
    setWindow(100, 1300, 400, 300);
    EXPECT_EQ(place(2), at(236, 1172));
    EXPECT_EQ(place(6), at(436, 1568));
    setWindow(1100, 900, 400, 300); // over the corner of four
    EXPECT_EQ(place(3), at(1004, 986));
    EXPECT_EQ(place(5), at(1036, 1168));
    setWindow(20, 60, 400, 300); // a character reaches over to the left, and above
    EXPECT_EQ(place(0), at(-44, -68));
    EXPECT_EQ(place(3), at(-76, 146));
}

TEST_F(Placement, BalloonOptionSetsTheStyleOfEveryCharacter) {
    const auto other = putOnStage(u"b@x");
    character_->balloon_style = 0x00180001;
    other->balloon_style = 0x00180005;
    AddAutoHideBalloonFeatureToAllLoadedChars(true);
    EXPECT_EQ(character_->balloon_style, 0x0018000F);
    EXPECT_EQ(other->balloon_style, 0x0018000F);
    AddAutoHideBalloonFeatureToAllLoadedChars(false);
    EXPECT_EQ(character_->balloon_style, 0x0018000B);
    fakes::neighbours().failing = {"BalloonStyle"};
    AddAutoHideBalloonFeatureToAllLoadedChars(true);
    EXPECT_EQ(other->balloon_style, 0x0018000B);
}

} // namespace

} // namespace murmelix::test
