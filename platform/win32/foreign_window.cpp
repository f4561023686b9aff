#include "platform/foreign_window.h"

#include <array>
#include <string>

#include <windows.h>

namespace murmelix::platform {

namespace {

// So long one waits for a program that is busy; for one that hangs not at all.
constexpr UINT patience_ms = 2000;

void send(std::intptr_t window, UINT message, WPARAM wparam, LPARAM lparam) {
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(reinterpret_cast<HWND>(window), message, wparam, lparam, SMTO_ABORTIFHUNG, patience_ms,
                        &answer);
}

struct Search {
    HWND parent, after;
    const char* class_name;
    bool passed = false; // `after`
    HWND found = nullptr;
};

BOOL CALLBACK look(HWND child, LPARAM given) {
    auto& search = *reinterpret_cast<Search*>(given);
    std::array<char, 257> name{}; // no class has a longer one
    if (search.passed && GetAncestor(child, GA_PARENT) == search.parent &&
        GetClassNameA(child, name.data(), static_cast<int>(name.size())) &&
        lstrcmpiA(name.data(), search.class_name) == 0) {
        search.found = child;
    }
    search.passed = search.passed || child == search.after;
    return search.found == nullptr;
}

} // namespace

std::intptr_t childWindow(std::intptr_t parent, const char* class_name, const char* caption) {
    if (parent == 0) { // would be the whole desktop
        return 0;
    }
    return reinterpret_cast<std::intptr_t>(FindWindowExA(reinterpret_cast<HWND>(parent), nullptr, class_name, caption));
}

// Not by FindWindowEx, which under Wine finds nothing after a window of another class.
std::intptr_t nextChildWindow(std::intptr_t parent, std::intptr_t after, const char* class_name) {
    if (parent == 0) {
        return 0;
    }
    Search search{reinterpret_cast<HWND>(parent), reinterpret_cast<HWND>(after), class_name};
    EnumChildWindows(search.parent, look, reinterpret_cast<LPARAM>(&search));
    return reinterpret_cast<std::intptr_t>(search.found);
}

void sendText(std::intptr_t window, std::string_view text) {
    const std::string terminated(text);
    send(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(terminated.c_str()));
}

void sendKey(std::intptr_t window, unsigned code, bool down) {
    // As the keyboard sends it: once, and on its way up when it was down.
    const LPARAM flags = static_cast<LPARAM>(down ? 1U : 0xC0000001U);
    send(window, down ? WM_KEYDOWN : WM_KEYUP, code, flags);
}

} // namespace murmelix::platform
