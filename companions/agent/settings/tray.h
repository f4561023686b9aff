#pragma once

#include <functional>

#include "companions/agent/settings/settings_frm.h"
#include "ui/menu.h"
#include "ui/tray_icon.h"

namespace agent::settings {

// The server's icon beside the clock: its properties, its restart, and its end.
class Tray {
  public:
    Tray(SettingsFrm& form, std::function<void()> restart, std::function<void()> end);

    murmelix::ui::TrayIcon Icon;
    murmelix::ui::Menu IconMenu;
    murmelix::ui::MenuItem PropertiesItem{IconMenu, u"&Properties"}, SeparatorItem{IconMenu, u"-"},
        RestartItem{IconMenu, u"&Restart"}, ExitItem{IconMenu, u"E&xit"};
};

} // namespace agent::settings
