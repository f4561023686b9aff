#pragma once

#include <functional>
#include <string>
#include <vector>

#include "companions/agent/settings/settings_frm.h"
#include "ui/menu.h"
#include "ui/tray_icon.h"

namespace agent::settings {

// The server's icon beside the clock: what the user wants of what is said, the server's properties, its restart, and
// its end.
class Tray {
  public:
    // `characters`: those that are loaded, asked for when the menu is opened.
    Tray(SettingsFrm& form, Listener& listener, const Keys& keys,
         std::function<std::vector<KnownCharacter>()> characters, std::function<void()> restart,
         std::function<void()> end);
    // The icon tells what keeps the characters from being heard.
    void showState();
    // Those on the screen, each with what a click of the other button on it does: for who has no mouse.
    struct OnScreen {
        std::u16string name;
        std::function<void()> open_menu;
    };
    std::function<std::vector<OnScreen>()> CharactersOnScreen;

    murmelix::ui::TrayIcon Icon;
    murmelix::ui::Menu IconMenu;
    murmelix::ui::MenuItem SkipItem{IconMenu, u"&Skip What Is Being Said"}, PauseItem{IconMenu, u"P&ause"};
    murmelix::ui::Menu SilenceMenu{IconMenu, u"S&ilence"}, VolumeMenu{IconMenu, u"&Volume"},
        SpeedMenu{IconMenu, u"Sp&eed"}, CharactersMenu{IconMenu, u"&Menu of a Character"};
    murmelix::ui::MenuItem ListenerSeparatorItem{IconMenu, u"-"}, PropertiesItem{IconMenu, u"&Properties"},
        SeparatorItem{IconMenu, u"-"}, RestartItem{IconMenu, u"&Restart"}, ExitItem{IconMenu, u"E&xit"};

  private:
    void fillSilence();
    void fillCharacters();
    void showKeys();

    Listener& listener_;
    const Keys& keys_;
    std::function<std::vector<KnownCharacter>()> characters_;
};

} // namespace agent::settings
