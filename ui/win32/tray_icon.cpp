#include "ui/tray_icon.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "ui/win32/window.h"
#include "ui/win32/windows.h"

#include <shellapi.h>

namespace murmelix::ui {

using namespace win32;

namespace {

constexpr UINT icon_message = WM_APP + 1;

// Of one icon, which has a window of its own to be told by.
struct ShownIcon {
    HWND window = nullptr;
    Icon picture; // the shell keeps the handle while the icon is shown
};

std::map<TrayIcon*, ShownIcon>& shownIcons() {
    static std::map<TrayIcon*, ShownIcon> all;
    return all;
}

NOTIFYICONDATAW recordOf(const ShownIcon& icon) {
    NOTIFYICONDATAW record{};
    record.cbSize = sizeof record;
    record.hWnd = icon.window;
    record.uID = 1;
    return record;
}

bool notify(DWORD message, const TrayIcon& icon, const ShownIcon& as) {
    NOTIFYICONDATAW record = recordOf(as);
    record.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    record.uCallbackMessage = icon_message;
    record.hIcon = as.picture ? as.picture.get() : LoadIconA(nullptr, IDI_APPLICATION);
    const std::u16string_view tip = std::u16string_view(icon.Tip()).substr(0, std::size(record.szTip) - 1);
    std::copy(tip.begin(), tip.end(), record.szTip);
    return Shell_NotifyIconW(message, &record) != FALSE;
}

LRESULT CALLBACK procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != icon_message) {
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
    const auto found = std::find_if(shownIcons().begin(), shownIcons().end(),
                                    [&](const auto& each) { return each.second.window == hwnd; });
    if (found != shownIcons().end()) {
        TrayIcon& icon = *found->first;
        guarded([&] {
            if (lparam == WM_LBUTTONUP) {
                raise(icon.Click);
            } else if (lparam == WM_LBUTTONDBLCLK) {
                raise(icon.DblClick);
            } else if (lparam == WM_RBUTTONUP) {
                raise(icon.ContextMenu);
            }
        });
    }
    return 0;
}

HWND windowForIcon() {
    static const wchar_t name[] = L"MurmelixTrayIcon";
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = name;
    description.lpfnWndProc = procedure;
    RegisterClassExW(&description);
    return CreateWindowExW(WS_EX_TOOLWINDOW, name, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                           description.hInstance, nullptr);
}

} // namespace

bool native::showTrayIcon(TrayIcon& icon) {
    const auto [entry, is_new] = shownIcons().try_emplace(&icon);
    ShownIcon& as = entry->second;
    if (is_new) {
        as.window = windowForIcon();
    }
    as.picture = loadPicture(icon.picture(), GetSystemMetrics(SM_CXSMICON));
    const bool done = notify(is_new ? NIM_ADD : NIM_MODIFY, icon, as);
    if (!done && is_new) {
        DestroyWindow(as.window);
        shownIcons().erase(entry);
    }
    return done;
}

void native::hideTrayIcon(TrayIcon& icon) {
    const auto found = shownIcons().find(&icon);
    if (found != shownIcons().end()) {
        NOTIFYICONDATAW record = recordOf(found->second);
        Shell_NotifyIconW(NIM_DELETE, &record);
        DestroyWindow(found->second.window);
        shownIcons().erase(found);
    }
}

void win32::restoreTrayIcons() {
    restoreTrayIcon();
    for (const auto& [icon, as] : shownIcons()) {
        notify(NIM_ADD, *icon, as);
    }
}

} // namespace murmelix::ui
