#include "companions/messenger/client/conversation_window.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/account.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

constexpr std::size_t most_guests = 30;      // in a menu
constexpr std::size_t longest_in_menu = 60;  // units of a name
constexpr std::size_t longest_title = 200;   // units of the names in it
constexpr std::size_t longest_in_band = 500; // units of names: more than any screen shows

// New text is shown this much later, in milliseconds: drawing it takes long, and who listens to the client asks for the
// text at once.
constexpr int show_delay = 40;
// What is left over follows so soon, when other messages had their turn.
constexpr int show_next = 1;
// So much text at once goes to the history control.
constexpr std::size_t units_at_once = 8192;
// The time that the history control takes for a line grows with the square of its length: longer lines are shown as
// several.
constexpr std::size_t longest_line = 500;

// Twips.
constexpr int pixel = 15; // at 96 dots an inch
constexpr int margin = 8 * pixel;
constexpr int padding = 6 * pixel; // between the frame of a text and the text
constexpr int people_width = 150 * pixel;
constexpr int width_for_people = 430 * pixel; // a narrower window does without the list

// Pixels at 96 dots an inch: what a character and its balloon take above a window; a window at first, at least, and
// beside the one before it.
constexpr int head_room = 300;
constexpr int first_left = 330, first_width = 560, first_height = 480, least_first_height = 320;
constexpr int beside = 28, most_beside = 8;

constexpr std::u16string_view type_as[] = {u"Type ", u"a", u"s:"}; // its accelerator in the middle
constexpr char16_t type_as_key = u'A';

ui::Rect pixelsOf(const ui::Rect& twips) {
    const int left = ui::toPixels(twips.left), top = ui::toPixels(twips.top);
    return {left, top, ui::toPixels(twips.left + twips.width) - left, ui::toPixels(twips.top + twips.height) - top};
}

// The frame around a text stands `inset` away from it; the scroll bar stands at the frame.
ui::Rect frameOf(const ui::Control& control, int inset) {
    const ui::Rect& place = control.Bounds();
    return pixelsOf({place.left - inset, place.top - inset, place.width + inset + pixel, place.height + 2 * inset});
}

ui::RichTextBox::WindowClass windowClass(EditClass edit_class) {
    using WindowClass = ui::RichTextBox::WindowClass;
    switch (edit_class) {
    case EditClass::rich_edit_20a:
        return WindowClass::ansi;
    case EditClass::ink_edit:
        return WindowClass::ink;
    case EditClass::rich_edit_20w:
        break;
    }
    return WindowClass::wide;
}

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

ui::Rect placeOfConversation(const ui::Rect& work_area, std::size_t others, const WantedPlace& wanted,
                             const std::optional<ui::Rect>& last) {
    const int number = static_cast<int>(others % most_beside);
    if (last && !wanted.left && !wanted.top && !wanted.width && !wanted.height) {
        // At the far side it begins again at the near one.
        const auto stepped = [step = px(beside) * number](int at, int size, int area, int area_size) {
            return area + (at - area + step) % (area_size - size + 1);
        };
        return {stepped(last->left, last->width, work_area.left, work_area.width),
                stepped(last->top, last->height, work_area.top, work_area.height), last->width, last->height};
    }
    const int width = wanted.width.value_or(px(first_width));
    const int left = wanted.left ? *wanted.left + px(beside) * number
                                 : std::max(std::min(work_area.left + px(first_left + beside * number),
                                                     work_area.left + work_area.width - width),
                                            work_area.left);
    if (wanted.top) {
        return {left, *wanted.top + px(beside) * number, width, wanted.height.value_or(px(first_height))};
    }
    // Where the window would reach out of the screen it is less high; where it cannot be, the room above it is less.
    const int bottom = work_area.top + work_area.height;
    const int least = wanted.height.value_or(px(least_first_height));
    const int highest = std::max(std::min(work_area.top + px(head_room), bottom - least), work_area.top);
    const int steps = std::max((bottom - least - highest) / px(beside), 0) + 1;
    const int top = highest + px(beside) * (number % steps);
    return {left, top, width, wanted.height.value_or(std::max(std::min(px(first_height), bottom - top), least))};
}

ConversationWindow::ConversationWindow(Client& client, ConversationPtr conversation, const ui::Rect& place,
                                       const EditClasses& edits)
    : Form(nullptr, u"Conversation", ui::FormStyle::sizable, conversation_class),
      History(*this, ui::RichTextBox::Use::show, windowClass(edits.history)),
      Input(*this, ui::RichTextBox::Use::edit, windowClass(edits.input)), ShowTimer(show_delay), client_(client),
      conversation_(std::move(conversation)) {
    setIcon({u"#1", 32});
    setBackColor(colour::face);
    Paint = [this](ui::Surface& surface) { paint(surface); };
    Input.KeyPress = [this](const ui::Shortcut& key) { return Input_KeyPress(key); };
    Send.Click = [this] { Send_Click(); };
    TypeAs.Chosen = [this] { Input.SetFocus(); };
    People.DrawItem = [this](ui::Surface& surface, int row, const ui::ListBox::Looks& looks) {
        People_DrawItem(surface, row, looks);
    };
    People.ContextMenu = [this] { People_ContextMenu(); };
    Invite.Click = [this] { PopupMenu(Guests, Invite); };
    Guests.Popup = [this] { Guests_Popup(); };
    Leaves.Click = [this] { Leaves_Click(); };
    ShowTimer.Tick = [this] { ShowTimer_Tick(); };
    addAccelerator({type_as_key, ui::alt_key}, [this] { TypeAs.SetFocus(); });
    DefaultButton = &Send;
    // The window system counts from the front: so that other programs find the first created first.
    for (auto child = Children().rbegin(); child != Children().rend(); ++child) {
        (*child)->ZOrder();
    }
    layOut(); // with its least size, which the place may be below
    setPlace(place);
    first_place_ = Place();
    conversation_->setWindow(static_cast<std::intptr_t>(handle()));
    showPeople();
    queue(Style::notice, conversation_->history());
    Input.SetFocus();
}

void ConversationWindow::onClose() {
    client_.close(conversation_);
}

void ConversationWindow::rememberPlace() const {
    if (Visible() && WindowState() == State::normal && Place() != first_place_) {
        conversationPlace().keep(Place());
    }
}

bool ConversationWindow::onEscape() {
    onClose();
    return true;
}

ui::Layout ConversationWindow::layout() {
    using ui::columns, ui::item, ui::rows;
    const int line = sizeFor(u"X").height;
    const auto framed = [](ui::Control& text, int height) {
        return item(text).least(0, height).pad(padding, padding, pixel, padding);
    };
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
    return rows({ui::space(line * 9 / 4 + 18 * pixel), columns(std::move(parts)).gap(margin).pad(margin).growing()});
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
    const int line = ui::toPixels(sizeFor(u"X").height);
    const ui::Rect band{0, 0, surface.Width(), line * 9 / 4 + px(18)};
    surface.Fill({0, 0, surface.Width(), surface.Height()}, colour::face);
    drawBand(surface, band);
    for (const auto& [control, inset] :
         {std::pair<const ui::Control*, int>{&History, padding}, {&Input, padding}, {&People, pixel}}) {
        if (control->Visible()) {
            const ui::Rect frame = frameOf(*control, inset);
            surface.Fill(frame, colour::field);
            surface.FrameRect(frame, colour::line);
        }
    }
    const std::u16string names = listed(people_, longest_in_band);
    const std::size_t count = people_.size();
    ui::Rect place{px(12), px(7), std::max(surface.Width() - px(20), 0), line * 5 / 4 + px(3)};
    surface.setFontScale(125);
    surface.setFontBold(true);
    surface.PrintIn(place, names.empty() ? u"Nobody else is here" : names, colour::on_band);
    surface.setFontScale(100);
    surface.setFontBold(false);
    place.top += place.height;
    place.height = line + px(3);
    surface.PrintIn(place,
                    murmelix::toText(static_cast<long long>(count)) + (count == 1 ? u" participant" : u" participants"),
                    colour::on_band_soft);
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
    surface.Fill({0, 0, surface.Width(), surface.Height()}, looks.selected ? colour::chosen : colour::field);
    const Contact& contact = *people_.at(static_cast<std::size_t>(row));
    const int size = surface.Height() - 2 * px(6);
    drawAvatar(surface, {px(6), px(6), size, size}, contact);
    const int left = size + px(14);
    surface.PrintIn({left, 0, std::max(surface.Width() - left, 0), surface.Height()}, contact.friendly, colour::text);
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
    people_ = conversation_->participants();
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
    const std::u16string names = listed(people_, longest_title);
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

std::u16string ConversationWindow::broken(std::u16string_view text) {
    std::u16string lines;
    lines.reserve(text.size());
    std::size_t blank = 0; // the end of the last one in the line, which is where words part; 0: none
    for (const char16_t unit : text) {
        if (unit == u'\r' || unit == u'\n') {
            line_units_ = 0;
            blank = 0;
        } else if (++line_units_ > longest_line && (unit & 0xFC00) != 0xDC00) {
            const std::size_t at = blank > 0 ? blank : lines.size();
            line_units_ = lines.size() - at + 1;
            lines.insert(at, u"\r\n");
            blank = 0;
        }
        lines += unit;
        if (unit == u' ') {
            blank = lines.size();
        }
    }
    return lines;
}

void ConversationWindow::queue(Style style, std::u16string_view added) {
    if (added.empty()) {
        return;
    }
    const std::u16string lines = broken(added);
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
        History.Append(piece.text, {.colour = piece.style == Style::message ? colour::text : colour::soft_text,
                                    .bold = piece.style == Style::name,
                                    .indent = piece.style == Style::message ? 10 * pixel : 0,
                                    .space_before = piece.style == Style::name ? 6 * pixel : 0});
        queued_.pop_front();
    }
    History.EndUpdate();
    if (queued_.empty()) {
        ShowTimer.setEnabled(false);
    } else {
        ShowTimer.setInterval(show_next);
    }
}

void ConversationWindow::changed(const Change& change) {
    const bool here = change.conversation == conversation_;
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

bool ConversationWindow::Input_KeyPress(const ui::Shortcut& key) {
    if (key.key != ui::Key::enter) {
        return false;
    }
    if (key.shift & ui::shift_key) {
        Input.setSelText(u"\r\n");
    } else {
        Send_Click();
    }
    return true;
}

// Whatever was pressed for it, the typing goes on.
void ConversationWindow::Send_Click() {
    Input.SetFocus();
    const int writer = TypeAs.ListIndex();
    if (writer < 0 || !client_.me()) {
        return;
    }
    const ContactPtr contact = writer == 0 ? client_.me() : people_.at(static_cast<std::size_t>(writer) - 1);
    const std::u16string text = Input.Text();
    Input.setText(u"");
    client_.say(conversation_, contact, text);
}

void ConversationWindow::Guests_Popup() {
    Guests.Clear();
    bool somebody_away = false;
    std::size_t count = 0;
    for (const ContactPtr& contact : client_.contacts()) {
        if (count == most_guests) {
            break;
        }
        if (conversation_->has(*contact)) {
            continue;
        }
        if (contact->status == Status::offline) {
            somebody_away = true;
            continue;
        }
        const std::u16string name = contact->friendly.substr(0, longest_in_menu);
        Guests.AddItem(murmelix::replaceAll(name, u"&", u"&&"), [this, contact] {
            Input.SetFocus();
            client_.join(conversation_, ContactPtr(contact));
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
        client_.leave(conversation_, ContactPtr(people_.at(static_cast<std::size_t>(row))));
    }
}

} // namespace messenger_client
