// The client as a whole: what it knows, its windows, its automation, the replay of a chat log.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "companions/messenger/chat/auto_idle.h"
#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/chat/event_log.h"
#include "companions/messenger/chat/replay.h"
#include "companions/messenger/chat/signing_in.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/automation.h"
#include "companions/messenger/client/conversation_window.h"
#include "companions/messenger/client/main_window.h"

namespace messenger_client {

class App {
  public:
    explicit App(Switches switches);
    // Runs until the client is closed; the exit status of the process.
    int run();

  private:
    void start();
    bool startConversation();
    void signInAtStart();
    // As the account that does so, else the one remembered last, else the demo account.
    void signInAutomatically();
    void signIn(const SignInPage::Request& request);
    // On the clock; as what is known of the account where nothing else is given.
    void connect(std::u16string signin, std::u16string friendly, std::optional<Status> status = std::nullopt);
    void switchTo(const std::u16string& signin);
    void rememberSignedIn();
    void accountsChanged();
    void schedule();
    void lookWhetherIdle();
    bool doWithWindow(std::u16string_view deed);
    void changed(const Change& change);
    void historyRead(const Conversation& conversation);
    bool startReplay(double delay);
    void tick(MainWindow::Clock clock);
    void replayOn();
    void play(const Step& step);
    // Started by COM, and nobody has a use for it any more.
    bool isUnused() const;
    void clientsChanged();
    void quit();
    RECT placeOfNext() const;

    Switches switches_;
    Client client_;
    SigningIn signing_;
    AutoIdle auto_idle_;
    Faults faults_;
    EventLog log_;
    MainWindow main_;
    Automation automation_;
    Control control_;
    std::vector<std::unique_ptr<ConversationWindow>> windows_;
    std::vector<std::unique_ptr<ConversationWindow>> closed_; // their end waits for the message loop

    std::optional<SignInPage::Request> to_remember_; // when its sign-in has succeeded
    std::optional<long long> pretended_untouched_;   // milliseconds

    ConversationPtr replayed_;
    std::vector<ContactPtr> people_; // of the script
    Replay replay_;
    std::optional<long long> replay_start_; // microseconds
    bool replay_over_ = true;
    bool user_acted_ = false;
    bool ended_ = false;
};

} // namespace messenger_client
