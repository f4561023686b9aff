#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ui/button.h"
#include "ui/check_box.h"
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
    };
    // `facts` are asked for whenever they are about to be seen, not before.
    SettingsFrm(std::function<Facts()> facts, std::function<void(bool)> enable_sound);
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
    murmelix::ui::Button CloseButt{*this, u"Close"};

  private:
    void showFacts();

    std::function<Facts()> facts_;
    std::function<void(bool)> enable_sound_;
};

} // namespace agent::settings
