// The list of conversations as it is drawn.
#include <gmock/gmock.h>

#include "controls/cool_list_box.h"
#include "platform/ui/form.h"
#include "tests/windows/program/window_test.h"

namespace murmelix {
namespace {

using namespace test;

class ListPixels : public testing::Test {
  protected:
    ListPixels() {
        form.setScale(6000, 4500);
        list.Move({0, 0, 3000, 1500});
        list.setItemHeight(30);
        list.SetPos(40, 0, 40, 15, 0, 0);
        form.Show();
        serveAll();
    }
    // As it stands on the screen.
    COLORREF pixel(int x, int y) {
        const Image image = insideOf(windowOf(list.P));
        return image.at(x, y);
    }
    int others(const RECT& area, COLORREF background) {
        const Image image = insideOf(windowOf(list.P));
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

} // namespace
} // namespace murmelix
