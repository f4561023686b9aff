// What may take long, done on a thread of its own for a window that is told of its end, and may be gone by then.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <windows.h>

namespace murmelix::platform {

// At once, of all windows: a resolver that does not answer is waited for by few.
inline constexpr int most_errands = 16;

// A struct of what is asked and what comes of it derives from this. The thread alone touches it until the message
// comes.
class Errand {
  public:
    Errand() = default;
    ~Errand() = default;
    Errand(const Errand&) = delete;
    Errand& operator=(const Errand&) = delete;

    // Nothing is told any more; the thread is left to itself.
    void giveUp() {
        const std::lock_guard lock(mutex_);
        window_ = nullptr;
    }

    // `work` is called with the errand, on a thread; then `message` with `number` is posted to the window. False where
    // no thread can be had.
    template <class Kind, class Work>
    static bool begin(const std::shared_ptr<Kind>& errand, HWND window, UINT message, WPARAM number, Work work) {
        if (running().fetch_add(1) >= most_errands) {
            --running();
            return false;
        }
        errand->window_ = window;
        try {
            std::thread([errand, message, number, work = std::move(work)] {
                work(*errand);
                --running();
                const std::lock_guard lock(errand->mutex_);
                if (errand->window_) {
                    PostMessageW(errand->window_, message, number, 0);
                }
            }).detach();
        } catch (const std::system_error&) {
            --running();
            return false;
        }
        return true;
    }

  private:
    static std::atomic<int>& running() {
        static std::atomic<int> count;
        return count;
    }

    std::mutex mutex_;
    HWND window_ = nullptr;
};

} // namespace murmelix::platform
