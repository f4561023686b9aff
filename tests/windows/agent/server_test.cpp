// The server in this process, where Windows can be made to refuse what it asks for.
#include <system_error>

#include <gtest/gtest.h>

#include "companions/agent/automation/server.h"
#include "tests/windows/agent/server_process.h"

namespace agent::automation {
namespace {

// For as long as it lives no window of the class can be made.
class RefusedClass {
  public:
    explicit RefusedClass(const wchar_t* name) : name_(name) {
        UnregisterClassW(name_, GetModuleHandleW(nullptr)); // of windows that were there before
        WNDCLASSW refusing{};
        refusing.lpfnWndProc = [](HWND window, UINT message, WPARAM wparam, LPARAM lparam) -> LRESULT {
            return message == WM_NCCREATE ? 0 : DefWindowProcW(window, message, wparam, lparam);
        };
        refusing.hInstance = GetModuleHandleW(nullptr);
        refusing.lpszClassName = name_;
        RegisterClassW(&refusing);
    }
    ~RefusedClass() { UnregisterClassW(name_, GetModuleHandleW(nullptr)); }
    RefusedClass(const RefusedClass&) = delete;
    RefusedClass& operator=(const RefusedClass&) = delete;

  private:
    const wchar_t* name_;
};

TEST(ServerInProcess, ACharacterThatGetsNoWindowLeavesTheStage) {
    Server server(Options{.recording = {}, .transcript = {}, .speed = 8, .stay = false});
    const auto client = server.newClient();
    {
        const RefusedClass refused(L"AgentServerCharacter");
        EXPECT_THROW(client->load(u"a", smallCharacterFile()), std::system_error);
        EXPECT_TRUE(client->loaded().empty());
        EXPECT_TRUE(server.stage().actors().empty());
    }
    client->load(u"a", smallCharacterFile());
    EXPECT_EQ(server.stage().actors().size(), 1U);
}

TEST(MessageWindow, CarriesOutWhatItsMessageWasLostFor) {
    stage::MessageWindow window;
    int done = 0;
    window.post([&] { ++done; });
    window.post([&] { ++done; });
    MSG message;
    while (PeekMessageW(&message, window.handle(), WM_APP, 0xBFFF, PM_REMOVE)) {
        // Not dispatched: as if the queue of messages had been full.
    }
    window.every(10, [] {});
    EXPECT_TRUE(pumpUntil([&] { return done == 2; }));
}

} // namespace
} // namespace agent::automation
