#include "companions/setup/voice_frm.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "companions/setup/setup.h"
#include "ui/layout.h"
#include "ui/screen.h"

namespace setup {

namespace ui = murmelix::ui;

namespace {

constexpr std::uint16_t english = 0x0409; // shown first: it is the language of most characters
constexpr int margin = 210, gap = 120;    // twips

const std::u16string introduction =
    u"The characters have a voice. Here you choose the default one of each language: the characters speak with it, but "
    u"for those that have a voice of their own in the properties of AgentServer.";
const std::u16string how_to_get_one =
    u"There is no voice on this computer. Until there is one, characters show their words in balloons, unheard.\r\n\r\n"
    u"In Windows: open Settings, Time & language, Language, and add a language that has text-to-speech.\r\n\r\n"
    u"Or install espeak-ng, a free program with voices for over a hundred languages: "
    u"https://github.com/espeak-ng/espeak-ng/releases\r\n\r\n"
    u"Then start this setup again: \"Voices\" in the start menu, or tv_enua.exe in the folder of Murmelix.";

} // namespace

VoiceFrm::VoiceFrm(Sources sources)
    : Form(nullptr, u"Voice setup", ui::FormStyle::window, u"MurmelixSetup"),
      IntroductionLbl(*this, sources.languages.empty() ? how_to_get_one : introduction), sources_(std::move(sources)) {
    setIcon({u"#1"}); // the program's own
    IntroductionLbl.setUseMnemonic(false);
    StateLbl.setTellsNews();
    StateLbl.setUseMnemonic(false);
    StateLbl.setEllipsis(ui::Label::Ellipsis::end);
    LanguageList.Click = [this] { LanguageList_Click(); };
    VoicesList.Click = [this] { showButtons(); };
    VoicesList.DblClick = [this] { ListenButt_Click(); };
    VoicesList.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        VoicesList_DrawItem(surface, row, looks);
    };
    ListenButt.Click = [this] { ListenButt_Click(); };
    UseButt.Click = [this] { UseButt_Click(); };
    DoneButt.Click = [this] { DoneButt_Click(); };
    DefaultButton = &DoneButt;
    CancelButton = &DoneButt;
    const bool some = !sources_.languages.empty();
    for (ui::Control* control : std::initializer_list<ui::Control*>{&LanguageLbl, &LanguageList, &VoicesLbl,
                                                                    &VoicesList, &StateLbl, &ListenButt, &UseButt}) {
        control->setVisible(some);
    }
    layOut();
    if (some) {
        std::vector<std::u16string> names;
        std::ranges::transform(sources_.languages, std::back_inserter(names), &Language::name);
        LanguageList.setItems(std::move(names));
        const auto first = std::ranges::find(sources_.languages, english, &Language::id);
        LanguageList.setListIndex(
            first == sources_.languages.end() ? 0 : static_cast<int>(first - sources_.languages.begin()));
    }
}

void VoiceFrm::Form_Unload() {
    ui::quitMessageLoop(sources_.languages.empty() ? exit_failed : exit_ready);
}

void VoiceFrm::layOut() {
    constexpr int width = 7800, shown_rows = 13, button = 1440, button_height = 420;
    VoicesList.setItemHeight(StateLbl.sizeFor(u"X").height + 60);
    const auto done = ui::item(DoneButt).least(button, button_height);
    if (sources_.languages.empty()) {
        ui::fit(
            *this,
            ui::rows({ui::item(IntroductionLbl).wrapped(), ui::columns({ui::stretch(), done})}).gap(margin).pad(margin),
            width);
        return;
    }
    ui::fit(*this,
            ui::rows({ui::item(IntroductionLbl).wrapped(),
                      ui::columns({ui::item(LanguageLbl).centered(), ui::item(LanguageList).growing()}).gap(gap),
                      ui::item(VoicesLbl), ui::item(VoicesList).least(0, shown_rows * VoicesList.ItemHeight()),
                      ui::item(StateLbl),
                      ui::columns({ui::item(ListenButt).least(button, button_height),
                                   ui::item(UseButt).least(button, button_height), ui::stretch(), done})
                          .gap(gap)})
                .gap(gap)
                .pad(margin),
            width);
}

const VoiceFrm::Language& VoiceFrm::language() const {
    return sources_.languages.at(static_cast<std::size_t>(std::max(LanguageList.ListIndex(), 0)));
}

const VoiceFrm::Voice& VoiceFrm::selected() const {
    return voices_.at(static_cast<std::size_t>(VoicesList.ListIndex()));
}

bool VoiceFrm::isDefault(const Voice& voice) const {
    return voice.name == default_;
}

std::u16string VoiceFrm::rowOf(const Voice& voice) const {
    const std::u16string name = voice.name.empty() ? u"As each character was made" : voice.name + u", " + voice.engine;
    return isDefault(voice) ? name + u" (default)" : name;
}

// The default one is selected; one that is no more there is none.
void VoiceFrm::LanguageList_Click() {
    voices_ = {Voice{}};
    std::ranges::move(sources_.voices(language().id), std::back_inserter(voices_));
    default_ = sources_.chosen(language().id);
    auto found = std::ranges::find_if(voices_, [this](const Voice& voice) { return isDefault(voice); });
    if (found == voices_.end()) {
        default_.clear();
        found = voices_.begin();
    }
    std::vector<std::u16string> rows;
    std::ranges::transform(voices_, std::back_inserter(rows), [this](const Voice& voice) { return rowOf(voice); });
    VoicesList.setItems(std::move(rows));
    VoicesList.setListIndex(static_cast<int>(found - voices_.begin()));
    tell({});
    showButtons();
}

void VoiceFrm::showButtons() {
    const bool some = VoicesList.ListIndex() >= 0;
    ListenButt.setEnabled(some);
    UseButt.setEnabled(some && !isDefault(selected()));
}

void VoiceFrm::tell(const std::u16string& text) {
    StateLbl.setCaption(text);
}

void VoiceFrm::ListenButt_Click() {
    if (VoicesList.ListIndex() < 0) {
        return;
    }
    const std::u16string name = selected().name.empty() ? language().name : selected().name;
    tell(name + u" is about to speak…");
    sources_.listen(language().id, selected(), [this, name](Sample::State state, const std::string& error) {
        switch (state) {
        case Sample::State::speaking:
            tell(name + u" speaks…");
            break;
        case Sample::State::heard:
            tell(name + u" has spoken.");
            break;
        case Sample::State::failed:
            tell(name + u" cannot speak: " + murmelix::fromUtf8(error));
            break;
        }
    });
}

void VoiceFrm::UseButt_Click() {
    const int row = VoicesList.ListIndex();
    if (row < 0) {
        return;
    }
    if (!sources_.choose(language().id, selected().name)) {
        tell(u"This cannot be kept: Windows does not let the settings be written.");
        return;
    }
    default_ = selected().name;
    for (int i = 0; i < VoicesList.ListCount(); ++i) {
        const std::u16string text = rowOf(voices_.at(static_cast<std::size_t>(i)));
        if (text != VoicesList.List(i)) {
            VoicesList.setItem(i, text);
        }
    }
    VoicesList.setListIndex(row);
    tell(language().name + u" is spoken " +
         (default_.empty() ? u"as each character was made." : u"by " + default_ + u" from now on."));
    VoicesList.SetFocus(); // the button cannot be pressed again
    showButtons();
}

void VoiceFrm::DoneButt_Click() {
    Unload();
}

void VoiceFrm::VoicesList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    constexpr int indent = 4; // pixels at 96 dots an inch
    const ui::Rect all{0, 0, surface.Width(), surface.Height()};
    surface.Fill(all, looks.selected ? ui::highlight : ui::window_background);
    surface.setFontBold(isDefault(voices_.at(static_cast<std::size_t>(row))));
    const int left = ui::toPixels(indent * 15);
    surface.PrintIn({left, 0, all.width - 2 * left, all.height}, VoicesList.List(row),
                    looks.selected ? ui::highlight_text : ui::window_text);
    if (looks.focused) {
        surface.FocusRect(all);
    }
}

} // namespace setup
