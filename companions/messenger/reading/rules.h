// What of a conversation is read: its options, and the judgement of a line.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/reading/cleaning.h"

namespace messenger_client::reading {

// A line as it comes from a conversation.
struct Line {
    unsigned long long number = 0; // the caller's own, by which it finds the line again
    std::u16string id;             // the server's; empty where it has none
    std::u16string person;         // sign-in name of the writer
    std::u16string name;           // of the writer, to be shown
    std::u16string text;
    enum class Kind { message, action, notice, announcement } kind = Kind::message;
    bool moderator = false, subscriber = false;
    bool bot = false;  // the server says so
    bool mine = false; // the user's own
    bool old = false;  // told again by the server
    std::vector<Range> emotes = {};
    long long time = 0; // milliseconds since any moment
};

// Why a line is not read.
enum class Unread {
    old,             // from before the user came
    own,             // the user's own line
    notice,          // a server's or a program's
    announcement,    // subscriptions and the like
    ignored,         // the writer is on the ignore list
    bot,             // the writer is a known bot
    command,         // meant for a bot
    not_chosen,      // the writer is none of those who are read
    addressed,       // begins with another's name
    empty,           // nothing is left to be said
    repeated,        // was said just before
    nearly_repeated, // nearly so
    passed_over,     // more than can be said
    deleted,         // by a moderator
};
// "is on the ignore list": for people, behind the line.
std::u16string_view whyText(Unread why);

struct ListedPerson {
    std::u16string person; // sign-in name
    std::u16string name;   // as it was shown when the person was put on the list
    bool operator==(const ListedPerson&) const = default;
};
using People = std::vector<ListedPerson>;

// Entries of a list, and units of one: what a user would ever type, and little to search for each line.
inline constexpr std::size_t most_listed = 500;
inline constexpr std::size_t longest_listed = 100;

inline constexpr int least_lines_a_minute = 1, most_lines_a_minute = 60;
inline constexpr int least_line_length = 20, most_line_length = 1'000;
// The stage has six characters.
inline constexpr int most_seats = 6;
// Seats as there are characters on this computer, most_seats at most.
inline constexpr int as_many_as_characters = 0;

struct Rules {
    int lines_a_minute = 15; // what a voice says of lines of usual length, with pauses
    int longest_line = 200;  // characters: a quarter of a minute

    bool everyone = true; // else those of the next three
    bool moderators = true, subscribers = false, chosen = true;

    bool own = true;
    bool announcements = true;
    bool notices = false;
    bool bots = false;
    bool commands = false;
    bool repeated = false;
    bool addressed = true; // lines that begin with another's name

    Links links = Links::named;
    OtherEmoji other_emoji = OtherEmoji::named;
    bool shorten = true;
    bool name_first = false; // the writer's name before the line, when the writer changes

    int seats = as_many_as_characters;
    bool rest_shares = false; // who has no seat shares one, instead of taking another's

    People ignored_people, chosen_people, pinned_people;
    std::vector<WordRule> words;

    bool operator==(const Rules&) const = default;
};

// One option a line, its parts parted by tabs, as the client escapes text. What is unknown or makes no sense is passed
// over, numbers are brought into their bounds.
std::vector<std::u16string> linesOf(const Rules& rules);
Rules rulesOf(const std::vector<std::u16string>& lines);

bool isListed(const People& people, std::u16string_view person);
// False where the list is full, or has the person already.
bool list(People& people, std::u16string_view person, std::u16string_view name);
void unlist(People& people, std::u16string_view person);

// Whether a name is one of the well-known bots'.
bool isKnownBot(std::u16string_view name);

// What the judgement of a line needs to know of a conversation.
struct Surroundings {
    std::u16string my_name;
    // Whether somebody here has that name (letter case ignored); none: nobody is known.
    std::function<bool(std::u16string_view name)> has_name = {};
    int characters = most_seats; // that there are on this computer
};

Cleaning cleaningOf(const Rules& rules);

// Of the line alone; repetitions and pace are judged by who knows the lines before it. Where it is read, `text` is what
// is said of it, without the name.
struct Judgement {
    std::optional<Unread> unread;
    std::u16string text;
};
Judgement judge(const Line& line, const Rules& rules, const Surroundings& surroundings = {});

} // namespace messenger_client::reading
