#include "tests/fakes/foreign_windows.h"

#include <algorithm>

#include "platform/foreign_window.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

fakes::ForeignWindows& fakes::foreignWindows() {
    return state().foreign_windows;
}

namespace platform {

namespace {

void receive(const fakes::ForeignInput& input) {
    const auto& windows = fakes::foreignWindows().windows;
    if (std::any_of(windows.begin(), windows.end(), [&](const auto& each) { return each.handle == input.window; })) {
        fakes::foreignWindows().input.push_back(input);
    }
}

} // namespace

std::intptr_t childWindow(std::intptr_t parent, const char* class_name, const char* caption) {
    for (const fakes::ForeignWindow& window : fakes::foreignWindows().windows) {
        if (window.parent == parent && window.class_name == class_name && (!caption || window.caption == caption)) {
            return window.handle;
        }
    }
    return 0;
}

std::intptr_t nextChildWindow(std::intptr_t parent, std::intptr_t after, const char* class_name) {
    bool behind = false;
    for (const fakes::ForeignWindow& window : fakes::foreignWindows().windows) {
        if (window.parent != parent) {
            continue;
        }
        if (behind && window.class_name == class_name) {
            return window.handle;
        }
        behind |= window.handle == after;
    }
    return 0;
}

void sendText(std::intptr_t window, std::string_view text) {
    receive({.window = window, .text = std::string(text)});
}

void sendKey(std::intptr_t window, unsigned code, bool down) {
    receive({.window = window, .text = {}, .code = code, .down = down});
}

} // namespace platform
} // namespace murmelix
