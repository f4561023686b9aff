// Tells what windows there are, texts and all, as no other program can from outside Windows. One line a window:
//   DEPTH TAB CLASS TAB VISIBLE TAB ENABLED TAB TEXT TAB HANDLE
// DEPTH 0 is a top-level window, its children follow. VISIBLE and ENABLED are 0 or 1. In TEXT, of 2000 characters at
// most, a tab, a line end and a backslash are \t, \r, \n and \\.
#include <array>
#include <cstdio>
#include <string>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace {

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\t')
            result += "\\t";
        else if (c == '\r')
            result += "\\r";
        else if (c == '\n')
            result += "\\n";
        else if (c == '\\')
            result += "\\\\";
        else
            result += c;
    }
    return result;
}

// A window's text asked of the window itself: that of another process' control is not in its caption. A window that
// does not answer has none.
std::string textOf(HWND window) {
    std::array<wchar_t, 2000> text{};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 1000,
                        &length);
    return murmelix::toUtf8(murmelix::com::narrow(text.data(), wcsnlen(text.data(), text.size())));
}

void describe(HWND window, int depth) {
    std::array<wchar_t, 256> kind{};
    GetClassNameW(window, kind.data(), static_cast<int>(kind.size()));
    std::printf("%d\t%s\t%d\t%d\t%s\t%llu\n", depth,
                murmelix::toUtf8(murmelix::com::narrow(kind.data(), wcslen(kind.data()))).c_str(),
                IsWindowVisible(window) ? 1 : 0, IsWindowEnabled(window) ? 1 : 0, escaped(textOf(window)).c_str(),
                static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(window)));
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        describe(child, depth + 1);
}

} // namespace

int main() {
    EnumWindows(
        [](HWND window, LPARAM) -> BOOL {
            describe(window, 0);
            return TRUE;
        },
        0);
    return 0;
}
