#include "platform/connection.h"

#include <winsock2.h>
// After the one above.
#include <ws2tcpip.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "common/com/handles.h"
#include "common/text.h"
#include "platform/win32/certificate.h"
#include "platform/win32/errand.h"
#include "platform/win32/message_window.h"
#include "platform/win32/system_error.h"
#include "platform/win32/tls_stream.h"
#include "platform/win32/winsock.h"

namespace murmelix::platform {

namespace {

constexpr UINT socket_message = WM_APP, looked_up_message = WM_APP + 1, judged_message = WM_APP + 2,
               continue_message = WM_APP + 3;
constexpr UINT_PTR opening_timer = 1, attempt_timer = 2, reading_timer = 3;
constexpr wchar_t window_class[] = L"MurmelixConnection";
constexpr std::size_t connection_block = 65536; // bytes received or sent at once
constexpr std::size_t most_addresses = 8;       // of a name; tried one after the other
constexpr unsigned longest_attempt = 10'000;    // milliseconds for one of them, where there are others

struct Address {
    sockaddr_storage bytes{};
    int size = 0;
};

struct Lookup : Errand {
    Winsock winsock; // it may outlive the connection
    std::u16string host, port;
    std::vector<Address> addresses = {};
    int error = 0;

    void run() {
        ADDRINFOW wishes{}, *found = nullptr;
        wishes.ai_socktype = SOCK_STREAM;
        wishes.ai_protocol = IPPROTO_TCP;
        error = GetAddrInfoW(com::wide(host), com::wide(port), &wishes, &found);
        for (const ADDRINFOW* one = error ? nullptr : found; one && addresses.size() < most_addresses;
             one = one->ai_next) {
            if (one->ai_addrlen <= sizeof(sockaddr_storage)) {
                Address& address = addresses.emplace_back();
                std::memcpy(&address.bytes, one->ai_addr, one->ai_addrlen);
                address.size = static_cast<int>(one->ai_addrlen);
            }
        }
        if (found) {
            FreeAddrInfoW(found);
        }
    }
};

struct Judgement : Errand {
    Certificate certificate;
    std::u16string host;
    std::optional<ConnectionEnd> fault = {};

    void run() { fault = judgeCertificate(certificate, host); }
};

// Whether a user, a window to be painted or a timer waits for the thread: the messages of a socket come before these.
bool othersWait() {
    return HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER)) != 0;
}

// RFC 5246, 7.2, of those that a server has a reason to send.
std::u16string_view textOfAlert(int alert) {
    switch (alert) {
    case 40:
        return u"it accepts none of the ways of encrypting";
    case 42:
    case 43:
    case 44:
    case 45:
    case 46:
    case 116:
        return u"it asks for a certificate of yours";
    case 49:
        return u"access is denied";
    case 80:
        return u"it has trouble of its own";
    case 112:
        return u"it does not know that name";
    default:
        return u"it does not say why";
    }
}

} // namespace

struct Connection::Impl : std::enable_shared_from_this<Connection::Impl> {
    enum class Phase { looking_up, connecting, agreeing, judging, open, ended };

    Impl(ConnectionTarget to, ConnectionEvents its_events) : target(std::move(to)), events(std::move(its_events)) {
        window = makeMessageWindow(window_class, procedure, this);
        SetTimer(window, opening_timer, target.milliseconds, nullptr);
        lookup = std::make_shared<Lookup>();
        lookup->host = target.host;
        lookup->port = toText(target.port);
        if (!Errand::begin(lookup, window, looked_up_message, 0, [](Lookup& it) { it.run(); })) {
            lookup->error = WSA_NOT_ENOUGH_MEMORY;
            PostMessageW(window, looked_up_message, 0, 0);
        }
    }
    ~Impl() {
        leave();
        DestroyWindow(window);
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void leave() {
        phase = Phase::ended;
        if (lookup) {
            lookup->giveUp();
        }
        if (judgement) {
            judgement->giveUp();
        }
        for (const UINT_PTR timer : {opening_timer, attempt_timer, reading_timer}) {
            KillTimer(window, timer);
        }
        closeSocket();
    }

    void closeSocket() {
        if (const SOCKET open = std::exchange(socket, INVALID_SOCKET); open != INVALID_SOCKET) {
            closesocket(open);
        }
    }

    // The owner has enough of it.
    void close() {
        events = {};
        if (phase == Phase::open) {
            if (tls) {
                tls->close();
                unsent += tls->takeCiphertext();
            }
            sendMore();
        }
        leave();
    }

    // --- opening

    void lookedUp() {
        if (phase != Phase::looking_up) {
            return;
        }
        if (lookup->addresses.empty()) {
            const bool nobody = lookup->error == WSAHOST_NOT_FOUND || lookup->error == WSANO_DATA;
            return nobody ? end(ConnectionFault::no_such_host, u"There is no server with the name " + target.host)
                          : end(ConnectionFault::unreachable,
                                u"The name " + target.host + u" could not be looked up: is there a network?");
        }
        phase = Phase::connecting;
        connectToNext();
    }

    void connectToNext() {
        KillTimer(window, attempt_timer);
        for (; phase == Phase::connecting && next_address < lookup->addresses.size();) {
            const Address& address = lookup->addresses[next_address++];
            closeSocket();
            socket = ::socket(address.bytes.ss_family, SOCK_STREAM, IPPROTO_TCP);
            if (socket == INVALID_SOCKET ||
                WSAAsyncSelect(socket, window, socket_message, FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE) != 0) {
                attempt_error = WSAGetLastError();
                continue;
            }
            const auto* to = reinterpret_cast<const sockaddr*>(&address.bytes);
            if (::connect(socket, to, address.size) == 0 || WSAGetLastError() == WSAEWOULDBLOCK) {
                if (next_address < lookup->addresses.size()) {
                    SetTimer(window, attempt_timer, longest_attempt, nullptr);
                }
                return;
            }
            attempt_error = WSAGetLastError();
        }
        switch (attempt_error) {
        case WSAECONNREFUSED:
            return end(ConnectionFault::refused,
                       u"Nobody answers at port " + toText(target.port) + u" of " + target.host);
        case WSAETIMEDOUT:
            return endForSilence();
        default:
            return end(ConnectionFault::unreachable,
                       target.host + u" cannot be reached: " + errorText(static_cast<unsigned long>(attempt_error)));
        }
    }

    void connected() {
        KillTimer(window, attempt_timer);
        if (!target.tls) {
            return opened();
        }
        phase = Phase::agreeing;
        tls = std::make_unique<TlsStream>(target.host);
        tls->begin();
        goOnAgreeing();
    }

    void goOnAgreeing() {
        unsent += tls->takeCiphertext();
        sendMore();
        if (tls->state() == TlsStream::State::failed) {
            return endForTls();
        }
        if (tls->state() == TlsStream::State::agreeing) {
            return;
        }
        phase = Phase::judging;
        judgement = std::make_shared<Judgement>();
        judgement->certificate = tls->certificate();
        judgement->host = target.host;
        if (!judgement->certificate.get() ||
            !Errand::begin(judgement, window, judged_message, 0, [](Judgement& it) { it.run(); })) {
            end(ConnectionFault::system, u"The certificate of " + target.host + u" could not be looked at");
        }
    }

    void judged() {
        if (phase != Phase::judging) {
            return;
        }
        if (judgement->fault) {
            return end(std::move(*judgement->fault));
        }
        opened();
    }

    void opened() {
        phase = Phase::open;
        KillTimer(window, opening_timer);
        // The server's first words can have come with the end of agreeing; its last ones as well.
        if (tls) {
            takeFromTls();
        }
        resume();
        tell(events.opened);
        if (phase == Phase::open && !untaken.empty()) {
            tell(events.arrived);
        }
    }

    void takeFromTls() {
        untaken = tls->takePlaintext();
        if (tls->state() != TlsStream::State::agreed) {
            last_word = tls->state() == TlsStream::State::closed ? closedByServer() : brokenTls();
            resume();
        }
    }

    // --- bytes

    // What was left unread meanwhile is read from the message loop.
    void resume() { PostMessageW(window, continue_message, 0, 0); }

    void readWhenFree() {
        if (othersWait()) {
            // The timer comes when nothing else does.
            SetTimer(window, reading_timer, USER_TIMER_MINIMUM, nullptr);
        } else {
            read();
        }
    }

    void read() {
        if ((phase != Phase::agreeing && phase != Phase::open) || !untaken.empty()) {
            return; // resumed later
        }
        if (last_word) {
            return end(std::move(*last_word));
        }
        std::array<char, connection_block> bytes;
        const int count = recv(socket, bytes.data(), static_cast<int>(bytes.size()), 0);
        if (count > 0) {
            received({bytes.data(), static_cast<std::size_t>(count)});
        } else if (count == 0) {
            endForClose();
        } else if (const int error = WSAGetLastError(); error != WSAEWOULDBLOCK || send_error) {
            endForBreak(send_error ? send_error : error);
        } else if (hung_up) {
            endForClose();
        }
    }

    void received(std::string_view bytes) {
        if (hung_up) {
            resume(); // the system says no more when there is more
        }
        if (!tls) {
            untaken = bytes;
        } else {
            tls->feed(bytes);
            if (phase == Phase::agreeing) {
                return goOnAgreeing();
            }
            takeFromTls();
        }
        if (!untaken.empty()) {
            tell(events.arrived);
        }
    }

    std::string take() {
        if (!untaken.empty() && phase == Phase::open) {
            resume();
        }
        return std::exchange(untaken, {});
    }

    bool send(std::string_view bytes) {
        if (phase != Phase::open || bytes.size() > most_unsent || unsent.size() > most_unsent - bytes.size()) {
            return false;
        }
        if (!tls) {
            unsent += bytes;
        } else {
            if (!tls->seal(bytes)) {
                last_word = brokenTls();
                resume();
                return false;
            }
            unsent += tls->takeCiphertext();
        }
        sendMore();
        return true;
    }

    void sendMore() {
        std::size_t sent = 0;
        while (sent < unsent.size()) {
            const int count = ::send(socket, unsent.data() + sent,
                                     static_cast<int>(std::min(unsent.size() - sent, connection_block)), 0);
            if (count < 0) {
                if (const int error = WSAGetLastError(); error != WSAEWOULDBLOCK && !send_error) {
                    send_error = error;
                    resume(); // it ends from the message loop, after what came before
                }
                break;
            }
            sent += static_cast<std::size_t>(count);
        }
        unsent.erase(0, sent);
    }

    void happened(SOCKET to, int event, int error) {
        if (to != socket || phase == Phase::ended) {
            return; // of an attempt that was given up
        }
        switch (event) {
        case FD_CONNECT:
            if (phase != Phase::connecting) {
                return;
            }
            if (error) {
                attempt_error = error;
                return connectToNext();
            }
            return connected();
        case FD_READ:
            return readWhenFree();
        case FD_WRITE:
            return sendMore();
        case FD_CLOSE:
            hung_up = true;
            close_error = error;
            return readWhenFree();
        default:
            return;
        }
    }

    // --- the end

    ConnectionEnd closedByServer() const {
        return {ConnectionFault::none, target.host + u" has closed the connection."};
    }

    ConnectionEnd brokenTls() const {
        return {ConnectionFault::broken_off, u"The connection to " + target.host + u" was disturbed."};
    }

    void endForClose() {
        if (close_error) {
            return endForBreak(close_error);
        }
        if (phase == Phase::agreeing) {
            return end(ConnectionFault::broken_off,
                       target.host + u" has closed the connection before it was encrypted");
        }
        end(closedByServer());
    }

    void endForBreak(int error) {
        end(ConnectionFault::broken_off,
            u"The connection to " + target.host + u" was broken off: " + errorText(static_cast<unsigned long>(error)));
    }

    void endForSilence() { end(ConnectionFault::timed_out, target.host + u" does not answer"); }

    void endForTls() {
        switch (tls->fault()) {
        case ConnectionFault::not_tls:
            return end(ConnectionFault::not_tls, target.host + u" does not speak TLS at port " + toText(target.port));
        case ConnectionFault::alert:
            return end(ConnectionFault::alert, target.host + u" refuses the encrypted connection: " +
                                                   std::u16string(textOfAlert(tls->alert())) + u" (" +
                                                   toText(tls->alert()) + u")");
        case ConnectionFault::system:
            return end(ConnectionFault::system, u"This computer cannot encrypt connections");
        default:
            return end(ConnectionFault::no_agreement,
                       u"This computer and " + target.host + u" could not agree on how to encrypt (TLS 1.2)");
        }
    }

    void end(ConnectionFault fault, const std::u16string& sentence) { end({fault, sentence + u"."}); }

    void end(ConnectionEnd how) {
        const auto listener = phase == Phase::open ? events.closed : events.failed;
        leave();
        tell(listener, how);
    }

    template <class... Arguments, class... Given>
    void tell(const std::function<void(Arguments...)>& event, Given&&... given) {
        const auto listener = event; // which may end with the connection
        if (listener) {
            try {
                listener(std::forward<Given>(given)...);
            } catch (...) { // nothing gets into the window system
            }
        }
    }

    void timed(UINT_PTR timer) {
        KillTimer(window, timer);
        switch (timer) {
        case opening_timer:
            return phase == Phase::open || phase == Phase::ended ? void() : endForSilence();
        case attempt_timer:
            attempt_error = WSAETIMEDOUT;
            return phase == Phase::connecting ? connectToNext() : void();
        case reading_timer:
            return read();
        default:
            return;
        }
    }

    static LRESULT CALLBACK procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message != WM_TIMER && (message < socket_message || message > continue_message)) {
            return DefWindowProcW(hwnd, message, wparam, lparam);
        }
        // An event may end the connection.
        const auto impl = reinterpret_cast<Impl*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))->shared_from_this();
        switch (message) {
        case WM_TIMER:
            impl->timed(wparam);
            break;
        case socket_message:
            impl->happened(static_cast<SOCKET>(wparam), WSAGETSELECTEVENT(lparam), WSAGETSELECTERROR(lparam));
            break;
        case looked_up_message:
            impl->lookedUp();
            break;
        case judged_message:
            impl->judged();
            break;
        default:
            impl->readWhenFree();
            break;
        }
        return 0;
    }

    Winsock winsock;
    ConnectionTarget target;
    ConnectionEvents events;
    HWND window = nullptr;
    Phase phase = Phase::looking_up;
    std::shared_ptr<Lookup> lookup;
    std::size_t next_address = 0;
    int attempt_error = 0, send_error = 0, close_error = 0;
    SOCKET socket = INVALID_SOCKET;
    std::unique_ptr<TlsStream> tls;
    std::shared_ptr<Judgement> judgement;
    bool hung_up = false;                   // by the other side
    std::optional<ConnectionEnd> last_word; // told once all that came before is taken
    std::string untaken, unsent;
};

Connection::Connection(ConnectionTarget target, ConnectionEvents events)
    : impl_(std::make_shared<Impl>(std::move(target), std::move(events))) {}

Connection::~Connection() {
    impl_->close();
}

bool Connection::send(std::string_view bytes) {
    return impl_->send(bytes);
}

std::string Connection::take() {
    return impl_->take();
}

} // namespace murmelix::platform
