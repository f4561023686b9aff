#include "companions/messenger/irc/session.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

// What is taken at a time, so that much at once does not need as much memory again.
constexpr std::size_t portion = 16 * 1024;

// Answers to PING, and to programs that ask for one's own: more at a time nobody needs.
constexpr int answers_at_once = 20, requests_at_once = 1;
constexpr long long answer_interval = 100, request_interval = 10'000;

// Shorter secrets are not looked for in sentences: they would be found in half of all words.
constexpr std::size_t shortest_secret = 3;

// What may stand before a token of the streaming chat.
constexpr std::u16string_view token_prefix = u"oauth:";

constexpr std::string_view ping_word = "still-there";

} // namespace

// What concerns the session itself. Everything is read by the network besides.
Session::Handler Session::handlerOf(std::string_view command) {
    static const std::unordered_map<std::string_view, Handler> handlers{
        {"001", &Session::onWelcome},
        {"376", &Session::onEndOfGreeting},
        {"422", &Session::onEndOfGreeting},
        {"432", &Session::onNickUnusable},
        {"433", &Session::onNickTaken},
        {"436", &Session::onNickTaken},
        {"437", &Session::onNickTaken},
        {"464", &Session::onNotAllowed},
        {"465", &Session::onNotAllowed},
        {"902", &Session::onSaslFailed},
        {"903", &Session::onSaslDone},
        {"904", &Session::onSaslFailed},
        {"905", &Session::onSaslFailed},
        {"906", &Session::onSaslFailed},
        {"907", &Session::onSaslFailed},
        {"AUTHENTICATE", &Session::onAuthenticate},
        {"CAP", &Session::onCap},
        {"ERROR", &Session::onError},
        {"NOTICE", &Session::onNotice},
        {"PING", &Session::onPing},
        {"PRIVMSG", &Session::onPrivateMessage},
        {"RECONNECT", &Session::onReconnect},
    };
    const auto found = handlers.find(command);
    return found == handlers.end() ? nullptr : found->second;
}

Session::Session(Settings settings, Hooks hooks)
    : settings_(std::move(settings)), hooks_(std::move(hooks)),
      network_(settings_.address, [this](Event event) { learn(std::move(event)); }),
      handshake_(
          settings_, [this](std::initializer_list<std::string_view> parts) { sendAtOnce(parts); },
          [this](std::u16string sentence) { tellUser(std::move(sentence)); }, hooks_.random),
      outbox_(Pace(sent_burst, settings_.address.dialect == Dialect::twitch ? sent_interval_twitch : sent_interval)),
      answers_(answers_at_once, answer_interval), requests_(requests_at_once, request_interval) {
    for (const std::u16string& channel : settings_.address.channels) {
        wanted_.push_back(murmelix::toUtf8(channel));
    }
}

void Session::start(long long now) {
    if (state_ == State::idle || state_ == State::refused) {
        reconnectNow(now);
    }
}

void Session::reconnectNow(long long now) {
    now_ = now;
    failures_ = 0;
    if (isConnected() || state_ == State::connecting) {
        forgetConnection();
        hooks_.close();
    }
    beginConnecting();
    deliver();
}

void Session::beginConnecting() {
    state_ = State::connecting;
    deadline_ = now_ + longest_connecting;
    learn(event::Connecting{});
    hooks_.open();
}

void Session::connected(long long now) {
    if (state_ != State::connecting) {
        return;
    }
    now_ = now;
    state_ = State::registering;
    deadline_ = now_ + longest_registration;
    heard_ = now_;
    welcomed_ = false;
    network_.begin();
    learn(event::Registering{});
    if (!handshake_.begin()) {
        refuse(u"A nick has no blanks, and does not begin with a colon.");
    }
    deliver();
}

void Session::received(std::string_view bytes, long long now) {
    if (!isConnected()) {
        return;
    }
    now_ = now;
    heard_ = now;
    pinged_.reset();
    // A line can end the connection, and so can who is told of it: then the reader is empty, and the rest is nobody's.
    const std::uint64_t connection = connection_;
    while (!bytes.empty() && connection == connection_) {
        reader_.feed(bytes.substr(0, portion));
        bytes.remove_prefix(std::min(portion, bytes.size()));
        while (const auto line = reader_.next()) {
            take(*line);
            deliver();
        }
    }
}

void Session::take(std::string_view line) {
    const Message message(line);
    const std::uint64_t connection = connection_;
    if (const Handler handler = handlerOf(message.command())) {
        (this->*handler)(message);
    }
    if (connection == connection_) {
        network_.read(message, now_);
    }
}

void Session::lost(std::u16string_view why, long long now) {
    if (isConnected() || state_ == State::connecting) {
        now_ = now;
        giveUp(std::u16string(why));
        deliver();
    }
}

void Session::failed(std::u16string_view why, long long now) {
    if (isConnected() || state_ == State::connecting) {
        now_ = now;
        refuse(std::u16string(why));
        deliver();
    }
}

void Session::quit(std::u16string_view why, long long now) {
    now_ = now;
    if (state_ == State::idle) {
        return;
    }
    const bool open = isConnected() || state_ == State::connecting;
    if (isConnected()) {
        sendAtOnce({"QUIT", firstPieceOf(why, longest_reason)});
    }
    forgetConnection();
    state_ = State::idle;
    if (open) {
        hooks_.close();
    }
    learn(event::Ended{});
    deliver();
}

void Session::giveUp(std::u16string why) {
    if (online_since_ && now_ - *online_since_ >= lasting_connection) {
        failures_ = 0;
    }
    forgetConnection();
    state_ = State::waiting;
    hooks_.close();
    long long pause = shortest_pause;
    for (int i = 0; i < failures_ && pause < longest_pause; ++i) {
        pause *= 2;
    }
    pause = std::min(pause, longest_pause);
    pause += hooks_.random() % (pause / 4 + 1);
    ++failures_;
    deadline_ = now_ + pause;
    learn(event::Lost{std::move(why), deadline_});
}

void Session::refuse(std::u16string why) {
    forgetConnection();
    state_ = State::refused;
    hooks_.close();
    learn(event::Refused{std::move(why)});
}

void Session::forgetConnection() {
    ++connection_;
    reader_.clear();
    network_.end();
    pinged_.reset();
    online_since_.reset();
    if (outbox_.size() > 0) {
        const std::u16string count = murmelix::toText(static_cast<long long>(outbox_.size()));
        tellUser((outbox_.size() == 1 ? u"One line was" : count + u" lines were") +
                 u" not sent: the connection ended before.");
        outbox_.clear();
    }
}

void Session::tick(long long now) {
    now_ = now;
    switch (state_) {
    case State::idle:
    case State::refused:
        return;
    case State::waiting:
        if (now >= deadline_) {
            beginConnecting();
        }
        break;
    case State::connecting:
        if (now >= deadline_) {
            giveUp(u"The server cannot be reached: it does not answer.");
        }
        break;
    case State::registering:
        if (now >= deadline_) {
            giveUp(u"The server does not let anybody in: it did not answer for a minute.");
        }
        break;
    case State::online:
        if (pinged_ && now >= *pinged_ + silence_after_ping) {
            giveUp(u"The server has become silent.");
        } else if (!pinged_ && now >= heard_ + silence_before_ping) {
            pinged_ = now;
            sendAtOnce({"PING", ping_word});
        }
        sendDue();
    }
    deliver();
}

std::optional<long long> Session::nextTick() const {
    switch (state_) {
    case State::idle:
    case State::refused:
        return std::nullopt;
    case State::waiting:
    case State::connecting:
    case State::registering:
        return deadline_;
    case State::online:
        break;
    }
    const long long alive = pinged_ ? *pinged_ + silence_after_ping : heard_ + silence_before_ping;
    return std::min(alive, outbox_.due().value_or(alive));
}

void Session::onCap(const Message& message) {
    handshake_.onCapabilities(message);
}

void Session::onAuthenticate(const Message& message) {
    handshake_.onAuthenticate(message);
}

void Session::onSaslDone(const Message&) {
    handshake_.saslDone();
}

void Session::onSaslFailed(const Message& message) {
    // 907 says that one is signed in already.
    if (message.command() == "907") {
        handshake_.saslDone();
    } else if (handshake_.isAuthenticating()) {
        refuse(u"The server does not accept the account’s name or password: " + plainText(decoded(message.last())));
    }
}

void Session::onWelcome(const Message& message) {
    if (state_ == State::registering) {
        welcomed_ = true;
        handshake_.welcomed();
        network_.welcome(message);
    }
}

void Session::onEndOfGreeting(const Message&) {
    if (state_ != State::registering || !welcomed_ || !network_.me()) {
        return;
    }
    state_ = State::online;
    online_since_ = now_;
    network_.settle();
    learn(event::Online{network_.me(), network_.name(), !handshake_.isAnonymous()});
    // A server that keeps one's connections knows already where one is.
    std::vector<std::string> missing;
    std::copy_if(wanted_.begin(), wanted_.end(), std::back_inserter(missing),
                 [&](const std::string& channel) { return !network_.isIn(channel); });
    joinAll(missing);
}

void Session::onNickTaken(const Message&) {
    if (state_ == State::registering && !handshake_.takeOtherNick()) {
        giveUp(u"The nick is in use, and so are others like it.");
    }
}

void Session::onNickUnusable(const Message& message) {
    if (state_ == State::registering) {
        refuse(u"The server does not take this nick: " + plainText(decoded(message.last())));
    }
}

void Session::onNotAllowed(const Message& message) {
    if (state_ == State::registering) {
        refuse(u"The server does not let you in: " + plainText(decoded(message.last())));
    }
}

void Session::onPing(const Message& message) {
    if (answers_.take(now_)) {
        sendAtOnce({"PONG", message.parameter(0)});
    }
}

void Session::onError(const Message& message) {
    giveUp(u"The server has ended the connection: " + plainText(decoded(message.last())));
}

void Session::onReconnect(const Message&) {
    if (settings_.address.dialect == Dialect::twitch) {
        giveUp(u"The server wants to be connected to again.");
    }
}

// The streaming chat has no number for a wrong token.
void Session::onNotice(const Message& message) {
    const bool twitch = settings_.address.dialect == Dialect::twitch;
    if (!twitch || state_ != State::registering || welcomed_ || message.parameter(0) != "*") {
        return;
    }
    refuse(u"The server does not accept the name or the token: " + plainText(decoded(message.last())));
}

void Session::onPrivateMessage(const Message& message) {
    const auto request = requestIn(message.last());
    if (!request || state_ != State::online || !network_.isMe(message.parameter(0)) ||
        network_.isMe(message.prefix().nick) || message.prefix().user.empty() ||
        settings_.address.dialect == Dialect::twitch) {
        return;
    }
    std::string answer;
    if (request->command == "VERSION" && !settings_.program.empty()) {
        answer = "VERSION " + murmelix::toUtf8(settings_.program);
    } else if (request->command == "PING") {
        answer = "PING " + std::string(request->argument);
    }
    if (!answer.empty() && requests_.take(now_)) {
        sendAtOnce({"NOTICE", message.prefix().nick, '\x01' + answer + '\x01'});
    }
}

void Session::learn(Event event) {
    if (auto* left = std::get_if<event::ChannelLeft>(&event)) {
        forgetWish(network_.nameOf(left->channel));
        left->why = withoutSecrets(std::move(left->why));
    } else if (const auto* renamed = std::get_if<event::Renamed>(&event)) {
        // The next connection begins with the nick that the user has taken, not with one that a server has given.
        if (renamed->person == network_.me() && renamed->person->nick == wished_nick_) {
            settings_.nick = wished_nick_;
        }
    } else if (auto* told = std::get_if<event::Told>(&event)) {
        told->text = withoutSecrets(std::move(told->text));
    } else if (auto* lost = std::get_if<event::Lost>(&event)) {
        lost->why = withoutSecrets(std::move(lost->why));
    } else if (auto* refused = std::get_if<event::Refused>(&event)) {
        refused->why = withoutSecrets(std::move(refused->why));
    }
    events_.push_back(std::move(event));
}

void Session::tellUser(std::u16string text, std::u16string_view channel) {
    learn(event::Told{std::u16string(channel), std::move(text)});
}

// A server may repeat what it was sent.
std::u16string Session::withoutSecrets(std::u16string text) const {
    const bool prefixed = settings_.password.starts_with(token_prefix);
    for (const std::u16string& secret :
         {settings_.password.substr(prefixed ? token_prefix.size() : 0), settings_.server_password}) {
        if (secret.size() >= shortest_secret) {
            text = murmelix::replaceAll(text, secret, u"…", murmelix::LetterCase::ignored);
        }
    }
    return text;
}

void Session::deliver() {
    if (std::exchange(delivering_, true)) {
        return;
    }
    struct Done {
        bool& delivering;
        ~Done() { delivering = false; }
    } done{delivering_};
    while (!events_.empty()) {
        const Event event = std::move(events_.front());
        events_.pop_front();
        hooks_.tell(event);
    }
}

} // namespace messenger_client::irc
