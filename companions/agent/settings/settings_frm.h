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

// The server's own settings, on the pages "Speech", "Output" and "Copyright". Closing hides it: it keeps its page.
class SettingsFrm : public murmelix::ui::Form {
  public:
    struct Facts {
        bool voice = false; // there is one to speak with
        bool sound_enabled = true;
        bool keep_on_screen = true;
        int size = usual_size; // percent
    };
    // What the boxes switch, and the list sets.
    struct Switches {
        std::function<void(bool)> enable_sound, keep_on_screen;
        std::function<void(int percent)> set_size;
    };
    // `facts` are asked for whenever they are about to be seen, not before.
    SettingsFrm(std::function<Facts()> facts, Switches switches);
    void layOut() override;

    // "Speech", "Output" or "Copyright", without letter case; false for another.
    bool setPage(std::u16string_view page);
    const std::u16string& page() const;
    // Shows it, with the facts as they are.
    void present();

    murmelix::ui::TabPages Pages{*this};
    murmelix::ui::TabPage SpeechPage{Pages, u"Speech"}, OutputPage{Pages, u"Output"},
        CopyrightPage{Pages, u"Copyright"};
    murmelix::ui::Label SpeechLbl{SpeechPage, u""}, OutputLbl, CopyrightLbl;
    murmelix::ui::CheckBox SoundCheck{OutputPage, u"&Play spoken audio"};
    murmelix::ui::CheckBox KeepOnScreenCheck{OutputPage, u"&Keep characters on the screen"};
    murmelix::ui::Label SizeLbl{OutputPage, u"&Size of characters and balloons:"};
    murmelix::ui::DropDownList SizeList{OutputPage};
    murmelix::ui::Button CloseButt{*this, u"Close"};

  private:
    void showFacts();
    void switched(const murmelix::ui::CheckBox& box, const std::function<void(bool)>& on);

    void showSizes(int size);
    void sizeChosen();

    std::vector<int> sizes_; // percent, as they are listed
    std::function<Facts()> facts_;
    Switches switches_;
    bool showing_facts_ = false; // a box that changes then tells nobody
};

} // namespace agent::settings
