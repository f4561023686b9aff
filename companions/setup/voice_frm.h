#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "companions/setup/sample.h"
#include "ui/button.h"
#include "ui/drop_down_list.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/list_box.h"

namespace setup {

// The voices of this computer, language by language: each is heard by a button, and made the default of its language by
// another. Where there is no voice at all, how to get one. Its end ends the message loop, with the exit status.
class VoiceFrm : public murmelix::ui::Form {
  public:
    struct Voice {
        std::u16string engine, name; // for people; both empty: whichever the character asks for
        bool operator==(const Voice&) const = default;
    };
    struct Language {
        std::uint16_t id;
        std::u16string name;
    };
    struct Sources {
        std::vector<Language> languages; // for which there are voices
        std::function<std::vector<Voice>(std::uint16_t language)> voices;
        // The default voice of a language by its name; empty where there is none.
        std::function<std::u16string(std::uint16_t language)> chosen;
        std::function<bool(std::uint16_t language, const std::u16string& name)> choose; // false: it cannot be kept
        std::function<void(std::uint16_t language, const Voice& voice, Sample::Told told)> listen;
    };
    explicit VoiceFrm(Sources sources);
    void Form_Unload() override;
    void layOut() override;
    void LanguageList_Click();
    void ListenButt_Click();
    void UseButt_Click();
    void DoneButt_Click();
    void VoicesList_DrawItem(murmelix::ui::Surface& surface, int row, const murmelix::ui::ListBox::Looks& looks) const;

    murmelix::ui::Label IntroductionLbl;
    murmelix::ui::Label LanguageLbl{*this, u"L&anguage:"};
    murmelix::ui::DropDownList LanguageList{*this};
    murmelix::ui::Label VoicesLbl{*this, u"&Voices:"};
    murmelix::ui::ListBox VoicesList{*this};
    murmelix::ui::Label StateLbl{*this, u""};
    murmelix::ui::Button ListenButt{*this, u"&Listen"}, UseButt{*this, u"&Use This Voice"}, DoneButt{*this, u"&Done"};

  private:
    const Language& language() const;
    const Voice& selected() const;
    bool isDefault(const Voice& voice) const;
    std::u16string rowOf(const Voice& voice) const;
    void showButtons();
    void tell(const std::u16string& text);

    Sources sources_;
    std::vector<Voice> voices_; // as they are listed
    std::u16string default_;    // of the language that is shown
};

} // namespace setup
