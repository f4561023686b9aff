// Tells what windows there are, texts and all, and what the registry holds, as no program can from outside Windows.
// Answers commands of its standard input, one a line, until that ends; a line "." ends an answer.
//     windows            one line a window:
//       DEPTH TAB CLASS TAB VISIBLE TAB ENABLED TAB TEXT TAB HANDLE TAB LEFT TAB TOP TAB RIGHT TAB BOTTOM TAB STATE
//     DEPTH 0 is a top-level window, its children follow. VISIBLE and ENABLED are 0 or 1; the place is in pixels of the
//     screen. STATE is the check of a button and the selected entry of a drop-down list, from 0. TEXT has 12000
//     characters at most. Windows of a program that does not answer within a second have no text. Of a hidden window
//     there are class and handle alone, and its text where it is a top-level one; its children are left out. focus the
//     handle of the window that has the keyboard, 0 where none has values KEY         of a key below HKEY_CURRENT_USER,
//     one line a value in their order: NAME TAB TYPE TAB DATA put KEY TAB NAME TAB TYPE TAB DATA    writes one subkeys
//     KEY        their names, one a line client COMMAND     has the Messenger client carry it out; the result, 0 where
//     it does not answer
// TYPE is the number of the registry's type; DATA is a text where it is 1, else hexadecimal.
// In texts a tab, a line end, a NUL and a backslash are \t, \r, \n, \0 and \\.
#include <algorithm>
#include <array>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace {

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\t') {
            result += "\\t";
        } else if (c == '\r') {
            result += "\\r";
        } else if (c == '\n') {
            result += "\\n";
        } else if (c == '\0') {
            result += "\\0";
        } else if (c == '\\') {
            result += "\\\\";
        } else {
            result += c;
        }
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const char c = text[++i];
        result += c == 't' ? '\t' : c == 'r' ? '\r' : c == 'n' ? '\n' : c == '0' ? '\0' : c;
    }
    return result;
}

std::string utf8(const wchar_t* text, std::size_t length) {
    return murmelix::toUtf8(murmelix::com::narrow(text, length));
}

// Threads that have not answered while the windows are described: they are not waited for again.
std::set<DWORD> silent;

LRESULT asked(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    const DWORD thread = GetWindowThreadProcessId(window, nullptr);
    DWORD_PTR answer = 0;
    if (!silent.contains(thread) &&
        !SendMessageTimeoutW(window, message, wparam, lparam, SMTO_ABORTIFHUNG, 1000, &answer) &&
        GetLastError() == ERROR_TIMEOUT) {
        silent.insert(thread);
    }
    return static_cast<LRESULT>(answer);
}

// A window's text asked of the window itself: that of another process' control is not in its caption.
std::string textOf(HWND window) {
    static std::array<wchar_t, 12000> text;
    text[0] = L'\0';
    asked(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return utf8(text.data(), wcsnlen(text.data(), text.size()));
}

LRESULT stateOf(HWND window, std::string_view kind) {
    if (kind == "Button") {
        return asked(window, BM_GETCHECK);
    }
    return kind == "ComboBox" ? asked(window, CB_GETCURSEL) : 0;
}

// That of a top-level window as the system has it, without asking its program; but a form's own program is asked, for a
// test may want to know whether it answers.
std::string textOfHidden(HWND window, std::string_view kind) {
    if (kind.starts_with("Murmelix")) {
        return textOf(window);
    }
    std::array<wchar_t, 256> text{};
    const int length = InternalGetWindowText(window, text.data(), static_cast<int>(text.size()));
    return utf8(text.data(), static_cast<std::size_t>(std::max(length, 0)));
}

void describe(HWND window, int depth) {
    std::array<wchar_t, 256> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    const std::string kind = utf8(name.data(), wcslen(name.data()));
    const auto handle = static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(window));
    // Its parents are visible: the children of a hidden window are not described.
    const bool visible = GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE;
    if (!visible) {
        std::printf("%d\t%s\t0\t0\t%s\t%llu\t0\t0\t0\t0\t0\n", depth, kind.c_str(),
                    depth == 0 ? escaped(textOfHidden(window, kind)).c_str() : "", handle);
        return;
    }
    const bool enabled = IsWindowEnabled(window);
    const std::string text = escaped(textOf(window));
    const LRESULT state = stateOf(window, kind);
    RECT place{}; // looked at last: a window that can be seen has got its place before
    GetWindowRect(window, &place);
    std::printf("%d\t%s\t1\t%d\t%s\t%llu\t%ld\t%ld\t%ld\t%ld\t%lld\n", depth, kind.c_str(), enabled ? 1 : 0,
                text.c_str(), handle, place.left, place.top, place.right, place.bottom, static_cast<long long>(state));
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        describe(child, depth + 1);
    }
}

void describeAll() {
    silent.clear();
    EnumWindows(
        [](HWND window, LPARAM) -> BOOL {
            describe(window, 0);
            return TRUE;
        },
        0);
}

void tellFocus() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    const HWND foreground = GetForegroundWindow();
    GetGUIThreadInfo(foreground ? GetWindowThreadProcessId(foreground, nullptr) : 0, &info);
    std::printf("%llu\n", static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(info.hwndFocus)));
}

std::string hexadecimal(const std::vector<BYTE>& data) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const BYTE byte : data) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::vector<BYTE> fromHexadecimal(std::string_view text) {
    std::vector<BYTE> data;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        data.push_back(static_cast<BYTE>(std::stoul(std::string(text.substr(i, 2)), nullptr, 16)));
    }
    return data;
}

std::u16string utf16(std::string_view text) {
    return murmelix::fromUtf8(text);
}

// An open key below HKEY_CURRENT_USER; null where there is none.
class Key {
  public:
    Key(std::string_view path, bool create) {
        const std::u16string name = utf16(path);
        if (create) {
            RegCreateKeyW(HKEY_CURRENT_USER, murmelix::com::wide(name), &key_);
        } else {
            RegOpenKeyW(HKEY_CURRENT_USER, murmelix::com::wide(name), &key_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) {
            RegCloseKey(key_);
        }
    }
    HKEY get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

void tellValues(std::string_view path) {
    const Key key(path, false);
    std::array<wchar_t, 16384> name{};
    std::vector<BYTE> data(1 << 20);
    for (DWORD i = 0;; ++i) {
        DWORD length = name.size(), size = static_cast<DWORD>(data.size()), type = 0;
        if (!key.get() || RegEnumValueW(key.get(), i, name.data(), &length, nullptr, &type, data.data(), &size) != 0) {
            return;
        }
        std::string text;
        if (type == REG_SZ) {
            text = escaped(utf8(reinterpret_cast<const wchar_t*>(data.data()), size / sizeof(wchar_t)));
        } else {
            text = hexadecimal({data.begin(), data.begin() + size});
        }
        std::printf("%s\t%lu\t%s\n", escaped(utf8(name.data(), length)).c_str(), type, text.c_str());
    }
}

void tellSubkeys(std::string_view path) {
    const Key key(path, false);
    std::array<wchar_t, 256> name{};
    for (DWORD i = 0; key.get() && RegEnumKeyW(key.get(), i, name.data(), name.size()) == 0; ++i) {
        std::printf("%s\n", escaped(utf8(name.data(), wcslen(name.data()))).c_str());
    }
}

void put(std::string_view rest) {
    std::vector<std::string> fields;
    while (fields.size() < 3) {
        const std::size_t end = rest.find('\t');
        fields.emplace_back(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    const Key key(fields[0], true);
    const std::u16string name = utf16(unescaped(fields[1]));
    const DWORD type = std::stoul(fields[2]);
    LSTATUS result = ERROR_ACCESS_DENIED;
    if (key.get() && type == REG_SZ) {
        const std::u16string text = utf16(unescaped(rest));
        result =
            RegSetValueExW(key.get(), murmelix::com::wide(name), 0, type, reinterpret_cast<const BYTE*>(text.data()),
                           static_cast<DWORD>(text.size() * sizeof(char16_t)));
    } else if (key.get()) {
        const std::vector<BYTE> data = fromHexadecimal(rest);
        result =
            RegSetValueExW(key.get(), murmelix::com::wide(name), 0, type, data.data(), static_cast<DWORD>(data.size()));
    }
    if (result != ERROR_SUCCESS) {
        std::printf("error %ld\n", result);
    }
}

// False at the end of the input.
bool readLine(std::string& line) {
    line.clear();
    int c = std::getchar();
    for (; c != EOF && c != '\n'; c = std::getchar()) {
        line += static_cast<char>(c);
    }
    return c != EOF;
}

void command(std::string_view text) {
    COPYDATASTRUCT data{messenger_client::control_message, static_cast<DWORD>(text.size()),
                        const_cast<char*>(text.data())};
    DWORD_PTR result = 0;
    constexpr UINT patience = 20000; // ms
    if (const HWND client = FindWindowW(L"MessengerClientMain", nullptr)) {
        SendMessageTimeoutW(client, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL, patience, &result);
    }
    std::printf("%llu\n", static_cast<unsigned long long>(result));
}

void serve() {
    std::string line;
    while (readLine(line)) {
        const std::size_t end = line.find(' ');
        const std::string_view word = std::string_view(line).substr(0, end);
        const std::string_view rest =
            end == std::string::npos ? std::string_view() : std::string_view(line).substr(end + 1);
        if (word == "windows") {
            describeAll();
        } else if (word == "focus") {
            tellFocus();
        } else if (word == "values") {
            tellValues(rest);
        } else if (word == "subkeys") {
            tellSubkeys(rest);
        } else if (word == "client") {
            command(rest);
        } else if (word == "put") {
            put(rest);
        } else {
            std::printf("unknown command\n");
        }
        std::printf(".\n");
        std::fflush(stdout);
    }
}

} // namespace

int main() {
    serve();
}
