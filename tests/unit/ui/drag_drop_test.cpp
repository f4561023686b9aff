// What any control hears of text that is dragged over it, and the place of a control in the order of the Tab key.
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "tests/fakes/ui/drag_drop.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DragOverTest : public testing::Test {
  protected:
    DragOverTest() {
        fakes::screen() = {};
        fakes::dragDrop() = {};
        form.Show();
        drag.data.SetText(u"text");
    }

    Form form{nullptr, u"", FormStyle::window};
    fakes::Drag drag{{}, drop_copy | drop_move};
};

TEST_F(DragOverTest, IsToldToWhatTakesDrops) {
    Button button(form, u"");
    std::vector<DragState> states;
    button.OLEDragOver = [&](DropEffect& effect, int, double x, double, DragState state) {
        states.push_back(state);
        if (x > 10) {
            effect = drop_copy;
        }
    };
    EXPECT_EQ(fakes::dragOver(button, drag), drop_none);
    EXPECT_THAT(states, IsEmpty()) << "it takes none";
    button.setOLEDropMode(DropMode::manual);
    EXPECT_EQ(fakes::dragOver(button, drag, 0, 0, DragState::enter), drop_move);
    EXPECT_EQ(fakes::dragOver(button, drag, 11, 0), drop_copy);
    EXPECT_EQ(fakes::dragOver(button, drag, 0, 0, DragState::leave), drop_none);
    EXPECT_THAT(states, ElementsAre(DragState::enter, DragState::over, DragState::leave));
}

TEST_F(DragOverTest, AnswersOnlyWhatIsAllowed) {
    Frame frame(form, u"");
    frame.setOLEDropMode(DropMode::manual);
    EXPECT_EQ(fakes::dragOver(frame, drag), drop_move) << "nobody need listen";
    frame.OLEDragOver = [](DropEffect& effect, int, double, double, DragState) { effect = drop_copy; };
    drag.allowed = drop_move;
    EXPECT_EQ(fakes::dragOver(frame, drag), drop_none);
    frame.OLEDragOver = nullptr;
    form.setEnabled(true);
    frame.setEnabled(false);
    EXPECT_EQ(fakes::dragOver(frame, drag), drop_none) << "it cannot be reached";
}

TEST_F(DragOverTest, WhatIsNotTakenHasLeft) {
    Frame frame(form, u"");
    std::vector<DragState> states;
    bool dropped = false;
    frame.setOLEDropMode(DropMode::manual);
    frame.OLEDragOver = [&](DropEffect&, int, double, double, DragState state) { states.push_back(state); };
    frame.OLEDragDrop = [&](DataObject&, DropEffect&, int, int, double, double) { dropped = true; };
    EXPECT_EQ(fakes::drop(frame, {{}, drop_move}), drop_none);
    EXPECT_THAT(states, ElementsAre(DragState::leave)) << "no text";
    frame.setEnabled(false);
    EXPECT_EQ(fakes::drop(frame, drag), drop_none);
    EXPECT_THAT(states, ElementsAre(DragState::leave, DragState::leave)) << "it cannot be reached any more";
    EXPECT_FALSE(dropped);
    frame.setEnabled(true);
    EXPECT_EQ(fakes::drop(frame, drag), drop_move);
    EXPECT_THAT(states, ElementsAre(DragState::leave, DragState::leave)) << "a drop is all that is told of it";
    EXPECT_TRUE(dropped);
}

TEST_F(DragOverTest, ListenerMayEndItsControl) {
    auto frame = std::make_unique<Frame>(form, u"");
    frame->setOLEDropMode(DropMode::manual);
    frame->OLEDragOver = [&](DropEffect& effect, int, double, double, DragState) {
        frame.reset();
        effect = drop_none;
    };
    EXPECT_EQ(fakes::dragOver(*frame, drag), drop_none);
    frame = std::make_unique<Frame>(form, u"");
    frame->setOLEDropMode(DropMode::manual);
    frame->OLEDragDrop = [&](DataObject&, DropEffect& effect, int, int, double, double) {
        frame.reset();
        effect = drop_copy;
    };
    EXPECT_EQ(fakes::drop(*frame, drag), drop_copy);
}

TEST_F(DragOverTest, BoxMayEndDuringItsOwnDrag) {
    auto box = std::make_unique<PictureBox>(form);
    bool completed = false;
    box->OLEStartDrag = [](DataObject& data, DropEffect&) { data.SetText(u"text"); };
    box->OLECompleteDrag = [&](DropEffect) { completed = true; };
    fakes::dragDrop().let_go = [&](const fakes::Drag&) {
        box.reset();
        return drop_copy;
    };
    box->OLEDrag();
    EXPECT_FALSE(box);
    EXPECT_FALSE(completed);
}

TEST_F(DragOverTest, TabFollowsAnotherOrderThanThatOfTheMaking) {
    Button first(form, u"first"), second(form, u"second"), third(form, u"third");
    third.setTabAfter(&first);
    EXPECT_THAT(form.Children(), ElementsAre(&first, &third, &second));
    second.setTabAfter(nullptr);
    EXPECT_THAT(form.Children(), ElementsAre(&second, &first, &third));
    first.SetFocus();
    fakes::key(form, Key::tab);
    EXPECT_TRUE(third.Focused());
}

} // namespace
} // namespace murmelix::ui
