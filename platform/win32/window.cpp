#include "platform/window.h"

#include <windows.h>

#include "common/com/handles.h"

namespace murmelix::platform {

namespace {

HWND windowOf(std::intptr_t window) {
    return reinterpret_cast<HWND>(window);
}

} // namespace

std::optional<WindowPlace> windowPlace(std::intptr_t window) {
    RECT place{};
    if (!GetWindowRect(windowOf(window), &place)) {
        return std::nullopt;
    }
    return WindowPlace{place.left, place.top, place.right - place.left, place.bottom - place.top};
}

bool placeWindow(std::intptr_t window, const WindowPlace& place) {
    return SetWindowPos(windowOf(window), nullptr, place.left, place.top, place.width, place.height,
                        SWP_NOZORDER | SWP_NOACTIVATE) != FALSE;
}

bool isWindowOpen(std::intptr_t window) {
    return IsWindowVisible(windowOf(window)) && !IsIconic(windowOf(window));
}

void minimiseWindow(std::intptr_t window) {
    ShowWindow(windowOf(window), SW_MINIMIZE);
}

void bringWindowUp(std::intptr_t window) {
    ShowWindow(windowOf(window), IsIconic(windowOf(window)) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(windowOf(window));
}

std::intptr_t windowOfClass(const char16_t* class_name) {
    return reinterpret_cast<std::intptr_t>(FindWindowW(com::wide(class_name), nullptr));
}

std::optional<std::intptr_t> sendBytes(std::intptr_t window, unsigned long kind, std::string_view bytes,
                                       unsigned milliseconds) {
    COPYDATASTRUCT data{kind, static_cast<DWORD>(bytes.size()), const_cast<char*>(bytes.data())};
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(windowOf(window), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_ABORTIFHUNG,
                             milliseconds, &answer)) {
        return std::nullopt;
    }
    return static_cast<std::intptr_t>(answer);
}

} // namespace murmelix::platform
