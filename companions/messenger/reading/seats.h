// Who is on stage.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/reading/rules.h"

namespace messenger_client::reading {

// The sign-in names of the shared seat, and of who has none: none that a network gives anybody.
inline constexpr std::u16string_view rest_person = u"everyone@else", unknown_person = u"somebody@else";
inline constexpr std::u16string_view rest_name = u"Everyone else", unknown_name = u"Somebody";

struct Seat {
    std::u16string person; // sign-in name, or rest_person
    std::u16string name;   // of nobody else on stage, and none that is found where another's lines begin
    bool operator==(const Seat&) const = default;
};

struct SeatChange {
    enum class Kind { removed, added, renamed } kind; // `seat.name` of a renamed one is the new name
    Seat seat;
    bool operator==(const SeatChange&) const = default;
};
using SeatChanges = std::vector<SeatChange>;

// A name as a seat shows it: tidied, without the signs that emoticons are made of, of a length to be spoken; where
// nothing is left, that of the sign-in name.
std::u16string seatName(std::u16string_view name, std::u16string_view person);
inline constexpr std::size_t longest_seat_name = 40; // characters

// Who writes and has no seat takes a free one, else that of who has been silent longest and is not pinned; or, where
// the rest shares, one seat is for all who come when the others are taken.
class Seats {
  public:
    // `pinned`: sign-in names whose seats are not taken. One seat is always left for others.
    void arrange(int most, bool rest_shares, const People& pinned, SeatChanges& changes);

    // The user's, who is no contact.
    void setMyName(std::u16string_view name, SeatChanges& changes);

    // The seat from which the person's line is told, with what changes for it beforehand.
    const Seat& take(std::u16string_view person, std::u16string_view name, SeatChanges& changes);
    void left(std::u16string_view person, SeatChanges& changes);
    void renamed(std::u16string_view person, std::u16string_view name, SeatChanges& changes);
    void clear(SeatChanges& changes);

    // Whether a seat changes for the person's line that can change while others speak: it is no seat of the two who
    // have spoken last.
    bool changesUnheard(std::u16string_view person) const;

    // Null where the person has none of their own.
    const Seat* of(std::u16string_view person) const;
    // The longest name first, so that no name that another one begins with comes before it; else as they came.
    std::vector<Seat> inOrder() const;
    std::size_t count() const { return seats_.size(); }

  private:
    struct Place {
        Seat seat;
        std::u16string wanted;    // the name, which somebody else may have
        unsigned long long spoke; // a later one is greater
    };
    std::size_t find(std::u16string_view person) const;
    bool isPinned(const Place& place) const;
    // A name by which nobody's lines are taken for another's.
    std::u16string freeName(std::u16string_view wanted, std::u16string_view person) const;
    void nameAnew(Place& place, SeatChanges& changes);
    void remove(std::size_t index, SeatChanges& changes);
    Place& add(std::u16string_view person, std::u16string_view name, SeatChanges& changes);
    std::size_t silentLongest() const;
    std::size_t ownSeats() const; // how many people can have one of their own

    std::size_t most_ = most_seats;
    bool rest_shares_ = false;
    std::u16string my_name_;
    People pinned_; // one less than there are seats, at most
    std::vector<Place> seats_;
    unsigned long long turn_ = 0;
};

} // namespace messenger_client::reading
