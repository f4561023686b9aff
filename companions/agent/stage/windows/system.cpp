#include "companions/agent/stage/windows/system.h"

#include <algorithm>
#include <array>

#include <windows.h>

namespace agent::stage {
namespace {

std::u16string textOf(const wchar_t* units, std::size_t length) {
    return std::u16string(reinterpret_cast<const char16_t*>(units), length);
}

} // namespace

std::u16string windowsDirectory() {
    std::array<wchar_t, MAX_PATH + 1> path{};
    const UINT length = GetWindowsDirectoryW(path.data(), static_cast<UINT>(path.size()));
    return textOf(path.data(), std::min<std::size_t>(length, path.size() - 1));
}

bool isRemoteDrive(char16_t letter) {
    const std::array<wchar_t, 4> root{static_cast<wchar_t>(letter), L':', L'\\', 0};
    return GetDriveTypeW(root.data()) == DRIVE_REMOTE;
}

bool startAgain() {
    std::wstring line = GetCommandLineW();
    STARTUPINFOW how{};
    how.cb = sizeof how;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &how, &started)) {
        return false;
    }
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return true;
}

std::uint64_t counterMicroseconds() {
    LARGE_INTEGER counter{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    const auto ticks = static_cast<std::uint64_t>(counter.QuadPart);
    const auto second = static_cast<std::uint64_t>(frequency.QuadPart);
    return ticks / second * 1'000'000 + ticks % second * 1'000'000 / second;
}

} // namespace agent::stage
