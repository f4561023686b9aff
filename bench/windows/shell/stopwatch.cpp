// How long a program takes from its start to its window on the screen: stopwatch TITLE PROGRAM [ARGUMENT…]
// The window is there when the program shows one whose title starts with TITLE and has drawn all of it. Prints the
// milliseconds until then, and those until it answers; ends with status 1, and says why, where that takes over a
// minute. The program goes on.
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include <windows.h>

namespace {

constexpr ULONGLONG longest_milliseconds = 60'000;

struct Wanted {
    DWORD process;
    std::wstring_view title;
    HWND found = nullptr;
};

HWND shownWindow(DWORD process, std::wstring_view title) {
    Wanted wanted{process, title};
    EnumWindows(
        [](HWND window, LPARAM parameter) -> BOOL {
            auto& looked_for = *reinterpret_cast<Wanted*>(parameter);
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            std::array<wchar_t, 256> text{};
            if (owner == looked_for.process && IsWindowVisible(window)) {
                GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
            }
            if (text[0] == L'\0' || !std::wstring_view(text.data()).starts_with(looked_for.title)) {
                return TRUE;
            }
            looked_for.found = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&wanted));
    return wanted.found;
}

LONGLONG ticks() {
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}

double passed(LONGLONG since) { // milliseconds
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(ticks() - since) * 1000 / static_cast<double>(frequency.QuadPart);
}

std::wstring commandLine(int count, wchar_t** arguments) {
    std::wstring line;
    for (int i = 2; i < count; ++i) {
        line += (i == 2 ? L"\"" : L" \"") + std::wstring(arguments[i]) + L"\"";
    }
    return line;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "usage: stopwatch TITLE PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    std::wstring line = commandLine(count, arguments);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    const LONGLONG begun = ticks();
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
        std::fprintf(stderr, "the program could not be started: error %lu\n", GetLastError());
        return 1;
    }
    for (const ULONGLONG deadline = GetTickCount64() + longest_milliseconds; GetTickCount64() < deadline; Sleep(1)) {
        const HWND window = shownWindow(process.dwProcessId, arguments[1]);
        if (window && !GetUpdateRect(window, nullptr, FALSE)) {
            const double drawn = passed(begun);
            DWORD_PTR answer = 0;
            if (!SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 10'000, &answer)) {
                std::fprintf(stderr, "the window does not answer\n");
                return 1;
            }
            std::printf("%.1f %.1f\n", drawn, passed(begun));
            return 0;
        }
        if (WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0) {
            std::fprintf(stderr, "the program has ended without a window\n");
            return 1;
        }
    }
    std::fprintf(stderr, "no window after a minute\n");
    return 1;
}
