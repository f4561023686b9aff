#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/windows/program/neighbour_server.h"

namespace {

// Wine waits seconds for the answers of a window manager that is not there, unless it places the windows itself. It
// reads this when a program starts: tells whether this one must start once more.
bool mustStartAgain() {
    constexpr wchar_t key[] = L"Software\\Wine\\AppDefaults\\program_test.exe\\X11 Driver", name[] = L"Managed",
                      no[] = L"N";
    if (RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_SZ, nullptr, nullptr, nullptr) == ERROR_SUCCESS)
        return false;
    return RegSetKeyValueW(HKEY_CURRENT_USER, key, name, REG_SZ, no, sizeof no) == ERROR_SUCCESS;
}

int startAgain() {
    STARTUPINFOW how{};
    how.cb = sizeof how;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, GetCommandLineW(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &how, &started))
        return 1;
    CloseHandle(started.hThread);
    WaitForSingleObject(started.hProcess, INFINITE);
    DWORD status = 1;
    GetExitCodeProcess(started.hProcess, &status);
    CloseHandle(started.hProcess);
    return static_cast<int>(status);
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "--neighbour") == 0)
        return murmelix::test::serveNeighbour(std::atoi(argv[2]));
    if (mustStartAgain())
        return startAgain();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
