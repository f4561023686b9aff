// A session with a chat server, from the first connection to the last: signing in, staying connected, channels, and
// what is said there. It has no socket and no clock: bytes and times (milliseconds since any moment) come in, bytes and
// events go out. What a server sends is never trusted; nothing is sent that the user has not caused, but what keeps the
// session going: registration, answers to PING, own ones, joining again, and rarely the program's name to who asks.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/irc/event.h"
#include "companions/messenger/irc/handshake.h"
#include "companions/messenger/irc/line.h"
#include "companions/messenger/irc/network.h"
#include "companions/messenger/irc/outbox.h"
#include "companions/messenger/irc/settings.h"

namespace messenger_client::irc {

// From connecting to the connection, and from there to the end of the registration.
inline constexpr long long longest_connecting = 60'000, longest_registration = 60'000;
// Without a word the server is asked, without an answer the connection is dead.
inline constexpr long long silence_before_ping = 90'000, silence_after_ping = 60'000;
// Before connecting again: doubled each time, and up to a quarter more by chance, so that a server that comes back does
// not meet all its clients at once. A connection that lasted that long starts anew with the shortest one.
inline constexpr long long shortest_pause = 2'000, longest_pause = 300'000, lasting_connection = 60'000;
// The user's lines in a burst, and then one in so many milliseconds.
inline constexpr int sent_burst = 5;
inline constexpr long long sent_interval = 500;
// The streaming chat mutes who sends more than 20 lines in 30 seconds.
inline constexpr long long sent_interval_twitch = 2'000;

// Bytes of why the user leaves or goes away: as long as servers let them be, and with a channel's name still a line.
inline constexpr std::size_t longest_reason = 255;

enum class State {
    idle,        // not started, or ended by the user
    connecting,  // the caller's open() is at work
    registering, // connected, not yet welcome
    online,
    waiting, // for the next attempt
    refused, // for good
};

class Session {
  public:
    // None of them may destroy the session. tell() is called when the session has done its work: it may do anything
    // else. open() is answered by connected(), lost() or failed(); after close(), which may be for a connection that is
    // lost already, nothing of that connection is told any more, but what was sent still goes out where it can.
    struct Hooks {
        std::function<void()> open; // a connection to settings.address
        std::function<void(std::string_view bytes)> send;
        std::function<void()> close;
        std::function<void(const Event&)> tell;
        std::function<std::uint32_t()> random; // any number
    };

    Session(Settings settings, Hooks hooks);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    State state() const { return state_; }
    // Null before the first Online.
    PersonPtr me() const { return network_.me(); }
    const Network& network() const { return network_; }

    void start(long long now);
    // At once, where one waits or was refused; a connection that is there is given up for a new one.
    void reconnectNow(long long now);
    void quit(std::u16string_view why, long long now);

    // Of the connection. Calls that do not fit the state are ignored: the connection was given up meanwhile.
    void connected(long long now);
    void received(std::string_view bytes, long long now);
    // `why` is a sentence for people. A connection that cannot come about by trying again has failed: its certificate
    // is not good.
    void lost(std::u16string_view why, long long now);
    void failed(std::u16string_view why, long long now);

    // To be called at the time that nextTick() tells, or later; earlier does no harm.
    void tick(long long now);
    std::optional<long long> nextTick() const;

    // The user's deeds. What cannot be done is told with a sentence. A target is a channel or a nick; long texts become
    // several lines. What is sent is told as Said: by the server where it does so, else when it leaves.
    void say(std::u16string_view target, std::u16string_view text, long long now);
    void act(std::u16string_view target, std::u16string_view text, long long now);
    void join(const std::vector<std::u16string>& channels, long long now);
    void part(std::u16string_view channel, std::u16string_view why, long long now);
    void nick(std::u16string_view nick, long long now);
    void away(std::u16string_view why, long long now); // an empty text ends it
    void quote(std::u16string_view line, long long now);

  private:
    // See session.cpp.
    using Handler = void (Session::*)(const Message&);
    static Handler handlerOf(std::string_view command);

    void take(std::string_view line);
    void onCap(const Message& message);
    void onAuthenticate(const Message& message);
    void onSaslDone(const Message& message);
    void onSaslFailed(const Message& message);
    void onWelcome(const Message& message);
    void onEndOfGreeting(const Message& message);
    void onNickTaken(const Message& message);
    void onNickUnusable(const Message& message);
    void onNotAllowed(const Message& message);
    void onPing(const Message& message);
    void onError(const Message& message);
    void onReconnect(const Message& message);
    void onNotice(const Message& message);
    void onPrivateMessage(const Message& message);

    void beginConnecting();
    void giveUp(std::u16string why); // this connection, and try again
    void refuse(std::u16string why);
    void forgetConnection();
    bool isConnected() const { return state_ == State::registering || state_ == State::online; }

    void talk(std::u16string_view target, std::u16string_view text, bool action);
    bool readyToSend(std::u16string_view channel);
    void queue(std::optional<std::string> line, std::optional<Echo> echo = std::nullopt);
    void sendDue();
    void sendAtOnce(std::initializer_list<std::string_view> parts);
    void joinAll(const std::vector<std::string>& channels);
    void forgetWish(std::string_view channel);
    void learn(Event event);
    void tellUser(std::u16string text, std::u16string_view channel = {});
    std::u16string withoutSecrets(std::u16string text) const;
    void deliver();

    Settings settings_;
    Hooks hooks_;
    State state_ = State::idle;
    long long now_ = 0;
    std::uint64_t connection_ = 0; // counted, so that what follows in a loop sees that it has changed
    LineReader reader_;
    std::deque<Event> events_;
    bool delivering_ = false;
    Network network_;
    Handshake handshake_;
    Outbox outbox_;
    Pace answers_, requests_;
    std::vector<std::string> wanted_; // channels to be in, as sent
    std::u16string wished_nick_;      // asked for last

    long long deadline_ = 0; // of connecting, registering or waiting
    long long heard_ = 0;    // the last word of the server
    std::optional<long long> pinged_;
    bool welcomed_ = false; // on this connection
    std::optional<long long> online_since_;
    int failures_ = 0; // one after the other
};

} // namespace messenger_client::irc
