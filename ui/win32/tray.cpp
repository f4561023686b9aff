#include "ui/tray.h"

#include <algorithm>
#include <cstddef>

#include <windows.h>

#include <shellapi.h>

#include "ui/win32/gdi.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

namespace {

struct Shown {
    NOTIFYICONDATAA record{};
    win32::Icon icon; // the shell keeps the handle while the icon is shown
    bool there = false;
};

Shown& shown() {
    static Shown the_icon;
    return the_icon;
}

} // namespace

void shellNotifyIcon(TrayMessage message, const TrayIconRecord& record) {
    NOTIFYICONDATAA& data = shown().record;
    data = {};
    static_assert(sizeof(void*) != 4 || NOTIFYICONDATAA_V1_SIZE == 88);
    data.cbSize = NOTIFYICONDATAA_V1_SIZE;
    data.hWnd = record.owner ? reinterpret_cast<HWND>(record.owner->handle()) : nullptr;
    data.uID = record.id;
    data.uFlags = record.flags;
    data.uCallbackMessage = record.callback_message;
    if (message == TrayMessage::add) {
        shown().icon = win32::loadPicture(record.icon, GetSystemMetrics(SM_CXSMICON));
    }
    data.hIcon = shown().icon ? shown().icon.get() : LoadIconA(nullptr, IDI_APPLICATION);
    std::copy(record.tip.begin(), record.tip.end(), data.szTip);
    shown().there = message == TrayMessage::add;
    Shell_NotifyIconA(static_cast<DWORD>(message), &data);
}

void win32::restoreTrayIcon() {
    if (shown().there) {
        Shell_NotifyIconA(NIM_ADD, &shown().record);
    }
}

} // namespace murmelix::ui
