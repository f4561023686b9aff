// The client as a whole: what it knows, its windows, its automation, the replay of a chat log.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "companions/messenger/automation/automation.h"
#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/chat/event_log.h"
#include "companions/messenger/chat/session.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/ask_form.h"
#include "companions/messenger/client/conversation_window.h"
#include "companions/messenger/client/live_service.h"
#include "companions/messenger/client/live_window.h"
#include "companions/messenger/client/main_window.h"
#include "ui/timer.h"

namespace messenger_client {

class App {
  public:
    explicit App(Switches switches);
    // Runs until the client is closed; the exit status of the process.
    int run();

  private:
    void start();
    bool startConversation();
    bool doWithWindow(std::u16string_view deed);
    // To a chat network.
    void signInLive(irc::Settings settings);
    void connectTo(const NetworkRequest& request);
    // A program has done so.
    void historyRead(const Conversation& conversation);
    std::unique_ptr<ConversationForm> windowFor(const ConversationPtr& conversation, const ui::Rect& place);
    void askForLog(LiveWindow& window);
    // Of a chat network, where no conversation shows it.
    void tellUser(const std::u16string& sentence);
    void changed(const Change& change);
    // Started by COM, and nobody has a use for it any more.
    bool isUnused() const;
    void clientsChanged();
    void quit();
    // `milliseconds` from now; again for another time.
    void setTick(Session::Clock clock, unsigned milliseconds);
    ui::Timer& timerOf(Session::Clock clock) { return timers_.at(static_cast<std::size_t>(clock) - 1); }

    Switches switches_;
    Client client_;
    LastInput last_input_;
    Faults faults_;
    EventLog log_;
    std::array<ui::Timer, 3> timers_{ui::Timer{1}, ui::Timer{1}, ui::Timer{1}};
    Session session_;
    MainWindow main_;
    Automation automation_;
    Control control_;
    LiveService live_;
    std::vector<std::unique_ptr<ConversationForm>> windows_;
    std::vector<std::unique_ptr<ConversationForm>> closed_; // their end waits for the message loop
    std::unique_ptr<AskFrm> log_form_;                      // null until it is needed first
    std::weak_ptr<LiveTalk> read_;                          // whose history a program has read last
    std::optional<long long> told_at_;                      // when the user was told something last
    bool user_acted_ = false;
    bool ended_ = false;
};

} // namespace messenger_client
