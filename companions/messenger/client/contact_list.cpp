#include "companions/messenger/client/contact_list.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/looks.h"

namespace messenger_client {

namespace {

constexpr int least_row_height = 600; // twips

bool isHere(const Contact& contact) {
    return contact.status != Status::offline && contact.status != Status::unknown &&
           contact.status != Status::invisible;
}

} // namespace

ContactList::ContactList(ui::Control& parent) : ListBox(parent) {
    DrawItem = [this](ui::Surface& surface, int row, const Looks& looks) { draw(surface, row, looks); };
    RowName = [this](int row) {
        const ContactPtr contact = contactAt(row);
        return contact ? contact->friendly + u", " + std::u16string(nameOf(contact->status)) : counted(row);
    };
}

ContactList::Place ContactList::placeFor(const Contact& contact) {
    return {isHere(contact) ? here : away, murmelix::toLower(contact.friendly)};
}

bool ContactList::before(const Entry& a, const Entry& b) {
    const int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : a.contact->signin < b.contact->signin;
}

// Where it stands in its group, or is to stand.
std::ptrdiff_t ContactList::positionOf(Group group, const Entry& entry) const {
    const Entries& entries = groups_[group];
    return std::lower_bound(entries.begin(), entries.end(), entry, before) - entries.begin();
}

int ContactList::headingRow(Group group) const {
    return group == here || groups_[here].empty() ? 0 : static_cast<int>(groups_[here].size()) + 1;
}

std::u16string ContactList::heading(Group group) {
    return group == here ? u"Online" : u"Offline";
}

void ContactList::show(const std::vector<ContactPtr>& contacts) {
    const ContactPtr chosen = selected();
    groups_ = {};
    places_.clear();
    for (const ContactPtr& contact : contacts) {
        Place place = placeFor(*contact);
        groups_[place.group].push_back({place.key, contact});
        places_.emplace(contact.get(), std::move(place));
    }
    std::vector<std::u16string> rows;
    int chosen_row = -1;
    for (const Group group : {here, away}) {
        Entries& entries = groups_[group];
        if (entries.empty()) {
            continue;
        }
        std::sort(entries.begin(), entries.end(), before);
        rows.push_back(heading(group));
        for (const Entry& entry : entries) {
            if (entry.contact == chosen) {
                chosen_row = static_cast<int>(rows.size());
            }
            rows.push_back(entry.contact->friendly);
        }
    }
    setItems(std::move(rows));
    setListIndex(chosen_row);
}

void ContactList::add(const ContactPtr& contact) {
    Place place = placeFor(*contact);
    const Group group = place.group;
    const Entry entry{place.key, contact};
    if (!places_.emplace(contact.get(), std::move(place)).second) {
        return;
    }
    const std::ptrdiff_t position = positionOf(group, entry);
    Entries& entries = groups_[group];
    entries.insert(entries.begin() + position, entry);
    if (entries.size() == 1) {
        InsertItem(headingRow(group), heading(group));
    } else {
        RedrawItem(headingRow(group));
    }
    InsertItem(headingRow(group) + 1 + static_cast<int>(position), contact->friendly);
}

void ContactList::remove(const ContactPtr& contact) {
    const auto place = places_.find(contact.get());
    if (place == places_.end()) {
        return;
    }
    const Group group = place->second.group;
    const std::ptrdiff_t position = positionOf(group, {place->second.key, contact});
    const int heading_row = headingRow(group);
    places_.erase(place);
    Entries& entries = groups_[group];
    entries.erase(entries.begin() + position);
    RemoveItem(heading_row + 1 + static_cast<int>(position));
    if (entries.empty()) {
        RemoveItem(heading_row);
    } else {
        RedrawItem(heading_row);
    }
}

void ContactList::update(const ContactPtr& contact) {
    const auto found = places_.find(contact.get());
    if (found == places_.end()) {
        return;
    }
    const Place place = placeFor(*contact);
    if (place.group == found->second.group && place.key == found->second.key) {
        const std::ptrdiff_t position = positionOf(place.group, {place.key, contact});
        return setItem(headingRow(place.group) + 1 + static_cast<int>(position), contact->friendly);
    }
    const bool was_selected = selected() == contact;
    remove(contact);
    add(contact);
    if (was_selected) {
        setListIndex(headingRow(place.group) + 1 + static_cast<int>(positionOf(place.group, {place.key, contact})));
    }
}

ContactPtr ContactList::contactAt(int row) const {
    for (const Group group : {here, away}) {
        const int first = headingRow(group) + 1;
        const Entries& entries = groups_[group];
        if (row >= first && row - first < static_cast<int>(entries.size())) {
            return entries[static_cast<std::size_t>(row - first)].contact;
        }
    }
    return nullptr;
}

bool ContactList::step(int rows) {
    int row = ListIndex() + rows;
    while (row >= 0 && row < ListCount() && !contactAt(row)) {
        row += rows;
    }
    if (!contactAt(row)) {
        return false;
    }
    setListIndex(row);
    return true;
}

void ContactList::fitRows() {
    setItemHeight(std::max(least_row_height, 2 * sizeFor(u"X").height + 120));
}

std::u16string ContactList::counted(int heading_row) const {
    const std::size_t number = groups_[heading_row == headingRow(here) && !groups_[here].empty() ? here : away].size();
    return List(heading_row) + u" (" + murmelix::toText(static_cast<long long>(number)) + u")";
}

void ContactList::draw(ui::Surface& surface, int row, const Looks& looks) const {
    const ContactPtr contact = contactAt(row);
    const int width = surface.Width(), height = surface.Height(), line = surface.TextHeight();
    const bool selected = contact && looks.selected;
    surface.Cls(colour::row(selected));
    const int left = px(14);
    if (!contact) {
        surface.setFontBold(true);
        surface.PrintIn({left, height - line - px(6), width - left, line}, counted(row), colour::soft_text);
        surface.setFontBold(false);
    } else {
        const int size = px(28), text_left = left + size + px(9);
        drawAvatar(surface, {left, (height - size) / 2, size, size}, *contact);
        const ui::Rect name{text_left, (height - 2 * line) / 2, width - text_left - px(4), line};
        surface.PrintIn(name, contact->friendly, colour::rowText(selected));
        surface.PrintIn({name.left, name.top + line, name.width, line}, nameOf(contact->status),
                        colour::rowSoftText(selected));
    }
    if (contact && looks.focused) { // a heading is none to go on with
        surface.FocusRect({0, 0, width, height});
    }
}

} // namespace messenger_client
