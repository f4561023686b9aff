#include "companions/messenger/client/reading_page.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/measures.h"
#include "companions/messenger/reading/characters.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

using reading::Rules;

// Lines that have come are shown so much later, in milliseconds: many come at a time.
constexpr int show_delay = 500;

// Twips.
constexpr int inside = 12 * pixel, gap = 8 * pixel;
constexpr int least_preview = 330 * pixel, first_preview = 520 * pixel;
// What tabs and rim take around a page, at most.
constexpr int rim_width = 14 * pixel, rim_height = 36 * pixel;

// Pixels at 96 dots an inch.
constexpr int padding = 6, name_width = 96;

constexpr ui::Colour unread_grey = ui::rgb(104, 114, 124);
constexpr ui::Colour unread_text = colour::orSystem(unread_grey, ui::grey_text);

// Grey on the colour of a selected row is none that can be relied on.
constexpr ui::Colour unreadText(bool selected) {
    return selected ? colour::orSystem(unread_grey, ui::highlight_text) : unread_text;
}

std::u16string shownName(const reading::Line& line) {
    return reading::seatName(line.name, line.person);
}

std::u16string rowText(const reading::Line& line, const reading::Previewed& previewed) {
    std::u16string text = shownName(line) + u": " + previewed.text;
    if (previewed.unread) {
        text += u" (not read: " + std::u16string(reading::whyText(*previewed.unread)) + u")";
    }
    return text;
}

std::u16string rowText(const reading::WordRule& rule) {
    return rule.word + (rule.replacement.empty() ? u": nothing" : u": " + rule.replacement);
}

void drawGround(ui::Surface& surface, const ui::ListBox::Looks& looks) {
    const ui::Rect all{0, 0, surface.Width(), surface.Height()};
    surface.Fill(all, colour::row(looks.selected));
    if (looks.focused) {
        surface.FocusRect(all);
    }
}

// Pixels, one away from it.
ui::Rect frameAround(const ui::Control& control) {
    const int left = ui::toPixels(control.Left()) - 1, top = ui::toPixels(control.Top()) - 1;
    return {left, top, ui::toPixels(control.Left() + control.Width()) + 1 - left,
            ui::toPixels(control.Top() + control.Height()) + 1 - top};
}

// A frame with what is in it, which stands below its caption.
ui::Layout titled(ui::Frame& frame, ui::Layout inner) {
    const int caption = frame.neededSize().height;
    return ui::within(frame,
                      ui::rows({std::move(inner).growing()}).pad(inside, caption + 5 * pixel, inside, 9 * pixel));
}

// Its text cut to what of it can be typed.
std::u16string typed(const ui::TextBox& box) {
    std::u16string text = reading::tidied(box.Text());
    if (text.size() > reading::longest_listed) {
        text.resize(reading::longest_listed);
    }
    return reading::tidied(text);
}

} // namespace

ReadingPage::ReadingPage(ui::Form& owner, const std::u16string& conversation, Hooks hooks)
    : Form(&owner, u"What is read in " + conversation, ui::FormStyle::sizable, u"MessengerClientReading"),
      PreviewTimer(show_delay), hooks_(std::move(hooks)) {
    setBackColor(colour::face);
    for (ui::Label* label :
         {&PaceLbl, &LengthLbl, &LinksLbl, &EmojiLbl, &WhoLbl, &SeatsLbl, &WordLbl, &ReplacementLbl, &PreviewLbl}) {
        label->setForeColor(colour::soft_text);
    }
    PeopleList.setAccessibleName(u"Who writes here");
    WordsList.setAccessibleName(u"Words");
    connectLines();
    connectPeople();
    connectWords();
    PreviewList.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        PreviewList_DrawItem(surface, row, looks);
    };
    Paint = [this](ui::Surface& surface) {
        surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::face);
        surface.FrameRect(frameAround(PreviewList), colour::line);
    };
    PreviewList.ContextMenu = [this] { PreviewList_ContextMenu(); };
    UsualButt.Click = [this] { UsualButt_Click(); };
    CloseButt.Click = [this] { Hide(); };
    PreviewTimer.Tick = [this] {
        PreviewTimer.setEnabled(false);
        linesChanged();
    };
    CancelButton = &CloseButt;
    layOut();
    const ui::Size least = leastScale();
    setScale(least.width + first_preview - least_preview, least.height);
    Center();
}

void ReadingPage::connectLines() {
    number(PaceList, paces_, &Rules::lines_a_minute);
    number(LengthList, lengths_, &Rules::longest_line);
    LinksList.setItems({u"a link to example.org", u"left out", u"as they are written"});
    LinksList.Click = [this] {
        if (!showing_ && LinksList.ListIndex() >= 0) {
            rules_.links = static_cast<reading::Links>(LinksList.ListIndex());
            changed();
        }
    };
    EmojiList.setItems({u"their names: [pizza]", u"left out"});
    EmojiList.Click = [this] {
        if (!showing_ && EmojiList.ListIndex() >= 0) {
            rules_.other_emoji = static_cast<reading::OtherEmoji>(EmojiList.ListIndex());
            changed();
        }
    };
    flag(ShortenCheck, &Rules::shorten);
    flag(NameCheck, &Rules::name_first);
    flag(BotsCheck, &Rules::bots, true);
    flag(CommandsCheck, &Rules::commands, true);
    flag(RepeatedCheck, &Rules::repeated, true);
    flag(AddressedCheck, &Rules::addressed, true);
    flag(NoticesCheck, &Rules::notices, true);
    flag(AnnouncementsCheck, &Rules::announcements, true);
    flag(OwnCheck, &Rules::own, true);
}

void ReadingPage::connectPeople() {
    WhoList.setItems({u"everyone", u"these alone:"});
    WhoList.Click = [this] { WhoList_Click(); };
    flag(ModeratorsCheck, &Rules::moderators);
    flag(SubscribersCheck, &Rules::subscribers);
    flag(ChosenCheck, &Rules::chosen);
    PeopleList.Click = [this] { showPerson(); };
    PeopleList.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        PeopleList_DrawItem(surface, row, looks);
    };
    IgnoreCheck.Click = [this] { markSelected(IgnoreCheck, &Rules::ignored_people); };
    ChooseCheck.Click = [this] { markSelected(ChooseCheck, &Rules::chosen_people); };
    PinCheck.Click = [this] { markSelected(PinCheck, &Rules::pinned_people); };
    number(SeatsList, seats_, &Rules::seats);
    flag(ShareCheck, &Rules::rest_shares);
    const auto marks = [this](ui::MenuItem& item, reading::People Rules::*people) {
        item.Click = [this, &item, people] { mark(writerSelected(), people, !item.Checked()); };
    };
    marks(PersonMenuIgnore, &Rules::ignored_people);
    marks(PersonMenuChoose, &Rules::chosen_people);
    marks(PersonMenuPin, &Rules::pinned_people);
}

void ReadingPage::connectWords() {
    const auto adds = [this](const ui::Shortcut& key) {
        if (key != ui::Shortcut{ui::Key::enter}) {
            return false;
        }
        AddButt_Click();
        return true;
    };
    WordTxt.KeyPress = adds;
    ReplacementTxt.KeyPress = adds;
    WordTxt.Change = [this] { AddButt.setEnabled(!typed(WordTxt).empty()); };
    AddButt.Click = [this] { AddButt_Click(); };
    AddButt.setEnabled(false);
    RemoveButt.Click = [this] { RemoveButt_Click(); };
    WordsList.Click = [this] { WordsList_Click(); };
    WordsList.KeyPress = [this](const ui::Shortcut& key) {
        if (key != ui::Shortcut{ui::Key::del}) {
            return false;
        }
        RemoveButt_Click();
        return true;
    };
    WordsList.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        WordsList_DrawItem(surface, row, looks);
    };
}

void ReadingPage::flag(ui::CheckBox& box, bool Rules::*rule, bool opposite) {
    box.Click = [this, &box, rule, opposite] {
        if (!showing_) {
            rules_.*rule = (box.Value() != 0) != opposite;
            changed();
        }
    };
}

void ReadingPage::number(ui::DropDownList& list, std::vector<int>& shown, int Rules::*rule) {
    list.Click = [this, &list, &shown, rule] {
        if (!showing_ && list.ListIndex() >= 0) {
            rules_.*rule = shown.at(static_cast<std::size_t>(list.ListIndex()));
            changed();
        }
    };
}

ui::Layout ReadingPage::linesLayout() {
    using ui::columns, ui::item, ui::rows;
    int labels = 0;
    for (const ui::Label* label : {&PaceLbl, &LengthLbl, &LinksLbl, &EmojiLbl}) {
        labels = std::max(labels, label->neededSize().width);
    }
    const auto field = [labels](ui::Label& label, ui::Control& control) {
        return columns({item(label).least(labels).centered(), item(control).least(140 * pixel).growing()}).gap(gap);
    };
    return rows({field(PaceLbl, PaceList), field(LengthLbl, LengthList), field(LinksLbl, LinksList),
                 field(EmojiLbl, EmojiList), rows({item(ShortenCheck), item(NameCheck)}).gap(4 * pixel),
                 titled(UnreadFrame,
                        rows({item(BotsCheck), item(CommandsCheck), item(RepeatedCheck), item(AddressedCheck),
                              item(NoticesCheck), item(AnnouncementsCheck), item(OwnCheck)})
                            .gap(4 * pixel)),
                 ui::stretch()})
        .gap(gap);
}

ui::Layout ReadingPage::peopleLayout() {
    using ui::columns, ui::item, ui::rows;
    return rows({columns({item(WhoLbl).centered(), item(WhoList).least(140 * pixel), ui::stretch()}).gap(gap),
                 columns({item(ModeratorsCheck), item(SubscribersCheck), item(ChosenCheck), ui::stretch()}).gap(gap),
                 titled(PeopleFrame,
                        rows({item(PeopleList).growing(),
                              columns({item(IgnoreCheck), item(ChooseCheck), item(PinCheck), ui::stretch()}).gap(gap)})
                            .gap(gap))
                     .growing(),
                 columns({item(SeatsLbl).centered(), item(SeatsList).least(64 * pixel), ui::stretch()}).gap(gap),
                 item(ShareCheck)})
        .gap(gap);
}

ui::Layout ReadingPage::wordsLayout() {
    using ui::columns, ui::item, ui::rows;
    const auto field = [](ui::Label& label, ui::Control& control) {
        return rows({item(label), item(control)}).gap(2 * pixel);
    };
    const auto button = [](ui::Button& of) { return item(of).least(76 * pixel, 24 * pixel); };
    return rows({field(WordLbl, WordTxt), field(ReplacementLbl, ReplacementTxt),
                 columns({ui::stretch(), button(AddButt)}),
                 titled(WordsFrame,
                        rows({item(WordsList).growing(), columns({ui::stretch(), button(RemoveButt)})}).gap(gap))
                     .growing()})
        .gap(gap);
}

void ReadingPage::layOut() {
    using ui::columns, ui::item, ui::rows;
    const int line = sizeFor(u"X").height;
    for (ui::ListBox* list : {&PreviewList, &PeopleList, &WordsList}) {
        list->setItemHeight(line + 6 * pixel);
    }
    int width = 0, height = 0;
    for (const ui::Layout& page : {linesLayout(), peopleLayout(), wordsLayout()}) {
        const ui::Size needed = page.needed();
        width = std::max(width, needed.width + 2 * inside + rim_width);
        height = std::max(height, needed.height + 2 * inside + rim_height);
    }
    ui::Layout all =
        rows({columns({item(Pages).least(width, height),
                       rows({item(PreviewLbl), item(PreviewList).least(least_preview).pad(pixel).growing()})
                           .gap(4 * pixel)
                           .growing()})
                  .gap(margin)
                  .growing(),
              columns({item(UsualButt).least(110 * pixel, 26 * pixel), ui::stretch(),
                       item(CloseButt).least(80 * pixel, 26 * pixel)})})
            .gap(margin)
            .pad(margin);
    const ui::Size least = all.needed();
    setLeastScale(least.width, least.height);
    ui::fill(*this, all);
    const auto fill = [](const ui::TabPage& page, ui::Layout layout) {
        std::move(layout).pad(inside).place({0, 0, page.Width(), page.Height()});
    };
    fill(LinesPage, linesLayout());
    fill(PeoplePage, peopleLayout());
    fill(WordsPage, wordsLayout());
}

void ReadingPage::present() {
    rules_ = hooks_.rules();
    lines_ = hooks_.lines();
    showRules();
    Show();
    Activate();
}

void ReadingPage::linesChanged() {
    if (!Visible() || PreviewTimer.Enabled()) {
        return;
    }
    std::vector<reading::Line> lines = hooks_.lines();
    const auto same = [](const reading::Line& a, const reading::Line& b) { return a.number == b.number; };
    if (std::ranges::equal(lines, lines_, same)) {
        return;
    }
    // The last line is followed, another one that is selected stays so.
    const int row = PreviewList.ListIndex();
    const bool follows = row < 0 || row + 1 >= PreviewList.ListCount();
    const unsigned long long selected = follows ? 0 : lines_[static_cast<std::size_t>(row)].number;
    lines_ = std::move(lines);
    showPeople();
    showPreview();
    const auto found = std::ranges::find(lines_, selected, &reading::Line::number);
    PreviewList.setListIndex(follows || found == lines_.end() ? PreviewList.ListCount() - 1
                                                              : static_cast<int>(found - lines_.begin()));
    PreviewTimer.setEnabled(true);
}

void ReadingPage::rulesChanged() {
    if (!Visible()) {
        return;
    }
    if (reading::Rules rules = hooks_.rules(); rules != rules_) {
        rules_ = std::move(rules);
        showRules();
    }
}

void ReadingPage::changed() {
    hooks_.changed(rules_);
    showWho();
    showPreview();
}

void ReadingPage::showNumbers(ui::DropDownList& list, std::vector<int>& shown, std::vector<int> usual, int value) {
    if (const auto place = std::ranges::lower_bound(usual, value); place == usual.end() || *place != value) {
        usual.insert(place, value);
    }
    if (shown != usual) {
        shown = std::move(usual);
        std::vector<std::u16string> texts;
        std::ranges::transform(shown, std::back_inserter(texts), [](int of) {
            return of == reading::as_many_as_characters ? u"as there are characters" : murmelix::toText(of);
        });
        list.setItems(std::move(texts));
    }
    list.setListIndex(static_cast<int>(std::ranges::find(shown, value) - shown.begin()));
}

void ReadingPage::showRules() {
    const auto show = [](ui::CheckBox& box, bool value) { box.setValue(value ? 1 : 0); };
    showing_ = true;
    showNumbers(PaceList, paces_, {1, 2, 3, 5, 8, 10, 12, 15, 20, 30, 60}, rules_.lines_a_minute);
    showNumbers(LengthList, lengths_, {40, 80, 120, 200, 300, 500, 1'000}, rules_.longest_line);
    LinksList.setListIndex(static_cast<int>(rules_.links));
    EmojiList.setListIndex(static_cast<int>(rules_.other_emoji));
    show(ShortenCheck, rules_.shorten);
    show(NameCheck, rules_.name_first);
    show(BotsCheck, !rules_.bots);
    show(CommandsCheck, !rules_.commands);
    show(RepeatedCheck, !rules_.repeated);
    show(AddressedCheck, !rules_.addressed);
    show(NoticesCheck, !rules_.notices);
    show(AnnouncementsCheck, !rules_.announcements);
    show(OwnCheck, !rules_.own);
    WhoList.setListIndex(rules_.everyone ? 0 : 1);
    show(ModeratorsCheck, rules_.moderators);
    show(SubscribersCheck, rules_.subscribers);
    show(ChosenCheck, rules_.chosen);
    showNumbers(SeatsList, seats_, {reading::as_many_as_characters, 1, 2, 3, 4, 5, 6}, rules_.seats);
    show(ShareCheck, rules_.rest_shares);
    showing_ = false;
    showWho();
    showPeople();
    showWords();
    showPreview();
}

void ReadingPage::showWho() {
    for (ui::CheckBox* box : {&ModeratorsCheck, &SubscribersCheck, &ChosenCheck}) {
        box->setEnabled(!rules_.everyone);
    }
}

// Who stands on a list, and who has written lately.
void ReadingPage::showPeople() {
    const reading::ListedPerson* before = selectedPerson();
    const std::u16string selected = before ? before->person : std::u16string();
    reading::People people;
    for (const reading::Line& line : lines_) {
        if (!line.mine) {
            reading::list(people, line.person, shownName(line));
        }
    }
    for (const reading::People* listed : {&rules_.ignored_people, &rules_.chosen_people, &rules_.pinned_people}) {
        for (const reading::ListedPerson& person : *listed) {
            reading::list(people, person.person, person.name);
        }
    }
    std::ranges::stable_sort(people, [](const reading::ListedPerson& a, const reading::ListedPerson& b) {
        return murmelix::toLower(a.name) < murmelix::toLower(b.name);
    });
    if (people != people_ || PeopleList.ListCount() != static_cast<int>(people.size())) {
        people_ = std::move(people);
        std::vector<std::u16string> names;
        std::ranges::transform(people_, std::back_inserter(names), &reading::ListedPerson::name);
        PeopleList.setItems(std::move(names));
        const auto found = std::ranges::find(people_, selected, &reading::ListedPerson::person);
        PeopleList.setListIndex(found == people_.end() ? -1 : static_cast<int>(found - people_.begin()));
    }
    for (int row = 0; row < PeopleList.ListCount(); ++row) {
        PeopleList.RedrawItem(row);
    }
    showPerson();
}

void ReadingPage::showPerson() {
    const reading::ListedPerson* person = selectedPerson();
    showing_ = true;
    for (const auto& [box, people] : {std::pair{&IgnoreCheck, &rules_.ignored_people},
                                      {&ChooseCheck, &rules_.chosen_people},
                                      {&PinCheck, &rules_.pinned_people}}) {
        box->setEnabled(person != nullptr);
        box->setValue(person && reading::isListed(*people, person->person) ? 1 : 0);
    }
    showing_ = false;
}

void ReadingPage::showWords() {
    std::vector<std::u16string> rows;
    std::ranges::transform(rules_.words, std::back_inserter(rows),
                           [](const reading::WordRule& rule) { return rowText(rule); });
    WordsList.setItems(std::move(rows));
    WordsList_Click();
}

void ReadingPage::showPreview() {
    const int before = PreviewList.ListIndex();
    const bool same_rows = PreviewList.ListCount() == static_cast<int>(lines_.size()) && !lines_.empty();
    previewed_ = reading::preview(lines_, rules_, hooks_.surroundings());
    std::vector<std::u16string> rows;
    for (std::size_t row = 0; row < lines_.size(); ++row) {
        rows.push_back(rowText(lines_[row], previewed_[row]));
    }
    const auto read = std::ranges::count_if(previewed_, [](const reading::Previewed& line) { return !line.unread; });
    PreviewLbl.setCaption(
        lines_.empty() ? u"&Preview: nobody has said anything yet"
                       : u"&Preview: of the last " + murmelix::toText(static_cast<long long>(lines_.size())) +
                             (lines_.size() == 1 ? u" line, " : u" lines, ") +
                             murmelix::toText(static_cast<long long>(read)) + (read == 1 ? u" is read" : u" are read"));
    if (!same_rows) {
        PreviewList.setItems(std::move(rows));
        PreviewList.setListIndex(PreviewList.ListCount() - 1);
        return;
    }
    for (int row = 0; row < PreviewList.ListCount(); ++row) {
        if (const std::u16string& text = rows[static_cast<std::size_t>(row)]; PreviewList.List(row) != text) {
            PreviewList.setItem(row, text);
        }
    }
    PreviewList.setListIndex(before < 0 ? PreviewList.ListCount() - 1 : before);
}

void ReadingPage::WhoList_Click() {
    if (!showing_ && WhoList.ListIndex() >= 0) {
        rules_.everyone = WhoList.ListIndex() == 0;
        changed();
    }
}

void ReadingPage::AddButt_Click() {
    const std::u16string word = typed(WordTxt);
    if (word.empty()) {
        return ui::beep();
    }
    const auto known = std::ranges::find_if(rules_.words, [&](const reading::WordRule& rule) {
        return murmelix::sameText(rule.word, word, murmelix::LetterCase::ignored);
    });
    if (known != rules_.words.end()) {
        *known = {word, typed(ReplacementTxt)};
    } else if (rules_.words.size() < reading::most_listed) {
        rules_.words.push_back({word, typed(ReplacementTxt)});
    } else {
        return ui::beep();
    }
    WordTxt.setText(u"");
    ReplacementTxt.setText(u"");
    showWords();
    changed();
    WordTxt.SetFocus();
}

void ReadingPage::RemoveButt_Click() {
    const int row = WordsList.ListIndex();
    if (row < 0) {
        return;
    }
    rules_.words.erase(rules_.words.begin() + row);
    showWords();
    WordsList.setListIndex(std::min(row, WordsList.ListCount() - 1));
    WordsList_Click();
    changed();
}

// What is selected can be changed: added again, it takes the place of what it was.
void ReadingPage::WordsList_Click() {
    const int row = WordsList.ListIndex();
    RemoveButt.setEnabled(row >= 0);
    if (row >= 0) {
        const reading::WordRule& rule = rules_.words.at(static_cast<std::size_t>(row));
        WordTxt.setText(rule.word);
        ReplacementTxt.setText(rule.replacement);
    }
}

// The lists of people and words are the user's own work: they stay.
void ReadingPage::UsualButt_Click() {
    Rules usual;
    usual.ignored_people = rules_.ignored_people;
    usual.chosen_people = rules_.chosen_people;
    usual.pinned_people = rules_.pinned_people;
    usual.words = rules_.words;
    if (usual != rules_) {
        rules_ = std::move(usual);
        hooks_.changed(rules_);
        showRules();
    }
}

reading::ListedPerson ReadingPage::writerSelected() const {
    const int row = PreviewList.ListIndex();
    if (row < 0 || static_cast<std::size_t>(row) >= lines_.size() || lines_[static_cast<std::size_t>(row)].mine) {
        return {};
    }
    const reading::Line& line = lines_[static_cast<std::size_t>(row)];
    return {line.person, shownName(line)};
}

void ReadingPage::PreviewList_ContextMenu() {
    const reading::ListedPerson writer = writerSelected();
    if (writer.person.empty()) {
        return;
    }
    PersonMenuIgnore.setChecked(reading::isListed(rules_.ignored_people, writer.person));
    PersonMenuChoose.setChecked(reading::isListed(rules_.chosen_people, writer.person));
    PersonMenuPin.setChecked(reading::isListed(rules_.pinned_people, writer.person));
    PopupMenu(PersonMenu);
}

void ReadingPage::mark(const reading::ListedPerson& person, reading::People Rules::*people, bool listed) {
    if (!listed) {
        reading::unlist(rules_.*people, person.person);
    } else if (!reading::list(rules_.*people, person.person, person.name)) {
        ui::beep();
    }
    changed();
    showPeople();
}

void ReadingPage::markSelected(ui::CheckBox& box, reading::People Rules::*people) {
    const reading::ListedPerson* person = selectedPerson();
    if (!showing_ && person) {
        mark(reading::ListedPerson(*person), people, box.Value() != 0);
    }
}

const reading::ListedPerson* ReadingPage::selectedPerson() const {
    const int row = PeopleList.ListIndex();
    return row >= 0 && static_cast<std::size_t>(row) < people_.size() ? &people_[static_cast<std::size_t>(row)]
                                                                      : nullptr;
}

void ReadingPage::PreviewList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    drawGround(surface, looks);
    const reading::Line& line = lines_.at(static_cast<std::size_t>(row));
    const reading::Previewed& previewed = previewed_.at(static_cast<std::size_t>(row));
    const int width = surface.Width(), height = surface.Height(), left = px(name_width + 2 * padding);
    int right = width - px(padding);
    if (previewed.unread) {
        const std::u16string_view why = reading::whyText(*previewed.unread);
        const int why_width = std::min(surface.TextWidth(why) + px(2), (width - left) / 2);
        right -= why_width;
        surface.PrintIn({right, 0, std::max(why_width, 0), height}, why, unreadText(looks.selected));
        right -= px(2 * padding);
    }
    surface.PrintIn({px(padding), 0, px(name_width), height}, shownName(line),
                    previewed.unread ? unreadText(looks.selected)
                    : looks.selected ? colour::on_chosen
                                     : colour::link);
    surface.PrintIn({left, 0, std::max(right - left, 0), height}, previewed.text,
                    previewed.unread ? unreadText(looks.selected) : colour::rowText(looks.selected));
}

void ReadingPage::PeopleList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    drawGround(surface, looks);
    const reading::ListedPerson& person = people_.at(static_cast<std::size_t>(row));
    std::u16string marks;
    for (const auto& [people, text] : {std::pair{&rules_.ignored_people, u"not read"},
                                       {&rules_.chosen_people, u"chosen"},
                                       {&rules_.pinned_people, u"on stage"}}) {
        if (reading::isListed(*people, person.person)) {
            marks += (marks.empty() ? u"" : u", ") + std::u16string(text);
        }
    }
    const int height = surface.Height(), marks_width = surface.TextWidth(marks) + px(2);
    const int right = surface.Width() - px(padding) - marks_width;
    surface.PrintIn({right, 0, marks_width, height}, marks, colour::rowSoftText(looks.selected));
    const bool ignored = reading::isListed(rules_.ignored_people, person.person);
    surface.PrintIn({px(padding), 0, std::max(right - px(2 * padding), 0), height}, person.name,
                    ignored ? unreadText(looks.selected) : colour::rowText(looks.selected));
}

void ReadingPage::WordsList_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    drawGround(surface, looks);
    const reading::WordRule& rule = rules_.words.at(static_cast<std::size_t>(row));
    const int height = surface.Height(), half = surface.Width() / 2;
    surface.PrintIn({px(padding), 0, std::max(half - px(2 * padding), 0), height}, rule.word,
                    colour::rowText(looks.selected));
    surface.PrintIn({half, 0, std::max(half - px(padding), 0), height},
                    rule.replacement.empty() ? u"nothing" : rule.replacement,
                    rule.replacement.empty() ? unreadText(looks.selected) : colour::rowText(looks.selected));
}

} // namespace messenger_client
