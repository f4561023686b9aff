#include "companions/agent/settings/tray.h"

#include <tuple>
#include <utility>

#include "common/text.h"

namespace agent::settings {

namespace ui = murmelix::ui;

namespace {

// Percents to choose from, the one that it is marked, and listed wherever it belongs.
void fill(ui::Menu& menu, std::vector<int> percents, int current, const std::function<void(int)>& choose) {
    menu.Clear();
    for (const int percent : withCurrent(std::move(percents), current)) {
        menu.AddItem(murmelix::toText(percent) + u" %", [choose, percent] { choose(percent); })
            .setChecked(percent == current);
    }
}

} // namespace

Tray::Tray(SettingsFrm& form, Listener& listener, const Keys& keys,
           std::function<std::vector<KnownCharacter>()> characters, std::function<void()> restart,
           std::function<void()> end)
    : Icon(form), IconMenu(form), listener_(listener), keys_(keys), characters_(std::move(characters)) {
    IconMenu.Popup = [this] {
        PauseItem.setChecked(listener_.paused());
        showKeys();
    };
    SkipItem.Click = [this] { listener_.skip(); };
    PauseItem.Click = [this] { listener_.setPaused(!listener_.paused()); };
    SilenceMenu.Popup = [this] { fillSilence(); };
    CharactersMenu.Popup = [this] { fillCharacters(); };
    VolumeMenu.Popup = [this] {
        fill(VolumeMenu, {25, 50, 75, 100}, listener_.volume(), [this](int percent) { listener_.setVolume(percent); });
    };
    SpeedMenu.Popup = [this] {
        fill(SpeedMenu, {75, 100, 125, 150, 200}, listener_.speed(),
             [this](int percent) { listener_.setSpeed(percent); });
    };
    PropertiesItem.setDefault();
    PropertiesItem.Click = [&form] { form.present(); };
    RestartItem.Click = std::move(restart);
    ExitItem.Click = std::move(end);
    Icon.DblClick = PropertiesItem.Click;
    Icon.ContextMenu = [this, &form] { form.PopupMenu(IconMenu); };
    showState();
}

void Tray::showState() {
    Icon.Show({u"#1"}, listener_.paused()     ? u"AgentServer - paused"
                       : !listener_.audible() ? u"AgentServer - all characters are silenced"
                                              : u"AgentServer");
}

void Tray::showKeys() {
    for (const auto& [item, caption, deed] : {std::tuple{&SkipItem, u"&Skip What Is Being Said", skip_deed},
                                              std::tuple{&PauseItem, u"P&ause", pause_deed}}) {
        const ui::Shortcut& key = keys_.key(deed);
        item->setCaption(key ? caption + (u"\t" + nameOf(key)) : caption);
    }
}

void Tray::fillCharacters() {
    CharactersMenu.Clear();
    const std::vector<OnScreen> all = CharactersOnScreen ? CharactersOnScreen() : std::vector<OnScreen>();
    for (const OnScreen& character : all) {
        CharactersMenu.AddItem(murmelix::replaceAll(character.name, u"&", u"&&"), character.open_menu);
    }
    if (all.empty()) {
        CharactersMenu.AddItem(u"Nobody is on the screen").setEnabled(false);
    }
}

void Tray::fillSilence() {
    SilenceMenu.Clear();
    SilenceMenu.AddItem(u"&All Characters", [this] { listener_.setAllSilenced(!listener_.allSilenced()); })
        .setChecked(listener_.allSilenced());
    const std::vector<KnownCharacter> characters = characters_();
    if (!characters.empty()) {
        SilenceMenu.AddSeparator();
    }
    for (const KnownCharacter& character : characters) {
        const bool silenced = listener_.silenced(character.key);
        SilenceMenu
            .AddItem(murmelix::replaceAll(character.name, u"&", u"&&"),
                     [this, key = character.key, silenced] { listener_.setSilenced(key, !silenced); })
            .setChecked(silenced);
    }
}

} // namespace agent::settings
