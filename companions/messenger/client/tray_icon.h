// The client's icon in the notification area: there while its window is hidden.
#pragma once

#include <string_view>

#include <windows.h>

namespace messenger_client {

class TrayIcon {
  public:
    TrayIcon() = default;
    ~TrayIcon() { hide(); }
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;

    // Mouse messages come to the owner as `message`, the mouse message in its LPARAM. Shown already: takes the tip.
    // False where there is no notification area.
    bool show(HWND owner, UINT message, std::u16string_view tip);
    void hide();
    bool shown() const { return owner_ != nullptr; }
    // After the taskbar was started anew, which forgets all icons.
    void forget() { owner_ = nullptr; }

  private:
    HWND owner_ = nullptr;
};

} // namespace messenger_client
