// Which lines are read, and when. Times are milliseconds since any moment; one before the last counts as the last.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "companions/messenger/reading/rules.h"

namespace messenger_client::reading {

// How fast a voice at its usual speed reads: 170 words a minute of five letters and a blank.
inline constexpr std::size_t units_a_second = 17;
// Between two lines: the character turns, the balloon opens and closes.
inline constexpr long long pause_between = 900;
// An emoticon is a movement, a sound or both.
inline constexpr long long emoticon_time = 1'200;
// Milliseconds that saying a text takes.
long long speechTime(std::u16string_view text);

// Lines wait until the one before is spoken, so that one that a moderator deletes meanwhile is never told. More than
// can be said in `patience` do not wait: the newest win, and people who have not been read for long. Those that stay
// are read in the order in which they came.
class Queue {
  public:
    struct Waiting {
        Line line;
        std::u16string text; // what is said
    };
    struct PassedOver {
        unsigned long long number;
        Unread why;
        bool operator==(const PassedOver&) const = default;
    };

    // Milliseconds that a line waits at most, if all goes as estimated: an answer to what nobody remembers is no use.
    static constexpr long long patience = 30'000;
    // How much newer a line counts whose writer has not been read for that long: so that one who writes much does not
    // keep others out.
    static constexpr long long most_favour = 20'000;
    // Of one person: who writes in short lines is heard whole, who floods is not.
    static constexpr std::size_t most_of_one = 4;
    // People whose last reading is known: more than are read in an hour.
    static constexpr std::size_t most_people = 4'096;
    // Lines that are told to have been passed over, the newest: more than a window keeps.
    static constexpr std::size_t most_passed_over = 10'000;

    explicit Queue(int lines_a_minute = Rules{}.lines_a_minute) { setPace(lines_a_minute); }
    void setPace(int lines_a_minute);

    void arrived(Waiting waiting, long long now);
    // By the server's id; an empty one is nobody's.
    void deleted(std::u16string_view id);
    void deletedOf(std::u16string_view person);
    void deletedAll();
    // What waits is judged again: it stays with the text that it is given then, or is passed over.
    void judgeAgain(const std::function<Judgement(const Line& line)>& judge);

    // The line that would be read next, null where none waits.
    const Waiting* first() const { return waiting_.empty() ? nullptr : &waiting_.begin()->second.waiting; }
    // The same, which will be read next. From now on it is not passed over for a newer one.
    const Waiting* upcoming();
    // The line to be read now.
    std::optional<Waiting> next(long long now);
    // When `next` has one; nothing while none waits.
    std::optional<long long> dueAt() const;
    std::size_t waiting() const { return waiting_.size(); }
    std::size_t peopleKnown() const { return last_heard_.size(); } // whose last reading is known
    // Since the last call.
    std::vector<PassedOver> takePassedOver();

  private:
    struct Entry {
        Waiting waiting;
        long long worth;  // the time that it counts as having come
        long long speech; // milliseconds
    };
    using Order = unsigned long long; // in which they came
    using Entries = std::map<Order, Entry>;

    void drop(Entries::iterator entry, Unread why);
    long long favour(std::u16string_view person, long long now) const;
    void readNow(const Entry& entry);
    void dropTooMany();
    std::size_t mostWaiting() const;

    int lines_a_minute_ = 1;
    bool held_ = false; // the first one that waits is not passed over
    Entries waiting_;
    std::set<std::pair<long long, Order>> by_worth_;
    Order arrived_ = 0;
    long long speech_ = 0;          // of all that wait
    long long now_ = 0;             // the latest time heard
    long long spoken_at_ = 0;       // when the last line is over
    std::deque<long long> read_at_; // the last ones, as many as a minute can have
    struct Heard {
        std::u16string person;
        long long at;
    };
    std::deque<Heard> heard_; // the oldest first, also what counts no more
    std::unordered_map<std::u16string, long long> last_heard_;
    std::deque<PassedOver> passed_over_;
};

} // namespace messenger_client::reading
