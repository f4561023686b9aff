#include "companions/messenger/chat/chat_log.h"

#include <algorithm>

#include "common/text.h"

namespace messenger_client {

namespace {

constexpr int minutes_a_day = 24 * 60;

using View = std::u16string_view;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// Cuts "[HH:MM] " from the front.
std::optional<int> takeTime(View& line) {
    if (line.size() < 8 || line[0] != u'[' || !isDigit(line[1]) || !isDigit(line[2]) || line[3] != u':' ||
        !isDigit(line[4]) || !isDigit(line[5]) || line[6] != u']' || line[7] != u' ') {
        return std::nullopt;
    }
    const int hour = (line[1] - u'0') * 10 + (line[2] - u'0');
    const int minute = (line[4] - u'0') * 10 + (line[5] - u'0');
    if (hour > 23 || minute > 59) {
        return std::nullopt;
    }
    line.remove_prefix(8);
    return hour * 60 + minute;
}

// Cuts the text up to a blank from the front, and the blanks after it.
View takeWord(View& line) {
    const View word = line.substr(0, line.find(u' '));
    line.remove_prefix(word.size());
    line.remove_prefix(std::min(line.find_first_not_of(u' '), line.size()));
    return word;
}

bool takePrefix(View& line, View prefix) {
    if (!line.starts_with(prefix)) {
        return false;
    }
    line.remove_prefix(prefix.size());
    return true;
}

std::optional<LogEvent> spoken(View line) {
    if (takePrefix(line, u"<")) {
        const std::size_t end = line.find(u'>');
        if (end == View::npos || end == 0) {
            return std::nullopt;
        }
        const View nick = line.substr(0, end);
        line.remove_prefix(end + 1);
        return LogEvent{LogEvent::Kind::says, 0, std::u16string(nick), std::u16string(murmelix::trim(line))};
    }
    line.remove_prefix(std::min(line.find_first_not_of(u' '), line.size()));
    if (!takePrefix(line, u"* ")) {
        return std::nullopt;
    }
    const View nick = takeWord(line);
    if (nick.empty()) {
        return std::nullopt;
    }
    return LogEvent{LogEvent::Kind::acts, 0, std::u16string(nick), std::u16string(murmelix::trim(line))};
}

std::optional<LogEvent> notice(View line) {
    const View nick = takeWord(line);
    if (nick.empty()) {
        return std::nullopt;
    }
    const std::u16string name(nick);
    if (takePrefix(line, u"is now known as ")) {
        const View new_name = takeWord(line);
        if (new_name.empty() || !line.empty()) {
            return std::nullopt;
        }
        return LogEvent{LogEvent::Kind::renames, 0, name, std::u16string(new_name)};
    }
    if (line.starts_with(u'[')) {
        takeWord(line);
    }
    if (line.starts_with(u"has joined #")) {
        return LogEvent{LogEvent::Kind::joins, 0, name, {}};
    }
    if (line.starts_with(u"has left #") || line == u"has quit" || line.starts_with(u"has quit [") ||
        line.starts_with(u"has quit (") || line.starts_with(u"was kicked off #")) {
        return LogEvent{LogEvent::Kind::leaves, 0, name, {}};
    }
    return std::nullopt;
}

} // namespace

long long LogClock::pass(int of_day) {
    if (!now_) {
        now_ = of_day;
    }
    long long passed = of_day - *now_ % minutes_a_day;
    if (passed < -minutes_a_day / 2) {
        passed += minutes_a_day;
    }
    return *now_ += std::max(passed, 0LL);
}

std::vector<LogEvent> parseChatLog(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    const std::u16string text = murmelix::fromUtf8(bytes);
    std::vector<LogEvent> events;
    LogClock clock;
    View rest = text;
    while (!rest.empty()) {
        View line = rest.substr(0, rest.find(u'\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.ends_with(u'\r')) {
            line.remove_suffix(1);
        }

        std::optional<LogEvent> event;
        if (takePrefix(line, u"=== ")) {
            event = notice(line);
        } else if (const auto time = takeTime(line)) {
            event = spoken(line);
            if (event) {
                clock.pass(*time);
            }
        }
        if (event) {
            event->minute = clock.now().value_or(-1);
            events.push_back(std::move(*event));
        }
    }
    // What came before the first time happened at that time.
    const auto timed = std::find_if(events.begin(), events.end(), [](const LogEvent& e) { return e.minute >= 0; });
    std::for_each(events.begin(), timed,
                  [first = timed == events.end() ? 0LL : timed->minute](LogEvent& e) { e.minute = first; });
    return events;
}

} // namespace messenger_client
