// The program's own windows as they stand on the screen.
#include <algorithm>
#include <functional>

#include <gmock/gmock.h>

#include <windows.h>

#include <commctrl.h>

#include "app/main_frm.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/picture.h"
#include "ui/screen.h"
#include "ui/win32/gdi.h"

namespace murmelix {
namespace {

using namespace test;
using testing::IsEmpty;

// The main window of a program whose Messenger is not there, with nothing of its settings stored.
class MainWindow : public testing::Test {
  protected:
    MainWindow() {
        wchar_t temporary[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, temporary);
        WindowsDir = std::u16string(com::narrow(temporary, wcslen(temporary)));
        for (const char16_t* folder :
             {u"msagent", u"msagent\\chars", u"sounds", u"sounds\\bells", u"sounds\\default"}) {
            CreateDirectoryW(com::wide(WindowsDir + folder), nullptr);
        }
        SoundsDir = WindowsDir + u"sounds\\";
        SettingsKeyPath.clear();
        MainFormLoaded = IsReadingConversation = 0;
        CurrentSoundScheme = u"default";
        IgnoredChars = u"^#$/\\()";
        AutoIgnoreChars = PlayReadEmoticon = AutoCorrectText = AutoHideBalloon = AutoAttachChar = 1;
        AutoUpdate = AutoMinimize = AutoHideIdleChar = ShowTipFrm = ShowMinimizeFrm = ShowEmotTipFrm = 0;
        form.Form_Load();
    }
    ~MainWindow() override {
        sendDpi(system_dpi);
        form.DeleteSystemTrayIcon();
    }

    // As when the window comes to a screen of another resolution.
    void sendDpi(int dpi) {
        RECT place{};
        GetWindowRect(windowOf(form), &place);
        SendMessageW(windowOf(form), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        serveAll();
    }

    void signIn() {
        form.ShowSignOut(false);
        form.MainFrame.setCaption(u"Ann - Online (2 Unread)");
        form.ConversationsList.AddItem(u"Conversation with:", u"Bob, Cy", u"%1", true, form.ConvIcon.picture());
        form.ConversationsList.AddItem(u"Conversation with:", u"Di, Ed, Flo, Gus,...", u"%2", false,
                                       form.ConvIcon.picture());
    }

    int outerWidth() {
        RECT outer{};
        GetWindowRect(windowOf(form), &outer);
        return outer.right - outer.left;
    }

    // Every window of the program in every state.
    void checkAll(const std::string& name) {
        const auto well = [&](const ui::Control& window, const std::string& state) {
            show(window, state + "-" + name);
            EXPECT_THAT(layoutMistakes(window), IsEmpty()) << state << " " << name;
        };
        form.ShowSignOut();
        well(form, "main-signed-out");
        signIn();
        well(form, "main-signed-in");
        form.ReadOptnsButt_Click();
        ASSERT_TRUE(form.MurmelixFrame.Enabled());
        well(form, "main-options");
        EXPECT_EQ(outerWidth(), ui::toPixels(form.MainFrame.Width() + form.MurmelixFrame.Width() + 405));
        form.ReadOptnsButt_Click();
        EXPECT_EQ(outerWidth(), ui::toPixels(form.MainFrame.Width() + 270));
        well(*minimize, "notice-minimize");
        well(*tip, "notice-tip");
        well(*emoticons, "notice-emoticons");
        well(*about, "about");
    }

    // All that the main window owns.
    void openAll() {
        minimize = std::make_unique<MinimizeFrm>(&form);
        tip = std::make_unique<TipFrm>(&form);
        emoticons = std::make_unique<TipEmotFrm>(&form);
        about = std::make_unique<AboutFRM>(&form);
        for (ui::Form* window :
             std::initializer_list<ui::Form*>{minimize.get(), tip.get(), emoticons.get(), about.get()}) {
            window->Show();
        }
    }

    const com::Apartment apartment;
    const int system_dpi = ui::win32::screenDpi();
    MainFrm form{[] {}, [] { return false; }};
    std::unique_ptr<MinimizeFrm> minimize;
    std::unique_ptr<TipFrm> tip;
    std::unique_ptr<TipEmotFrm> emoticons;
    std::unique_ptr<AboutFRM> about;
};

TEST_F(MainWindow, EveryWindowKeepsItsLayoutAtEveryResolution) {
    openAll();
    for (const int dpi : {96, 120, 144, 192}) {
        sendDpi(dpi);
        EXPECT_EQ(ui::twipsPerPixel(), 1440.0 / dpi);
        checkAll(std::to_string(dpi));
    }
}

TEST_F(MainWindow, EveryWindowKeepsItsLayoutInAWiderFont) {
    openAll();
    NONCLIENTMETRICSW before{};
    before.cbSize = sizeof before;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof before, &before, 0);
    NONCLIENTMETRICSW wide = before;
    wide.lfMessageFont.lfHeight = MulDiv(-14, system_dpi, 96);
    wcscpy(wide.lfMessageFont.lfFaceName, L"DejaVu Sans");
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof wide, &wide, 0);
    SendMessageW(windowOf(form), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    LOGFONTW used{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(windowOf(form.StartConvButt), WM_GETFONT, 0, 0)), sizeof used,
               &used);
    EXPECT_STREQ(used.lfFaceName, L"DejaVu Sans");
    checkAll("wide-font");
    sendDpi(144);
    checkAll("wide-font-144");
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof before, &before, 0);
}

TEST_F(MainWindow, IsOnTheScreenAgainWhenThatWasChanged) {
    const auto flags = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
    RECT work{}, own{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(windowOf(form), nullptr, work.right + 500, work.bottom + 300, 0, 0, flags);
    SendMessageW(windowOf(form), WM_DISPLAYCHANGE, 32, MAKELPARAM(work.right, work.bottom));
    GetWindowRect(windowOf(form), &own);
    EXPECT_EQ(own.right, work.right);
    EXPECT_EQ(own.bottom, work.bottom);
    SetWindowPos(windowOf(form), nullptr, 10, 20, 0, 0, flags);
    SendMessageW(windowOf(form), WM_DISPLAYCHANGE, 32, MAKELPARAM(work.right, work.bottom));
    GetWindowRect(windowOf(form), &own);
    EXPECT_EQ(own.left, 10);
    EXPECT_EQ(own.top, 20);
}

TEST_F(MainWindow, LongNamesAreCutAndNothingMoves) {
    signIn();
    form.ReadOptnsButt_Click();
    RECT before{}, after{};
    GetWindowRect(windowOf(form), &before);
    const std::u16string zalgo = u"Z\u0336\u035e\u0301a\u0336\u0301l\u0358g\u0321o\u0489";
    std::u16string combining;
    for (int i = 0; i < 300; ++i) {
        combining += zalgo;
    }
    const std::vector<std::pair<std::string, std::u16string>> names{
        {"long", std::u16string(10000, u'W')},
        {"right-to-left", u"\u05e9\u05dc\u05d5\u05dd \u0645\u0631\u062d\u0628\u0627"},
        {"unbalanced", u"((((Bob)) (]["},
        {"combining", combining},
        {"ampersands", u"&Tom && &Jerry"},
        {"lines", u"one\r\ntwo\tthree"},
        {"nul", std::u16string(u"before\0after", 12)},
        {"empty", u""}};
    for (const auto& [name, text] : names) {
        form.MainFrame.setCaption(text + u" - Online (0 Unread)");
        show(form, "name-" + name);
        GetWindowRect(windowOf(form), &after);
        EXPECT_TRUE(EqualRect(&before, &after)) << name;
        EXPECT_THAT(layoutMistakes(form), IsEmpty()) << name;
    }
}

TEST_F(MainWindow, LetterOfANameIsNoAccelerator) {
    signIn();
    form.MainFrame.setCaption(u"&Sam - Online (0 Unread)");
    form.StartConvButt.setEnabled(true);
    int starts = 0;
    form.StartConvButt.Click = [&] { ++starts; };
    form.ReadOptnsButt.SetFocus();
    typeKey('S', VK_MENU);
    EXPECT_EQ(starts, 1);
}

TEST_F(MainWindow, FitsTheScreenWhereItCan) {
    signIn();
    RECT screen{}, own{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    form.ReadOptnsButt_Click();
    for (const int dpi : {96, 120, 144, 192}) {
        sendDpi(dpi);
        form.ReadOptnsButt_Click();
        form.ReadOptnsButt_Click();
        GetWindowRect(windowOf(form), &own);
        EXPECT_GE(own.left, screen.left) << dpi;
        if (own.right - own.left <= screen.right - screen.left) {
            EXPECT_LE(own.right, screen.right) << dpi;
        } else {
            EXPECT_EQ(dpi, 192) << "only there it is wider than this screen";
        }
        EXPECT_GE(own.top, screen.top) << dpi;
        EXPECT_LE(own.bottom, screen.bottom) << dpi;
    }
}

// Every control with a tip, and those in them.
void collectTips(const ui::Control& parent, std::vector<const ui::Control*>& all) {
    for (const ui::Control* child : parent.Children()) {
        if (!child->ToolTipText().empty()) {
            all.push_back(child);
        }
        collectTips(*child, all);
    }
}

HWND tipsOf(const ui::Form& owner) {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
        if (GetWindow(found, GW_OWNER) == windowOf(owner)) {
            return found;
        }
    }
    return nullptr;
}

TEST_F(MainWindow, EveryTipIsThere) {
    std::vector<const ui::Control*> controls;
    collectTips(form, controls);
    EXPECT_EQ(controls.size(), 15U);
    const HWND tips = tipsOf(form);
    ASSERT_TRUE(tips);
    for (const ui::Control* control : controls) {
        wchar_t text[256] = L"";
        TTTOOLINFOW tool{};
        tool.cbSize = TTTOOLINFOW_V1_SIZE;
        tool.hwnd = windowOf(form);
        tool.uId = reinterpret_cast<UINT_PTR>(windowOf(*control));
        tool.lpszText = text;
        SendMessageW(tips, TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&tool));
        EXPECT_STREQ(text, com::wide(control->ToolTipText()));
    }
}

TEST_F(MainWindow, TipAppearsWhereTheMouseRests) {
    signIn();
    form.ReadOptnsButt_Click();
    RECT box{};
    GetWindowRect(windowOf(form.AutoHideBalloonCheck), &box);
    SetCursorPos(box.left - 20, box.top - 60);
    serveAll();
    SetCursorPos(box.left + 40, (box.top + box.bottom) / 2);
    const HWND tips = tipsOf(form);
    ASSERT_TRUE(tips);
    ASSERT_TRUE(serveUntil([&] { return IsWindowVisible(tips) != FALSE; }));
    serveAll();
    UpdateWindow(tips);
    wchar_t text[256] = L"";
    GetWindowTextW(tips, text, static_cast<int>(std::size(text)));
    EXPECT_STREQ(text, L"Automatically hide the characters' balloon after reading");
    screenshot("tip");
}

TEST_F(MainWindow, MenuPicturesHaveTheSizeOfTheMenusChecks) {
    const HMENU bar = GetMenu(windowOf(form));
    for (const int dpi : {96, 144, 192}) {
        sendDpi(dpi);
        const int size = ui::win32::systemMetric(SM_CXMENUCHECK);
        int pictures = 0;
        for (int menu = 0; menu < GetMenuItemCount(bar); ++menu) {
            const HMENU popup = GetSubMenu(bar, menu);
            for (int item = 0; item < GetMenuItemCount(popup); ++item) {
                MENUITEMINFOW info{};
                info.cbSize = sizeof info;
                info.fMask = MIIM_CHECKMARKS | MIIM_FTYPE;
                GetMenuItemInfoW(popup, static_cast<UINT>(item), TRUE, &info);
                if (info.fType & MFT_SEPARATOR) {
                    EXPECT_FALSE(info.hbmpUnchecked);
                    continue;
                }
                ++pictures;
                ASSERT_TRUE(info.hbmpUnchecked) << menu << "." << item;
                EXPECT_EQ(info.hbmpUnchecked, info.hbmpChecked);
                BITMAP bitmap{};
                GetObjectW(info.hbmpUnchecked, sizeof bitmap, &bitmap);
                EXPECT_EQ(bitmap.bmWidth, size);
                EXPECT_EQ(bitmap.bmHeight, size);
                EXPECT_EQ(bitmap.bmBitsPixel, 1);
                std::vector<unsigned char> dots(static_cast<std::size_t>(bitmap.bmWidthBytes * bitmap.bmHeight));
                GetBitmapBits(info.hbmpUnchecked, static_cast<LONG>(dots.size()), dots.data());
                EXPECT_NE(std::count(dots.begin(), dots.end(), 0xFF), static_cast<std::ptrdiff_t>(dots.size()))
                    << "nothing is drawn";
            }
        }
        EXPECT_EQ(pictures, 11);
    }
}

// In the loop that a menu runs: takes the picture of the screen, and closes it.
std::string menu_picture;
int menu_ticks = 0;

void CALLBACK pictureOfMenu(HWND window, UINT, UINT_PTR timer, DWORD) {
    const HWND popup = FindWindowW(MAKEINTRESOURCEW(32768), nullptr);
    if (!popup || !IsWindowVisible(popup)) {
        return;
    }
    if (++menu_ticks < 2) { // it is drawn until the second time
        return;
    }
    KillTimer(window, timer);
    screenshot(menu_picture.c_str());
    menu_picture.clear();
    EndMenu();
}

TEST_F(MainWindow, MenusOpen) {
    signIn();
    SetCursorPos(300, 300);
    const auto opens = [&](const char* name, const std::function<void()>& open) {
        menu_picture = name;
        menu_ticks = 0;
        SetTimer(windowOf(form), 1, 50, pictureOfMenu);
        open();
        EXPECT_TRUE(serveUntil([] { return menu_picture.empty(); })) << name;
        KillTimer(windowOf(form), 1);
    };
    for (int i = 0; i < 2; ++i) { // the first menu of a process is not drawn in time for its picture
        opens("menu-help", [] { typeKey('H', VK_MENU); });
    }
    opens("menu-murmelix", [] { typeKey('M', VK_MENU); });
    // As the shell tells a right click on the icon.
    opens("menu-tray", [&] { SendMessageW(windowOf(form.SystemTrayPic), 512, 1, WM_RBUTTONDOWN); });
    const HMENU bar = GetMenu(windowOf(form));
    EXPECT_EQ(GetMenuItemCount(bar), 3);
    EXPECT_TRUE(GetMenuState(bar, 2, MF_BYPOSITION) & MF_GRAYED);
    EXPECT_EQ(GetMenuStringW(bar, 2, nullptr, 0, MF_BYPOSITION), 0) << "the tray's menu has no name in the bar";
}

TEST_F(MainWindow, IconMessagesHideAndRestore) {
    const HWND icon = windowOf(form.SystemTrayPic);
    SendMessageW(icon, 512, 1, WM_LBUTTONDOWN);
    EXPECT_TRUE(IsWindowVisible(windowOf(form)));
    SendMessageW(icon, 512, 1, WM_LBUTTONDBLCLK);
    EXPECT_FALSE(IsWindowVisible(windowOf(form)));
    SendMessageW(icon, 512, 1, WM_LBUTTONDBLCLK);
    EXPECT_TRUE(IsWindowVisible(windowOf(form)));
    PostMessageW(windowOf(form), WM_SYSCOMMAND, SC_CLOSE, 0);
    serveAll();
    EXPECT_FALSE(IsWindowVisible(windowOf(form)));
}

TEST_F(MainWindow, NoticeRefusesTheCloseBoxAndAltF4) {
    tip = std::make_unique<TipFrm>(&form);
    tip->Show();
    serveAll();
    PostMessageW(windowOf(*tip), WM_SYSCOMMAND, SC_CLOSE, 0);
    serveAll();
    typeKey(VK_F4, VK_MENU);
    typeKey(VK_ESCAPE);
    EXPECT_TRUE(IsWindowVisible(windowOf(*tip)));
    typeKey(VK_RETURN);
    EXPECT_FALSE(IsWindowVisible(windowOf(*tip))) << "OK is the default button";
}

TEST_F(MainWindow, AboutWindowClosesOnEscapeOnItsBoxAndOnAnyClick) {
    about = std::make_unique<AboutFRM>(&form);
    const auto closes = [&](const std::function<void()>& how) {
        about->Show();
        serveAll();
        how();
        serveAll();
        return IsWindowVisible(windowOf(*about)) == FALSE;
    };
    const auto at = [&](const ui::Control& control) {
        RECT area{};
        GetWindowRect(windowOf(control), &area);
        POINT middle{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
        ScreenToClient(windowOf(*about), &middle);
        // What lies there takes the click.
        const HWND hit = ChildWindowFromPointEx(windowOf(*about), middle, CWP_SKIPINVISIBLE);
        HWND target = hit ? hit : windowOf(*about);
        POINT screen = middle;
        ClientToScreen(windowOf(*about), &screen);
        if (SendMessageW(target, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y)) == HTTRANSPARENT) {
            target = windowOf(*about);
        }
        MapWindowPoints(windowOf(*about), target, &middle, 1);
        press(target, middle.x, middle.y);
    };
    EXPECT_TRUE(closes([] { typeKey(VK_ESCAPE); }));
    EXPECT_TRUE(closes([&] { typeKey(VK_F4, VK_MENU); }));
    EXPECT_TRUE(closes([&] { press(windowOf(*about), 3, 3); }));
    EXPECT_TRUE(closes([&] { at(about->AboutPic); }));
    EXPECT_TRUE(closes([&] { at(about->Label5); }));
    EXPECT_TRUE(closes([&] { at(about->VersionText); }));
}

TEST_F(MainWindow, ColoursOfTheSystemAreTakenUp) {
    signIn();
    const int element = COLOR_BTNFACE;
    const COLORREF before = GetSysColor(element), other = RGB(180, 200, 160);
    SetSysColors(1, &element, &other);
    SendMessageW(windowOf(form), WM_SYSCOLORCHANGE, 0, 0);
    serveAll();
    const Image image = insideOf(windowOf(form));
    EXPECT_EQ(image.at(1, image.height - 2), other);
    show(form, "main-other-colours");
    SetSysColors(1, &element, &before);
    SendMessageW(windowOf(form), WM_SYSCOLORCHANGE, 0, 0);
    serveAll();
}

TEST_F(MainWindow, IgnoredCharactersOfAnyKindAreKeptAsTheyAre) {
    signIn();
    form.ReadOptnsButt_Click();
    for (const std::u16string& text : {std::u16string(1 << 20, u'x'), std::u16string(u"a\r\nb\tc"),
                                       std::u16string(u"\u05e9\xd800\ufffe\u0301"), std::u16string()}) {
        form.IgnoreCharTxt.setText(text);
        serveAll();
        EXPECT_EQ(IgnoredChars, text);
        EXPECT_EQ(form.IgnoreCharTxt.Text(), text);
    }
    form.IgnoreCharTxt.SetFocus();
    typeKey('A');
    EXPECT_EQ(IgnoredChars, u"a");
}

TEST_F(MainWindow, ListOfFiveThousandSoundSchemesCanBeUsed) {
    std::vector<std::u16string> names;
    for (int i = 0; i < 5000; ++i) {
        names.push_back(u"scheme " + toText(i));
    }
    form.SoundSchemeList.setItems(names);
    form.SoundSchemeList.setListIndex(4321);
    signIn();
    form.ReadOptnsButt_Click();
    const HWND list = windowOf(form.SoundSchemeList);
    EXPECT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 5000);
    EXPECT_EQ(SendMessageW(list, CB_GETCURSEL, 0, 0), 4321);
    SendMessageW(list, CB_SHOWDROPDOWN, TRUE, 0);
    serveAll();
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(list, &info);
    RECT dropped{}, screen{};
    GetWindowRect(info.hwndList, &dropped);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    EXPECT_LE(dropped.bottom, screen.bottom);
    EXPECT_LT(dropped.bottom - dropped.top, ui::win32::scaled(300));
    screenshot("sound-schemes");
    SendMessageW(list, CB_SHOWDROPDOWN, FALSE, 0);
}

// The resources that the program is built with are this test program's, too; `type`: 14 for icons, 16 for the version,
// 24 for the manifest.
std::string resource(const wchar_t* name, int type) {
    const HRSRC found = FindResourceW(nullptr, name, MAKEINTRESOURCEW(type));
    if (!found) {
        return {};
    }
    return {static_cast<const char*>(LockResource(LoadResource(nullptr, found))), SizeofResource(nullptr, found)};
}

TEST_F(MainWindow, IconIsThereInEverySize) {
    const std::string group = resource(L"murmelix", 14);
    std::vector<int> sizes;
    for (std::size_t at = 6; at + 14 <= group.size(); at += 14) {
        sizes.push_back(group[at] == 0 ? 256 : static_cast<unsigned char>(group[at]));
    }
    EXPECT_THAT(sizes, testing::ElementsAre(16, 20, 24, 32, 40, 48, 64, 80, 96, 128, 256));
    for (const int dpi : {96, 144, 192}) {
        sendDpi(dpi);
        for (const auto& [kind, metric] : {std::pair{ICON_SMALL, SM_CXSMICON}, {ICON_BIG, SM_CXICON}}) {
            const auto icon =
                reinterpret_cast<HICON>(SendMessageW(windowOf(form), WM_GETICON, static_cast<WPARAM>(kind), 0));
            ICONINFO parts{};
            ASSERT_TRUE(GetIconInfo(icon, &parts));
            const ui::win32::Bitmap colours(parts.hbmColor), mask(parts.hbmMask);
            BITMAP bitmap{};
            GetObjectW(colours.get(), sizeof bitmap, &bitmap);
            EXPECT_EQ(bitmap.bmWidth, ui::win32::systemMetric(metric)) << dpi;
        }
    }
}

TEST_F(MainWindow, ManifestAndVersionAreBuiltIn) {
    const std::string manifest = resource(MAKEINTRESOURCEW(1), 24);
    for (const char* part : {"Microsoft.Windows.Common-Controls", "PerMonitorV2", "asInvoker"}) {
        EXPECT_NE(manifest.find(part), std::string::npos) << part;
    }
    const std::string version = resource(MAKEINTRESOURCEW(1), 16);
    for (const std::u16string part : {u"ProductName", u"Murmelix", u"FileVersion", u"LegalCopyright"}) {
        const std::string bytes(reinterpret_cast<const char*>(part.data()), 2 * part.size());
        EXPECT_NE(version.find(bytes), std::string::npos) << toUtf8(part);
    }
}

} // namespace
} // namespace murmelix
