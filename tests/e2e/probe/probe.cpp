// Tells what windows there are, texts and all, and what the registry holds, as no program can from outside Windows.
// Answers commands of its standard input, one a line, until that ends; a line "." ends an answer.
//     windows            one line a window:
//       DEPTH TAB CLASS TAB VISIBLE TAB ENABLED TAB TEXT TAB HANDLE TAB LEFT TAB TOP TAB RIGHT TAB BOTTOM TAB STATE
//     DEPTH 0 is a top-level window, its children follow. VISIBLE and ENABLED are 0 or 1; the place is in pixels of the
//     screen. STATE is the check of a button and the selected entry of a drop-down list, from 0. TEXT has 12000
//     characters at most. Windows of a program that does not answer within a second have no text. Of a hidden window
//     there are class and handle alone, and its text where it is a top-level one; its children are left out.
//     focus              the handle of the window that has the keyboard, 0 where none has
//     values KEY         of a key below HKEY_CURRENT_USER, one line a value in their order: NAME TAB TYPE TAB DATA
//     put KEY TAB NAME TAB TYPE TAB DATA    writes one
//     subkeys KEY        their names, one a line
//     objects PROGRAM    PID TAB HANDLES TAB GDI TAB WINDOWS of each process that runs this file; "?" for what is not
//                        told by this system
//     screen             its width and height in pixels, parted by a blank
//     resolution W H     changes them, to what the display can; "error NUMBER" where the system refuses
//     tell N W L         sends the message of that number, with these two parameters, to every top-level window
//     client COMMAND     has the Messenger client carry it out; the result, 0 where it does not answer
// TYPE is the number of the registry's type; DATA is a text where it is 1, else hexadecimal.
// In texts a tab, a line end, a NUL and a backslash are \t, \r, \n, \0 and \\.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

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

// That of a top-level window as the system has it, without asking its program; but one of the project's own is asked,
// for a test may want to know whether it answers.
std::string textOfHidden(HWND window, std::string_view kind) {
    for (const std::string_view own : {"Murmelix", "MessengerClient", "AgentServer"}) {
        if (kind.starts_with(own)) {
            return textOf(window);
        }
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

// Numbers parted by blanks; what is missing is 0.
std::array<long, 3> numbersIn(std::string_view text) {
    std::array<long, 3> numbers{};
    std::string rest(text);
    char* at = rest.data();
    for (long& number : numbers) {
        number = std::strtol(at, &at, 0);
    }
    return numbers;
}

void changeResolution(std::string_view wanted) {
    const auto numbers = numbersIn(wanted);
    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT;
    mode.dmPelsWidth = static_cast<DWORD>(numbers[0]);
    mode.dmPelsHeight = static_cast<DWORD>(numbers[1]);
    if (const LONG result = ChangeDisplaySettingsW(&mode, 0); result != DISP_CHANGE_SUCCESSFUL) {
        std::printf("error %ld\n", result);
    }
}

void tellAll(std::string_view what) {
    struct Message {
        UINT number;
        WPARAM wparam;
        LPARAM lparam;
    };
    const auto numbers = numbersIn(what);
    Message message{static_cast<UINT>(numbers[0]), static_cast<WPARAM>(numbers[1]), numbers[2]};
    EnumWindows(
        [](HWND window, LPARAM told) -> BOOL {
            const auto& one = *reinterpret_cast<const Message*>(told);
            SendNotifyMessageW(window, one.number, one.wparam, one.lparam);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&message));
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

// A handle's owner, as the system lists the handles of all processes.
struct SystemHandle {
    void* object;
    ULONG_PTR process, handle;
    ULONG access;
    USHORT trace, type;
    ULONG attributes, reserved;
};

using Count = std::optional<std::size_t>;

Count handlesOf(DWORD process) {
    // Of a kind of information that no header names.
    constexpr ULONG system_extended_handle_information = 64;
    using Query = NTSTATUS(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    static const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    constexpr std::size_t most = std::size_t{256} << 20;
    constexpr NTSTATUS too_short = static_cast<NTSTATUS>(0xC0000004);
    for (std::size_t size = std::size_t{1} << 20; size <= most; size *= 2) {
        std::vector<std::byte> buffer(size);
        ULONG length = 0;
        const NTSTATUS status =
            query(system_extended_handle_information, buffer.data(), static_cast<ULONG>(buffer.size()), &length);
        if (status == too_short) {
            continue;
        }
        if (status != 0) {
            return std::nullopt;
        }
        ULONG_PTR count = 0;
        std::memcpy(&count, buffer.data(), sizeof count);
        std::size_t found = 0;
        for (ULONG_PTR i = 0; i < count; ++i) {
            SystemHandle one{};
            std::memcpy(&one, buffer.data() + 2 * sizeof(ULONG_PTR) + i * sizeof one, sizeof one);
            found += one.process == process;
        }
        return found;
    }
    return std::nullopt;
}

// An entry of the table of graphics objects, which each process finds by its environment block.
struct GraphicsObject {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type, extended_type;
    std::uint64_t pointer;
};
constexpr std::size_t most_graphics_objects = 0x4000;
constexpr std::size_t table_in_environment = sizeof(void*) == 8 ? 0xF8 : 0x94;

Count graphicsObjectsOf(HANDLE process) {
    if (const DWORD count = GetGuiResources(process, GR_GDIOBJECTS)) {
        return count;
    }
    PROCESS_BASIC_INFORMATION basic{};
    const void* table = nullptr;
    std::vector<GraphicsObject> objects(most_graphics_objects);
    SIZE_T read = 0;
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0 ||
        !ReadProcessMemory(process, reinterpret_cast<const std::byte*>(basic.PebBaseAddress) + table_in_environment,
                           &table, sizeof table, &read) ||
        !ReadProcessMemory(process, table, objects.data(), objects.size() * sizeof objects[0], &read)) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(
        std::ranges::count_if(objects, [](const GraphicsObject& one) { return one.type != 0; }));
}

Count windowsOf(DWORD process) {
    struct Search {
        DWORD process;
        std::size_t found = 0;
        void look(HWND window) {
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            found += owner == process;
        }
    } search{process};
    const auto look = [](HWND window, LPARAM to) -> BOOL {
        reinterpret_cast<Search*>(to)->look(window);
        return TRUE;
    };
    EnumChildWindows(GetDesktopWindow(), look, reinterpret_cast<LPARAM>(&search));
    for (HWND window = nullptr; (window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;) {
        search.look(window);
    }
    return search.found;
}

// Whether a count of this process' own objects grows with them: where it does not, it counts something else.
template <class Make, class Free>
bool counts(const std::function<Count()>& count, Make make, Free free) {
    constexpr std::size_t some = 50;
    const Count before = count();
    std::vector<decltype(make())> made;
    for (std::size_t i = 0; i < some; ++i) {
        made.push_back(make());
    }
    const Count after = count();
    for (const auto one : made) {
        free(one);
    }
    return before && after && *after == *before + some;
}

std::string text(Count count) {
    return count ? std::to_string(*count) : "?";
}

void tellObjects(std::string_view program) {
    static const bool counts_handles = counts([] { return handlesOf(GetCurrentProcessId()); },
                                              [] { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }, CloseHandle);
    static const bool counts_graphics =
        counts([] { return graphicsObjectsOf(GetCurrentProcess()); }, [] { return CreateSolidBrush(0); }, DeleteObject);
    const std::u16string wanted = utf16(program);
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        if (lstrcmpiW(entry.szExeFile, murmelix::com::wide(wanted)) != 0) {
            continue;
        }
        const DWORD id = entry.th32ProcessID;
        const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
        std::printf("%lu\t%s\t%s\t%s\n", id, text(counts_handles ? handlesOf(id) : Count()).c_str(),
                    text(counts_graphics && process ? graphicsObjectsOf(process) : Count()).c_str(),
                    text(windowsOf(id)).c_str());
        if (process) {
            CloseHandle(process);
        }
    }
    CloseHandle(snapshot);
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
        } else if (word == "objects") {
            tellObjects(rest);
        } else if (word == "screen") {
            std::printf("%d %d\n", GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
        } else if (word == "resolution") {
            changeResolution(rest);
        } else if (word == "tell") {
            tellAll(rest);
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
