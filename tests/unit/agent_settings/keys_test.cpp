#include <gmock/gmock.h>

#include "common/text.h"
#include "companions/agent/settings/keys.h"
#include "companions/agent/settings/settings_store.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace agent::settings {
namespace {

namespace fakes = murmelix::fakes;
namespace ui = murmelix::ui;

constexpr ui::Shortcut control_s{u'S', ui::control_key}, f9{ui::Key::f9},
    alt_shift_7{u'7', ui::alt_key | ui::shift_key};

class KeysTest : public testing::Test {
  protected:
    KeysTest() {
        fakes::reset();
        fakes::screen() = {};
    }
    static std::uint32_t& stored(const std::u16string& name) {
        auto& value = fakes::state().user_stores.values[u"Software\\Murmelix AgentServer\\" + name];
        if (!std::holds_alternative<std::uint32_t>(value)) {
            value = std::uint32_t{0};
        }
        return std::get<std::uint32_t>(value);
    }
    static std::size_t indexOf(std::u16string_view kept_as) {
        const auto found = std::ranges::find_if(deeds, [&](const Deed& deed) { return deed.kept_as == kept_as; });
        return static_cast<std::size_t>(found - deeds.begin());
    }

    Listener listener;
};

TEST_F(KeysTest, NoneIsTakenUntilTheUserSetsIt) {
    const Keys keys(listener);
    EXPECT_TRUE(fakes::screen().global_keys.empty());
    EXPECT_EQ(keys.problem(), u"");
}

TEST_F(KeysTest, EachDoesItsDeed) {
    Keys keys(listener);
    int skipped = 0;
    listener.Skip = [&] { ++skipped; };
    for (std::size_t i = 0; i < deeds.size(); ++i) {
        EXPECT_EQ(keys.set(i, {static_cast<ui::Key>(static_cast<int>(ui::Key::f1) + static_cast<int>(i)), 0}), u"");
    }
    const auto press = [](int number) {
        return fakes::pressAnywhere({static_cast<ui::Key>(static_cast<int>(ui::Key::f1) + number - 1), 0});
    };
    EXPECT_TRUE(press(1));
    EXPECT_EQ(skipped, 1);
    press(2);
    EXPECT_TRUE(listener.paused());
    press(2);
    EXPECT_FALSE(listener.paused());
    press(3);
    EXPECT_TRUE(listener.allSilenced());
    EXPECT_TRUE(listener.sound());
    press(5);
    press(5);
    EXPECT_EQ(listener.volume(), 80);
    press(4);
    EXPECT_EQ(listener.volume(), 90);
    press(6);
    EXPECT_EQ(listener.speed(), 110);
    press(7);
    press(7);
    EXPECT_EQ(listener.speed(), 90);
    for (int i = 0; i < 30; ++i) {
        press(5);
        press(7);
    }
    EXPECT_EQ(listener.volume(), 0);
    EXPECT_EQ(listener.speed(), 50);
    EXPECT_FALSE(press(8));
}

TEST_F(KeysTest, IsKeptAndTakenAgain) {
    {
        Keys keys(listener);
        EXPECT_EQ(keys.set(skip_deed, control_s), u"");
        EXPECT_EQ(keys.set(pause_deed, f9), u"");
        EXPECT_EQ(keys.set(silence_deed, alt_shift_7), u"");
        EXPECT_EQ(keys.set(pause_deed, {}), u"");
    }
    EXPECT_FALSE(fakes::pressAnywhere(control_s)) << "nobody listens any more";
    const Keys keys(listener);
    EXPECT_EQ(keys.key(skip_deed), control_s);
    EXPECT_EQ(keys.key(pause_deed), ui::Shortcut());
    EXPECT_EQ(keys.key(silence_deed), alt_shift_7);
    EXPECT_TRUE(fakes::pressAnywhere(control_s));
    EXPECT_FALSE(fakes::pressAnywhere(f9));
}

TEST_F(KeysTest, OneOfAnotherProgramIsRefusedWithASentence) {
    Keys keys(listener);
    keys.set(skip_deed, f9);
    fakes::screen().keys_of_others = {control_s};
    EXPECT_EQ(keys.set(skip_deed, control_s), u"Ctrl+S is used by another program, or by the system.");
    EXPECT_EQ(keys.key(skip_deed), f9) << "it stays as it was";
    EXPECT_TRUE(fakes::pressAnywhere(f9));
    EXPECT_EQ(stored(u"SkipKey"), numberOf(f9));
}

TEST_F(KeysTest, OneThatHasADeedAlreadyIsRefused) {
    Keys keys(listener);
    keys.set(skip_deed, f9);
    EXPECT_EQ(keys.set(pause_deed, f9), u"F9 is set for \u201CSkip what is being said\u201D already.");
    EXPECT_EQ(keys.set(skip_deed, f9), u"") << "its own";
}

TEST_F(KeysTest, OneThatEverybodyTypesIsRefused) {
    Keys keys(listener);
    for (const ui::Shortcut& key : {ui::Shortcut{u'S', 0},
                                    {u'S', ui::shift_key},
                                    {ui::Key::space, 0},
                                    {ui::Key::space, ui::alt_key},
                                    {ui::Key::f4, ui::alt_key},
                                    {ui::Key::tab, ui::control_key},
                                    {ui::Key::del, 0},
                                    {ui::Key::escape, ui::alt_key}}) {
        EXPECT_NE(keys.set(skip_deed, key), u"") << murmelix::toUtf8(nameOf(key));
        EXPECT_EQ(keys.key(skip_deed), ui::Shortcut());
    }
    EXPECT_TRUE(fakes::screen().global_keys.empty());
}

TEST_F(KeysTest, OneThatIsGoneToAnotherProgramIsTold) {
    stored(u"SkipKey") = numberOf(control_s);
    fakes::screen().keys_of_others = {control_s};
    const Keys keys(listener);
    EXPECT_EQ(keys.key(skip_deed), control_s) << "it is what the user set";
    EXPECT_EQ(keys.problem(), u"Ctrl+S is used by another program, or by the system.");
}

TEST_F(KeysTest, NoneIsHeardWhileOneIsSet) {
    Keys keys(listener);
    keys.set(skip_deed, f9);
    keys.setHeard(false);
    EXPECT_FALSE(fakes::pressAnywhere(f9));
    EXPECT_EQ(keys.set(pause_deed, f9), u"F9 is set for \u201CSkip what is being said\u201D already.");
    EXPECT_EQ(keys.set(pause_deed, control_s), u"");
    EXPECT_FALSE(fakes::pressAnywhere(control_s));
    fakes::screen().keys_of_others = {alt_shift_7};
    EXPECT_NE(keys.set(silence_deed, alt_shift_7), u"") << "whether it can be had is found out all the same";
    EXPECT_EQ(keys.problem(), u"");
    fakes::screen().keys_of_others = {f9}; // taken meanwhile
    keys.setHeard(true);
    EXPECT_TRUE(fakes::pressAnywhere(control_s));
    EXPECT_TRUE(keys.problem().starts_with(u"F9 is used by another program"));
}

TEST_F(KeysTest, EveryKeyComesBackFromItsNumber) {
    int several = 0;
    for (int key = 0; key < static_cast<int>(ui::Key::letter); ++key) {
        for (int held = 0; held < 8; ++held) {
            const ui::Shortcut shortcut(static_cast<ui::Key>(key), held);
            if (ui::GlobalKey::canBe(shortcut)) {
                EXPECT_EQ(keyOf(numberOf(shortcut)), shortcut);
                ++several;
            } else {
                EXPECT_EQ(keyOf(numberOf(shortcut)), std::nullopt);
            }
        }
    }
    EXPECT_GT(several, 100);
    EXPECT_EQ(keyOf(numberOf(alt_shift_7)), alt_shift_7);
    EXPECT_EQ(numberOf({}), 0U);
}

TEST_F(KeysTest, ANumberThatIsNoKeyIsNone) {
    for (std::uint32_t number :
         {0U, 1U, 0x53U, 0xFFU, 0x10020U, 0x2001AU, 0x100FFU, 0x201FFU, 0x2030FU, 0x80053U, 0xFFFFFFFFU}) {
        EXPECT_EQ(keyOf(number), std::nullopt) << number;
        stored(u"SkipKey") = number;
        EXPECT_EQ(Keys(listener).key(skip_deed), ui::Shortcut());
    }
    // And no number whatever makes anything else of it.
    for (std::uint32_t number = 0; number < 0x90000; ++number) {
        if (const auto key = keyOf(number)) {
            EXPECT_TRUE(ui::GlobalKey::canBe(*key));
            EXPECT_EQ(numberOf(*key), number);
        }
    }
}

TEST_F(KeysTest, DeedsAreKnownByTheirPlaces) {
    EXPECT_EQ(indexOf(u"SkipKey"), skip_deed);
    EXPECT_EQ(indexOf(u"PauseKey"), pause_deed);
    EXPECT_EQ(indexOf(u"SilenceKey"), silence_deed);
}

} // namespace
} // namespace agent::settings
