#include "tests/windows/program/window_test.h"

#include <algorithm>
#include <cstdlib>

#include "common/com/handles.h"
#include "common/text.h"
#include "tests/windows/support/picture.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/line.h"
#include "ui/link_label.h"
#include "ui/screen.h"
#include "ui/text_box.h"
#include "ui/win32/surface.h"
#include "ui/win32/windows.h"

namespace murmelix::test {

HWND windowOf(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.handle());
}

bool serveUntil(const std::function<bool()>& holds) {
    constexpr ULONGLONG patience = 240'000;
    const ULONGLONG end = GetTickCount64() + patience;
    while (!holds()) {
        MSG message{};
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ui::win32::dispatch(message);
        } else if (GetTickCount64() > end) {
            return false;
        } else {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
        }
    }
    return true;
}

void serveAll() {
    // Timers come when there is nothing else. On a busy machine one is due again whenever it has been served, and no
    // end is seen of them.
    constexpr int most_timers = 50;
    int timers = 0;
    MSG message{};
    while (timers < most_timers && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        timers += message.message == WM_TIMER ? 1 : 0;
        ui::win32::dispatch(message);
    }
}

void press(HWND window, int x, int y) {
    const LPARAM place = MAKELPARAM(x, y);
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(window, WM_LBUTTONUP, 0, place);
    serveAll();
}

void key(HWND window, WPARAM code) {
    PostMessageW(window, WM_KEYDOWN, code, 1);
    PostMessageW(window, WM_KEYUP, code, 0xC0000001);
    serveAll();
}

void typeKey(WORD code, WORD modifier) {
    std::vector<INPUT> inputs;
    const auto add = [&](WORD pressed, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = pressed;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(pressed, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    if (modifier != 0) {
        add(modifier, 0);
    }
    add(code, 0);
    add(code, KEYEVENTF_KEYUP);
    if (modifier != 0) {
        add(modifier, KEYEVENTF_KEYUP);
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    serveAll();
}

void mouse(DWORD what, POINT place) {
    const auto part = [](int at, int of) { return (at * 65536 + of - 1) / of; };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = part(place.x, GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = part(place.y, GetSystemMetrics(SM_CYSCREEN));
    input.mi.dwFlags = what | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    SendInput(1, &input, sizeof input);
}

void keyboard(WORD code, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

POINT onScreen(HWND window, int x, int y) {
    POINT place{x, y};
    ClientToScreen(window, &place);
    return place;
}

COLORREF Image::at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
}

namespace {

// A part of a window's own surface: what lies beyond the screen's edge is there, too.
std::vector<std::uint32_t> copy(HDC from, int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const ui::win32::Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const ui::win32::MemoryDc dc(CreateCompatibleDC(nullptr));
    const ui::win32::Selected selected(dc.get(), bitmap.get());
    BitBlt(dc.get(), 0, 0, width, height, from, 0, 0, SRCCOPY);
    GdiFlush();
    const auto* values = static_cast<const std::uint32_t*>(bits);
    std::vector<std::uint32_t> pixels(values, values + width * height);
    for (std::uint32_t& pixel : pixels) {
        pixel &= 0x00FFFFFFU;
    }
    return pixels;
}

class WindowDc {
  public:
    WindowDc(HWND window, bool whole) : window_(window), dc_(whole ? GetWindowDC(window) : GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    ~WindowDc() { ReleaseDC(window_, dc_); }
    HDC get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

} // namespace

bool hover(ui::PictureBox& box, POINT place) {
    bool there = false, nearby = false;
    const auto move = box.MouseMove;
    box.MouseMove = [&](int button, int shift, double x, double y) {
        POINT inside{place};
        ScreenToClient(windowOf(box), &inside);
        there = inside.x == static_cast<LONG>(x) && inside.y == static_cast<LONG>(y);
        ui::raise(move, button, shift, x, y);
    };
    const bool heard = serveUntil([&] {
        nearby = !nearby; // without a move nothing is told
        mouse(0, {place.x - (nearby && !there ? 1 : 0), place.y});
        return there;
    });
    box.MouseMove = move;
    return heard;
}

Image insideOf(HWND window) {
    UpdateWindow(window);
    RECT inside{};
    GetClientRect(window, &inside);
    Image image{inside.right, inside.bottom, {}};
    for (const std::uint32_t pixel : copy(WindowDc(window, false).get(), inside.right, inside.bottom)) {
        image.pixels.push_back(RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF));
    }
    return image;
}

void show(const ui::Control& form, const std::string& name) {
    serveAll();
    keepPicture(form, name);
}

void keepPicture(const ui::Control& form, const std::string& name) {
    HWND window = windowOf(form);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    RECT outer{};
    GetWindowRect(window, &outer);
    const int width = outer.right - outer.left, height = outer.bottom - outer.top;
    savePicture({0, 0, width, height, copy(WindowDc(window, true).get(), width, height)}, name.c_str());
}

namespace {

class LayoutCheck {
  public:
    std::vector<std::string> mistakes;

    void inside(const ui::Control& parent) {
        std::vector<const ui::Control*> seen;
        for (const ui::Control* child : parent.Children()) {
            if (IsWindowVisible(windowOf(*child)) && !coveredOrBeside(*child)) {
                seen.push_back(child);
            }
        }
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const RECT own = place(*seen[i]);
            staysInside(parent, *seen[i], own);
            textFits(*seen[i]);
            heightIsTheSystems(*seen[i]);
            for (std::size_t k = i + 1; k < seen.size(); ++k) {
                const RECT other = place(*seen[k]);
                RECT common{};
                if (IntersectRect(&common, &own, &other)) {
                    mistakes.push_back(name(*seen[i]) + " and " + name(*seen[k]) + " lie upon one another");
                }
            }
            inside(*seen[i]);
        }
    }

  private:
    static std::string name(const ui::Control& control) {
        if (!control.Caption().empty()) {
            return "\"" + toUtf8(control.Caption().substr(0, 60)) + "\"";
        }
        const RECT at = place(control);
        return "the control at " + std::to_string(at.left) + "," + std::to_string(at.top);
    }

    // Within the parent's inside.
    static RECT place(const ui::Control& control) {
        HWND window = windowOf(control);
        RECT area{};
        GetWindowRect(window, &area);
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&area), 2);
        return area;
    }

    // Wholly behind a panel, or where the window is not wide enough to show it.
    static bool coveredOrBeside(const ui::Control& control) {
        const RECT own = place(control);
        RECT inner{}, common{};
        GetClientRect(GetParent(windowOf(control)), &inner);
        if (!IntersectRect(&common, &own, &inner)) {
            return true;
        }
        for (HWND front = GetWindow(windowOf(control), GW_HWNDPREV); front; front = GetWindow(front, GW_HWNDPREV)) {
            RECT area{};
            GetWindowRect(front, &area);
            MapWindowPoints(nullptr, GetParent(front), reinterpret_cast<POINT*>(&area), 2);
            IntersectRect(&common, &own, &area);
            if (IsWindowVisible(front) && EqualRect(&common, &own)) {
                return true;
            }
        }
        return false;
    }

    void staysInside(const ui::Control& parent, const ui::Control& child, const RECT& own) {
        RECT inner{};
        GetClientRect(windowOf(parent), &inner);
        if (parent.accessible().role == ui::Role::group && !parent.Caption().empty()) {
            inner.top = measure(parent, u"X", 0).cy;
        }
        if (own.left < inner.left || own.top < inner.top || own.right > inner.right || own.bottom > inner.bottom) {
            mistakes.push_back(name(child) + " stands out of " + name(parent));
        }
    }

    static SIZE measure(const ui::Control& control, const std::u16string& text, int width) {
        const WindowDc dc(windowOf(control), false);
        auto font = reinterpret_cast<HFONT>(SendMessageW(windowOf(control), WM_GETFONT, 0, 0));
        const ui::win32::Selected selected(dc.get(), font ? font : ui::win32::fonts().standard.get());
        RECT area{0, 0, width, 0};
        DrawTextW(dc.get(), com::wide(text), -1, &area,
                  DT_CALCRECT | (width > 0 ? DT_WORDBREAK : DT_SINGLELINE) | (control.UseMnemonic() ? 0 : DT_NOPREFIX));
        return {area.right, area.bottom};
    }

    // The system shows the text of a field at its top, and gives a closed list a height of its own: in more room than
    // that they would not be on one line with what is beside them.
    void heightIsTheSystems(const ui::Control& control) {
        RECT outer{}, inner{};
        GetWindowRect(windowOf(control), &outer);
        GetClientRect(windowOf(control), &inner);
        if (dynamic_cast<const ui::TextBox*>(&control) && inner.bottom > measure(control, u"X", 0).cy + 4) {
            mistakes.push_back(name(control) + " shows its text too high");
        }
        if (dynamic_cast<const ui::DropDownList*>(&control) &&
            std::abs(ui::toPixels(control.Height()) - (outer.bottom - outer.top)) > 3) {
            mistakes.push_back(name(control) + " is not as high as its room");
        }
        if (dynamic_cast<const ui::Line*>(&control) && outer.bottom - outer.top > GetSystemMetrics(SM_CYEDGE)) {
            mistakes.push_back(name(control) + " has more than its two edges, which nobody draws");
        }
    }

    void textFits(const ui::Control& control) {
        RECT inner{};
        GetClientRect(windowOf(control), &inner);
        SIZE needed{};
        if (dynamic_cast<const ui::CheckBox*>(&control)) {
            needed = measure(control, control.Caption(), 0);
            needed.cx += ui::win32::scaled(13 + 4);
        } else if (dynamic_cast<const ui::Button*>(&control)) {
            needed = measure(control, control.Caption(), 0);
            needed.cx += ui::win32::scaled(10);
            needed.cy += ui::win32::scaled(6);
        } else if (dynamic_cast<const ui::Label*>(&control)) {
            needed = measure(control, control.Caption(), inner.right);
        } else if (dynamic_cast<const ui::LinkLabel*>(&control)) {
            needed = measure(control, control.Caption(), 0);
        } else if (dynamic_cast<const ui::Frame*>(&control) && control.UseMnemonic() && !control.Caption().empty()) {
            needed = measure(control, control.Caption(), 0);
            needed.cx += ui::win32::scaled(18);
        } else if (dynamic_cast<const ui::TextBox*>(&control) || dynamic_cast<const ui::DropDownList*>(&control)) {
            needed = measure(control, u"Xg", 0);
        }
        if (needed.cx > inner.right || needed.cy > inner.bottom) {
            mistakes.push_back(name(control) + " needs " + std::to_string(needed.cx) + " x " +
                               std::to_string(needed.cy) + " and has " + std::to_string(inner.right) + " x " +
                               std::to_string(inner.bottom));
        }
    }
};

} // namespace

std::vector<std::string> layoutMistakes(const ui::Control& form) {
    LayoutCheck check;
    check.inside(form);
    return check.mistakes;
}

} // namespace murmelix::test
