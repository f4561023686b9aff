#include "companions/agent/stage/windows/desktop.h"

#include <algorithm>

#include <windows.h>

#include "ui/win32/gdi.h"

namespace agent::stage {
namespace {

Rect toRect(const RECT& rect) {
    return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
            static_cast<int>(rect.bottom)};
}

BOOL CALLBACK add(HMONITOR monitor, HDC, RECT*, LPARAM screens) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(monitor, &info)) {
        reinterpret_cast<Screens*>(screens)->push_back({toRect(info.rcMonitor), toRect(info.rcWork)});
    }
    return TRUE;
}

} // namespace

Screens readScreens() {
    Screens screens;
    EnumDisplayMonitors(nullptr, nullptr, &add, reinterpret_cast<LPARAM>(&screens));
    if (screens.empty()) {
        const Rect whole{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        screens.push_back({whole, whole});
    }
    return screens;
}

int readResolution(HWND window) {
    if (const int resolution = murmelix::ui::win32::dpiOf(window); resolution > 0) {
        return resolution;
    }
    const HDC screen = GetDC(nullptr);
    const int resolution = screen ? GetDeviceCaps(screen, LOGPIXELSX) : 0;
    ReleaseDC(nullptr, screen);
    return resolution > 0 ? resolution : USER_DEFAULT_SCREEN_DPI;
}

double scaleOf(int resolution) {
    constexpr double least = 0.5, most = 8; // beyond is nothing that a screen has
    return std::clamp(static_cast<double>(resolution) / USER_DEFAULT_SCREEN_DPI, least, most);
}

} // namespace agent::stage
