#include "tests/windows/messenger_client/client_process.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace messenger_client {

using murmelix::com::Object;
using murmelix::com::wide;

namespace {

constexpr DWORD patience = 20000;

} // namespace

bool pumpUntil(const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition()) {
        if (GetTickCount64() > end)
            return false;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (!condition())
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return true;
}

Process::Process(const std::u16string& command_line) {
    std::vector<wchar_t> line(wide(command_line), wide(command_line) + command_line.size() + 1);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
        CloseHandle(made.hThread);
        process_ = made.hProcess;
        id_ = made.dwProcessId;
    }
}

Process::~Process() {
    if (!process_)
        return;
    if (running())
        kill();
    WaitForSingleObject(process_, patience);
    CloseHandle(process_);
}

std::optional<DWORD> Process::exitStatus() const {
    const HANDLE process = process_;
    if (!pumpUntil([process] { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; }))
        return std::nullopt;
    DWORD status = 0;
    GetExitCodeProcess(process_, &status);
    return status;
}

std::u16string windowsPath(const std::string& host_path) {
    std::u16string path = u"Z:" + murmelix::fromUtf8(host_path);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

std::u16string clientProgram() {
    std::u16string quoted = u"\"";
    quoted += windowsPath(MESSENGER_CLIENT);
    quoted += u'"';
    return quoted;
}

std::u16string temporaryFile(const std::u16string& name) {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    return std::u16string(murmelix::com::narrow(folder.data(), length)) + u"messenger_client_" + name;
}

std::string contents(const std::u16string& file) {
    std::ifstream in(std::filesystem::path(wide(file)), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

RunningClient::RunningClient(const std::u16string& switches) : process_(clientProgram() + u" " + switches) {
    // Its automation is offered when it answers an (unknown) command: it runs its message loop then.
    EXPECT_TRUE(pumpUntil([this] { return mainWindow() && command("?") == static_cast<int>(Result::unknown_command); }))
        << "the client did not start";
}

RunningClient::~RunningClient() {
    // A killed one would leave its class behind, which Wine then hands to the next test.
    if (mainWindow())
        command("exit");
    EXPECT_TRUE(process_.exitStatus());
    pumpUntil([this] { return !mainWindow(); });
}

HWND RunningClient::mainWindow() const {
    return FindWindowW(L"MessengerClientMain", nullptr);
}

HWND RunningClient::conversationWindow() const {
    HWND found = nullptr;
    for (HWND next = nullptr; (next = FindWindowExW(nullptr, next, L"MessengerClientConversation", nullptr));) {
        if (IsWindowVisible(next)) {
            found = next;
            break;
        }
    }
    return found;
}

int RunningClient::command(std::string_view line) const {
    std::string copy(line);
    COPYDATASTRUCT data{control_message, static_cast<DWORD>(copy.size()), copy.data()};
    DWORD_PTR result = 0;
    const bool answered = SendMessageTimeoutW(mainWindow(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data),
                                              SMTO_NORMAL, patience, &result) != 0;
    return answered ? static_cast<int>(result) : -1;
}

Object RunningClient::automation() const {
    return Object::create(u"Messenger.UIAutomation");
}

Heard::Heard(Object& messenger)
    : subscription(messenger.dispatch(), iid_messenger_events,
                   [this](DISPID event, std::vector<murmelix::com::Variant>& arguments) {
                       std::string line = std::to_string(event);
                       for (const auto& argument : arguments) {
                           if (argument.type() != VT_DISPATCH) {
                               line += " " + murmelix::toUtf8(argument.toText());
                               continue;
                           }
                           Object object(argument.toObject());
                           try {
                               line += " " + murmelix::toUtf8(object.get(u"SigninName").toText());
                           } catch (const murmelix::com::Error&) {
                               line += " window";
                               windows.push_back(object);
                           }
                       }
                       lines.push_back(line);
                   }) {}

bool Heard::has(const std::string& line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

void screenshot(HWND window, const char* name) {
    RECT area{};
    GetWindowRect(window, &area);
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const HDC screen = GetDC(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    BitBlt(dc, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    const std::filesystem::path folder(wide(windowsPath(SCREENS_DIR)));
    std::filesystem::create_directories(folder);
    std::ofstream out(folder / (std::string(name) + ".bmp"), std::ios::binary);
    const DWORD size = static_cast<DWORD>(width) * static_cast<DWORD>(height) * 4;
    BITMAPFILEHEADER head{0x4D42, static_cast<DWORD>(sizeof head + sizeof info.bmiHeader) + size, 0, 0,
                          static_cast<DWORD>(sizeof head + sizeof info.bmiHeader)};
    out.write(reinterpret_cast<const char*>(&head), sizeof head);
    out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
    out.write(static_cast<const char*>(bits), static_cast<std::streamsize>(size));
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
}

} // namespace messenger_client
