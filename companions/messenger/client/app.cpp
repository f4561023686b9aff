#include "companions/messenger/client/app.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/account.h"

namespace messenger_client {

namespace {

// From the first reading of the history to the first message, in seconds: the reader has taken the text that it will
// not read aloud, and set its windows up.
constexpr double reading_lead = 0.5;
// How long a client started by COM stays when nobody calls it any more, in milliseconds.
constexpr unsigned unused_stay = 2000;
// From one look for idleness to the next, in milliseconds.
constexpr unsigned idle_look_time = 5000;

long long microseconds() {
    LARGE_INTEGER now{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    const long long seconds = now.QuadPart / frequency.QuadPart;
    return seconds * 1000000 + (now.QuadPart % frequency.QuadPart) * 1000000 / frequency.QuadPart;
}

long long milliseconds() {
    return microseconds() / 1000;
}

std::filesystem::path pathOf(const std::u16string& text) {
    return std::filesystem::path(murmelix::com::wide(text));
}

std::optional<std::string> contentsOf(const std::u16string& file) {
    std::ifstream in(pathOf(file), std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void complain(HWND owner, const std::u16string& text) {
    MessageBoxW(owner, murmelix::com::wide(text), L"Messenger", MB_ICONERROR);
}

} // namespace

App::App(Switches switches)
    : switches_(std::move(switches)), signing_(client_), auto_idle_(static_cast<long long>(switches_.idle * 60'000)),
      log_(microseconds), main_(client_, {.sign_in = [this](const SignInPage::Request& request) { signIn(request); },
                                          .forget =
                                              [this](const std::u16string& signin) {
                                                  client_.accounts().forget(signin);
                                                  accountsChanged();
                                              },
                                          .switch_to = [this](const std::u16string& signin) { switchTo(signin); },
                                          .command =
                                              [this](std::string_view line) {
                                                  const Result result = control_.execute(line);
                                                  schedule();
                                                  return static_cast<LRESULT>(result);
                                              },
                                          .deliver =
                                              [this] {
                                                  closed_.clear();
                                                  automation_.deliverEvents();
                                              },
                                          .tick = [this](MainWindow::Clock clock) { tick(clock); },
                                          .user_acts = [this] { user_acted_ = true; },
                                          .quit = [this] { quit(); }}),
      automation_(client_, faults_,
                  {.main_window = [this] { return main_.handle(); },
                   .show_main_window = [this] { main_.show(); },
                   .ask_sign_in = [this] { main_.askSignIn(); },
                   .sign_in = [this](const std::u16string& signin) { connect(signin, {}); },
                   .auto_sign_in = [this] { signInAutomatically(); },
                   .deliver_later = [this] { main_.postDeliver(); },
                   .read = [this](const Conversation& conversation) { historyRead(conversation); }}),
      control_(client_, signing_, faults_, milliseconds,
               {.start_replay = [this] { return startReplay(0); },
                .connect = [this](const std::u16string& signin,
                                  const std::u16string& friendly) { connect(signin, friendly); },
                .accounts_changed = [this] { accountsChanged(); },
                .untouched =
                    [this](std::optional<long long> untouched) {
                        pretended_untouched_ = untouched;
                        lookWhetherIdle();
                    },
                .window = [this](std::u16string_view deed) { return doWithWindow(deed); },
                .shut_down = [this] { main_.postQuit(); },
                .exit = [this] { automation_.vanish(); }}) {
    signing_.setTime(switches_.connect);
    signing_.hold(switches_.hold);
    client_.listen([this](const Change& change) { changed(change); });
}

int App::run() {
    murmelix::com::Served::onAliveChanged([this](long) { clientsChanged(); });
    start();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const HWND root = GetAncestor(message.hwnd, GA_ROOT);
        if (root == main_.handle() && TranslateAcceleratorW(root, main_.accelerators(), &message)) {
            continue;
        }
        if (root && IsDialogMessageW(root, &message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    murmelix::com::Served::onAliveChanged(nullptr);
    return static_cast<int>(message.wParam);
}

void App::start() {
    if (!switches_.log.empty() && !log_.open(pathOf(switches_.log))) {
        complain(nullptr, u"The log cannot be written: " + switches_.log);
    }
    loadAccounts(client_.accounts());
    main_.accountsChanged();
    main_.propose({});
    ShowWindow(main_.handle(), switches_.embedding ? SW_SHOWNOACTIVATE : SW_SHOW);
    if (!switches_.signed_out) {
        signInAtStart();
    }
    if (!switches_.conversation.empty() && !startConversation()) {
        complain(main_.handle(), u"The chat log cannot be read: " + switches_.conversation);
    }
    automation_.offer();
    lookWhetherIdle();
}

void App::signInAtStart() {
    const Account* last = client_.accounts().lastRemembered();
    if (!switches_.signin.empty()) {
        client_.signIn(switches_.signin, switches_.friendly);
    } else if (!switches_.conversation.empty()) { // to be replayed at once
        last ? client_.signIn(last->signin, {}) : client_.signIn(demo_account.signin, demo_account.friendly);
    } else if (client_.accounts().automatic() || (!last && !switches_.embedding)) {
        signInAutomatically();
    }
}

void App::signInAutomatically() {
    if (client_.signedIn() || client_.signingIn()) {
        return;
    }
    const Accounts& accounts = client_.accounts();
    const Account* account = accounts.automatic() ? accounts.automatic() : accounts.lastRemembered();
    if (account) {
        connect(account->signin, {});
    } else {
        connect(std::u16string(demo_account.signin), std::u16string(demo_account.friendly));
    }
}

void App::signIn(const SignInPage::Request& request) {
    connect(request.signin, request.friendly, request.status);
    to_remember_ = request;
    if (client_.signedIn()) { // already
        rememberSignedIn();
    }
}

void App::connect(std::u16string signin, std::u16string friendly, std::optional<Status> status) {
    const Account* known = client_.accounts().find(signin);
    if (known) {
        if (friendly.empty()) {
            friendly = known->friendly;
        }
        if (!status) {
            status = known->status;
        }
    } else if (switches_.conversation.empty()) {
        // An account that is new here has somebody to meet.
        client_.accounts().use(signin).contacts = demoContacts();
    }
    to_remember_.reset();
    main_.setSigningIn(signin, friendly);
    signing_.begin(signin, friendly, status.value_or(Status::online), milliseconds());
    schedule();
}

void App::switchTo(const std::u16string& signin) {
    client_.signOut();
    if (!signin.empty()) {
        return connect(signin, {});
    }
    main_.askSignIn();
}

void App::rememberSignedIn() {
    if (!to_remember_ || !client_.signedIn()) {
        return;
    }
    const SignInPage::Request request = *std::exchange(to_remember_, std::nullopt);
    client_.keepAccount();
    Account* account = client_.accounts().find(request.signin);
    if (!account) {
        return;
    }
    account->remembered = account->automatic = false;
    if (request.remember) {
        client_.accounts().remember(request.signin, request.automatic);
    }
    accountsChanged();
}

void App::accountsChanged() {
    storeAccounts(client_.accounts());
    main_.accountsChanged();
}

void App::schedule() {
    if (const auto due = signing_.dueAt()) {
        main_.setTick(MainWindow::Clock::sign_in, static_cast<unsigned>(std::max(*due - milliseconds(), 0LL)));
    }
}

void App::lookWhetherIdle() {
    // Where nothing has been touched yet there is no last input: the first look counts as one. And an input can be a
    // moment ahead of the tick count, which moves in steps.
    static const DWORD first_look = GetTickCount();
    const DWORD now = GetTickCount();
    LASTINPUTINFO last{sizeof(LASTINPUTINFO), 0};
    GetLastInputInfo(&last);
    const LONG since = std::min(static_cast<LONG>(now - last.dwTime), static_cast<LONG>(now - first_look));
    const long long untouched = pretended_untouched_.value_or(std::max<LONG>(since, 0));
    if (client_.signedIn()) {
        if (const auto status = auto_idle_.look(client_.me()->status, untouched)) {
            client_.setMyStatus(*status);
        }
    }
    main_.setTick(MainWindow::Clock::idle, idle_look_time);
}

bool App::doWithWindow(std::u16string_view deed) {
    if (deed == u"hide") {
        main_.hide();
    } else if (deed == u"show") {
        main_.show();
    } else if (deed == u"minimise") {
        ShowWindow(main_.handle(), SW_MINIMIZE);
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
    Script script = makeScript(parseChatLog(*contents), switches_.replay);
    std::vector<ContactPtr> present;
    for (const Person& person : script.people) {
        people_.push_back(
            client_.addContact(person.signin, person.friendly, person.present ? Status::online : Status::offline));
        if (person.present) {
            present.push_back(people_.back());
        }
    }
    replay_ = Replay(std::move(script.steps));
    replay_over_ = false;
    replayed_ = client_.open(std::move(present));
    if (!switches_.wait) {
        startReplay(0);
    }
    return true;
}

RECT App::placeOfNext() const {
    const int offset = px(28) * static_cast<int>(windows_.size() % 8);
    const int left = switches_.left.value_or(px(330)) + offset;
    const int top = switches_.top.value_or(px(60)) + offset;
    return {left, top, left + switches_.width.value_or(px(560)), top + switches_.height.value_or(px(480))};
}

void App::changed(const Change& change) {
    // Before everybody else hears of it: the window of a conversation is there as long as the conversation is.
    if (change.kind == Change::Kind::window_created) {
        windows_.push_back(std::make_unique<ConversationWindow>(client_, change.conversation, placeOfNext()));
        ShowWindow(windows_.back()->handle(), SW_SHOWNOACTIVATE);
    }
    if (change.kind == Change::Kind::signed_in) {
        if (change.number < 0) {
            to_remember_.reset();
        }
        rememberSignedIn();
    }
    if (change.kind == Change::Kind::signed_out && client_.accounts().lastRemembered()) {
        accountsChanged();
    }
    main_.changed(change);
    for (const auto& window : windows_) {
        window->changed(change);
    }
    log_.write(change, client_);
    if (change.kind == Change::Kind::window_destroyed) {
        const auto gone = std::find_if(windows_.begin(), windows_.end(), [&](const auto& window) {
            return window->conversation() == change.conversation;
        });
        if (gone != windows_.end()) {
            ShowWindow((*gone)->handle(), SW_HIDE);
            closed_.push_back(std::move(*gone));
            windows_.erase(gone);
            main_.postDeliver();
        }
    }
}

void App::historyRead(const Conversation& conversation) {
    if (switches_.wait && &conversation == replayed_.get()) {
        startReplay(reading_lead);
    }
}

bool App::startReplay(double delay) {
    if (replay_over_ || replay_start_) {
        return false;
    }
    replay_start_ = microseconds() + static_cast<long long>(delay * 1e6);
    main_.setTick(MainWindow::Clock::replay, static_cast<unsigned>(delay * 1000));
    return true;
}

void App::tick(MainWindow::Clock clock) {
    switch (clock) {
    case MainWindow::Clock::sign_in:
        signing_.advance(milliseconds());
        return schedule();
    case MainWindow::Clock::idle:
        return lookWhetherIdle();
    case MainWindow::Clock::replay:
        return replayOn();
    }
}

void App::replayOn() {
    if (replay_start_ && !replay_over_) {
        const double now = static_cast<double>(microseconds() - *replay_start_) / 1e6;
        for (const Step& step : replay_.advance(now)) {
            play(step);
        }
        replay_over_ = replay_.done() || replayed_->closed();
        if (replay_over_) {
            log_.write("done", {}, {});
            if (switches_.exit_when_done) {
                quit();
            }
        } else {
            const double left = std::clamp(replay_.nextAt() - now, 0.0, 3600.0);
            main_.setTick(MainWindow::Clock::replay, static_cast<unsigned>(std::ceil(left * 1000)));
        }
    } else if (isUnused()) {
        quit();
    }
}

void App::play(const Step& step) {
    const ContactPtr& who = people_[step.person];
    switch (step.kind) {
    case Step::Kind::joins:
        client_.setStatus(who, Status::online);
        client_.join(replayed_, who);
        break;
    case Step::Kind::leaves:
        client_.leave(replayed_, who);
        client_.setStatus(who, Status::offline);
        break;
    case Step::Kind::renamed:
        client_.rename(who, step.text);
        break;
    case Step::Kind::says:
        client_.say(replayed_, who, step.text);
        break;
    }
}

bool App::isUnused() const {
    return switches_.embedding && !user_acted_ && automation_.unused() && client_.conversations().empty();
}

void App::clientsChanged() {
    if (isUnused() && !ended_) {
        main_.setTick(MainWindow::Clock::replay, unused_stay);
    }
}

void App::quit() {
    if (std::exchange(ended_, true)) {
        return;
    }
    client_.keepAccount();
    if (client_.accounts().lastRemembered()) {
        storeAccounts(client_.accounts());
    }
    client_.shutDown();
    automation_.deliverEvents();
    automation_.close();
    PostQuitMessage(0);
}

} // namespace messenger_client
