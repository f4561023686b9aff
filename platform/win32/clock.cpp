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

std::uint32_t lastInput() {
    LASTINPUTINFO last{sizeof(LASTINPUTINFO), 0};
    GetLastInputInfo(&last);
    return last.dwTime;
}

} // namespace murmelix::platform
