// The reading of one conversation: lines go in as they arrive, and come out when it is time to say them.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/reading/queue.h"
#include "companions/messenger/reading/repeats.h"
#include "companions/messenger/reading/rules.h"
#include "companions/messenger/reading/seats.h"

namespace messenger_client::reading {

// What is to be told next. Where seats change, this comes first and alone, without a line: the line follows when the
// characters had time to come.
struct Reading {
    SeatChanges seats;
    bool has_line = false;
    unsigned long long number = 0; // the line's
    bool mine = false;             // the user tells it, who has no seat
    Seat speaker;                  // who tells it, where it is not the user
    std::u16string text;           // one line, with the writer's name before it where it belongs there
};

class Reader {
  public:
    // Milliseconds between a change of seats and the line that it is for: a character is loaded meanwhile.
    static constexpr long long settling = 400;
    // How long before its line such a change is told, in milliseconds, where others speak meanwhile: a character takes
    // two to five seconds to come.
    static constexpr long long coming = 4'000;

    explicit Reader(Rules rules = {}, Surroundings surroundings = {});

    const Rules& rules() const { return rules_; }
    // What waits is judged anew.
    void setRules(Rules rules);
    void setMyName(std::u16string_view name);

    // Why it is not read; nothing where it waits. A line without a writer is told by
    // "Somebody", who takes a seat for it.
    std::optional<Unread> arrived(const Line& line, long long now);
    void deleted(std::u16string_view id) { queue_.deleted(id); }
    void deletedOf(std::u16string_view person) { queue_.deletedOf(person); }
    void deletedAll() { queue_.deletedAll(); }

    void left(std::u16string_view person) { seats_.left(person, changes_); }
    void renamed(std::u16string_view person, std::u16string_view name) { seats_.renamed(person, name, changes_); }
    // Gives somebody a seat before the first line, as a private talk does.
    void seat(std::u16string_view person, std::u16string_view name) { seats_.take(person, name, changes_); }

    std::optional<Reading> next(long long now);
    // When `next` has something; nothing while there is nothing to come.
    std::optional<long long> dueAt() const;
    // Lines that waited and are not read, since the last call.
    std::vector<Queue::PassedOver> takePassedOver();
    const Seats& seats() const { return seats_; }

  private:
    void forgetPassedOver();
    // When a seat is to change for the line that is next, or that line to be read.
    std::optional<long long> seatDueAt() const;

    Rules rules_;
    Surroundings surroundings_;
    Repeats repeats_;
    Queue queue_;
    Seats seats_;
    SeatChanges changes_; // not told yet
    std::deque<Queue::PassedOver> passed_over_;
    std::u16string last_writer_;
    long long settled_at_ = 0;
};

// What the rules make of lines that have come, in order: what is read of each, or why it is not.
struct Previewed {
    std::u16string text; // with the name where it is told; of an unread one as it was written, on one line
    std::optional<Unread> unread;
    bool operator==(const Previewed&) const = default;
};
std::vector<Previewed> preview(const std::vector<Line>& lines, const Rules& rules,
                               const Surroundings& surroundings = {});

} // namespace messenger_client::reading
