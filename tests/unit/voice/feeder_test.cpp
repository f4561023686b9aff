#include <future>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/agent/voice/sink.h"

namespace agent::voice {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

// What is done with the device, as it is done; a watchdog ends a wait in vain.
class Log {
  public:
    void add(const std::string& what) {
        const std::lock_guard lock(mutex_);
        lines_.push_back(what);
        changed_.notify_all();
    }
    bool reaches(std::size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::minutes(2), [&] { return lines_.size() >= count; });
    }
    std::vector<std::string> lines() {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;
};

struct FakeDevice final : Device {
    explicit FakeDevice(Log& kept) : log(kept) {}
    bool open() override {
        if (hold.valid()) {
            log.add("opening");
            hold.wait();
        }
        log.add("open");
        return opens;
    }
    bool write(std::span<const std::int16_t> samples) override {
        log.add("write " + std::to_string(samples.size()));
        return writes;
    }
    void close() override { log.add("close"); }
    Log& log;
    bool opens = true, writes = true;
    std::shared_future<void> hold; // open() waits for it
};

const std::vector<std::int16_t> some(100, 5);

TEST(Feeder, OpensTheDeviceForTheFirstSamplesAndClosesItWhenNoMoreCome) {
    Log log;
    {
        Feeder feeder(std::make_unique<FakeDevice>(log), milliseconds(1));
        EXPECT_TRUE(feeder.write(some));
        ASSERT_TRUE(log.reaches(3));
        EXPECT_TRUE(feeder.write(some));
        ASSERT_TRUE(log.reaches(6));
    }
    EXPECT_THAT(log.lines(), ElementsAre("open", "write 100", "close", "open", "write 100", "close"));
}

TEST(Feeder, KeepsTheDeviceFromOneSampleToTheNext) {
    Log log;
    {
        Feeder feeder(std::make_unique<FakeDevice>(log), std::chrono::hours(1));
        feeder.write(some);
        ASSERT_TRUE(log.reaches(2));
        feeder.write(some);
        ASSERT_TRUE(log.reaches(3));
    }
    EXPECT_THAT(log.lines(), ElementsAre("open", "write 100", "write 100", "close"));
}

TEST(Feeder, NeverOpensWhatIsNotUsed) {
    Log log;
    { Feeder feeder(std::make_unique<FakeDevice>(log), milliseconds(1)); }
    EXPECT_THAT(log.lines(), ElementsAre());
}

TEST(Feeder, TellsThatTheDeviceIsGone) {
    for (const bool opens : {false, true}) {
        Log log;
        auto device = std::make_unique<FakeDevice>(log);
        device->opens = opens;
        device->writes = false;
        Feeder feeder(std::move(device));
        bool there = true;
        for (const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
             there && std::chrono::steady_clock::now() < end;) {
            there = feeder.write(some);
            std::this_thread::yield();
        }
        EXPECT_FALSE(there);
    }
}

TEST(Feeder, WaitsForNoDeviceAndKeepsNoMoreThanASecond) {
    Log log;
    std::promise<void> go;
    auto device = std::make_unique<FakeDevice>(log);
    device->hold = go.get_future().share();
    {
        Feeder feeder(std::move(device), std::chrono::hours(1));
        EXPECT_TRUE(feeder.write(some));
        ASSERT_TRUE(log.reaches(1));
        for (int i = 0; i < 1000; ++i) {
            EXPECT_TRUE(feeder.write(some));
        }
        go.set_value();
        ASSERT_TRUE(log.reaches(4));
    }
    EXPECT_THAT(log.lines(),
                ElementsAre("opening", "open", "write 100", "write " + std::to_string(Feeder::most_waiting), "close"));
}

} // namespace
} // namespace agent::voice
