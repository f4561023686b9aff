#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "companions/agent/settings/listener.h"
#include "companions/agent/settings/number_list.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/label.h"
#include "ui/tab_pages.h"

namespace agent::settings {

// The page "Voices": how each of the characters that are installed, or that programs have loaded, is to
// sound, and how it does.
class VoicesPage : public murmelix::ui::TabPage {
  public:
    struct Sources {
        std::function<std::vector<KnownCharacter>()> characters;
        std::function<bool(std::uint16_t language)> speaks;
        std::function<std::vector<std::u16string>(std::uint16_t language)> voices;
        // Has a character say how it sounds.
        std::function<void(const KnownCharacter& character)> listen;
    };
    VoicesPage(murmelix::ui::TabPages& pages, Listener& listener, Sources sources);
    void layOut(int margin, int inside);
    // With the characters that there are now; the one that was chosen stays so, and at first it is one that is loaded.
    void show();

    murmelix::ui::Label CharacterLbl{*this, u"&Character:"};
    murmelix::ui::DropDownList CharacterList{*this};
    murmelix::ui::Label VoiceLbl{*this, u"&Voice:"};
    murmelix::ui::DropDownList VoiceList{*this};
    murmelix::ui::Label LanguageLbl{*this, u"L&anguage:"};
    murmelix::ui::DropDownList LanguageList{*this};
    murmelix::ui::Label PitchLbl{*this, u"&Pitch:"};
    NumberList PitchList;
    murmelix::ui::Label SpeedLbl{*this, u"Sp&eed:"};
    NumberList SpeedList;
    murmelix::ui::CheckBox SilencedCheck{*this, u"&Silenced"};
    murmelix::ui::Button ListenButt{*this, u"&Listen"}, ResetButt{*this, u"As &Made"};
    murmelix::ui::Label NobodyLbl{*this,
                                  u"Here are the characters that are installed, or that programs have on the stage: "
                                  u"there are none."};

  private:
    const KnownCharacter* chosen() const;
    std::uint16_t languageOfChosen() const;
    void showChosen();
    void change(const std::function<void(OwnVoice&)>& how);
    void characterPicked();
    void voicePicked();
    void languagePicked();

    Listener& listener_;
    Sources sources_;
    std::vector<KnownCharacter> characters_;
    std::vector<std::u16string> voices_;   // as they are listed; the first stands for the character's own
    std::vector<std::uint16_t> languages_; // the same
    std::u16string key_;                   // of the chosen character
    bool showing_ = false;
};

} // namespace agent::settings
