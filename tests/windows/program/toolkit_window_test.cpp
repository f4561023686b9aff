// The toolkit's real windows: what input as messages does to them.
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/text.h"
#include "platform/ui/form.h"
#include "platform/ui/screen.h"
#include "platform/ui/timer.h"
#include "tests/windows/program/window_test.h"

namespace murmelix {
namespace {

using namespace test;

class Window : public ui::Form {
  public:
    Window() : Form(nullptr, u"Test", ui::FormStyle::window) {
        setScale(6000, 4500);
        Group.Move({150, 150, 3000, 2000});
        Push.Move({150, 300, 1200, 375});
        Check.Move({150, 750, 1200, 270});
        Text.Move({150, 1100, 1200, 330});
        List.Move({3300, 300, 1500, 330});
        Push.Click = [this] { events += "push "; };
        Check.Click = [this] { events += "check "; };
        Text.Change = [this] { events += "text:" + toUtf8(Text.Text()) + " "; };
        List.Click = [this] { events += "list:" + toUtf8(List.Text()) + " "; };
        Item.Click = [this] { events += "item "; };
        Show();
        serveAll();
    }
    void onClose() override { events += "close "; }

    ui::Menu File{*this, u"&File"};
    ui::MenuItem Item{File, u"&Item"};
    ui::Frame Group{*this, u"Group"};
    ui::Button Push{Group, u"&Push"};
    ui::CheckBox Check{Group, u"&Check"};
    ui::TextBox Text{Group, u""};
    ui::DropDownList List{*this};
    std::string events;
};

TEST(Windows, ButtonIsPressedByMouseKeyAndAccelerator) {
    Window window;
    press(windowOf(window.Push), 5, 5);
    EXPECT_EQ(window.events, "push ");
    key(windowOf(window.Push), VK_SPACE);
    key(windowOf(window.Push), VK_RETURN);
    PostMessageW(windowOf(window.Text), WM_SYSCHAR, 'p', 1);
    serveAll();
    EXPECT_EQ(window.events, "push push push push ");
}

TEST(Windows, CheckBoxTogglesByMouseAndAccelerator) {
    Window window;
    press(windowOf(window.Check), 5, 5);
    EXPECT_EQ(window.Check.Value(), 1);
    EXPECT_EQ(SendMessageW(windowOf(window.Check), BM_GETCHECK, 0, 0), BST_CHECKED);
    PostMessageW(windowOf(window.Push), WM_SYSCHAR, 'C', 1);
    serveAll();
    EXPECT_EQ(window.Check.Value(), 0);
    EXPECT_EQ(window.events, "check check ");
}

TEST(Windows, TypedTextIsHeardLetterByLetter) {
    Window window;
    for (const wchar_t letter : std::wstring(L"h\u00e9"))
        PostMessageW(windowOf(window.Text), WM_CHAR, letter, 1);
    serveAll();
    EXPECT_EQ(window.Text.Text(), u"h\u00e9");
    EXPECT_EQ(window.events, "text:h text:h\xC3\xA9 ");
}

TEST(Windows, DropDownListIsPickedFromByKey) {
    Window window;
    window.List.AddItem(u"one");
    window.List.AddItem(u"two");
    window.List.setListIndex(0);
    window.List.SetFocus();
    key(windowOf(window.List), VK_DOWN);
    EXPECT_EQ(window.List.Text(), u"two");
    EXPECT_EQ(window.events, "list:one list:two ");
}

TEST(Windows, TabGoesFromControlToControl) {
    Window window;
    EXPECT_EQ(GetFocus(), windowOf(window.Push));
    key(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(window.Check));
    key(GetFocus(), VK_TAB);
    key(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(window.List));
    key(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(window.Push));
}

TEST(Windows, DisabledFrameDisablesWhatIsInIt) {
    Window window;
    window.Group.setEnabled(false);
    EXPECT_FALSE(IsWindowEnabled(windowOf(window.Group)));
    PostMessageW(windowOf(window.List), WM_SYSCHAR, 'p', 1);
    serveAll();
    EXPECT_EQ(window.events, "");
}

TEST(Windows, MenuItemAndCloseBoxAreHeard) {
    Window window;
    const HMENU menu = GetSubMenu(GetMenu(windowOf(window)), 0);
    PostMessageW(windowOf(window), WM_COMMAND, GetMenuItemID(menu, 0), 0);
    PostMessageW(windowOf(window), WM_CLOSE, 0, 0);
    serveAll();
    EXPECT_EQ(window.events, "item close ");
    window.Item.setEnabled(false);
    window.Item.setCaption(u"&Other");
    EXPECT_TRUE(GetMenuState(menu, 0, MF_BYPOSITION) & MF_GRAYED);
    wchar_t text[32] = L"";
    GetMenuStringW(menu, 0, text, 32, MF_BYPOSITION);
    EXPECT_STREQ(text, L"&Other");
}

TEST(Windows, ExceptionOfAHandlerStaysOutOfTheWindowSystem) {
    Window window;
    window.Push.Click = [] { throw std::runtime_error("a handler that fails"); };
    press(windowOf(window.Push), 5, 5);
    EXPECT_TRUE(IsWindow(windowOf(window)));
}

TEST(Windows, TimerTicksUntilItIsStopped) {
    int ticks = 0;
    ui::Timer timer(10);
    timer.Tick = [&] {
        if (++ticks == 3)
            timer.setEnabled(false);
    };
    timer.setEnabled(true);
    EXPECT_TRUE(serveUntil([&] { return !timer.Enabled(); }));
    EXPECT_EQ(ticks, 3);
}

TEST(Windows, ModalFormKeepsItsOwnerFromInputUntilItIsClosed) {
    Window window;
    class Dialog : public ui::Form {
      public:
        explicit Dialog(ui::Form* owner) : Form(owner, u"Dialog", ui::FormStyle::dialog) { setScale(1500, 900); }
        void Form_Load() override { PostMessageW(windowOf(*this), WM_CLOSE, 0, 0); }
        void onClose() override {
            owner_enabled = IsWindowEnabled(GetWindow(windowOf(*this), GW_OWNER));
            Unload();
        }
        BOOL owner_enabled = TRUE;
    } dialog(&window);
    dialog.ShowModal();
    EXPECT_FALSE(dialog.owner_enabled);
    EXPECT_TRUE(IsWindowEnabled(windowOf(window)));
    EXPECT_FALSE(IsWindowVisible(windowOf(dialog)));
}

TEST(Windows, OuterWidthIsThatOfTheWholeWindow) {
    Window window;
    window.setWidth(7500);
    RECT outer{};
    GetWindowRect(windowOf(window), &outer);
    EXPECT_EQ(outer.right - outer.left, ui::toPixels(7500));
    EXPECT_LT(window.ScaleWidth(), 7500);
}

TEST(Windows, TrayMessageReachesThePictureBoxAsAMouseMove) {
    Window window;
    ui::PictureBox box(window);
    box.setVisible(false);
    double place = 0;
    box.MouseMove = [&](int, int, double x, double) { place = x; };
    SendMessageW(windowOf(box), 512, 1, WM_LBUTTONDBLCLK);
    EXPECT_EQ(place, 515);
}

} // namespace
} // namespace murmelix
