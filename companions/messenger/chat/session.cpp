#include "companions/messenger/chat/session.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "companions/messenger/chat/chat_log.h"

namespace messenger_client {

namespace {

// From the first reading of the history to the first message, in seconds: the reader has taken the text that it will
// not read aloud, and set its windows up.
constexpr double reading_lead = 0.5;
// How long a client started by COM stays when nobody calls it any more, in milliseconds.
constexpr unsigned unused_stay = 2000;
// From one look for idleness to the next, in milliseconds.
constexpr unsigned idle_look_time = 5000;
// So many steps of a replay are played before the rest of the program has its turn.
constexpr std::size_t steps_at_once = 500;
// The longest time that a timer is set for, in seconds; it is set anew then.
constexpr double longest_timer = 3600;

} // namespace

std::vector<ContactPtr> demoContacts() {
    const auto contact = [](const char16_t* signin, const char16_t* friendly, Status status) {
        return std::make_shared<Contact>(Contact{signin, friendly, status});
    };
    return {contact(u"hazel@messenger.example", u"Hazel", Status::online),
            contact(u"otto@messenger.example", u"Otto :)", Status::online),
            contact(u"mina@messenger.example", u"Mina", Status::away),
            contact(u"theo@messenger.example", u"Theo", Status::busy),
            contact(u"juniper@messenger.example", u"Juniper", Status::offline)};
}

Session::Session(Client& client, const Switches& switches, Hooks hooks)
    : client_(client), switches_(switches), hooks_(std::move(hooks)), signing_(client_),
      auto_idle_(static_cast<long long>(switches_.idle * 60'000)) {
    signing_.setTime(switches_.connect);
    signing_.hold(switches_.hold);
    client_.listen([this](const Change& change) { changed(change); });
}

void Session::changed(const Change& change) {
    if (change.kind == Change::Kind::signed_in) {
        if (change.number < 0) {
            to_remember_.reset();
        }
        rememberSignedIn();
    }
    if (change.kind == Change::Kind::signed_out && client_.accounts().lastRemembered()) {
        accountsChanged();
    }
}

void Session::start() {
    if (!switches_.signed_out) {
        signInAtStart();
    }
    lookWhetherIdle();
}

void Session::signInAtStart() {
    if (switches_.address) {
        return; // to a chat network instead
    }
    const Account* last = client_.accounts().lastRemembered();
    if (!switches_.signin.empty()) {
        client_.signIn(switches_.signin, switches_.friendly);
    } else if (!switches_.conversation.empty()) { // to be replayed at once
        last && !last->network ? client_.signIn(last->signin, {})
                               : client_.signIn(demo_account.signin, demo_account.friendly);
    } else if (client_.accounts().automatic() || (!last && !switches_.embedding)) {
        signInAutomatically();
    }
}

void Session::signInAutomatically() {
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

void Session::signIn(const SignInRequest& request) {
    const SignInRequest wanted = request;
    connect(wanted.signin, wanted.friendly, wanted.status);
    if (const Account* known = client_.accounts().find(wanted.signin); known && known->network) {
        return;
    }
    to_remember_ = wanted;
    if (client_.signedIn()) { // already
        rememberSignedIn();
    }
}

void Session::connect(std::u16string signin, std::u16string friendly, std::optional<Status> status) {
    const Account* known = client_.accounts().find(signin);
    if (known && known->network) {
        to_remember_.reset();
        return hooks_.network(*known);
    }
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
    hooks_.signing_in(signin, friendly);
    signing_.begin(signin, friendly, status.value_or(Status::online), milliseconds());
    schedule();
}

void Session::switchTo(const std::u16string& signin) {
    client_.signOut();
    if (!signin.empty()) {
        return connect(signin, {});
    }
    hooks_.ask_other_account();
}

void Session::rememberSignedIn() {
    if (!to_remember_ || !client_.signedIn()) {
        return;
    }
    const SignInRequest request = *std::exchange(to_remember_, std::nullopt);
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

void Session::accountsChanged() {
    hooks_.store(client_.accounts());
    hooks_.accounts_changed();
}

void Session::keep() {
    client_.keepAccount();
    if (client_.accounts().lastRemembered()) {
        hooks_.store(client_.accounts());
    }
}

void Session::schedule() {
    if (const auto due = signing_.dueAt()) {
        hooks_.set_timer(Clock::sign_in, static_cast<unsigned>(std::max(*due - milliseconds(), 0LL)));
    }
}

void Session::pretendUntouched(std::optional<long long> milliseconds) {
    pretended_untouched_ = milliseconds;
    lookWhetherIdle();
}

void Session::lookWhetherIdle() {
    const long long really = hooks_.untouched();
    if (client_.signedIn()) {
        if (const auto status = auto_idle_.look(client_.me()->status, pretended_untouched_.value_or(really))) {
            client_.setMyStatus(*status);
        }
    }
    hooks_.set_timer(Clock::idle, idle_look_time);
}

void Session::openReplay(std::string_view log) {
    ReplayOptions options = switches_.replay;
    options.participants = std::min(options.participants, most_contacts - client_.contacts().size());
    Script script = makeScript(parseChatLog(log), options);
    std::vector<ContactPtr> present;
    for (const Person& person : script.people) {
        people_.push_back(
            client_.addContact(person.signin, person.friendly, person.present ? Status::online : Status::offline));
        if (person.present) {
            present.push_back(people_.back());
        }
    }
    replayed_ = client_.open(std::move(present));
    if (!replayed_) {
        return;
    }
    replay_ = Replay(std::move(script.steps));
    replay_over_ = false;
    if (!switches_.wait) {
        startReplay();
    }
}

bool Session::startReplay(double delay) {
    if (replay_over_ || replay_start_) {
        return false;
    }
    replay_start_ = hooks_.microseconds() + static_cast<long long>(delay * 1e6);
    hooks_.set_timer(Clock::replay, static_cast<unsigned>(delay * 1000));
    return true;
}

void Session::historyRead(const Conversation& conversation) {
    if (switches_.wait && &conversation == replayed_.get()) {
        startReplay(reading_lead);
    }
}

void Session::endWhenUnused() {
    hooks_.set_timer(Clock::replay, unused_stay);
}

void Session::soon(std::function<void()> work) {
    work_.push_back(std::move(work));
    hooks_.set_timer(Clock::soon, 0);
}

void Session::work() {
    while (!work_.empty()) {
        const auto next = std::move(work_.front());
        work_.pop_front();
        if (!work_.empty()) {
            hooks_.set_timer(Clock::soon, 0); // for the rest, where this throws
        }
        next();
    }
}

void Session::tick(Clock clock) {
    switch (clock) {
    case Clock::sign_in:
        signing_.advance(milliseconds());
        return schedule();
    case Clock::idle:
        return lookWhetherIdle();
    case Clock::soon:
        return work();
    case Clock::replay:
        return replayOn();
    }
}

void Session::replayOn() {
    if (!replaying()) {
        return hooks_.unused();
    }
    const double now = static_cast<double>(hooks_.microseconds() - *replay_start_) / 1e6;
    for (const Step& step : replay_.advance(now, steps_at_once)) {
        try {
            play(step);
        } catch (const std::exception&) {
            continue; // a step without memory for it is lost alone
        }
    }
    replay_over_ = replay_.done() || replayed_->closed();
    if (replay_over_) {
        return hooks_.replayed();
    }
    const double left = std::clamp(replay_.nextAt() - now, 0.0, longest_timer);
    hooks_.set_timer(Clock::replay, static_cast<unsigned>(std::ceil(left * 1000)));
}

void Session::play(const Step& step) {
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

} // namespace messenger_client
