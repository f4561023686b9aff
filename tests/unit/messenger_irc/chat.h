// A session with a server that is a script: its lines go in, and what the session sends and tells is looked at.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/text.h"
#include "companions/messenger/irc/session.h"
#include "tests/unit/messenger_irc/told.h"

namespace messenger_client::irc {

inline Settings ircSettings() {
    return {.address = {.host = u"irc.example.org", .channels = {u"#room"}}, .nick = u"me"};
}

inline Settings twitchSettings() {
    return {.address = {.dialect = Dialect::twitch, .host = std::u16string(twitch_host), .channels = {u"#room"}}};
}

class Chat {
  public:
    explicit Chat(Settings settings = ircSettings())
        : session(std::move(settings), {.open =
                                            [this] {
                                                ++opened;
                                                if (connect_at_once) {
                                                    session.connected(now);
                                                }
                                            },
                                        .send = [this](std::string_view bytes) { sent_ += bytes; },
                                        .close = [this] { ++closed; },
                                        .tell =
                                            [this](const Event& event) {
                                                if (recording) {
                                                    told_.push_back(describe(event));
                                                    events.push_back(event);
                                                }
                                                if (on_event) {
                                                    on_event(event);
                                                }
                                            },
                                        .random = [this] { return random; }}) {}

    // What was sent since the last call, line by line, without the ends.
    std::vector<std::string> sent() {
        std::vector<std::string> lines;
        std::string all = std::exchange(sent_, {});
        for (std::size_t end; (end = all.find("\r\n")) != std::string::npos; all.erase(0, end + 2)) {
            lines.push_back(all.substr(0, end));
        }
        if (!all.empty()) {
            lines.push_back("unfinished: " + all);
        }
        return lines;
    }
    // What was told since the last call.
    std::vector<std::string> told() { return std::exchange(told_, {}); }

    void connect() {
        session.start(now);
        session.connected(now);
    }
    void server(std::string_view line) { session.received(std::string(line) + "\r\n", now); }
    // To the end of the registration, on a server without capabilities.
    void welcome(std::string_view nick = "me", std::string_view features = "") {
        server(":irc.example.org 001 " + std::string(nick) + " :Welcome");
        if (!features.empty()) {
            server(":irc.example.org 005 " + std::string(nick) + " " + std::string(features) + " :are supported");
        }
        server(":irc.example.org 376 " + std::string(nick) + " :End of MOTD");
    }
    // Online, in #room with ann, who is an operator, and bob; of what was sent and told until then nothing is left.
    void enter(std::string_view features = "") {
        connect();
        welcome("me", features);
        pass(sent_interval); // so that a whole burst is there
        server(":me!user@host JOIN #room");
        server(":irc.example.org 353 me = #room :me @ann bob");
        server(":irc.example.org 366 me #room :End");
        sent();
        told();
        events.clear();
    }
    // Lets time pass, with every tick that is due.
    void pass(long long milliseconds) {
        const long long end = now + milliseconds;
        for (auto due = session.nextTick(); due && *due <= end; due = session.nextTick()) {
            now = std::max(now, *due);
            session.tick(now);
        }
        now = end;
    }

    long long now = 1'000'000;
    std::uint32_t random = 0;
    int opened = 0, closed = 0;
    bool recording = true; // what is told
    bool connect_at_once = false;
    std::function<void(const Event&)> on_event;
    std::vector<Event> events;
    Session session;

  private:
    std::string sent_;
    std::vector<std::string> told_;
};

} // namespace messenger_client::irc
