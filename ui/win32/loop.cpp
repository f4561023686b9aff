#include <atomic>
#include <deque>
#include <mutex>

#include "common/com/handles.h"
#include "ui/screen.h"
#include "ui/win32/child.h"
#include "ui/win32/form.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

namespace {

using namespace win32;

constexpr UINT posted_message = WM_APP;
constexpr wchar_t post_class[] = L"MurmelixPost";

// What other threads want done. A window of its own is told of it, for a message loop of the system, a menu's for
// instance, serves windows alone.
struct Posted {
    std::mutex mutex;
    std::deque<std::function<void()>> actions;
    HWND window = nullptr;

    std::function<void()> take() {
        const std::lock_guard lock(mutex);
        if (actions.empty()) {
            return {};
        }
        auto first = std::move(actions.front());
        actions.pop_front();
        return first;
    }
};

Posted& posted() {
    static Posted all;
    return all;
}

// Those that are there now: what they post in turn waits until other messages have had their turn.
void runPosted() {
    std::size_t count;
    {
        const std::lock_guard lock(posted().mutex);
        count = posted().actions.size();
    }
    for (; count > 0; --count) {
        if (const auto action = posted().take()) {
            guarded(action);
        }
    }
}

LRESULT CALLBACK postProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == posted_message) {
        runPosted();
        return 0;
    }
    return DefWindowProcW(hwnd, message, wparam, lparam);
}

// The control that a window belongs to: a combo box has a field of the system's in it.
const ControlWindow* controlAround(HWND hwnd) {
    const ControlWindow* own = find(hwnd);
    return own ? own : find(GetParent(hwnd));
}

// The toolkit's part of a keyboard message: tells whether it is done with.
bool translate(const MSG& message) {
    auto* window = find<FormWindow>(GetAncestor(message.hwnd, GA_ROOT));
    if (!window) {
        return false;
    }
    Form& form = window->form();
    bool used = false;
    switch (message.message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        guarded([&] { raise(form.UserActs); });
        return false;
    case WM_SYSCHAR:
        guarded([&] { used = form.onMnemonicKey(static_cast<char16_t>(message.wParam)); });
        return used;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
        guarded([&] { raise(form.UserActs); });
        if (!find<FormWindow>(GetAncestor(message.hwnd, GA_ROOT))) {
            return false;
        }
        const Shortcut key = keyOf(message.wParam, shiftState());
        const ControlWindow* focused = controlAround(message.hwnd);
        // A drop-down list that is open, for instance, is left by Escape; what has been typed is heard first.
        const bool kept = focused && focused->keeps(key) && !(key.shift & (control_key | alt_key));
        const bool listened = focused && focused->control().KeyPress;
        if (key.key != Key::other && (!kept || listened)) {
            guarded([&] { used = kept ? focused->control().KeyPress(key) : form.onKey(key); });
        }
        return used;
    }
    default:
        return false;
    }
}

} // namespace

double twipsPerPixel() {
    return 1440.0 / screenDpi();
}

Rect workArea() {
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

Rect workArea(const Rect& place) {
    const RECT area{place.left, place.top, place.left + place.width, place.top + place.height};
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromRect(&area, MONITOR_DEFAULTTONEAREST), &screen);
    const RECT& work = screen.rcWork;
    return {work.left, work.top, work.right - work.left, work.bottom - work.top};
}

int runMessageLoop() {
    prepareToPost();
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        dispatch(message);
    }
    return static_cast<int>(message.wParam);
}

bool animates() {
    BOOL moves = TRUE;
    SystemParametersInfoW(SPI_GETCLIENTAREAANIMATION, 0, &moves, 0);
    return moves;
}

void beep() {
    MessageBeep(MB_ICONWARNING);
}

void quitMessageLoop(int status) {
    PostQuitMessage(status);
}

void post(std::function<void()> action) {
    Posted& all = posted();
    const std::lock_guard lock(all.mutex);
    all.actions.push_back(std::move(action));
    // Where the system's queue is full, the loop is busy with it and looks here after each message.
    if (all.window) {
        PostMessageW(all.window, posted_message, 0, 0);
    }
}

namespace win32 {

void prepareToPost() {
    Posted& all = posted();
    const std::lock_guard lock(all.mutex);
    if (all.window) {
        return;
    }
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = post_class;
    description.lpfnWndProc = postProcedure;
    RegisterClassExW(&description);
    all.window =
        CreateWindowExW(0, post_class, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, description.hInstance, nullptr);
    if (!all.actions.empty()) {
        PostMessageW(all.window, posted_message, 0, 0);
    }
}

void dispatch(const MSG& message) {
    if (!translate(message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    bool waiting;
    {
        const std::lock_guard lock(posted().mutex);
        waiting = !posted().actions.empty();
    }
    if (waiting) {
        runPosted();
    }
}

int buttonsOf(DWORD held) {
    return (held & MK_LBUTTON ? left_button : 0) | (held & MK_RBUTTON ? right_button : 0) |
           (held & MK_MBUTTON ? middle_button : 0);
}

} // namespace win32
} // namespace murmelix::ui
