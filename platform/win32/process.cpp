#include "platform/process.h"

#include <array>
#include <cstdlib>
#include <cwchar>
#include <memory>

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include "common/com/handles.h"

namespace murmelix::platform {

namespace {

// Characters of the longest path that the system knows.
constexpr std::size_t longest_path = 32'768;

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};

} // namespace

std::vector<std::u16string> arguments() {
    int count = 0;
    const std::unique_ptr<LPWSTR, FreeLocal> all(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::u16string> arguments;
    for (int i = 1; all && i < count; ++i) {
        const wchar_t* const argument = all.get()[i];
        arguments.emplace_back(com::narrow(argument, std::wcslen(argument)));
    }
    return arguments;
}

std::u16string programPath() {
    std::vector<wchar_t> path(longest_path);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return std::u16string(com::narrow(path.data(), length));
}

std::u16string documentsDirectory() {
    std::array<wchar_t, MAX_PATH> path{};
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, path.data()))) {
        return {};
    }
    return std::u16string(com::narrow(path.data(), std::wcslen(path.data())));
}

void cutOff(unsigned status) {
    TerminateProcess(GetCurrentProcess(), status);
    std::abort(); // not reached
}

} // namespace murmelix::platform
