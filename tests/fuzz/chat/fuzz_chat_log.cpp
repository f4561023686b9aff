// Any bytes as a chat log: what is read of it, and how it is replayed. The first bytes choose how many take part, how
// many messages, how fast, and in which portions time passes.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "common/text.h"
#include "companions/messenger/chat/chat_log.h"
#include "companions/messenger/chat/replay.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace messenger_client;
using Kind = LogEvent::Kind;

bool isMessage(const LogEvent& event) {
    return event.kind == Kind::says || event.kind == Kind::acts;
}

void checkEvents(const std::vector<LogEvent>& events, std::string_view bytes) {
    require(events.size() <= 1 + static_cast<std::size_t>(std::ranges::count(bytes, '\n')), "a line is one event");
    long long minute = -1;
    for (const LogEvent& event : events) {
        require(event.minute >= minute && event.minute >= (minute < 0 ? -1 : 0), "time does not go back");
        minute = event.minute;
        require(!event.nick.empty(), "somebody did it");
        require(event.nick.find(u'\n') == event.nick.npos && event.text.find(u'\n') == event.text.npos, "in one line");
        require(!isMessage(event) || murmelix::trim(event.text) == event.text, "without blanks at its ends");
        require(event.kind != Kind::renames || !event.text.empty(), "a new name is one");
        require(isMessage(event) || event.kind == Kind::renames || event.text.empty(), "coming and going has no words");
    }
}

struct Presence {
    bool here;
    std::u16string name;
    double said_at = -1;
};

void checkScript(const Script& script, const ReplayOptions& options) {
    require(script.people.size() <= options.participants, "no more take part than are wanted");
    std::set<std::u16string> names;
    std::vector<Presence> presences;
    for (const Person& person : script.people) {
        require(names.insert(person.signin).second, "each has a sign-in name of its own");
        require(std::ranges::all_of(person.signin,
                                    [](char16_t unit) {
                                        return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9') ||
                                               unit == u'.' || unit == u'-' || unit == u'_' || unit == u'@';
                                    }),
                "of plain letters");
        require(person.messages > 0, "who says nothing does not take part");
        presences.push_back({person.present, person.friendly});
    }
    std::vector<std::size_t> said(script.people.size());
    std::size_t messages = 0;
    double before = 0;
    for (const Step& step : script.steps) {
        require(step.person < script.people.size(), "somebody does it");
        require(std::isfinite(step.at) && step.at >= before, "time does not go back");
        const double longest = options.speed > 0 ? longest_gap / options.speed + shortest_farewell : 0;
        require(step.at - before <= longest + 1e-6, "nobody waits long");
        before = step.at;
        Presence& presence = presences[step.person];
        switch (step.kind) {
        case Step::Kind::joins:
            require(!presence.here, "who comes was not there");
            presence.here = true;
            break;
        case Step::Kind::leaves:
            require(presence.here, "who goes was there");
            presence.here = false;
            require(options.speed <= 0 || step.at - presence.said_at >= shortest_farewell - 1e-6 ||
                        presence.said_at < 0,
                    "and is heard before");
            break;
        case Step::Kind::renamed:
            require(!step.text.empty(), "a new name is one");
            presence.name = step.text;
            break;
        case Step::Kind::says:
            require(presence.here && !step.text.empty(), "who says something is there");
            presence.said_at = step.at;
            ++said[step.person];
            ++messages;
            break;
        }
    }
    require(messages <= options.messages, "no more is said than is wanted");
    for (std::size_t person = 0; person < said.size(); ++person) {
        require(said[person] == script.people[person].messages ||
                    (messages == options.messages && said[person] < script.people[person].messages),
                "all else is said");
    }
}

void checkReplay(const Script& script, std::size_t most, double portion) {
    Replay replay(script.steps);
    std::size_t next = 0;
    double now = 0;
    while (!replay.done()) {
        const auto due = replay.advance(now, most);
        require(due.size() <= most, "no more at once than is wanted");
        for (const Step& step : due) {
            require(&step - due.data() >= 0 && step.at <= now, "nothing comes before its time");
            const Step& expected = script.steps[next++];
            require(step.kind == expected.kind && step.person == expected.person && step.text == expected.text,
                    "everything comes once, in its order");
        }
        if (due.empty()) {
            require(!replay.done() && replay.nextAt() > now, "what is due comes");
            now = std::max(now + portion, replay.nextAt());
        }
    }
    require(next == script.steps.size(), "everything comes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::uint8_t people = bytes.byte(), messages = bytes.byte(), speed = bytes.byte(), portions = bytes.byte();
    const std::string_view log = bytes.all();
    const std::vector<LogEvent> events = parseChatLog(log);
    checkEvents(events, log);
    ReplayOptions options;
    options.participants = people % 32;
    if (messages != 0) {
        options.messages = messages;
    }
    options.speed = speed / 16.0 - 1;
    const Script script = makeScript(events, options);
    checkScript(script, options);
    checkReplay(script, 1U + portions % 8, portions / 8.0);
    return 0;
}
