// Runs the tests against the MessengerClient.exe of this build, registered meanwhile in the prefix, under a watchdog.
// With "--listen EVENT" it is a second automation client: it hears events, sets EVENT, and stays until it is killed.
// With
// "--hang EVENT STUCK" it never comes back from its first event, OnMyStatusChange, and sets STUCK in it.
#include <cstring>

#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/messenger_client/client_process.h"

namespace messenger_client {

namespace {

void set(const char* event) {
    SetEvent(OpenEventA(EVENT_MODIFY_STATE, FALSE, event));
}

int listen(const char* ready, const char* stuck) {
    const murmelix::com::Apartment apartment;
    auto messenger = murmelix::com::Object::create(u"Messenger.UIAutomation");
    const murmelix::com::Subscription subscription(messenger.dispatch(), iid_messenger_events,
                                                   [stuck](DISPID event, std::vector<murmelix::com::Variant>&) {
                                                       if (stuck && event == 1031) {
                                                           set(stuck);
                                                           Sleep(INFINITE);
                                                       }
                                                   });
    set(ready);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

} // namespace

} // namespace messenger_client

int main(int argc, char** argv) {
    using namespace messenger_client;
    if (argc == 3 && std::strcmp(argv[1], "--listen") == 0) {
        return listen(argv[2], nullptr);
    }
    if (argc == 4 && std::strcmp(argv[1], "--hang") == 0) {
        return listen(argv[2], argv[3]);
    }
    testing::InitGoogleTest(&argc, argv);
    return murmelix::test::runTestsWithServer(clientProgram(), u"{D601BCB9-C510-44C2-9600-C1F67E1FBBC0}",
                                              L"MessengerClientMain");
}
