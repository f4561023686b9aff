#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <random>
#include <thread>

#include "companions/agent/voice/speech.h"
#include "companions/agent/voice/tags.h"

namespace agent::voice {

namespace {

// How long the service's end waits for an engine that does not stop when it is asked to.
constexpr std::chrono::seconds patience{2};
// Speakers whose last text is kept.
constexpr std::size_t most_speakers = 256;

} // namespace

struct Service::Impl {
    struct Waiting {
        Order number;
        std::u16string text;
        Manner manner;
        std::function<void(Speech)> done;
    };

    std::unique_ptr<Engine> engine;
    std::mt19937_64 random{std::random_device{}()};     // the worker's
    std::map<std::uint32_t, std::u16string> last_texts; // the worker's, by speaker

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    std::deque<Waiting> waiting;
    Order next_number = 1;
    Order under_way = 0;
    std::stop_source stop;
    bool closing = false, ended = false;
    std::thread worker;

    void work() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return closing || !waiting.empty(); });
            if (closing) {
                break;
            }
            Waiting order = std::move(waiting.front());
            waiting.pop_front();
            under_way = order.number;
            stop = std::stop_source();
            const std::stop_token token = stop.get_token();
            lock.unlock();
            fulfil(order, token);
            // What the callback holds is let go before the next order.
            order.done = nullptr;
            lock.lock();
            under_way = 0;
        }
        ended = true;
        changed.notify_all();
    }

    void fulfil(const Waiting& order, const std::stop_token& token) {
        std::optional<Speech> speech = speechOf(order, token);
        // Once the service is gone nobody is left to be called.
        if (!speech || token.stop_requested()) {
            return;
        }
        try {
            order.done(std::move(*speech));
        } catch (...) {
            // A callback that fails has had its speech; the next order is not its matter.
        }
    }

    // Shown at once and unheard where memory runs out.
    std::optional<Speech> speechOf(const Waiting& order, const std::stop_token& token) {
        try {
            return makeSpeech(read(order), engine.get(), token);
        } catch (...) {
            Speech speech;
            speech.shown = order.text;
            return speech;
        }
    }

    Script read(const Waiting& order) {
        if (last_texts.size() >= most_speakers && !last_texts.contains(order.manner.speaker)) {
            last_texts.erase(last_texts.begin());
        }
        std::u16string& last = last_texts[order.manner.speaker];
        Script script = readTags(chooseAlternative(order.text, random()), order.manner, last);
        last = script.remembered;
        return script;
    }
};

Service::Service(std::unique_ptr<Engine> engine) : impl_(std::make_shared<Impl>()) {
    impl_->engine = std::move(engine);
    impl_->worker = std::thread([impl = impl_] { impl->work(); });
}

Service::~Service() {
    std::deque<Impl::Waiting> abandoned;
    std::unique_lock lock(impl_->mutex);
    impl_->closing = true;
    impl_->stop.request_stop();
    abandoned.swap(impl_->waiting);
    impl_->changed.notify_all();
    const bool ended = impl_->changed.wait_for(lock, patience, [&] { return impl_->ended; });
    lock.unlock();
    // A worker that hangs in an engine is left behind with all it uses.
    if (ended) {
        impl_->worker.join();
    } else {
        impl_->worker.detach();
    }
}

bool Service::available() const {
    return impl_->engine != nullptr;
}

bool Service::speaks(std::uint16_t language_id) const {
    return impl_->engine != nullptr && impl_->engine->speaks(language_id);
}

std::vector<std::u16string> Service::voices(std::uint16_t language_id) const {
    return impl_->engine ? impl_->engine->voices(language_id) : std::vector<std::u16string>();
}

Service::Order Service::order(std::u16string text, Manner manner, std::function<void(Speech)> done) {
    const std::lock_guard lock(impl_->mutex);
    const Order number = impl_->next_number++;
    impl_->waiting.push_back({number, std::move(text), manner, std::move(done)});
    impl_->changed.notify_all();
    return number;
}

void Service::cancel(Order order) {
    // Let go behind the lock: what a callback holds may come back here.
    std::optional<Impl::Waiting> abandoned;
    const std::lock_guard lock(impl_->mutex);
    if (order != 0 && order == impl_->under_way) {
        impl_->stop.request_stop();
        return;
    }
    const auto found = std::find_if(impl_->waiting.begin(), impl_->waiting.end(),
                                    [&](const Impl::Waiting& waiting) { return waiting.number == order; });
    if (found != impl_->waiting.end()) {
        abandoned = std::move(*found);
        impl_->waiting.erase(found);
    }
}

} // namespace agent::voice
