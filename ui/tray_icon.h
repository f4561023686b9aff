#pragma once

#include <functional>
#include <string>

#include "ui/form.h"

namespace murmelix::ui {

// An icon of the notification area. It comes back by itself when the shell's bar has been started anew.
class TrayIcon {
  public:
    explicit TrayIcon(Form& owner) : owner_(owner) {}
    ~TrayIcon() { Hide(); }
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;

    // False where there is no notification area. Shown already, it gets the tip.
    bool Show(const Picture& picture, const std::u16string& tip);
    void Hide();
    bool Shown() const { return shown_; }
    const std::u16string& Tip() const { return tip_; }
    std::function<void()> Click, DblClick, ContextMenu;

    Form& owner() const { return owner_; }
    const Picture& picture() const { return picture_; }

  private:
    Form& owner_;
    Picture picture_;
    std::u16string tip_;
    bool shown_ = false;
};

// Carried out by win32/tray_icon.cpp.
namespace native {
bool showTrayIcon(TrayIcon& icon); // or changes it
void hideTrayIcon(TrayIcon& icon);
} // namespace native

} // namespace murmelix::ui
