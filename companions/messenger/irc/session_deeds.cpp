// What the user does.
#include "companions/messenger/irc/session.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

// Channels in one line of JOIN: few enough for any names of usual length.
constexpr std::size_t joined_at_once = 10;

// Between the marks of a request of programs.
constexpr std::string_view action_word = "ACTION ";

} // namespace

bool Session::readyToSend(std::u16string_view channel) {
    if (state_ != State::online) {
        tellUser(u"Not sent: there is no connection at the moment.", channel);
    } else if (handshake_.isAnonymous()) {
        tellUser(u"Not sent: without an account one can only read along.", channel);
    } else {
        return true;
    }
    return false;
}

void Session::say(std::u16string_view target, std::u16string_view text, long long now) {
    now_ = now;
    talk(target, text, false);
    deliver();
}

void Session::act(std::u16string_view target, std::u16string_view text, long long now) {
    now_ = now;
    talk(target, text, true);
    deliver();
}

void Session::talk(std::u16string_view target, std::u16string_view text, bool action) {
    if (!readyToSend(target)) {
        return;
    }
    const std::string name = network_.nameOf(target);
    const std::size_t room = network_.roomFor(name);
    const std::vector<std::string> pieces = piecesOf(text, action ? room - action_word.size() - 2 : room);
    if (pieces.size() > outbox_.room()) {
        tellUser(u"Not sent: these are too many lines at a time.", target);
        return;
    }
    for (const std::string& piece : pieces) {
        const std::string body = action ? "\x01" + std::string(action_word) + piece + "\x01" : piece;
        std::optional<Echo> echo;
        if (!handshake_.hasEcho()) {
            echo = Echo{name, murmelix::fromUtf8(piece), action};
        }
        queue(formatLine({"PRIVMSG", name, body}), std::move(echo));
    }
}

void Session::join(const std::vector<std::u16string>& channels, long long now) {
    now_ = now;
    std::vector<std::string> names;
    for (const std::u16string& channel : channels) {
        const bool twitch = settings_.address.dialect == Dialect::twitch;
        const std::string name = murmelix::toUtf8(twitch ? murmelix::toLower(channel) : channel);
        if (!network_.features().isChannel(name) || name.size() > longest_channel || !formatLine({"JOIN", name, ""}) ||
            name.find(',') != std::string::npos) {
            tellUser(u"A channel looks like #name, without blanks.");
        } else if (wanted_.size() >= most_channels) {
            tellUser(u"These are more channels than one can be in.");
        } else if (!network_.isIn(name)) {
            names.push_back(name);
            forgetWish(name);
            wanted_.push_back(name);
        }
    }
    if (state_ == State::online) {
        joinAll(names);
    }
    deliver();
}

void Session::joinAll(const std::vector<std::string>& channels) {
    for (std::size_t at = 0; at < channels.size();) {
        std::string names;
        for (std::size_t count = 0; at < channels.size() && count < joined_at_once; ++count, ++at) {
            const std::string more = names.empty() ? channels[at] : names + "," + channels[at];
            if (!names.empty() && !formatLine({"JOIN", more})) {
                break;
            }
            names = more;
        }
        queue(formatLine({"JOIN", names}));
    }
}

void Session::forgetWish(std::string_view channel) {
    std::erase_if(wanted_, [&](const std::string& wanted) { return network_.sameName(wanted, channel); });
}

void Session::part(std::u16string_view channel, std::u16string_view why, long long now) {
    now_ = now;
    const std::string name = network_.nameOf(channel);
    forgetWish(name);
    if (state_ == State::online) {
        const std::string reason = firstPieceOf(why, longest_reason);
        queue(reason.empty() ? formatLine({"PART", name}) : formatLine({"PART", name, reason}));
    }
    deliver();
}

void Session::nick(std::u16string_view nick, long long now) {
    now_ = now;
    if (readyToSend({})) {
        wished_nick_ = nick;
        queue(formatLine({"NICK", murmelix::toUtf8(nick)}));
    }
    deliver();
}

void Session::away(std::u16string_view why, long long now) {
    now_ = now;
    if (readyToSend({})) {
        const std::string reason = firstPieceOf(why, longest_reason);
        queue(reason.empty() ? formatLine({"AWAY"}) : formatLine({"AWAY", reason}));
    }
    deliver();
}

void Session::quote(std::u16string_view line, long long now) {
    now_ = now;
    if (readyToSend({})) {
        queue(formatRawLine(murmelix::toUtf8(line)));
    }
    deliver();
}

void Session::queue(std::optional<std::string> line, std::optional<Echo> echo) {
    if (!line) {
        tellUser(u"Not sent: that makes no line that a server takes.");
    } else if (outbox_.room() == 0) {
        tellUser(u"Not sent: too many lines wait already.");
    } else {
        outbox_.add({std::move(*line), std::move(echo)});
        sendDue();
    }
}

void Session::sendDue() {
    while (state_ == State::online) {
        const auto line = outbox_.next(now_);
        if (!line) {
            return;
        }
        hooks_.send(line->bytes);
        if (line->echo) {
            network_.echo(*line->echo);
        }
    }
}

void Session::sendAtOnce(std::initializer_list<std::string_view> parts) {
    if (const auto line = formatLine(parts)) {
        hooks_.send(*line);
    }
}

} // namespace messenger_client::irc
