// Runs the tests against the MessengerClient.exe of this build, registered meanwhile in the prefix, under a watchdog.
// With "--listen EVENT" it is a second automation client: it hears events, sets EVENT, and stays until it is killed.
#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/messenger_client/client_process.h"

namespace messenger_client {

namespace {

using murmelix::com::wide;

constexpr DWORD longest_run = 280'000;
constexpr wchar_t server_key[] = L"CLSID\\{D601BCB9-C510-44C2-9600-C1F67E1FBBC0}\\LocalServer32";

std::optional<std::u16string> registeredServer() {
    std::array<wchar_t, 1024> text{};
    DWORD bytes = sizeof text;
    if (RegGetValueW(HKEY_CLASSES_ROOT, server_key, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS)
        return std::nullopt;
    return std::u16string(murmelix::com::narrow(text.data(), std::wcslen(text.data())));
}

int listen(const char* event) {
    const murmelix::com::Apartment apartment;
    auto messenger = murmelix::com::Object::create(u"Messenger.UIAutomation");
    const murmelix::com::Subscription subscription(messenger.dispatch(), iid_messenger_events,
                                                   [](DISPID, std::vector<murmelix::com::Variant>&) {});
    SetEvent(OpenEventA(EVENT_MODIFY_STATE, FALSE, event));
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

// The registration of this build's client, and the one before it back at the end.
class Registered : public testing::Environment {
  public:
    void SetUp() override {
        before_ = registeredServer();
        ASSERT_EQ(Process(clientProgram() + u" /regserver").exitStatus(), 0U);
    }
    void TearDown() override {
        if (before_)
            EXPECT_EQ(Process(*before_ + u" /regserver").exitStatus(), 0U);
        else
            EXPECT_EQ(Process(clientProgram() + u" /unregserver").exitStatus(), 0U);
    }

  private:
    std::optional<std::u16string> before_;
};

} // namespace

} // namespace messenger_client

int main(int argc, char** argv) {
    using namespace messenger_client;
    if (argc == 3 && std::strcmp(argv[1], "--listen") == 0)
        return listen(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    std::thread([] {
        Sleep(longest_run);
        std::fprintf(stderr, "the watchdog ends the tests\n");
        if (const HWND client = FindWindowW(L"MessengerClientMain", nullptr)) {
            DWORD id = 0;
            GetWindowThreadProcessId(client, &id);
            TerminateProcess(OpenProcess(PROCESS_TERMINATE, FALSE, id), 98);
        }
        TerminateProcess(GetCurrentProcess(), 98);
    }).detach();
    const murmelix::com::Apartment apartment;
    testing::AddGlobalTestEnvironment(new Registered);
    return RUN_ALL_TESTS();
}
