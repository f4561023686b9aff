// What the client does by itself in the course of time: it signs in as its accounts and its command line say, remembers
// who shall be remembered, becomes idle, and replays a chat log. Clock, timers and store are the caller's.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/chat/auto_idle.h"
#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/replay.h"
#include "companions/messenger/chat/sign_in_form.h"
#include "companions/messenger/chat/signing_in.h"
#include "companions/messenger/chat/switches.h"

namespace messenger_client {

// Who is met by an account that is new on this computer.
std::vector<ContactPtr> demoContacts();

class Session {
  public:
    // Timers that run off once.
    enum class Clock { replay = 1, sign_in, idle, soon };

    struct Hooks {
        std::function<long long()> microseconds; // since any moment
        std::function<long long()> untouched;    // milliseconds without a touch of keyboard and mouse
        // Has tick called so many milliseconds from now; again for another time.
        std::function<void(Clock clock, unsigned milliseconds)> set_timer;
        std::function<void(const Accounts& accounts)> store;
        std::function<void()> accounts_changed; // which are remembered
        std::function<void(const std::u16string& signin, const std::u16string& friendly)> signing_in;
        std::function<void(const Account& account)> network; // one of a chat network shall be signed in
        std::function<void()> ask_other_account;             // after a sign-out, who shall sign in
        std::function<void()> replayed;                      // the replay is done
        std::function<void()> unused;                        // the time set by endWhenUnused has passed
    };

    // The client's changes are heard from now on.
    Session(Client& client, const Switches& switches, Hooks hooks);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SigningIn& signing() { return signing_; }

    // Signs in as the command line and the accounts say, and looks for idleness from now on.
    void start();
    // As the account that does so, else the one remembered last, else the demo account; nothing where somebody is
    // signed in, or is about to be.
    void signInAutomatically();
    void signIn(const SignInRequest& request);
    // On the clock; as what is known of the account where nothing else is given.
    void connect(std::u16string signin, std::u16string friendly, std::optional<Status> status = std::nullopt);
    // Empty: nobody, until somebody else signs in.
    void switchTo(const std::u16string& signin);
    void accountsChanged();
    // The sign-in under way may have another stage ahead of it.
    void schedule();
    // As if keyboard and mouse were not touched for so many milliseconds; nothing: as it is.
    void pretendUntouched(std::optional<long long> milliseconds);
    // Of an ending client: what is remembered is stored.
    void keep();

    // Opens a conversation that will replay the log, and begins unless the command line says to wait.
    void openReplay(std::string_view log);
    // `delay` in seconds; false where no replay waits.
    bool startReplay(double delay = 0);
    // A program has read the history of the conversation.
    void historyRead(const Conversation& conversation);
    bool replaying() const { return replay_start_ && !replay_over_; }

    void endWhenUnused();
    // Done from the message loop, in order; work may add more. Work that throws loses only itself.
    void soon(std::function<void()> work);
    void tick(Clock clock);

  private:
    void changed(const Change& change);
    void signInAtStart();
    void rememberSignedIn();
    void lookWhetherIdle();
    void work();
    void replayOn();
    void play(const Step& step);
    long long milliseconds() const { return hooks_.microseconds() / 1000; }

    Client& client_;
    const Switches& switches_;
    Hooks hooks_;
    SigningIn signing_;
    AutoIdle auto_idle_;
    std::optional<long long> pretended_untouched_; // milliseconds
    std::optional<SignInRequest> to_remember_;     // when its sign-in has succeeded

    ConversationPtr replayed_;
    std::vector<ContactPtr> people_; // of the script
    Replay replay_;
    std::optional<long long> replay_start_; // microseconds
    bool replay_over_ = true;
    std::deque<std::function<void()>> work_;
};

} // namespace messenger_client
