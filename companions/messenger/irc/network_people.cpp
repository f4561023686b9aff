// Who is in which channel.
#include "companions/messenger/irc/network.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/cutting.h"
#include "companions/messenger/irc/server_time.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

bool isServerName(std::string_view word) {
    constexpr std::string_view signs = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-*";
    const std::size_t dot = word.find('.');
    return dot != std::string_view::npos && dot > 0 && word.find_first_not_of(signs) == std::string_view::npos &&
           !word.ends_with('.');
}

// People who leave by a netsplit "say" which two servers have lost each other. What they say themselves begins with a
// word of the server's.
bool isSplit(std::string_view why) {
    const std::size_t blank = why.find(' ');
    return blank != std::string_view::npos && isServerName(why.substr(0, blank)) && isServerName(why.substr(blank + 1));
}

std::u16string reason(std::string_view text) {
    return plainText(decoded(text));
}

} // namespace

KnownPtr Network::meet(const Message& message) {
    const KnownPtr person = address_.dialect == Dialect::twitch
                                ? people_.meetUser(message.prefix(), message.tag("user-id"))
                                : people_.meet(message.prefix(), message.tag("account"));
    if (person) {
        identify(person, message);
    }
    return person;
}

void Network::identify(const KnownPtr& person, const Message& message) {
    const bool twitch = address_.dialect == Dialect::twitch;
    const bool changed = twitch ? people_.setShownName(person, message.tag("display-name"))
                                : message.hasTag("account") && people_.setAccount(person, message.tag("account"));
    if (changed) {
        tell_(event::Identified{person});
    }
}

void Network::addMember(Channel& channel, const KnownPtr& person, Ranks ranks) {
    if (const auto found = channel.members.find(person); found != channel.members.end()) {
        found->second = ranks;
        return;
    }
    if (person->registered && channel.members.size() < most_members) {
        channel.members.emplace(person, ranks);
        people_.enter(person);
        if (channel.listed) {
            tell_(event::Joined{channel.shown, {person, marksOf(ranks)}, std::exchange(person->in_split, false)});
        }
    }
}

void Network::removeMember(Channel& channel, const KnownPtr& person, event::Left left) {
    if (channel.members.erase(person) != 0) {
        people_.leave(person);
        left.channel = channel.shown;
        left.person = person;
        tell_(std::move(left));
    }
}

void Network::leaveChannel(std::string_view name, event::ChannelLeft left) {
    const auto found = channels_.find(folded(name, people_.caseMapping()));
    if (found != channels_.end()) {
        for (const auto& [person, ranks] : found->second.members) {
            people_.leave(person);
        }
        left.channel = found->second.shown;
        channels_.erase(found);
        tell_(std::move(left));
    }
}

void Network::quit(const KnownPtr& person, Leaving how, std::u16string_view why) {
    for (auto& [key, channel] : channels_) {
        removeMember(channel, person, {{}, nullptr, how, std::u16string(why), nullptr});
    }
}

Marks Network::marksOf(Ranks ranks) const {
    Marks marks;
    for (std::size_t i = features_.rankModes().size(); i-- > 0;) {
        if ((ranks >> i & 1) != 0) {
            const char mode = features_.rankModes()[i];
            marks.sign = static_cast<unsigned char>(features_.rankSigns()[i]);
            marks.voiced |= mode == 'v';
            marks.moderator |= std::string_view("qaohyY").find(mode) != std::string_view::npos;
        }
    }
    return marks;
}

Marks Network::marksIn(const Channel* channel, const KnownPtr& person) const {
    if (!channel) {
        return {};
    }
    const auto found = channel->members.find(person);
    return found == channel->members.end() ? Marks() : marksOf(found->second);
}

// Cuts the signs of ranks from the front of a nick.
Network::Ranks Network::ranksOf(std::string_view& nick) const {
    Ranks ranks = 0;
    for (; !nick.empty(); nick.remove_prefix(1)) {
        const std::size_t rank = features_.rankSigns().find(nick.front());
        if (rank == std::string::npos) {
            break;
        }
        ranks = static_cast<Ranks>(ranks | 1U << rank);
    }
    return ranks;
}

// True where the netsplit is a new one.
bool Network::noteSplit(std::string_view why) {
    for (Split& split : splits_) {
        if (split.servers == why) {
            return now_ - std::exchange(split.seen, now_) > split_time;
        }
    }
    splits_.push_back({std::string(why), now_});
    if (splits_.size() > most_splits) {
        splits_.pop_front();
    }
    return true;
}

void Network::onJoin(const Message& message) {
    const std::string_view name = message.parameter(0);
    const KnownPtr person = meet(message);
    if (!person) {
        return;
    }
    // With extended-join the account follows, "*" for none.
    if (message.parameters().size() > 2 && message.parameter(1) != "*" &&
        people_.setAccount(person, message.parameter(1))) {
        tell_(event::Identified{person});
    }
    if (!isMe(message.prefix().nick)) {
        if (Channel* channel = findChannel(name)) {
            addMember(*channel, person, 0);
        }
        return;
    }
    if (isIn(name) || !features_.isChannel(name) || name.size() > longest_channel ||
        channels_.size() >= most_channels) {
        return;
    }
    Channel& channel = channels_[folded(name, people_.caseMapping())];
    channel.name = name;
    channel.shown = plainName(name, longest_channel);
    channel.joined = timeOf(message);
    tell_(event::ChannelJoined{channel.shown});
    addMember(channel, person, 0);
}

void Network::onPart(const Message& message) {
    const std::string_view name = message.parameter(0);
    const std::u16string why = message.parameters().size() > 1 ? reason(message.last()) : std::u16string();
    if (isMe(message.prefix().nick)) {
        leaveChannel(name, {{}, Leaving::parted, why, nullptr});
        return;
    }
    Channel* channel = findChannel(name);
    if (const KnownPtr person = people_.find(message.prefix().nick); person && channel) {
        removeMember(*channel, person, {{}, nullptr, Leaving::parted, why, nullptr});
    }
}

void Network::onKick(const Message& message) {
    const std::string_view name = message.parameter(0), nick = message.parameter(1);
    const std::u16string why = message.parameters().size() > 2 ? reason(message.last()) : std::u16string();
    const KnownPtr by = people_.find(message.prefix().nick);
    if (isMe(nick)) {
        leaveChannel(name, {{}, Leaving::kicked, why, by});
        return;
    }
    Channel* channel = findChannel(name);
    if (const KnownPtr person = people_.find(nick); person && channel) {
        removeMember(*channel, person, {{}, nullptr, Leaving::kicked, why, by});
    }
}

void Network::onQuit(const Message& message) {
    const KnownPtr person = people_.find(message.prefix().nick);
    // The end of the own connection is told by itself.
    if (!person || person == me_) {
        return;
    }
    const bool split = isSplit(message.last());
    if (split) {
        person->in_split = true;
        if (noteSplit(message.last())) {
            tell_(event::NetSplit{reason(message.last())});
        }
    }
    quit(person, split ? Leaving::netsplit : Leaving::quit, reason(message.last()));
}

void Network::onNick(const Message& message) {
    const KnownPtr person = people_.find(message.prefix().nick);
    const std::string_view nick = message.parameter(0);
    if (!person || nick.empty() || nick.size() > longest_nick) {
        return;
    }
    if (const KnownPtr other = people_.find(nick); other && other != person) {
        if (other == me_) {
            return;
        }
        quit(other, Leaving::quit, {});
    }
    const std::u16string before = person->nick;
    people_.rename(person, nick);
    tell_(event::Renamed{person, before});
}

void Network::onNames(const Message& message) {
    Channel* channel = findChannel(message.parameter(2));
    if (!channel) {
        return;
    }
    std::string_view rest = message.last();
    for (std::string_view nick = takeWord(rest); !nick.empty(); nick = takeWord(rest)) {
        const Ranks ranks = ranksOf(nick);
        if (const KnownPtr person = people_.meet(parsePrefix(nick))) {
            addMember(*channel, person, ranks);
        }
    }
}

void Network::onEndOfNames(const Message& message) {
    Channel* channel = findChannel(message.parameter(1));
    if (!channel || std::exchange(channel->listed, true)) {
        return;
    }
    std::vector<Member> members;
    members.reserve(channel->members.size());
    for (const auto& [person, ranks] : channel->members) {
        person->in_split = false;
        members.push_back({person, marksOf(ranks)});
    }
    std::sort(members.begin(), members.end(),
              [](const Member& a, const Member& b) { return a.person->nick < b.person->nick; });
    tell_(event::People{channel->shown, std::move(members)});
}

void Network::onMode(const Message& message) {
    Channel* channel = findChannel(message.parameter(0));
    if (!channel) {
        return;
    }
    bool set = true;
    std::size_t next = 2;
    for (const char mode : message.parameter(1)) {
        if (mode == '+' || mode == '-') {
            set = mode == '+';
            continue;
        }
        const std::size_t rank = features_.rankModes().find(mode);
        if (rank == std::string::npos) {
            next += features_.takesParameter(mode, set) ? 1 : 0;
            continue;
        }
        const KnownPtr person = people_.find(message.parameter(next++));
        const auto member = channel->members.find(person);
        if (member != channel->members.end()) {
            const unsigned bit = 1U << rank;
            member->second = static_cast<Ranks>(set ? member->second | bit : member->second & ~bit);
            tell_(event::Marked{channel->shown, person, marksOf(member->second)});
        }
    }
}

void Network::onAway(const Message& message) {
    const KnownPtr person = people_.find(message.prefix().nick);
    if (person) {
        person->away = !message.parameters().empty();
        tell_(event::AwayChanged{person, reason(message.last())});
    }
}

void Network::onAccount(const Message& message) {
    const KnownPtr person = people_.find(message.prefix().nick);
    const std::string_view account = message.parameter(0);
    if (person && people_.setAccount(person, account == "*" ? std::string_view() : account)) {
        tell_(event::Identified{person});
    }
}

void Network::onChangedHost(const Message& message) {
    if (people_.find(message.prefix().nick)) {
        people_.meet({message.prefix().nick, message.parameter(0), message.parameter(1)});
    }
}

void Network::onTopic(const Message& message) {
    if (const Channel* channel = findChannel(message.parameter(0))) {
        tell_(event::Topic{channel->shown, reason(message.last()), people_.find(message.prefix().nick)});
    }
}

void Network::onTopicNow(const Message& message) {
    if (const Channel* channel = findChannel(message.parameter(1))) {
        tell_(event::Topic{channel->shown, reason(message.last()), nullptr});
    }
}

} // namespace messenger_client::irc
