#include "companions/agent/voice/win32/child_process.h"

#include <algorithm>
#include <array>
#include <utility>

#include <winsock2.h>

#include <windows.h>

namespace agent::voice {

namespace {

using Deadline = std::chrono::steady_clock::time_point;
constexpr long poll_ms = 20; // how often a stop is looked for

class Winsock {
  public:
    Winsock() {
        WSADATA data{};
        good_ = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~Winsock() {
        if (good_)
            WSACleanup();
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
        if (socket_ != INVALID_SOCKET)
            closesocket(std::exchange(socket_, INVALID_SOCKET));
    }
    SOCKET get() const { return socket_; }
    HANDLE handle() const { return reinterpret_cast<HANDLE>(socket_); }
    explicit operator bool() const { return socket_ != INVALID_SOCKET; }

  private:
    SOCKET socket_ = INVALID_SOCKET;
};

class Handle {
  public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }
    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HANDLE handle_;
};

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// A socket without overlapped operation: the only kind that serves as a program's standard handle.
Socket plainSocket() {
    return Socket(WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, 0));
}

// Two ends joined on the loopback. Pipes would do on Windows; under Wine a program of the system below inherits
// sockets, but not pipes.
struct SocketPair {
    Socket ours, theirs;

    bool open() {
        const Socket listener = plainSocket();
        theirs = plainSocket();
        sockaddr_in address = loopback(), caller{}, own{};
        int size = sizeof address, caller_size = sizeof caller, own_size = sizeof own;
        if (!listener || !theirs ||
            bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(listener.get(), 1) != 0 ||
            getsockname(listener.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
            connect(theirs.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            return false;
        ours = Socket(accept(listener.get(), reinterpret_cast<sockaddr*>(&caller), &caller_size));
        u_long at_once = 1;
        // Another program may have called in between: its port gives it away.
        return ours && getsockname(theirs.get(), reinterpret_cast<sockaddr*>(&own), &own_size) == 0 &&
               own.sin_port == caller.sin_port && own.sin_addr.s_addr == caller.sin_addr.s_addr &&
               ioctlsocket(ours.get(), static_cast<long>(FIONBIO), &at_once) == 0 &&
               SetHandleInformation(ours.handle(), HANDLE_FLAG_INHERIT, 0) != 0 &&
               SetHandleInformation(listener.handle(), HANDLE_FLAG_INHERIT, 0) != 0 &&
               SetHandleInformation(theirs.handle(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) != 0;
    }
};

// The list of handles that a new process inherits: these and no others.
class InheritedHandles {
  public:
    explicit InheritedHandles(HANDLE handle) : handle_(handle) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        list_ = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
        good_ = InitializeProcThreadAttributeList(list_, 1, 0, &size) != 0;
        if (good_)
            good_ = UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &handle_, sizeof handle_,
                                              nullptr, nullptr) != 0;
    }
    ~InheritedHandles() {
        if (good_)
            DeleteProcThreadAttributeList(list_);
    }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;
    LPPROC_THREAD_ATTRIBUTE_LIST get() const { return good_ ? list_ : nullptr; }

  private:
    HANDLE handle_;
    std::vector<std::uint8_t> memory_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
    bool good_ = false;
};

// False when it did not start. `process` stays null where there is no handle to have.
bool start(std::wstring& command_line, const Socket& socket, HANDLE& process) {
    const InheritedHandles inherited(socket.handle());
    STARTUPINFOEXW start_info{};
    start_info.StartupInfo.cb = sizeof start_info;
    // Detached from any console: below Wine a program that would get a console of its own, as one started by a program
    // without a console would, loses its standard handles.
    start_info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start_info.StartupInfo.hStdInput = socket.handle();
    start_info.StartupInfo.hStdOutput = socket.handle();
    start_info.lpAttributeList = inherited.get();
    PROCESS_INFORMATION information{};
    if (start_info.lpAttributeList == nullptr ||
        CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE,
                       EXTENDED_STARTUPINFO_PRESENT | DETACHED_PROCESS, nullptr, nullptr, &start_info.StartupInfo,
                       &information) == 0)
        return false;
    const Handle thread(information.hThread);
    process = information.hProcess;
    return true;
}

// Input written and output read until the program closes its end; false with a reason otherwise.
bool talk(const Socket& socket, std::string_view input, Deadline deadline, std::size_t most_output,
          const std::stop_token& stop, std::vector<std::uint8_t>& output, std::string& error) {
    bool sending = true;
    for (;;) {
        if (stop.stop_requested()) {
            error = "stopped";
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            error = "the program takes too long";
            return false;
        }
        if (sending && input.empty()) {
            shutdown(socket.get(), SD_SEND);
            sending = false;
        }
        fd_set readable{}, writable{};
        FD_SET(socket.get(), &readable);
        if (sending)
            FD_SET(socket.get(), &writable);
        timeval wait{0, poll_ms * 1000};
        const int ready = select(0, &readable, &writable, nullptr, &wait);
        if (ready == SOCKET_ERROR) {
            error = "the program cannot be listened to";
            return false;
        }
        if (FD_ISSET(socket.get(), &writable)) {
            const int size = static_cast<int>(std::min<std::size_t>(input.size(), 1 << 16));
            const int sent = send(socket.get(), input.data(), size, 0);
            if (sent > 0)
                input.remove_prefix(static_cast<std::size_t>(sent));
            else if (WSAGetLastError() != WSAEWOULDBLOCK)
                input = {}; // it has read all it wants
        }
        if (FD_ISSET(socket.get(), &readable)) {
            std::array<char, 1 << 16> block;
            const int got = recv(socket.get(), block.data(), static_cast<int>(block.size()), 0);
            // A program that ends with input unread resets the connection: what it wrote is there all the same.
            if (got == 0 || (got < 0 && WSAGetLastError() == WSAECONNRESET))
                return true;
            if (got < 0 && WSAGetLastError() != WSAEWOULDBLOCK) {
                error = "the program cannot be listened to";
                return false;
            }
            if (got > 0) {
                output.insert(output.end(), block.begin(), block.begin() + got);
                if (output.size() > most_output) {
                    error = "the program writes too much";
                    return false;
                }
            }
        }
    }
}

// The exit code of a program that has closed its output.
std::optional<std::uint32_t> endOf(HANDLE process, Deadline deadline, const std::stop_token& stop) {
    DWORD code = 0;
    while (WaitForSingleObject(process, poll_ms) == WAIT_TIMEOUT)
        if (stop.stop_requested() || std::chrono::steady_clock::now() >= deadline)
            return std::nullopt;
    if (GetExitCodeProcess(process, &code) == 0)
        return std::nullopt;
    return code;
}

} // namespace

std::optional<ChildResult> runChild(std::wstring command_line, std::string_view input, std::chrono::milliseconds limit,
                                    std::size_t most_output, const std::stop_token& stop, std::string& error) {
    const Deadline deadline = std::chrono::steady_clock::now() + limit;
    const Winsock winsock;
    SocketPair sockets;
    if (!winsock || !sockets.open()) {
        error = "no connection to a program can be made";
        return std::nullopt;
    }
    HANDLE started = nullptr;
    if (!start(command_line, sockets.theirs, started)) {
        error = "the program cannot be started";
        return std::nullopt;
    }
    const Handle process(started);
    sockets.theirs.close();
    ChildResult result;
    bool good = talk(sockets.ours, input, deadline, most_output, stop, result.output, error);
    if (good && process) {
        result.exit_code = endOf(process.get(), deadline, stop);
        good = result.exit_code.has_value();
        if (!good)
            error = "the program does not end";
    }
    if (!good && process)
        TerminateProcess(process.get(), 1);
    if (!good)
        return std::nullopt;
    return result;
}

} // namespace agent::voice
