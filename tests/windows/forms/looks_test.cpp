// How every window looks: at every resolution of the screen, and in the colours that the user has chosen.
#include <algorithm>
#include <array>
#include <set>

#include <gmock/gmock.h>

#include "common/com/handles.h"
#include "tests/forms/gallery.h"
#include "tests/windows/program/window_test.h"
#include "ui/screen.h"
#include "ui/win32/gdi.h"

namespace murmelix {
namespace {

using namespace test;
using testing::IsEmpty;

constexpr int usual_dpi = 96;
constexpr SIZE smallest_screen{1024, 768 - 40}; // less the bar at its edge

class Looks : public testing::Test {
  protected:
    ~Looks() override { setDpi(system_dpi); }
    static void setDpi(int dpi) {
        ui::win32::setScreenDpi(dpi);
        ui::win32::renewFonts();
    }
    const com::Apartment apartment;
    const int system_dpi = ui::win32::screenDpi();
};

class Resolution : public Looks, public testing::WithParamInterface<int> {};

// Nothing is cut off, nothing lies upon something else, and each window is no larger than a small screen of that
// resolution.
TEST_P(Resolution, LeavesEveryWindowWhole) {
    const int dpi = GetParam();
    setDpi(dpi);
    visitAll([&](ui::Form& form, const std::string& name) {
        const std::string called = name + "-" + std::to_string(dpi);
        EXPECT_THAT(layoutMistakes(form), IsEmpty()) << called;
        RECT outer{};
        GetWindowRect(windowOf(form), &outer);
        EXPECT_LE(outer.right - outer.left, smallest_screen.cx * dpi / usual_dpi) << called;
        EXPECT_LE(outer.bottom - outer.top, smallest_screen.cy * dpi / usual_dpi) << called;
        if (dpi == usual_dpi || dpi == 2 * usual_dpi) {
            keepPicture(form, "form-" + called);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(OfTheScreen, Resolution, testing::Values(96, 120, 144, 192));

// Sets system colours for as long as it lives.
class SystemColours {
  public:
    SystemColours() {
        for (std::size_t i = 0; i < elements.size(); ++i) {
            before_[i] = GetSysColor(elements[i]);
        }
        set(dark);
    }
    ~SystemColours() { set(before_); }
    SystemColours(const SystemColours&) = delete;
    SystemColours& operator=(const SystemColours&) = delete;

    // As in the black one of the high contrast themes.
    static constexpr COLORREF black = RGB(0, 0, 0), white = RGB(255, 255, 255), grey = RGB(63, 242, 63),
                              chosen = RGB(26, 235, 255), link = RGB(255, 255, 0);

  private:
    static constexpr std::array<int, 15> elements{
        COLOR_MENUBAR,   COLOR_WINDOW,        COLOR_WINDOWTEXT, COLOR_BTNFACE,   COLOR_BTNTEXT,
        COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT, COLOR_GRAYTEXT,   COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT,
        COLOR_HOTLIGHT,  COLOR_3DDKSHADOW,    COLOR_3DLIGHT,    COLOR_MENU,      COLOR_MENUTEXT};
    using Colours = std::array<COLORREF, elements.size()>;
    static constexpr Colours dark{black, black, white, black, white, chosen, black, grey,
                                  white, white, link,  white, black, black,  white};
    static void set(const Colours& colours) {
        SetSysColors(static_cast<int>(elements.size()), elements.data(), colours.data());
        ui::win32::renewColours();
        serveAll();
    }
    Colours before_{};
};

int brightness(COLORREF colour) {
    return (299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour)) / 1000;
}

// Of the inside, in percent: what is as dark as the ground that the user has chosen.
int darkPart(const Image& image) {
    const auto dark = std::ranges::count_if(image.pixels, [](COLORREF pixel) { return brightness(pixel) < 40; });
    return static_cast<int>(100 * dark / std::max<std::ptrdiff_t>(std::ssize(image.pixels), 1));
}

TEST_F(Looks, EveryWindowHasTheColoursThatTheUserHasChosen) {
    const SystemColours colours;
    visitAll([](ui::Form& form, const std::string& name) {
        keepPicture(form, "form-" + name + "-dark");
        serveAll();
        EXPECT_GE(darkPart(insideOf(windowOf(form))), 60) << name;
    });
}

TEST_F(Looks, OpenWindowsFollowTheUsersColours) {
    std::set<std::string> followed;
    visitAll([&](ui::Form& form, const std::string& name) {
        const int before = darkPart(insideOf(windowOf(form)));
        {
            const SystemColours colours;
            SendMessageW(windowOf(form), WM_SYSCOLORCHANGE, 0, 0);
            serveAll();
            RedrawWindow(windowOf(form), nullptr, nullptr,
                         RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            EXPECT_GE(darkPart(insideOf(windowOf(form))), 60) << name;
        }
        SendMessageW(windowOf(form), WM_SYSCOLORCHANGE, 0, 0);
        serveAll();
        RedrawWindow(windowOf(form), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        EXPECT_LT(std::abs(darkPart(insideOf(windowOf(form))) - before), 10) << name << " as before";
    });
}

} // namespace
} // namespace murmelix
