#include <algorithm>
#include <utility>

#include "companions/agent/voice/sink.h"

namespace agent::voice {

Feeder::Feeder(std::unique_ptr<Device> device, std::chrono::milliseconds quiet)
    : device_(std::move(device)), quiet_(quiet), thread_([this](const std::stop_token& stop) { run(stop); }) {}

bool Feeder::write(std::span<const std::int16_t> samples) {
    const std::lock_guard lock(mutex_);
    const std::size_t count = std::min(samples.size(), most_waiting - waiting_.size());
    waiting_.insert(waiting_.end(), samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count));
    changed_.notify_one();
    return !gone_;
}

// Waits until there are samples; false when there will be none.
bool Feeder::next(std::unique_lock<std::mutex>& lock, const std::stop_token& stop) {
    const auto some = [this] { return !waiting_.empty(); };
    if (open_ && !changed_.wait_for(lock, stop, quiet_, some) && !stop.stop_requested()) {
        lock.unlock();
        device_->close();
        open_ = false;
        lock.lock();
    }
    return changed_.wait(lock, stop, some) && !stop.stop_requested();
}

void Feeder::run(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    while (!gone_ && next(lock, stop)) {
        const std::vector<std::int16_t> samples = std::exchange(waiting_, {});
        lock.unlock();
        open_ = open_ || device_->open();
        const bool written = open_ && device_->write(samples);
        lock.lock();
        gone_ = !written;
    }
    lock.unlock();
    if (open_) {
        device_->close();
    }
}

} // namespace agent::voice
