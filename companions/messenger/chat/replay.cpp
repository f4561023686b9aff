#include "companions/messenger/chat/replay.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

#include "common/text.h"

namespace messenger_client {

namespace {

using Kind = LogEvent::Kind;

bool isMessage(const LogEvent& event) {
    return event.kind == Kind::says || event.kind == Kind::acts;
}

// A log with people in place of names.
struct Cast {
    struct Member {
        std::u16string nick; // the first one
        bool present;
        std::size_t messages = 0;
    };
    std::vector<Member> members;
    std::vector<std::size_t> of_event;
    // Who bore the new name of a rename before and must have gone without a line; by event.
    std::map<std::size_t, std::size_t> displaced;
};

Cast castOf(const std::vector<LogEvent>& log) {
    Cast cast;
    std::map<std::u16string, std::size_t> by_nick;
    cast.of_event.reserve(log.size());
    for (const LogEvent& event : log) {
        const auto [known, is_new] = by_nick.try_emplace(event.nick, cast.members.size());
        const std::size_t person = known->second;
        if (is_new) {
            cast.members.push_back({event.nick, event.kind != Kind::joins});
        }
        if (event.kind == Kind::renames) {
            by_nick.erase(known);
            const auto [bearer, is_free] = by_nick.try_emplace(event.text, person);
            if (!is_free) {
                cast.displaced[cast.of_event.size()] = std::exchange(bearer->second, person);
            }
        } else if (isMessage(event) && !event.text.empty()) {
            ++cast.members[person].messages;
        }
        cast.of_event.push_back(person);
    }
    return cast;
}

std::vector<std::size_t> mostFrequent(const Cast& cast, std::size_t count) {
    std::vector<std::size_t> chosen(cast.members.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    std::erase_if(chosen, [&](std::size_t person) { return cast.members[person].messages == 0; });
    std::stable_sort(chosen.begin(), chosen.end(),
                     [&](std::size_t a, std::size_t b) { return cast.members[a].messages > cast.members[b].messages; });
    if (chosen.size() > count) {
        chosen.resize(count);
    }
    std::sort(chosen.begin(), chosen.end());
    return chosen;
}

// Sign-in names made of nicks: letters, digits, dots and dashes of them, each unlike all before it.
class SigninNames {
  public:
    std::u16string of(const std::u16string& nick);

  private:
    std::set<std::u16string> taken_;
    std::map<std::u16string, long long> next_; // number for another one of a base; all below it are taken
};

std::u16string SigninNames::of(const std::u16string& nick) {
    constexpr std::size_t longest = 64;
    std::u16string base;
    for (const char16_t unit : nick.substr(0, longest)) {
        const bool plain = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
                           (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-';
        base += plain ? murmelix::toLower(unit) : u'_';
    }
    long long& number = next_.try_emplace(base, 1).first->second;
    std::u16string name;
    do {
        name = number == 1 ? base : base + murmelix::toText(number);
        ++number;
    } while (!taken_.insert(name).second);
    return name + u"@messenger.example";
}

// Seconds of every event in the log: messages of a minute spread over it, other events with the message before.
std::vector<double> secondsOf(const std::vector<LogEvent>& log) {
    std::map<long long, long long> messages_in;
    for (const LogEvent& event : log) {
        messages_in[event.minute] += isMessage(event) ? 1 : 0;
    }
    std::vector<double> seconds;
    seconds.reserve(log.size());
    double now = 0;
    long long minute = -1;
    long long message = 0;
    for (const LogEvent& event : log) {
        if (event.minute != minute) {
            minute = event.minute;
            message = 0;
            now = 60.0 * static_cast<double>(minute);
        }
        if (isMessage(event)) {
            now = 60.0 * (static_cast<double>(minute) +
                          static_cast<double>(message++) / static_cast<double>(messages_in[minute]));
        }
        seconds.push_back(now);
    }
    return seconds;
}

// The names and presences of the chosen people while the log goes by.
class Writer {
  public:
    Writer(const Cast& cast, const std::vector<std::size_t>& chosen) {
        SigninNames names;
        for (const std::size_t member : chosen) {
            const Cast::Member& known = cast.members[member];
            index_[member] = script.people.size();
            script.people.push_back({names.of(known.nick), known.nick, known.present, known.messages});
        }
        now_.assign(script.people.begin(), script.people.end());
    }

    void add(const LogEvent& event, std::size_t member, double at) {
        const auto found = index_.find(member);
        if (found == index_.end()) {
            return;
        }
        Person& person = now_[found->second];
        const auto step = [&](Step::Kind kind, std::u16string text = {}) {
            script.steps.push_back({at, kind, found->second, std::move(text)});
        };
        switch (event.kind) {
        case Kind::joins:
            if (!std::exchange(person.present, true)) {
                step(Step::Kind::joins);
            }
            break;
        case Kind::leaves:
            if (std::exchange(person.present, false)) {
                step(Step::Kind::leaves);
            }
            break;
        case Kind::renames:
            person.friendly = event.text;
            step(Step::Kind::renamed, event.text);
            break;
        case Kind::says:
        case Kind::acts:
            if (event.text.empty()) {
                break;
            }
            if (!std::exchange(person.present, true)) {
                step(Step::Kind::joins);
            }
            step(Step::Kind::says, event.kind == Kind::says ? event.text : u"* " + person.friendly + u" " + event.text);
            ++messages;
            break;
        }
    }

    Script script;
    std::size_t messages = 0;

  private:
    std::map<std::size_t, std::size_t> index_; // cast member to person
    std::vector<Person> now_;
};

} // namespace

Script makeScript(const std::vector<LogEvent>& log, const ReplayOptions& options) {
    const Cast cast = castOf(log);
    const std::vector<double> seconds = secondsOf(log);
    Writer writer(cast, mostFrequent(cast, options.participants));
    for (std::size_t i = 0; i < log.size() && writer.messages < options.messages; ++i) {
        if (const auto gone = cast.displaced.find(i); gone != cast.displaced.end()) {
            writer.add({Kind::leaves, log[i].minute, log[i].text, {}}, gone->second, seconds[i]);
        }
        writer.add(log[i], cast.of_event[i], seconds[i]);
    }

    std::optional<double> before;
    double at = 0;
    double latest = 0;
    std::map<std::size_t, double> said_at;
    for (Step& step : writer.script.steps) {
        if (options.speed > 0) {
            at += std::min(step.at - before.value_or(step.at), longest_gap) / options.speed;
        }
        before = step.at;
        step.at = std::max(at, latest);
        const auto said = said_at.find(step.person);
        if (step.kind == Step::Kind::says) {
            said_at[step.person] = step.at;
        } else if (said != said_at.end() && options.speed > 0) {
            step.at = std::max(step.at, said->second + shortest_farewell);
        }
        latest = step.at;
    }
    return std::move(writer.script);
}

std::span<const Step> Replay::advance(double seconds, std::size_t most) {
    const std::size_t first = next_;
    while (next_ < steps_.size() && next_ - first < most && steps_[next_].at <= seconds) {
        ++next_;
    }
    return std::span<const Step>(steps_).subspan(first, next_ - first);
}

} // namespace messenger_client
