// MessengerClient.exe: see chat/switches.h for its command line.
#include <array>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/app.h"

namespace messenger_client {

namespace {

using murmelix::com::wide;

constexpr int status_bad_switches = 20;
constexpr int status_no_client = 21;
constexpr int status_not_registered = 22;
constexpr int status_failed = 23;

std::vector<std::u16string> commandLine() {
    int count = 0;
    LPWSTR* const raw = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::u16string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.emplace_back(murmelix::com::narrow(raw[i], std::wcslen(raw[i])));
    }
    LocalFree(raw);
    return arguments;
}

std::u16string ownPath() {
    std::vector<wchar_t> path(32768);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return std::u16string(murmelix::com::narrow(path.data(), length));
}

int registerAutomation() {
    std::u16string command = u"\"";
    command += ownPath();
    command += u'"';
    return registerServer(automationServer(), command) == murmelix::com::Registration::done ? 0 : status_not_registered;
}

// Exit status: 0, or the Result of the command; status_no_client where nobody answered it.
int send(const std::u16string& command) {
    const HWND running = FindWindowW(main_class, nullptr);
    if (!running) {
        return status_no_client;
    }
    std::string line = murmelix::toUtf8(command);
    COPYDATASTRUCT data{control_message, static_cast<DWORD>(line.size()), line.data()};
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(running, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_ABORTIFHUNG, 10000,
                             &result) ||
        result == 0) {
        return status_no_client;
    }
    return result == static_cast<DWORD_PTR>(Result::done) ? 0 : static_cast<int>(result);
}

int runClient(const Switches& switches) {
    if (const HWND running = FindWindowW(main_class, nullptr)) {
        if (!switches.embedding) {
            ShowWindow(running, IsIconic(running) ? SW_RESTORE : SW_SHOW);
            SetForegroundWindow(running);
        }
        return status_failed;
    }
    const murmelix::com::Apartment apartment;
    murmelix::com::check(apartment.result());
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    if (!LoadLibraryW(L"riched20.dll")) {
        MessageBoxW(nullptr, L"The Windows component riched20.dll is missing.", L"Messenger", MB_ICONERROR);
        return status_failed;
    }
    App app(switches);
    return app.run();
}

} // namespace

} // namespace messenger_client

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    using namespace messenger_client;
    try {
        const Switches switches = parseSwitches(commandLine());
        if (!switches.error.empty()) {
            MessageBoxW(nullptr, wide(switches.error), L"Messenger", MB_ICONERROR);
            return status_bad_switches;
        }
        switch (switches.task) {
        case Switches::Task::register_server:
            return registerAutomation();
        case Switches::Task::unregister_server:
            return unregisterServer(automationServer()) == murmelix::com::Registration::done ? 0
                                                                                             : status_not_registered;
        case Switches::Task::send:
            return send(switches.command);
        case Switches::Task::run:
            return runClient(switches);
        }
        return status_failed;
    } catch (const std::exception& error) {
        MessageBoxW(nullptr, wide(murmelix::fromUtf8(error.what())), L"Messenger", MB_ICONERROR);
        return status_failed;
    }
}
