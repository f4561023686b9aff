#include "companions/agent/automation/tray_icon.h"

#include <cwchar>
#include <utility>

#include <windows.h>

#include <shellapi.h>

namespace agent::automation {
namespace {

constexpr UINT icon_message = WM_APP + 2;
constexpr UINT_PTR properties_id = 1, exit_id = 2;

NOTIFYICONDATAW iconOf(HWND window) {
    NOTIFYICONDATAW icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = window;
    icon.uID = 1;
    return icon;
}

} // namespace

TrayIcon::TrayIcon(std::function<void()> show_properties, std::function<void()> end)
    : show_properties_(std::move(show_properties)), end_(std::move(end)),
      taskbar_made_(RegisterWindowMessageW(L"TaskbarCreated")) {
    make({.class_name = L"AgentServerTrayIcon", .style = WS_POPUP, .extended_style = WS_EX_TOOLWINDOW});
    add();
}

TrayIcon::~TrayIcon() {
    NOTIFYICONDATAW icon = iconOf(handle());
    Shell_NotifyIconW(NIM_DELETE, &icon);
    destroy();
}

void TrayIcon::add() {
    NOTIFYICONDATAW icon = iconOf(handle());
    icon.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    icon.uCallbackMessage = icon_message;
    icon.hIcon =
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON,
                                      GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    if (!icon.hIcon) {
        icon.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
    }
    std::wcscpy(icon.szTip, L"AgentServer");
    Shell_NotifyIconW(NIM_ADD, &icon);
}

void TrayIcon::showMenu() {
    const stage::MenuHandle menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, properties_id, L"&Properties");
    AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu.get(), MF_STRING, exit_id, L"E&xit");
    SetMenuDefaultItem(menu.get(), properties_id, FALSE);
    POINT at{0, 0};
    GetCursorPos(&at);
    // Without the foreground a menu would not close at a click elsewhere.
    SetForegroundWindow(handle());
    const BOOL chosen = TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY, at.x, at.y, 0, handle(), nullptr);
    if (chosen == static_cast<BOOL>(properties_id)) {
        show_properties_();
    } else if (chosen == static_cast<BOOL>(exit_id)) {
        end_();
    }
}

LRESULT TrayIcon::received(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == icon_message) {
        if (lparam == WM_LBUTTONDBLCLK) {
            show_properties_();
        } else if (lparam == WM_RBUTTONUP) {
            showMenu();
        }
        return 0;
    }
    if (message == taskbar_made_) {
        add();
    }
    return Window::received(message, wparam, lparam);
}

} // namespace agent::automation
