#include "companions/agent/settings/tray.h"

#include <utility>

namespace agent::settings {

Tray::Tray(SettingsFrm& form, std::function<void()> restart, std::function<void()> end) : Icon(form), IconMenu(form) {
    PropertiesItem.setDefault();
    PropertiesItem.Click = [&form] { form.present(); };
    RestartItem.Click = std::move(restart);
    ExitItem.Click = std::move(end);
    Icon.DblClick = PropertiesItem.Click;
    Icon.ContextMenu = [this, &form] { form.PopupMenu(IconMenu); };
    Icon.Show({u"#1"}, u"AgentServer");
}

} // namespace agent::settings
