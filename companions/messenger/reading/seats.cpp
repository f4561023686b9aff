#include "companions/messenger/reading/seats.h"

#include <algorithm>

#include "common/text.h"
#include "companions/messenger/chat/contact.h"
#include "companions/messenger/reading/characters.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;
using murmelix::LetterCase;
using murmelix::npos;
using murmelix::sameText;

// A name is found at the beginning of a line with its emoticons blanked, and one that is nothing but emoticons would be
// found everywhere; that of nobody in particular would be a lie.
constexpr View signs_of_emoticons = u"(:;";

// What a message's first line has behind its writer's name.
constexpr View says = u" says:";

// Whether a line of `writer` is taken for one of `name`, which is looked for before: at its first or second character.
bool isFoundBefore(View writer, View name) {
    return murmelix::find(std::u16string(writer).append(says), name, 0, LetterCase::ignored) <= 1;
}

std::u16string harmless(View name) {
    std::u16string plain = tidied(name.substr(0, longest_name));
    std::erase_if(plain, [](char16_t unit) { return signs_of_emoticons.find(unit) != npos; });
    plain = tidied(plain);
    std::size_t end = 0;
    for (std::size_t count = 0; end < plain.size() && count < longest_seat_name; ++count) {
        end = clusterEnd(plain, end);
    }
    return std::u16string(murmelix::trim(View(plain).substr(0, end)));
}

} // namespace

std::u16string seatName(std::u16string_view name, std::u16string_view person) {
    std::u16string own = harmless(name);
    if (own.empty()) {
        own = harmless(shortName(person));
    }
    return own.empty() ? std::u16string(unknown_name) : own;
}

std::size_t Seats::find(std::u16string_view person) const {
    const auto found = std::ranges::find_if(
        seats_, [&](const Place& place) { return sameText(place.seat.person, person, LetterCase::ignored); });
    return static_cast<std::size_t>(found - seats_.begin());
}

const Seat* Seats::of(std::u16string_view person) const {
    const std::size_t index = find(person);
    return index < seats_.size() ? &seats_[index].seat : nullptr;
}

bool Seats::isPinned(const Place& place) const {
    return isListed(pinned_, place.seat.person);
}

std::size_t Seats::ownSeats() const {
    return rest_shares_ ? most_ - 1 : most_;
}

std::u16string Seats::freeName(std::u16string_view wanted, std::u16string_view person) const {
    const auto taken = [&](View name) {
        return (!my_name_.empty() && isFoundBefore(my_name_, name)) ||
               std::ranges::any_of(seats_, [&](const Place& place) {
                   const View other = place.seat.name;
                   return place.seat.person != person &&
                          (name.size() < other.size() ? isFoundBefore(name, other) : isFoundBefore(other, name));
               });
    };
    std::u16string name = seatName(wanted, person);
    if (person != rest_person && sameText(name, rest_name, LetterCase::ignored)) {
        name += u" 1";
    }
    std::u16string free = name;
    for (long long number = 2; taken(free); ++number) {
        free = name + u" " + murmelix::toText(number);
    }
    return free;
}

void Seats::remove(std::size_t index, SeatChanges& changes) {
    changes.push_back({SeatChange::Kind::removed, seats_[index].seat});
    seats_.erase(seats_.begin() + static_cast<std::ptrdiff_t>(index));
}

Seats::Place& Seats::add(std::u16string_view person, std::u16string_view name, SeatChanges& changes) {
    ++turn_;
    seats_.push_back({{std::u16string(person), freeName(name, person)}, std::u16string(name), turn_});
    changes.push_back({SeatChange::Kind::added, seats_.back().seat});
    return seats_.back();
}

// Among those that can be taken, of which there always is one: fewer are pinned than there are seats.
std::size_t Seats::silentLongest() const {
    std::size_t longest = seats_.size();
    for (std::size_t index = 0; index < seats_.size(); ++index) {
        const Place& place = seats_[index];
        if (!isPinned(place) && place.seat.person != rest_person &&
            (longest == seats_.size() || place.spoke < seats_[longest].spoke)) {
            longest = index;
        }
    }
    return longest;
}

void Seats::arrange(int most, bool rest_shares, const People& pinned, SeatChanges& changes) {
    most_ = static_cast<std::size_t>(std::clamp(most, 1, most_seats));
    rest_shares_ = rest_shares;
    pinned_.clear();
    for (const ListedPerson& person : pinned) {
        if (pinned_.size() + 1 < most_) {
            pinned_.push_back(person);
        }
    }
    const std::size_t rest = find(rest_person);
    if (!rest_shares_ && rest < seats_.size()) {
        remove(rest, changes);
    }
    const auto own = [&] { return seats_.size() - (of(rest_person) ? 1 : 0); };
    while (own() > ownSeats()) {
        remove(silentLongest(), changes);
    }
}

const Seat& Seats::take(std::u16string_view person, std::u16string_view name, SeatChanges& changes) {
    std::size_t index = find(person);
    if (index < seats_.size()) {
        renamed(person, name, changes);
        seats_[index].spoke = ++turn_;
        return seats_[index].seat;
    }
    const std::size_t own = seats_.size() - (of(rest_person) ? 1 : 0);
    if (own < ownSeats()) {
        return add(person, name, changes).seat;
    }
    const bool pinned = isListed(pinned_, person);
    const std::size_t other = silentLongest();
    if (other < seats_.size() && (!rest_shares_ || pinned)) {
        remove(other, changes);
        return add(person, name, changes).seat;
    }
    index = find(rest_person);
    if (index == seats_.size()) {
        return add(rest_person, rest_name, changes).seat;
    }
    seats_[index].spoke = ++turn_;
    return seats_[index].seat;
}

bool Seats::changesUnheard(std::u16string_view person) const {
    if (of(person)) {
        return false;
    }
    const bool shared = of(rest_person) != nullptr;
    if (seats_.size() - (shared ? 1 : 0) < ownSeats()) {
        return true;
    }
    const std::size_t other = silentLongest();
    if (other == seats_.size() || (rest_shares_ && !isListed(pinned_, person))) {
        return !shared;
    }
    return std::ranges::count_if(seats_, [&](const Place& place) { return place.spoke > seats_[other].spoke; }) >= 2;
}

void Seats::left(std::u16string_view person, SeatChanges& changes) {
    const std::size_t index = find(person);
    if (index < seats_.size() && person != rest_person) {
        remove(index, changes);
    }
}

void Seats::renamed(std::u16string_view person, std::u16string_view name, SeatChanges& changes) {
    const std::size_t index = find(person);
    if (index == seats_.size() || seats_[index].wanted == name || person == rest_person) {
        return;
    }
    seats_[index].wanted = name;
    nameAnew(seats_[index], changes);
}

void Seats::nameAnew(Place& place, SeatChanges& changes) {
    std::u16string free =
        place.seat.person == rest_person ? place.seat.name : freeName(place.wanted, place.seat.person);
    if (free != place.seat.name) {
        place.seat.name = std::move(free);
        changes.push_back({SeatChange::Kind::renamed, place.seat});
    }
}

void Seats::setMyName(std::u16string_view name, SeatChanges& changes) {
    my_name_ = name;
    for (Place& place : seats_) {
        nameAnew(place, changes);
    }
}

void Seats::clear(SeatChanges& changes) {
    while (!seats_.empty()) {
        remove(seats_.size() - 1, changes);
    }
}

std::vector<Seat> Seats::inOrder() const {
    std::vector<Seat> seats;
    for (const Place& place : seats_) {
        seats.push_back(place.seat);
    }
    std::ranges::stable_sort(seats, [](const Seat& a, const Seat& b) { return a.name.size() > b.name.size(); });
    return seats;
}

} // namespace messenger_client::reading
