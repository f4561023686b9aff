#include "companions/agent/settings/settings_frm.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "common/text.h"
#include "ui/layout.h"

namespace agent::settings {

namespace ui = murmelix::ui;

namespace {

std::u16string percent(int number) {
    return murmelix::toText(number) + u" %";
}

// `none` stands for 0.
NumberList::Name seconds(const char16_t* none) {
    return [none](int number) {
        return number == 0 ? std::u16string(none) : murmelix::toText(number) + (number == 1 ? u" second" : u" seconds");
    };
}

std::u16string readingTime(int number) {
    return number == reading_bounds.most ? u"Until I click it" : seconds(u"As the character has it")(number);
}

template <std::size_t... I>
std::array<SettingsFrm::KeyRow, sizeof...(I)> keyRows(ui::Control& page, std::index_sequence<I...>) {
    return {SettingsFrm::KeyRow(page, deeds[I])...};
}

} // namespace

SettingsFrm::SettingsFrm(Listener& listener, Keys& keys, std::function<Facts()> facts, Switches switches,
                         VoicesPage::Sources sources)
    : Form(nullptr, u"Character Properties", ui::FormStyle::dialog, u"AgentServerProperties"),
      Voices(Pages, listener, std::move(sources)),
      OutputLbl(OutputPage,
                u"What characters say is heard through the sound device, and shown in their word balloons."),
      CopyrightLbl(CopyrightPage, u"AgentServer, a part of Murmelix.\n\nReleased under the MIT licence."),
      SizeList(OutputPage, {75, 100, 125, 150, 175, 200, 250, 300}, percent),
      VolumeList(ListeningPage, {0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100}, percent),
      SpeedList(ListeningPage, {50, 75, 90, 100, 110, 125, 150, 175, 200}, percent),
      LongestList(ListeningPage, {0, 5, 10, 15, 20, 30, 60, 120}, seconds(u"As long as it takes")),
      WaitingList(ListeningPage, {0, 5, 10, 15, 20, 30, 60, 120, 300}, seconds(u"Never")),
      HurryLbl(ListeningPage, u"In a hurry, characters speak up to twice as fast. Where that is not enough, what has "
                              u"waited longest is left out."),
      LettersList(BalloonsPage, {100, 125, 150, 175, 200, 250, 300}, percent),
      ReadingList(BalloonsPage, {0, 3, 5, 10, 15, 20, 30, 60, 120, reading_bounds.most}, readingTime),
      ReadingNoteLbl(BalloonsPage, u"What comes next in a balloon waits for that. A click on the balloon, or skipping, "
                                   u"goes on at once."),
      CalmLbl(BalloonsPage, u"Characters then stand still until they are asked for something, go to another place "
                            u"without a way, and show all words at once. Where Windows has its animations switched "
                            u"off, they do so anyway."),
      KeyRows(keyRows(KeysPage, std::make_index_sequence<deeds.size()>())), KeysLbl(KeysPage, u""), listener_(listener),
      keys_(keys), facts_(std::move(facts)), switches_(std::move(switches)) {
    setIcon({u"#1"}); // the program's own
    Pages.Click = [this] { showFacts(); };
    SoundCheck.Click = [this] {
        if (!showing_facts_) {
            listener_.setSound(SoundCheck.Value() != 0);
        }
    };
    KeepOnScreenCheck.Click = [this] {
        if (!showing_facts_) {
            switches_.keep_on_screen(KeepOnScreenCheck.Value() != 0);
        }
    };
    SizeList.Picked = [this](int percent) { switches_.set_size(percent); };
    VolumeList.Picked = [this](int percent) { listener_.setVolume(percent); };
    SpeedList.Picked = [this](int percent) { listener_.setSpeed(percent); };
    LongestList.Picked = [this](int seconds) { listener_.setLongest(seconds); };
    WaitingList.Picked = [this](int seconds) { listener_.setMostWaiting(seconds); };
    LettersList.Picked = [this](int percent) { listener_.setLetters(percent); };
    ReadingList.Picked = [this](int seconds) { listener_.setReading(seconds); };
    WordByWordCheck.Click = [this] {
        if (!showing_facts_) {
            listener_.setWordByWord(WordByWordCheck.Value() != 0);
        }
    };
    CalmCheck.Click = [this] {
        if (!showing_facts_) {
            listener_.setCalm(CalmCheck.Value() != 0);
        }
    };
    SkipButt.Click = [this] { listener_.skip(); };
    PauseCheck.Click = [this] {
        if (!showing_facts_) {
            listener_.setPaused(PauseCheck.Value() != 0);
        }
    };
    for (std::size_t i = 0; i < KeyRows.size(); ++i) {
        KeyRows[i].Box.Picked = [this, i](const ui::Shortcut& key) { showKeys(keys_.set(i, key)); };
        KeyRows[i].Box.GotFocus = [this] { keys_.setHeard(false); };
        KeyRows[i].Box.LostFocus = [this] { keys_.setHeard(true); };
    }
    CloseButt.Click = [this] { Unload(); };
    DefaultButton = &CloseButt;
    CancelButton = &CloseButt;
    layOut();
}

void SettingsFrm::layOut() {
    constexpr int width = 6450, height = 4700, margin = 120, inside = 240;
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
    layOutListening(margin, inside);
    layOutBalloons(margin, inside);
    Voices.layOut(margin / 2, inside);
    layOutKeys(margin / 2, inside);
}

void SettingsFrm::layOutKeys(int margin, int inside) {
    std::vector<const ui::Label*> labels;
    std::ranges::transform(KeyRows, std::back_inserter(labels), [](const KeyRow& row) { return &row.Lbl; });
    const int names = widthOf(labels);
    std::vector<ui::Layout> rows;
    for (KeyRow& row : KeyRows) {
        rows.push_back(
            ui::columns({ui::item(row.Lbl).centered().least(names), ui::item(row.Box).growing()}).gap(2 * margin));
    }
    rows.push_back(ui::item(KeysLbl).growing());
    ui::rows(std::move(rows)).gap(margin).pad(inside).place({0, 0, KeysPage.Width(), KeysPage.Height()});
}

void SettingsFrm::showKeys(const std::u16string& problem) {
    for (std::size_t i = 0; i < KeyRows.size(); ++i) {
        KeyRows[i].Box.setValue(keys_.key(i));
    }
    KeysLbl.setTellsNews();
    KeysLbl.setCaption(!problem.empty() ? problem
                                        : u"Keys that are heard in every program. Press one in its field, with Ctrl or "
                                          u"Alt, or one of F1 to F12; Backspace takes it away.");
}

// The lists stand below one another, beside the widest of their names.
void SettingsFrm::layOutListening(int margin, int inside) {
    const int names = widthOf({&VolumeLbl, &SpeedLbl, &LongestLbl, &WaitingLbl});
    const auto row = [&](ui::Label& name, ui::DropDownList& list) {
        return ui::columns({ui::item(name).centered().least(names), ui::item(list).growing()}).gap(margin);
    };
    ui::rows({row(VolumeLbl, VolumeList), row(SpeedLbl, SpeedList), row(LongestLbl, LongestList),
              row(WaitingLbl, WaitingList), ui::item(HurryLbl).wrapped(),
              ui::columns({ui::item(SkipButt), ui::item(PauseCheck).centered()}).gap(inside)})
        .gap(margin)
        .pad(inside)
        .place({0, 0, ListeningPage.Width(), ListeningPage.Height()});
}

void SettingsFrm::layOutBalloons(int margin, int inside) {
    const int names = widthOf({&LettersLbl, &ReadingLbl});
    const auto row = [&](ui::Label& name, ui::DropDownList& list) {
        return ui::columns({ui::item(name).centered().least(names), ui::item(list).growing()}).gap(margin);
    };
    ui::rows({row(LettersLbl, LettersList), row(ReadingLbl, ReadingList), ui::item(ReadingNoteLbl).wrapped(),
              ui::item(WordByWordCheck).atStart(), ui::item(CalmCheck).atStart(), ui::item(CalmLbl).wrapped()})
        .gap(margin)
        .pad(inside)
        .place({0, 0, BalloonsPage.Width(), BalloonsPage.Height()});
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
    PauseCheck.setValue(listener_.paused() ? 1 : 0);
    WordByWordCheck.setValue(listener_.wordByWord() ? 1 : 0);
    CalmCheck.setValue(listener_.calm() ? 1 : 0);
    SoundCheck.setValue(listener_.sound() ? 1 : 0);
    KeepOnScreenCheck.setValue(facts.keep_on_screen ? 1 : 0);
    showing_facts_ = false;
    SizeList.show(facts.size);
    VolumeList.show(listener_.volume());
    SpeedList.show(listener_.speed());
    LongestList.show(listener_.longest());
    WaitingList.show(listener_.mostWaiting());
    LettersList.show(listener_.letters());
    ReadingList.show(listener_.reading());
    Voices.show();
    showKeys(keys_.problem());
}

void SettingsFrm::refresh() {
    if (Visible()) {
        showFacts();
    }
}

} // namespace agent::settings
