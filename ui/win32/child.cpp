#include "ui/win32/child.h"

#include <commctrl.h>

#include "ui/win32/windows.h"

namespace murmelix::ui::win32 {

LRESULT CALLBACK windowProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    ControlWindow* window = find(hwnd);
    if (!window) {
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
    bool done = false;
    LRESULT result = 0;
    const auto take = [&](const std::optional<LRESULT>& answer) {
        done = answer.has_value();
        result = answer.value_or(0);
    };
    guarded([&] {
        if (message == WM_GETOBJECT) {
            const LRESULT answer = window->answerToReader(wparam, lparam);
            take(answer ? std::optional(answer) : std::nullopt);
        } else {
            take(window->onMessage(message, wparam, lparam));
        }
    });
    if (!done) {
        take(onChildMessage(message, wparam, lparam));
    }
    return done ? result : DefWindowProcW(hwnd, message, wparam, lparam);
}

void registerClasses() {
    static const bool once = [] {
        INITCOMMONCONTROLSEX controls{sizeof controls,
                                      ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES | ICC_TAB_CLASSES | ICC_PROGRESS_CLASS};
        InitCommonControlsEx(&controls);
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        description.lpszClassName = child_class;
        description.lpfnWndProc = windowProcedure;
        description.style = CS_DBLCLKS;
        RegisterClassExW(&description);
        prepareToPost();
        return true;
    }();
    static_cast<void>(once);
}

std::optional<LRESULT> ChildWindow::onMessage(UINT message, WPARAM wparam, LPARAM) {
    switch (message) {
    case WM_PAINT: {
        const Painting painting(hwnd());
        paint(painting.dc(), clientArea(hwnd()), painting.part());
        return 0;
    }
    case WM_ERASEBKGND: {
        const auto dc = reinterpret_cast<HDC>(wparam);
        const RECT area = clientArea(hwnd());
        SetDCBrushColor(dc, toColorRef(control().BackColor()));
        FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        return 1;
    }
    case WM_SETFOCUS:
        control().onFocus();
        return 0;
    case WM_KILLFOCUS:
        control().onFocusLost();
        return 0;
    case WM_MOUSEWHEEL:
        if (!control().Wheel) {
            return std::nullopt; // whatever it is in hears of it
        }
        control().onWheel(GET_WHEEL_DELTA_WPARAM(wparam));
        return 0;
    default:
        return std::nullopt;
    }
}

} // namespace murmelix::ui::win32
