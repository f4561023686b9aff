// Where mixed sound is heard.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace agent::voice {

class Sink {
  public:
    virtual ~Sink() = default;
    // Queues a block at the mixing rate; false when the device is gone or takes no more. Samples come while something
    // sounds; a device that has run dry plays what it gets at once.
    virtual bool write(std::span<const std::int16_t> samples) = 0;
};

// The machine's sound device, opened when it is needed; null when there is none.
std::unique_ptr<Sink> makeSink();

// A sound device as the thread that feeds it sees it.
class Device {
  public:
    virtual ~Device() = default;
    virtual bool open() = 0;
    // May wait for room; false when the device is gone.
    virtual bool write(std::span<const std::int16_t> samples) = 0;
    // At once, whatever is still to be heard.
    virtual void close() = 0;
};

// Feeds a device on a thread of its own, as opening, writing and closing may take their time: opened with the first
// samples, closed when there were none for a while, so that the machine can rest.
class Feeder final : public Sink {
  public:
    static constexpr std::chrono::milliseconds quiet_before_closing{5000}; // more than from a sentence to the next
    // Samples that wait for the device; what comes beyond is left out, as it would be heard too late.
    static constexpr std::size_t most_waiting = 22050;

    explicit Feeder(std::unique_ptr<Device> device, std::chrono::milliseconds quiet = quiet_before_closing);
    bool write(std::span<const std::int16_t> samples) override;

  private:
    void run(const std::stop_token& stop);
    bool next(std::unique_lock<std::mutex>& lock, const std::stop_token& stop);

    const std::unique_ptr<Device> device_;
    const std::chrono::milliseconds quiet_;
    bool open_ = false; // the thread's own
    std::mutex mutex_;  // guards what follows
    std::condition_variable_any changed_;
    std::vector<std::int16_t> waiting_;
    bool gone_ = false;
    std::jthread thread_; // last: it ends first
};

} // namespace agent::voice
