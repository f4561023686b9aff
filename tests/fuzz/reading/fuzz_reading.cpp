// Any bytes as a chat: the first ones choose options and how the others become text, whose lines are rules and what
// people say.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "common/text.h"
#include "companions/messenger/reading/characters.h"
#include "companions/messenger/reading/reader.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace messenger_client::reading;
using View = std::u16string_view;

// What History would be broken by, and what nobody should be made to see.
void requirePlain(View text, std::size_t longest) {
    require(text.size() <= longest, "no text is longer than is said");
    for (const char16_t unit : text) {
        require(unit >= u' ' && !(unit >= 0x7F && unit < 0xA0) && unit != 0x2028 && unit != 0x2029,
                "a text is one line without control characters");
        require(unit != 0x202E && unit != 0x2067 && unit != 0x200F, "nothing turns its direction");
    }
    require(murmelix::fromUtf8(murmelix::toUtf8(text)) == text, "it has whole characters");
    require(murmelix::trim(text) == text, "it has no blanks at its ends");
}

std::vector<std::u16string> linesIn(View text) {
    std::vector<std::u16string> lines;
    for (std::size_t at = 0; at < text.size() && lines.size() < 64;) {
        const std::size_t end = std::min(text.find(u'\n', at), text.size());
        lines.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

void checkEmoji(View text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t emoji = emojiAt(text, at);
        require(emoji <= text.size() - at, "an emoji lies in the text");
        if (emoji > 0) {
            const View whole = text.substr(at, emoji);
            require(emoticonOf(whole).empty() || nameOf(whole).empty(), "it is acted or named");
            require(emoticonOf(whole).empty() || hasEmoticon(emoticonOf(whole)), "what is acted is an emoticon");
            require(nameOf(whole).size() + 3 <= longest_emoji_name, "no name is long");
        }
        const std::size_t end = clusterEnd(text, at);
        require(end > at && end <= text.size(), "a character lies in the text");
        at += emoji > 0 ? emoji : characterAt(text, at).units;
    }
    for (const OtherEmoji others : {OtherEmoji::named, OtherEmoji::left_out}) {
        require(withoutEmoji(text, {.others = others}).size() <= text.size() * longest_emoji_name,
                "no text grows beyond its bound");
    }
    const std::u16string once = tidied(text);
    require(tidied(once) == once, "what is tidy stays so");
}

void checkRules(const std::vector<std::u16string>& lines) {
    const Rules rules = rulesOf(lines);
    require(rulesOf(linesOf(rules)) == rules, "rules are kept as they are");
    require(rules.lines_a_minute >= least_lines_a_minute && rules.lines_a_minute <= most_lines_a_minute &&
                rules.seats >= as_many_as_characters && rules.seats <= most_seats,
            "numbers have bounds");
    require(rules.words.size() <= most_listed && rules.ignored_people.size() <= most_listed, "lists have bounds");
}

// Follows what a reader tells as a client would.
struct Listener {
    Reader reader;
    std::map<std::u16string, std::u16string> on_stage; // names by person
    std::set<unsigned long long> deleted, told;
    std::vector<long long> times;

    void listen(long long now) {
        for (const SeatChange& change : changesAt(now)) {
            requirePlain(change.seat.name, 2 * most_in_cluster * longest_seat_name);
            require(!change.seat.name.empty(), "a seat has a name");
            if (change.kind == SeatChange::Kind::removed) {
                require(on_stage.erase(change.seat.person) == 1, "who leaves was there");
                continue;
            }
            require(on_stage.contains(change.seat.person) == (change.kind == SeatChange::Kind::renamed),
                    "nobody comes twice");
            on_stage[change.seat.person] = change.seat.name;
        }
        std::set<std::u16string> names;
        for (const auto& [person, name] : on_stage) {
            require(names.insert(murmelix::toLower(name)).second, "no two have the same name");
        }
        const std::vector<Seat> order = reader.seats().inOrder();
        require(order.size() == on_stage.size(), "all changes are told");
        for (const Seat& writer : order) {
            const auto found = std::ranges::find_if(order, [&](const Seat& seat) {
                return murmelix::find(writer.name + u" says:", seat.name, 0, murmelix::LetterCase::ignored) <= 1;
            });
            require(found != order.end() && *found == writer, "nobody's lines are taken for another's");
        }
        require(static_cast<int>(on_stage.size()) <= reader.rules().seats, "the stage is not too full");
    }

    SeatChanges changesAt(long long now) {
        const auto reading = reader.next(now);
        if (!reading) {
            return {};
        }
        require(reading->has_line != !reading->seats.empty(), "there is a line, or there are changes");
        if (reading->has_line) {
            requirePlain(reading->text, 2 * longest_cleaned);
            require(!reading->text.empty(), "something is said");
            require(told.insert(reading->number).second, "nothing is said twice");
            require(!deleted.contains(reading->number), "nothing is said that was deleted");
            require(reading->mine || on_stage.contains(reading->speaker.person), "who speaks is on stage");
            times.push_back(now);
            const auto pace = static_cast<std::size_t>(reader.rules().lines_a_minute);
            require(times.size() <= pace || now - times[times.size() - 1 - pace] >= 60'000, "the pace is kept");
        }
        return reading->seats;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    const std::uint8_t choice = data[0], pace = data[1], step = data[2];
    data += 4;
    size -= 4;
    std::u16string text;
    if ((choice & 1) != 0) {
        for (std::size_t at = 0; at + 1 < size; at += 2) {
            text.push_back(static_cast<char16_t>(data[at] | data[at + 1] << 8));
        }
    } else {
        text = murmelix::fromUtf8({reinterpret_cast<const char*>(data), size});
    }
    checkEmoji(text);
    const std::vector<std::u16string> lines = linesIn(text);
    checkRules(lines);

    Listener listener;
    Rules rules = rulesOf(lines);
    rules.lines_a_minute = 1 + pace % most_lines_a_minute;
    rules.seats = 1 + choice % 6;
    rules.rest_shares = (choice & 8) != 0;
    rules.name_first = (choice & 16) != 0;
    rules.shorten = (choice & 32) == 0;
    rules.addressed = (choice & 64) == 0;
    listener.reader.setRules(rules);
    long long now = 0;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::u16string& said = lines[index];
        Line line;
        line.number = index;
        line.text = said;
        line.name = said.substr(0, said.find(u' '));
        line.person = (said.empty() ? std::u16string() : said.substr(0, 1)) + u"@net";
        line.id = murmelix::toText(static_cast<long long>(index));
        line.kind = static_cast<Line::Kind>(said.size() % 4);
        line.mine = said.size() % 13 == 7;
        for (std::size_t at = 0; at < said.size() && (choice & 128) != 0; at += 5) {
            line.emotes.push_back({at, at + said[at] % 7});
        }
        const std::u16string clean = cleaned(said, line.emotes, cleaningOf(rules));
        requirePlain(clean, longest_cleaned);
        listener.reader.arrived(line, now);
        if (said.size() % 5 == 3 && index > 0) {
            const std::size_t which = index - said.size() % index;
            listener.deleted.insert(which);
            listener.reader.deleted(murmelix::toText(static_cast<long long>(which)));
            if (listener.told.contains(which)) {
                listener.deleted.erase(which); // too late
            }
        }
        if (said.size() % 11 == 5) {
            listener.reader.left(line.person);
        }
        now += step * 40;
        listener.listen(now);
        listener.reader.takePassedOver();
    }
    for (int rounds = 0; listener.reader.dueAt() && rounds < 1'000; ++rounds) {
        now = std::max(now, *listener.reader.dueAt());
        listener.listen(now);
    }
    require(!listener.reader.dueAt(), "all is told in the end");
    preview({}, rules);
    return 0;
}
