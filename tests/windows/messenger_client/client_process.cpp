#include "tests/windows/messenger_client/client_process.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace messenger_client {

using murmelix::com::Object;

namespace {

constexpr UINT patience = 240'000; // ms, for an answer

} // namespace

std::u16string clientProgram() {
    return murmelix::test::programCommand(MESSENGER_CLIENT);
}

RunningClient::RunningClient(const std::u16string& switches)
    : process_(clientProgram() + u" /orders /connect 0 /idle 0 " + switches) {
    // Its automation is offered when it answers an (unknown) command: it runs its message loop then.
    EXPECT_TRUE(pumpUntil([this] { return mainWindow() && command("?") == static_cast<int>(Result::unknown_command); }))
        << "the client did not start";
}

RunningClient::~RunningClient() {
    // A killed one would leave its class behind, which Wine then hands to the next test.
    const bool had_window = mainWindow() != nullptr;
    const int answer = had_window ? command("exit") : 0;
    EXPECT_TRUE(process_.exitStatus()) << "the client is still there; it had " << (had_window ? "a" : "no")
                                       << " window, and answered its end with " << answer;
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

namespace {

void screenshotWhen(HWND window, const char* name, bool same) {
    SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    RECT area{};
    GetWindowRect(window, &area);
    murmelix::test::Picture before = murmelix::test::desktop(area);
    int rounds = 0;
    bool done = false;
    pumpUntil([&] {
        if (!done && ++rounds % 20 == 0) {
            murmelix::test::Picture now = murmelix::test::desktop(area);
            std::swap(before, now);
            done = (before.pixels == now.pixels) == same;
        }
        return done;
    });
    screenshot(window, name);
}

} // namespace

void screenshotWhenStill(HWND window, const char* name) {
    screenshotWhen(window, name, true);
}

void screenshotWhenAgain(HWND window, const char* name) {
    screenshotWhen(window, name, false);
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

} // namespace messenger_client
