#include "companions/messenger/reading/reader.h"

#include <algorithm>
#include <utility>

#include "companions/messenger/reading/characters.h"

namespace messenger_client::reading {

namespace {

std::u16string told(const Queue::Waiting& line, const Rules& rules, const Seat* seat, bool writer_changed) {
    const std::u16string name = seatName(line.line.name, line.line.person);
    if (line.line.kind == Line::Kind::action) {
        return name + u" " + line.text;
    }
    const bool shared = seat && seat->person == rest_person;
    return shared || (rules.name_first && writer_changed) ? name + u": " + line.text : line.text;
}

} // namespace

Reader::Reader(Rules rules, Surroundings surroundings) : surroundings_(std::move(surroundings)) {
    setMyName(surroundings_.my_name);
    setRules(std::move(rules));
}

void Reader::setMyName(std::u16string_view name) {
    surroundings_.my_name = name;
    seats_.setMyName(name, changes_);
}

void Reader::setRules(Rules rules) {
    rules_ = std::move(rules);
    const int seats =
        rules_.seats == as_many_as_characters ? std::clamp(surroundings_.characters, 1, most_seats) : rules_.seats;
    seats_.arrange(seats, rules_.rest_shares, rules_.pinned_people, changes_);
    queue_.setPace(rules_.lines_a_minute);
    queue_.judgeAgain([this](const Line& line) { return judge(line, rules_, surroundings_); });
}

std::optional<Unread> Reader::arrived(const Line& line, long long now) {
    Judgement judgement = judge(line, rules_, surroundings_);
    if (!judgement.unread && !rules_.repeated) {
        judgement.unread = repeats_.look(line.number, line.person, judgement.text, now);
    }
    if (!judgement.unread) {
        Queue::Waiting waiting{line, std::move(judgement.text)};
        if (waiting.line.person.empty()) {
            waiting.line.person = unknown_person;
            waiting.line.name = unknown_name;
        }
        queue_.arrived(std::move(waiting), now);
        forgetPassedOver();
    }
    return judgement.unread;
}

std::optional<long long> Reader::dueAt() const {
    if (!changes_.empty()) {
        return 0;
    }
    const auto due = seatDueAt();
    return due ? std::optional(std::max(*due, settled_at_)) : due;
}

std::optional<long long> Reader::seatDueAt() const {
    const auto due = queue_.dueAt();
    if (!due) {
        return due;
    }
    const Line& line = queue_.first()->line;
    return *due - (!line.mine && seats_.changesUnheard(line.person) ? coming : 0);
}

std::optional<Reading> Reader::next(long long now) {
    const auto due = seatDueAt();
    if (due && *due <= now) {
        const Queue::Waiting* upcoming = queue_.upcoming();
        if (!upcoming->line.mine) {
            seats_.take(upcoming->line.person, upcoming->line.name, changes_);
        }
    }
    Reading reading;
    if (!changes_.empty()) {
        reading.seats = std::exchange(changes_, {});
        settled_at_ = now + settling;
        return reading;
    }
    auto line = now >= settled_at_ ? queue_.next(now) : std::nullopt;
    if (!line) {
        return std::nullopt;
    }
    reading.has_line = true;
    reading.number = line->line.number;
    reading.mine = line->line.mine;
    const Seat* seat = nullptr;
    if (!reading.mine) {
        seat = &seats_.take(line->line.person, line->line.name, changes_);
        reading.speaker = *seat;
    }
    reading.text = told(*line, rules_, seat, line->line.person != last_writer_);
    last_writer_ = line->line.person;
    return reading;
}

// So that who says the same next is heard.
void Reader::forgetPassedOver() {
    for (const Queue::PassedOver& line : queue_.takePassedOver()) {
        repeats_.forget(line.number);
        passed_over_.push_back(line);
        if (passed_over_.size() > Queue::most_passed_over) {
            passed_over_.pop_front();
        }
    }
}

std::vector<Queue::PassedOver> Reader::takePassedOver() {
    forgetPassedOver();
    std::vector<Queue::PassedOver> taken(passed_over_.begin(), passed_over_.end());
    passed_over_.clear();
    return taken;
}

std::vector<Previewed> preview(const std::vector<Line>& lines, const Rules& rules, const Surroundings& surroundings) {
    std::vector<Previewed> result(lines.size());
    Reader reader(rules, surroundings);
    const auto of = [&](unsigned long long number) -> Previewed& { return result[static_cast<std::size_t>(number)]; };
    const auto takePassedOver = [&] {
        for (const Queue::PassedOver& line : reader.takePassedOver()) {
            of(line.number).unread = line.why;
        }
    };
    long long now = 0;
    const auto readUntil = [&](std::optional<long long> end) {
        for (auto due = reader.dueAt(); due && (!end || *due <= *end); due = reader.dueAt()) {
            now = std::max(now, *due);
            const auto reading = reader.next(now);
            if (reading && reading->has_line) {
                of(reading->number).text = reading->text;
            }
        }
    };
    for (std::size_t index = 0; index < lines.size(); ++index) {
        readUntil(lines[index].time);
        now = std::max(now, lines[index].time);
        Line line = lines[index];
        line.number = index;
        result[index].unread = reader.arrived(line, now);
        takePassedOver();
    }
    readUntil(std::nullopt);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (result[index].unread) {
            result[index].text = tidied(lines[index].text);
        }
    }
    return result;
}

} // namespace messenger_client::reading
