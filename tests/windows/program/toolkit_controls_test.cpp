// The toolkit's real controls that other windows than the program's are made of.
#include <array>
#include <thread>

#include <gmock/gmock.h>

#include "common/text.h"
#include "tests/windows/program/window_test.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/form.h"
#include "ui/global_key.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/list_box.h"
#include "ui/progress_bar.h"
#include "ui/rich_text_box.h"
#include "ui/screen.h"
#include "ui/shortcut_box.h"
#include "ui/tab_pages.h"
#include "ui/text_area.h"
#include "ui/text_box.h"
#include "ui/win32/windows.h"

#include <commctrl.h>
#include <psapi.h>
#include <richedit.h>

namespace murmelix {
namespace {

using namespace test;

// A list above, what is tested below it.
class Sizable : public ui::Form {
  public:
    Sizable() : Form(nullptr, u"Controls", ui::FormStyle::sizable, u"MurmelixTestWindow") {
        setLeastScale(3000, 1500);
        List.setItemHeight(600);
        List.DrawItem = [this](ui::Surface& surface, int index, const ui::ListBox::Looks& looks) {
            surface.Fill({0, 0, surface.Width(), surface.Height()}, looks.selected ? chosen : plain);
            surface.PrintIn({4, 0, surface.Width() - 4, surface.Height()}, List.List(index), ui::window_text);
        };
        setScale(6000, 6000);
    }
    void layOut() override {
        ui::fill(*this, ui::rows({ui::item(List).growing(), ui::item(View).growing(), ui::item(Input)}).gap(60));
    }

    static constexpr ui::Colour plain = ui::rgb(10, 200, 30), chosen = ui::rgb(200, 20, 220);
    ui::ListBox List{*this};
    ui::RichTextBox View{*this, ui::RichTextBox::Use::show};
    ui::RichTextBox Input{*this, ui::RichTextBox::Use::edit};
};

std::u16string textOf(HWND window) {
    std::array<wchar_t, 4096> text{};
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return std::u16string(text.begin(), text.begin() + length);
}

TEST(Controls, FormIsFoundByItsClassAndLaidOutAnewWhereItIsResized) {
    Sizable form;
    form.Show();
    serveAll();
    EXPECT_EQ(FindWindowW(L"MurmelixTestWindow", L"Controls"), windowOf(form));
    const int before = form.List.Width();
    ui::Rect place = form.Place();
    place.width += 200;
    form.setPlace(place);
    serveAll();
    EXPECT_EQ(form.Place(), place);
    EXPECT_EQ(form.List.Width(), before + ui::toTwips(200));
    place.width = 1;
    place.height = 1;
    form.setPlace(place);
    serveAll();
    EXPECT_EQ(form.ScaleWidth(), 3000);
    EXPECT_EQ(form.ScaleHeight(), 1500);
}

TEST(Controls, ListShowsTheRowsThatItsOwnerDraws) {
    Sizable form;
    form.List.setItems({u"one", u"two", u"three"});
    form.List.setListIndex(1);
    form.Show();
    show(form, "toolkit-controls");
    const Image image = insideOf(windowOf(form.List));
    const int row = ui::toPixels(600), right = image.width / 2;
    EXPECT_EQ(image.at(right, row / 2), Sizable::plain);
    EXPECT_EQ(image.at(right, row + row / 2), Sizable::chosen);
    EXPECT_EQ(image.at(right, 2 * row + row / 2), Sizable::plain);
}

TEST(Controls, ListHearsMouseAndKeyboard) {
    Sizable form;
    form.List.setItems({u"one", u"two", u"three"});
    std::vector<int> picked;
    int doubled = 0;
    form.List.Click = [&] { picked.push_back(form.List.ListIndex()); };
    form.List.DblClick = [&] { ++doubled; };
    form.Show();
    serveAll();
    HWND list = windowOf(form.List);
    const int row = ui::toPixels(600);
    press(list, 20, row + row / 2);
    key(list, VK_DOWN);
    press(list, 20, 10);
    PostMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(20, 10));
    PostMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(20, 10));
    serveAll();
    EXPECT_THAT(picked, testing::ElementsAre(1, 2, 0));
    EXPECT_EQ(doubled, 1);
}

TEST(Controls, ListFollowsRowsThatComeAndGo) {
    Sizable form;
    form.List.setItems({u"one", u"two"});
    form.List.setListIndex(1);
    form.List.InsertItem(0, u"zero");
    form.List.setItem(1, u"uno");
    HWND list = windowOf(form.List);
    EXPECT_EQ(SendMessageW(list, LB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 2);
    std::array<wchar_t, 32> text{};
    SendMessageW(list, LB_GETTEXT, 1, reinterpret_cast<LPARAM>(text.data()));
    EXPECT_STREQ(text.data(), L"uno");
    form.List.setItem(2, u"dos");
    EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 2);
    form.List.RemoveItem(2);
    EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), LB_ERR);
}

TEST(Controls, MenuIsAskedForByMouseAndKeyboardAboutTheRowThere) {
    Sizable form;
    form.List.setItems({u"one", u"two", u"three"});
    std::vector<int> asked;
    form.List.ContextMenu = [&] { asked.push_back(form.List.ListIndex()); };
    form.Show();
    serveAll();
    HWND list = windowOf(form.List);
    POINT at{20, ui::toPixels(600) + 5};
    ClientToScreen(list, &at);
    SendMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(at.x, at.y));
    SendMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(-1, -1));
    EXPECT_THAT(asked, testing::ElementsAre(1, 1));
}

TEST(Controls, ViewShowsRunsAndFollowsItsEndUnlessTheUserLooksBack) {
    Sizable form;
    form.Show();
    serveAll();
    HWND view = windowOf(form.View);
    const auto first_line = [&] { return SendMessageW(view, EM_GETFIRSTVISIBLELINE, 0, 0); };
    const ui::RichTextBox::Looks name{ui::rgb(90, 90, 90), true, 0, 90}, message{ui::window_text, false, 150, 0};
    form.View.BeginUpdate();
    for (int i = 0; i < 60; ++i) {
        form.View.Append(u"\r\nAnn says:", name);
        form.View.Append(u"\r\nline " + toText(i), message);
    }
    form.View.EndUpdate();
    serveAll();
    EXPECT_GT(first_line(), 90);
    SendMessageW(view, WM_VSCROLL, SB_TOP, 0);
    serveAll();
    ASSERT_EQ(first_line(), 0);
    form.View.Append(u"\r\nBob says:", name);
    serveAll();
    EXPECT_EQ(first_line(), 0) << "the user is reading there";
    SendMessageW(view, WM_VSCROLL, SB_BOTTOM, 0);
    serveAll();
    const auto before = first_line();
    form.View.Append(u"\r\nmore\r\nand more\r\nand more", message);
    serveAll();
    EXPECT_GT(first_line(), before);
    // The selection of the user stays.
    CHARRANGE range{3, 9};
    SendMessageW(view, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    form.View.Append(u"\r\nagain", message);
    CHARRANGE after{};
    SendMessageW(view, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&after));
    EXPECT_EQ(after.cpMin, 3);
    EXPECT_EQ(after.cpMax, 9);
    CHARFORMAT2W format{};
    format.cbSize = sizeof format;
    SendMessageW(view, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    EXPECT_TRUE(format.dwEffects & CFE_BOLD);
    EXPECT_EQ(format.crTextColor, RGB(90, 90, 90));
}

// A form whose view has a hundred lines, "line 0" to "line 99".
struct LongView : Sizable {
    LongView() {
        Show();
        View.BeginUpdate();
        for (int i = 0; i < 100; ++i) {
            View.Append((i == 0 ? u"line " : u"\r\nline ") + toText(i), {});
        }
        View.EndUpdate();
        serveAll();
    }
    HWND view() { return windowOf(View); }
    std::u16string firstInSight() {
        const auto line = static_cast<int>(SendMessageW(view(), EM_GETFIRSTVISIBLELINE, 0, 0));
        wchar_t text[64] = {63};
        const auto length = SendMessageW(view(), EM_GETLINE, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text));
        std::u16string seen(reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length));
        return seen.substr(0, seen.find(u'\r'));
    }
    CHARRANGE selection() {
        CHARRANGE range{};
        SendMessageW(view(), EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
        return range;
    }
    void select(LONG from, LONG to) {
        CHARRANGE range{from, to};
        SendMessageW(view(), EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    }
    CHARFORMAT2W formatAt(LONG from, LONG to) {
        select(from, to);
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        SendMessageW(view(), EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
        return format;
    }
};

TEST(Controls, WhatTheUserSeesInAViewStaysWhenLinesBeforeItGo) {
    LongView form;
    EXPECT_EQ(form.View.Length(), 10 * 7 + 90 * 8 - 1);
    form.View.Find(u"line 60");
    SendMessageW(form.view(), WM_VSCROLL, SB_TOP, 0);
    for (int i = 0; i < 50; ++i) {
        SendMessageW(form.view(), WM_VSCROLL, SB_LINEDOWN, 0);
    }
    const std::u16string seen = form.firstInSight();
    ASSERT_TRUE(seen.starts_with(u"line ")) << "scrolled to the middle";
    ASSERT_NE(seen, u"line 0");
    form.View.Remove(0, 10 * 7);
    serveAll();
    EXPECT_EQ(form.firstInSight(), seen);
    EXPECT_TRUE(textOf(form.view()).starts_with(u"line 10\r\n"));
    form.View.Find(u"line 11");
    const CHARRANGE selected = form.selection();
    EXPECT_EQ(selected.cpMin, 8);
    form.View.Remove(0, 8);
    EXPECT_EQ(form.selection().cpMin, 0);
    EXPECT_EQ(form.selection().cpMax, 7);
}

// A busy channel's window has hundreds of thousands of lines in an evening, of which it shows the last.
TEST(Controls, LinesThatCameAndWentLeaveNothingInMemory) {
    LongView form;
    const auto comeAndGo = [&form](int lines) {
        form.View.BeginUpdate();
        for (int line = 0; line < lines; ++line) {
            form.View.Append(u"\r\nsomebody", {.bold = true});
            form.View.Append(u" writes a line", {});
            if (line % 50 == 49) {
                form.View.setLooks(7, 8, {.bold = line % 100 == 99});
                form.View.Remove(0, 50 * static_cast<int>(std::size("somebody writes a line")));
            }
        }
        form.View.EndUpdate();
        PROCESS_MEMORY_COUNTERS memory{};
        K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
        return static_cast<long long>(memory.PagefileUsage);
    };
    const int length = form.View.Length();
    const long long at_first = comeAndGo(2'000);
    EXPECT_LT(comeAndGo(5'000) - at_first, 512 * 1024) << "bytes; a line end and its buffer for each line are 1.5 MB";
    EXPECT_EQ(form.View.Length(), length) << "as many have gone as came";
}

TEST(Controls, ViewAtItsEndStaysThereWhenLinesGo) {
    LongView form;
    ASSERT_NE(form.firstInSight(), u"line 0");
    form.View.Remove(0, 10 * 7);
    serveAll();
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(form.view(), SB_VERT, &info);
    EXPECT_GE(info.nPos + static_cast<int>(info.nPage) + 24, info.nMax);
}

TEST(Controls, RemovingFromAViewWhereThereIsNothingDoesNothing) {
    LongView form;
    const int length = form.View.Length();
    form.View.Remove(length, 5);
    form.View.Remove(-1, 5);
    form.View.Remove(3, 0);
    EXPECT_EQ(form.View.Length(), length);
    form.View.Remove(length - 7, 500);
    EXPECT_EQ(form.View.Length(), length - 7);
}

TEST(Controls, LooksOfWhatAViewShowsChange) {
    LongView form;
    form.View.setLooks(7, 6, {.colour = ui::rgb(1, 2, 3), .bold = true});
    EXPECT_EQ(form.formatAt(7, 13).crTextColor, RGB(1, 2, 3));
    EXPECT_TRUE(form.formatAt(7, 13).dwEffects & CFE_BOLD);
    form.select(3, 3);
    form.View.setLooks(7, 6, {.colour = ui::rgb(1, 2, 3), .bold = true});
    EXPECT_EQ(form.selection().cpMin, 3) << "the user has selected nothing";
    EXPECT_EQ(form.selection().cpMax, 3);
    EXPECT_FALSE(form.formatAt(0, 6).dwEffects & CFE_BOLD);
    form.View.setLooks(7, 6, {});
    EXPECT_FALSE(form.formatAt(7, 13).dwEffects & CFE_BOLD);
}

TEST(Controls, ViewIsSearchedRoundItsEnds) {
    LongView form;
    EXPECT_TRUE(form.View.Find(u"LINE 98"));
    const LONG near_end = form.selection().cpMin;
    EXPECT_EQ(near_end, 98 * 8 - 10);
    EXPECT_TRUE(form.View.Find(u"line 5"));
    EXPECT_EQ(form.selection().cpMin, 5 * 7);
    EXPECT_TRUE(form.View.Find(u"line 5"));
    EXPECT_EQ(form.selection().cpMin, 50 * 8 - 10);
    EXPECT_TRUE(form.View.Find(u"line 5", true));
    EXPECT_EQ(form.selection().cpMin, 5 * 7);
    EXPECT_TRUE(form.View.Find(u"line 5", true));
    EXPECT_EQ(form.selection().cpMin, 59 * 8 - 10);
    EXPECT_FALSE(form.View.Find(u"line 100"));
    EXPECT_EQ(form.selection().cpMin, 59 * 8 - 10);
    EXPECT_FALSE(form.View.Find(u""));
    form.View.ShowEnd();
}

TEST(Controls, LinkInAViewIsClicked) {
    Sizable form;
    std::vector<std::u16string> clicked;
    form.View.LinkClick = [&](const std::u16string& text) { clicked.push_back(text); };
    form.Show();
    form.View.Append(u"see ", {});
    form.View.Append(u"http://example.org/", {.link = true});
    form.View.Append(u" there", {});
    serveAll();
    HWND view = windowOf(form.View);
    const auto click = [&](int character) {
        POINTL at{};
        SendMessageW(view, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&at), character);
        const LPARAM place = MAKELPARAM(at.x + 2, at.y + 4);
        SendMessageW(view, WM_LBUTTONDOWN, MK_LBUTTON, place);
        SendMessageW(view, WM_LBUTTONUP, 0, place);
        serveAll();
    };
    click(10);
    EXPECT_THAT(clicked, testing::ElementsAre(u"http://example.org/"));
    click(1);
    EXPECT_EQ(clicked.size(), 1u);
}

TEST(Controls, NulInAViewIsSeenAsItsSign) {
    Sizable form;
    form.View.Append(std::u16string_view(u"a\0b", 3), {});
    EXPECT_EQ(textOf(windowOf(form.View)), u"a\u2400b");
}

TEST(Controls, InputKeepsEnterUnlessSomebodyWantsIt) {
    Sizable form;
    form.Show();
    form.Input.SetFocus();
    std::vector<ui::Shortcut> heard;
    form.Input.KeyPress = [&](const ui::Shortcut& key) {
        heard.push_back(key);
        return key == ui::Shortcut{ui::Key::enter} && form.Input.Text() == u"send";
    };
    HWND input = windowOf(form.Input);
    form.Input.setText(u"");
    key(input, VK_RETURN);
    EXPECT_EQ(form.Input.Text(), u"\r\n");
    // Another program's text is the input's as well.
    SetWindowTextW(input, L"send");
    key(input, VK_RETURN);
    EXPECT_EQ(form.Input.Text(), u"send");
    EXPECT_EQ(heard.size(), 2u);
}

class Tabbed : public ui::Form {
  public:
    Tabbed() : Form(nullptr, u"Tabs", ui::FormStyle::dialog) { layOut(); }
    void layOut() override {
        setScale(4500, 3000);
        Pages.Move({120, 120, 4260, 2760});
        Text.Move({150, 150, 3000, 270});
        Check.Move({150, 600, 3000, 270});
    }
    ui::TabPages Pages{*this};
    ui::TabPage One{Pages, u"One"};
    ui::TabPage Two{Pages, u"Two"};
    ui::Label Text{One, u"The first page"};
    ui::CheckBox Check{Two, u"&Check"};
};

TEST(Controls, PagesAreTurnedByMouseAndKeyboard) {
    Tabbed form;
    form.Show();
    show(form, "toolkit-tabs");
    HWND tabs = windowOf(form.Pages);
    EXPECT_TRUE(IsWindowVisible(windowOf(form.Text)));
    EXPECT_FALSE(IsWindowVisible(windowOf(form.Check)));
    RECT second{};
    SendMessageW(tabs, TCM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
    press(tabs, second.left + 5, second.top + 5);
    EXPECT_EQ(form.Pages.Selected(), 1);
    EXPECT_TRUE(IsWindowVisible(windowOf(form.Check)));
    PostMessageW(tabs, WM_SYSCHAR, 'c', 1);
    serveAll();
    EXPECT_EQ(form.Check.Value(), 1);
    form.Pages.SetFocus();
    key(tabs, VK_LEFT);
    EXPECT_EQ(form.Pages.Selected(), 0);
    press(windowOf(form.Check), 5, 5); // hidden: not where the user can get at it
    key(tabs, VK_RIGHT);
    EXPECT_EQ(form.Pages.Selected(), 1);
    press(windowOf(form.Check), 5, 5);
    EXPECT_EQ(form.Check.Value(), 1);
    EXPECT_THAT(layoutMistakes(form), testing::IsEmpty());
}

TEST(Controls, ComboBoxHearsWhatIsTypedAndPicked) {
    ui::Form form(nullptr, u"Combo", ui::FormStyle::dialog);
    ui::ComboBox box(form);
    box.Move({100, 100, 2000, 330});
    box.setItems({u"ann", u"bob"});
    std::string told;
    box.Change = [&] { told += "change:" + toUtf8(box.Text()) + " "; };
    box.Picked = [&] { told += "picked "; };
    form.Show();
    box.SetFocus();
    box.setText(u"a");
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    ASSERT_TRUE(GetComboBoxInfo(windowOf(box), &parts));
    SendMessageW(parts.hwndItem, EM_SETSEL, 1, 1);
    PostMessageW(parts.hwndItem, WM_CHAR, L'x', 1);
    serveAll();
    EXPECT_EQ(told, "change:a change:ax ");
    key(parts.hwndItem, VK_DOWN);
    EXPECT_EQ(told, "change:a change:ax change:ann picked ");
    box.setItems({u"carl"});
    EXPECT_EQ(textOf(windowOf(box)), u"ann");
}

TEST(Controls, KeysOfAnOpenComboBoxAreItsOwn) {
    class Asking : public ui::Form {
      public:
        Asking() : Form(nullptr, u"Combo", ui::FormStyle::dialog) {
            Name.Move({100, 100, 2000, 330});
            Name.setItems({u"ann", u"bob"});
            Name.KeyPress = [this](const ui::Shortcut& key) {
                heard += key.key == ui::Key::f2 ? "f2 " : "";
                return false;
            };
            Ok.Move({100, 600, 1000, 400});
            Ok.Click = [this] { heard += "ok "; };
            DefaultButton = &Ok;
        }
        bool onEscape() override {
            heard += "escape ";
            return true;
        }
        ui::ComboBox Name{*this};
        ui::Button Ok{*this, u"OK"};
        std::string heard;
    } form;
    form.Show();
    form.Name.SetFocus();
    const HWND box = windowOf(form.Name);
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    ASSERT_TRUE(GetComboBoxInfo(box, &parts));
    const auto open = [&] { return SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0) != 0; };

    SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
    key(parts.hwndItem, VK_F2);
    key(parts.hwndItem, VK_DOWN);
    key(parts.hwndItem, VK_RETURN);
    EXPECT_FALSE(open());
    EXPECT_EQ(form.heard, "f2 ");
    EXPECT_EQ(form.Name.Text(), u"ann");
    SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
    key(parts.hwndItem, VK_ESCAPE);
    EXPECT_FALSE(open());
    EXPECT_EQ(form.heard, "f2 ");
    key(parts.hwndItem, VK_ESCAPE);
    key(parts.hwndItem, VK_RETURN);
    EXPECT_EQ(form.heard, "f2 escape ok ");
}

TEST(Controls, AreaShowsItsLinesAndTakesNone) {
    ui::Form form(nullptr, u"Area", ui::FormStyle::dialog);
    ui::TextArea area(form);
    area.Move({100, 100, 2000, 900});
    form.Show();
    area.AddLine(u"one");
    area.AddLine(u"two");
    PostMessageW(windowOf(area), WM_CHAR, L'x', 1);
    serveAll();
    EXPECT_EQ(textOf(windowOf(area)), u"one\r\ntwo\r\n");
}

TEST(Controls, OwnerDrawnButtonLooksAsDrawnAndIsPressed) {
    ui::Form form(nullptr, u"Button", ui::FormStyle::dialog);
    form.setScale(3000, 1500);
    ui::Button button(form, u"&Name");
    button.Move({100, 100, 2000, 600});
    button.setDraw([](ui::Surface& surface, const ui::Button::Looks&) {
        surface.Gradient({0, 0, surface.Width(), surface.Height()}, ui::rgb(0, 0, 200), ui::rgb(0, 200, 0));
        surface.Ellipse({4, 4, 12, 12}, ui::rgb(250, 0, 0), ui::rgb(250, 0, 0));
    });
    int pressed = 0;
    button.Click = [&] { ++pressed; };
    form.Show();
    show(form, "toolkit-owner-drawn");
    const Image image = insideOf(windowOf(button));
    EXPECT_EQ(image.at(image.width - 3, 0), RGB(0, 0, 200));
    EXPECT_GT(GetGValue(image.at(image.width - 3, image.height - 1)), 150);
    EXPECT_EQ(image.at(10, 10), RGB(250, 0, 0));
    press(windowOf(button), 10, 10);
    EXPECT_EQ(pressed, 1);
}

TEST(Controls, KeyIsHeardWhicheverWindowHasTheKeyboard) {
    Sizable form;
    form.Show();
    ASSERT_TRUE(serveUntil([&] { return GetForegroundWindow() == windowOf(form); }));
    ui::GlobalKey key, other;
    int pressed = 0;
    key.Pressed = [&] { ++pressed; };
    const ui::Shortcut control_f11{ui::Key::f11, ui::control_key};
    ASSERT_TRUE(key.Set(control_f11));
    EXPECT_FALSE(other.Set(control_f11)) << "it is taken";
    typeKey(VK_F11, VK_CONTROL);
    EXPECT_TRUE(serveUntil([&] { return pressed == 1; }));
    // Taken away, and set anew: in order, so that the last press heard tells that the others were not.
    ASSERT_TRUE(key.Set({ui::Key::f11, ui::alt_key}));
    typeKey(VK_F11, VK_CONTROL);
    typeKey(VK_F11, VK_MENU);
    EXPECT_TRUE(serveUntil([&] { return pressed > 1; }));
    serveAll();
    EXPECT_EQ(pressed, 2);
    EXPECT_TRUE(other.Set(control_f11));
    EXPECT_TRUE(other.Set({u'7', ui::control_key | ui::alt_key | ui::shift_key}));
}

TEST(Controls, ShortcutBoxShowsTheKeyThatIsPressedInIt) {
    Sizable form;
    ui::ShortcutBox box(form);
    box.Move({120, 120, 3000, 300});
    std::vector<ui::Shortcut> picked;
    box.Picked = [&](const ui::Shortcut& shortcut) { picked.push_back(shortcut); };
    form.Show();
    box.SetFocus();
    ASSERT_TRUE(serveUntil([&] { return GetFocus() == windowOf(box); }));
    const auto shown = [&] {
        wchar_t text[64] = L"";
        GetWindowTextW(windowOf(box), text, 64);
        return std::wstring(text);
    };
    EXPECT_EQ(shown(), L"None");
    key(windowOf(box), VK_F7);
    EXPECT_EQ(shown(), L"F7");
    key(windowOf(box), 'Q');
    EXPECT_EQ(shown(), L"Q") << "taken as a key, not as a letter";
    SendMessageW(windowOf(box), WM_CHAR, VK_BACK, 0);
    EXPECT_EQ(shown(), L"None");
    SendMessageW(windowOf(box), WM_CHAR, L'x', 0); // by an input method
    EXPECT_EQ(shown(), L"None");
    EXPECT_THAT(picked, testing::ElementsAre(ui::Shortcut(ui::Key::f7), ui::Shortcut(u'Q', 0), ui::Shortcut()));
}

TEST(Controls, WhatAnotherThreadPostsIsDoneHereInOrderHoweverFullTheQueueIs) {
    ui::Form form(nullptr, u"", ui::FormStyle::dialog);
    // As many as the system keeps for a thread, and more: each is lost for whoever does not look.
    for (int i = 0; i < 20000 && PostMessageW(windowOf(form), WM_NULL, 0, 0); ++i) {
    }
    std::vector<int> done;
    const auto here = std::this_thread::get_id();
    std::thread other([&] {
        for (int i = 0; i < 100; ++i) {
            ui::post([&, i] {
                if (std::this_thread::get_id() == here) {
                    done.push_back(i);
                }
            });
        }
    });
    other.join();
    EXPECT_TRUE(serveUntil([&] { return done.size() == 100; }));
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
}

TEST(Controls, RichEditLibraryIsTheSystemsOwn) {
    Sizable form;
    wchar_t path[MAX_PATH] = L"", system[MAX_PATH] = L"";
    ASSERT_TRUE(GetModuleHandleW(L"riched20.dll"));
    GetModuleFileNameW(GetModuleHandleW(L"riched20.dll"), path, MAX_PATH);
    GetSystemDirectoryW(system, MAX_PATH);
    EXPECT_EQ(_wcsnicmp(path, system, wcslen(system)), 0);
}

} // namespace
} // namespace murmelix
