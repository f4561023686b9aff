#include "companions/messenger/irc/input.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace messenger_client::irc {

namespace {

using View = std::u16string_view;
using murmelix::trim;

constexpr View line_ends = u"\r\n";

// Cuts a word from the front, and the blanks after it.
View takeWord(View& rest) {
    const View word = rest.substr(0, rest.find(u' '));
    rest.remove_prefix(word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(u' '), rest.size()));
    return word;
}

std::u16string copy(View text) {
    return std::u16string(text);
}

Typed act(View rest) {
    return typed::Act{copy(rest)};
}

Typed message(View rest) {
    const View target = takeWord(rest);
    return typed::Message{copy(target), copy(rest)};
}

Typed join(View rest) {
    return typed::Join{copy(trim(rest))};
}

Typed part(View rest) {
    const bool named = !rest.empty() && View(u"#&+!").find(rest.front()) != murmelix::npos;
    const View channel = named ? takeWord(rest) : View();
    return typed::Part{copy(channel), copy(rest)};
}

Typed nick(View rest) {
    return typed::Nick{copy(takeWord(rest))};
}

Typed away(View rest) {
    return typed::Away{copy(trim(rest))};
}

Typed query(View rest) {
    const View name = takeWord(rest);
    return typed::Query{copy(name), copy(rest)};
}

Typed quote(View rest) {
    return typed::Quote{copy(rest)};
}

struct Command {
    View name;
    std::size_t least_words; // behind the name
    bool several_lines;
    Typed (*parse)(View rest);
    View usage;
};
constexpr std::array<Command, 8> commands{{
    {u"me", 1, true, act, u"/me does something"},
    {u"msg", 2, true, message, u"/msg name text"},
    {u"join", 1, false, join, u"/join #channel"},
    {u"part", 0, false, part, u"/part #channel why"},
    {u"nick", 1, false, nick, u"/nick name"},
    {u"away", 0, false, away, u"/away why"},
    {u"query", 1, true, query, u"/query name text"},
    {u"quote", 1, false, quote, u"/quote line"},
}};

std::size_t wordsOf(View rest, std::size_t most) {
    std::size_t words = 0;
    while (words < most && !takeWord(rest).empty()) {
        ++words;
    }
    return words;
}

} // namespace

Typed parseTyped(std::u16string_view text) {
    if (!text.starts_with(u'/')) {
        return typed::Say{copy(text)};
    }
    View rest = text.substr(1);
    if (rest.starts_with(u'/')) {
        return typed::Say{copy(rest)};
    }
    const View name = takeWord(rest);
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command& one) {
        return murmelix::sameText(one.name, name, murmelix::LetterCase::ignored);
    });
    if (command == commands.end()) {
        constexpr std::size_t longest_shown = 20;
        const View shown = name.substr(0, std::min(name.find_first_of(line_ends), longest_shown));
        return typed::Refused{u"There is no command /" + copy(shown) +
                              u". A text that begins with / is said by beginning it with //."};
    }
    if (wordsOf(rest, command->least_words) < command->least_words) {
        return typed::Refused{u"That command looks like this: " + copy(command->usage)};
    }
    if (!command->several_lines && rest.find_first_of(line_ends) != murmelix::npos) {
        return typed::Refused{u"The command /" + copy(command->name) + u" has one line."};
    }
    return command->parse(rest);
}

} // namespace messenger_client::irc
