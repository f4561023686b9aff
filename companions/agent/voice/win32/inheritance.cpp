#include "companions/agent/voice/win32/inheritance.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>

namespace agent::voice {

namespace {

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

} // namespace

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

bool fill(const Handle& file, std::string_view content) {
    const auto toBegin = [&] { return SetFilePointerEx(file.get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0; };
    DWORD written = 0;
    return content.size() <= MAXDWORD && toBegin() && SetEndOfFile(file.get()) != 0 &&
           WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != 0 &&
           written == content.size() && toBegin();
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

HANDLE startProgram(std::wstring& command_line, HANDLE input, HANDLE output) {
    const InheritedHandles inherited({input, output});
    STARTUPINFOEXW start_info{};
    start_info.StartupInfo.cb = sizeof start_info;
    start_info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start_info.StartupInfo.hStdInput = input;
    start_info.StartupInfo.hStdOutput = output;
    start_info.lpAttributeList = inherited.get();
    PROCESS_INFORMATION information{};
    if (start_info.lpAttributeList == nullptr ||
        CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE,
                       EXTENDED_STARTUPINFO_PRESENT | DETACHED_PROCESS, nullptr, nullptr, &start_info.StartupInfo,
                       &information) == 0) {
        return nullptr;
    }
    // Of a program of the system below Wine there are no handles, and what stands here instead is anything: closing it
    // would close what another part of this program uses.
    if (information.dwProcessId == 0 || GetProcessId(information.hProcess) != information.dwProcessId) {
        return nullptr;
    }
    CloseHandle(information.hThread);
    return information.hProcess;
}

} // namespace agent::voice
