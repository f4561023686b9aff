#include "platform/socket.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <winsock2.h>

#include "common/ansi.h"
#include "common/com/handles.h"
#include "platform/win32/message_window.h"
#include "platform/win32/system_error.h"
#include "platform/win32/winsock.h"

namespace murmelix::platform {

namespace {

constexpr UINT resolved_message = WM_APP, socket_message = WM_APP + 1;
constexpr wchar_t window_class[] = L"MurmelixSocket";
constexpr std::size_t socket_block = 65536; // bytes received at once

} // namespace

struct Socket::Impl : std::enable_shared_from_this<Socket::Impl> {
    explicit Impl(SocketEvents of_socket) : events(std::move(of_socket)) {
        window = makeMessageWindow(window_class, procedure, this);
    }
    ~Impl() {
        close();
        DestroyWindow(window);
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void connect(const std::u16string& host, std::uint16_t to_port) {
        close();
        port = to_port;
        state = SocketState::resolving_host;
        resolving = WSAAsyncGetHostByName(window, resolved_message, toAnsi(host).c_str(), address.data(),
                                          static_cast<int>(address.size()));
        if (!resolving) {
            // Told from the message loop, as everything is.
            PostMessageW(window, resolved_message, 0, MAKELPARAM(0, WSAGetLastError()));
        }
    }

    void close() {
        if (const HANDLE task = std::exchange(resolving, nullptr)) {
            WSACancelAsyncRequest(task);
        }
        if (const SOCKET open = std::exchange(socket, INVALID_SOCKET); open != INVALID_SOCKET) {
            closesocket(open);
        }
        unsent.clear();
        state = SocketState::closed;
    }

    void resolved(int error) {
        resolving = nullptr;
        if (error) {
            return fail(error);
        }
        state = SocketState::host_resolved;
        const auto* host = reinterpret_cast<const HOSTENT*>(address.data());
        if (host->h_addrtype != AF_INET || host->h_length != sizeof(in_addr) || !host->h_addr_list[0]) {
            return fail(WSANO_DATA);
        }
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(port);
        std::memcpy(&to.sin_addr, host->h_addr_list[0], sizeof to.sin_addr);
        socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        if (socket == INVALID_SOCKET ||
            WSAAsyncSelect(socket, window, socket_message, FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE) != 0) {
            return fail(WSAGetLastError());
        }
        state = SocketState::connecting;
        if (::connect(socket, reinterpret_cast<const sockaddr*>(&to), sizeof to) != 0 &&
            WSAGetLastError() != WSAEWOULDBLOCK) {
            fail(WSAGetLastError());
        }
    }

    void happened(SOCKET to, int event, int error) {
        if (to != socket || state == SocketState::closing) {
            return; // of a connection that was closed
        }
        if (error) {
            return fail(error);
        }
        switch (event) {
        case FD_CONNECT:
            state = SocketState::connected;
            return tell(events.Connect);
        case FD_READ:
            return tellOfData();
        case FD_WRITE:
            return sendMore();
        case FD_CLOSE:
            state = SocketState::closing;
            // What came before has all been told; a listener that takes nothing is told no more.
            for (std::size_t before = 0, waits = waiting(); waits != 0 && waits != before; waits = waiting()) {
                before = waits;
                tellOfData();
                if (to != socket) {
                    return;
                }
            }
            return tell(events.Close);
        default:
            return;
        }
    }

    std::size_t waiting() const {
        u_long bytes = 0;
        return socket != INVALID_SOCKET && ioctlsocket(socket, FIONREAD, &bytes) == 0 ? bytes : 0;
    }

    void tellOfData() {
        if (const std::size_t bytes = waiting()) {
            tell(events.DataArrival, bytes);
        }
    }

    std::string receive() {
        std::string all;
        for (std::size_t left = waiting(); left > 0;) {
            std::array<char, socket_block> bytes;
            const int count = recv(socket, bytes.data(), static_cast<int>(std::min(left, bytes.size())), 0);
            if (count <= 0) {
                break;
            }
            all.append(bytes.data(), static_cast<std::size_t>(count));
            left -= static_cast<std::size_t>(count);
        }
        return all;
    }

    void sendMore() {
        while (!unsent.empty()) {
            const int count = ::send(socket, unsent.data(), static_cast<int>(std::min(unsent.size(), socket_block)), 0);
            if (count < 0) {
                return WSAGetLastError() == WSAEWOULDBLOCK ? void() : fail(WSAGetLastError());
            }
            unsent.erase(0, static_cast<std::size_t>(count));
        }
    }

    void fail(int error) {
        close();
        state = SocketState::error;
        tell(events.Error, static_cast<unsigned long>(error), errorText(static_cast<unsigned long>(error)));
    }

    template <class... Arguments, class... Given>
    void tell(const std::function<void(Arguments...)>& event, Given&&... given) {
        const auto listener = event; // which may end with the socket
        if (listener) {
            try {
                listener(std::forward<Given>(given)...);
            } catch (...) { // nothing gets into the window system
            }
        }
    }

    static LRESULT CALLBACK procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message != resolved_message && message != socket_message) {
            return DefWindowProcW(hwnd, message, wparam, lparam);
        }
        // An event may end the socket.
        const auto impl = reinterpret_cast<Impl*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))->shared_from_this();
        if (message == socket_message) {
            impl->happened(static_cast<SOCKET>(wparam), WSAGETSELECTEVENT(lparam), WSAGETSELECTERROR(lparam));
        } else if (reinterpret_cast<HANDLE>(wparam) == impl->resolving && impl->state == SocketState::resolving_host) {
            impl->resolved(WSAGETASYNCERROR(lparam));
        }
        return 0;
    }

    Winsock winsock;
    SocketEvents events;
    HWND window = nullptr;
    HANDLE resolving = nullptr;
    alignas(HOSTENT) std::array<char, MAXGETHOSTSTRUCT> address{};
    std::uint16_t port = 0;
    SOCKET socket = INVALID_SOCKET;
    SocketState state = SocketState::closed;
    std::string unsent;
};

Socket::Socket(SocketEvents events) : impl_(std::make_shared<Impl>(std::move(events))) {}

Socket::~Socket() {
    impl_->events = {};
    impl_->close();
}

void Socket::Connect(const std::u16string& host, std::uint16_t port) {
    impl_->connect(host, port);
}

void Socket::SendData(std::string_view bytes) {
    impl_->unsent += bytes;
    impl_->sendMore();
}

std::string Socket::GetData() {
    return impl_->receive();
}

SocketState Socket::State() const {
    return impl_->state;
}

void Socket::Close() {
    impl_->close();
}

} // namespace murmelix::platform
