// Rows of the list: drawn, selected, scrolled, changed, by program and by hand.
#include "tests/unit/shell/cool_list_box_fixture.h"

namespace murmelix {
namespace {

using fakes::Drawing;
using testing::ElementsAre;

TEST_F(CoolListBoxTest, EmptyListShowsTheMessageCentred) {
    list.setNoItemCaption(u"No one");
    // 200 x 100 pixels, characters 6 wide and 13 high.
    EXPECT_THAT(drawings(), ElementsAre(Drawing{Drawing::Kind::text, {82, 43, 0, 0}, 0x80000011, u"No one"}));
}

TEST_F(CoolListBoxTest, ListWithTheFocusMarksTheSelectedRowOrAllOfIt) {
    const auto marks = [this] {
        std::vector<ui::Rect> areas;
        for (const Drawing& drawing : drawings()) {
            if (drawing.kind == Drawing::Kind::focus) {
                areas.push_back(drawing.area);
            }
        }
        return areas;
    };
    const ui::Rect whole{0, 0, list.P.surface().Width(), 100};
    list.P.SetFocus();
    EXPECT_THAT(marks(), ElementsAre(whole)) << "without rows";
    fill(5);
    EXPECT_THAT(marks(), ElementsAre(whole)) << "with nothing selected";
    list.setSelected(2);
    EXPECT_THAT(marks(), ElementsAre(ui::Rect{0, 20, whole.width, 20}));
    list.P.onFocusLost();
    EXPECT_THAT(marks(), ElementsAre());
    list.P.GotFocus();
    fill(20);
    list.Scroll.setValue(10);
    EXPECT_THAT(marks(), ElementsAre(ui::Rect{0, 0, list.P.surface().Width(), 100})) << "the row is not to be seen";
    list.EditItemText(u"k12", u"changed");
    EXPECT_EQ(marks().size(), 1U) << "no piece of it is left over";
    list.Scroll.setValue(0);
    list.setSelected(6); // just below the five that are shown
    EXPECT_THAT(marks(), ElementsAre(ui::Rect{0, 0, list.P.surface().Width(), 100}));
    list.setSelected(5);
    EXPECT_THAT(marks(), ElementsAre(ui::Rect{0, 80, list.P.surface().Width(), 20}));
}

TEST_F(CoolListBoxTest, EnterInTheMessageBreaksTheLineAndABlankMakesABlankLine) {
    list.setNoItemCaption(u"No matchups.[ENTER] [ENTER] Drag and drop");
    EXPECT_THAT(printed(), ElementsAre(u"No matchups.", u" ", u" Drag and drop"));
    EXPECT_EQ(drawings()[0].area.top, (100 - 3 * 13) / 2);
}

TEST_F(CoolListBoxTest, MessageForMatchupsShowsAsThreeLinesTheMiddleOneBlankEachCentred) {
    list.Move({0, 0, 400 * 15, 100 * 15});
    list.setNoItemCaption(u"No matchups for this character.[ENTER] [ENTER] Drag and drop MSN contact names here");
    const auto line = [](int x, int y, const char16_t* text) {
        return Drawing{Drawing::Kind::text, {x, y, 0, 0}, 0x80000011, text};
    };
    EXPECT_THAT(drawings(), ElementsAre(line(107, 30, u"No matchups for this character."), line(197, 43, u" "),
                                        line(89, 56, u" Drag and drop MSN contact names here")));
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

TEST_F(CoolListBoxTest, MessageKeepsLineBreaksOfItsOwnAndBlanksInARow) {
    list.setNoItemCaption(u"one\r\ntwo  words[ENTER]");
    EXPECT_THAT(printed(), ElementsAre(u"one", u"two  words", u""));
    list.setNoItemCaption(u"");
    EXPECT_THAT(printed(), ElementsAre(u""));
    list.setNoItemCaption(u"[enter]");
    EXPECT_THAT(printed(), ElementsAre(u"[enter]"));
}

TEST_F(CoolListBoxTest, WordsGoOnOneLineWhileTheyFitExactly) {
    // 196 pixels, 180 between the margins: 30 characters fill them.
    list.Move({0, 0, 196 * 15, 100 * 15});
    list.setNoItemCaption(u"123456789 123456789 1234567890");
    EXPECT_THAT(printed(), ElementsAre(u"123456789 123456789 1234567890"));
    list.setNoItemCaption(u"123456789 123456789 12345678901");
    EXPECT_THAT(printed(), ElementsAre(u"123456789 123456789", u"12345678901"));
}

TEST_F(CoolListBoxTest, MessageTallerThanTheListReachesBeyondBothEdges) {
    setHeight(20);
    list.setNoItemCaption(u"1[ENTER]2[ENTER]3[ENTER]4");
    EXPECT_EQ(drawings()[0].area.top, -16);
    EXPECT_EQ(drawings()[3].area.top, 23);
}

TEST_F(CoolListBoxTest, MessageIsWrappedAnewInAnotherWidth) {
    list.setNoItemCaption(u"You need to download more characters");
    EXPECT_EQ(printed().size(), 2u);
    list.Move({0, 0, 300 * 15, 100 * 15});
    EXPECT_EQ(printed().size(), 1u);
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

TEST_F(CoolListBoxTest, OffsetsBeyondAllBoundsAreDrawnThere) {
    fill(2);
    list.SetPos(0x7FFFFFFF, 0x7FFFFFFF, 0, 0x7FFFFFFF, 0, 0);
    EXPECT_EQ(drawings()[1].area.left, 0x7FFFFFFF);
    EXPECT_EQ(drawings()[4].area.top, 0x7FFFFFFF);
    EXPECT_EQ(drawings()[5].area.top, 0x7FFFFFFF);
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
    const int before = refreshes();
    list.AddItem(u"other", u"other", u"k1", true);
    EXPECT_EQ(list.GetItemCount(), 2);
    EXPECT_EQ(list.Item(1).Caption, u"Caption 1");
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(events, "");
    EXPECT_EQ(refreshes(), before);
}

TEST_F(CoolListBoxTest, AddingWithSelSelectsTheNewRowAndShowsIt) {
    fill(7);
    list.AddItem(u"c", u"t", u"new", true);
    EXPECT_EQ(list.Selected(), 8);
    EXPECT_EQ(list.GetSelectedKey(), u"new");
    EXPECT_EQ(list.Scroll.Value(), 3);
    EXPECT_EQ(events, "select Selected ");
}

TEST_F(CoolListBoxTest, AddingWithSelRaisesOnSelectBeforeItScrolls) {
    fill(7);
    int scrolled = -1;
    list.OnSelect = [&] { scrolled = list.Scroll.Value(); };
    list.AddItem(u"c", u"t", u"new", true);
    EXPECT_EQ(scrolled, 0);
    EXPECT_EQ(list.Scroll.Max(), 3) << "the scroll bar comes first";
}

TEST_F(CoolListBoxTest, AddingWithoutSelLeavesSelectionAndView) {
    fill(7);
    list.Scroll.setValue(1);
    list.AddItem(u"c", u"t", u"new", false);
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(list.Scroll.Value(), 1);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, RowsAddedBelowTheViewAreNotDrawn) {
    fill(7);
    const int before = refreshes();
    list.AddItem(u"c", u"t", u"k8", false);
    EXPECT_EQ(refreshes(), before);
    list.Scroll.setValue(4);
    EXPECT_EQ(printed().back(), u"t");
    list.ChangeFontSize(20);
    list.AddItem(u"c", u"t", u"k9", false);
    EXPECT_GT(refreshes(), before + 1) << "the rows that are seen have another font";
    EXPECT_EQ(drawings()[1].points, 20);
}

TEST_F(CoolListBoxTest, ListTakesNoMoreRowsThanThereArePositions) {
    for (int i = 1; i <= 32767; ++i) {
        list.AddItem(u"c", u"t", toText(i), false);
    }
    EXPECT_EQ(list.GetItemCount(), 32767);
    list.AddItem(u"c", u"t", u"one more", true);
    EXPECT_EQ(list.GetItemCount(), 32767);
    EXPECT_EQ(list.Selected(), 0);
    list.SelectKey(u"32767", true);
    EXPECT_EQ(list.Selected(), 32767);
    EXPECT_EQ(list.Scroll.Value(), 32762);
    EXPECT_EQ(drawings()[12].colour, 0x8000000Du);
    list.RemoveItem(u"1");
    EXPECT_EQ(list.Selected(), 32766);
    EXPECT_EQ(list.GetSelectedKey(), u"32767");
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
    EXPECT_EQ(events, "select Selected ");
}

TEST_F(CoolListBoxTest, RemovingTheOnlyRowSelectsNothing) {
    list.AddItem(u"c", u"t", u"k", true);
    events.clear();
    list.RemoveItem(u"k");
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(list.GetSelectedKey(), u"");
    EXPECT_EQ(events, "select Selected ");
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

TEST_F(CoolListBoxTest, RemovingRaisesOnSelectWithTheRowGoneAndBeforeTheScrollBarChanges) {
    fill(6);
    list.setSelected(6);
    int rows = 0, max = 0;
    list.OnSelect = [&] {
        rows = list.GetItemCount();
        max = list.Scroll.Max();
    };
    list.RemoveItem(u"k6");
    EXPECT_EQ(rows, 5);
    EXPECT_EQ(max, 1);
    EXPECT_EQ(list.Scroll.Max(), 0);
}

TEST_F(CoolListBoxTest, RemovingByTheKeyOfTheRowItself) {
    fill(3);
    list.setSelected(2);
    list.RemoveItem(list.Item(2).Key);
    EXPECT_EQ(list.GetItemCount(), 2);
    EXPECT_EQ(list.Item(2).Caption, u"Caption 3");
}

TEST_F(CoolListBoxTest, RemovingRowsOfAScrolledListScrollsBack) {
    fill(9);
    list.Scroll.setValue(4);
    list.RemoveItem(u"k1");
    EXPECT_EQ(list.Scroll.Value(), 3);
    EXPECT_EQ(list.Scroll.Max(), 3);
    EXPECT_EQ(drawings()[1].text, u"Caption 5");
}

TEST_F(CoolListBoxTest, SelectingBeyondTheRowsIsIgnored) {
    fill(2);
    for (const std::int16_t position : std::initializer_list<std::int16_t>{3, 32767, -1, -32768}) {
        list.setSelected(position);
    }
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, SelectionIsStoredAndDrawnBeforeOnSelectAndAnnouncedAfterIt) {
    fill(3);
    ui::Colour filled = 0;
    list.OnSelect = [&] {
        EXPECT_EQ(list.Selected(), 2);
        filled = drawings()[drawings().size() - 3].colour;
        events += "select ";
    };
    list.setSelected(2);
    EXPECT_EQ(filled, 0x8000000Du);
    EXPECT_EQ(events, "select Selected ");
}

TEST_F(CoolListBoxTest, SelectionMayBeTakenBack) {
    fill(2);
    list.setSelected(2);
    list.setSelected(0);
    EXPECT_EQ(list.GetSelectedKey(), u"");
    EXPECT_EQ(drawings()[drawings().size() - 3].colour, 0x80000005u);
}

TEST_F(CoolListBoxTest, SelectingTheSameRowDoesNothing) {
    fill(2);
    list.setSelected(2);
    const int before = refreshes();
    list.setSelected(2);
    EXPECT_EQ(events, "select Selected ");
    EXPECT_EQ(refreshes(), before);
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

TEST_F(CoolListBoxTest, NumberLeftByClearListSelectsTheRowThatComesThere) {
    fill(3);
    list.setSelected(2);
    list.ClearList();
    events.clear();
    list.AddItem(u"c", u"t", u"a", true); // 1 is another number
    EXPECT_EQ(list.Selected(), 1);
    EXPECT_EQ(events, "select Selected ");
    list.ClearList();
    events.clear();
    list.AddItem(u"c", u"t", u"b", true); // 1 is there already
    EXPECT_EQ(list.GetSelectedKey(), u"b");
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, ClearedListHasNoScrollBarAndStartsAtTheTop) {
    fill(9);
    list.Scroll.setValue(4);
    list.ClearList();
    EXPECT_FALSE(list.Scroll.Visible());
    fill(2);
    EXPECT_EQ(drawings()[1].text, u"Caption 1");
    EXPECT_EQ(drawings()[1].area.top, 0);
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
    EXPECT_EQ(events, "select Selected ");
    events.clear();
    fakes::press(list.P, 10, 50);
    EXPECT_EQ(events, "select Selected click ");
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

TEST_F(CoolListBoxTest, ClickWithNothingSelectedScrollsNothing) {
    fill(9);
    fakes::press(list.P, 10, 0);
    EXPECT_EQ(list.Selected(), 0);
    EXPECT_EQ(list.Scroll.Value(), 0);
    EXPECT_EQ(events, "click ");
}

TEST_F(CoolListBoxTest, ClickAtTheEndOfTheListScrollsNoFurther) {
    setHeight(90);
    fill(6); // the last one stands half below the edge
    list.Scroll.setValue(1);
    list.setItemHeight(21);
    fakes::press(list.P, 10, 88);
    EXPECT_EQ(list.Selected(), 6);
    EXPECT_EQ(list.Scroll.Value(), 2);
    fakes::press(list.P, 10, 88);
    EXPECT_EQ(list.Scroll.Value(), 2);
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

TEST_F(CoolListBoxTest, UpAtTheTopAndDownAtTheBottomDoNothing) {
    fill(7);
    const int before = refreshes();
    list.P.KeyDown(ui::Key::up);
    EXPECT_EQ(refreshes(), before);
    list.Scroll.setValue(2);
    const int at_bottom = refreshes();
    list.P.KeyDown(ui::Key::down);
    EXPECT_EQ(list.Scroll.Value(), 2);
    EXPECT_EQ(refreshes(), at_bottom);
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

TEST_F(CoolListBoxTest, ScrollBarStandsBesideTheSurface) {
    fill(5);
    EXPECT_EQ(list.P.Width(), 200 * 15);
    list.AddItem(u"c", u"t", u"k6", false);
    EXPECT_EQ(list.P.Width(), 200 * 15 - 255);
    EXPECT_EQ(list.Scroll.Bounds(), (ui::Rect{200 * 15 - 255, 0, 255, 100 * 15}));
    EXPECT_EQ(drawings()[0].area.width, 183);
}

TEST_F(CoolListBoxTest, ChangedScrollValueRedrawsTheList) {
    fill(9);
    const int before = refreshes();
    list.Scroll.setValue(2);
    EXPECT_EQ(refreshes(), before + 1);
    list.P.Wheel(-1);
    EXPECT_EQ(list.Scroll.Value(), 1);
}

TEST_F(CoolListBoxTest, TallerListScrollsBackAndHidesItsBar) {
    fill(7);
    list.Scroll.setValue(2);
    setHeight(140);
    EXPECT_FALSE(list.Scroll.Visible());
    EXPECT_EQ(list.Scroll.Value(), 0);
    EXPECT_EQ(printed().size(), 14u);
}

TEST_F(CoolListBoxTest, RowsTallerThanTheListAreShownOneByOne) {
    setHeight(10);
    fill(3);
    EXPECT_EQ(list.Scroll.Max(), 2);
    EXPECT_THAT(printed(), ElementsAre(u"Caption 1", u"Text 1"));
    list.SelectKey(u"k2", true);
    EXPECT_EQ(list.Scroll.Value(), 2) << "no row fits: the row's own position";
}

TEST_F(CoolListBoxTest, ListWithoutRoomHoldsItsRows) {
    list.Move({0, 0, 0, 0});
    fill(3);
    list.SelectKey(u"k3", true);
    EXPECT_EQ(list.GetSelectedKey(), u"k3");
    setHeight(100);
    EXPECT_EQ(printed().size(), 6u);
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

TEST_F(CoolListBoxTest, SelectKeyShowsARowThatIsSelectedAlready) {
    fill(9);
    list.SelectKey(u"k9", false);
    events.clear();
    list.SelectKey(u"k9", true);
    EXPECT_EQ(list.Scroll.Value(), 4);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, SelectKeyLeavesAVisibleRowWhereItIs) {
    fill(9);
    list.Scroll.setValue(2);
    list.SelectKey(u"k3", true);
    EXPECT_EQ(list.Scroll.Value(), 2);
    list.SelectKey(u"k7", true);
    EXPECT_EQ(list.Scroll.Value(), 2);
}

TEST_F(CoolListBoxTest, EditOfARowOutOfViewDrawsNothing) {
    fill(9);
    const std::size_t before = drawings().size();
    list.EditItemText(u"k9", u"new");
    EXPECT_EQ(drawings().size(), before);
    list.Scroll.setValue(4);
    EXPECT_EQ(printed().back(), u"new");
}

TEST_F(CoolListBoxTest, ItemsArePassedByPosition) {
    list.AddItem(u"c", u"t", u"k", false, {u"picture", 32});
    EXPECT_EQ(list.Item(1).Caption, u"c");
    EXPECT_EQ(list.Item(1).Text, u"t");
    EXPECT_EQ(list.Item(1).Key, u"k");
    EXPECT_EQ(list.Item(1).Icon, (ui::Picture{u"picture", 32}));
    for (const std::int16_t position : std::initializer_list<std::int16_t>{0, 2, -1}) {
        EXPECT_THROW(list.Item(position), CollectionError) << position;
    }
}

TEST_F(CoolListBoxTest, DrawItemDrawsARowOfTheListAlone) {
    fill(3);
    const std::size_t before = drawings().size();
    for (const std::int16_t position : std::initializer_list<std::int16_t>{0, 4, -1}) {
        list.DrawItem(position);
    }
    EXPECT_EQ(drawings().size(), before);
    list.DrawItem(3);
    ASSERT_EQ(drawings().size(), before + 3);
    EXPECT_EQ(drawings()[before].area.top, 40);
}

TEST_F(CoolListBoxTest, ChangedFontSizeWaitsForTheNextRepaint) {
    fill(2);
    const int before = refreshes();
    list.ChangeFontSize(14);
    EXPECT_EQ(refreshes(), before);
    EXPECT_EQ(drawings()[1].points, 0);
    list.Redraw();
    EXPECT_EQ(drawings()[1].points, 14);
}

TEST_F(CoolListBoxTest, SetPosTakesCaptionTextAndIconInThisOrderAndAnnouncesNothing) {
    const int before = refreshes();
    list.SetPos(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(list.CaptionPosX(), 1);
    EXPECT_EQ(list.CaptionPosY(), 2);
    EXPECT_EQ(list.TextPosX(), 3);
    EXPECT_EQ(list.TextPosY(), 4);
    EXPECT_EQ(list.IconPosX(), 5);
    EXPECT_EQ(list.IconPosY(), 6);
    EXPECT_EQ(refreshes(), before + 1);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxTest, DoubleClickIsRaised) {
    list.P.DblClick();
    EXPECT_EQ(events, "double ");
}

TEST_F(CoolListBoxTest, LongListDrawsNoMoreThanAShortOne) {
    fill(5);
    const std::size_t few = drawings().size();
    for (int i = 0; i < 3000; ++i) {
        list.AddItem(u"c", u"t", u"n" + std::u16string(1, static_cast<char16_t>(0x4000 + i)), false);
    }
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
