#include "platform/ui/tray.h"

#include <algorithm>
#include <cstddef>

#include <windows.h>

#include <shellapi.h>

#include "platform/win32/ui/gdi.h"

namespace murmelix::ui {

void shellNotifyIcon(TrayMessage message, const TrayIconRecord& record) {
    static win32::Icon icon; // the shell keeps the handle while the icon is shown
    NOTIFYICONDATAA data{};
    static_assert(sizeof(void*) != 4 || NOTIFYICONDATAA_V1_SIZE == 88);
    data.cbSize = NOTIFYICONDATAA_V1_SIZE;
    data.hWnd = record.owner ? reinterpret_cast<HWND>(record.owner->handle()) : nullptr;
    data.uID = record.id;
    data.uFlags = record.flags;
    data.uCallbackMessage = record.callback_message;
    if (message == TrayMessage::add)
        icon = win32::loadPicture(record.icon, GetSystemMetrics(SM_CXSMICON));
    data.hIcon = icon ? icon.get() : LoadIconA(nullptr, IDI_APPLICATION);
    std::copy(record.tip.begin(), record.tip.end(), data.szTip);
    Shell_NotifyIconA(static_cast<DWORD>(message), &data);
}

} // namespace murmelix::ui
