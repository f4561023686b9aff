#include "tests/unit/messenger_irc/told.h"

#include "common/text.h"

namespace messenger_client::irc {

namespace {

using murmelix::toUtf8;

std::string nameOf(const PersonPtr& person) {
    return person ? toUtf8(person->nick) : "-";
}

std::string prefixed(const std::string& prefix, const std::u16string& text) {
    return text.empty() ? std::string() : prefix + toUtf8(text);
}

std::string marksOf(const Marks& marks) {
    return (marks.sign ? std::string(1, static_cast<char>(marks.sign)) : std::string()) +
           (marks.moderator ? "mod " : "") + (marks.voiced ? "voice " : "");
}

std::string nameOf(Leaving how) {
    switch (how) {
    case Leaving::parted:
        return "parted";
    case Leaving::quit:
        return "quit";
    case Leaving::kicked:
        return "kicked";
    case Leaving::netsplit:
        return "netsplit";
    case Leaving::refused:
        return "refused";
    }
    return "?";
}

std::string nameOf(event::Said::Kind kind) {
    switch (kind) {
    case event::Said::Kind::message:
        return "says";
    case event::Said::Kind::action:
        return "acts";
    case event::Said::Kind::notice:
        return "notices";
    case event::Said::Kind::announcement:
        return "announces";
    }
    return "?";
}

struct Describe {
    std::string operator()(const event::Connecting&) const { return "connecting"; }
    std::string operator()(const event::Registering&) const { return "registering"; }
    std::string operator()(const event::Online& e) const {
        return "online " + nameOf(e.me) + " " + toUtf8(e.network) + (e.can_write ? "" : " read only");
    }
    std::string operator()(const event::Lost& e) const {
        return "lost: " + toUtf8(e.why) + " again at " + std::to_string(e.again);
    }
    std::string operator()(const event::Refused& e) const { return "refused: " + toUtf8(e.why); }
    std::string operator()(const event::Ended&) const { return "ended"; }
    std::string operator()(const event::ChannelJoined& e) const { return "in " + toUtf8(e.channel); }
    std::string operator()(const event::ChannelLeft& e) const {
        return "out of " + toUtf8(e.channel) + " " + nameOf(e.how) + (e.by ? " by " + nameOf(e.by) : "") +
               prefixed(": ", e.why);
    }
    std::string operator()(const event::People& e) const {
        std::string text = "people " + toUtf8(e.channel);
        for (const Member& member : e.members) {
            text += " " + (member.marks.sign ? std::string(1, static_cast<char>(member.marks.sign)) : std::string()) +
                    nameOf(member.person);
        }
        return text;
    }
    std::string operator()(const event::Joined& e) const {
        return "joined " + toUtf8(e.channel) + " " + marksOf(e.member.marks) + nameOf(e.member.person) +
               (e.returned ? " again" : "");
    }
    std::string operator()(const event::Left& e) const {
        return "left " + toUtf8(e.channel) + " " + nameOf(e.person) + " " + nameOf(e.how) +
               (e.by ? " by " + nameOf(e.by) : "") + prefixed(": ", e.why);
    }
    std::string operator()(const event::Renamed& e) const {
        return "renamed " + toUtf8(e.before) + " to " + nameOf(e.person);
    }
    std::string operator()(const event::AwayChanged& e) const {
        return (e.person->away ? "away " : "back ") + nameOf(e.person) + prefixed(": ", e.why);
    }
    std::string operator()(const event::Identified& e) const {
        return "identified " + nameOf(e.person) + prefixed(" as ", e.person->display_name) + " " +
               toUtf8(signinName(*e.person));
    }
    std::string operator()(const event::Marked& e) const {
        return "marked " + toUtf8(e.channel) + " " + marksOf(e.marks) + nameOf(e.person);
    }
    std::string operator()(const event::NetSplit& e) const { return "netsplit " + toUtf8(e.servers); }
    std::string operator()(const event::Topic& e) const {
        return "topic " + toUtf8(e.channel) + (e.by ? " by " + nameOf(e.by) : "") + ": " + toUtf8(e.text);
    }
    std::string operator()(const event::Said& e) const {
        std::string text = e.channel.empty() ? "with " + nameOf(e.with) : toUtf8(e.channel);
        text += " " + nameOf(e.writer) + " " + nameOf(e.kind) + ": " + toUtf8(e.text);
        const auto add = [&](bool is, const std::string& what) { text += is ? " [" + what + "]" : ""; };
        add(e.own, "own");
        add(e.history, "history");
        add(e.badges.broadcaster, "broadcaster");
        add(e.badges.moderator, "moderator");
        add(e.badges.vip, "vip");
        add(e.badges.subscriber, "subscriber");
        add(!e.id.empty(), "id " + toUtf8(e.id));
        add(e.time.has_value(), "at " + std::to_string(e.time.value_or(0)));
        add(!e.reply_to.empty(), "to " + toUtf8(e.reply_to));
        add(e.bits != 0, std::to_string(e.bits) + " bits");
        add(e.first, "first");
        for (const Emote& emote : e.emotes) {
            add(true, toUtf8(emote.id) + "=" + toUtf8(e.text.substr(emote.first, emote.length)));
        }
        return text;
    }
    std::string operator()(const event::Deleted& e) const {
        return "deleted " + toUtf8(e.channel) + (e.person ? " of " + nameOf(e.person) : prefixed(" ", e.id));
    }
    std::string operator()(const event::Told& e) const {
        return "told" + prefixed(" ", e.channel) + ": " + toUtf8(e.text);
    }
};

} // namespace

std::string describe(const Event& event) {
    return std::visit(Describe(), event);
}

} // namespace messenger_client::irc
