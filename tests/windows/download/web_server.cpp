#include "tests/windows/download/web_server.h"

#include <array>

#include <winsock2.h>

#include "common/text.h"

namespace murmelix::test {

namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

std::string WebServer::Visitor::request() const {
    std::string all;
    char byte = 0;
    while (all.find("\r\n\r\n") == std::string::npos && recv(socket_, &byte, 1, 0) == 1) {
        all += byte;
    }
    return all;
}

bool WebServer::Visitor::answer(std::string_view bytes) const {
    while (!bytes.empty()) {
        const int count = send(socket_, bytes.data(), static_cast<int>(std::min<std::size_t>(bytes.size(), 65536)), 0);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string WebServer::Visitor::untilClosed() const {
    std::string all;
    std::array<char, 4096> bytes;
    for (int count; (count = recv(socket_, bytes.data(), static_cast<int>(bytes.size()), 0)) > 0;) {
        all.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return all;
}

WebServer::WebServer(std::function<void(const Visitor&)> serve) : serve_(std::move(serve)) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    listening_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = loopback(0);
    bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    int size = sizeof address;
    getsockname(listening_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    listen(listening_, SOMAXCONN);
    thread_ = std::thread([this] { run(); });
}

WebServer::~WebServer() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        if (served_) {
            shutdown(served_, SD_BOTH);
        }
    }
    // A last visitor wakes the thread.
    const SOCKET last = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    const sockaddr_in address = loopback(port_);
    connect(last, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    thread_.join();
    closesocket(last);
    closesocket(listening_);
    WSACleanup();
}

std::u16string WebServer::host() const {
    return u"127.0.0.1:" + toText(port_);
}

void WebServer::run() {
    for (;;) {
        const SOCKET visitor = accept(listening_, nullptr, nullptr);
        {
            const std::lock_guard lock(mutex_);
            if (visitor == INVALID_SOCKET || ended_) {
                closesocket(visitor);
                return;
            }
            served_ = visitor;
        }
        serve_(Visitor(visitor));
        const std::lock_guard lock(mutex_);
        served_ = 0;
        closesocket(visitor);
    }
}

} // namespace murmelix::test
