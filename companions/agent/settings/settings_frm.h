#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/settings/keys.h"
#include "companions/agent/settings/number_list.h"
#include "companions/agent/settings/settings_store.h"
#include "companions/agent/settings/voices_page.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/shortcut_box.h"
#include "ui/tab_pages.h"

namespace agent::settings {

// The server's own settings, on the pages "Speech", "Output", "Listening", "Balloons", "Voices", "Keys" and
// "Copyright". Closing
// hides it: it keeps its page.
class SettingsFrm : public murmelix::ui::Form {
  public:
    struct Facts {
        bool voice = false; // there is one to speak with
        bool keep_on_screen = true;
        int size = usual_size; // percent
    };
    // What the box switches, and the list sets.
    struct Switches {
        std::function<void(bool)> keep_on_screen;
        std::function<void(int percent)> set_size;
    };
    // `facts` are asked for whenever they are about to be seen, not before.
    SettingsFrm(Listener& listener, Keys& keys, std::function<Facts()> facts, Switches switches,
                VoicesPage::Sources sources);
    void layOut() override;

    // By its name, without letter case; false where there is none.
    bool setPage(std::u16string_view page);
    const std::u16string& page() const;
    // Shows it, with the facts as they are.
    void present();
    // What it shows may have changed.
    void refresh();

    murmelix::ui::TabPages Pages{*this};
    murmelix::ui::TabPage SpeechPage{Pages, u"Speech"}, OutputPage{Pages, u"Output"},
        ListeningPage{Pages, u"Listening"}, BalloonsPage{Pages, u"Balloons"};
    VoicesPage Voices;
    murmelix::ui::TabPage KeysPage{Pages, u"Keys"}, CopyrightPage{Pages, u"Copyright"};
    murmelix::ui::Label SpeechLbl{SpeechPage, u""}, OutputLbl, CopyrightLbl;
    murmelix::ui::CheckBox SoundCheck{OutputPage, u"&Play spoken audio"};
    murmelix::ui::CheckBox KeepOnScreenCheck{OutputPage, u"&Keep characters on the screen"};
    murmelix::ui::Label SizeLbl{OutputPage, u"&Size of characters and balloons:"};
    NumberList SizeList;
    murmelix::ui::Label VolumeLbl{ListeningPage, u"&Volume:"};
    NumberList VolumeList;
    murmelix::ui::Label SpeedLbl{ListeningPage, u"Sp&eed:"};
    NumberList SpeedList;
    murmelix::ui::Label LongestLbl{ListeningPage, u"Speak at &most, each time:"};
    NumberList LongestList;
    murmelix::ui::Label WaitingLbl{ListeningPage, u"&Hurry where more waits than:"};
    NumberList WaitingList;
    murmelix::ui::Label HurryLbl;
    murmelix::ui::Button SkipButt{ListeningPage, u"&Skip What Is Being Said"};
    murmelix::ui::CheckBox PauseCheck{ListeningPage, u"&Pause"};
    murmelix::ui::Label LettersLbl{BalloonsPage, u"&Text, beside its usual size:"};
    NumberList LettersList;
    murmelix::ui::Label ReadingLbl{BalloonsPage, u"&Stay to be read:"};
    NumberList ReadingList;
    murmelix::ui::Label ReadingNoteLbl;
    murmelix::ui::CheckBox WordByWordCheck{BalloonsPage, u"Show the &words as they are spoken"};
    murmelix::ui::CheckBox CalmCheck{BalloonsPage, u"Move as little as &possible"};
    murmelix::ui::Label CalmLbl;
    struct KeyRow {
        KeyRow(murmelix::ui::Control& page, const Deed& deed) : Lbl(page, deed.caption), Box(page) {}
        murmelix::ui::Label Lbl;
        murmelix::ui::ShortcutBox Box;
    };
    std::array<KeyRow, std::tuple_size_v<decltype(deeds)>> KeyRows;
    murmelix::ui::Label KeysLbl; // how to set one, or why one cannot be had
    murmelix::ui::Button CloseButt{*this, u"Close"};

  private:
    void showFacts();
    void layOutListening(int margin, int inside);
    void layOutBalloons(int margin, int inside);
    void layOutKeys(int margin, int inside);
    void showKeys(const std::u16string& problem);

    Listener& listener_;
    Keys& keys_;
    std::function<Facts()> facts_;
    Switches switches_;
    bool showing_facts_ = false; // a box that changes then tells nobody
};

} // namespace agent::settings
