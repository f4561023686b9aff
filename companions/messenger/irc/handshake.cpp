#include "companions/messenger/irc/handshake.h"

#include <algorithm>
#include <array>

#include "common/text.h"
#include "companions/messenger/irc/cutting.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::array<std::string_view, 14> capabilities{
    "message-tags",  "server-time", "echo-message",      "multi-prefix", "away-notify", "account-tag", "account-notify",
    "extended-join", "chghost",     "userhost-in-names", "setname",      "cap-notify",  "batch",       "sasl",
};
constexpr std::size_t echo_message = 2, sasl = 13;

// UTF-16 units of the name for others to see: with it and the longest nick its line is not too long.
constexpr std::size_t longest_real_name = 64;

// Pieces of what AUTHENTICATE sends.
constexpr std::size_t longest_piece = 400;

// A nick that everybody may have who reads along in the streaming chat.
constexpr std::string_view anonymous_nick = "justinfan";
constexpr std::uint32_t least_anonymous = 10'000, anonymous_count = 90'000;

// What the oldest servers take.
constexpr std::size_t short_nick = 6;

// Calls `use` with the number of each capability that is known, and its value.
template <class Use>
void forEachCapability(std::string_view names, Use use) {
    for (std::string_view name = takeWord(names); !name.empty(); name = takeWord(names)) {
        const std::string_view key = name.substr(0, name.find('='));
        const auto found = std::find(capabilities.begin(), capabilities.end(), key);
        if (found != capabilities.end()) {
            name.remove_prefix(std::min(key.size() + 1, name.size()));
            use(static_cast<std::size_t>(found - capabilities.begin()), name);
        }
    }
}

// Whether a list parted by commas holds the mechanism; a server that lists none has it.
bool hasPlain(std::string_view mechanisms) {
    for (std::string_view rest = mechanisms; !rest.empty();) {
        const std::string_view one = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
        if (one == "PLAIN") {
            return true;
        }
    }
    return mechanisms.empty();
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
        const auto byte = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
        const unsigned three = byte(0) << 16 | byte(1) << 8 | byte(2);
        text += digits[three >> 18];
        text += digits[three >> 12 & 63];
        text += bytes.size() > 1 ? digits[three >> 6 & 63] : '=';
        text += bytes.size() > 2 ? digits[three & 63] : '=';
    }
    return text;
}

std::string withoutPrefix(std::string_view text, std::string_view prefix) {
    return std::string(text.substr(text.starts_with(prefix) ? prefix.size() : 0));
}

} // namespace

Handshake::Handshake(const Settings& settings, Send send, Tell tell, std::function<std::uint32_t()> random)
    : settings_(settings), send_(std::move(send)), tell_(std::move(tell)), random_(std::move(random)) {
    static_assert(capabilities.size() == capability_count);
}

bool Handshake::mayUsePassword() const {
    return settings_.address.tls || settings_.password_in_the_clear;
}

bool Handshake::hasEcho() const {
    return enabled_[echo_message];
}

bool Handshake::begin() {
    nicks_ = lists_ = 0;
    offered_ = pending_ = asked_one_by_one_ = enabled_ = {};
    plain_ = true;
    anonymous_ = false;
    const bool has_password = !settings_.password.empty() || !settings_.server_password.empty();
    if (has_password && !mayUsePassword()) {
        tell_(u"The password was not sent, because the connection is not encrypted.");
    }
    if (settings_.address.dialect == Dialect::twitch) {
        beginTwitch();
        return true;
    }
    return beginIrc();
}

bool Handshake::beginIrc() {
    nick_ = murmelix::toUtf8(settings_.nick);
    const std::u16string& shown = settings_.real_name.empty() ? settings_.nick : settings_.real_name;
    const std::string real_name = murmelix::toUtf8(plainName(murmelix::toUtf8(shown), longest_real_name));
    if (!formatLine({"NICK", nick_, ""}) || !formatLine({"USER", nick_, "0", "*", real_name})) {
        return false;
    }
    step_ = Step::listing;
    send_({"CAP", "LS", "302"});
    if (!settings_.server_password.empty() && mayUsePassword()) {
        send_({"PASS", murmelix::toUtf8(settings_.server_password)});
    }
    send_({"NICK", nick_});
    send_({"USER", nick_, "0", "*", real_name});
    return true;
}

void Handshake::beginTwitch() {
    step_ = Step::done;
    send_({"CAP", "REQ", "twitch.tv/tags twitch.tv/commands"});
    anonymous_ = settings_.password.empty() || !mayUsePassword() || settings_.nick.empty();
    if (anonymous_) {
        nick_ = std::string(anonymous_nick) + std::to_string(least_anonymous + random_() % anonymous_count);
    } else {
        nick_ = murmelix::toUtf8(murmelix::toLower(settings_.nick));
        send_({"PASS", "oauth:" + withoutPrefix(murmelix::toUtf8(settings_.password), "oauth:")});
    }
    send_({"NICK", nick_});
}

void Handshake::onCapabilities(const Message& message) {
    const std::string_view answer = message.parameter(1);
    if (settings_.address.dialect == Dialect::twitch) {
        return; // what was asked for is there, and else the chat can be read all the same
    }
    if (answer == "LS") {
        list(message);
    } else if (answer == "ACK" || answer == "NAK") {
        answered(message.last(), answer == "ACK");
    } else if (answer == "NEW") {
        added(message.last());
    } else if (answer == "DEL") {
        forEachCapability(message.last(),
                          [&](std::size_t capability, std::string_view) { enabled_.reset(capability); });
    }
}

void Handshake::list(const Message& message) {
    if (step_ != Step::listing) {
        return;
    }
    forEachCapability(message.last(), [&](std::size_t capability, std::string_view value) {
        offered_.set(capability);
        if (capability == sasl) {
            plain_ = hasPlain(value);
        }
    });
    const bool continued = message.parameters().size() > 3 && message.parameter(2) == "*";
    if (continued && ++lists_ < most_capability_lines) {
        return;
    }
    const bool wants_account = !settings_.password.empty() && mayUsePassword();
    if (wants_account && !(offered_[sasl] && plain_)) {
        tell_(u"The server does not take the account’s password: going on without the account.");
    }
    Capabilities wanted = offered_;
    wanted.set(sasl, wants_account && offered_[sasl] && plain_);
    step_ = Step::requesting;
    request(wanted);
    requested();
}

void Handshake::request(const Capabilities& wanted) {
    std::string names;
    for (std::size_t i = 0; i < capabilities.size(); ++i) {
        if (wanted[i]) {
            names += names.empty() ? "" : " ";
            names += capabilities[i];
        }
    }
    pending_ |= wanted;
    if (!names.empty()) {
        send_({"CAP", "REQ", names});
    }
}

void Handshake::answered(std::string_view names, bool granted) {
    Capabilities answer;
    forEachCapability(names, [&](std::size_t capability, std::string_view) { answer.set(capability); });
    answer &= pending_;
    pending_ &= ~answer;
    if (granted) {
        enabled_ |= answer;
    } else if (answer.count() > 1) {
        // One of them is refused, the others may be good: each for itself, once.
        for (std::size_t i = 0; i < capabilities.size(); ++i) {
            if (answer[i] && !asked_one_by_one_[i]) {
                asked_one_by_one_.set(i);
                request(Capabilities().set(i));
            }
        }
    }
    requested();
}

// A server that learns something new while one is connected. Each is asked for once: a server that takes it back and
// offers it again would have a line for each of its own.
void Handshake::added(std::string_view names) {
    Capabilities wanted;
    forEachCapability(names, [&](std::size_t capability, std::string_view) {
        wanted.set(capability, capability != sasl && !enabled_[capability] && !asked_one_by_one_[capability]);
    });
    if (step_ == Step::done && wanted.any()) {
        asked_one_by_one_ |= wanted;
        request(wanted);
    }
}

void Handshake::requested() {
    if (step_ != Step::requesting || pending_.any()) {
        return;
    }
    if (enabled_[sasl]) {
        step_ = Step::mechanism;
        send_({"AUTHENTICATE", "PLAIN"});
    } else {
        end();
    }
}

void Handshake::onAuthenticate(const Message& message) {
    // Once a connection, and only where it was asked for: a server does not get the password by asking again.
    if (step_ == Step::mechanism && message.parameter(0) == "+") {
        step_ = Step::password;
        sendPassword();
    }
}

void Handshake::sendPassword() {
    const std::string account = murmelix::toUtf8(settings_.account.empty() ? settings_.nick : settings_.account);
    const std::string whole = base64(account + '\0' + account + '\0' + murmelix::toUtf8(settings_.password));
    for (std::size_t at = 0; at < whole.size(); at += longest_piece) {
        send_({"AUTHENTICATE", std::string_view(whole).substr(at, longest_piece)});
    }
    if (whole.size() % longest_piece == 0) {
        send_({"AUTHENTICATE", "+"});
    }
}

void Handshake::saslDone() {
    if (isAuthenticating()) {
        end();
    }
}

void Handshake::end() {
    step_ = Step::done;
    send_({"CAP", "END"});
}

bool Handshake::takeOtherNick() {
    if (++nicks_ >= most_nicks) {
        return false;
    }
    if (nicks_ <= 2) {
        nick_ += '_';
    } else {
        std::size_t length = std::min(nick_.size(), short_nick);
        while (length > 0 && length < nick_.size() && (static_cast<unsigned char>(nick_[length]) & 0xC0) == 0x80) {
            --length;
        }
        nick_ = nick_.substr(0, length) + std::to_string(100 + random_() % 900);
    }
    send_({"NICK", nick_});
    return true;
}

} // namespace messenger_client::irc
