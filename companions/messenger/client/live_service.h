// The chat network that the user is signed in to, with its connection. One at a time.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/live/account.h"
#include "platform/connection.h"
#include "ui/timer.h"

namespace messenger_client {

namespace ui = murmelix::ui;

class LiveService {
  public:
    struct Hooks {
        std::function<bool()> delivered;                           // see LiveAccount
        std::function<void(const std::u16string& why)> failed;     // the sign-in; a sentence for people
        std::function<void(const std::u16string& what)> tell_user; // where no conversation shows it
        std::function<void(const Conversation& conversation)> bring_up;
    };
    LiveService(Client& client, Hooks hooks);

    // Instead of who is signed in; goes on by itself. `status` as the user wants to be seen.
    void signIn(irc::Settings settings, Status status);
    bool signedIn() const { return account_ != nullptr; }
    // See LiveAccount.
    std::u16string join(std::u16string_view channels);
    void reconnect();
    // Follows a change of the client.
    void changed(const Change& change);

  private:
    void open(const irc::Address& address);
    void closed(const murmelix::platform::ConnectionEnd& end);
    void drop();

    Client& client_;
    Hooks hooks_;
    ui::Timer Tick{1};
    std::unique_ptr<murmelix::platform::Connection> connection_;
    std::unique_ptr<LiveAccount> account_;
};

} // namespace messenger_client
