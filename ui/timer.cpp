#include "ui/timer.h"

namespace murmelix::ui {

Timer::~Timer() {
    setEnabled(false);
}

void Timer::setEnabled(bool enabled) {
    if (enabled == enabled_) {
        return;
    }
    enabled_ = enabled;
    if (enabled) {
        handle_ = native::startTimer(*this, interval_);
    } else {
        native::stopTimer(handle_);
    }
}

void Timer::setInterval(int milliseconds) {
    interval_ = milliseconds;
    if (enabled_) {
        setEnabled(false);
        setEnabled(true);
    }
}

void Timer::onTick() {
    if (ticking_ || !enabled_ || !Tick) {
        return;
    }
    struct Ticking {
        bool& flag;
        explicit Ticking(bool& the_flag) : flag(the_flag) { flag = true; }
        ~Ticking() { flag = false; }
    } const ticking(ticking_);
    Tick();
}

} // namespace murmelix::ui
