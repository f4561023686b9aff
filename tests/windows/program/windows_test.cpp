// The toolkit's real windows: input as messages, drawing as pixels; and pictures of the main window.
#include <cstdlib>
#include <fstream>
#include <functional>

#include <gmock/gmock.h>

#include <windows.h>

#include "app/main_frm.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "controls/cool_list_box.h"
#include "platform/ui/form.h"
#include "platform/ui/native.h"
#include "platform/ui/screen.h"
#include "platform/ui/timer.h"
#include "platform/win32/ui/surface.h"
#include "platform/win32/ui/windows.h"

namespace murmelix {
namespace {

HWND windowOf(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.handle());
}

// Serves messages until it holds, for ten seconds at most.
bool pumpUntil(const std::function<bool()>& holds) {
    const ULONGLONG end = GetTickCount64() + 10000;
    while (!holds()) {
        MSG message{};
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ui::win32::dispatch(message);
        else if (GetTickCount64() > end)
            return false;
        else
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    }
    return true;
}

void pumpAll() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        ui::win32::dispatch(message);
}

void press(HWND window, int x, int y) {
    const LPARAM place = MAKELPARAM(x, y);
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(window, WM_LBUTTONUP, 0, place);
    pumpAll();
}

void key(HWND window, WPARAM code) {
    PostMessageW(window, WM_KEYDOWN, code, 1);
    PostMessageW(window, WM_KEYUP, code, 0xC0000001);
    pumpAll();
}

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
        pumpAll();
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
    pumpAll();
    EXPECT_EQ(window.events, "push push push push ");
}

TEST(Windows, CheckBoxTogglesByMouseAndAccelerator) {
    Window window;
    press(windowOf(window.Check), 5, 5);
    EXPECT_EQ(window.Check.Value(), 1);
    EXPECT_EQ(SendMessageW(windowOf(window.Check), BM_GETCHECK, 0, 0), BST_CHECKED);
    PostMessageW(windowOf(window.Push), WM_SYSCHAR, 'C', 1);
    pumpAll();
    EXPECT_EQ(window.Check.Value(), 0);
    EXPECT_EQ(window.events, "check check ");
}

TEST(Windows, TypedTextIsHeardLetterByLetter) {
    Window window;
    for (const wchar_t letter : std::wstring(L"h\u00e9"))
        PostMessageW(windowOf(window.Text), WM_CHAR, letter, 1);
    pumpAll();
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
    pumpAll();
    EXPECT_EQ(window.events, "");
}

TEST(Windows, MenuItemAndCloseBoxAreHeard) {
    Window window;
    const HMENU menu = GetSubMenu(GetMenu(windowOf(window)), 0);
    PostMessageW(windowOf(window), WM_COMMAND, GetMenuItemID(menu, 0), 0);
    PostMessageW(windowOf(window), WM_CLOSE, 0, 0);
    pumpAll();
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
    EXPECT_TRUE(pumpUntil([&] { return !timer.Enabled(); }));
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

struct Image {
    BITMAPINFOHEADER info{};
    std::vector<std::uint32_t> rows; // 0x00RRGGBB, the lowest first
    COLORREF at(int x, int y) const {
        const std::uint32_t value = rows.at(static_cast<std::size_t>((info.biHeight - 1 - y) * info.biWidth + x));
        return RGB(value >> 16 & 0xFF, value >> 8 & 0xFF, value & 0xFF);
    }
};

// A part of a window's, or the screen's, picture.
Image grab(HDC from, const RECT& part) {
    Image image;
    image.info.biSize = sizeof image.info;
    image.info.biWidth = part.right - part.left;
    image.info.biHeight = part.bottom - part.top;
    image.info.biPlanes = 1;
    image.info.biBitCount = 32;
    void* bits = nullptr;
    const ui::win32::Bitmap bitmap(
        CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&image.info), DIB_RGB_COLORS, &bits, nullptr, 0));
    const ui::win32::MemoryDc dc(CreateCompatibleDC(nullptr));
    const ui::win32::Selected selected(dc.get(), bitmap.get());
    BitBlt(dc.get(), 0, 0, image.info.biWidth, image.info.biHeight, from, part.left, part.top, SRCCOPY);
    GdiFlush();
    const auto* values = static_cast<const std::uint32_t*>(bits);
    image.rows.assign(values, values + image.info.biWidth * image.info.biHeight);
    return image;
}

// The inside of a window, painted.
Image grab(HWND window) {
    UpdateWindow(window);
    RECT inside{};
    GetClientRect(window, &inside);
    HDC dc = GetDC(window);
    Image image = grab(dc, inside);
    ReleaseDC(window, dc);
    return image;
}

class ListPixels : public testing::Test {
  protected:
    ListPixels() {
        form.setScale(6000, 4500);
        list.Move({0, 0, 3000, 1500});
        list.setItemHeight(30);
        list.SetPos(40, 0, 40, 15, 0, 0);
        form.Show();
        pumpAll();
    }
    // As it stands on the screen.
    COLORREF pixel(int x, int y) {
        const Image image = grab(windowOf(list.P));
        return image.at(x, y);
    }
    int others(const RECT& area, COLORREF background) {
        const Image image = grab(windowOf(list.P));
        int count = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x)
                count += image.at(x, y) != background ? 1 : 0;
        }
        return count;
    }

    ui::Form form{nullptr, u"List", ui::FormStyle::window};
    CoolListBox list{form};
};

TEST_F(ListPixels, SelectedRowHasTheHighlightAcrossItsWholeRectangle) {
    list.AddItem(u"Caption", u"Text", u"1", true);
    list.AddItem(u"Caption", u"Text", u"2", false);
    const int right = list.P.surface().Width() - 1;
    for (const auto& [x, y] : {std::pair{0, 0}, {right, 0}, {0, 29}, {right, 29}})
        EXPECT_EQ(pixel(x, y), GetSysColor(COLOR_HIGHLIGHT)) << x << "," << y;
    for (const auto& [x, y] : {std::pair{0, 30}, {right, 30}, {0, 59}, {0, 61}})
        EXPECT_EQ(pixel(x, y), GetSysColor(COLOR_WINDOW)) << x << "," << y;
}

TEST_F(ListPixels, CaptionIsHeavierThanTextAndUnderlined) {
    list.AddItem(u"iiii", u"iiii", u"1", false);
    const COLORREF white = GetSysColor(COLOR_WINDOW);
    const int caption = others({40, 0, 80, 15}, white), text = others({40, 15, 80, 30}, white);
    EXPECT_GT(text, 0);
    EXPECT_GT(caption, text);
    EXPECT_EQ(others({0, 0, 40, 30}, white), 0) << "left of the text";
}

TEST_F(ListPixels, EmptyListShowsItsMessageInTheMiddleAlone) {
    const COLORREF white = GetSysColor(COLOR_WINDOW);
    const int width = list.P.surface().Width(), height = list.P.surface().Height();
    list.Redraw();
    EXPECT_GT(others({width / 4, height / 2 - 8, width * 3 / 4, height / 2 + 8}, white), 0);
    EXPECT_EQ(others({0, 0, width, height / 2 - 10}, white), 0);
}

TEST_F(ListPixels, ScrolledRowsMoveUp) {
    for (char16_t letter = u'a'; letter < u'k'; ++letter)
        list.AddItem(u"Caption", u"Text", std::u16string(1, letter), false);
    ASSERT_TRUE(IsWindowVisible(windowOf(list.Scroll)));
    list.setSelected(3);
    EXPECT_EQ(pixel(1, 75), GetSysColor(COLOR_HIGHLIGHT));
    SendMessageW(windowOf(list), WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(windowOf(list.Scroll)));
    EXPECT_EQ(list.Scroll.Value(), 1);
    EXPECT_EQ(pixel(1, 75), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(pixel(1, 45), GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(ListPixels, MouseSelectsAndKeysScroll) {
    for (char16_t letter = u'a'; letter < u'k'; ++letter)
        list.AddItem(u"Caption", u"Text", std::u16string(1, letter), false);
    press(windowOf(list.P), 10, 45);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(GetFocus(), windowOf(list.P));
    key(windowOf(list.P), VK_DOWN);
    EXPECT_EQ(list.Scroll.Value(), 1);
    key(windowOf(list.P), VK_UP);
    EXPECT_EQ(list.Scroll.Value(), 0);
}

// Writes what a window looks like, where the environment names a folder for it.
void picture(const ui::Form& form, const char* name) {
    pumpAll();
    const char* folder = std::getenv("MURMELIX_SCREENS");
    if (!folder)
        return;
    HWND window = windowOf(form);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    RECT outer{};
    GetWindowRect(window, &outer);
    OffsetRect(&outer, -outer.left, -outer.top);
    HDC dc = GetWindowDC(window);
    const Image image = grab(dc, outer);
    ReleaseDC(window, dc);
    const std::size_t bytes = image.rows.size() * sizeof image.rows[0];
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof image.info;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(bytes);
    std::ofstream file(std::string(folder) + "/" + name + ".bmp", std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof header);
    file.write(reinterpret_cast<const char*>(&image.info), sizeof image.info);
    file.write(reinterpret_cast<const char*>(image.rows.data()), static_cast<std::streamsize>(bytes));
    EXPECT_TRUE(file.good());
}

TEST(MainWindow, ShowsItsStates) {
    const com::Apartment apartment;
    wchar_t temporary[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, temporary);
    WindowsDir = std::u16string(com::narrow(temporary, wcslen(temporary)));
    CreateDirectoryW(com::wide(WindowsDir + u"msagent"), nullptr);
    CreateDirectoryW(com::wide(WindowsDir + u"msagent\\chars"), nullptr);
    SoundsDir = WindowsDir + u"msagent\\";
    SettingsKeyPath.clear();
    AutoUpdate = AutoMinimize = ShowTipFrm = 0;

    MainFrm form([] {});
    form.Form_Load();
    EXPECT_TRUE(IsWindowVisible(windowOf(form)));
    EXPECT_TRUE(IsWindowVisible(windowOf(form.SignOutFrame)));
    picture(form, "main-signed-out");

    SettingsKeyPath = u"Software\\MurmelixTest";
    form.ShowSignOut(false);
    form.MainFrame.setCaption(u"Ann - Online (2 Unread)");
    form.ConversationsList.AddItem(u"Conversation with:", u"Bob, Cy", u"%1", true, form.ConvIcon.picture());
    form.ConversationsList.AddItem(u"Conversation with:", u"Di, Ed, Flo, Gus,...", u"%2", false,
                                   form.ConvIcon.picture());
    picture(form, "main-signed-in");
    RECT narrow{}, wide{};
    GetWindowRect(windowOf(form), &narrow);
    form.ReadOptnsButt_Click();
    GetWindowRect(windowOf(form), &wide);
    EXPECT_EQ(narrow.right - narrow.left, ui::toPixels(form.MainFrame.Width() + 270));
    EXPECT_EQ(wide.right - wide.left, ui::toPixels(form.MainFrame.Width() + form.MurmelixFrame.Width() + 405));
    picture(form, "main-options");

    const HMENU bar = GetMenu(windowOf(form));
    EXPECT_EQ(GetMenuItemCount(bar), 3);
    EXPECT_EQ(GetMenuItemCount(GetSubMenu(bar, 0)), 6);
    EXPECT_TRUE(GetMenuState(bar, 2, MF_BYPOSITION) & MF_GRAYED);
    form.DeleteSystemTrayIcon();
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MurmelixTest");
}

} // namespace
} // namespace murmelix
