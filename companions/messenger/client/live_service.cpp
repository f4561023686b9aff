#include "companions/messenger/client/live_service.h"

#include <random>
#include <utility>

#include "companions/messenger/client/account.h"
#include "platform/clock.h"
#include "ui/screen.h"

namespace messenger_client {

namespace platform = murmelix::platform;

namespace {

// What does not go away by trying again.
bool isForGood(platform::ConnectionFault fault) {
    using Fault = platform::ConnectionFault;
    switch (fault) {
    case Fault::certificate_out_of_date:
    case Fault::certificate_for_other_name:
    case Fault::certificate_of_unknown_issuer:
    case Fault::certificate_invalid:
    case Fault::not_tls:
    case Fault::no_agreement:
        return true;
    default:
        return false;
    }
}

} // namespace

LiveService::LiveService(Client& client, Hooks hooks) : client_(client), hooks_(std::move(hooks)) {
    Tick.Tick = [this] {
        Tick.setEnabled(false);
        if (account_) {
            account_->tick();
        }
    };
    client_.setOpener([this](const ContactPtr& contact) { return account_ ? account_->talkWith(contact) : nullptr; });
}

void LiveService::signIn(irc::Settings settings, Status status) {
    client_.signOut();
    drop();
    if (const auto other = streamingServer(); other && settings.address.dialect == irc::Dialect::twitch) {
        settings.address.host = other->host;
        settings.address.port = other->port;
        settings.address.tls = other->tls;
    }
    account_ = std::make_unique<LiveAccount>(
        client_, std::move(settings), status,
        LiveAccount::Hooks{
            .open = [this](const irc::Address& address) { open(address); },
            .send =
                [this](std::string_view bytes) {
                    if (connection_) {
                        connection_->send(bytes); // what a server does not take, it takes no more: it is lost soon
                    }
                },
            .close = [this] { connection_.reset(); },
            .milliseconds = [] { return platform::microseconds() / 1000; },
            .today = [] { return platform::secondsSince1970() * 1000; },
            .random = [] { return std::uint32_t{std::random_device()()}; },
            .set_timer =
                [this](unsigned milliseconds) {
                    Tick.setInterval(static_cast<int>(milliseconds));
                    Tick.setEnabled(true);
                },
            .delivered = hooks_.delivered,
            .failed = hooks_.failed,
            .tell_user = hooks_.tell_user,
            .bring_up = hooks_.bring_up,
            .characters = installedCharacters,
            .rules_of = readingRules,
            .keep_rules = keepReadingRules,
        });
    account_->start();
}

void LiveService::open(const irc::Address& address) {
    connection_ = std::make_unique<platform::Connection>(
        platform::ConnectionTarget{.host = address.host, .port = address.port, .tls = address.tls},
        platform::ConnectionEvents{
            .opened = [this] { account_->connected(); },
            .arrived =
                [this] {
                    const std::string bytes = connection_->take();
                    account_->received(bytes);
                },
            .closed = [this](const platform::ConnectionEnd& end) { closed(end); },
            .failed = [this](const platform::ConnectionEnd& end) { closed(end); },
        });
}

void LiveService::closed(const platform::ConnectionEnd& end) {
    connection_.reset();
    isForGood(end.fault) ? account_->failed(end.why) : account_->lost(end.why);
}

std::u16string LiveService::join(std::u16string_view channels) {
    return account_ ? account_->join(channels) : u"You are signed in to no chat network.";
}

void LiveService::reconnect() {
    if (account_) {
        account_->reconnectNow();
    }
}

// The account may be in the middle of telling: it goes when it is done.
void LiveService::drop() {
    Tick.setEnabled(false);
    if (account_) {
        account_->quit();
        connection_.reset();
        const std::shared_ptr<LiveAccount> last = std::move(account_);
        ui::post([last] {});
    }
}

void LiveService::changed(const Change& change) {
    if (!account_) {
        return;
    }
    switch (change.kind) {
    case Change::Kind::signed_in:
        if (change.number < 0 || !client_.me() || !account_->is(*client_.me())) {
            drop();
        }
        break;
    case Change::Kind::signed_out:
    case Change::Kind::shutting_down:
        drop();
        break;
    case Change::Kind::window_destroyed:
        account_->closed(change.conversation);
        break;
    case Change::Kind::my_status:
        account_->statusChosen();
        break;
    case Change::Kind::my_name:
        account_->nameChosen();
        break;
    default:
        break;
    }
}

} // namespace messenger_client
