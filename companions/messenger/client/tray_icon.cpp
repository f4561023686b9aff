#include "companions/messenger/client/tray_icon.h"

#include <algorithm>

#include <shellapi.h>

#include "companions/messenger/client/window.h"

namespace messenger_client {

namespace {

constexpr UINT icon_number = 1;

NOTIFYICONDATAW recordFor(HWND owner) {
    NOTIFYICONDATAW record{};
    record.cbSize = sizeof record;
    record.hWnd = owner;
    record.uID = icon_number;
    return record;
}

} // namespace

bool TrayIcon::show(HWND owner, UINT message, std::u16string_view tip) {
    NOTIFYICONDATAW record = recordFor(owner);
    record.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    record.uCallbackMessage = message;
    record.hIcon = clientIcon(GetSystemMetrics(SM_CXSMICON));
    const std::size_t length = std::min(tip.size(), std::size(record.szTip) - 1);
    std::copy_n(tip.begin(), length, record.szTip);
    const bool done = Shell_NotifyIconW(shown() ? NIM_MODIFY : NIM_ADD, &record) != FALSE;
    if (done) {
        owner_ = owner;
    }
    return done;
}

void TrayIcon::hide() {
    if (!shown()) {
        return;
    }
    NOTIFYICONDATAW record = recordFor(owner_);
    Shell_NotifyIconW(NIM_DELETE, &record);
    owner_ = nullptr;
}

} // namespace messenger_client
