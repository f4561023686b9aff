#include "companions/messenger/client/live_window.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/measures.h"
#include "companions/messenger/reading/links.h"
#include "platform/clock.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

// People listed: more than anybody looks through.
constexpr std::size_t most_listed = 300;
// Milliseconds between two looks at who is there: in a busy channel somebody comes or goes all the time.
constexpr int people_delay = 500;
// While lines pour in, showing them takes no more than a quarter of the time: most fall out before they could be seen.
constexpr long long rest_after_showing = 3;
constexpr std::size_t longest_channel = 100; // units of the channel's name
constexpr std::size_t longest_topic = 1000;  // units: more than any screen shows

} // namespace

LiveWindow::PersonMenu::PersonMenu(LiveWindow& window, ui::Menu& menu)
    : Talk(menu, u"&Talk to them alone"), Pin(menu, u"&Keep on the stage"), Ignore(menu, u"&Do not read"),
      Choose(menu, u"One of the people whom I have &chosen") {
    menu.Popup = [this, &window] {
        const LivePerson* const person = window.selected();
        for (ui::MenuItem* item : {&Talk, &Pin, &Ignore, &Choose}) {
            item->setEnabled(person != nullptr);
        }
        Pin.setChecked(person && person->pinned);
        Ignore.setChecked(person && person->ignored);
        Choose.setChecked(person && person->chosen);
    };
    Talk.Click = [&window] {
        if (const LivePerson* const person = window.selected()) {
            window.talk().talkTo(LivePerson(*person));
        }
    };
    Pin.Click = [&window] { window.list(&reading::Rules::pinned_people); };
    Ignore.Click = [&window] { window.list(&reading::Rules::ignored_people); };
    Choose.Click = [&window] { window.list(&reading::Rules::chosen_people); };
}

namespace {

std::u16string shownName(const LivePerson& person) {
    std::u16string text = person.sign == 0 ? person.name : person.sign + person.name;
    text += person.pinned ? u" \x2013 kept" : person.ignored ? u" \x2013 not read" : u"";
    return text;
}

} // namespace

LiveWindow::LiveWindow(Client& client, ConversationPtr conversation, Hooks hooks, const ui::Rect& place,
                       const EditClasses& edits)
    : ConversationForm(client, std::move(conversation), edits), ShowTimer(show_delay), PeopleTimer(people_delay),
      hooks_(std::move(hooks)) {
    Paint = [this](ui::Surface& surface) { paint(surface); };
    History.LinkClick = [this](const std::u16string& address) { hooks_.open_link(address); };
    People.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        People_DrawItem(surface, row, looks);
    };
    People.RowName = [this](int row) {
        const LivePerson& person = people_.at(static_cast<std::size_t>(row));
        std::u16string name = shownName(person);
        name += person.on_stage ? u", has a character" : u"";
        name += person.away ? u", away" : u"";
        return name;
    };
    People.ContextMenu = [this] { People_ContextMenu(); };
    People.DblClick = [this] { PeopleMenuItems.Talk.onClick(); };
    People.setAccessibleName(u"People");
    FindTxt.setAccessibleName(u"Find");
    RulesButt.Click = [this] { RulesButt_Click(); };
    FindTxt.KeyPress = [this](const ui::Shortcut& key) { return FindTxt_KeyPress(key); };
    FindNextButt.Click = [this] { find(false); };
    FindPreviousButt.Click = [this] { find(true); };
    TalkMenuRules.Click = [this] { RulesButt_Click(); };
    TalkMenuFind.Click = [this] { showFind(true); };
    TalkMenuLinks.Popup = [this] { TalkMenuLinks_Popup(); };
    TalkMenuLog.Click = [this] { hooks_.keep_log(*this); };
    TalkMenuReconnect.Click = [this] { hooks_.reconnect(); };
    TalkMenuLeave.Click = [this] { onClose(); };
    ShowTimer.Tick = [this] { ShowTimer_Tick(); };
    PeopleTimer.Tick = [this] { PeopleTimer_Tick(); };
    showFind(false);
    settle(place);
    talk().lines_changed = [this] {
        ShowTimer.setEnabled(true);
        if (RulesPage) {
            RulesPage->linesChanged();
        }
    };
    talk().people_changed = [this] { PeopleTimer.setEnabled(true); };
    talk().title_changed = [this] { showTitle(); };
    showTitle();
    ShowTimer.setEnabled(true);
    PeopleTimer_Tick();
    Input.SetFocus();
}

LiveWindow::~LiveWindow() {
    talk().lines_changed = talk().people_changed = talk().title_changed = nullptr;
}

bool LiveWindow::onEscape() {
    if (!finding_) {
        return false; // a channel is left on purpose, not by a slip of the finger
    }
    showFind(false);
    Input.SetFocus();
    return true;
}

bool LiveWindow::onActivate() {
    talk().setWatched(true);
    return false;
}

void LiveWindow::onDeactivate() {
    talk().setWatched(false);
}

ui::Layout LiveWindow::layout() {
    using ui::columns, ui::item, ui::rows;
    const int line = sizeFor(u"X").height;
    std::vector<ui::Layout> texts;
    texts.push_back(framed(History, 4 * line).growing());
    if (finding_) {
        texts.push_back(
            columns({item(FindTxt).least(120 * pixel).growing().centered(), item(FindNextButt), item(FindPreviousButt)})
                .gap(margin / 2));
    }
    texts.push_back(columns({framed(Input, 3 * line).growing(), item(Send).least(74 * pixel)}).gap(margin));
    std::vector<ui::Layout> parts;
    parts.push_back(rows(std::move(texts)).gap(margin).growing());
    if (People.Visible()) {
        parts.push_back(
            rows({item(People).least(people_width - 2 * pixel).pad(pixel).growing(), item(RulesButt)}).gap(margin));
    }
    return rows({ui::space(headingHeight()), columns(std::move(parts)).gap(margin).pad(margin).growing()});
}

void LiveWindow::layOut() {
    const bool wide = ScaleWidth() > width_for_people;
    if (wide != People.Visible()) {
        People.setVisible(wide);
        RulesButt.setVisible(wide);
    }
    People.setItemHeight(std::max(24 * pixel, sizeFor(u"X").height * 3 / 2));
    setLeastScale(290 * pixel, std::max(layout().needed().height, 250 * pixel));
    ui::fill(*this, layout());
}

void LiveWindow::paint(ui::Surface& surface) const {
    surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::face);
    const auto count = static_cast<long long>(talk().peopleCount());
    std::u16string title = talk().title().substr(0, longest_channel);
    if (talk().isChannel()) {
        title += u" \x2013 " + murmelix::toText(count) + (count == 1 ? u" person" : u" people");
    }
    drawHeading(surface, title, talk().topic().substr(0, longest_topic));
    drawFrame(surface, History);
    drawFrame(surface, Input);
    drawFrame(surface, People, false);
}

void LiveWindow::People_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::row(looks.selected));
    const LivePerson& person = people_.at(static_cast<std::size_t>(row));
    const int size = surface.Height() - 2 * px(3);
    if (person.on_stage) {
        drawAvatar(surface, {px(6), px(3), size, size},
                   {person.signin, person.name, person.away ? Status::away : Status::online});
    }
    const std::u16string text = shownName(person);
    const int left = size + px(12);
    surface.setFontBold(person.on_stage);
    surface.PrintIn({left, 0, std::max(surface.Width() - left, 0), surface.Height()}, text,
                    person.away || person.ignored ? colour::rowSoftText(looks.selected)
                                                  : colour::rowText(looks.selected));
    surface.setFontBold(false);
    if (looks.focused) {
        surface.FocusRect({0, 0, surface.Width(), surface.Height()});
    }
}

void LiveWindow::ShowTimer_Tick() {
    const long long began = murmelix::platform::microseconds();
    const bool more = view_.show(units_at_once);
    const long long taken = (murmelix::platform::microseconds() - began) / 1000;
    ShowTimer.setInterval(more ? std::max(show_next, static_cast<int>(rest_after_showing * taken)) : show_delay);
    ShowTimer.setEnabled(more);
}

void LiveWindow::PeopleTimer_Tick() {
    PeopleTimer.setEnabled(false);
    std::vector<LivePerson> now = talk().people(most_listed);
    const LivePerson* const before = selected();
    const std::u16string chosen = before ? before->signin : std::u16string();
    if (now != people_) {
        people_ = std::move(now);
        std::vector<std::u16string> names;
        for (const LivePerson& person : people_) {
            names.push_back(person.name);
        }
        People.setItems(std::move(names));
        const auto still = std::ranges::find(people_, chosen, &LivePerson::signin);
        if (before && still != people_.end()) {
            People.setListIndex(static_cast<int>(still - people_.begin()));
        }
    }
    Redraw();
}

const LivePerson* LiveWindow::selected() const {
    const int row = People.ListIndex();
    return row < 0 || static_cast<std::size_t>(row) >= people_.size() ? nullptr
                                                                      : &people_[static_cast<std::size_t>(row)];
}

void LiveWindow::list(reading::People reading::Rules::*people) {
    const LivePerson* const person = selected();
    if (!person) {
        return;
    }
    reading::Rules rules = talk().rules();
    if (reading::isListed(rules.*people, person->signin)) {
        reading::unlist(rules.*people, person->signin);
    } else {
        reading::list(rules.*people, person->signin, person->name);
    }
    talk().setRules(std::move(rules));
    PeopleTimer_Tick();
    if (RulesPage) {
        RulesPage->rulesChanged();
    }
}

void LiveWindow::RulesButt_Click() {
    if (!RulesPage) {
        RulesPage = std::make_unique<ReadingPage>(
            *this, talk().title().substr(0, longest_channel),
            ReadingPage::Hooks{.rules = [this] { return talk().rules(); },
                               .changed = [this](const reading::Rules& changed) { talk().setRules(changed); },
                               .lines = [this] { return std::vector(talk().recent().begin(), talk().recent().end()); },
                               .surroundings = [this] { return talk().surroundings(); }});
    }
    RulesPage->present();
}

void LiveWindow::TalkMenuLinks_Popup() {
    constexpr LineNumber most_lines = 500;
    constexpr std::size_t most_links = 10, longest_caption = 80;
    TalkMenuLinks.Clear();
    std::vector<std::u16string> listed;
    const LiveLines& lines = talk().lines();
    const LineNumber end = lines.next() - std::min(lines.next() - lines.first(), most_lines);
    for (LineNumber number = lines.next(); number-- > end && listed.size() < most_links;) {
        const LiveLine* line = lines.find(number);
        if (!line || line->gone) {
            continue;
        }
        for (const reading::Range& part : reading::linksIn(line->text)) {
            std::u16string link = line->text.substr(part.begin, part.end - part.begin);
            if (listed.size() == most_links || !reading::isWebLink(link) ||
                std::ranges::find(listed, link) != listed.end()) {
                continue;
            }
            std::u16string caption = murmelix::replaceAll(link, u"&", u"&&");
            if (caption.size() > longest_caption) {
                caption.resize(longest_caption);
                caption += u'…';
            }
            TalkMenuLinks.AddItem(caption, [this, link] { hooks_.open_link(link); });
            listed.push_back(std::move(link));
        }
    }
    if (listed.empty()) {
        TalkMenuLinks.AddItem(u"No link was written lately").setEnabled(false);
    }
}

void LiveWindow::People_ContextMenu() {
    if (selected()) {
        PopupMenu(PersonPopup);
    }
}

void LiveWindow::showTitle() {
    const std::u16string title = talk().title().substr(0, longest_channel) + u" - Conversation";
    if (title != Caption()) {
        setCaption(title);
    }
    Redraw();
}

void LiveWindow::showFind(bool shown) {
    finding_ = shown;
    for (ui::Control* control : {static_cast<ui::Control*>(&FindTxt), static_cast<ui::Control*>(&FindNextButt),
                                 static_cast<ui::Control*>(&FindPreviousButt)}) {
        control->setVisible(shown);
    }
    layOut();
    if (shown) {
        FindTxt.SetFocus();
    }
}

bool LiveWindow::FindTxt_KeyPress(const ui::Shortcut& key) {
    if (key.key != ui::Key::enter) {
        return false;
    }
    find((key.shift & ui::shift_key) != 0);
    return true;
}

void LiveWindow::find(bool back) {
    const bool found = History.Find(FindTxt.Text(), back);
    FindTxt.setForeColor(found ? colour::text : colour::fault);
    if (!found) {
        ui::beep(); // for those who do not see the colour
    }
}

// Whatever was pressed for it, the typing goes on.
void LiveWindow::Send_Click() {
    Input.SetFocus();
    const std::u16string text = Input.Text();
    Input.setText(u"");
    if (!text.empty()) {
        talk().type(text);
    }
}

void LiveWindow::changed(const Change& change) {
    switch (change.kind) {
    case Change::Kind::window_joined:
    case Change::Kind::window_left:
        if (change.conversation == conversation()) {
            PeopleTimer.setEnabled(true);
        }
        break;
    case Change::Kind::shutting_down:
        rememberPlace();
        break;
    default:
        break;
    }
}

} // namespace messenger_client
