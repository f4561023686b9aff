#include "controls/cool_list_box.h"

#include <gmock/gmock.h>

#include "platform/ui/form.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {
namespace {

using fakes::Drawing;
using testing::ElementsAre;

class CoolListBoxTest : public testing::Test {
  protected:
    CoolListBoxTest() {
        fakes::screen() = {};
        list.OnSelect = [this] { events += "select "; };
        list.Click = [this] { events += "click "; };
        list.DblClick = [this] { events += "double "; };
        list.setItemHeight(20);
        setHeight(100);
    }
    void setHeight(int pixels) { list.Move({0, 0, 200 * 15, pixels * 15}); }
    void fill(int rows) {
        for (int i = 1; i <= rows; ++i) {
            const std::u16string number(1, static_cast<char16_t>(u'0' + i));
            list.AddItem(u"Caption " + number, u"Text " + number, u"k" + number, false);
        }
    }
    const std::vector<Drawing>& drawings() { return fakes::drawings(list.P.surface()); }
    std::vector<std::u16string> printed() {
        std::vector<std::u16string> texts;
        for (const Drawing& drawing : drawings()) {
            if (drawing.kind == Drawing::Kind::text)
                texts.push_back(drawing.text);
        }
        return texts;
    }

    ui::Form form{nullptr, u"", ui::FormStyle::window};
    CoolListBox list{form};
    std::string events;
};

TEST_F(CoolListBoxTest, NewControlHasTheDefaults) {
    const CoolListBox fresh(form);
    EXPECT_EQ(fresh.Appearance(), 1);
    EXPECT_EQ(fresh.BackColor(), 0x80000005u);
    EXPECT_EQ(fresh.NoItemCaption(), u"No Items in List");
    EXPECT_EQ(fresh.ItemHeight(), 15);
    EXPECT_EQ(fresh.IconPosX(), 0);
    EXPECT_EQ(fresh.IconPosY(), 0);
    EXPECT_EQ(fresh.CaptionPosX(), 0);
    EXPECT_EQ(fresh.CaptionPosY(), 0);
    EXPECT_EQ(fresh.TextPosX(), 1);
    EXPECT_EQ(fresh.TextPosY(), 1);
    EXPECT_EQ(fresh.Selected(), 0);
    EXPECT_FALSE(fresh.SuppressKeyboard);
}

TEST_F(CoolListBoxTest, EmptyListShowsTheMessageCentred) {
    list.setNoItemCaption(u"No one");
    // 200 x 100 pixels, characters 6 wide and 13 high.
    EXPECT_THAT(drawings(), ElementsAre(Drawing{Drawing::Kind::text, {82, 43, 0, 0}, 0x80000011, u"No one"}));
}

TEST_F(CoolListBoxTest, EnterInTheMessageBreaksTheLineAndABlankMakesABlankLine) {
    list.setNoItemCaption(u"No matchups.[ENTER] [ENTER] Drag and drop");
    EXPECT_THAT(printed(), ElementsAre(u"No matchups.", u" ", u" Drag and drop"));
    EXPECT_EQ(drawings()[0].area.top, (100 - 3 * 13) / 2);
}

TEST_F(CoolListBoxTest, MessageForMatchupsShowsAsThreeLines) {
    list.Move({0, 0, 400 * 15, 100 * 15});
    list.setNoItemCaption(u"No matchups for this character.[ENTER] [ENTER] Drag and drop MSN contact names here");
    EXPECT_THAT(printed(),
                ElementsAre(u"No matchups for this character.", u" ", u" Drag and drop MSN contact names here"));
}

TEST_F(CoolListBoxTest, LongMessageIsWrappedAtBlanks) {
    // 200 pixels less 8 on either side: 30 characters.
    list.setNoItemCaption(u"You need to download more characters to have more matchups");
    EXPECT_THAT(printed(), ElementsAre(u"You need to download more", u"characters to have more", u"matchups"));
}

TEST_F(CoolListBoxTest, WordWiderThanTheListStandsOnALineOfItsOwn) {
    const std::u16string wide(50, u'w');
    list.setNoItemCaption(u"a " + wide + u" b");
    EXPECT_THAT(printed(), ElementsAre(u"a", wide, u"b"));
}

TEST_F(CoolListBoxTest, RowIsDrawnAtItsOffsets) {
    list.SetPos(30, 2, 31, 11, 4, 3);
    list.AddItem(u"Conversation with:", u"Ann", u"%1", false, {u"picture_conversation", 32});
    EXPECT_THAT(drawings(),
                ElementsAre(Drawing{Drawing::Kind::fill, {0, 0, 200, 20}, 0x80000005},
                            Drawing{Drawing::Kind::text, {30, 2, 0, 0}, 0x80000012, u"Conversation with:", true, true},
                            Drawing{Drawing::Kind::text, {31, 11, 0, 0}, 0x80000012, u"Ann", false, false},
                            Drawing{Drawing::Kind::picture, {4, 3, 0, 0}, 0, u"picture_conversation"}));
}

TEST_F(CoolListBoxTest, SelectedRowIsHighlighted) {
    list.AddItem(u"c", u"t", u"k", true);
    EXPECT_EQ(drawings()[0].colour, 0x8000000Du);
    EXPECT_EQ(drawings()[1].colour, 0x8000000Eu);
}

TEST_F(CoolListBoxTest, DisabledListIsGreyAndKeepsItsHighlight) {
    list.AddItem(u"a", u"t", u"1", true);
    list.AddItem(u"b", u"t", u"2", false);
    list.setEnabledIt(false);
    EXPECT_EQ(drawings()[0].colour, 0x8000000Du);
    EXPECT_EQ(drawings()[1].colour, 0x80000011u);
    EXPECT_EQ(drawings()[3].colour, 0x80000005u);
    EXPECT_EQ(drawings()[4].colour, 0x80000011u);
}

TEST_F(CoolListBoxTest, AddingAKeyThatExistsChangesNothingAndRaisesNothing) {
    fill(2);
    const int refreshes = fakes::refreshes(list.P.surface());
    list.AddItem(u"other", u"other", u"k1", true);
    EXPECT_EQ(list.GetItemCount(), 2);
    EXPECT_EQ(list.Item(1).Caption, u"Caption 1");
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(events, "");
    EXPECT_EQ(fakes::refreshes(list.P.surface()), refreshes);
}

TEST_F(CoolListBoxTest, AddingWithSelSelectsTheNewRowAndShowsIt) {
    fill(7);
    list.AddItem(u"c", u"t", u"new", true);
    EXPECT_EQ(list.Selected(), 8);
    EXPECT_EQ(list.GetSelectedKey(), u"new");
    EXPECT_EQ(list.Scroll.Value(), 3);
    EXPECT_EQ(events, "select ");
}

TEST_F(CoolListBoxTest, RemovingTheSelectedRowThatIsNotTheLastKeepsTheNumberSilently) {
    fill(3);
    list.setSelected(2);
    events.clear();
    list.RemoveItem(u"k2");
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(list.GetSelectedKey(), u"k3");
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, RemovingTheSelectedLastRowSelectsTheOneBefore) {
    fill(3);
    list.setSelected(3);
    events.clear();
    list.RemoveItem(u"k3");
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(events, "select ");
}

TEST_F(CoolListBoxTest, RemovingTheOnlyRowSelectsNothing) {
    list.AddItem(u"c", u"t", u"k", true);
    events.clear();
    list.RemoveItem(u"k");
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(list.GetSelectedKey(), u"");
    EXPECT_EQ(events, "select ");
    EXPECT_THAT(printed(), ElementsAre(u"No Items in List"));
}

TEST_F(CoolListBoxTest, RemovingARowAboveTheSelectedLowersTheNumber) {
    fill(3);
    list.setSelected(3);
    list.RemoveItem(u"k1");
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(list.GetSelectedKey(), u"k3");
}

TEST_F(CoolListBoxTest, RemovingARowBelowTheSelectedChangesNothing) {
    fill(3);
    list.setSelected(1);
    events.clear();
    list.RemoveItem(u"k3");
    list.RemoveItem(u"not there");
    EXPECT_EQ(list.Selected(), 1);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, SelectingBeyondTheRowsIsIgnored) {
    fill(2);
    list.setSelected(3);
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, SelectingTheSameRowDoesNothing) {
    fill(2);
    list.setSelected(2);
    const int refreshes = fakes::refreshes(list.P.surface());
    list.setSelected(2);
    EXPECT_EQ(events, "select ");
    EXPECT_EQ(fakes::refreshes(list.P.surface()), refreshes);
}

TEST_F(CoolListBoxTest, SelectingRepaintsTheTwoRowsAlone) {
    fill(5);
    list.setSelected(2);
    const std::size_t before = drawings().size();
    list.setSelected(4);
    ASSERT_EQ(drawings().size(), before + 6);
    EXPECT_EQ(drawings()[before].area.top, 20);
    EXPECT_EQ(drawings()[before + 3].area.top, 60);
}

TEST_F(CoolListBoxTest, ClearedListKeepsTheSelectionNumberAndHasNoKey) {
    fill(3);
    list.setSelected(2);
    list.ClearList();
    EXPECT_EQ(list.GetItemCount(), 0);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(list.GetSelectedKey(), u"");
    EXPECT_THAT(printed(), ElementsAre(u"No Items in List"));
}

TEST_F(CoolListBoxTest, PressAtTheTopSelectsThePositionOfTheScrollValue) {
    fill(9);
    list.setSelected(5);
    fakes::press(list.P, 10, 0);
    EXPECT_EQ(list.Selected(), 0);
    list.Scroll.setValue(2);
    fakes::press(list.P, 10, 0);
    EXPECT_EQ(list.Selected(), 2);
}

TEST_F(CoolListBoxTest, PressOnTheBorderOfTwoRowsTakesTheUpperOne) {
    fill(3);
    fakes::press(list.P, 10, 20);
    EXPECT_EQ(list.Selected(), 1);
    fakes::press(list.P, 10, 20.5);
    EXPECT_EQ(list.Selected(), 2);
}

TEST_F(CoolListBoxTest, PressBelowTheRowsIsIgnored) {
    fill(2);
    list.setSelected(1);
    fakes::press(list.P, 10, 90);
    EXPECT_EQ(list.Selected(), 1);
}

TEST_F(CoolListBoxTest, AnyButtonSelectsButOnlyTheLeftClicks) {
    fill(3);
    fakes::press(list.P, 10, 30, ui::right_button);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(events, "select ");
    events.clear();
    fakes::press(list.P, 10, 50);
    EXPECT_EQ(events, "select click ");
}

TEST_F(CoolListBoxTest, ClickOnAPartlyVisibleRowScrollsByOne) {
    setHeight(90); // four rows and a half
    fill(9);
    fakes::press(list.P, 10, 85);
    EXPECT_EQ(list.Selected(), 5);
    EXPECT_EQ(list.Scroll.Value(), 1);
    fakes::press(list.P, 10, 70);
    EXPECT_EQ(list.Scroll.Value(), 1) << "that row was wholly visible";
}

TEST_F(CoolListBoxTest, ListExactlyAsTallAsItsRowsHasNoScrollBar) {
    fill(5);
    EXPECT_FALSE(list.Scroll.Visible());
    EXPECT_EQ(list.Scroll.Max(), 0);
    list.AddItem(u"c", u"t", u"k6", false);
    EXPECT_TRUE(list.Scroll.Visible());
    EXPECT_EQ(list.Scroll.Max(), 1);
    list.RemoveItem(u"k1");
    EXPECT_FALSE(list.Scroll.Visible());
}

TEST_F(CoolListBoxTest, LessThanARowTooManyNeedsNoScrollBar) {
    setHeight(90);
    fill(5);
    EXPECT_FALSE(list.Scroll.Visible());
    list.AddItem(u"c", u"t", u"k6", false);
    EXPECT_TRUE(list.Scroll.Visible());
    EXPECT_EQ(list.Scroll.Max(), 2) << "one row and a half, to the even neighbour";
}

TEST_F(CoolListBoxTest, ArrowKeysScrollAndStopAtTheEnds) {
    fill(7);
    list.setSelected(1);
    const auto key = [this](ui::Key code) { return list.P.KeyDown(code); };
    key(ui::Key::up);
    EXPECT_EQ(list.Scroll.Value(), 0);
    key(ui::Key::down);
    key(ui::Key::down);
    EXPECT_EQ(list.Scroll.Value(), 2);
    key(ui::Key::down);
    EXPECT_EQ(list.Scroll.Value(), 2);
    key(ui::Key::up);
    EXPECT_EQ(list.Scroll.Value(), 1);
    EXPECT_FALSE(key(ui::Key::other));
    EXPECT_EQ(list.Selected(), 1) << "keys scroll, they do not select";
}

TEST_F(CoolListBoxTest, SuppressedKeysDoNothing) {
    fill(7);
    list.SuppressKeyboard = true;
    EXPECT_FALSE(list.P.KeyDown(ui::Key::down));
    EXPECT_EQ(list.Scroll.Value(), 0);
}

TEST_F(CoolListBoxTest, ScrolledListDrawsFromTheFirstVisibleRow) {
    fill(9);
    list.Scroll.setValue(3);
    EXPECT_EQ(drawings()[1].text, u"Caption 4");
    EXPECT_EQ(drawings()[1].area.top, 0);
    EXPECT_EQ(printed().back(), u"Text 8");
}

TEST_F(CoolListBoxTest, PartlyVisibleLastRowIsDrawn) {
    setHeight(90);
    fill(9);
    EXPECT_EQ(printed().back(), u"Text 5");
}

TEST_F(CoolListBoxTest, SelectKeyScrollsByOneFormulaEitherWay) {
    fill(9);
    list.SelectKey(u"k8", true);
    EXPECT_EQ(list.Selected(), 8);
    EXPECT_EQ(list.Scroll.Value(), 3);
    list.SelectKey(u"k2", true);
    EXPECT_EQ(list.Scroll.Value(), 0);
    list.SelectKey(u"k9", false);
    EXPECT_EQ(list.Selected(), 9);
    EXPECT_EQ(list.Scroll.Value(), 0);
    list.SelectKey(u"none", true);
    EXPECT_EQ(list.Selected(), 9);
}

TEST_F(CoolListBoxTest, EditsRedrawTheirRowAlone) {
    fill(3);
    const std::size_t before = drawings().size();
    list.EditItemText(u"k2", u"new text");
    list.EditItemCaption(u"k3", u"new caption");
    list.EditItemText(u"none", u"x");
    list.EditItemCaption(u"none", u"x");
    ASSERT_EQ(drawings().size(), before + 6);
    EXPECT_EQ(drawings()[before + 2].text, u"new text");
    EXPECT_EQ(drawings()[before + 4].text, u"new caption");
}

TEST_F(CoolListBoxTest, DoubleClickIsRaised) {
    list.P.DblClick();
    EXPECT_EQ(events, "double ");
}

TEST_F(CoolListBoxTest, LongListDrawsNoMoreThanAShortOne) {
    fill(5);
    const std::size_t few = drawings().size();
    for (int i = 0; i < 3000; ++i)
        list.AddItem(u"c", u"t", u"n" + std::u16string(1, static_cast<char16_t>(0x4000 + i)), false);
    list.Scroll.setValue(2000);
    EXPECT_EQ(drawings().size(), few);
}

TEST_F(CoolListBoxTest, ImpossibleRowHeightIsOnePixel) {
    list.setItemHeight(0);
    EXPECT_EQ(list.ItemHeight(), 1);
    list.setItemHeight(-5);
    fill(3);
    EXPECT_EQ(list.ItemHeight(), 1);
}

} // namespace
} // namespace murmelix
