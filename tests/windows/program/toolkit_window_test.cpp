// The toolkit's real windows: what input as messages does to them.
#include <algorithm>
#include <functional>
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/text.h"
#include "tests/windows/program/window_test.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/link_label.h"
#include "ui/picture_box.h"
#include "ui/screen.h"
#include "ui/text_box.h"
#include "ui/timer.h"

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
    for (const wchar_t letter : std::wstring(L"h\u00e9")) {
        PostMessageW(windowOf(window.Text), WM_CHAR, letter, 1);
    }
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

// In the loop that a menu runs while it is open: sees it, and closes it.
bool menu_was_open = false;

void CALLBACK closeMenu(HWND window, UINT, UINT_PTR timer, DWORD) {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &thread) || !(thread.flags & GUI_INMENUMODE)) {
        return;
    }
    menu_was_open = true;
    KillTimer(window, timer);
    EndMenu();
}

// Whether the keys open a menu.
bool opensMenu(const Window& window, const std::function<void()>& keys) {
    menu_was_open = false;
    SetTimer(windowOf(window), 1, 50, closeMenu);
    keys();
    const bool opened = serveUntil([] { return menu_was_open; });
    KillTimer(windowOf(window), 1);
    return opened;
}

TEST(Keyboard, AltAndALetterPressTheButtonOfThatLetter) {
    Window window;
    typeKey('P', VK_MENU);
    EXPECT_EQ(window.events, "push ");
    typeKey('C', VK_MENU);
    EXPECT_EQ(window.events, "push check ");
    EXPECT_EQ(GetFocus(), windowOf(window.Check));
}

TEST(Keyboard, SpacePressesAndEnterPressesAndLettersAreTyped) {
    Window window;
    window.DefaultButton = &window.Push;
    typeKey(VK_SPACE);
    typeKey(VK_TAB);
    typeKey(VK_SPACE);
    typeKey(VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(window.Text));
    typeKey('A');
    typeKey(VK_RETURN);
    EXPECT_EQ(window.events, "push check text:a push ");
}

TEST(Keyboard, ArrowsGoFromButtonToCheckBoxAndBack) {
    Window window;
    typeKey(VK_DOWN);
    EXPECT_EQ(GetFocus(), windowOf(window.Check));
    typeKey(VK_RIGHT);
    EXPECT_EQ(GetFocus(), windowOf(window.Push)) << "round, within the frame";
    typeKey(VK_LEFT);
    EXPECT_EQ(GetFocus(), windowOf(window.Check));
    EXPECT_EQ(window.events, "") << "nothing is pressed by that";
}

TEST(Keyboard, ShiftAndTabGoBack) {
    Window window;
    typeKey(VK_TAB, VK_SHIFT);
    EXPECT_EQ(GetFocus(), windowOf(window.List));
}

TEST(Keyboard, EscapePressesTheCancelButtonAndClosesAnOpenListFirst) {
    Window window;
    window.CancelButton = &window.Push;
    window.List.AddItem(u"one");
    window.List.SetFocus();
    SendMessageW(windowOf(window.List), CB_SHOWDROPDOWN, TRUE, 0);
    typeKey(VK_ESCAPE);
    EXPECT_EQ(window.events, "");
    EXPECT_FALSE(SendMessageW(windowOf(window.List), CB_GETDROPPEDSTATE, 0, 0));
    typeKey(VK_ESCAPE);
    EXPECT_EQ(window.events, "push ");
}

TEST(Keyboard, AltAndF4AskTheWindowToClose) {
    Window window;
    typeKey(VK_F4, VK_MENU);
    EXPECT_EQ(window.events, "close ");
    EXPECT_TRUE(IsWindowVisible(windowOf(window)));
}

TEST(Keyboard, F10AndAltWithALetterOpenTheMenus) {
    Window window;
    EXPECT_TRUE(opensMenu(window, [] { typeKey(VK_F10); }));
    EXPECT_TRUE(opensMenu(window, [] { typeKey('F', VK_MENU); }));
}

TEST(Keyboard, AltWithALetterOfAMenuOpensItWhateverElseHasTheLetter) {
    Window window;
    ui::CheckBox same(window.Group, u"&Filter");
    same.Move({1600, 750, 1000, 270});
    EXPECT_TRUE(opensMenu(window, [] { typeKey('F', VK_MENU); }));
    EXPECT_EQ(same.Value(), 0);
    window.File.setEnabled(false);
    typeKey('F', VK_MENU);
    EXPECT_EQ(same.Value(), 1);
}

TEST(Keyboard, FocusLeavesWhatIsDisabledSoThatKeysGoOn) {
    Window window;
    EXPECT_EQ(GetFocus(), windowOf(window.Push));
    window.Push.setEnabled(false);
    EXPECT_EQ(GetFocus(), windowOf(window.Check));
    typeKey(VK_SPACE);
    EXPECT_EQ(window.events, "check ");
    window.Group.setVisible(false);
    EXPECT_EQ(GetFocus(), windowOf(window.List));
}

TEST(Keyboard, FocusOfAWindowInTheBackgroundWaitsThere) {
    Window window;
    ui::Form front(nullptr, u"Front", ui::FormStyle::dialog);
    ui::Button button(front, u"Here");
    button.Move({0, 0, 900, 375});
    front.setScale(1500, 900);
    front.Show();
    serveAll();
    window.Push.setEnabled(false);
    EXPECT_EQ(GetFocus(), windowOf(button));
    front.Hide();
    // The screen takes the keyboard from what is hidden in its own time.
    EXPECT_TRUE(serveUntil([&] {
        SetForegroundWindow(windowOf(window));
        return GetFocus() == windowOf(window.Check);
    }));
}

bool drawnAsDefault(const ui::Button& button) {
    return (GetWindowLongW(windowOf(button), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

TEST(Keyboard, ButtonThatEnterPressesIsDrawnSo) {
    Window window;
    ui::Button ok(window, u"OK");
    ok.Move({3300, 900, 900, 375});
    window.DefaultButton = &ok;
    window.Text.SetFocus();
    EXPECT_TRUE(drawnAsDefault(ok));
    EXPECT_FALSE(drawnAsDefault(window.Push));
    window.Push.SetFocus();
    EXPECT_FALSE(drawnAsDefault(ok));
    EXPECT_TRUE(drawnAsDefault(window.Push));
    window.Check.SetFocus();
    EXPECT_TRUE(drawnAsDefault(ok));
    ok.setEnabled(false);
    EXPECT_FALSE(drawnAsDefault(ok));
}

TEST(Windows, ClickIsAButtonThatGoesDownAndUpInOnePlace) {
    Window window;
    int clicks = 0;
    window.Click = [&] { ++clicks; };
    const HWND form = windowOf(window);
    PostMessageW(form, WM_LBUTTONUP, 0, MAKELPARAM(5, 5)); // went down in a menu that is gone
    serveAll();
    EXPECT_EQ(clicks, 0);
    press(form, 5, 5);
    EXPECT_EQ(clicks, 1);
    PostMessageW(form, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    PostMessageW(form, WM_LBUTTONUP, 0, MAKELPARAM(-50, 5));
    serveAll();
    EXPECT_EQ(clicks, 1);
    PostMessageW(form, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    PostMessageW(form, WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    serveAll();
    EXPECT_EQ(clicks, 2);
}

TEST(Windows, LinkIsFollowedByMouseAndKeys) {
    Window window;
    ui::LinkLabel link(window, u"Click here");
    int clicks = 0;
    link.Click = [&] { ++clicks; };
    link.Move({3300, 900, 1500, 255});
    press(windowOf(link), 5, 5);
    EXPECT_EQ(clicks, 1);
    link.SetFocus();
    typeKey(VK_SPACE);
    typeKey(VK_RETURN);
    EXPECT_EQ(clicks, 3);
}

TEST(Windows, AmpersandsAreLettersWhereTheyMarkNothing) {
    Window window;
    const auto drawn = [&](const std::u16string& caption, bool marks) {
        window.Group.setCaption(caption);
        window.Group.setUseMnemonic(marks);
        return insideOf(windowOf(window.Group)).pixels;
    };
    const auto sign = drawn(u"A&&B", true);
    EXPECT_NE(sign, drawn(u"A&B", true)) << "a mark is no sign";
    EXPECT_EQ(sign, drawn(u"A&B", false)) << "the sign itself is drawn";
    typeKey('B', VK_MENU);
    EXPECT_EQ(window.events, "");
}

TEST(Windows, WidthIsExactEvenBeyondTheScreen) {
    Window window;
    const int beyond = GetSystemMetrics(SM_CXSCREEN) + 200;
    window.setWidth(ui::toTwips(beyond));
    RECT outer{};
    GetWindowRect(windowOf(window), &outer);
    EXPECT_EQ(outer.right - outer.left, beyond);
    EXPECT_EQ(outer.left, 0) << "its beginning is seen";
}

TEST(Windows, TimerTicksUntilItIsStopped) {
    int ticks = 0;
    ui::Timer timer(10);
    timer.Tick = [&] {
        if (++ticks == 3) {
            timer.setEnabled(false);
        }
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

TEST(Windows, OwnerIsInFrontAgainWhenWhatItOwnsIsHidden) {
    Window window;
    ui::Form notice(&window, u"Notice", ui::FormStyle::dialog);
    notice.setScale(1500, 900);
    notice.Show();
    serveAll();
    EXPECT_EQ(GetForegroundWindow(), windowOf(notice));
    notice.Unload();
    EXPECT_EQ(GetForegroundWindow(), windowOf(window));
    serveAll();
    EXPECT_EQ(GetFocus(), windowOf(window.Push));
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
