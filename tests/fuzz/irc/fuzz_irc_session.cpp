// Any server. The first byte says how one signs in; what follows is what the server sends. Between its lines a byte
// 0xFF is followed by one that says what happens otherwise: time passes, the connection breaks.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "common/text.h"
#include "companions/messenger/irc/session.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace messenger_client::irc;

constexpr std::string_view secret = "hunter2secret";

bool isOfSecret(char sign) {
    return secret.find(sign) != std::string_view::npos;
}

Settings settingsOf(std::uint8_t byte) {
    Settings settings{.address = {.host = u"irc.example.org", .channels = {u"#room", u"#b"}}, .nick = u"me"};
    settings.address.tls = (byte & 1) != 0;
    settings.address.dialect = (byte & 2) != 0 ? Dialect::twitch : Dialect::irc;
    if ((byte & 4) != 0) {
        settings.password = murmelix::fromUtf8(secret);
        settings.server_password = settings.password;
    }
    settings.password_in_the_clear = (byte & 8) != 0;
    settings.program = u"Messenger";
    return settings;
}

// Lines that a session sends by itself.
bool isOwnLine(std::string_view line) {
    constexpr std::array<std::string_view, 10> own{"CAP LS 302",       "CAP REQ ",      "CAP END", "NICK ",
                                                   "USER me 0 * me",   "AUTHENTICATE ", "PASS ",   "PONG ",
                                                   "PING still-there", "NOTICE "};
    const bool request = line.starts_with("NOTICE ");
    if (request && (line.find(" :\x01") == std::string_view::npos && line.find(" \x01") == std::string_view::npos)) {
        return false;
    }
    return line == "JOIN #room,#b" || line == "JOIN #room" || line == "JOIN #b" ||
           std::any_of(own.begin(), own.end(), [&](std::string_view begin) { return line.starts_with(begin); });
}

class World {
  public:
    explicit World(const Settings& settings)
        : has_secret_(!settings.password.empty()),
          may_send_secret_(settings.address.tls || settings.password_in_the_clear),
          session_(settings,
                   {.open = [this] { require(!open_, "one connection at a time"), open_ = true; },
                    .send = [this](std::string_view bytes) { check(bytes); },
                    .close = [this] { open_ = false; },
                    .tell = [this](const Event& event) { std::visit([this](const auto& e) { look(e); }, event); },
                    .random = [this] { return random_ = random_ * 1664525U + 1013904223U; }}) {}

    void run(std::string_view bytes) {
        session_.start(now_);
        session_.connected(now_);
        while (!bytes.empty()) {
            const std::string_view said = bytes.substr(0, bytes.find('\xFF'));
            std::copy_if(said.begin(), said.end(), std::back_inserter(heard_), isOfSecret);
            session_.received(said, now_);
            bytes.remove_prefix(std::min(said.size() + 1, bytes.size()));
            if (!bytes.empty()) {
                happen(static_cast<std::uint8_t>(bytes.front()));
                bytes.remove_prefix(1);
            }
            require(session_.network().knownPeople() <= most_people, "people are bounded");
        }
        session_.quit(u"", now_);
        require(!open_, "the end closes the connection");
    }

  private:
    void happen(std::uint8_t what) {
        switch (what % 4) {
        case 0:
            break; // bytes that come in two portions
        case 1:
            now_ += what * 100LL;
            session_.tick(now_);
            break;
        case 2:
            open_ = false;
            session_.lost(u"Closed.", now_);
            break;
        default:
            if (const auto due = session_.nextTick()) {
                now_ = std::max(now_, *due);
                session_.tick(now_);
            }
            session_.connected(now_);
        }
    }

    void check(std::string_view bytes) {
        require(open_, "nothing is sent without a connection");
        require(bytes.size() > 2 && bytes.size() <= longest_sent_line && bytes.ends_with("\r\n"), "a line fits");
        require(bytes.find_first_of(std::string_view("\0\r\n", 3)) == bytes.size() - 2, "it is one line");
        bytes.remove_suffix(2);
        require(isOwnLine(bytes) || (quitting(bytes)), "nobody has caused it");
        // A server that says the password itself has its own word given back by a PONG.
        const bool told = bytes.find(secret) != std::string_view::npos && heard_.find(secret) == std::string::npos;
        require(may_send_secret_ || (!told && !bytes.starts_with("AUTHENTICATE")), "a password stays here");
    }

    static bool quitting(std::string_view line) { return line == "QUIT :"; }

    static bool showsAll(std::u16string_view text) {
        return std::none_of(text.begin(), text.end(), [](char16_t unit) {
            return unit < u' ' || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x202A && unit <= 0x202E);
        });
    }
    static void shown(std::u16string_view text) { require(showsAll(text), "all that is told shows"); }
    void sentence(std::u16string_view text) const {
        shown(text);
        require(!has_secret_ || murmelix::find(text, murmelix::fromUtf8(secret), 0, murmelix::LetterCase::ignored) ==
                                    murmelix::npos,
                "and holds no password");
    }
    static void person(const PersonPtr& one) {
        require(one != nullptr, "there is a person");
        shown(one->nick);
        shown(one->display_name);
        shown(one->host);
        require(std::count(signinName(*one).begin(), signinName(*one).end(), u'@') <= 1, "who can be found again");
        require(signinName(*one).find_first_of(u"\\/ ") == murmelix::npos && !signinName(*one).empty(), "anywhere");
    }

    void look(const event::Connecting&) {}
    void look(const event::Registering&) {}
    void look(const event::Ended&) {}
    void look(const event::Online& e) { person(e.me), shown(e.network); }
    void look(const event::Lost& e) { sentence(e.why), require(e.again >= now_, "later"); }
    void look(const event::Refused& e) { sentence(e.why); }
    void look(const event::ChannelJoined& e) { shown(e.channel); }
    void look(const event::ChannelLeft& e) { shown(e.channel), sentence(e.why); }
    void look(const event::People& e) {
        require(e.members.size() <= most_members, "members are bounded");
        for (const Member& member : e.members) {
            person(member.person);
        }
    }
    void look(const event::Joined& e) { person(e.member.person), shown(e.channel); }
    void look(const event::Left& e) { person(e.person), shown(e.why); }
    void look(const event::Renamed& e) { person(e.person); }
    void look(const event::AwayChanged& e) { person(e.person), shown(e.why); }
    void look(const event::Identified& e) { person(e.person); }
    void look(const event::Marked& e) { person(e.person); }
    void look(const event::NetSplit& e) { shown(e.servers); }
    void look(const event::Topic& e) { shown(e.text); }
    void look(const event::Said& e) {
        shown(e.text);
        shown(e.id);
        shown(e.reply_to);
        require(!e.text.empty(), "something is said");
        require(!e.channel.empty() || e.with, "somewhere");
        if (e.writer) {
            person(e.writer);
        }
        std::size_t reached = 0;
        for (const Emote& emote : e.emotes) {
            require(emote.first >= reached && emote.length > 0 && emote.first + emote.length <= e.text.size(),
                    "emotes are in the text");
            reached = emote.first + emote.length;
        }
    }
    void look(const event::Deleted& e) { shown(e.id); }
    void look(const event::Told& e) { sentence(e.text), shown(e.channel); }

    bool has_secret_, may_send_secret_;
    bool open_ = false;
    std::string heard_; // all that the server has said, without the signs that a session may drop
    long long now_ = 1'000'000;
    std::uint32_t random_ = 1;
    Session session_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0) {
        World(settingsOf(data[0])).run({reinterpret_cast<const char*>(data) + 1, size - 1});
    }
    return 0;
}
