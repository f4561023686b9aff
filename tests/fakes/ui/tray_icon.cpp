#include "ui/tray_icon.h"

#include <algorithm>

#include "tests/fakes/ui/windows.h"

namespace murmelix::ui {

bool native::showTrayIcon(TrayIcon& icon) {
    auto& icons = fakes::screen().tray_icons;
    if (!fakes::screen().tray) {
        return false;
    }
    if (std::find(icons.begin(), icons.end(), &icon) == icons.end()) {
        icons.push_back(&icon);
    }
    return true;
}

void native::hideTrayIcon(TrayIcon& icon) {
    std::erase(fakes::screen().tray_icons, &icon);
}

} // namespace murmelix::ui
