// The program's thread as other threads and timers reach it.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <optional>

#include "companions/agent/stage/windows/window.h"

namespace agent::stage {

class MessageWindow final : public Window {
  public:
    MessageWindow();
    ~MessageWindow() override;

    // From any thread: carried out later on the thread of the window, in order.
    void post(std::function<void()> task);
    // Drops what was posted and is not carried out yet, and all that will be.
    void close();
    // Calls `tick` about every `period` ms.
    void every(UINT period, std::function<void()> tick);
    // Calls it now, where something must not wait for its time.
    void tick() const {
        if (tick_) {
            tick_();
        }
    }
    // Called when the window is asked to close, or the session ends.
    void onClose(std::function<void()> closing) { closing_ = std::move(closing); }
    // Called when another process has asked for a restart; `askForRestart` does, false where no server can be found.
    void onRestart(std::function<void()> restart) { restart_ = std::move(restart); }
    static bool askForRestart();
    // Called when the screens, or the parts of them that taskbars leave, have changed, with the resolution (dots an
    // inch) where that has.
    using ScreensChanged = std::function<void(std::optional<int> resolution)>;
    void onScreensChanged(ScreensChanged changed) { screens_changed_ = std::move(changed); }
    // Called when the user has set something in Windows: its animations, for instance.
    void onSettingsChanged(std::function<void()> changed) { settings_changed_ = std::move(changed); }
    // The message loop; ends with quit().
    static void run();
    static void quit() { PostQuitMessage(0); }

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    bool carryOutOne();

    std::mutex mutex_;
    std::deque<std::function<void()>> tasks_;
    bool closed_ = false;
    std::function<void()> tick_, closing_, restart_, settings_changed_;
    ScreensChanged screens_changed_;
};

} // namespace agent::stage
