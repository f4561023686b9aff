// Signing in to a server: capabilities, passwords, a nick that is free.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/irc/line.h"
#include "companions/messenger/irc/settings.h"

namespace messenger_client::irc {

// Lines of the server's list of capabilities: servers have two or three. What comes after them is not asked for.
inline constexpr int most_capability_lines = 50;
// Nicks that are tried on one connection.
inline constexpr int most_nicks = 10;

class Handshake {
  public:
    using Send = std::function<void(std::initializer_list<std::string_view> parts)>;
    using Tell = std::function<void(std::u16string sentence)>;

    Handshake(const Settings& settings, Send send, Tell tell, std::function<std::uint32_t()> random);

    // The first lines of a connection. False where the settings have a nick that no line can hold.
    bool begin();
    void onCapabilities(const Message& message); // CAP
    void onAuthenticate(const Message& message);
    // The account is signed in to, or there is no way to.
    void saslDone();
    // Asks for another nick; false where there were enough.
    bool takeOtherNick();
    // The server takes the client: what is left of the handshake is given up.
    void welcomed() { step_ = Step::done; }

    bool isAuthenticating() const { return step_ == Step::mechanism || step_ == Step::password; }
    // The server sends the own lines back.
    bool hasEcho() const;
    // The streaming chat is read without an account.
    bool isAnonymous() const { return anonymous_; }

  private:
    enum class Step {
        listing,    // CAP LS is sent
        requesting, // CAP REQ is sent
        mechanism,  // AUTHENTICATE PLAIN is sent
        password,   // and the password
        done,
    };
    static constexpr std::size_t capability_count = 14;
    using Capabilities = std::bitset<capability_count>;

    bool mayUsePassword() const;
    void beginTwitch();
    bool beginIrc();
    void list(const Message& message);
    void request(const Capabilities& wanted);
    void answered(std::string_view names, bool granted);
    void added(std::string_view names);
    void requested();
    void end();
    void sendPassword();

    const Settings& settings_;
    Send send_;
    Tell tell_;
    std::function<std::uint32_t()> random_;

    Step step_ = Step::done;
    bool anonymous_ = false;
    std::string nick_; // asked for last
    int nicks_ = 0;
    int lists_ = 0; // lines of it
    Capabilities offered_, pending_, asked_one_by_one_, enabled_;
    bool plain_ = true; // the mechanism is among those of SASL, as far as they are told
};

} // namespace messenger_client::irc
