#pragma once

#include <cstdint>
#include <functional>

namespace murmelix::ui {

// Raises Tick every Interval milliseconds while it is enabled; a tick never comes inside another one of the same timer.
class Timer {
  public:
    explicit Timer(int interval) : interval_(interval) {}
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    int Interval() const { return interval_; }
    void setInterval(int milliseconds); // counts from now
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    std::function<void()> Tick;
    void onTick();

  private:
    int interval_;
    bool enabled_ = false;
    bool ticking_ = false;
    std::uintptr_t handle_ = 0;
};

// Carried out by win32/timer.cpp.
namespace native {
std::uintptr_t startTimer(Timer& timer, int milliseconds);
void stopTimer(std::uintptr_t timer);
} // namespace native

} // namespace murmelix::ui
