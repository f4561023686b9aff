// What controls tell a screen reader.
#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"
#include "ui/frame.h"

namespace murmelix::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SpokenWindow : Form {
    SpokenWindow() : Form(nullptr, u"A &Window", FormStyle::dialog) {}
    Label NameLbl{*this, u"Your &name:"};
    TextBox NameTxt{*this, u"Kim"};
    TextBox OtherTxt{*this, u""};
    Label KindLbl{*this, u"&Kind"};
    Frame Panel{*this, u"", Frame::Border::none};
    PictureBox Picture{Panel};
    DropDownList KindList{Panel};
    CheckBox Check{*this, u"Salt && &pepper"};
    Label Note{*this, u"Done."};
};

class AccessibleTest : public testing::Test {
  protected:
    AccessibleTest() { fakes::screen() = {}; }
    std::vector<fakes::Told> takeTold() { return std::exchange(fakes::screen().told, {}); }
    SpokenWindow window;
};

TEST_F(AccessibleTest, CaptionsAreReadWithoutTheirMarks) {
    EXPECT_EQ(spoken(u"&Open && close:"), u"Open & close");
    EXPECT_EQ(spoken(u"Tom & Jerry: ", false), u"Tom & Jerry");
    EXPECT_EQ(spoken(u"odd &"), u"odd");
    EXPECT_EQ(spoken(u""), u"");
    EXPECT_EQ(window.AccessibleName(), u"A Window");
    EXPECT_EQ(window.Check.AccessibleName(), u"Salt & pepper");
}

TEST_F(AccessibleTest, AFieldIsCalledByTheLabelBeforeIt) {
    EXPECT_EQ(window.NameTxt.AccessibleName(), u"Your name");
    EXPECT_EQ(window.NameTxt.accessKey(), u'N');
    EXPECT_EQ(window.OtherTxt.AccessibleName(), u"") << "the label is that of the field between them";
    EXPECT_EQ(window.OtherTxt.accessKey(), 0);
    EXPECT_EQ(window.KindList.AccessibleName(), u"Kind") << "around what takes no keyboard, and into what holds it";
    window.KindLbl.setVisible(false);
    EXPECT_EQ(window.KindList.AccessibleName(), u"");
}

TEST_F(AccessibleTest, AGivenNameGoesFirst) {
    window.NameTxt.setAccessibleName(u"Name of the account");
    EXPECT_EQ(window.NameTxt.AccessibleName(), u"Name of the account");
    window.Check.setAccessibleName(u"Spices");
    EXPECT_EQ(window.Check.AccessibleName(), u"Spices");
}

TEST_F(AccessibleTest, ValuesAreToldAndSecretsAreNot) {
    EXPECT_EQ(window.NameTxt.accessibleValue(), u"Kim");
    window.NameTxt.setMasked();
    EXPECT_EQ(window.NameTxt.accessibleValue(), u"");
    EXPECT_TRUE(window.NameTxt.accessible().masked);
    EXPECT_FALSE(window.Check.accessible().checked);
    EXPECT_EQ(window.Check.accessible().action, u"Check");
    window.Check.setValue(1);
    EXPECT_TRUE(window.Check.accessible().checked);
    EXPECT_EQ(window.Check.accessible().action, u"Uncheck");
    ProgressBar bar(window);
    bar.setMax(8);
    bar.setValue(2);
    EXPECT_EQ(bar.accessibleValue(), u"25%");
}

TEST_F(AccessibleTest, APictureThatLooksLikeSomethingElseIsThat) {
    EXPECT_EQ(window.Picture.accessible().role, Role::picture);
    window.Picture.setLooksLike(Role::progress_bar, u"5%");
    EXPECT_EQ(window.Picture.accessible().role, Role::progress_bar);
    EXPECT_EQ(window.Picture.accessibleValue(), u"5%");
    takeTold();
    window.Picture.setLooksLike(Role::progress_bar, u"5%");
    EXPECT_THAT(takeTold(), IsEmpty());
    window.Picture.setLooksLike(Role::progress_bar, u"6%");
    EXPECT_THAT(takeTold(), ElementsAre(fakes::Told{window.Picture.handle(), AccessibleEvent::value, no_part}));
}

TEST_F(AccessibleTest, NewCaptionsAreToldAndNewsAreReadOut) {
    takeTold();
    window.Note.setCaption(u"Done.");
    EXPECT_THAT(takeTold(), IsEmpty()) << "nothing has changed";
    window.Note.setCaption(u"Failed.");
    EXPECT_THAT(takeTold(), ElementsAre(fakes::Told{window.Note.handle(), AccessibleEvent::name, no_part}));
    window.Note.setTellsNews();
    window.Note.setCaption(u"Done.");
    EXPECT_THAT(takeTold(), ElementsAre(fakes::Told{window.Note.handle(), AccessibleEvent::news, no_part}));
}

TEST_F(AccessibleTest, RowsThatComeAndGoAreTold) {
    ListBox list(window);
    takeTold();
    list.setItems({u"one", u"two"});
    list.setItem(1, u"2");
    list.RemoveItem(0);
    using Told = fakes::Told;
    EXPECT_THAT(takeTold(), ElementsAre(Told{list.handle(), AccessibleEvent::parts, no_part},
                                        Told{list.handle(), AccessibleEvent::name, 1},
                                        Told{list.handle(), AccessibleEvent::parts, no_part}));
    AccessibleParts& parts = *list.parts();
    EXPECT_EQ(parts.partCount(), 1);
    EXPECT_EQ(parts.partName(0), u"2");
    EXPECT_EQ(parts.selectedPart(), -1);
    int picked = 0, opened = 0;
    list.Click = [&] { ++picked; };
    parts.selectPart(0);
    parts.selectPart(0);
    EXPECT_EQ(picked, 1) << "as the user selects: once";
    EXPECT_EQ(parts.partAction(), u"Select");
    list.DblClick = [&] { ++opened; };
    EXPECT_EQ(parts.partAction(), u"Double Click");
    parts.doPart(0);
    EXPECT_EQ(opened, 1);
}

} // namespace
} // namespace murmelix::ui
