#include "companions/messenger/reading/rules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "companions/messenger/chat/escapes.h"
#include "companions/messenger/reading/characters.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;
using murmelix::LetterCase;
using murmelix::sameText;

constexpr char16_t part = u'\t';

struct Number {
    View name;
    int Rules::*value;
    int least, most;
};
constexpr Number numbers[] = {
    {u"lines a minute", &Rules::lines_a_minute, least_lines_a_minute, most_lines_a_minute},
    {u"longest line", &Rules::longest_line, least_line_length, most_line_length},
    {u"seats", &Rules::seats, as_many_as_characters, most_seats},
};

struct Flag {
    View name;
    bool Rules::*value;
};
constexpr Flag flags[] = {
    {u"everyone", &Rules::everyone},
    {u"moderators", &Rules::moderators},
    {u"subscribers", &Rules::subscribers},
    {u"chosen", &Rules::chosen},
    {u"own", &Rules::own},
    {u"announcements", &Rules::announcements},
    {u"notices", &Rules::notices},
    {u"bots", &Rules::bots},
    {u"commands", &Rules::commands},
    {u"repeated", &Rules::repeated},
    {u"addressed", &Rules::addressed},
    {u"shorten", &Rules::shorten},
    {u"name first", &Rules::name_first},
    {u"rest shares", &Rules::rest_shares},
};

struct PeopleList {
    View name;
    People Rules::*value;
};
constexpr PeopleList people_lists[] = {
    {u"ignored person", &Rules::ignored_people},
    {u"chosen person", &Rules::chosen_people},
    {u"pinned person", &Rules::pinned_people},
};

constexpr std::array<View, 3> link_names{u"named", u"left out", u"whole"};
constexpr std::array<View, 2> emoji_names{u"named", u"left out"};
constexpr View yes = u"yes", no = u"no";
constexpr View links_name = u"links", emoji_name = u"other emoji", word_name = u"word";

std::u16string lineOf(View name, View first) {
    return std::u16string(name) + part + murmelix::fromUtf8(escaped(first));
}

std::u16string lineOf(View name, View first, View second) {
    return lineOf(name, first) + part + murmelix::fromUtf8(escaped(second));
}

std::vector<View> partsOf(View line) {
    std::vector<View> parts;
    for (std::size_t at = 0; at <= line.size() && parts.size() < 3;) {
        const std::size_t end = std::min(line.find(part, at), line.size());
        parts.push_back(line.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

std::u16string listedText(View escaped_text) {
    std::u16string text = tidied(unescaped(escaped_text.substr(0, 6 * longest_listed)));
    while (text.size() > longest_listed) {
        text.resize((text[longest_listed] & 0xFC00) == 0xDC00 ? longest_listed - 1 : longest_listed);
    }
    return std::u16string(murmelix::trim(text));
}

template <class Choice, std::size_t count>
void readChoice(Choice& choice, const std::array<View, count>& names, View text) {
    const auto found = std::find(names.begin(), names.end(), text);
    if (found != names.end()) {
        choice = static_cast<Choice>(found - names.begin());
    }
}

void readNumber(const Number& number, View text, Rules& rules) {
    const std::string digits = murmelix::toUtf8(text);
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error == std::errc() && end == digits.data() + digits.size()) {
        rules.*number.value = std::clamp(value, number.least, number.most);
    }
}

void readLine(View line, Rules& rules) {
    const std::vector<View> parts = partsOf(line);
    if (parts.size() < 2) {
        return;
    }
    const View name = parts[0], value = parts[1], second = parts.size() > 2 ? parts[2] : View();
    for (const Number& number : numbers) {
        if (number.name == name) {
            readNumber(number, value, rules);
        }
    }
    for (const Flag& flag : flags) {
        if (flag.name == name && (value == yes || value == no)) {
            rules.*flag.value = value == yes;
        }
    }
    for (const PeopleList& people : people_lists) {
        if (people.name == name) {
            list(rules.*people.value, listedText(value), listedText(second));
        }
    }
    if (name == links_name) {
        readChoice(rules.links, link_names, value);
    } else if (name == emoji_name) {
        readChoice(rules.other_emoji, emoji_names, value);
    } else if (name == word_name && rules.words.size() < most_listed) {
        if (std::u16string word = listedText(value); !word.empty()) {
            rules.words.push_back({std::move(word), listedText(second)});
        }
    }
}

// Of those who moderate, count, play and answer in channels everywhere; small letters, in order.
// clang-format off
constexpr View known_bots[] = {
    u"alis", u"ankhbot", u"botserv", u"buttsbot", u"chanserv", u"cloudbot", u"commanderroot", u"deepbot", u"eir",
    u"fossabot", u"hostserv", u"infoserv", u"kofistreambot", u"limnoria", u"lumiastream", u"memoserv",
    u"mixitupapp", u"moobot", u"nickserv", u"nightbot", u"ohbot", u"operserv", u"own3d", u"phantombot",
    u"playwithviewersbot", u"pokemoncommunitygame", u"pretzelrocks", u"restreambot", u"saslserv", u"scorpbot",
    u"sery_bot", u"songlistbot", u"soundalerts", u"statserv", u"stay_hydrated_bot", u"stream_elements",
    u"streamelements", u"streamholics", u"streamlabs", u"streamstickers", u"supibot", u"supybot", u"tangiabot",
    u"wizebot", u"wzbot",
};
// clang-format on
static_assert(std::ranges::is_sorted(known_bots));

bool isCommand(View text) {
    const View line = murmelix::trim(text);
    if (line.size() < 2 || line[0] != u'!') {
        return false;
    }
    const char32_t code = characterAt(line, 1).code;
    return isLetter(code) || isDigit(code);
}

// Whether it begins with the name of another than the user: "@ann …", "ann: …", "ann, …".
bool isAddressed(View text, const Surroundings& surroundings) {
    const View line = murmelix::trim(text);
    const bool marked = line.starts_with(u'@');
    const std::size_t begin = marked ? 1 : 0;
    const std::size_t end = std::min(line.find_first_of(u" ,:", begin), line.size());
    const View name = line.substr(begin, end - begin);
    if (name.empty() || sameText(name, surroundings.my_name, LetterCase::ignored)) {
        return false;
    }
    if (marked) {
        return true;
    }
    const bool called = end < line.size() && line[end] != u' ' && (end + 1 == line.size() || line[end + 1] == u' ');
    return called && surroundings.has_name && surroundings.has_name(name);
}

std::optional<Unread> refused(const Line& line, const Rules& rules, const Surroundings& surroundings) {
    using Kind = Line::Kind;
    if (line.old) {
        return Unread::old;
    }
    if (line.mine) {
        if (!rules.own) {
            return Unread::own;
        }
        return !rules.commands && isCommand(line.text) ? std::optional(Unread::command) : std::nullopt;
    }
    if (line.kind == Kind::notice && !rules.notices) {
        return Unread::notice;
    }
    if (isListed(rules.ignored_people, line.person)) {
        return Unread::ignored;
    }
    if (line.kind == Kind::announcement) {
        return rules.announcements ? std::nullopt : std::optional(Unread::announcement);
    }
    if (!rules.bots && (line.bot || isKnownBot(line.name))) {
        return Unread::bot;
    }
    if (!rules.everyone && !(rules.moderators && line.moderator) && !(rules.subscribers && line.subscriber) &&
        !(rules.chosen && isListed(rules.chosen_people, line.person))) {
        return Unread::not_chosen;
    }
    if (!rules.commands && isCommand(line.text)) {
        return Unread::command;
    }
    if (!rules.addressed && isAddressed(line.text, surroundings)) {
        return Unread::addressed;
    }
    return std::nullopt;
}

} // namespace

std::u16string_view whyText(Unread why) {
    switch (why) {
    case Unread::old:
        return u"older than your visit";
    case Unread::own:
        return u"your own line";
    case Unread::notice:
        return u"a notice";
    case Unread::announcement:
        return u"an announcement";
    case Unread::ignored:
        return u"on the ignore list";
    case Unread::bot:
        return u"a bot";
    case Unread::command:
        return u"a command";
    case Unread::not_chosen:
        return u"not of those who are read";
    case Unread::addressed:
        return u"meant for somebody else";
    case Unread::empty:
        return u"nothing left to say";
    case Unread::repeated:
        return u"said just before";
    case Unread::nearly_repeated:
        return u"nearly the same was said";
    case Unread::passed_over:
        return u"too much at once";
    case Unread::deleted:
        return u"deleted by a moderator";
    }
    return {};
}

std::vector<std::u16string> linesOf(const Rules& rules) {
    std::vector<std::u16string> lines;
    for (const Number& number : numbers) {
        lines.push_back(lineOf(number.name, murmelix::toText(rules.*number.value)));
    }
    for (const Flag& flag : flags) {
        lines.push_back(lineOf(flag.name, rules.*flag.value ? yes : no));
    }
    lines.push_back(lineOf(links_name, link_names[static_cast<std::size_t>(rules.links)]));
    lines.push_back(lineOf(emoji_name, emoji_names[static_cast<std::size_t>(rules.other_emoji)]));
    for (const PeopleList& people : people_lists) {
        for (const ListedPerson& listed : rules.*people.value) {
            lines.push_back(lineOf(people.name, listed.person, listed.name));
        }
    }
    for (const WordRule& word : rules.words) {
        lines.push_back(lineOf(word_name, word.word, word.replacement));
    }
    return lines;
}

Rules rulesOf(const std::vector<std::u16string>& lines) {
    Rules rules;
    for (const std::u16string& line : lines) {
        readLine(line, rules);
    }
    return rules;
}

bool isListed(const People& people, std::u16string_view person) {
    return std::ranges::any_of(
        people, [&](const ListedPerson& listed) { return sameText(listed.person, person, LetterCase::ignored); });
}

bool list(People& people, std::u16string_view person, std::u16string_view name) {
    if (person.empty() || people.size() >= most_listed || isListed(people, person)) {
        return false;
    }
    people.push_back({std::u16string(person), std::u16string(name.empty() ? person : name)});
    return true;
}

void unlist(People& people, std::u16string_view person) {
    std::erase_if(people,
                  [&](const ListedPerson& listed) { return sameText(listed.person, person, LetterCase::ignored); });
}

bool isKnownBot(std::u16string_view name) {
    return std::ranges::binary_search(known_bots, View(murmelix::toLower(name)));
}

Cleaning cleaningOf(const Rules& rules) {
    Cleaning cleaning;
    cleaning.links = rules.links;
    cleaning.emoji.others = rules.other_emoji;
    cleaning.shorten = rules.shorten;
    cleaning.longest = static_cast<std::size_t>(rules.longest_line);
    cleaning.words = rules.words;
    return cleaning;
}

Judgement judge(const Line& line, const Rules& rules, const Surroundings& surroundings) {
    if (const auto why = refused(line, rules, surroundings)) {
        return {why, {}};
    }
    std::u16string text = cleaned(line.text, line.emotes, cleaningOf(rules));
    if (text.empty()) {
        return {Unread::empty, {}};
    }
    return {std::nullopt, std::move(text)};
}

} // namespace messenger_client::reading
