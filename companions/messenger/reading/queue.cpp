#include "companions/messenger/reading/queue.h"

#include <algorithm>
#include <iterator>

#include "companions/messenger/reading/emoji.h"

namespace messenger_client::reading {

namespace {

constexpr long long minute = 60'000;

} // namespace

long long speechTime(std::u16string_view text) {
    return static_cast<long long>(text.size()) * 1000 / static_cast<long long>(units_a_second) +
           (hasEmoticon(text) ? emoticon_time : 0);
}

void Queue::setPace(int lines_a_minute) {
    lines_a_minute_ = std::clamp(lines_a_minute, least_lines_a_minute, most_lines_a_minute);
    dropTooMany();
}

// What can be read while the patience lasts, and a line after the one that is held.
std::size_t Queue::mostWaiting() const {
    return std::max<std::size_t>(static_cast<std::size_t>(lines_a_minute_ * patience / minute), 2);
}

long long Queue::favour(std::u16string_view person, long long now) const {
    const auto heard = last_heard_.find(std::u16string(person));
    return heard == last_heard_.end() ? most_favour : std::clamp(now - heard->second, 0LL, most_favour);
}

void Queue::arrived(Waiting waiting, long long now) {
    now_ = std::max(now_, now);
    const long long speech = speechTime(waiting.text) + pause_between;
    const long long worth = now_ + favour(waiting.line.person, now_);
    std::size_t of_one = 0;
    auto oldest = waiting_.end();
    for (auto entry = waiting_.begin(); entry != waiting_.end(); ++entry) {
        if (entry->second.waiting.line.person == waiting.line.person) {
            const bool kept = held_ && entry == waiting_.begin();
            oldest = oldest == waiting_.end() && !kept ? entry : oldest;
            ++of_one;
        }
    }
    if (of_one >= most_of_one && oldest != waiting_.end()) {
        drop(oldest, Unread::passed_over);
    }
    const Order order = ++arrived_;
    waiting_.emplace(order, Entry{std::move(waiting), worth, speech});
    by_worth_.insert({worth, order});
    speech_ += speech;
    dropTooMany();
}

void Queue::dropTooMany() {
    while (waiting_.size() > 1 && (waiting_.size() > mostWaiting() || (waiting_.size() > 2 && speech_ > patience))) {
        auto least = by_worth_.begin();
        if (held_ && least->second == waiting_.begin()->first) {
            ++least;
        }
        drop(waiting_.find(least->second), Unread::passed_over);
    }
}

void Queue::drop(Entries::iterator entry, Unread why) {
    held_ = held_ && entry != waiting_.begin();
    passed_over_.push_back({entry->second.waiting.line.number, why});
    if (passed_over_.size() > most_passed_over) {
        passed_over_.pop_front();
    }
    speech_ -= entry->second.speech;
    by_worth_.erase({entry->second.worth, entry->first});
    waiting_.erase(entry);
}

void Queue::deleted(std::u16string_view id) {
    if (id.empty()) {
        return;
    }
    const auto found = std::ranges::find_if(
        waiting_, [&](const Entries::value_type& entry) { return entry.second.waiting.line.id == id; });
    if (found != waiting_.end()) {
        drop(found, Unread::deleted);
    }
}

void Queue::deletedOf(std::u16string_view person) {
    for (auto entry = waiting_.begin(); entry != waiting_.end();) {
        const auto next = std::next(entry);
        if (entry->second.waiting.line.person == person) {
            drop(entry, Unread::deleted);
        }
        entry = next;
    }
}

void Queue::deletedAll() {
    while (!waiting_.empty()) {
        drop(waiting_.begin(), Unread::deleted);
    }
}

void Queue::judgeAgain(const std::function<Judgement(const Line& line)>& judge) {
    for (auto entry = waiting_.begin(); entry != waiting_.end();) {
        const auto next = std::next(entry);
        Judgement judgement = judge(entry->second.waiting.line);
        if (judgement.unread) {
            drop(entry, *judgement.unread);
        } else {
            const long long speech = speechTime(judgement.text) + pause_between;
            speech_ += speech - entry->second.speech;
            entry->second.speech = speech;
            entry->second.waiting.text = std::move(judgement.text);
        }
        entry = next;
    }
    dropTooMany();
}

const Queue::Waiting* Queue::upcoming() {
    held_ = !waiting_.empty();
    return held_ ? &waiting_.begin()->second.waiting : nullptr;
}

std::optional<long long> Queue::dueAt() const {
    if (waiting_.empty()) {
        return std::nullopt;
    }
    long long due = spoken_at_;
    if (read_at_.size() >= static_cast<std::size_t>(lines_a_minute_)) {
        due = std::max(due, read_at_[read_at_.size() - static_cast<std::size_t>(lines_a_minute_)] + minute);
    }
    return due;
}

std::optional<Queue::Waiting> Queue::next(long long now) {
    now_ = std::max(now_, now);
    const auto due = dueAt();
    if (!due || *due > now_) {
        return std::nullopt;
    }
    const auto first = waiting_.begin();
    readNow(first->second);
    Waiting waiting = std::move(first->second.waiting);
    speech_ -= first->second.speech;
    by_worth_.erase({first->second.worth, first->first});
    waiting_.erase(first);
    held_ = false;
    return waiting;
}

void Queue::readNow(const Entry& entry) {
    spoken_at_ = now_ + entry.speech;
    read_at_.push_back(now_);
    if (read_at_.size() > most_lines_a_minute) {
        read_at_.pop_front();
    }
    const std::u16string& person = entry.waiting.line.person;
    last_heard_[person] = now_;
    heard_.push_back({person, now_});
    if (heard_.size() > most_people) {
        const auto known = last_heard_.find(heard_.front().person);
        if (known != last_heard_.end() && known->second == heard_.front().at) {
            last_heard_.erase(known);
        }
        heard_.pop_front();
    }
}

std::vector<Queue::PassedOver> Queue::takePassedOver() {
    std::vector<PassedOver> taken(passed_over_.begin(), passed_over_.end());
    passed_over_.clear();
    return taken;
}

} // namespace messenger_client::reading
