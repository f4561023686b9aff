// Runs the tests against the AgentServer.exe of this build, registered meanwhile in the prefix, under a watchdog.
// With "--client EVENT" it is a second client: it loads and shows a character, sets EVENT, and stays until it is
// killed.
#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/windows/agent/server_process.h"

namespace agent {
namespace {

using murmelix::com::Object;
using murmelix::com::Variant;

constexpr DWORD longest_run = 280'000;
constexpr wchar_t server_key[] = L"CLSID\\{6D1F5C02-3B7E-4A86-9C41-E82A57B0D319}\\LocalServer32";

std::optional<std::u16string> registeredServer() {
    std::array<wchar_t, 1024> text{};
    DWORD bytes = sizeof text;
    if (RegGetValueW(HKEY_CLASSES_ROOT, server_key, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::u16string(murmelix::com::narrow(text.data(), std::wcslen(text.data())));
}

int beClient(const char* event) {
    const murmelix::com::Apartment apartment;
    Object control = Object::create(u"Agent.Control.2");
    Object characters = control.object(u"Characters");
    characters.call(u"Load", {Variant(u"other"), Variant(smallCharacterFile())});
    Object character = characters.object(u"Character", {Variant(u"other")});
    character.call(u"Show", {Variant(true)});
    SetEvent(OpenEventA(EVENT_MODIFY_STATE, FALSE, event));
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

// The registration of this build's server, and the one before it back at the end.
class Registered : public testing::Environment {
  public:
    void SetUp() override {
        before_ = registeredServer();
        ASSERT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U);
    }
    void TearDown() override {
        if (before_) {
            EXPECT_EQ(Process(*before_ + u" /regserver").exitStatus(), 0U);
        } else {
            EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
        }
    }

  private:
    std::optional<std::u16string> before_;
};

} // namespace
} // namespace agent

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--client") == 0) {
        return agent::beClient(argv[2]);
    }
    testing::InitGoogleTest(&argc, argv);
    std::thread([] {
        Sleep(agent::longest_run);
        std::fprintf(stderr, "the watchdog ends the tests\n");
        if (const HWND server = FindWindowW(L"AgentServerMessages", nullptr)) {
            DWORD id = 0;
            GetWindowThreadProcessId(server, &id);
            TerminateProcess(OpenProcess(PROCESS_TERMINATE, FALSE, id), 98);
        }
        TerminateProcess(GetCurrentProcess(), 98);
    }).detach();
    const murmelix::com::Apartment apartment;
    testing::AddGlobalTestEnvironment(new agent::Registered);
    return RUN_ALL_TESTS();
}
