#include "ui/timer.h"

#include <map>

#include "ui/win32/window.h"

namespace murmelix::ui {

namespace {

std::map<UINT_PTR, Timer*>& timers() {
    static std::map<UINT_PTR, Timer*> all;
    return all;
}

void CALLBACK procedure(HWND, UINT, UINT_PTR id, DWORD) {
    const auto timer = timers().find(id);
    if (timer != timers().end()) {
        win32::guarded([&] { timer->second->onTick(); });
    }
}

} // namespace

std::uintptr_t native::startTimer(Timer& timer, int milliseconds) {
    const UINT_PTR id = SetTimer(nullptr, 0, static_cast<UINT>(milliseconds), procedure);
    timers()[id] = &timer;
    return id;
}

void native::stopTimer(std::uintptr_t timer) {
    KillTimer(nullptr, timer);
    timers().erase(timer);
}

} // namespace murmelix::ui
