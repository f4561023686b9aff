// Rows and columns that measure what is in them. On the imitated screen a letter is 6 pixels (90 twips) wide and a line
// 13 pixels (195 twips) high.
#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"
#include "ui/layout.h"

namespace murmelix::ui {
namespace {

class LayoutTest : public testing::Test {
  protected:
    LayoutTest() { fakes::screen() = {}; }

    Form form{nullptr, u"", FormStyle::window};
    Label a{form, u"12345"};      // 450 twips wide
    Label b{form, u"1234567890"}; // 900 twips wide
    Label c{form, u"1"};          // 90 twips wide
};

TEST_F(LayoutTest, RowsStandBelowOneAnotherAndFillTheBreadth) {
    const Layout layout = rows({item(a), item(b)}).gap(50).pad(10, 20, 30, 40);
    EXPECT_EQ(layout.needed(), (Size{900 + 10 + 30, 2 * 195 + 50 + 20 + 40}));
    layout.place({100, 200, 1000, layout.needed().height});
    EXPECT_EQ(a.Bounds(), (Rect{110, 220, 960, 195}));
    EXPECT_EQ(b.Bounds(), (Rect{110, 220 + 195 + 50, 960, 195}));
}

TEST_F(LayoutTest, ColumnsStandBesideOneAnother) {
    const Layout layout = columns({item(a), space(60), item(b)}).gap(20);
    EXPECT_EQ(layout.needed(), (Size{450 + 20 + 60 + 20 + 900, 195}));
    layout.place({0, 0, 3000, 400});
    EXPECT_EQ(a.Bounds(), (Rect{0, 0, 450, 400}));
    EXPECT_EQ(b.Bounds(), (Rect{450 + 20 + 60 + 20, 0, 900, 400}));
}

TEST_F(LayoutTest, WhatGrowsSharesWhatIsLeft) {
    columns({item(a).growing(), item(b), item(c).growing(3)}).place({0, 0, 450 + 900 + 90 + 400, 195});
    EXPECT_EQ(a.Bounds(), (Rect{0, 0, 550, 195}));
    EXPECT_EQ(b.Bounds(), (Rect{550, 0, 900, 195}));
    EXPECT_EQ(c.Bounds(), (Rect{1450, 0, 390, 195}));
}

TEST_F(LayoutTest, WhatGrowsAlsoShrinksWhereThereIsTooLittleRoomButNotBelowNothing) {
    columns({item(a), item(b).growing()}).place({0, 0, 800, 195});
    EXPECT_EQ(b.Bounds(), (Rect{450, 0, 350, 195}));
    columns({item(a), item(b).growing()}).place({0, 0, 300, 195});
    EXPECT_EQ(b.Width(), 0);
}

TEST_F(LayoutTest, StretchPushesWhatIsBehindItToTheEnd) {
    columns({stretch(), item(a), item(c)}).place({0, 0, 1000, 195});
    EXPECT_EQ(a.Left(), 1000 - 90 - 450);
    EXPECT_EQ(c.Left(), 1000 - 90);
    rows({item(a), stretch(), item(b)}).place({0, 0, 900, 1000});
    EXPECT_EQ(b.Top(), 1000 - 195);
}

TEST_F(LayoutTest, AlignedPartsKeepTheirBreadth) {
    rows({item(a).atStart(), item(b).centered(), item(c).atEnd()}).place({0, 0, 1000, 600});
    EXPECT_EQ(a.Bounds(), (Rect{0, 0, 450, 195}));
    EXPECT_EQ(b.Bounds(), (Rect{50, 195, 900, 195}));
    EXPECT_EQ(c.Bounds(), (Rect{910, 390, 90, 195}));
    columns({item(a).centered()}).place({0, 0, 450, 395});
    EXPECT_EQ(a.Bounds(), (Rect{0, 100, 450, 195}));
}

TEST_F(LayoutTest, WrappedTextIsAsHighAsItsLines) {
    const Layout layout = rows({item(b).wrapped(), item(c)});
    EXPECT_EQ(layout.needed(450), (Size{450, 3 * 195}));
    layout.place({0, 0, 450, 3 * 195});
    EXPECT_EQ(b.Bounds(), (Rect{0, 0, 450, 2 * 195}));
    EXPECT_EQ(c.Top(), 2 * 195);
}

TEST_F(LayoutTest, LeastAndWidestLimitWhatIsMeasured) {
    EXPECT_EQ(item(a).least(600, 300).needed(), (Size{600, 300}));
    EXPECT_EQ(item(b).wrapped().widest(450).needed(), (Size{450, 2 * 195}));
    EXPECT_EQ(item(b).least(100, 100).needed(), (Size{900, 195}));
}

TEST_F(LayoutTest, WhatIsInAFrameHasItsPlaceWithinIt) {
    Frame frame(form, u"F");
    Label inside(frame, u"12345");
    const Layout layout = within(frame, rows({item(inside)}).pad(100));
    EXPECT_EQ(layout.needed(), (Size{650, 395}));
    layout.place({1000, 2000, 800, 400});
    EXPECT_EQ(frame.Bounds(), (Rect{1000, 2000, 800, 400}));
    EXPECT_EQ(inside.Bounds(), (Rect{100, 100, 600, 195}));
}

TEST_F(LayoutTest, AFormOfFixedSizeFollowsItsLayout) {
    fit(form, rows({item(b).wrapped()}).pad(150), 750);
    EXPECT_EQ(form.ScaleWidth(), 750);
    EXPECT_EQ(form.ScaleHeight(), 2 * 195 + 300);
    EXPECT_EQ(b.Bounds(), (Rect{150, 150, 450, 2 * 195}));
}

TEST_F(LayoutTest, AFormThatIsResizedIsFilled) {
    struct Sizable : Form {
        Sizable() : Form(nullptr, u"", FormStyle::sizable) { setLeastScale(600, 300); }
        void layOut() override { fill(*this, rows({item(list).growing(), item(bottom)})); }
        ListBox list{*this};
        Label bottom{*this, u"x"};
    } sizable;
    fakes::resize(sizable, 3000, 1500);
    EXPECT_EQ(sizable.list.Bounds(), (Rect{0, 0, 3000, 1500 - 195}));
    EXPECT_EQ(sizable.bottom.Bounds(), (Rect{0, 1500 - 195, 3000, 195}));
    fakes::resize(sizable, 100, 100);
    EXPECT_EQ(sizable.ScaleWidth(), 600);
    EXPECT_EQ(sizable.list.Height(), 300 - 195);
}

} // namespace
} // namespace murmelix::ui
