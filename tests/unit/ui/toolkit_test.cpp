// What the window toolkit decides by itself.
#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"
#include "ui/form.h"
#include "ui/screen.h"
#include "ui/timer.h"

namespace murmelix::ui {
namespace {

class Window : public Form {
  public:
    Window() : Form(nullptr, u"", FormStyle::window) {
        fakes::screen() = {};
        First.Click = [this] { clicked += "first "; };
        Second.Click = [this] { clicked += "second "; };
        Check.Click = [this] { clicked += "check "; };
        Other.Click = [this] { clicked += "other "; };
        First.Move({100, 100, 500, 100});
    }
    Button First{*this, u"&Save"};
    Frame Group{*this, u"&Group"};
    CheckBox Check{Group, u"&Check && more"};
    Button Second{Group, u"&Send"};
    Label Heading{*this, u"&Text"};
    TextBox Text{*this, u"&S"};
    Button Other{*this, u"Plain"};
    std::string clicked;
};

TEST(Toolkit, TwipsFollowTheResolution) {
    for (const auto& [twips_per_pixel, pixels] : {std::pair{15.0, 100}, {12.0, 125}, {10.0, 150}, {7.5, 200}}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        EXPECT_EQ(toPixels(1500), pixels);
        EXPECT_EQ(toTwips(pixels), 1500);
    }
    fakes::screen() = {};
    EXPECT_EQ(toPixels(-1500), -100);
}

TEST(Toolkit, WhatStandsOffTheScreenIsBroughtOntoIt) {
    fakes::screen().work_area = {100, -50, 800, 600};
    for (const auto& [place, brought] : {std::pair<Rect, Rect>{{200, 10, 300, 200}, {200, 10, 300, 200}},
                                         {{-5000, 9000, 300, 200}, {100, 350, 300, 200}},
                                         {{850, -60, 300, 200}, {600, -50, 300, 200}},
                                         {{0, 0, 5000, 700}, {100, -50, 800, 600}},
                                         {{100, -50, 800, 600}, {100, -50, 800, 600}}}) {
        EXPECT_EQ(onScreen(place), brought) << place.left << " " << place.top;
    }
    fakes::screen() = {};
}

TEST(Toolkit, TabGoesThroughTheControlsInOrderAndRound) {
    Window window;
    window.Show();
    EXPECT_EQ(window.focused(), &window.First);
    for (const Control* next :
         std::vector<Control*>{&window.Check, &window.Second, &window.Text, &window.Other, &window.First}) {
        EXPECT_TRUE(window.onKey(Key::tab, false));
        EXPECT_EQ(window.focused(), next);
    }
    window.onKey(Key::tab, true);
    EXPECT_EQ(window.focused(), &window.Other);
}

TEST(Toolkit, TabPassesWhatCannotBeReached) {
    Window window;
    window.Show();
    window.Group.setEnabled(false);
    window.Text.setVisible(false);
    window.onKey(Key::tab, false);
    EXPECT_EQ(window.focused(), &window.Other);
}

TEST(Toolkit, AcceleratorPressesAndGoesRoundAmongEquals) {
    Window window;
    window.Show();
    EXPECT_TRUE(window.onMnemonicKey(u's'));
    EXPECT_EQ(window.clicked, "second ");
    EXPECT_EQ(window.focused(), &window.Second);
    EXPECT_TRUE(window.onMnemonicKey(u'S'));
    EXPECT_EQ(window.clicked, "second first ");
    EXPECT_FALSE(window.onMnemonicKey(u'x'));
    EXPECT_FALSE(window.onMnemonicKey(u'&'));
}

TEST(Toolkit, AcceleratorTogglesACheckBox) {
    Window window;
    window.onMnemonicKey(u'c');
    EXPECT_EQ(window.Check.Value(), 1);
    EXPECT_EQ(window.clicked, "check ");
}

TEST(Toolkit, AcceleratorOfALabelOrFrameGoesToTheControlAfterIt) {
    Window window;
    window.onMnemonicKey(u't');
    EXPECT_EQ(window.focused(), &window.Text);
    window.onMnemonicKey(u'g');
    EXPECT_EQ(window.focused(), &window.Check);
    EXPECT_EQ(window.clicked, "");
}

TEST(Toolkit, PanelInFrontKeepsAcceleratorsAndFocusFromWhatItCovers) {
    Window window;
    Frame panel(window, u"", Frame::Border::none);
    Button inside(panel, u"&Sign in");
    std::string pressed;
    inside.Click = [&] { pressed += "inside"; };
    panel.Move({0, 0, 1000, 1000});
    window.First.Move({100, 100, 500, 100});
    window.Group.Move({0, 300, 900, 600});
    EXPECT_FALSE(window.First.reachable());
    EXPECT_FALSE(window.Second.reachable());
    window.onMnemonicKey(u's');
    EXPECT_EQ(pressed, "inside");
    panel.setVisible(false);
    EXPECT_TRUE(window.First.reachable());
}

TEST(Toolkit, EnterPressesTheFocusedButtonElseTheDefaultOne) {
    Window window;
    window.Show();
    window.DefaultButton = &window.Other;
    window.Text.SetFocus();
    EXPECT_TRUE(window.onKey(Key::enter, false));
    window.Second.SetFocus();
    EXPECT_TRUE(window.onKey(Key::enter, false));
    EXPECT_EQ(window.clicked, "other second ");
    window.DefaultButton = nullptr;
    window.Text.SetFocus();
    EXPECT_FALSE(window.onKey(Key::enter, false));
}

TEST(Toolkit, EscapePressesTheCancelButton) {
    Window window;
    EXPECT_FALSE(window.onKey(Key::escape, false));
    window.CancelButton = &window.First;
    EXPECT_TRUE(window.onKey(Key::escape, false));
    EXPECT_EQ(window.clicked, "first ");
}

TEST(Toolkit, EscapeWithoutACancelButtonIsTheFormsOwn) {
    struct Closing : Form {
        Closing() : Form(nullptr, u"", FormStyle::dialog) {}
        bool onEscape() override { return asked = true; }
        bool asked = false;
    } form;
    EXPECT_TRUE(form.onKey(Key::escape, false));
    EXPECT_TRUE(form.asked);
}

TEST(Toolkit, ArrowsGoRoundAmongTheButtonsAndBoxesOfAFrame) {
    Window window;
    window.Check.SetFocus();
    for (const auto& [key, next] : std::vector<std::pair<Key, Control*>>{{Key::down, &window.Second},
                                                                         {Key::right, &window.Check},
                                                                         {Key::up, &window.Second},
                                                                         {Key::left, &window.Check}}) {
        EXPECT_TRUE(window.onKey(key, false));
        EXPECT_EQ(window.focused(), next);
    }
    EXPECT_EQ(window.clicked, "");
    window.Text.SetFocus();
    EXPECT_FALSE(window.onKey(Key::left, false)) << "the text has use for them itself";
    EXPECT_EQ(window.focused(), &window.Text);
}

TEST(Toolkit, FocusLeavesWhatCanNoMoreBeReached) {
    Window window;
    window.Show();
    EXPECT_EQ(window.focused(), &window.First);
    window.First.setEnabled(false);
    EXPECT_EQ(window.focused(), &window.Check);
    window.Group.setVisible(false);
    EXPECT_EQ(window.focused(), &window.Text);
    window.Text.setEnabled(false);
    EXPECT_EQ(window.focused(), &window.Other);
    window.Group.setVisible(true);
    window.Other.setVisible(false);
    EXPECT_EQ(window.focused(), &window.Check) << "round to the beginning";
    window.Group.setEnabled(false);
    EXPECT_EQ(window.focused(), nullptr);
    EXPECT_TRUE(window.onKey(Key::tab, false));
    window.Text.setEnabled(true);
    EXPECT_EQ(window.focused(), &window.Text) << "the first that can be reached again";
}

TEST(Toolkit, FocusGoesIntoAPanelThatCoversIt) {
    Window window;
    window.Show();
    Frame panel(window, u"", Frame::Border::none);
    Button inside(panel, u"&Here");
    panel.setVisible(false);
    panel.Move({0, 0, 1000, 1000});
    inside.Move({10, 10, 100, 100});
    for (Control* control : std::initializer_list<Control*>{&window.Text, &window.Other, &window.Group}) {
        control->Move({100, 300, 500, 100});
    }
    EXPECT_EQ(window.focused(), &window.First);
    panel.setVisible(true);
    EXPECT_EQ(window.focused(), &inside);
}

TEST(Toolkit, LetterMarksNothingWhereAmpersandsAreLetters) {
    Window window;
    window.Group.setUseMnemonic(false);
    EXPECT_FALSE(window.onMnemonicKey(u'g'));
    window.Group.setUseMnemonic(true);
    EXPECT_TRUE(window.onMnemonicKey(u'g'));
}

TEST(Toolkit, EdgesThatMeetInTwipsMeetInPixelsHoweverDeep) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0, 7.5}) {
        Window window;
        fakes::screen().twips_per_pixel = twips_per_pixel;
        Frame inner(window.Group, u"", Frame::Border::none);
        Button filling(inner, u"");
        for (int offset = 0; offset < 40; ++offset) {
            window.Group.Move({offset, offset, 1000, 1000});
            inner.Move({103, 107, 501, 499});
            filling.Move({0, 0, 501, 499});
            const Rect& outside = fakes::screen().bounds[inner.handle()];
            EXPECT_EQ(fakes::screen().bounds[filling.handle()], (Rect{0, 0, outside.width, outside.height}))
                << twips_per_pixel << " " << offset;
        }
        window.Group.Move({7, 7, 1000, 1000}); // takes along what is in it
        const Rect& outside = fakes::screen().bounds[inner.handle()];
        EXPECT_EQ(fakes::screen().bounds[filling.handle()], (Rect{0, 0, outside.width, outside.height}));
    }
    fakes::screen() = {};
}

TEST(Toolkit, EverythingTakesItsPlaceAnewWhenTheResolutionChanges) {
    Window window;
    window.Check.Move({150, 300, 1500, 270});
    EXPECT_EQ(fakes::screen().bounds[window.Check.handle()], (Rect{10, 20, 100, 18}));
    fakes::screen().twips_per_pixel = 7.5;
    window.onSettingsChange();
    EXPECT_EQ(fakes::screen().bounds[window.Check.handle()], (Rect{20, 40, 200, 36}));
    fakes::screen() = {};
}

TEST(Toolkit, CaptionIsMeasuredInTwips) {
    Window window;
    EXPECT_EQ(window.Heading.sizeFor(u"four"), (Size{4 * 6 * 15, 13 * 15}));
    EXPECT_EQ(window.Heading.sizeFor(u"eight   ", 4 * 6 * 15), (Size{4 * 6 * 15, 2 * 13 * 15})) << "in two lines";
    EXPECT_EQ(window.Heading.neededSize(), window.Heading.sizeFor(u"&Text"));
}

TEST(Toolkit, ItemsInOneGoAreSelectedFromAsOthers) {
    Window window;
    DropDownList list(window);
    int clicks = 0;
    list.Click = [&] { ++clicks; };
    list.AddItem(u"old");
    list.setListIndex(0);
    for (int times = 0; times < 2; ++times) {
        list.setItems({u"a", u"b"});
        EXPECT_EQ(list.ListIndex(), -1);
        list.setListIndex(1);
        EXPECT_EQ(list.Text(), u"b");
    }
    EXPECT_EQ(clicks, 3);
}

TEST(Toolkit, CheckBoxRaisesClickOnlyWhenItsValueChanges) {
    Window window;
    window.Check.setValue(0);
    EXPECT_EQ(window.clicked, "");
    window.Check.setValue(-1);
    EXPECT_EQ(window.Check.Value(), 1);
    window.Check.setValue(1);
    EXPECT_EQ(window.clicked, "check ");
}

TEST(Toolkit, TextBoxRaisesChangeOnlyWhenItsTextChanges) {
    Window window;
    int changes = 0;
    window.Text.Change = [&] { ++changes; };
    window.Text.setText(u"&S");
    EXPECT_EQ(changes, 0);
    window.Text.setText(u"x");
    window.Text.onText(u"x");
    window.Text.onText(u"xy");
    EXPECT_EQ(changes, 2);
}

TEST(Toolkit, DropDownListSelectsOnlyWhatIsThere) {
    Window window;
    DropDownList list(window);
    int clicks = 0;
    list.Click = [&] { ++clicks; };
    list.AddItem(u"a");
    list.AddItem(u"b");
    list.setListIndex(1);
    list.setListIndex(1);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(list.Text(), u"b");
    list.setListIndex(7);
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(list.Text(), u"");
}

TEST(Toolkit, ScrollBarStaysInItsRange) {
    Window window;
    ScrollBar bar(window);
    int changes = 0;
    bar.Change = [&] { ++changes; };
    bar.setRange(5, 3);
    bar.setValue(9);
    EXPECT_EQ(bar.Value(), 5);
    bar.setValue(-1);
    EXPECT_EQ(bar.Value(), 0);
    bar.setValue(4);
    bar.setRange(2, 3);
    EXPECT_EQ(bar.Value(), 2);
    EXPECT_EQ(changes, 4);
    bar.setRange(-3, 0);
    EXPECT_EQ(bar.Max(), 0);
}

TEST(Toolkit, FocusIsAnnouncedOnceAControl) {
    Window window;
    int times = 0;
    window.Text.GotFocus = [&] { ++times; };
    window.Text.SetFocus();
    window.Text.SetFocus();
    window.First.SetFocus();
    window.Text.SetFocus();
    EXPECT_EQ(times, 2);
}

TEST(Toolkit, TickNeverComesInsideAnother) {
    Timer timer(10);
    int depth = 0, ticks = 0;
    timer.Tick = [&] {
        ++ticks;
        EXPECT_EQ(++depth, 1);
        timer.onTick();
        --depth;
    };
    timer.onTick();
    EXPECT_EQ(ticks, 0) << "it does not run yet";
    timer.setEnabled(true);
    timer.onTick();
    timer.onTick();
    EXPECT_EQ(ticks, 2);
}

TEST(Toolkit, TimerRunsOnAfterATickThatThrew) {
    Timer timer(10);
    timer.setEnabled(true);
    timer.Tick = [] { throw 1; };
    EXPECT_THROW(timer.onTick(), int);
    EXPECT_THROW(timer.onTick(), int);
}

TEST(Toolkit, UnloadedFormIsLoadedAgainWhenItIsShown) {
    struct Counting : Form {
        Counting() : Form(nullptr, u"", FormStyle::dialog) {}
        void Form_Load() override { ++loads; }
        int loads = 0;
    } form;
    form.Show();
    form.Hide();
    form.Show();
    EXPECT_EQ(form.loads, 1);
    form.Unload();
    EXPECT_FALSE(form.Visible());
    form.Unload();
    form.Show();
    EXPECT_EQ(form.loads, 2);
}

} // namespace
} // namespace murmelix::ui
