#include <gmock/gmock.h>

#include "tests/fakes/ui/windows.h"

namespace murmelix::ui {
namespace {

using testing::ElementsAre;

class MenuTest : public testing::Test {
  protected:
    struct Window : Form {
        Window() : Form(nullptr, u"", FormStyle::window) { fakes::screen() = {}; }
        Button Save{*this, u"&File it"};
        TextBox Text{*this, u""};
        Menu File{*this, u"&File"};
        MenuItem New{File, u"&New", {u'N', control_key}};
        Menu Recent{File, u"&Recent"};
        MenuItem Rename{File, u"Re&name", {Key::f2}};
        Menu Hidden{*this}; // shown where it is asked for
        MenuItem Leave{Hidden, u"&Leave"};
    } window;

    MenuTest() {
        for (MenuItem* item : {&window.New, &window.Rename, &window.Leave}) {
            item->Click = [this, item] { chosen.push_back(item); };
        }
    }
    std::vector<MenuItem*> chosen;
};

TEST_F(MenuTest, ShortcutsAreShownBehindTheCaption) {
    EXPECT_EQ(window.New.text(), u"&New\tCtrl+N");
    EXPECT_EQ(window.Rename.text(), u"Re&name\tF2");
    EXPECT_EQ(window.Leave.text(), u"&Leave");
    EXPECT_EQ(nameOf({Key::page_down, control_key | shift_key}), u"Ctrl+Shift+PgDn");
    EXPECT_EQ(nameOf({Key::del, alt_key}), u"Alt+Del");
}

TEST_F(MenuTest, ShortcutsAreHeardWhereverTheFocusIs) {
    window.Text.SetFocus();
    EXPECT_TRUE(fakes::key(window, {u'N', control_key}));
    EXPECT_TRUE(fakes::key(window, {Key::f2}));
    EXPECT_FALSE(fakes::key(window, {u'N', 0}));
    EXPECT_FALSE(fakes::key(window, {u'N', control_key | shift_key}));
    EXPECT_FALSE(fakes::key(window, {Key::f2, shift_key}));
    EXPECT_THAT(chosen, ElementsAre(&window.New, &window.Rename));
}

TEST_F(MenuTest, ShortcutOfWhatIsDisabledDoesNothing) {
    window.New.setEnabled(false);
    EXPECT_TRUE(fakes::key(window, {u'N', control_key}));
    window.New.setEnabled(true);
    window.File.setEnabled(false);
    EXPECT_TRUE(fakes::key(window, {u'N', control_key}));
    EXPECT_TRUE(chosen.empty());
}

TEST_F(MenuTest, ShortcutLooksAtTheMenuAsItWouldOpen) {
    window.File.Popup = [this] { window.New.setEnabled(false); };
    fakes::key(window, {u'N', control_key});
    EXPECT_TRUE(chosen.empty());
}

TEST_F(MenuTest, LetterOfTheMenuBarIsTheMenus) {
    EXPECT_FALSE(fakes::accelerator(window, u'f')); // the system opens the menu
    EXPECT_EQ(window.focused(), nullptr);
    window.File.setEnabled(false);
    EXPECT_TRUE(fakes::accelerator(window, u'F'));
    EXPECT_EQ(window.focused(), &window.Save);
}

TEST_F(MenuTest, MenuThatIsNotInTheBarHasNoLetterThere) {
    Button leave(window, u"&Leave");
    EXPECT_TRUE(fakes::accelerator(window, u'l'));
    EXPECT_EQ(window.focused(), &leave);
}

TEST_F(MenuTest, ItemsComeAndGo) {
    int filled = 0;
    window.Recent.Popup = [&] {
        window.Recent.Clear();
        window.Recent.AddItem(u"One && only", [&] { ++filled; });
        window.Recent.AddSeparator();
        window.Recent.AddItem(u"Other").setChecked(true);
    };
    MenuItem* const one = fakes::find(window.Recent, u"One & only");
    ASSERT_TRUE(one);
    EXPECT_EQ(window.Recent.items().size(), 3u);
    EXPECT_TRUE(window.Recent.items()[1]->separator());
    EXPECT_TRUE(window.Recent.items()[2]->Checked());
    one->onClick();
    EXPECT_EQ(filled, 1);
    EXPECT_EQ(fakes::find(window.Recent, u"Two"), nullptr);
    EXPECT_EQ(window.Recent.items().size(), 3u);
}

TEST_F(MenuTest, PositionsFollowWhatIsRemoved) {
    MenuItem& added = window.File.AddItem(u"x");
    Menu below(window.File, u"Below");
    MenuItem last(window.File, u"Last");
    EXPECT_EQ(window.Recent.position(), 1);
    EXPECT_EQ(added.position(), 3);
    EXPECT_EQ(below.position(), 4);
    EXPECT_EQ(last.position(), 5);
    window.File.Clear();
    EXPECT_EQ(below.position(), 3);
    EXPECT_EQ(last.position(), 4);
    EXPECT_EQ(window.Rename.position(), 2);
}

TEST_F(MenuTest, OneItemIsTheDefaultOne) {
    window.New.setDefault();
    window.Rename.setDefault();
    EXPECT_FALSE(window.New.Default());
    EXPECT_TRUE(window.Rename.Default());
}

TEST_F(MenuTest, PopupMenuIsFilledBeforeItShows) {
    bool filled = false;
    window.Hidden.Popup = [&] { filled = true; };
    window.PopupMenu(window.Hidden);
    EXPECT_TRUE(filled);
    EXPECT_THAT(fakes::screen().popups, ElementsAre(&window.Hidden));
    EXPECT_TRUE(fakes::choose(window.Leave));
    EXPECT_THAT(chosen, ElementsAre(&window.Leave));
}

TEST_F(MenuTest, HandlerMayRemoveTheItemThatWasChosen) {
    window.Recent.AddItem(u"Once", [this] { window.Recent.Clear(); });
    window.Recent.items().front()->onClick();
    EXPECT_TRUE(window.Recent.items().empty());
}

TEST_F(MenuTest, MenuOfTheBarWithoutACaptionIsChosenFromThoughDisabled) {
    Menu tray(window, u"");
    MenuItem stop(tray, u"Stop", {Key::f9});
    tray.setEnabled(false);
    EXPECT_TRUE(stop.reachable());
    tray.setCaption(u"Tray");
    EXPECT_FALSE(stop.reachable());
}

} // namespace
} // namespace murmelix::ui
