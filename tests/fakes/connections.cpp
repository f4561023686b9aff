#include "tests/fakes/connections.h"

#include <utility>

#include "tests/fakes/fakes.h"

namespace murmelix {

struct platform::Connection::Impl {
    std::shared_ptr<fakes::ServerSide> server;
};

namespace fakes {

Servers& servers() {
    return state().servers;
}

// Events are told by a copy: what hears of one may end the connection.

bool ServerSide::open() {
    if (gone || state_ != State::opening) {
        return false;
    }
    state_ = State::open;
    const auto opened = events_.opened;
    opened();
    return true;
}

bool ServerSide::refuse(const platform::ConnectionEnd& end) {
    if (gone || state_ != State::opening) {
        return false;
    }
    state_ = State::ended;
    const auto failed = events_.failed;
    failed(end);
    return true;
}

bool ServerSide::send(std::string_view bytes) {
    if (gone || state_ != State::open) {
        return false;
    }
    const bool news = untaken_.empty();
    untaken_ += bytes;
    if (const auto arrived = events_.arrived; news && !bytes.empty()) {
        arrived();
    }
    return true;
}

bool ServerSide::close(const platform::ConnectionEnd& end) {
    if (gone || state_ != State::open || !untaken_.empty()) {
        return false;
    }
    state_ = State::ended;
    const auto closed = events_.closed;
    closed(end);
    return true;
}

} // namespace fakes

namespace platform {

Connection::Connection(ConnectionTarget target, ConnectionEvents events) : impl_(std::make_shared<Impl>()) {
    impl_->server = std::make_shared<fakes::ServerSide>(std::move(target), std::move(events));
    fakes::servers().connections.push_back(impl_->server);
}

Connection::~Connection() {
    impl_->server->gone = true;
    impl_->server->events_ = {};
}

bool Connection::send(std::string_view bytes) {
    fakes::ServerSide& server = *impl_->server;
    if (!server.isOpen()) {
        return false;
    }
    if (server.takes_none) {
        const bool fits = bytes.size() <= most_unsent - server.unsent_;
        server.unsent_ += fits ? bytes.size() : 0;
        return fits;
    }
    server.received += bytes;
    return true;
}

std::string Connection::take() {
    return std::exchange(impl_->server->untaken_, {});
}

} // namespace platform

} // namespace murmelix
