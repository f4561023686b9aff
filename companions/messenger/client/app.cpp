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

long long microseconds() {
    LARGE_INTEGER now{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    const long long seconds = now.QuadPart / frequency.QuadPart;
    return seconds * 1000000 + (now.QuadPart % frequency.QuadPart) * 1000000 / frequency.QuadPart;
}

std::filesystem::path pathOf(const std::u16string& text) {
    return std::filesystem::path(murmelix::com::wide(text));
}

std::optional<std::string> contentsOf(const std::u16string& file) {
    std::ifstream in(pathOf(file), std::ios::binary);
    if (!in)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void complain(HWND owner, const std::u16string& text) {
    MessageBoxW(owner, murmelix::com::wide(text), L"Messenger", MB_ICONERROR);
}

} // namespace

App::App(Switches switches)
    : switches_(std::move(switches)), log_(microseconds),
      main_(client_, {.sign_in =
                          [this](const std::u16string& signin, const std::u16string& friendly, bool remember) {
                              remember ? rememberAccount({signin, friendly}) : forgetAccount();
                              client_.signIn(signin, friendly);
                          },
                      .command = [this](std::string_view line) { return static_cast<LRESULT>(control_.execute(line)); },
                      .deliver =
                          [this] {
                              closed_.clear();
                              automation_.deliverEvents();
                          },
                      .tick = [this] { tick(); },
                      .user_acts = [this] { user_acted_ = true; },
                      .quit = [this] { quit(); }}),
      automation_(client_, faults_,
                  {.main_window = [this] { return main_.handle(); },
                   .ask_sign_in = [this] { main_.askSignIn(); },
                   .auto_sign_in = [this] { signInRemembered(); },
                   .deliver_later = [this] { main_.postDeliver(); },
                   .read = [this](const Conversation& conversation) { historyRead(conversation); }}),
      control_(client_, faults_,
               {.start_replay = [this] { return startReplay(0); },
                .shut_down = [this] { PostMessageW(main_.handle(), WM_CLOSE, 0, 0); },
                .exit = [this] { automation_.vanish(); }}) {
    client_.listen([this](const Change& change) { changed(change); });
}

int App::run() {
    murmelix::com::Served::onAliveChanged([this](long) { clientsChanged(); });
    start();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const HWND root = GetAncestor(message.hwnd, GA_ROOT);
        if (root && IsDialogMessageW(root, &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    murmelix::com::Served::onAliveChanged(nullptr);
    return static_cast<int>(message.wParam);
}

void App::start() {
    if (!switches_.log.empty() && !log_.open(pathOf(switches_.log)))
        complain(nullptr, u"The log cannot be written: " + switches_.log);
    const Account remembered = rememberedAccount().value_or(demoAccount());
    main_.propose(remembered.signin, remembered.friendly, rememberedAccount().has_value());
    ShowWindow(main_.handle(), switches_.embedding ? SW_SHOWNOACTIVATE : SW_SHOW);
    if (!switches_.signed_out) {
        if (!switches_.signin.empty())
            client_.signIn(switches_.signin, switches_.friendly);
        else if (!switches_.embedding || rememberedAccount())
            signInRemembered();
    }
    if (!switches_.conversation.empty() && !startConversation())
        complain(main_.handle(), u"The chat log cannot be read: " + switches_.conversation);
    automation_.offer();
}

void App::signInRemembered() {
    if (client_.signedIn())
        return;
    const Account account = rememberedAccount().value_or(demoAccount());
    client_.signIn(account.signin, account.friendly);
    if (switches_.conversation.empty()) {
        for (const DemoContact& contact : demoContacts())
            client_.addContact(contact.signin, contact.friendly, contact.status);
    }
}

bool App::startConversation() {
    const auto contents = contentsOf(switches_.conversation);
    if (!contents)
        return false;
    Script script = makeScript(parseChatLog(*contents), switches_.replay);
    std::vector<ContactPtr> present;
    for (const Person& person : script.people) {
        people_.push_back(
            client_.addContact(person.signin, person.friendly, person.present ? Status::online : Status::offline));
        if (person.present)
            present.push_back(people_.back());
    }
    replay_ = Replay(std::move(script.steps));
    replay_over_ = false;
    replayed_ = client_.open(std::move(present));
    if (!switches_.wait)
        startReplay(0);
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
    main_.changed(change);
    for (const auto& window : windows_)
        window->changed(change);
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
    if (switches_.wait && &conversation == replayed_.get())
        startReplay(reading_lead);
}

bool App::startReplay(double delay) {
    if (replay_over_ || replay_start_)
        return false;
    replay_start_ = microseconds() + static_cast<long long>(delay * 1e6);
    main_.setTick(static_cast<unsigned>(delay * 1000));
    return true;
}

void App::tick() {
    if (replay_start_ && !replay_over_) {
        const double now = static_cast<double>(microseconds() - *replay_start_) / 1e6;
        for (const Step& step : replay_.advance(now))
            play(step);
        replay_over_ = replay_.done() || replayed_->closed();
        if (replay_over_) {
            log_.write("done", {}, {});
            if (switches_.exit_when_done)
                quit();
        } else {
            const double left = std::clamp(replay_.nextAt() - now, 0.0, 3600.0);
            main_.setTick(static_cast<unsigned>(std::ceil(left * 1000)));
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
    if (isUnused() && !ended_)
        main_.setTick(unused_stay);
}

void App::quit() {
    if (std::exchange(ended_, true))
        return;
    client_.shutDown();
    automation_.deliverEvents();
    automation_.close();
    PostQuitMessage(0);
}

} // namespace messenger_client
