#include <condition_variable>
#include <future>
#include <mutex>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/unit/voice/fakes.h"

namespace agent::voice {
namespace {

constexpr std::chrono::seconds watchdog{30};

// A gate that a thread waits at until it is opened.
class Gate {
  public:
    void open() {
        const std::lock_guard lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }
    bool pass() {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, watchdog, [&] { return open_; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = false;
};

// Tells when it is asked, and answers when it is told to, or is asked to stop where it listens to that.
struct Control {
    Gate entered, answer, left;
    std::atomic<bool> listens = true;
    std::atomic<int> calls = 0;
};

class GatedEngine : public Engine {
  public:
    explicit GatedEngine(std::shared_ptr<Control> control) : control_(std::move(control)) {}
    bool speaks(std::uint16_t) const override { return true; }
    std::optional<Wave> synthesise(const std::u16string&, const Manner&, const std::stop_token& stop,
                                   std::string&) override {
        ++control_->calls;
        const std::stop_callback stopped(stop, [&] {
            if (control_->listens) {
                control_->answer.open();
            }
        });
        control_->entered.open();
        control_->answer.pass();
        control_->left.open();
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        return fakes::tone(100);
    }

  private:
    std::shared_ptr<Control> control_;
};

// Keeps what comes back.
class Inbox {
  public:
    std::function<void(Speech)> taker(std::u16string name = {}) {
        return [this, name](Speech speech) {
            const std::lock_guard lock(mutex_);
            names_.push_back(name.empty() ? speech.shown : name);
            changed_.notify_all();
        };
    }
    std::vector<std::u16string> waitFor(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, watchdog, [&] { return names_.size() >= count; });
        return names_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::u16string> names_;
};

using Names = std::vector<std::u16string>;

TEST(Service, OrdersComeBackInTheirOrder) {
    Inbox inbox;
    Service service(nullptr);
    for (char16_t letter = u'a'; letter <= u'z'; ++letter) {
        service.order(std::u16string(1, letter), {}, inbox.taker());
    }
    Names expected;
    for (char16_t letter = u'a'; letter <= u'z'; ++letter) {
        expected.emplace_back(1, letter);
    }
    EXPECT_EQ(inbox.waitFor(26), expected);
}

TEST(Service, TellsWhatItSpeaks) {
    std::vector<fakes::Call> calls;
    EXPECT_FALSE(Service(nullptr).available());
    EXPECT_FALSE(Service(nullptr).speaks(0x0409));
    const Service service(std::make_unique<fakes::ToneEngine>(calls));
    EXPECT_TRUE(service.available());
    EXPECT_TRUE(service.speaks(0x0409));
    EXPECT_FALSE(service.speaks(0x0407));
}

TEST(Service, OneOfTheAlternativesIsSaid) {
    Inbox inbox;
    Service service(nullptr);
    for (int i = 0; i < 200; ++i) {
        service.order(u"heads|tails", {}, inbox.taker());
    }
    const Names names = inbox.waitFor(200);
    const auto heads = std::count(names.begin(), names.end(), u"heads");
    EXPECT_EQ(heads + std::count(names.begin(), names.end(), u"tails"), 200);
    EXPECT_GT(heads, 0);
    EXPECT_LT(heads, 200);
}

TEST(Service, EachSpeakerRepeatsItsOwnLastText) {
    Inbox inbox;
    Service service(nullptr);
    Manner first, second;
    first.speaker = 1;
    second.speaker = 2;
    service.order(u"one", first, inbox.taker());
    service.order(u"two", second, inbox.taker());
    service.order(u"\\Lst\\", first, inbox.taker());
    service.order(u"\\Lst\\", second, inbox.taker());
    EXPECT_EQ(inbox.waitFor(4), (Names{u"one", u"two", u"one", u"two"}));
}

TEST(Service, AWaitingOrderThatIsCancelledNeverComesBack) {
    const auto control = std::make_shared<Control>();
    Inbox inbox;
    Service service(std::make_unique<GatedEngine>(control));
    service.order(u"first", {}, inbox.taker());
    ASSERT_TRUE(control->entered.pass());
    const Service::Order second = service.order(u"second", {}, inbox.taker());
    service.order(u"third", {}, inbox.taker());
    service.cancel(second);
    control->answer.open();
    EXPECT_EQ(inbox.waitFor(2), (Names{u"first", u"third"}));
}

TEST(Service, TheOrderUnderWayCanBeCancelled) {
    const auto control = std::make_shared<Control>();
    Inbox inbox;
    Service service(std::make_unique<GatedEngine>(control));
    const Service::Order first = service.order(u"first", {}, inbox.taker());
    ASSERT_TRUE(control->entered.pass());
    service.order(u"second", {}, inbox.taker());
    service.cancel(first); // lets the engine go as well
    EXPECT_EQ(inbox.waitFor(1), (Names{u"second"}));
    EXPECT_EQ(control->calls, 2);
}

TEST(Service, CancellingWhatIsNotThereDoesNothing) {
    Inbox inbox;
    Service service(nullptr);
    service.cancel(0);
    service.cancel(77);
    const Service::Order order = service.order(u"a", {}, inbox.taker());
    inbox.waitFor(1);
    service.cancel(order);
    service.order(u"b", {}, inbox.taker());
    EXPECT_EQ(inbox.waitFor(2), (Names{u"a", u"b"}));
}

TEST(Service, EndsWhileItSynthesises) {
    const auto control = std::make_shared<Control>();
    Inbox inbox;
    {
        Service service(std::make_unique<GatedEngine>(control));
        service.order(u"first", {}, inbox.taker());
        service.order(u"second", {}, inbox.taker());
        ASSERT_TRUE(control->entered.pass());
    }
    EXPECT_TRUE(inbox.waitFor(0).empty());
    EXPECT_EQ(control->calls, 1);
}

TEST(Service, EndsThoughItsEngineHangs) {
    const auto control = std::make_shared<Control>();
    control->listens = false;
    Inbox inbox;
    {
        Service service(std::make_unique<GatedEngine>(control));
        service.order(u"first", {}, inbox.taker());
        ASSERT_TRUE(control->entered.pass());
    }
    // The service is gone with the engine still at it; what that does now reaches nobody.
    control->answer.open();
    ASSERT_TRUE(control->left.pass());
    EXPECT_TRUE(inbox.waitFor(0).empty());
}

class ThrowingEngine : public Engine {
  public:
    bool speaks(std::uint16_t) const override { return true; }
    std::optional<Wave> synthesise(const std::u16string&, const Manner&, const std::stop_token&,
                                   std::string&) override {
        throw std::runtime_error("no memory");
    }
};

TEST(Service, AnEngineThatThrowsLeavesTheText) {
    Inbox inbox;
    Service service(std::make_unique<ThrowingEngine>());
    service.order(u"\\Spd=100\\Hello|\\Spd=100\\Hello", {}, inbox.taker());
    service.order(u"again", {}, inbox.taker());
    EXPECT_EQ(inbox.waitFor(2), (Names{u"Hello", u"again"}));
}

TEST(Service, ACallbackThatThrowsStopsNothing) {
    Inbox inbox;
    std::promise<void> called;
    Service service(nullptr);
    service.order(u"a", {}, [&](Speech) {
        called.set_value();
        throw std::runtime_error("not now");
    });
    service.order(u"b", {}, inbox.taker());
    ASSERT_EQ(called.get_future().wait_for(watchdog), std::future_status::ready);
    EXPECT_EQ(inbox.waitFor(1), (Names{u"b"}));
}

TEST(Service, ACallbackMayOrderAndCancel) {
    Inbox inbox;
    Service service(nullptr);
    service.order(u"a", {}, [&](Speech) {
        service.cancel(service.order(u"never", {}, inbox.taker()));
        service.order(u"b", {}, inbox.taker());
    });
    EXPECT_EQ(inbox.waitFor(1), (Names{u"b"}));
}

TEST(Service, ManyThreadsMayOrderAtOnce) {
    Inbox inbox;
    Service service(nullptr);
    std::vector<std::future<void>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.push_back(std::async(std::launch::async, [&] {
            for (int j = 0; j < 50; ++j) {
                service.cancel(service.order(u"cancelled", {}, [](Speech) {}));
                service.order(u"kept", {}, inbox.taker(u"kept"));
            }
        }));
    }
    for (std::future<void>& thread : threads) {
        thread.get();
    }
    EXPECT_EQ(inbox.waitFor(200).size(), 200U);
}

} // namespace
} // namespace agent::voice
