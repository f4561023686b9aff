#include "companions/messenger/irc/network.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/server_time.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::size_t longest_network_name = 64;
constexpr std::u16string_view twitch_network = u"twitch";

// What a server puts before the nick as long as one does not know it.
constexpr std::size_t longest_unknown_user = 11, longest_unknown_host = 63;
// Below this nothing could be said at all: a target so long is refused by the server.
constexpr std::size_t least_room = 32;

// Numbers that come by themselves, and say nothing to a user.
constexpr std::array<std::string_view, 10> quiet_numbers{"004", "042", "329", "331", "333",
                                                         "372", "375", "376", "422", "900"};

bool isNumber(std::string_view command) {
    return command.size() == 3 &&
           std::all_of(command.begin(), command.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
}

} // namespace

// What each command means; in the streaming chat some are there besides, and one means more.
Network::Handler Network::handlerOf(std::string_view command) const {
    static const std::unordered_map<std::string_view, Handler> handlers{
        {"005", &Network::onFeatures},       {"301", &Network::onSomebodyAway},
        {"305", &Network::onMyAway},         {"306", &Network::onMyAway},
        {"332", &Network::onTopicNow},       {"353", &Network::onNames},
        {"366", &Network::onEndOfNames},     {"396", &Network::onHiddenHost},
        {"403", &Network::onRefusedChannel}, // there is none
        {"405", &Network::onRefusedChannel}, // too many channels
        {"437", &Network::onRefusedChannel}, // not now
        {"470", &Network::onRefusedChannel}, // sent on to another one
        {"471", &Network::onRefusedChannel}, // full
        {"473", &Network::onRefusedChannel}, // invited people alone
        {"474", &Network::onRefusedChannel}, // banned
        {"475", &Network::onRefusedChannel}, // a key is missing
        {"476", &Network::onRefusedChannel}, // no such name is possible
        {"477", &Network::onRefusedChannel}, // people with an account alone
        {"489", &Network::onRefusedChannel}, // people with TLS alone
        {"ACCOUNT", &Network::onAccount},    {"AWAY", &Network::onAway},
        {"BATCH", &Network::onBatch},        {"CHGHOST", &Network::onChangedHost},
        {"INVITE", &Network::onInvite},      {"JOIN", &Network::onJoin},
        {"KICK", &Network::onKick},          {"MODE", &Network::onMode},
        {"NICK", &Network::onNick},          {"NOTICE", &Network::onMessage},
        {"PART", &Network::onPart},          {"PRIVMSG", &Network::onMessage},
        {"QUIT", &Network::onQuit},          {"TOPIC", &Network::onTopic},
    };
    static const std::unordered_map<std::string_view, Handler> streaming_handlers{
        {"CLEARCHAT", &Network::onClearChat},     {"CLEARMSG", &Network::onClearMessage},
        {"GLOBALUSERSTATE", &Network::onMyState}, {"NOTICE", &Network::onStreamingNotice},
        {"ROOMSTATE", &Network::onRoomState},     {"USERNOTICE", &Network::onUserNotice},
        {"USERSTATE", &Network::onMyState},       {"WHISPER", &Network::onMessage},
    };
    if (address_.dialect == Dialect::twitch) {
        if (const auto found = streaming_handlers.find(command); found != streaming_handlers.end()) {
            return found->second;
        }
    }
    const auto found = handlers.find(command);
    return found != handlers.end() ? found->second : isNumber(command) ? &Network::onAnswer : nullptr;
}

Network::Network(const Address& address, Tell tell)
    : address_(address), tell_(std::move(tell)),
      people_(address.dialect == Dialect::twitch ? std::u16string(twitch_network) : address.host) {}

std::u16string Network::name() const {
    if (address_.dialect == Dialect::twitch) {
        return u"Twitch";
    }
    const std::u16string told = plainName(features_.network(), longest_network_name);
    return told.empty() ? address_.host : told;
}

bool Network::isMe(std::string_view nick) const {
    return me_ && folded(nick, people_.caseMapping()) == me_->key;
}

std::size_t Network::roomFor(std::string_view target) const {
    const std::string user = me_ ? murmelix::toUtf8(me_->user) : "", host = me_ ? murmelix::toUtf8(me_->host) : "";
    constexpr std::string_view around = ":!@ PRIVMSG  :\r\n";
    const std::size_t taken = around.size() + target.size() + (me_ ? me_->name.size() : longest_nick) +
                              (user.empty() ? longest_unknown_user : user.size()) +
                              (host.empty() ? longest_unknown_host : host.size());
    return std::max(features_.lineLength() - std::min(features_.lineLength(), taken), least_room);
}

std::string Network::nameOf(std::u16string_view target) const {
    std::string name = murmelix::toUtf8(target);
    if (const Channel* channel = findChannel(name)) {
        return channel->name;
    }
    if (const KnownPtr person = people_.find(name)) {
        return person->name;
    }
    // Of a channel whose name is not sent as UTF-8.
    for (const auto& [key, channel] : channels_) {
        if (channel.shown == target) {
            return channel.name;
        }
    }
    return name;
}

void Network::begin() {
    features_ = {};
    batches_.clear();
    splits_.clear();
    greeted_ = false;
    welcomed_.reset();
}

void Network::welcome(const Message& message) {
    if (me_ && me_->registered) {
        people_.rename(me_, message.parameter(0));
    } else {
        me_ = people_.meet({.nick = message.parameter(0), .user = {}, .host = {}});
    }
    if (me_ && me_->registered) {
        people_.enter(me_); // known as long as there is a connection
    }
    welcomed_ = timeOf(message);
}

void Network::settle() {
    greeted_ = true;
    if (address_.dialect == Dialect::irc) {
        people_.setNetwork(name());
        if (me_ && me_->registered) {
            people_.chooseSignin(me_); // welcomed before the network has told its name
        }
    }
    people_.setCaseMapping(features_.caseMapping());
    std::unordered_map<std::string, Channel> before = std::exchange(channels_, {});
    for (auto& [key, channel] : before) {
        std::string folded_name = folded(channel.name, people_.caseMapping());
        channels_.emplace(std::move(folded_name), std::move(channel));
    }
}

void Network::end() {
    for (auto& [key, channel] : channels_) {
        for (const auto& [person, ranks] : channel.members) {
            people_.leave(person);
        }
    }
    channels_.clear();
    if (me_ && me_->channels > 0) {
        people_.leave(me_);
    }
}

void Network::read(const Message& message, long long now) {
    now_ = now;
    // Of what was before only the talk is told again.
    const bool talk = message.command() == "PRIVMSG" || message.command() == "NOTICE" || message.command() == "BATCH";
    if (const Handler handler = handlerOf(message.command()); handler && (talk || !batches_.isHistory(message))) {
        (this->*handler)(message);
    }
}

const Network::Channel* Network::findChannel(std::string_view name) const {
    const auto found = channels_.find(folded(name, people_.caseMapping()));
    return found == channels_.end() ? nullptr : &found->second;
}

Network::Channel* Network::findChannel(std::string_view name) {
    return const_cast<Channel*>(std::as_const(*this).findChannel(name));
}

std::u16string Network::shownChannel(std::string_view name) const {
    const Channel* channel = findChannel(name);
    return channel ? channel->shown : plainName(name, longest_channel);
}

void Network::tellUser(std::u16string text, std::u16string_view channel) {
    if (!text.empty()) {
        tell_(event::Told{std::u16string(channel), std::move(text)});
    }
}

void Network::onFeatures(const Message& message) {
    features_.read(message);
}

void Network::onBatch(const Message& message) {
    batches_.read(message);
}

void Network::onAnswer(const Message& message) {
    const bool quiet = std::find(quiet_numbers.begin(), quiet_numbers.end(), message.command()) != quiet_numbers.end();
    if (!greeted_ || quiet) {
        return;
    }
    // The first parameter is one's own nick.
    std::u16string text;
    for (std::size_t i = 1; i < message.parameters().size(); ++i) {
        const bool last = i + 1 == message.parameters().size();
        text += text.empty() ? u"" : last ? u": " : u" ";
        text += plainText(decoded(message.parameter(i)));
    }
    const Channel* channel = findChannel(message.parameter(1));
    tellUser(std::move(text), channel ? channel->shown : std::u16string());
}

void Network::onRefusedChannel(const Message& message) {
    const std::string_view channel = message.parameter(1);
    if (!features_.isChannel(channel) || isIn(channel)) {
        onAnswer(message);
        return;
    }
    tell_(event::ChannelLeft{shownChannel(channel), Leaving::refused, plainText(decoded(message.last())), nullptr});
}

void Network::onHiddenHost(const Message& message) {
    if (me_) {
        const Prefix shown = parsePrefix(message.parameter(1));
        people_.meet({.nick = me_->name,
                      .user = shown.host.empty() ? std::string_view() : shown.nick,
                      .host = shown.host.empty() ? shown.nick : shown.host});
    }
}

void Network::onMyAway(const Message& message) {
    if (me_) {
        me_->away = message.command() == "306";
        tell_(event::AwayChanged{me_, {}});
    }
}

void Network::onSomebodyAway(const Message& message) {
    if (const KnownPtr person = people_.find(message.parameter(1))) {
        person->away = true;
        tell_(event::AwayChanged{person, plainText(decoded(message.last()))});
    }
}

void Network::onInvite(const Message& message) {
    const KnownPtr person = meet(message);
    if (person && isMe(message.parameter(0))) {
        tellUser(shownName(*person) + u" invites you to " + shownChannel(message.parameter(1)) + u".");
    }
}

} // namespace messenger_client::irc
