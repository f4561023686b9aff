// What the streaming chat has besides.
#include "companions/messenger/irc/network.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/streaming.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::size_t longest_id = 100;

// Who may write in a channel, and how often.
struct Rule {
    std::string_view tag, off;
    std::u16string_view begins, ends;
};
constexpr std::array<Rule, 5> rules{{
    {"slow", "0", u"Slow mode: there is a pause between the lines of one person.", u"Slow mode has ended."},
    {"emote-only", "0", u"Only emotes can be written here now.", u"Everything can be written here again."},
    {"followers-only", "-1", u"Only followers can write here now.", u"Not only followers can write here again."},
    {"subs-only", "0", u"Only subscribers can write here now.", u"Not only subscribers can write here again."},
    {"r9k", "0", u"Nobody can write the same twice now.", u"The same can be written twice again."},
}};

// Notices that say that a channel cannot be read.
constexpr std::array<std::string_view, 3> closed_channel{"msg_channel_suspended", "msg_banned", "tos_ban"};

} // namespace

KnownPtr Network::meetTagged(const Message& message, std::string_view login, std::string_view user_id) {
    const KnownPtr person = people_.meetUser({.nick = login, .user = {}, .host = {}}, user_id);
    if (person) {
        identify(person, message);
    }
    return person;
}

void Network::onClearChat(const Message& message) {
    const Channel* channel = findChannel(message.parameter(0));
    if (!channel) {
        return;
    }
    if (message.parameters().size() < 2) {
        tell_(event::Deleted{channel->shown, {}, nullptr});
    } else if (const KnownPtr person = meetTagged(message, message.last(), message.tag("target-user-id"))) {
        tell_(event::Deleted{channel->shown, {}, person});
    }
}

void Network::onClearMessage(const Message& message) {
    const Channel* channel = findChannel(message.parameter(0));
    const std::u16string id = plainName(message.tag("target-msg-id"), longest_id);
    if (channel && !id.empty()) {
        tell_(event::Deleted{channel->shown, id, nullptr});
    }
}

// Two lines: what the chat says of somebody, and what that person says to it.
void Network::onUserNotice(const Message& message) {
    const Channel* channel = findChannel(message.parameter(0));
    if (!channel) {
        return;
    }
    const KnownPtr person = meetTagged(message, message.tag("login"), message.tag("user-id"));
    const std::u16string announced = plainText(decoded(message.tag("system-msg")));
    if (!announced.empty()) {
        event::Said said{.channel = channel->shown, .writer = person};
        said.kind = event::Said::Kind::announcement;
        said.text = announced;
        tell_(std::move(said));
    }
    if (message.parameters().size() > 1 && person) {
        event::Said said{.channel = channel->shown, .writer = person};
        said.kind =
            message.tag("msg-id") == "announcement" ? event::Said::Kind::announcement : event::Said::Kind::message;
        tellSaid(message, std::move(said), person, message.last());
    }
}

void Network::onStreamingNotice(const Message& message) {
    const std::string_view name = message.parameter(0);
    const std::string id = message.tag("msg-id");
    const std::u16string text = plainText(decoded(message.last()));
    const bool closed = std::find(closed_channel.begin(), closed_channel.end(), id) != closed_channel.end();
    if (closed && isIn(name)) {
        leaveChannel(name, {{}, Leaving::refused, text, nullptr});
    } else if (closed && features_.isChannel(name)) {
        tell_(event::ChannelLeft{shownChannel(name), Leaving::refused, text, nullptr});
    } else {
        tellUser(text, isIn(name) ? shownChannel(name) : std::u16string());
    }
}

// All rules come when one joins, later the one that has changed.
void Network::onRoomState(const Message& message) {
    Channel* channel = findChannel(message.parameter(0));
    if (!channel) {
        return;
    }
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const auto bit = static_cast<std::uint8_t>(1U << i);
        const bool held = (channel->rules & bit) != 0;
        const bool holds = message.hasTag(rules[i].tag) ? message.tag(rules[i].tag) != rules[i].off : held;
        if (holds != held) {
            channel->rules ^= bit;
            tellUser(std::u16string(holds ? rules[i].begins : rules[i].ends), channel->shown);
        }
    }
}

void Network::onMyState(const Message& message) {
    if (!me_) {
        return;
    }
    if (message.hasTag("user-id")) {
        people_.meetUser({.nick = me_->name, .user = {}, .host = {}}, message.tag("user-id"));
    }
    identify(me_, message);
    if (Channel* channel = findChannel(message.parameter(0))) {
        const Badges badges = badgesOf(message);
        const bool changed = channel->my_badges.moderator != badges.moderator;
        channel->my_badges = badges;
        if (changed) {
            tell_(event::Marked{channel->shown, me_, {.moderator = badges.moderator, .voiced = false, .sign = 0}});
        }
    }
}

} // namespace messenger_client::irc
