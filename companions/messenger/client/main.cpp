// MessengerClient.exe: see chat/switches.h for its command line.
#include <string>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/app.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/window.h"
#include "ui/program.h"

namespace messenger_client {

namespace {

using murmelix::com::Registration;
namespace platform = murmelix::platform;

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
    const std::intptr_t running = platform::windowOfClass(main_class);
    const auto answer =
        running ? platform::sendBytes(running, control_message, murmelix::toUtf8(command), patience) : std::nullopt;
    if (!answer || *answer == 0) {
        return status_no_client;
    }
    return *answer == static_cast<std::intptr_t>(Result::done) ? 0 : static_cast<int>(*answer);
}

int runClient(const Switches& switches) {
    if (const std::intptr_t running = platform::windowOfClass(main_class)) {
        if (!switches.embedding) {
            platform::bringWindowUp(running);
        }
        return status_failed;
    }
    // Other programs find a client that was only copied here from its first start on. Where that is refused it is still
    // one to talk in.
    if (!isRegistered(automationServer())) {
        registerAutomation();
    }
    const murmelix::com::Apartment apartment;
    murmelix::com::check(apartment.result());
    App app(switches);
    return app.run();
}

} // namespace

} // namespace messenger_client

int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    using namespace messenger_client;
    const Switches switches = parseSwitches(arguments);
    if (!switches.error.empty()) {
        platform::messageBox(switches.error, platform::mb_critical, u"Messenger");
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
}
