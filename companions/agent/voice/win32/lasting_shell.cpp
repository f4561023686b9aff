#include "companions/agent/voice/win32/lasting_shell.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <random>
#include <utility>

#include <winsock2.h>

#include "companions/agent/voice/win32/inheritance.h"

namespace agent::voice {

namespace {

using Clock = std::chrono::steady_clock;

constexpr long shell_poll_ms = 20;          // how often a stop is looked for
constexpr std::chrono::seconds greeting{2}; // who connects says who it is within this time
constexpr std::size_t longest_line = 64;    // of what a shell says
// A shell that has not been heard of for so long is given up for a new one, which is given twice the time. Each has a
// file of its own: one that comes late would read there what is said to another.
constexpr std::chrono::seconds first_patience{5};

class Winsock {
  public:
    Winsock() {
        WSADATA data{};
        good_ = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~Winsock() {
        if (good_) {
            WSACleanup();
        }
    }
    Winsock(const Winsock&) = delete;
    Winsock& operator=(const Winsock&) = delete;
    explicit operator bool() const { return good_; }

  private:
    bool good_ = false;
};

class Socket {
  public:
    Socket() = default;
    explicit Socket(SOCKET socket) : socket_(socket) {}
    Socket(Socket&& other) noexcept : socket_(std::exchange(other.socket_, INVALID_SOCKET)) {}
    Socket& operator=(Socket&& other) noexcept {
        std::swap(socket_, other.socket_);
        return *this;
    }
    ~Socket() { close(); }
    void close() {
        if (socket_ != INVALID_SOCKET) {
            closesocket(std::exchange(socket_, INVALID_SOCKET));
        }
    }
    SOCKET get() const { return socket_; }
    HANDLE handle() const { return reinterpret_cast<HANDLE>(socket_); }
    explicit operator bool() const { return socket_ != INVALID_SOCKET; }

  private:
    SOCKET socket_ = INVALID_SOCKET;
};

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// Whether there is something to take, or to accept, within a moment.
bool isReady(const Socket& socket) {
    fd_set readable{};
    FD_SET(socket.get(), &readable);
    timeval moment{0, shell_poll_ms * 1000};
    return select(0, &readable, nullptr, nullptr, &moment) > 0;
}

std::string unguessable() {
    std::random_device random;
    std::string token;
    for (int i = 0; i < 32; ++i) {
        token += "0123456789abcdef"[random() % 16];
    }
    return token;
}

} // namespace

// How long a run may take, and by what it is ended.
struct LastingShell::Bounds {
    Clock::time_point deadline;
    const std::stop_token& stop;

    // The reason to wait no longer; null while there is none.
    const char* passed() const {
        return stop.stop_requested() ? "stopped" : Clock::now() >= deadline ? "the program takes too long" : nullptr;
    }
};

// A shell that has been started, and the connection that it has made to this program. (Of what Wine has it inherit, the
// sockets do not wait for what is to come, and a pipe it would not inherit.)
class LastingShell::Session {
  public:
    // False, with the reason in `error`, where there is no shell.
    bool start(const std::wstring& command, const Bounds& bounds, std::string& error) {
        const Socket listener(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
        sockaddr_in address = loopback();
        int size = sizeof address;
        error = "no connection to a program can be made";
        if (!winsock_ || !listener || !file_ ||
            bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener.get(), SOMAXCONN) != 0 ||
            getsockname(listener.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
            return false;
        }
        // Any program may connect. The shell alone reads in the file what it has to say.
        const std::string token = unguessable();
        if (!fill(file_, std::to_string(ntohs(address.sin_port)) + "\n" + token + "\n")) {
            return false;
        }
        std::wstring line =
            L"\"\\\\?\\unix\\usr\\bin\\env\" bash -c \""
            L"read -r port && read -r token && exec 3<>/dev/tcp/127.0.0.1/$port && echo $token >&3 || exit; "
            L"set -f; while IFS= read -r arguments <&3; do " +
            command + L"; echo $? >&3; done\"";
        const Handle nowhere(
            CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
        const Handle process(startProgram(line, file_.get(), nowhere.get()));
        while (!bounds.passed()) {
            if (!isReady(listener)) {
                continue;
            }
            connection_ = Socket(accept(listener.get(), nullptr, nullptr));
            const Bounds soon{std::min(bounds.deadline, Clock::now() + greeting), bounds.stop};
            u_long at_once = 1;
            if (connection_ && ioctlsocket(connection_.get(), static_cast<long>(FIONBIO), &at_once) == 0 &&
                answer(soon, error) == token) {
                return true;
            }
            connection_.close();
        }
        error = bounds.stop.stop_requested() ? "stopped" : "the program cannot be started";
        return false;
    }

    bool order(const std::vector<std::string>& arguments, std::string_view input) {
        std::string line;
        for (const std::string& argument : arguments) {
            line += argument + " ";
        }
        line += '\n';
        said_.clear();
        busy_ = fill(file_, input) &&
                send(connection_.get(), line.data(), static_cast<int>(line.size()), 0) == static_cast<int>(line.size());
        return busy_;
    }

    // An order whose end was not waited for.
    bool busy() const { return busy_; }

    // What it says of the end of its order; nothing, with the reason in `error`, where it is not waited for any longer,
    // and an empty text where the shell has ended.
    std::optional<std::string> answer(const Bounds& bounds, std::string& error,
                                      std::size_t most_in_file = std::size_t{0} - 1) {
        for (;;) {
            const bool open = take();
            if (const std::size_t end = said_.find('\n'); end != said_.npos) {
                busy_ = false;
                return said_.substr(0, end);
            }
            if (!open || said_.size() > longest_line) {
                return std::string();
            }
            if (sizeOf(file_) > most_in_file) {
                error = "the program writes too much";
                return std::nullopt;
            }
            if (const char* const reason = bounds.passed()) {
                error = reason;
                return std::nullopt;
            }
        }
    }

    const Handle& file() const { return file_; }

  private:
    // Takes what comes within a moment; false when the other end is closed.
    bool take() {
        if (!isReady(connection_)) {
            return true;
        }
        std::array<char, longest_line> block{};
        const int got = recv(connection_.get(), block.data(), static_cast<int>(block.size()), 0);
        if (got <= 0) {
            return got < 0 && WSAGetLastError() == WSAEWOULDBLOCK;
        }
        said_.append(block.data(), static_cast<std::size_t>(got));
        return true;
    }

    Winsock winsock_;
    Socket connection_;
    Handle file_{
        temporaryFile()}; // the shell's standard input, from which it and its commands read and to which they write
    std::string said_;
    bool busy_ = false;
};

LastingShell::LastingShell(std::wstring command) : command_(std::move(command)) {}

LastingShell::~LastingShell() = default;

bool LastingShell::start(const Bounds& bounds, std::string& error) {
    for (std::chrono::seconds patience = first_patience;; patience *= 2) {
        const Bounds attempt{std::min(bounds.deadline, Clock::now() + patience), bounds.stop};
        session_ = std::make_unique<Session>();
        if (session_->start(command_, attempt, error)) {
            return true;
        }
        session_.reset();
        if (bounds.passed() || !attempt.passed()) {
            return false;
        }
    }
}

std::optional<ChildResult> LastingShell::run(const std::vector<std::string>& arguments, std::string_view input,
                                             std::chrono::milliseconds limit, std::size_t most_output,
                                             const std::stop_token& stop, std::string& error) {
    const Bounds bounds{Clock::now() + limit, stop};
    if (stop.stop_requested()) {
        error = "stopped";
        return std::nullopt;
    }
    if (session_ && session_->busy()) {
        const auto ended = session_->answer(bounds, error);
        if (!ended && stop.stop_requested()) {
            return std::nullopt;
        }
        if (!ended || ended->empty()) {
            session_.reset();
        }
    }
    for (;;) {
        const bool fresh = !session_;
        if (fresh && !start(bounds, error)) {
            return std::nullopt;
        }
        std::optional<std::string> told = std::string();
        if (session_->order(arguments, input)) {
            told = session_->answer(bounds, error, input.size() + most_output);
        }
        if (!told) {
            if (bounds.passed() && !stop.stop_requested()) {
                session_.reset(); // it hangs
            }
            return std::nullopt;
        }
        ChildResult result;
        if (!told->empty() &&
            std::from_chars(told->data(), told->data() + told->size(), result.exit_code).ec == std::errc()) {
            if (sizeOf(session_->file()) > input.size() + most_output) {
                error = "the program writes too much";
                return std::nullopt;
            }
            if (!readFrom(session_->file(), input.size(), result.output)) {
                error = "what the program wrote cannot be read";
                return std::nullopt;
            }
            return result;
        }
        session_.reset();
        if (fresh) {
            error = "the program ended without telling how";
            return std::nullopt;
        }
        // It had ended since the last run, or has now: a new one may do better.
    }
}

} // namespace agent::voice
