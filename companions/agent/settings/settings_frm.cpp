#include "companions/agent/settings/settings_frm.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "ui/layout.h"

namespace agent::settings {

namespace ui = murmelix::ui;

SettingsFrm::SettingsFrm(std::function<Facts()> facts, Switches switches)
    : Form(nullptr, u"Character Properties", ui::FormStyle::dialog, u"AgentServerProperties"),
      OutputLbl(OutputPage,
                u"What characters say is heard through the sound device, and shown in their word balloons."),
      CopyrightLbl(CopyrightPage, u"AgentServer, a part of Murmelix.\n\nReleased under the MIT licence."),
      facts_(std::move(facts)), switches_(std::move(switches)) {
    setIcon({u"#1"}); // the program's own
    Pages.Click = [this] { showFacts(); };
    SoundCheck.Click = [this] { switched(SoundCheck, switches_.enable_sound); };
    KeepOnScreenCheck.Click = [this] { switched(KeepOnScreenCheck, switches_.keep_on_screen); };
    SizeList.Click = [this] { sizeChosen(); };
    CloseButt.Click = [this] { Unload(); };
    DefaultButton = &CloseButt;
    CancelButton = &CloseButt;
    layOut();
}

void SettingsFrm::layOut() {
    constexpr int width = 5700, height = 3900, margin = 120, inside = 240;
    ui::fit(*this,
            ui::rows({ui::item(Pages).growing(), ui::columns({ui::stretch(), ui::item(CloseButt).least(1200, 390)})})
                .gap(margin)
                .pad(margin)
                .least(width, height),
            width);
    const auto fill = [](const ui::TabPage& page, ui::Layout layout) {
        std::move(layout).gap(inside).pad(inside).place({0, 0, page.Width(), page.Height()});
    };
    fill(SpeechPage, ui::rows({ui::item(SpeechLbl).growing()}));
    fill(OutputPage,
         ui::rows({ui::item(OutputLbl).wrapped(), ui::item(SoundCheck).atStart(), ui::item(KeepOnScreenCheck).atStart(),
                   ui::columns({ui::item(SizeLbl).centered(), ui::item(SizeList).least(1200, 0)}).gap(margin)}));
    fill(CopyrightPage, ui::rows({ui::item(CopyrightLbl).growing()}));
}

bool SettingsFrm::setPage(std::u16string_view page) {
    for (std::size_t i = 0; i < Pages.Pages().size(); ++i) {
        if (murmelix::sameText(page, Pages.Pages()[i]->Caption(), murmelix::LetterCase::ignored)) {
            Pages.setSelected(static_cast<int>(i));
            Refresh(); // who calls may go on at once with what covers it
            return true;
        }
    }
    return false;
}

const std::u16string& SettingsFrm::page() const {
    return Pages.Pages()[static_cast<std::size_t>(Pages.Selected())]->Caption();
}

void SettingsFrm::present() {
    showFacts();
    Show();
}

void SettingsFrm::showFacts() {
    const Facts facts = facts_();
    SpeechLbl.setCaption(
        facts.voice ? u"A text-to-speech voice is installed: characters speak aloud.\n\nNo speech recognition is "
                      u"installed: characters do not listen."
                    : u"No text-to-speech voice is installed: characters show their words without a sound.\n\nNo "
                      u"speech recognition is installed: characters do not listen.");
    showing_facts_ = true;
    SoundCheck.setValue(facts.sound_enabled ? 1 : 0);
    KeepOnScreenCheck.setValue(facts.keep_on_screen ? 1 : 0);
    showSizes(facts.size);
    showing_facts_ = false;
}

// The usual ones, and the one that it is.
void SettingsFrm::showSizes(int size) {
    std::vector<int> sizes{75, 100, 125, 150, 175, 200, 250, 300};
    if (const auto place = std::ranges::lower_bound(sizes, size); place == sizes.end() || *place != size) {
        sizes.insert(place, size);
    }
    if (sizes_ != sizes) {
        sizes_ = std::move(sizes);
        std::vector<std::u16string> texts;
        std::ranges::transform(sizes_, std::back_inserter(texts),
                               [](int percent) { return murmelix::toText(percent) + u" %"; });
        SizeList.setItems(std::move(texts));
    }
    SizeList.setListIndex(static_cast<int>(std::ranges::find(sizes_, size) - sizes_.begin()));
}

void SettingsFrm::sizeChosen() {
    const int index = SizeList.ListIndex();
    if (!showing_facts_ && index >= 0) {
        switches_.set_size(sizes_.at(static_cast<std::size_t>(index)));
    }
}

void SettingsFrm::switched(const ui::CheckBox& box, const std::function<void(bool)>& on) {
    if (!showing_facts_) {
        on(box.Value() != 0);
    }
}

} // namespace agent::settings
