#include "ui/tray_icon.h"

namespace murmelix::ui {

bool TrayIcon::Show(const Picture& picture, const std::u16string& tip) {
    if (shown_ && picture == picture_ && tip == tip_) {
        return true;
    }
    picture_ = picture;
    tip_ = tip;
    shown_ = native::showTrayIcon(*this) || shown_;
    return shown_;
}

void TrayIcon::Hide() {
    if (shown_) {
        shown_ = false;
        native::hideTrayIcon(*this);
    }
}

} // namespace murmelix::ui
