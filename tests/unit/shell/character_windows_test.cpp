// The windows beside a character: quick message and language.
#include "tests/unit/shell/shell_fixture.h"

#include <gmock/gmock.h>

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CharacterWindowsTest : public ShellTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(start());
        openConversation(5);
        form().StartConvButt_Click();
        ASSERT_EQ(LoadedCharacterKeys.Count(), 2u);
        character_ = fakes::state().agent.characters.at(u"ann@x");
        character_->left = 100;
        character_->top = 200;
    }
    void TearDown() override { IsReadingConversation = 0; }

    QuickMsgFRM& quick() { return *form().QuickMsgFRM; }
    bool quickIsOpen() { return form().QuickMsgFRM && form().QuickMsgFRM->Loaded(); }
    static void command(const std::u16string& name) { fakes::state().agent.events.Command(name); }

    std::shared_ptr<fakes::Character> character_;
};

TEST_F(CharacterWindowsTest, QuickMessageStandsRightUnderTheCharacter) {
    fakes::state().agent.events.DblClick(u"ann@x", 1, 0, 5, 5);
    ASSERT_TRUE(quickIsOpen());
    EXPECT_EQ(quick().Place().left, 100);
    EXPECT_EQ(quick().Place().top, 328);
    EXPECT_EQ(quick().Contact, u"ann@x");
}

TEST_F(CharacterWindowsTest, QuickMessageStaysOnTheScreen) {
    character_->left = 1000;
    character_->top = 640;
    command(u"ann@xQ%");
    ASSERT_TRUE(quickIsOpen());
    const ui::Rect place = quick().Place();
    EXPECT_EQ(place.left + place.width, 1024);
    EXPECT_EQ(place.top + place.height, 768);
}

TEST_F(CharacterWindowsTest, NoSecondQuickMessageIsOpened) {
    command(u"ann@xQ%");
    fakes::type(quick().QuicTextBox, u"half a sen");
    fakes::screen().activated.clear();
    command(u"bob@xQ%");
    EXPECT_EQ(quick().Contact, u"ann@x");
    EXPECT_EQ(quick().QuicTextBox.Text(), u"half a sen");
    EXPECT_THAT(fakes::screen().activated, ElementsAre(quick().handle()));
}

TEST_F(CharacterWindowsTest, TheEndOfTheReadingClosesTheQuickMessage) {
    command(u"ann@xQ%");
    ASSERT_TRUE(quickIsOpen());
    form().StartConvButt_Click();
    EXPECT_FALSE(quickIsOpen());
}

TEST_F(CharacterWindowsTest, ASignOutClosesTheQuickMessage) {
    command(u"ann@xQ%");
    fakes::messenger().events.OnSignout();
    EXPECT_FALSE(quickIsOpen());
}

TEST_F(CharacterWindowsTest, TheEndOfItsContactClosesTheQuickMessage) {
    command(u"ann@xQ%");
    command(u"bob@xR%");
    EXPECT_TRUE(quickIsOpen()) << "somebody else's";
    command(u"ann@xR%");
    EXPECT_FALSE(quickIsOpen());
}

TEST_F(CharacterWindowsTest, LanguageIsChosenBesideTheCharacterWhileTheTrayWaits) {
    fakes::screen().while_modal = [&](const ui::Form& shown) {
        ASSERT_EQ(&shown, form().LangFRM.get());
        EXPECT_FALSE(form().Enabled()) << "the main window takes no input meanwhile";
        EXPECT_EQ(shown.Place().left, 100);
        EXPECT_EQ(shown.Place().top, 200);
        EXPECT_FALSE(form().SystemMenuRestoreWindow.Enabled());
        EXPECT_EQ(form().LangFRM->LanguageList.GetSelectedKey(), u"%1033");
        form().LangFRM->LanguageList.SelectKey(u"%1031", true);
        fakes::click(form().LangFRM->ChangeButt);
    };
    command(u"ann@xL%");
    EXPECT_EQ(character_->language_id, 1031);
    EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
    EXPECT_TRUE(form().Enabled());
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(CharacterWindowsTest, ASecondCharacterWaitsUntilTheFirstOnesLanguageIsChosen) {
    const auto bob = fakes::state().agent.characters.at(u"bob@x");
    bob->language_id = 1053;
    int windows = 0;
    fakes::screen().while_modal = [&](const ui::Form&) {
        if (++windows == 1) {
            command(u"bob@xL%");
        }
        fakes::click(form().LangFRM->CloseButt);
    };
    command(u"ann@xL%");
    EXPECT_EQ(windows, 1);
    EXPECT_EQ(character_->language_id, 1033);
    EXPECT_EQ(bob->language_id, 1053);
    command(u"bob@xL%");
    EXPECT_EQ(windows, 2) << "the next one may choose again";
}

TEST_F(CharacterWindowsTest, TheLanguageWindowGoesWithItsCharacter) {
    for (const bool signs_out : {false, true}) {
        fakes::screen().while_modal = [&](const ui::Form& shown) {
            EXPECT_TRUE(shown.Visible());
            if (signs_out) {
                fakes::messenger().events.OnSignout();
            } else {
                form().StartConvButt_Click();
            }
            EXPECT_FALSE(form().LangFRM->Loaded());
        };
        command(u"ann@xL%");
        EXPECT_THAT(boxes(), IsEmpty());
        EXPECT_TRUE(form().SystemMenuRestoreWindow.Enabled());
        if (!signs_out) {
            form().StartConvButt_Click();
        }
    }
}

} // namespace
} // namespace murmelix
