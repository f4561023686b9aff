#include "companions/agent/voice/win32/child_process.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <random>
#include <utility>

#include <winsock2.h>

#include <windows.h>

namespace agent::voice {

namespace {

using Deadline = std::chrono::steady_clock::time_point;
constexpr DWORD poll_ms = 20; // how often a stop is looked for

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

class Handle {
  public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_ != nullptr) {
            CloseHandle(handle_);
        }
    }
    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HANDLE handle_ = nullptr;
};

// What a new file is to allow: reading, writing and deleting to the user that this program runs as, nothing to anyone
// else. (Wine takes the user's first group for the user.)
class OnlyThisUser {
  public:
    OnlyThisUser() {
        HANDLE opened = nullptr;
        if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
            return;
        }
        const Handle token(opened);
        DWORD size = 0;
        if (GetTokenInformation(token.get(), TokenUser, user_.data(), static_cast<DWORD>(sizeof user_), &size) == 0) {
            return;
        }
        PSID const user = reinterpret_cast<const TOKEN_USER*>(user_.data())->User.Sid;
        ACL* const list = reinterpret_cast<ACL*>(list_.data());
        good_ = InitializeAcl(list, static_cast<DWORD>(sizeof list_), ACL_REVISION) != 0 &&
                AddAccessAllowedAce(list, ACL_REVISION, FILE_GENERIC_READ | FILE_GENERIC_WRITE | DELETE, user) != 0 &&
                InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
                SetSecurityDescriptorOwner(&descriptor_, user, FALSE) != 0 &&
                SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) != 0 &&
                SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
    }
    OnlyThisUser(const OnlyThisUser&) = delete;
    OnlyThisUser& operator=(const OnlyThisUser&) = delete;
    SECURITY_DESCRIPTOR* get() { return good_ ? &descriptor_ : nullptr; }

  private:
    std::array<std::uint64_t, 32> user_{}, list_{};
    SECURITY_DESCRIPTOR descriptor_{};
    bool good_ = false;
};

std::wstring unguessableName() {
    std::random_device random;
    std::wstring name = L"say";
    for (int i = 0; i < 32; ++i) {
        name += L"0123456789abcdef"[random() % 16];
    }
    return name + L".tmp";
}

// A file that a new process may inherit, that nobody else can read or find out the name of, and that is gone with its
// last handle, however this program ends.
HANDLE temporaryFile() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    OnlyThisUser only_this_user;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, only_this_user.get(), TRUE};
    if (length == 0 || length >= folder.size() || inherited.lpSecurityDescriptor == nullptr) {
        return nullptr;
    }
    const std::wstring path = std::wstring(folder.data(), length) + unguessableName();
    return CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, &inherited, CREATE_NEW,
                       FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

std::uint64_t sizeOf(const Handle& file) {
    LARGE_INTEGER size{};
    return GetFileSizeEx(file.get(), &size) != 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool toBegin(const Handle& file) {
    return SetFilePointerEx(file.get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0;
}

bool fill(const Handle& file, std::string_view content) {
    DWORD written = 0;
    return content.size() <= MAXDWORD &&
           WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != 0 &&
           written == content.size() && toBegin(file);
}

bool readFrom(const Handle& file, std::size_t begin, std::vector<std::uint8_t>& content) {
    const auto size = static_cast<std::size_t>(sizeOf(file));
    content.resize(size - std::min(size, begin));
    LARGE_INTEGER position{};
    position.QuadPart = static_cast<LONGLONG>(begin);
    DWORD got = 0;
    return content.empty() ||
           (SetFilePointerEx(file.get(), position, nullptr, FILE_BEGIN) != 0 &&
            ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &got, nullptr) != 0 &&
            got == content.size());
}

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

// Two ends joined on the loopback: theirs is closed when the program has ended, however it did. Of a program below Wine
// that is the one sign; a pipe it would not inherit.
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
            connect(theirs.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            return false;
        }
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
    explicit InheritedHandles(std::array<HANDLE, 2> handles) : handles_(handles) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        list_ = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
        made_ = InitializeProcThreadAttributeList(list_, 1, 0, &size) != 0;
        good_ = made_ && UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                                   sizeof handles_, nullptr, nullptr) != 0;
    }
    ~InheritedHandles() {
        if (made_) {
            DeleteProcThreadAttributeList(list_);
        }
    }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;
    LPPROC_THREAD_ATTRIBUTE_LIST get() const { return good_ ? list_ : nullptr; }

  private:
    std::array<HANDLE, 2> handles_;
    std::vector<std::uint8_t> memory_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
    bool made_ = false, good_ = false;
};

// A program on its way. What is written to it and by it goes through files: the sockets that a program below Wine
// inherits do not wait for what is to come, nor for room.
class Child {
  public:
    Child(System system, std::chrono::milliseconds limit, std::size_t most_output, const std::stop_token& stop,
          std::string& error)
        : below_wine_(system == System::below_wine), deadline_(std::chrono::steady_clock::now() + limit),
          most_output_(most_output), stop_(stop), error_(error) {}

    std::optional<ChildResult> run(std::wstring& command_line, std::string_view input) {
        if (stop_.stop_requested()) {
            return failed("stopped");
        }
        if (!input_ || !output_ || !fill(input_, input) || (below_wine_ && (!winsock_ || !sockets_.open()))) {
            return failed("no connection to a program can be made");
        }
        HANDLE started = nullptr;
        if (!start(command_line, started)) {
            return failed("the program cannot be started");
        }
        const Handle process(started);
        sockets_.theirs.close();
        if (!wait(process)) {
            if (process) {
                TerminateProcess(process.get(), 1);
            }
            return std::nullopt;
        }
        ChildResult result;
        if (!exitCode(process, result.exit_code)) {
            return failed("the program ended without telling how");
        }
        if (!readFrom(below_wine_ ? input_ : output_, below_wine_ ? input.size() : 0, result.output)) {
            return failed("what the program wrote cannot be read");
        }
        return result;
    }

  private:
    std::nullopt_t failed(const char* reason) {
        error_ = reason;
        return std::nullopt;
    }

    // False when it did not start. `process` stays null where there is no handle to have.
    bool start(std::wstring& command_line, HANDLE& process) {
        const HANDLE out = below_wine_ ? sockets_.theirs.handle() : output_.get();
        const InheritedHandles inherited({input_.get(), out});
        STARTUPINFOEXW start_info{};
        start_info.StartupInfo.cb = sizeof start_info;
        // Detached from any console: a program below Wine that would get a console of its own, as one does whose
        // starter has none, gets no standard handles.
        start_info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        start_info.StartupInfo.hStdInput = input_.get();
        start_info.StartupInfo.hStdOutput = out;
        start_info.lpAttributeList = inherited.get();
        PROCESS_INFORMATION information{};
        if (start_info.lpAttributeList == nullptr ||
            CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE,
                           EXTENDED_STARTUPINFO_PRESENT | DETACHED_PROCESS, nullptr, nullptr, &start_info.StartupInfo,
                           &information) == 0) {
            return false;
        }
        const Handle thread(information.hThread);
        process = information.hProcess;
        return true;
    }

    // Until the program has ended; false with a reason where it is not waited for any longer.
    bool wait(const Handle& process) {
        for (;;) {
            const bool ended = below_wine_ ? !listen() : WaitForSingleObject(process.get(), poll_ms) != WAIT_TIMEOUT;
            if (sizeOf(below_wine_ ? input_ : output_) > most_output_) {
                error_ = "the program writes too much";
            } else if (ended) {
                return true;
            } else if (stop_.stop_requested()) {
                error_ = "stopped";
            } else if (std::chrono::steady_clock::now() >= deadline_) {
                error_ = "the program takes too long";
            } else {
                continue;
            }
            return false;
        }
    }

    // Takes what comes within a moment; false when the other end is closed.
    bool listen() {
        fd_set readable{};
        FD_SET(sockets_.ours.get(), &readable);
        timeval moment{0, static_cast<long>(poll_ms) * 1000};
        if (select(0, &readable, nullptr, nullptr, &moment) <= 0) {
            return true;
        }
        std::array<char, 4096> block{};
        const int got = recv(sockets_.ours.get(), block.data(), static_cast<int>(block.size()), 0);
        if (got <= 0) {
            return got < 0 && WSAGetLastError() == WSAEWOULDBLOCK;
        }
        if (told_.size() < block.size()) {
            told_.append(block.data(), static_cast<std::size_t>(got));
        }
        return true;
    }

    bool exitCode(const Handle& process, std::uint32_t& code) const {
        if (!below_wine_) {
            DWORD value = 0;
            const bool known = GetExitCodeProcess(process.get(), &value) != 0;
            code = value;
            return known;
        }
        return std::from_chars(told_.data(), told_.data() + told_.size(), code).ec == std::errc();
    }

    const bool below_wine_;
    const Deadline deadline_;
    const std::size_t most_output_;
    const std::stop_token& stop_;
    std::string& error_;
    Winsock winsock_;
    SocketPair sockets_;
    Handle input_{temporaryFile()}, output_{temporaryFile()};
    std::string told_; // on the standard output of a program below Wine
};

} // namespace

std::optional<ChildResult> runChild(std::wstring command_line, System system, std::string_view input,
                                    std::chrono::milliseconds limit, std::size_t most_output,
                                    const std::stop_token& stop, std::string& error) {
    return Child(system, limit, most_output, stop, error).run(command_line, input);
}

} // namespace agent::voice
