#include "tests/fakes/sockets.h"

#include <functional>
#include <type_traits>
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

using platform::SocketState;

// The socket that is open, where it is in that state.
platform::Socket::Impl* open(SocketState state) {
    platform::Socket::Impl* socket = network().open;
    return socket && socket->state == state ? socket : nullptr;
}

// Told by a copy: what hears of it may end the socket.
template <class... Arguments>
bool tell(std::function<void(Arguments...)> event, const std::type_identity_t<Arguments>&... arguments) {
    event(arguments...);
    return true;
}

} // namespace

bool accept() {
    auto* socket = open(SocketState::connecting);
    if (!socket) {
        return false;
    }
    socket->state = SocketState::connected;
    return tell(socket->events.Connect);
}

bool send(const std::string& bytes) {
    auto* socket = open(SocketState::connected);
    if (!socket) {
        return false;
    }
    socket->waiting += bytes;
    return tell(socket->events.DataArrival, socket->waiting.size());
}

bool closeByServer() {
    auto* socket = open(SocketState::connected);
    if (!socket) {
        return false;
    }
    socket->state = SocketState::closing;
    return tell(socket->events.Close);
}

bool failConnection(unsigned long number, const std::u16string& description) {
    auto* socket = network().open;
    if (!socket) {
        return false;
    }
    socket->state = SocketState::error;
    return tell(socket->events.Error, number, description);
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
