#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/settings/settings_store.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/tab_pages.h"

namespace agent::settings {

// A drop-down list of numbers: some that are usual, and always the one that it is.
class NumberList : public murmelix::ui::DropDownList {
  public:
    using Name = std::function<std::u16string(int)>;
    NumberList(murmelix::ui::Control& parent, std::vector<int> usual, Name name)
        : DropDownList(parent), usual_(std::move(usual)), name_(std::move(name)) {
        Click = [this] { picked(); };
    }
    // Raises nothing.
    void show(int number);
    std::function<void(int)> Picked; // by the user

  private:
    void picked() const;

    std::vector<int> usual_, listed_;
    Name name_;
    bool showing_ = false;
};

// The server's own settings, on the pages "Speech", "Output", "Listening" and "Copyright". Closing hides it: it keeps
// its page.
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
    SettingsFrm(Listener& listener, std::function<Facts()> facts, Switches switches);
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
        ListeningPage{Pages, u"Listening"}, CopyrightPage{Pages, u"Copyright"};
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
    murmelix::ui::Button CloseButt{*this, u"Close"};

  private:
    void showFacts();
    void layOutListening(int margin, int inside);

    Listener& listener_;
    std::function<Facts()> facts_;
    Switches switches_;
    bool showing_facts_ = false; // a box that changes then tells nobody
};

} // namespace agent::settings
