#include "tests/fakes/sockets.h"

#include <utility>

#include "tests/fakes/fakes.h"

namespace murmelix {

struct platform::Socket::Impl {
    SocketEvents events;
    SocketState state = SocketState::closed;
    std::string waiting;
};

namespace fakes {

Network& network() {
    return state().network;
}

namespace {

platform::Socket::Impl* openSocket() {
    return network().open;
}

} // namespace

bool accept() {
    auto* socket = openSocket();
    if (!socket || socket->state != platform::SocketState::connecting) {
        return false;
    }
    socket->state = platform::SocketState::connected;
    const auto told = socket->events.Connect;
    told();
    return true;
}

bool send(const std::string& bytes) {
    auto* socket = openSocket();
    if (!socket || socket->state != platform::SocketState::connected) {
        return false;
    }
    socket->waiting += bytes;
    const auto told = socket->events.DataArrival;
    told(socket->waiting.size());
    return true;
}

bool closeByServer() {
    auto* socket = openSocket();
    if (!socket || socket->state != platform::SocketState::connected) {
        return false;
    }
    socket->state = platform::SocketState::closing;
    const auto told = socket->events.Close;
    told();
    return true;
}

bool failConnection(unsigned long number, const std::u16string& description) {
    auto* socket = openSocket();
    if (!socket || socket->state == platform::SocketState::closed) {
        return false;
    }
    socket->state = platform::SocketState::error;
    const auto told = socket->events.Error;
    told(number, description);
    return true;
}

} // namespace fakes

namespace platform {

Socket::Socket(SocketEvents events) : impl_(std::make_shared<Impl>()) {
    impl_->events = std::move(events);
}

Socket::~Socket() {
    Close();
}

void Socket::Connect(const std::u16string& host, std::uint16_t port) {
    Close();
    fakes::network().connections.push_back({host, port, {}, false});
    fakes::network().open = impl_.get();
    impl_->state = SocketState::connecting;
}

void Socket::SendData(std::string_view bytes) {
    fakes::network().connections.back().sent += bytes;
}

std::string Socket::GetData() {
    return std::exchange(impl_->waiting, {});
}

SocketState Socket::State() const {
    return impl_->state;
}

void Socket::Close() {
    if (fakes::network().open == impl_.get()) {
        fakes::network().open = nullptr;
        fakes::network().connections.back().closed_here = true;
    }
    impl_->waiting.clear();
    impl_->state = SocketState::closed;
}

} // namespace platform

} // namespace murmelix
