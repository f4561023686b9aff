#include "companions/agent/stage/windows/message_window.h"

#include <utility>

namespace agent::stage {
namespace {

constexpr UINT task_message = WM_APP + 1, restart_message = WM_APP + 2;
constexpr wchar_t class_name[] = L"AgentServerMessages";
constexpr UINT_PTR tick_timer = 1;

} // namespace

MessageWindow::MessageWindow() {
    // A hidden window of its own rather than a message-only one: it can own menus.
    make({.class_name = class_name, .style = WS_POPUP, .extended_style = WS_EX_TOOLWINDOW});
}

MessageWindow::~MessageWindow() {
    destroy();
}

void MessageWindow::post(std::function<void()> task) {
    {
        const std::lock_guard lock(mutex_);
        if (closed_) {
            return;
        }
        tasks_.push_back(std::move(task));
    }
    // Where that fails (the queue of messages is full) a tick carries it out: each one task.
    PostMessageW(handle(), task_message, 0, 0);
}

bool MessageWindow::carryOutOne() {
    std::function<void()> task;
    {
        const std::lock_guard lock(mutex_);
        if (tasks_.empty()) {
            return false;
        }
        task = std::move(tasks_.front());
        tasks_.pop_front();
    }
    task();
    return true;
}

void MessageWindow::close() {
    std::deque<std::function<void()>> dropped; // outlives the lock
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(tasks_);
}

void MessageWindow::every(UINT period, std::function<void()> tick) {
    tick_ = std::move(tick);
    SetTimer(handle(), tick_timer, period, nullptr);
}

bool MessageWindow::askForRestart() {
    const HWND server = FindWindowW(class_name, nullptr);
    return server && PostMessageW(server, restart_message, 0, 0);
}

void MessageWindow::run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

LRESULT MessageWindow::received(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == task_message) {
        carryOutOne();
        return 0;
    }
    if (message == restart_message && restart_) {
        restart_();
        return 0;
    }
    if (message == WM_TIMER && wparam == tick_timer) {
        carryOutOne();
        tick();
        return 0;
    }
    if ((message == WM_DISPLAYCHANGE || (message == WM_SETTINGCHANGE && wparam == SPI_SETWORKAREA)) &&
        screens_changed_) {
        screens_changed_({});
    }
    if (message == WM_SETTINGCHANGE && settings_changed_) {
        settings_changed_();
    }
    if (message == WM_DPICHANGED && screens_changed_) {
        screens_changed_(LOWORD(wparam));
        return 0;
    }
    if ((message == WM_CLOSE || (message == WM_ENDSESSION && wparam)) && closing_) {
        closing_();
        return 0;
    }
    return Window::received(message, wparam, lparam);
}

} // namespace agent::stage
