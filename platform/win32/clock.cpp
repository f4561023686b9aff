#include "platform/clock.h"

#include <windows.h>

namespace murmelix::platform {

long long microseconds() {
    LARGE_INTEGER now{}, frequency{};
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    const long long seconds = now.QuadPart / frequency.QuadPart;
    return seconds * 1'000'000 + (now.QuadPart % frequency.QuadPart) * 1'000'000 / frequency.QuadPart;
}

long long milliseconds() {
    return static_cast<long long>(GetTickCount64());
}

long long secondsSince1970() {
    constexpr long long ticks_a_second = 10'000'000, ticks_until_1970 = 116'444'736'000'000'000; // since 1601
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    const long long ticks = (static_cast<long long>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
    return (ticks - ticks_until_1970) / ticks_a_second;
}

std::uint32_t lastInput() {
    LASTINPUTINFO last{sizeof(LASTINPUTINFO), 0};
    GetLastInputInfo(&last);
    return last.dwTime;
}

} // namespace murmelix::platform
