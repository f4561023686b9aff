// The list as it is drawn, pixel by pixel; and pictures of it for people.
#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>

#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/windows/program/window_test.h"
#include "ui/form.h"
#include "ui/win32/gdi.h"

namespace murmelix {
namespace {

using namespace test;

// Of a picture; right and bottom are beyond it.
struct Area {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const Area&) const = default;
    bool empty() const { return *this == Area{}; }
};

class ListPixels : public testing::Test {
  protected:
    // One window for all tests: showing one takes long on a screen without a window manager.
    static void SetUpTestSuite() {
        form = std::make_unique<ui::Form>(nullptr, u"List", ui::FormStyle::window);
        form->setScale(3000, 1500);
        form->Show();
    }
    static void TearDownTestSuite() { form.reset(); }

    ListPixels() {
        list.Move({0, 0, 3000, 1500});
        list.setItemHeight(30);
        list.SetPos(40, 0, 40, 15, 0, 0);
        serveAll();
    }

    void fill(int rows) {
        for (int row = 1; row <= rows; ++row) {
            list.AddItem(u"Caption " + toText(row), u"Text " + toText(row), toText(row), false);
        }
    }
    Image seen() { return insideOf(windowOf(list.P)); }
    COLORREF pixel(int x, int y) { return seen().at(x, y); }
    int count(const Area& area, COLORREF colour) {
        const Image image = seen();
        int found = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                found += image.at(x, y) == colour ? 1 : 0;
            }
        }
        return found;
    }
    int others(const Area& area, COLORREF background) {
        return (area.right - area.left) * (area.bottom - area.top) - count(area, background);
    }
    // The smallest area that holds all pixels that are not of the background; empty where there are none.
    Area ink(COLORREF background, const Area& within) {
        const Image image = seen();
        Area around;
        for (int y = within.top; y < within.bottom; ++y) {
            for (int x = within.left; x < within.right; ++x) {
                if (image.at(x, y) == background) {
                    continue;
                }
                if (around.empty()) {
                    around = {x, y, x, y};
                }
                around = {std::min(around.left, x), around.top, std::max(around.right, x + 1), y + 1};
            }
        }
        return around;
    }
    Area whole() { return {0, 0, list.P.surface().Width(), list.P.surface().Height()}; }
    // The longest run of pixels of a colour in any line of the area.
    int longestRun(const Area& area, COLORREF colour) {
        const Image image = seen();
        int longest = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left, run = 0; x < area.right; ++x) {
                run = image.at(x, y) == colour ? run + 1 : 0;
                longest = std::max(longest, run);
            }
        }
        return longest;
    }

    const COLORREF white = GetSysColor(COLOR_WINDOW), highlight = GetSysColor(COLOR_HIGHLIGHT),
                   grey = GetSysColor(COLOR_GRAYTEXT);
    static inline std::unique_ptr<ui::Form> form;
    CoolListBox list{*form};
};

TEST_F(ListPixels, SelectedRowHasTheHighlightAcrossItsWholeRectangle) {
    list.AddItem(u"Caption", u"Text", u"1", true);
    list.AddItem(u"Caption", u"Text", u"2", false);
    const int right = list.P.surface().Width() - 1;
    for (const auto& [x, y] : {std::pair{0, 0}, {right, 0}, {0, 29}, {right, 29}}) {
        EXPECT_EQ(pixel(x, y), highlight) << x << "," << y;
    }
    for (const auto& [x, y] : {std::pair{0, 30}, {right, 30}, {0, 59}, {0, 61}}) {
        EXPECT_EQ(pixel(x, y), white) << x << "," << y;
    }
}

TEST_F(ListPixels, SelectionMovesItsHighlight) {
    fill(3);
    list.setSelected(1);
    list.setSelected(3);
    EXPECT_EQ(pixel(1, 1), white);
    EXPECT_EQ(pixel(1, 61), highlight);
    list.setSelected(0);
    EXPECT_EQ(count(whole(), highlight), 0);
}

TEST_F(ListPixels, TextIsInTheColoursOfItsRow) {
    fill(2);
    list.setSelected(1);
    EXPECT_GT(count({40, 0, 120, 30}, GetSysColor(COLOR_HIGHLIGHTTEXT)), 0);
    EXPECT_GT(count({40, 30, 120, 60}, GetSysColor(COLOR_BTNTEXT)), 0);
    EXPECT_EQ(count({40, 0, 120, 30}, GetSysColor(COLOR_BTNTEXT)), 0);
}

TEST_F(ListPixels, DisabledListHasGreyTextAndKeepsItsHighlight) {
    fill(2);
    list.setSelected(1);
    list.setEnabledIt(false);
    EXPECT_EQ(pixel(0, 0), highlight);
    EXPECT_EQ(pixel(0, 29), highlight);
    for (const Area& row : {Area{40, 0, 120, 30}, Area{40, 30, 120, 60}}) {
        EXPECT_GT(count(row, grey), 0);
        EXPECT_EQ(count(row, GetSysColor(COLOR_BTNTEXT)), 0);
    }
    EXPECT_EQ(count({40, 0, 120, 30}, GetSysColor(COLOR_HIGHLIGHTTEXT)), 0);
    list.setEnabledIt(true);
    EXPECT_EQ(count(whole(), grey), 0);
}

TEST_F(ListPixels, BackColorIsThatOfRowsAndOfTheRest) {
    fill(1);
    list.setBackColor(0x00998877); // blue, green, red
    EXPECT_EQ(pixel(0, 0), RGB(0x77, 0x88, 0x99));
    EXPECT_EQ(pixel(0, 60), RGB(0x77, 0x88, 0x99));
    EXPECT_EQ(count(whole(), white), 0);
}

TEST_F(ListPixels, CaptionIsHeavierThanTextAndUnderlinedAlone) {
    list.AddItem(u"iiii", u"iiii", u"1", false);
    const Area caption{40, 0, 80, 15}, text{40, 15, 80, 30};
    EXPECT_GT(others(text, white), 0);
    EXPECT_GT(others(caption, white), others(text, white));
    EXPECT_EQ(others({0, 0, 40, 30}, white), 0) << "left of the text";
    const Area caption_ink = ink(white, caption);
    EXPECT_GE(longestRun(caption, GetSysColor(COLOR_BTNTEXT)), caption_ink.right - caption_ink.left - 2);
    EXPECT_LE(longestRun(text, GetSysColor(COLOR_BTNTEXT)), 3) << "a stroke of a letter";
}

TEST_F(ListPixels, OffsetsPlaceCaptionAndText) {
    list.AddItem(u"H", u"H", u"1", false);
    const Area caption = ink(white, {0, 0, 200, 15}), text = ink(white, {0, 15, 200, 30});
    list.SetPos(100, 0, 120, 15, 0, 0);
    const Area moved_caption = ink(white, {0, 0, 200, 15}), moved_text = ink(white, {0, 15, 200, 30});
    EXPECT_EQ(moved_caption.left, caption.left + 60);
    EXPECT_EQ(moved_text.left, text.left + 80);
    EXPECT_EQ(moved_caption.top, caption.top);
    EXPECT_EQ(moved_text.top, text.top);
}

TEST_F(ListPixels, IconIsPaintedAtItsOffsets) {
    list.setItemHeight(48);
    list.AddItem(u"", u"", u"1", false, {u"picture_conversation", 32});
    list.SetPos(0, 0, 0, 0, 7, 5);
    const Area icon = ink(white, whole());
    const int size = ui::win32::scaled(32);
    EXPECT_GE(icon.left, 7);
    EXPECT_GE(icon.top, 5);
    EXPECT_LE(icon.right, 7 + size);
    EXPECT_LE(icon.bottom, 5 + size);
    EXPECT_GT(icon.right - icon.left, size / 2) << "there is a picture";
    list.SetPos(0, 0, 0, 0, 57, 9);
    EXPECT_EQ(ink(white, whole()), (Area{icon.left + 50, icon.top + 4, icon.right + 50, icon.bottom + 4}));
}

TEST_F(ListPixels, IconLiesUponTheHighlight) {
    list.setItemHeight(48);
    list.AddItem(u"", u"", u"1", true, {u"picture_conversation", 32});
    const int right = list.P.surface().Width();
    const Area icon = ink(highlight, {0, 0, right, 48});
    EXPECT_GT(icon.right - icon.left, 16);
    EXPECT_EQ(pixel(right - 1, 47), highlight);
}

TEST_F(ListPixels, EmptyListShowsItsMessageGreyInTheMiddle) {
    list.setNoItemCaption(u"iiiiiiii");
    const Area message = ink(white, whole());
    EXPECT_NEAR(message.left, whole().right - message.right, 2);
    EXPECT_NEAR(message.top, whole().bottom - message.bottom, 4) << "letters stand a little high on their line";
    EXPECT_GT(count(message, grey), 0);
    EXPECT_EQ(count(whole(), GetSysColor(COLOR_BTNTEXT)), 0);
}

TEST_F(ListPixels, MatchupMessageStandsInThreeLinesTheMiddleOneBlank) {
    form->setScale(6000, 1500);
    list.Move({0, 0, 6000, 1500});
    list.setNoItemCaption(u"No matchups for this character.[ENTER] [ENTER] Drag and drop MSN contact names here");
    const int width = list.P.surface().Width(), middle = list.P.surface().Height() / 2;
    const int line = list.P.surface().TextHeight();
    const int top = (list.P.surface().Height() - 3 * line) / 2;
    const auto lineInk = [&](int number) {
        return ink(white, {0, top + number * line, width, top + (number + 1) * line});
    };
    EXPECT_FALSE(lineInk(0).empty());
    EXPECT_TRUE(lineInk(1).empty());
    EXPECT_FALSE(lineInk(2).empty());
    for (const int number : {0, 2}) {
        EXPECT_NEAR(lineInk(number).left, width - lineInk(number).right, 6) << number;
    }
    EXPECT_LT(lineInk(0).bottom, middle);
    EXPECT_GT(lineInk(2).top, middle);
    show(*form, "list-empty");
    form->setScale(3000, 1500);
}

TEST_F(ListPixels, LongMessageStaysWithinItsMargins) {
    list.setNoItemCaption(u"You need to download more characters to have more matchups than there are now");
    const Area message = ink(white, whole());
    EXPECT_GE(message.left, 8);
    EXPECT_LE(message.right, whole().right - 8);
    EXPECT_GE(message.bottom - message.top, 2 * list.P.surface().TextHeight());
}

TEST_F(ListPixels, MessageGoesWithTheFirstRowAndComesBackWithoutRows) {
    list.setNoItemCaption(u"HHHH");
    const Area message = ink(white, whole());
    list.AddItem(u"", u"", u"1", false);
    EXPECT_TRUE(ink(white, whole()).empty());
    list.ClearList();
    EXPECT_EQ(ink(white, whole()), message);
}

TEST_F(ListPixels, ScrollBarIsThereWhereRowsDoNotFitAlone) {
    const int fitting = list.P.surface().Height() / 30, width = list.P.surface().Width();
    fill(fitting);
    EXPECT_FALSE(IsWindowVisible(windowOf(list.Scroll)));
    fill(fitting + 2);
    EXPECT_TRUE(IsWindowVisible(windowOf(list.Scroll)));
    RECT surface{}, bar{};
    GetWindowRect(windowOf(list.P), &surface);
    GetWindowRect(windowOf(list.Scroll), &bar);
    EXPECT_EQ(bar.left, surface.right);
    EXPECT_EQ(bar.bottom - bar.top, surface.bottom - surface.top);
    EXPECT_EQ(list.P.surface().Width(), width - (bar.right - bar.left));
    list.setSelected(1);
    EXPECT_EQ(pixel(list.P.surface().Width() - 1, 0), highlight) << "rows end where the bar begins";
    for (int row = fitting + 2; row > fitting; --row) {
        list.RemoveItem(toText(row));
    }
    EXPECT_FALSE(IsWindowVisible(windowOf(list.Scroll)));
    EXPECT_EQ(pixel(width - 1, 0), highlight);
}

TEST_F(ListPixels, ScrolledRowsMoveUp) {
    fill(10);
    list.setSelected(3);
    EXPECT_EQ(pixel(1, 75), highlight);
    SendMessageW(windowOf(list), WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(windowOf(list.Scroll)));
    EXPECT_EQ(list.Scroll.Value(), 1);
    EXPECT_EQ(pixel(1, 75), white);
    EXPECT_EQ(pixel(1, 45), highlight);
}

TEST_F(ListPixels, ScrollBarHasTheRangeOfTheRows) {
    fill(10);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    const auto read = [&] { return GetScrollInfo(windowOf(list.Scroll), SB_CTL, &info); };
    ASSERT_TRUE(read());
    EXPECT_EQ(info.nMax - static_cast<int>(info.nPage) + 1, list.Scroll.Max());
    EXPECT_EQ(info.nPos, 0);
    list.Scroll.setValue(4);
    ASSERT_TRUE(read());
    EXPECT_EQ(info.nPos, 4);
}

TEST_F(ListPixels, PartlyVisibleLastRowIsDrawn) {
    const int height = list.P.surface().Height();
    ASSERT_NE(height % 30, 0);
    const int rows = height / 30 + 1;
    fill(rows);
    list.setSelected(static_cast<std::int16_t>(rows));
    EXPECT_EQ(pixel(1, height - 1), highlight);
}

TEST_F(ListPixels, FlatListHasNoRim) {
    const int with_rim = list.P.surface().Width();
    list.setAppearance(0);
    EXPECT_EQ(list.P.surface().Width(), with_rim + 2 * GetSystemMetrics(SM_CXEDGE));
    list.setAppearance(1);
    EXPECT_EQ(list.P.surface().Width(), with_rim);
}

TEST_F(ListPixels, ChangedFontSizeIsSeenWithTheNextRepaint) {
    list.AddItem(u"", u"H", u"1", false);
    const Area small = ink(white, whole());
    list.ChangeFontSize(24);
    EXPECT_EQ(ink(white, whole()), small);
    list.Redraw();
    EXPECT_GT(ink(white, whole()).bottom, small.bottom + 5);
}

TEST_F(ListPixels, MouseSelectsAndKeysScroll) {
    fill(10);
    press(windowOf(list.P), 10, 45);
    EXPECT_EQ(list.Selected(), 2);
    EXPECT_EQ(GetFocus(), windowOf(list.P));
    key(windowOf(list.P), VK_DOWN);
    EXPECT_EQ(list.Scroll.Value(), 1);
    key(windowOf(list.P), VK_UP);
    EXPECT_EQ(list.Scroll.Value(), 0);
    key(windowOf(list.P), VK_UP);
    EXPECT_EQ(list.Scroll.Value(), 0);
}

TEST_F(ListPixels, AnyButtonSelects) {
    fill(3);
    for (const auto& [down, up, y] : {std::tuple{WM_RBUTTONDOWN, WM_RBUTTONUP, 45},
                                      {WM_MBUTTONDOWN, WM_MBUTTONUP, 75},
                                      {WM_LBUTTONDOWN, WM_LBUTTONUP, 15}}) {
        PostMessageW(windowOf(list.P), down, 0, MAKELPARAM(10, y));
        PostMessageW(windowOf(list.P), up, 0, MAKELPARAM(10, y));
        serveAll();
        EXPECT_EQ(list.Selected(), y / 30 + 1);
        EXPECT_NE(GetCapture(), windowOf(list.P)) << "the mouse is free again";
    }
}

TEST_F(ListPixels, ListsOfAllStatesStandInPictures) {
    form->setScale(9600, 4200);
    CoolListBox disabled(*form), scrolled(*form);
    for (auto& [shown, left] : {std::pair{&list, 150}, {&disabled, 3300}, {&scrolled, 6450}}) {
        shown->Move({left, 150, 3000, 3900});
        shown->setItemHeight(40);
        shown->SetPos(44, 4, 44, 20, 4, 4);
        for (int row = 1; row <= (shown == &scrolled ? 30 : 3); ++row) {
            shown->AddItem(u"Conversation with:", row == 2 ? u"Di, Ed, Flo, Gus, Hal, Ivy, Jim, Kay,..." : u"Ann, Bob",
                           toText(row), row == 1, {u"picture_conversation", 32});
        }
    }
    disabled.setEnabledIt(false);
    scrolled.SelectKey(u"17", true);
    EXPECT_EQ(scrolled.GetSelectedKey(), u"17");
    show(*form, "list-states");
    form->setScale(3000, 1500);
}

} // namespace
} // namespace murmelix
