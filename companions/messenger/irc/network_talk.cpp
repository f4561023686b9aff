// What people say.
#include "companions/messenger/irc/network.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/cutting.h"
#include "companions/messenger/irc/server_time.h"
#include "companions/messenger/irc/streaming.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::size_t longest_id = 100;

// The emotes of a text, and the text without what cannot be shown.
std::u16string plainWithEmotes(std::u16string_view text, std::vector<Emote>& emotes) {
    std::vector<std::size_t> places;
    for (const Emote& emote : emotes) {
        places.push_back(emote.first);
        places.push_back(emote.first + emote.length);
    }
    std::u16string plain = plainText(text, &places);
    for (std::size_t i = 0; i < emotes.size(); ++i) {
        emotes[i].first = places[2 * i];
        emotes[i].length = places[2 * i + 1] - places[2 * i];
    }
    std::erase_if(emotes, [](const Emote& emote) { return emote.length == 0; });
    return plain;
}

} // namespace

bool Network::isOld(const Message& message, const Channel* channel) const {
    const std::optional<long long> time = timeOf(message), since = channel ? channel->joined : welcomed_;
    return batches_.isHistory(message) || (time && since && *time < *since);
}

void Network::onMessage(const Message& message) {
    const bool notice = message.command() == "NOTICE";
    const std::string_view target = features_.withoutRank(message.parameter(0));
    const bool to_channel = features_.isChannel(target);
    const Channel* channel = findChannel(target);
    const bool from_server = message.prefix().nick.empty() || message.prefix().isServer();
    if (from_server) {
        tellUser(plainText(decoded(message.last())), channel ? channel->shown : std::u16string());
        return;
    }
    if (message.parameters().size() < 2 || (to_channel && !channel)) {
        return;
    }
    const KnownPtr writer = meet(message);
    if (!writer) {
        return;
    }
    event::Said said;
    if (channel) {
        said.channel = channel->shown;
        said.badges.moderator = marksIn(channel, writer).moderator;
    } else {
        said.with = isMe(message.prefix().nick) ? people_.meet(parsePrefix(target)) : writer;
        if (!said.with) {
            return;
        }
    }
    said.history = isOld(message, channel);
    said.kind = notice ? event::Said::Kind::notice : event::Said::Kind::message;
    std::string_view text = message.last();
    if (const auto request = requestIn(text)) {
        // The others are for programs.
        if (request->command != "ACTION") {
            return;
        }
        said.kind = event::Said::Kind::action;
        text = request->argument;
    }
    tellSaid(message, std::move(said), writer, text);
}

void Network::tellSaid(const Message& message, event::Said said, const KnownPtr& writer, std::string_view text) {
    const std::u16string whole = decoded(text);
    said.id = plainName(message.hasTag("msgid") ? message.tag("msgid") : message.tag("id"), longest_id);
    said.time = timeOf(message);
    said.writer = writer;
    said.own = writer && isMe(writer->name);
    if (address_.dialect == Dialect::twitch) {
        said.badges = badgesOf(message);
        said.emotes = parseEmotes(message.tag("emotes"), whole);
        said.reply_to = plainName(message.tag("reply-parent-display-name"), longest_person_name);
        said.bits = std::max(wholeNumber<long>(message.tag("bits")).value_or(0), 0L);
        said.first = message.tag("first-msg") == "1";
    }
    said.text = plainWithEmotes(whole, said.emotes);
    if (!murmelix::trim(said.text).empty()) {
        if (writer) {
            people_.hasSpoken(writer);
        }
        tell_(std::move(said));
    }
}

void Network::echo(const Echo& sent) {
    const Channel* channel = findChannel(sent.target);
    event::Said said;
    said.kind = sent.action ? event::Said::Kind::action : event::Said::Kind::message;
    said.text = plainText(sent.text);
    said.writer = me_;
    said.own = true;
    if (channel) {
        said.channel = channel->shown;
        said.badges = channel->my_badges;
        said.badges.moderator |= marksIn(channel, me_).moderator;
    } else {
        said.with = people_.meet(parsePrefix(sent.target));
    }
    if (me_ && (channel || said.with)) {
        people_.hasSpoken(me_);
        tell_(std::move(said));
    }
}

} // namespace messenger_client::irc
