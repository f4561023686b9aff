// What the user sends, no faster than servers allow.
#pragma once

#include <cstddef>
#include <deque>
#include <limits>
#include <optional>
#include <string>

namespace messenger_client::irc {

// Lines that wait to be sent: a minute of them. More are refused.
inline constexpr std::size_t most_unsent = 100;

// A burst of so many, then one in every interval (milliseconds).
class Pace {
  public:
    Pace(int burst, long long interval) : lead_((burst - 1) * interval), interval_(interval) {}
    // When the next one may go.
    long long due() const { return free_ - lead_; }
    // False where it is too early.
    bool take(long long now) {
        if (now < due()) {
            return false;
        }
        free_ = (now > free_ ? now : free_) + interval_;
        return true;
    }

  private:
    long long lead_, interval_;
    // When the whole burst is there again: long ago, whatever the moment is from which time is counted.
    long long free_ = std::numeric_limits<long long>::min() / 2;
};

// What the user sees of an own line that its server does not send back.
struct Echo {
    std::string target;
    std::u16string text;
    bool action;
};

struct OutgoingLine {
    std::string bytes;
    std::optional<Echo> echo;
};

class Outbox {
  public:
    explicit Outbox(Pace pace) : pace_(pace) {}
    std::size_t room() const { return most_unsent - lines_.size(); }
    std::size_t size() const { return lines_.size(); }
    // There has to be room.
    void add(OutgoingLine line) { lines_.push_back(std::move(line)); }
    std::optional<OutgoingLine> next(long long now);
    // When the next line goes; nothing where none waits.
    std::optional<long long> due() const { return lines_.empty() ? std::nullopt : std::optional(pace_.due()); }
    void clear() { lines_.clear(); }

  private:
    Pace pace_;
    std::deque<OutgoingLine> lines_;
};

} // namespace messenger_client::irc
