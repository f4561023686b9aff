#include "ui/global_key.h"

#include <map>

#include "ui/control.h"
#include "ui/win32/window.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

using namespace win32;

namespace {

constexpr int last_id = 0xBFFF; // the highest that the system lets a program use

std::map<int, GlobalKey*>& taken() {
    static std::map<int, GlobalKey*> all;
    return all;
}

LRESULT CALLBACK procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != WM_HOTKEY) {
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
    if (const auto found = taken().find(static_cast<int>(wparam)); found != taken().end()) {
        const auto pressed = found->second->Pressed; // which may end with the key
        guarded([&] { raise(pressed); });
    }
    return 0;
}

// One window hears all of them, as long as the program runs.
HWND listener() {
    static const HWND window = [] {
        static const wchar_t name[] = L"MurmelixGlobalKeys";
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = name;
        description.lpfnWndProc = procedure;
        RegisterClassExW(&description);
        return CreateWindowExW(0, name, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, description.hInstance, nullptr);
    }();
    return window;
}

UINT codeOf(const Shortcut& key) {
    if (key.key == Key::letter) {
        return key.letter;
    }
    // The virtual keys, found by what they are read as.
    for (UINT code = 1; code < 0xFF; ++code) {
        if (keyOf(code, key.shift) == key) {
            return code;
        }
    }
    return 0;
}

UINT heldWith(const Shortcut& key) {
    return (key.shift & shift_key ? MOD_SHIFT : 0U) | (key.shift & control_key ? MOD_CONTROL : 0U) |
           (key.shift & alt_key ? MOD_ALT : 0U);
}

} // namespace

int native::takeKey(GlobalKey& key_listener, const Shortcut& key) {
    int id = 1;
    while (taken().contains(id) && id < last_id) {
        ++id;
    }
    const UINT code = codeOf(key);
    if (code == 0 || !listener() || !RegisterHotKey(listener(), id, heldWith(key) | MOD_NOREPEAT, code)) {
        return 0;
    }
    taken()[id] = &key_listener;
    return id;
}

void native::releaseKey(int id) {
    UnregisterHotKey(listener(), id);
    taken().erase(id);
}

} // namespace murmelix::ui
