// What a session tells. All texts can be shown as they are: no formatting, no control characters, one line each.
// Channels are named as the server writes them, with their sign; an empty channel is none: a private talk, or the
// network itself.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "companions/messenger/irc/person.h"

namespace messenger_client::irc {

// What somebody is in a channel.
struct Marks {
    bool moderator = false; // may remove others
    bool voiced = false;    // may speak where not everybody may
    char16_t sign = 0;      // of the highest rank, as servers write it before the nick; 0: none
    bool operator==(const Marks&) const = default;
};

struct Member {
    PersonPtr person;
    Marks marks;
};

// What the streaming chat shows before a name. In other chats the marks of the channel make somebody a moderator.
struct Badges {
    bool broadcaster = false, moderator = false, vip = false, subscriber = false;
    bool operator==(const Badges&) const = default;
};

// A picture of the streaming chat that stands for a part of the text: UTF-16 units. Ascending, never overlapping.
struct Emote {
    std::u16string id;
    std::size_t first, length;
    bool operator==(const Emote&) const = default;
};

enum class Leaving { parted, quit, kicked, netsplit, refused };

namespace event {

// The session's own way. Times are the caller's.
struct Connecting {};
struct Registering {};
struct Online {
    PersonPtr me;
    std::u16string network;
    bool can_write; // false: the streaming chat is read along without an account
};
// All channels are left without another word; they are joined again by themselves.
struct Lost {
    std::u16string why;
    long long again; // when it is tried again
};
struct Refused { // for good: nothing is tried until the user does
    std::u16string why;
};
struct Ended {}; // as the user wished

// The own way through channels.
struct ChannelJoined {
    std::u16string channel;
};
struct ChannelLeft {
    std::u16string channel;
    Leaving how; // parted, kicked, or refused: it was not even entered
    std::u16string why;
    PersonPtr by; // who kicked; may be null
};

// People. Everybody who is in the channel, oneself too: told once, soon after ChannelJoined.
struct People {
    std::u16string channel;
    std::vector<Member> members;
};
struct Joined {
    std::u16string channel;
    Member member;
    bool returned; // from a netsplit
};
struct Left {
    std::u16string channel;
    PersonPtr person;
    Leaving how;
    std::u16string why;
    PersonPtr by; // who kicked; may be null
};
struct Renamed { // oneself, too
    PersonPtr person;
    std::u16string before; // nick
};
struct AwayChanged { // oneself, too
    PersonPtr person;
    std::u16string why; // of going away; may be empty
};
// The account, the user-id or the name to show, and perhaps signinName.
struct Identified {
    PersonPtr person;
};
struct Marked {
    std::u16string channel;
    PersonPtr person;
    Marks marks;
};
// Servers have lost each other: the people of one of them leave with Leaving::netsplit after this.
struct NetSplit {
    std::u16string servers;
};

struct Topic {
    std::u16string channel;
    std::u16string text;
    PersonPtr by; // null where it is not told
};

struct Said {
    enum class Kind { message, action, notice, announcement };

    std::u16string channel = {};
    PersonPtr with = {};   // in a private talk the other one; else null
    PersonPtr writer = {}; // of an announcement perhaps null
    Kind kind = Kind::message;
    std::u16string text = {};           // an action follows the writer's name: "waves"
    std::u16string id = {};             // by which it may be deleted; empty: none
    std::optional<long long> time = {}; // milliseconds since 1970, where the server tells it
    bool history = false;               // told again, not new
    bool own = false;
    Badges badges = {};
    std::vector<Emote> emotes = {};
    std::u16string reply_to = {}; // the shown name of whom it answers; the text begins with "@name "
    long bits = 0;                // given with it
    bool first = false;           // the writer's first line ever in this channel
};

// Lines that are to vanish: the one of that id, all of that person, or all of the channel.
struct Deleted {
    std::u16string channel;
    std::u16string id;
    PersonPtr person;
};

// A sentence for the user: what a server answers or refuses, what could not be sent.
struct Told {
    std::u16string channel;
    std::u16string text;
};

} // namespace event

using Event = std::variant<event::Connecting, event::Registering, event::Online, event::Lost, event::Refused,
                           event::Ended, event::ChannelJoined, event::ChannelLeft, event::People, event::Joined,
                           event::Left, event::Renamed, event::AwayChanged, event::Identified, event::Marked,
                           event::NetSplit, event::Topic, event::Said, event::Deleted, event::Told>;

} // namespace messenger_client::irc
