// When rows are dragged out of the list, what they carry, and what a drop raises.
#include "tests/unit/shell/cool_list_box_fixture.h"

namespace murmelix {
namespace {

class CoolListBoxDrag : public CoolListBoxTest {
  protected:
    CoolListBoxDrag() {
        fill(3);
        list.setDragDropZone(1);
        list.DragDropCompleted = [this](ui::DropEffect effect, const CItem& item) {
            events += "completed " + std::to_string(effect) + " " + toUtf8(item.Key) + " ";
        };
        list.DragDropAlert = [this](ui::DataObject& data, ui::DropEffect& effect, std::int16_t button,
                                    std::int16_t shift, float x, float y) {
            events += "alert " + toUtf8(data.Text()) + " " + std::to_string(effect) + " " + std::to_string(button) +
                      " " + std::to_string(shift) + " ";
            alert_x = x;
            alert_y = y;
        };
        events.clear();
    }
    // Presses the second row and moves by that much, the left button held.
    std::size_t dragsAfter(double x, double y) {
        const std::size_t before = drags().size();
        fakes::dragMouse(list.P, 10, 30, 10 + x, 30 + y);
        return drags().size() - before;
    }
    static const std::vector<fakes::Drag>& drags() { return fakes::dragDrop().drags; }
    static fakes::Drag text(const std::u16string& content, ui::DropEffect allowed = ui::drop_copy | ui::drop_move) {
        fakes::Drag drag{{}, allowed};
        drag.data.SetText(content);
        return drag;
    }

    float alert_x = 0, alert_y = 0;
};

TEST_F(CoolListBoxDrag, FiveUnitsInEitherDirectionStartADrag) {
    for (const auto& [x, y] : {std::pair{5.0, 0.0}, {-5.0, 0.0}, {0.0, 5.0}, {0.0, -5.0}, {4.0, 6.0}, {30.0, 40.0}}) {
        EXPECT_EQ(dragsAfter(x, y), 1u) << x << "," << y;
    }
}

TEST_F(CoolListBoxDrag, LessThanFiveUnitsInBothDirectionsAreNoDrag) {
    for (const auto& [x, y] : {std::pair{4.0, 4.0}, {-4.0, 4.0}, {4.5, 0.0}, {0.0, 0.0}}) {
        EXPECT_EQ(dragsAfter(x, y), 0u) << x << "," << y;
    }
}

TEST_F(CoolListBoxDrag, NothingIsDraggedWhereTheZoneIsZero) {
    list.setDragDropZone(0);
    EXPECT_EQ(dragsAfter(30, 30), 0u);
    list.setDragDropZone(-3);
    EXPECT_EQ(dragsAfter(30, 30), 1u);
}

TEST_F(CoolListBoxDrag, OnlyTheLeftButtonAloneDrags) {
    list.P.MouseDown(ui::right_button, 0, 10, 30);
    EXPECT_EQ(list.Selected(), 2) << "but any button selects";
    for (const int held : {0, 2, 3, 4, 5}) {
        list.P.MouseMove(held, 0, 50, 30);
    }
    EXPECT_EQ(drags().size(), 0u);
    list.P.MouseMove(ui::left_button, 0, 50, 30);
    EXPECT_EQ(drags().size(), 1u);
}

TEST_F(CoolListBoxDrag, MouseHeldSinceElsewhereDragsNothing) {
    list.P.MouseMove(ui::left_button, 0, 50, 30);
    EXPECT_EQ(drags().size(), 0u);
    list.P.MouseDown(ui::left_button, 0, 10, 30);
    list.P.MouseUp(ui::left_button, 0, 10, 30);
    list.P.MouseMove(ui::left_button, 0, 50, 30);
    EXPECT_EQ(drags().size(), 0u) << "the release cleared the record";
}

TEST_F(CoolListBoxDrag, DragThatWasCalledOffDoesNotBeginAgain) {
    list.P.MouseDown(ui::left_button, 0, 10, 30);
    list.P.MouseMove(ui::left_button, 0, 16, 30);
    list.P.MouseMove(ui::left_button, 0, 90, 30);
    EXPECT_EQ(drags().size(), 1u);
}

TEST_F(CoolListBoxDrag, MoveIsMeasuredFromThePressNotFromStepToStep) {
    list.P.MouseDown(ui::left_button, 0, 10, 30);
    for (const double x : {12.0, 14.0}) {
        list.P.MouseMove(ui::left_button, 0, x, 30);
    }
    EXPECT_EQ(drags().size(), 0u);
    list.P.MouseMove(ui::left_button, 0, 15, 30);
    EXPECT_EQ(drags().size(), 1u);
}

TEST_F(CoolListBoxDrag, DragCarriesTheTextOfTheSelectedRowAndMayBeMovedAlone) {
    dragsAfter(9, 0);
    ASSERT_EQ(drags().size(), 1u);
    EXPECT_EQ(drags()[0].data.Text(), u"Text 2");
    EXPECT_EQ(drags()[0].allowed, ui::drop_move);
}

TEST_F(CoolListBoxDrag, EmptyTextIsCarriedToo) {
    list.EditItemText(u"k2", u"");
    dragsAfter(9, 0);
    ASSERT_EQ(drags().size(), 1u);
    EXPECT_TRUE(drags()[0].data.HasText());
}

TEST_F(CoolListBoxDrag, WithoutASelectedRowNothingIsDraggedAndNothingCompleted) {
    fakes::dragMouse(list.P, 10, 90, 60, 90); // below the rows
    EXPECT_EQ(list.Selected(), 0);
    list.setSelected(2);
    list.ClearList(); // the number stays
    events.clear();
    fakes::dragMouse(list.P, 10, 90, 60, 90);
    EXPECT_EQ(drags().size(), 0u);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxDrag, DataObjectIsClearedFirst) {
    ui::DataObject data;
    data.SetText(u"left from before");
    ui::DropEffect allowed = ui::drop_copy;
    list.P.OLEStartDrag(data, allowed);
    EXPECT_FALSE(data.HasText());
    EXPECT_EQ(allowed, ui::drop_none);
}

TEST_F(CoolListBoxDrag, EndTellsTheFinalEffectAndTheRow) {
    fakes::dragDrop().let_go = [](const fakes::Drag&) { return ui::drop_move; };
    dragsAfter(9, 0);
    fakes::dragDrop().let_go = nullptr;
    dragsAfter(9, 0);
    EXPECT_EQ(events, "select Selected completed 2 k2 completed 0 k2 ");
}

TEST_F(CoolListBoxDrag, EndTellsTheRowThatIsSelectedThen) {
    fakes::dragDrop().let_go = [this](const fakes::Drag&) {
        list.setSelected(3);
        return ui::drop_move;
    };
    dragsAfter(9, 0);
    EXPECT_EQ(events, "select Selected select Selected completed 2 k3 ");
    fakes::dragDrop().let_go = [this](const fakes::Drag&) {
        list.ClearList();
        return ui::drop_move;
    };
    events.clear();
    fakes::dragMouse(list.P, 10, 50, 60, 50);
    EXPECT_EQ(events, "") << "no row, no event";
}

TEST_F(CoolListBoxDrag, RowMayBeRemovedByWhoHearsOfTheEnd) {
    std::u16string caption;
    list.DragDropCompleted = [&](ui::DropEffect, const CItem& item) {
        list.RemoveItem(item.Key);
        caption = item.Caption;
    };
    dragsAfter(9, 0);
    EXPECT_EQ(caption, u"Caption 2");
    EXPECT_EQ(list.GetItemCount(), 2);
}

TEST_F(CoolListBoxDrag, DropRaisesDragDropAlertAndAddsNothingByItself) {
    list.P.setOLEDropMode(ui::DropMode::manual);
    EXPECT_EQ(fakes::drop(list.P, text(u"ann@x"), 12.5, 7.25, ui::shift_key), ui::drop_move);
    EXPECT_EQ(events, "alert ann@x 2 1 1 ");
    EXPECT_EQ(alert_x, 12.5F);
    EXPECT_EQ(alert_y, 7.25F);
    EXPECT_EQ(list.GetItemCount(), 3);
    EXPECT_EQ(list.Selected(), 0);
}

TEST_F(CoolListBoxDrag, DropWithoutTextIsRefusedAndOneOfAnEmptyTextIsTaken) {
    list.P.setOLEDropMode(ui::DropMode::manual);
    EXPECT_EQ(fakes::drop(list.P, {{}, ui::drop_move}), ui::drop_none);
    EXPECT_EQ(events, "");
    EXPECT_EQ(fakes::drop(list.P, text(u"")), ui::drop_move);
    EXPECT_EQ(events, "alert  2 1 0 ");
}

TEST_F(CoolListBoxDrag, OwnerDecidesWhetherDropsAreTaken) {
    EXPECT_EQ(fakes::drop(list.P, text(u"ann@x")), ui::drop_none);
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxDrag, DropOnAListThatCannotBeReachedIsNone) {
    list.P.setOLEDropMode(ui::DropMode::manual);
    list.setEnabledIt(false);
    EXPECT_EQ(fakes::drop(list.P, text(u"ann@x")), ui::drop_none);
    list.setEnabledIt(true);
    list.setVisible(false);
    EXPECT_EQ(fakes::drop(list.P, text(u"ann@x")), ui::drop_none);
}

TEST_F(CoolListBoxDrag, OwnersEffectIsToldToTheSource) {
    list.P.setOLEDropMode(ui::DropMode::manual);
    list.DragDropAlert = [](ui::DataObject&, ui::DropEffect& effect, std::int16_t, std::int16_t, float, float) {
        effect = ui::drop_none;
    };
    EXPECT_EQ(fakes::drop(list.P, text(u"x")), ui::drop_none);
    list.DragDropAlert = [](ui::DataObject&, ui::DropEffect& effect, std::int16_t, std::int16_t, float, float) {
        effect = -1; // whatever that is
    };
    EXPECT_EQ(fakes::drop(list.P, text(u"x", ui::drop_move)), ui::drop_move);
    list.DragDropAlert = nullptr;
    EXPECT_EQ(fakes::drop(list.P, text(u"x")), ui::drop_none) << "nobody took it";
}

TEST_F(CoolListBoxDrag, EffectFollowsTheControlKeyAndWhatIsAllowed) {
    list.P.setOLEDropMode(ui::DropMode::manual);
    constexpr int both = ui::drop_copy | ui::drop_move;
    EXPECT_EQ(list.P.dropEffect(both, 0), ui::drop_move);
    EXPECT_EQ(list.P.dropEffect(both, ui::control_key), ui::drop_copy);
    EXPECT_EQ(list.P.dropEffect(ui::drop_move, ui::control_key), ui::drop_move);
    EXPECT_EQ(list.P.dropEffect(ui::drop_copy, 0), ui::drop_copy);
    EXPECT_EQ(list.P.dropEffect(4, 0), ui::drop_none) << "a link is not offered";
    EXPECT_EQ(list.P.dropEffect(0, 0), ui::drop_none);
}

TEST_F(CoolListBoxDrag, RowGoesFromListToList) {
    CoolListBox other(form);
    other.Move({0, 0, 1500, 1500});
    other.P.setOLEDropMode(ui::DropMode::manual);
    std::u16string arrived;
    other.DragDropAlert = [&](ui::DataObject& data, ui::DropEffect&, std::int16_t, std::int16_t, float, float) {
        arrived = data.Text();
    };
    fakes::dragDrop().let_go = [&](const fakes::Drag& drag) { return fakes::drop(other.P, drag); };
    dragsAfter(0, 9);
    EXPECT_EQ(arrived, u"Text 2");
    EXPECT_EQ(events, "select Selected completed 2 k2 ");
}

} // namespace
} // namespace murmelix
