#include "companions/messenger/client/conversation_window.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/measures.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

constexpr std::size_t most_guests = 30;      // in a menu
constexpr std::size_t longest_in_menu = 60;  // units of a name
constexpr std::size_t longest_names = 200;   // units of the names in it
constexpr std::size_t longest_in_band = 500; // units of names: more than any screen shows

constexpr std::u16string_view type_as[] = {u"Type ", u"a", u"s:"}; // its accelerator in the middle
constexpr char16_t type_as_key = u'A';

std::u16string listed(const std::vector<ContactPtr>& people, std::size_t longest) {
    std::u16string names;
    for (const ContactPtr& contact : people) {
        if (names.size() >= longest) {
            break;
        }
        names += (names.empty() ? u"" : u", ") + contact->friendly;
    }
    return names.substr(0, longest);
}

} // namespace

ConversationWindow::ConversationWindow(Client& client, ConversationPtr conversation, const ui::Rect& place,
                                       const EditClasses& edits)
    : ConversationForm(client, std::move(conversation), edits), ShowTimer(show_delay) {
    Paint = [this](ui::Surface& surface) { paint(surface); };
    TypeAs.setAccessibleName(u"Type as");
    People.setAccessibleName(u"Participants");
    TypeAs.Chosen = [this] { Input.SetFocus(); };
    People.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        People_DrawItem(surface, row, looks);
    };
    People.RowName = [this](int row) {
        const Contact& contact = *people_.at(static_cast<std::size_t>(row));
        return contact.friendly + u", " + std::u16string(nameOf(contact.status));
    };
    People.ContextMenu = [this] { People_ContextMenu(); };
    Invite.Click = [this] { PopupMenu(Guests, Invite); };
    Guests.Popup = [this] { Guests_Popup(); };
    Leaves.Click = [this] { Leaves_Click(); };
    ShowTimer.Tick = [this] { ShowTimer_Tick(); };
    addAccelerator({type_as_key, ui::alt_key}, [this] { TypeAs.SetFocus(); });
    settle(place);
    showPeople();
    queue(Style::notice, this->conversation()->history());
    Input.SetFocus();
}

ui::Layout ConversationWindow::layout() {
    using ui::columns, ui::item, ui::rows;
    const int line = sizeFor(u"X").height;
    ui::Layout texts = rows({framed(History, 4 * line).growing(),
                             columns({ui::space(sizeFor(u"Type as:").width + 10 * pixel),
                                      item(TypeAs).least(200 * pixel), ui::stretch()}),
                             columns({framed(Input, 3 * line).growing(), item(Send).least(74 * pixel)}).gap(margin)})
                           .gap(margin)
                           .growing();
    std::vector<ui::Layout> parts;
    parts.push_back(std::move(texts));
    if (People.Visible()) {
        parts.push_back(
            rows({item(People).least(people_width - 2 * pixel).pad(pixel).growing(), item(Invite)}).gap(margin));
    }
    return rows({ui::space(headingHeight()), columns(std::move(parts)).gap(margin).pad(margin).growing()});
}

void ConversationWindow::layOut() {
    const int line = sizeFor(u"X").height;
    const bool wide = ScaleWidth() > width_for_people;
    if (wide != People.Visible()) {
        People.setVisible(wide);
        Invite.setVisible(wide);
    }
    People.setItemHeight(std::max(38 * pixel, 2 * line));
    const ui::Size least = layout().needed();
    setLeastScale(290 * pixel, std::max(least.height, 250 * pixel));
    ui::fill(*this, layout());
}

void ConversationWindow::paint(ui::Surface& surface) const {
    surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::face);
    const std::u16string names = listed(people_, longest_in_band);
    const std::size_t count = people_.size();
    drawHeading(surface, names.empty() ? u"Nobody else is here" : names,
                murmelix::toText(static_cast<long long>(count)) + (count == 1 ? u" participant" : u" participants"));
    drawFrame(surface, History);
    drawFrame(surface, Input);
    drawFrame(surface, People, false);
    const ui::Rect beside_it = pixelsOf(TypeAs.Bounds());
    int x = px(10);
    for (const std::u16string_view part : type_as) {
        surface.setFontUnderline(part.size() == 1);
        surface.Print(x, beside_it.top + (beside_it.height - surface.TextHeight()) / 2, part, colour::soft_text);
        x += surface.TextWidth(part);
    }
    surface.setFontUnderline(false);
}

void ConversationWindow::People_DrawItem(ui::Surface& surface, int row, const ui::ListBox::Looks& looks) const {
    surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::row(looks.selected));
    const Contact& contact = *people_.at(static_cast<std::size_t>(row));
    const int size = surface.Height() - 2 * px(6);
    drawAvatar(surface, {px(6), px(6), size, size}, contact);
    const int left = size + px(14);
    surface.PrintIn({left, 0, std::max(surface.Width() - left, 0), surface.Height()}, contact.friendly,
                    colour::rowText(looks.selected));
    if (looks.focused) {
        surface.FocusRect({0, 0, surface.Width(), surface.Height()});
    }
}

int ConversationWindow::rowOf(const Contact& contact) const {
    const auto found = std::find_if(people_.begin(), people_.end(),
                                    [&](const ContactPtr& person) { return person.get() == &contact; });
    return found == people_.end() ? -1 : static_cast<int>(found - people_.begin());
}

void ConversationWindow::showPeople() {
    people_ = conversation()->participants();
    std::vector<std::u16string> names;
    for (const ContactPtr& contact : people_) {
        names.push_back(contact->friendly);
    }
    People.setItems(names);
    names.insert(names.begin(), u"Me");
    TypeAs.setItems(std::move(names));
    TypeAs.setListIndex(0);
    showTitle();
}

void ConversationWindow::showTitle() {
    const std::u16string names = listed(people_, longest_names);
    const std::u16string title = (names.empty() ? u"Empty" : names) + u" - Conversation";
    if (title != Caption()) {
        setCaption(title);
    }
    Redraw();
}

void ConversationWindow::onJoined(const ContactPtr& contact) {
    if (rowOf(*contact) >= 0) {
        return;
    }
    people_.push_back(contact);
    People.InsertItem(People.ListCount(), contact->friendly);
    TypeAs.InsertItem(TypeAs.ListCount(), contact->friendly);
    showTitle();
}

void ConversationWindow::onLeft(const Contact& contact) {
    const int row = rowOf(contact);
    if (row < 0) {
        return;
    }
    people_.erase(people_.begin() + row);
    People.RemoveItem(row);
    TypeAs.RemoveItem(row + 1);
    if (TypeAs.ListIndex() < 0) {
        TypeAs.setListIndex(0); // oneself again
    }
    showTitle();
}

void ConversationWindow::looksDifferent(const Contact& contact) {
    const int row = rowOf(contact);
    if (row >= 0) {
        People.setItem(row, contact.friendly);
        TypeAs.setItem(row + 1, contact.friendly);
        showTitle();
    }
}

void ConversationWindow::queue(Style style, std::u16string_view added) {
    if (added.empty()) {
        return;
    }
    const std::u16string lines = breaker_.broken(added);
    std::u16string_view text = lines;
    if (queued_.empty()) {
        ShowTimer.setInterval(show_delay);
        ShowTimer.setEnabled(true);
    }
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), units_at_once);
        // Line ends and surrogate pairs stay whole.
        if (length < text.size() && (text[length - 1] == u'\r' || (text[length - 1] & 0xFC00) == 0xD800)) {
            --length;
        }
        queued_.push_back({style, std::u16string(text.substr(0, length))});
        text.remove_prefix(length);
    }
}

void ConversationWindow::ShowTimer_Tick() {
    std::size_t units = 0;
    History.BeginUpdate();
    while (!queued_.empty() && units < units_at_once) {
        const Piece& piece = queued_.front();
        units += piece.text.size();
        show(piece);
        queued_.pop_front();
    }
    leaveOldOut();
    History.EndUpdate();
    if (queued_.empty()) {
        ShowTimer.setEnabled(false);
    } else {
        ShowTimer.setInterval(show_next);
    }
}

void ConversationWindow::show(const Piece& piece) {
    const int before = History.Length();
    History.Append(piece.text, {.colour = piece.style == Style::message ? colour::text : colour::soft_text,
                                .bold = piece.style == Style::name,
                                .indent = piece.style == Style::message ? 10 * pixel : 0,
                                .space_before = piece.style == Style::name ? 6 * pixel : 0});
    shown_.push_back(History.Length() - before);
}

void ConversationWindow::leaveOldOut() {
    if (shown_.size() <= 2 * (most_shown + left_at_once)) {
        return;
    }
    const auto kept = shown_.end() - static_cast<std::ptrdiff_t>(2 * most_shown);
    History.Remove(0, std::accumulate(shown_.begin(), kept, 0));
    shown_.erase(shown_.begin(), kept);
}

void ConversationWindow::changed(const Change& change) {
    const bool here = change.conversation == conversation();
    switch (change.kind) {
    case Change::Kind::said:
        if (here) {
            name_units_ = change.contact->friendly.size() + std::u16string_view(u"\r\n says:").size();
        }
        break;
    case Change::Kind::text_appended:
        if (here) {
            queue(Style::name, change.text.substr(0, name_units_));
            queue(Style::message, change.text.substr(std::min(name_units_, change.text.size())));
            name_units_ = 0;
        }
        break;
    case Change::Kind::window_joined:
        if (here) {
            onJoined(change.contact);
        }
        break;
    case Change::Kind::window_left:
        if (here) {
            onLeft(*change.contact);
        }
        break;
    case Change::Kind::contact_renamed:
    case Change::Kind::contact_status:
        looksDifferent(*change.contact);
        break;
    case Change::Kind::shutting_down:
        rememberPlace();
        break;
    default:
        break;
    }
}

// Whatever was pressed for it, the typing goes on.
void ConversationWindow::Send_Click() {
    Input.SetFocus();
    const int writer = TypeAs.ListIndex();
    if (writer < 0 || !client().me()) {
        return;
    }
    const ContactPtr contact = writer == 0 ? client().me() : people_.at(static_cast<std::size_t>(writer) - 1);
    const std::u16string text = Input.Text();
    Input.setText(u"");
    client().say(conversation(), contact, text);
}

void ConversationWindow::Guests_Popup() {
    Guests.Clear();
    bool somebody_away = false;
    std::size_t count = 0;
    for (const ContactPtr& contact : client().contacts()) {
        if (count == most_guests) {
            break;
        }
        if (conversation()->has(*contact)) {
            continue;
        }
        if (contact->status == Status::offline) {
            somebody_away = true;
            continue;
        }
        const std::u16string name = contact->friendly.substr(0, longest_in_menu);
        Guests.AddItem(murmelix::replaceAll(name, u"&", u"&&"), [this, contact] {
            Input.SetFocus();
            client().join(conversation(), ContactPtr(contact));
        });
        ++count;
    }
    if (count == 0) {
        Guests.AddItem(somebody_away ? u"Nobody else of your list is online" : u"Everybody of your list is here")
            .setEnabled(false);
    }
}

void ConversationWindow::People_ContextMenu() {
    if (People.ListIndex() >= 0) {
        PopupMenu(Person);
    }
}

void ConversationWindow::Leaves_Click() {
    const int row = People.ListIndex();
    if (row >= 0) {
        client().leave(conversation(), ContactPtr(people_.at(static_cast<std::size_t>(row))));
    }
}

} // namespace messenger_client
