#include "companions/agent/settings/voices_page.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "companions/agent/settings/languages.h"
#include "ui/layout.h"

namespace agent::settings {

namespace ui = murmelix::ui;

namespace {

constexpr const char16_t* as_made = u"As it was made";

NumberList::Name number(const char16_t* unit) {
    return [unit](int number) { return number == 0 ? std::u16string(as_made) : murmelix::toText(number) + unit; };
}

// A list that has them already keeps what the user is typing into it.
void fill(ui::DropDownList& list, std::vector<std::u16string> items, std::ptrdiff_t selected) {
    bool same = list.ListCount() == static_cast<int>(items.size());
    for (int i = 0; same && i < list.ListCount(); ++i) {
        same = list.List(i) == items[static_cast<std::size_t>(i)];
    }
    if (!same) {
        list.setItems(std::move(items));
    }
    list.setListIndex(static_cast<int>(selected));
}

} // namespace

VoicesPage::VoicesPage(ui::TabPages& pages, Listener& listener, Sources sources)
    : TabPage(pages, u"Voices"),
      PitchList(*this, {0, 60, 80, 100, 120, 150, 180, 220, 260, 300, 400}, number(u" hertz")),
      SpeedList(*this, {0, 75, 100, 125, 150, 175, 200, 225, 250, 300, 400}, number(u" words a minute")),
      listener_(listener), sources_(std::move(sources)) {
    CharacterList.Click = [this] { characterPicked(); };
    VoiceList.Click = [this] { voicePicked(); };
    LanguageList.Click = [this] { languagePicked(); };
    PitchList.Picked = [this](int hertz) { change([hertz](OwnVoice& voice) { voice.pitch = hertz; }); };
    SpeedList.Picked = [this](int words) { change([words](OwnVoice& voice) { voice.speed = words; }); };
    SilencedCheck.Click = [this] {
        if (!showing_) {
            listener_.setSilenced(key_, SilencedCheck.Value() != 0);
        }
    };
    ListenButt.Click = [this] {
        if (const KnownCharacter* character = chosen()) {
            sources_.listen(*character);
        }
    };
    ResetButt.Click = [this] { change([](OwnVoice& voice) { voice = {}; }); };
}

void VoicesPage::layOut(int margin, int inside) {
    const int names = widthOf({&CharacterLbl, &VoiceLbl, &LanguageLbl, &PitchLbl, &SpeedLbl});
    const auto row = [&](ui::Label& name, ui::DropDownList& list) {
        return ui::columns({ui::item(name).centered().least(names), ui::item(list).growing()}).gap(margin);
    };
    constexpr int button = 1200;
    ui::rows({row(CharacterLbl, CharacterList), row(VoiceLbl, VoiceList), row(LanguageLbl, LanguageList),
              row(PitchLbl, PitchList), row(SpeedLbl, SpeedList),
              ui::columns({ui::item(ListenButt).least(button), ui::item(ResetButt).least(button), ui::stretch(),
                           ui::item(SilencedCheck).centered()})
                  .gap(margin),
              ui::item(NobodyLbl).wrapped()})
        .gap(margin)
        .pad(inside)
        .place({0, 0, Width(), Height()});
}

const KnownCharacter* VoicesPage::chosen() const {
    const auto found = std::ranges::find(characters_, key_, &KnownCharacter::key);
    return found == characters_.end() ? nullptr : &*found;
}

void VoicesPage::show() {
    characters_ = sources_.characters();
    if (!chosen()) {
        const auto loaded = std::ranges::find(characters_, true, &KnownCharacter::loaded);
        const auto first = loaded != characters_.end() ? loaded : characters_.begin();
        key_ = first == characters_.end() ? std::u16string() : first->key;
    }
    std::vector<std::u16string> names;
    std::ranges::transform(characters_, std::back_inserter(names), &KnownCharacter::name);
    showing_ = true;
    fill(CharacterList, std::move(names), chosen() ? chosen() - characters_.data() : -1);
    showing_ = false;
    showChosen();
}

// That it would speak with these settings.
std::uint16_t VoicesPage::languageOfChosen() const {
    const std::uint16_t own = listener_.ownVoice(key_).language;
    return own != 0 ? own : chosen()->language;
}

void VoicesPage::showChosen() {
    const bool any = chosen() != nullptr;
    for (ui::Control* control :
         std::initializer_list<ui::Control*>{&CharacterList, &VoiceList, &LanguageList, &PitchList, &SpeedList,
                                             &SilencedCheck, &ListenButt, &ResetButt}) {
        control->setEnabled(any);
    }
    NobodyLbl.setVisible(!any);
    const OwnVoice own = any ? listener_.ownVoice(key_) : OwnVoice{};
    voices_ = {u""};
    languages_ = {0};
    if (any) {
        std::ranges::move(sources_.voices(languageOfChosen()), std::back_inserter(voices_));
        for (const Language& language : languages()) {
            if (language.id == own.language || sources_.speaks(language.id)) {
                languages_.push_back(language.id);
            }
        }
    }
    if (std::ranges::find(voices_, own.voice) == voices_.end()) {
        voices_.push_back(own.voice); // it was there when it was chosen
    }
    std::vector<std::u16string> voice_names, language_names;
    std::ranges::transform(voices_, std::back_inserter(voice_names),
                           [](const std::u16string& voice) { return voice.empty() ? std::u16string(as_made) : voice; });
    std::ranges::transform(languages_, std::back_inserter(language_names), [](std::uint16_t id) {
        const Language* language = languageOf(id);
        return language ? std::u16string(language->name) : u"As programs ask for";
    });
    showing_ = true;
    fill(VoiceList, std::move(voice_names), std::ranges::find(voices_, own.voice) - voices_.begin());
    fill(LanguageList, std::move(language_names), std::ranges::find(languages_, own.language) - languages_.begin());
    SilencedCheck.setValue(any && listener_.silenced(key_) ? 1 : 0);
    showing_ = false;
    PitchList.show(own.pitch);
    SpeedList.show(own.speed);
}

void VoicesPage::change(const std::function<void(OwnVoice&)>& how) {
    OwnVoice voice = listener_.ownVoice(key_);
    how(voice);
    listener_.setOwnVoice(key_, voice);
    showChosen();
}

void VoicesPage::characterPicked() {
    if (const int index = CharacterList.ListIndex(); !showing_ && index >= 0) {
        key_ = characters_.at(static_cast<std::size_t>(index)).key;
        showChosen();
    }
}

void VoicesPage::voicePicked() {
    if (const int index = VoiceList.ListIndex(); !showing_ && index >= 0) {
        change([&](OwnVoice& voice) { voice.voice = voices_.at(static_cast<std::size_t>(index)); });
    }
}

// A voice that does not speak the language is given up.
void VoicesPage::languagePicked() {
    const int index = LanguageList.ListIndex();
    if (showing_ || index < 0) {
        return;
    }
    change([&](OwnVoice& voice) {
        voice.language = languages_.at(static_cast<std::size_t>(index));
        const auto voices = sources_.voices(voice.language != 0 ? voice.language : chosen()->language);
        if (std::ranges::find(voices, voice.voice) == voices.end()) {
            voice.voice.clear();
        }
    });
}

} // namespace agent::settings
