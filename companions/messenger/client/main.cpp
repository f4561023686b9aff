// MessengerClient.exe: see chat/switches.h for its command line.
#include <string>

#include <windows.h>

#include <commctrl.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/app.h"
#include "platform/process.h"
#include "platform/window.h"

namespace messenger_client {

namespace {

using murmelix::com::Registration;
using murmelix::com::wide;
namespace platform = murmelix::platform;

const char16_t* const main_class_name = reinterpret_cast<const char16_t*>(main_class);
constexpr int status_bad_switches = 20;
constexpr int status_no_client = 21;
constexpr int status_not_registered = 22;
constexpr int status_failed = 23;
// How long a client may take for an order, in milliseconds.
constexpr unsigned patience = 10'000;

int statusOf(Registration registration) {
    return registration == Registration::done ? 0 : status_not_registered;
}

int registerAutomation() {
    return statusOf(registerServer(automationServer(), u"\"" + platform::programPath() + u"\""));
}

// Exit status: 0, or the Result of the command; status_no_client where nobody answered it.
int send(const std::u16string& command) {
    const std::intptr_t running = platform::windowOfClass(main_class_name);
    const auto answer =
        running ? platform::sendBytes(running, control_message, murmelix::toUtf8(command), patience) : std::nullopt;
    if (!answer || *answer == 0) {
        return status_no_client;
    }
    return *answer == static_cast<std::intptr_t>(Result::done) ? 0 : static_cast<int>(*answer);
}

int runClient(const Switches& switches) {
    if (const std::intptr_t running = platform::windowOfClass(main_class_name)) {
        if (!switches.embedding) {
            platform::bringWindowUp(running);
        }
        return status_failed;
    }
    const murmelix::com::Apartment apartment;
    murmelix::com::check(apartment.result());
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    if (!LoadLibraryExW(L"riched20.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
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
        const Switches switches = parseSwitches(platform::arguments());
        if (!switches.error.empty()) {
            MessageBoxW(nullptr, wide(switches.error), L"Messenger", MB_ICONERROR);
            return status_bad_switches;
        }
        switch (switches.task) {
        case Switches::Task::register_server:
            return registerAutomation();
        case Switches::Task::unregister_server:
            return statusOf(unregisterServer(automationServer()));
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
