// What single controls decide by themselves.
#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"
#include "ui/screen.h"

namespace murmelix::ui {
namespace {

using testing::ElementsAre;

class ControlsTest : public testing::Test {
  protected:
    ControlsTest() { fakes::screen() = {}; }
    Form form{nullptr, u"", FormStyle::window};
};

TEST_F(ControlsTest, ListKeepsItsSelectionWhereRowsComeAndGo) {
    ListBox list(form);
    list.setItems({u"a", u"b", u"c"});
    EXPECT_EQ(list.ListIndex(), -1);
    list.setListIndex(1);
    list.InsertItem(0, u"first");
    EXPECT_EQ(list.ListIndex(), 2);
    list.InsertItem(2, u"before");
    EXPECT_EQ(list.ListIndex(), 3);
    list.InsertItem(4, u"after");
    EXPECT_EQ(list.ListIndex(), 3);
    list.RemoveItem(0);
    EXPECT_EQ(list.List(list.ListIndex()), u"b");
    list.RemoveItem(3);
    EXPECT_EQ(list.List(list.ListIndex()), u"b");
    list.RemoveItem(list.ListIndex());
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(ControlsTest, DropDownListKeepsItsSelectionWhereEntriesComeAndGo) {
    DropDownList list(form);
    list.setItems({u"a", u"b", u"c"});
    list.InsertItem(0, u"first");
    EXPECT_EQ(list.ListIndex(), -1);
    list.setListIndex(2);
    list.InsertItem(1, u"before");
    EXPECT_EQ(list.Text(), u"b");
    list.InsertItem(99, u"last");
    list.RemoveItem(0);
    EXPECT_EQ(list.Text(), u"b");
    list.setItem(list.ListIndex(), u"B");
    EXPECT_EQ(list.Text(), u"B");
    list.RemoveItem(list.ListCount() - 1);
    list.RemoveItem(99);
    EXPECT_EQ(list.Text(), u"B");
    list.RemoveItem(list.ListIndex());
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(list.ListCount(), 3);
}

TEST_F(ControlsTest, ShortcutBoxTakesTheKeyThatIsPressedInIt) {
    ShortcutBox box(form);
    Button button(form, u"b");
    std::vector<Shortcut> picked;
    box.Picked = [&](const Shortcut& key) { picked.push_back(key); };
    box.Accepts = [](const Shortcut& key) { return key.shift != 0; };
    form.Show();
    box.SetFocus();
    EXPECT_EQ(box.Text(), u"None");
    const Shortcut key{u'K', control_key | shift_key};
    EXPECT_TRUE(fakes::key(form, key));
    EXPECT_EQ(box.Text(), u"Ctrl+Shift+K");
    EXPECT_EQ(box.Value(), key);
    EXPECT_TRUE(fakes::key(form, Key::f5)) << "no other control hears of it";
    EXPECT_EQ(box.Value(), key);
    EXPECT_EQ(fakes::screen().beeps, 1);
    EXPECT_TRUE(fakes::key(form, Key::del));
    EXPECT_EQ(box.Value(), Shortcut());
    EXPECT_THAT(picked, ElementsAre(key, Shortcut()));
    EXPECT_TRUE(fakes::key(form, Key::tab));
    EXPECT_TRUE(button.Focused()) << "it does not hold the keyboard";
}

TEST_F(ControlsTest, ShortcutBoxIsNotTypedInto) {
    ShortcutBox box(form);
    int picked = 0;
    box.Picked = [&](const Shortcut&) { ++picked; };
    form.Show();
    fakes::type(box, u"No"); // the system's own Backspace, where there is nothing to take away
    EXPECT_EQ(box.Text(), u"None");
    box.setValue({Key::f1, alt_key});
    EXPECT_EQ(picked, 0) << "only the user picks";
    fakes::type(box, u"Alt+F1 pasted");
    EXPECT_EQ(box.Text(), u"Alt+F1");
    EXPECT_EQ(picked, 0);
    fakes::type(box, u"Alt+F");
    EXPECT_EQ(box.Text(), u"None");
    EXPECT_EQ(picked, 1);
}

TEST_F(ControlsTest, GlobalKeyIsHeardUntilItEnds) {
    int pressed = 0;
    {
        GlobalKey key;
        key.Pressed = [&] { ++pressed; };
        EXPECT_TRUE(key.Set({Key::f2}));
        EXPECT_TRUE(fakes::pressAnywhere({Key::f2}));
        GlobalKey other;
        EXPECT_FALSE(other.Set({Key::f2})) << "it is taken";
        EXPECT_TRUE(other.Set({Key::f3}));
        EXPECT_FALSE(other.Set({Key::f2}));
        EXPECT_EQ(other.Key(), Shortcut(Key::f3)) << "the one from before stays";
        EXPECT_TRUE(key.Set({u'A', control_key}));
        EXPECT_FALSE(fakes::pressAnywhere({Key::f2}));
        EXPECT_TRUE(fakes::pressAnywhere({u'A', control_key}));
        EXPECT_TRUE(key.Set({}));
        EXPECT_FALSE(fakes::pressAnywhere({u'A', control_key}));
        EXPECT_TRUE(key.Set({Key::f2}));
    }
    EXPECT_FALSE(fakes::pressAnywhere({Key::f2}));
    EXPECT_EQ(pressed, 2);
}

TEST_F(ControlsTest, DropDownListTellsWhenItsUserHasChosen) {
    DropDownList list(form);
    list.setItems({u"a", u"b"});
    std::u16string chosen;
    list.Chosen = [&] { chosen += list.Text(); };
    list.setListIndex(0);
    EXPECT_EQ(chosen, u"");
    EXPECT_TRUE(fakes::pick(list, 1));
    EXPECT_EQ(chosen, u"b");
}

TEST_F(ControlsTest, ListTakesNoPositionThatIsNotThere) {
    ListBox list(form);
    list.InsertItem(7, u"a");
    list.InsertItem(-7, u"b");
    EXPECT_EQ(list.List(0), u"b");
    list.RemoveItem(2);
    list.RemoveItem(-1);
    list.setItem(2, u"x");
    list.RedrawItem(9);
    list.setListIndex(2);
    EXPECT_EQ(list.ListCount(), 2);
    EXPECT_EQ(list.ListIndex(), -1);
    list.onPick(5);
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(ControlsTest, ListTellsWhatTheUserDoesAndNotWhatTheProgramDoes) {
    ListBox list(form);
    list.setItems({u"a", u"b"});
    std::vector<int> picked;
    int doubled = 0, asked = 0;
    list.Click = [&] { picked.push_back(list.ListIndex()); };
    list.DblClick = [&] { ++doubled; };
    list.ContextMenu = [&] { ++asked; };
    list.setListIndex(1);
    EXPECT_TRUE(picked.empty());
    form.Show();
    EXPECT_TRUE(fakes::pick(list, 0));
    EXPECT_TRUE(fakes::doubleClick(list, 1));
    EXPECT_TRUE(fakes::askForMenu(list));
    EXPECT_THAT(picked, ElementsAre(0, 1));
    EXPECT_EQ(doubled, 1);
    EXPECT_EQ(asked, 1);
    list.setEnabled(false);
    EXPECT_FALSE(fakes::pick(list, 0));
}

TEST_F(ControlsTest, ListDrawsItsRows) {
    ListBox list(form);
    list.setItems({u"a", u"b"});
    list.DrawItem = [&](Surface& surface, int index, const ListBox::Looks& looks) {
        surface.Fill({0, 0, surface.Width(), surface.Height()}, looks.selected ? highlight : window_background);
        surface.PrintIn({1, 2, 3, 4}, list.List(index), highlight_text);
    };
    const auto drawings = fakes::drawn(list, 1, 40, 20, {true, false});
    ASSERT_EQ(drawings.size(), 2u);
    EXPECT_EQ(drawings[0].area, (Rect{0, 0, 40, 20}));
    EXPECT_EQ(drawings[0].colour, highlight);
    EXPECT_EQ(drawings[1].text, u"b");
    EXPECT_EQ(drawings[1].area, (Rect{1, 2, 3, 4}));
    EXPECT_TRUE(fakes::drawn(list, 2, 40, 20).empty());
}

TEST_F(ControlsTest, ComboBoxTellsOfTextsAndOfProposalsThatArePicked) {
    ComboBox box(form);
    std::string told;
    box.Change = [&] { told += "change "; };
    box.Picked = [&] { told += "picked "; };
    box.setItems({u"ann", u"bob"});
    EXPECT_EQ(told, "");
    box.setText(u"x");
    box.setText(u"x");
    EXPECT_EQ(told, "change ");
    form.Show();
    fakes::type(box, u"bo");
    fakes::pick(box, 1);
    fakes::pick(box, 2);
    EXPECT_EQ(told, "change change change picked ");
    EXPECT_EQ(box.Text(), u"bob");
    box.setItems({});
    EXPECT_EQ(box.Text(), u"bob");
}

TEST_F(ControlsTest, OnePageIsSeenAndTheKeyboardTurnsThem) {
    TabPages pages(form);
    TabPage one(pages, u"One"), two(pages, u"Two"), three(pages, u"Three");
    CheckBox inside(two, u"In&side");
    int turned = 0;
    pages.Click = [&] { ++turned; };
    EXPECT_EQ(pages.Selected(), 0);
    EXPECT_FALSE(inside.reachable());
    form.Show();
    EXPECT_TRUE(fakes::key(form, {Key::tab, control_key}));
    EXPECT_EQ(pages.Selected(), 1);
    EXPECT_TRUE(inside.reachable());
    EXPECT_TRUE(fakes::accelerator(form, u's'));
    EXPECT_EQ(inside.Value(), 1);
    EXPECT_TRUE(fakes::key(form, {Key::page_down, control_key}));
    EXPECT_TRUE(fakes::key(form, {Key::page_down, control_key}));
    EXPECT_EQ(pages.Selected(), 0);
    EXPECT_TRUE(fakes::key(form, {Key::tab, control_key | shift_key}));
    EXPECT_EQ(pages.Selected(), 2);
    EXPECT_EQ(turned, 4);
    pages.setSelected(3);
    pages.setSelected(2);
    EXPECT_EQ(turned, 4);
    EXPECT_FALSE(one.Visible());
    EXPECT_TRUE(three.Visible());
}

TEST_F(ControlsTest, PagesFillWhatTheTabsLeave) {
    TabPages pages(form);
    TabPage one(pages, u"One");
    pages.Move({150, 150, 3000, 1500});
    EXPECT_EQ(one.Bounds(), (Rect{0, 195, 3000, 1500 - 195}));
    EXPECT_EQ(pages.rim(), (Size{0, 195}));
}

TEST_F(ControlsTest, KeysAreHeardByWhatHasTheFocusFirst) {
    TextBox text(form, u"");
    Button ok(form, u"OK"), cancel(form, u"Cancel");
    std::string heard;
    form.DefaultButton = &ok;
    form.CancelButton = &cancel;
    ok.Click = [&] { heard += "ok "; };
    cancel.Click = [&] { heard += "cancel "; };
    text.KeyPress = [&](const Shortcut& key) {
        heard += "text ";
        return key == Shortcut{Key::enter};
    };
    form.Show();
    text.SetFocus();
    EXPECT_TRUE(fakes::key(form, {Key::enter}));
    EXPECT_TRUE(fakes::key(form, {Key::escape}));
    EXPECT_EQ(heard, "text text cancel ");
    ok.SetFocus();
    EXPECT_TRUE(fakes::key(form, {Key::enter}));
    EXPECT_EQ(heard, "text text cancel ok ");
}

TEST_F(ControlsTest, AcceleratorsOfAFormAreHeardBeforeItsControls) {
    int heard = 0;
    form.addAccelerator({Key::up, control_key}, [&] { ++heard; });
    EXPECT_TRUE(fakes::key(form, {Key::up, control_key}));
    EXPECT_FALSE(fakes::key(form, {Key::up}));
    EXPECT_EQ(heard, 1);
}

TEST_F(ControlsTest, WhatLiesInAControlIsScrolledAsItIsDrawn) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        Frame frame(form, u"", Frame::Border::none);
        Button above(frame, u""), in_part(frame, u""), inside(frame, u""), below(frame, u"");
        frame.Move({0, 180, 900, 900});
        above.Move({0, -300, 900, 300});
        in_part.Move({0, -60, 900, 300});
        inside.Move({0, 330, 900, 300});
        below.Move({0, 900, 900, 300});
        fakes::screen().moved.clear();
        frame.ScrollChildren(-120);
        EXPECT_EQ(above.Top(), -300) << "what is not to be seen stays";
        EXPECT_EQ(in_part.Top(), -180);
        EXPECT_EQ(inside.Top(), 210);
        EXPECT_EQ(below.Top(), 900);
        EXPECT_THAT(fakes::screen().moved, testing::IsEmpty()) << twips_per_pixel;
        for (const Button* button : {&above, &in_part, &inside, &below}) {
            const Rect shown = fakes::screen().bounds[button->handle()];
            EXPECT_EQ(shown.top, toPixels(180 + button->Top()) - toPixels(180)) << twips_per_pixel;
        }
        // No whole pixels: what is rounded in another way at its new place is put there.
        frame.ScrollChildren(97);
        EXPECT_EQ(inside.Top(), 307);
        EXPECT_EQ(fakes::screen().bounds[inside.handle()].top, toPixels(180 + 307) - toPixels(180)) << twips_per_pixel;
    }
}

TEST_F(ControlsTest, WheelTurnsByRowsHoweverFineItIs) {
    PictureBox box(form);
    box.onWheel(-Control::wheel_notch); // nobody listens
    std::vector<int> turned;
    box.Wheel = [&](int rows) { turned.push_back(rows); };
    box.onWheel(-Control::wheel_notch);
    box.onWheel(2 * Control::wheel_notch);
    EXPECT_THAT(turned, testing::ElementsAre(3, -6));
    turned.clear();
    for (int i = 0; i < 120; ++i) {
        box.onWheel(-1);
    }
    EXPECT_THAT(turned, testing::ElementsAre(1, 1, 1));
    turned.clear();
    box.onWheel(-39);
    box.onWheel(39);
    box.onWheel(-39);
    EXPECT_THAT(turned, testing::IsEmpty()) << "the other way begins anew";
    box.onWheel(-1);
    EXPECT_THAT(turned, testing::ElementsAre(1));
    box.onWheel(32767);
    box.onWheel(-32768);
    EXPECT_THAT(turned, testing::ElementsAre(1, -819, 819));
}

TEST_F(ControlsTest, LosingTheFocusIsTold) {
    TextBox a(form, u""), b(form, u"");
    std::string told;
    a.LostFocus = [&] { told += "lost "; };
    b.GotFocus = [&] { told += "got "; };
    a.SetFocus();
    EXPECT_TRUE(a.Focused());
    b.SetFocus();
    EXPECT_FALSE(a.Focused());
    EXPECT_EQ(told, "lost got ");
}

TEST_F(ControlsTest, ColourBehindAControlIsThatOfWhatItIsIn) {
    Frame frame(form, u"", Frame::Border::none);
    Label label(frame, u"");
    EXPECT_EQ(label.BackColor(), button_face);
    form.setBackColor(rgb(1, 2, 3));
    EXPECT_EQ(label.BackColor(), 0x030201u);
    frame.setBackColor(window_background);
    EXPECT_EQ(label.BackColor(), window_background);
    label.setForeColor(rgb(255, 0, 0));
    EXPECT_EQ(label.ForeColor(), 0x0000FFu);
}

TEST_F(ControlsTest, TrayIconIsChangedOnlyWhereSomethingIsDifferent) {
    TrayIcon icon(form);
    EXPECT_TRUE(icon.Show({u"program"}, u"Signed out"));
    EXPECT_EQ(fakes::screen().tray_icons.size(), 1u);
    EXPECT_TRUE(icon.Show({u"program"}, u"Ann, online"));
    EXPECT_EQ(icon.Tip(), u"Ann, online");
    EXPECT_EQ(fakes::screen().tray_icons.size(), 1u);
    icon.Hide();
    EXPECT_TRUE(fakes::screen().tray_icons.empty());
    EXPECT_FALSE(icon.Shown());
    fakes::screen().tray = false;
    EXPECT_FALSE(icon.Show({u"program"}, u"x"));
    EXPECT_FALSE(icon.Shown());
}

TEST_F(ControlsTest, TrayIconGoesWithItsOwner) {
    { TrayIcon(form).Show({u"program"}, u""); }
    EXPECT_TRUE(fakes::screen().tray_icons.empty());
}

TEST_F(ControlsTest, ProgressStaysBetweenNothingAndAll) {
    ProgressBar bar(form);
    bar.setMax(3);
    bar.setValue(7);
    EXPECT_EQ(bar.Value(), 3);
    bar.setMax(0);
    EXPECT_EQ(bar.Max(), 1);
    EXPECT_EQ(bar.Value(), 1);
    bar.setValue(-2);
    EXPECT_EQ(bar.Value(), 0);
}

TEST_F(ControlsTest, OwnerDrawnButtonIsDrawnAndStillPressed) {
    Button button(form, u"&Name");
    int pressed = 0;
    button.Click = [&] { ++pressed; };
    button.setDraw([](Surface& surface, const Button::Looks& looks) {
        surface.Fill({0, 0, surface.Width(), surface.Height()}, looks.pressed ? highlight : button_face);
    });
    EXPECT_EQ(fakes::drawn(button, 10, 5, {false, true}).front().colour, highlight);
    form.Show();
    EXPECT_TRUE(fakes::click(button));
    EXPECT_TRUE(fakes::accelerator(form, u'n'));
    EXPECT_EQ(pressed, 2);
}

TEST_F(ControlsTest, WhatIsPostedIsDoneInOrder) {
    std::string done;
    post([&] {
        done += "a";
        post([&] { done += "c"; });
    });
    post([&] { done += "b"; });
    EXPECT_EQ(done, "");
    runMessageLoop();
    EXPECT_EQ(done, "abc");
}

TEST_F(ControlsTest, TheUserIsNoticedByWhatIsPressed) {
    Button button(form, u"x");
    CheckBox box(form, u"y");
    Menu menu(form, u"m");
    MenuItem entry(menu, u"e");
    int acted = 0;
    form.UserActs = [&] { ++acted; };
    form.Show();
    box.setValue(1);
    EXPECT_EQ(acted, 0);
    fakes::click(button);
    fakes::key(form, {Key::tab});
    fakes::choose(entry);
    EXPECT_EQ(acted, 3);
}

} // namespace
} // namespace murmelix::ui
