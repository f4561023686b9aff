#include "companions/messenger/client/app.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <random>
#include <thread>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/account.h"
#include "companions/messenger/live/log_file.h"
#include "platform/clock.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/system.h"
#include "platform/window.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

// Bytes of a chat log: years of a busy room. A longer one is refused, as it would not fit into the memory with all that
// is made of it.
constexpr std::size_t longest_log = 64 * 1024 * 1024;

std::filesystem::path pathOf(const std::u16string& text) {
    return std::filesystem::path(murmelix::com::wide(text));
}

// Nothing where it cannot be read, or is too long.
std::optional<std::string> contentsOf(const std::u16string& file) {
    std::ifstream in(pathOf(file), std::ios::binary);
    std::string contents;
    while (in && contents.size() <= longest_log) {
        const std::size_t length = contents.size();
        contents.resize(length + 1024 * 1024);
        in.read(contents.data() + length, static_cast<std::streamsize>(contents.size() - length));
        contents.resize(length + static_cast<std::size_t>(in.gcount()));
    }
    return in.eof() ? std::optional(std::move(contents)) : std::nullopt;
}

void complain(const std::u16string& text) {
    murmelix::platform::messageBox(text, murmelix::platform::mb_critical, u"Messenger");
}

} // namespace

App::App(Switches switches)
    : switches_(std::move(switches)), log_(murmelix::platform::microseconds),
      session_(client_, switches_,
               {.microseconds = murmelix::platform::microseconds,
                .untouched =
                    [this] {
                        return last_input_.since(murmelix::platform::milliseconds(), murmelix::platform::lastInput());
                    },
                .set_timer = [this](Session::Clock clock, unsigned milliseconds) { setTick(clock, milliseconds); },
                .store = storeAccounts,
                .accounts_changed = [this] { main_.accountsChanged(); },
                .signing_in = [this](const std::u16string& signin,
                                     const std::u16string& friendly) { main_.setSigningIn(signin, friendly); },
                .network = [this](const Account& account) { connectTo(requestOf(account)); },
                .ask_other_account =
                    [this] {
                        main_.proposeNobody();
                        main_.askSignIn();
                    },
                .replayed =
                    [this] {
                        log_.write("done", {}, {});
                        if (switches_.exit_when_done) {
                            quit();
                        }
                    },
                .unused =
                    [this] {
                        if (isUnused()) {
                            quit();
                        }
                    }}),
      main_(client_,
            {.sign_in = [this](const SignInRequest& request) { session_.signIn(request); },
             .connect = [this](const NetworkRequest& request) { connectTo(request); },
             .forget =
                 [this](const std::u16string& signin) {
                     client_.accounts().forget(signin);
                     session_.accountsChanged();
                 },
             .switch_to = [this](const std::u16string& signin) { session_.switchTo(signin); },
             .bring_up =
                 [](const Conversation& conversation) { murmelix::platform::bringWindowUp(conversation.window()); },
             .command =
                 [this](std::string_view line) {
                     const Result result = control_.execute(line);
                     session_.schedule();
                     return static_cast<std::intptr_t>(result);
                 },
             .enter = [this](const std::u16string& channels) { return live_.join(channels); },
             .user_acts = [this] { user_acted_ = true; },
             .quit = [this] { quit(); }}),
      automation_(client_, faults_,
                  {.main_window = [this] { return static_cast<std::intptr_t>(main_.handle()); },
                   .show_main_window = [this] { main_.BringUp(); },
                   .ask_sign_in = [this] { main_.askSignIn(); },
                   .sign_in = [this](const std::u16string& signin) { session_.connect(signin, {}); },
                   .auto_sign_in = [this] { session_.signInAutomatically(); },
                   .soon = [this](std::function<void()> work) { session_.soon(std::move(work)); },
                   .read = [this](const Conversation& conversation) { historyRead(conversation); },
                   .received_files = [] { return murmelix::platform::documentsDirectory() + u"\\Received Files"; },
                   .hang = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); },
                   .end = [](unsigned status) { murmelix::platform::cutOff(status); }}),
      control_(client_, session_.signing(), faults_, [] { return murmelix::platform::microseconds() / 1000; },
               {.start_replay = [this] { return session_.startReplay(); },
                .connect = [this](const std::u16string& signin,
                                  const std::u16string& friendly) { session_.connect(signin, friendly); },
                .accounts_changed = [this] { session_.accountsChanged(); },
                .untouched = [this](std::optional<long long> untouched) { session_.pretendUntouched(untouched); },
                .window = [this](std::u16string_view deed) { return doWithWindow(deed); },
                .shut_down = [this] { session_.soon([this] { quit(); }); },
                .exit = [this] { automation_.vanish(); },
                .delivered = [this] { return automation_.delivered(); }}),
      live_(client_,
            {.delivered = [this] { return automation_.delivered(); },
             .failed =
                 [this](const std::u16string& why) {
                     main_.tellFault(why);
                     log_.write("fault", {}, why);
                 },
             .tell_user = [this](const std::u16string& what) { session_.soon([this, what] { tellUser(what); }); },
             .bring_up =
                 [](const Conversation& conversation) { murmelix::platform::bringWindowUp(conversation.window()); }}) {
    if (switches_.orders) {
        control_.takeOrders();
    }
    for (const Session::Clock clock : {Session::Clock::replay, Session::Clock::sign_in, Session::Clock::idle}) {
        timerOf(clock).Tick = [this, clock] {
            timerOf(clock).setEnabled(false);
            session_.tick(clock);
        };
    }
    client_.listen([this](const Change& change) { changed(change); });
}

void App::setTick(Session::Clock clock, unsigned milliseconds) {
    if (clock == Session::Clock::soon) {
        return ui::post([this] { session_.tick(Session::Clock::soon); });
    }
    ui::Timer& timer = timerOf(clock);
    timer.setInterval(static_cast<int>(milliseconds));
    timer.setEnabled(true);
}

int App::run() {
    murmelix::com::Served::onAliveChanged([this](long) { clientsChanged(); });
    start();
    const int status = ui::runMessageLoop();
    murmelix::com::Served::onAliveChanged(nullptr);
    return status;
}

void App::start() {
    if (!switches_.log.empty() && !log_.open(pathOf(switches_.log))) {
        complain(u"The log cannot be written: " + switches_.log);
    }
    loadAccounts(client_.accounts());
    main_.accountsChanged();
    main_.propose({});
    switches_.embedding ? main_.ShowInactive() : main_.Show();
    session_.start();
    if (switches_.address) {
        signInLive({.address = *switches_.address, .nick = switches_.nick});
    }
    if (!switches_.conversation.empty() && !startConversation()) {
        complain(u"The chat log cannot be read: " + switches_.conversation);
    }
    automation_.offer();
    log_.write("offered", {}, {});
}

void App::historyRead(const Conversation& conversation) {
    if (conversation.live() && std::exchange(read_, conversation.live()).lock() != conversation.live()) {
        log_.write("read", {}, conversation.live()->title());
    }
    session_.historyRead(conversation);
}

// A server must not bury the screen in boxes: there is one at a time, and a pause after it.
void App::tellUser(const std::u16string& sentence) {
    constexpr long long pause = 10'000'000;
    if (told_at_ && murmelix::platform::microseconds() - *told_at_ < pause) {
        return;
    }
    told_at_ = std::numeric_limits<long long>::max() / 2; // while the box stands
    murmelix::platform::messageBox(sentence, murmelix::platform::mb_information, u"Messenger");
    told_at_ = murmelix::platform::microseconds();
}

void App::connectTo(const NetworkRequest& request) {
    auto account = prepareNetwork(client_.accounts(), request);
    session_.accountsChanged();
    if (const auto* const fault = std::get_if<std::u16string>(&account)) {
        return main_.tellFault(*fault);
    }
    signInLive(settingsOf(std::get<NetworkAccount>(account)));
}

void App::signInLive(irc::Settings settings) {
    if (settings.nick.empty() && settings.address.dialect == irc::Dialect::irc) {
        settings.nick = u"Murmelix" + murmelix::toText(1000 + std::random_device()() % 9000);
    }
    settings.program = u"Murmelix";
    main_.setSigningIn(settings.address.host, settings.nick);
    live_.signIn(std::move(settings), Status::online);
}

bool App::doWithWindow(std::u16string_view deed) {
    if (deed == u"hide") {
        main_.PutAway();
    } else if (deed == u"show") {
        main_.BringUp();
    } else if (deed == u"minimise") {
        main_.setWindowState(ui::Form::State::minimized);
    } else {
        return false;
    }
    return true;
}

bool App::startConversation() {
    const auto contents = contentsOf(switches_.conversation);
    if (!contents) {
        return false;
    }
    session_.openReplay(*contents);
    return true;
}

std::unique_ptr<ConversationForm> App::windowFor(const ConversationPtr& conversation, const ui::Rect& place) {
    if (!conversation->live()) {
        return std::make_unique<ConversationWindow>(client_, conversation, place, switches_.edits);
    }
    return std::make_unique<LiveWindow>(
        client_, conversation,
        LiveWindow::Hooks{
            .open_link =
                [](const std::u16string& link) { murmelix::platform::shellExecute(u"open", webAddress(link), {}, {}); },
            .keep_log = [this](LiveWindow& window) { askForLog(window); },
            .reconnect = [this] { live_.reconnect(); }},
        place, switches_.edits);
}

void App::askForLog(LiveWindow& window) {
    log_form_ = std::make_unique<AskFrm>(window, u"Keep a log", u"&File to which every line is added", u"&Keep",
                                         [conversation = window.conversation()](const std::u16string& file) {
                                             return keepLog(*conversation->live(), pathOf(file));
                                         });
    log_form_->Ask(murmelix::platform::documentsDirectory() + u"\\" + logFileName(window.talk().title()));
}

void App::changed(const Change& change) {
    // Before everybody else hears of it: the window of a conversation is there as long as the conversation is.
    if (change.kind == Change::Kind::window_created) {
        const WantedPlace wanted{switches_.left, switches_.top, switches_.width, switches_.height};
        std::optional<ui::Rect> last = conversationPlace().last();
        if (last) {
            last = ui::onScreen(*last);
        }
        const ui::Rect place =
            placeOfConversation(last ? ui::workArea(*last) : ui::workArea(), windows_.size(), wanted, last);
        windows_.push_back(windowFor(change.conversation, place));
        windows_.back()->ShowInactive();
    }
    main_.changed(change);
    live_.changed(change);
    main_.setLive(live_.signedIn() && client_.signedIn());
    for (const auto& window : windows_) {
        window->changed(change);
    }
    log_.write(change, client_);
    if (change.kind == Change::Kind::window_destroyed) {
        const auto gone = std::find_if(windows_.begin(), windows_.end(), [&](const auto& window) {
            return window->conversation() == change.conversation;
        });
        if (gone != windows_.end()) {
            (*gone)->rememberPlace();
            (*gone)->Hide();
            closed_.push_back(std::move(*gone));
            windows_.erase(gone);
            session_.soon([this] { closed_.clear(); });
        }
    }
}

bool App::isUnused() const {
    return switches_.embedding && !user_acted_ && automation_.unused() && client_.conversations().empty();
}

void App::clientsChanged() {
    if (isUnused() && !ended_) {
        session_.endWhenUnused();
    }
}

void App::quit() {
    if (std::exchange(ended_, true)) {
        return;
    }
    session_.keep();
    client_.shutDown();
    automation_.close();
    ui::quitMessageLoop();
}

} // namespace messenger_client
