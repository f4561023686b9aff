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

void collect(HWND window, std::vector<HWND>& all) {
    std::vector<HWND> children; // the last of the window system's order is the first of the Tab key's
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        children.insert(children.begin(), child);
    }
    for (HWND child : children) {
        all.push_back(child);
        wchar_t name[32]{};
        GetClassNameW(child, name, static_cast<int>(std::size(name)));
        if (_wcsicmp(name, L"ComboBox") != 0) {
            collect(child, all);
        }
    }
}

} // namespace

HWND controlOf(HWND window, const wchar_t* class_name, int number) {
    std::vector<HWND> all;
    collect(window, all);
    for (HWND control : all) {
        wchar_t name[32]{};
        GetClassNameW(control, name, static_cast<int>(std::size(name)));
        if (_wcsicmp(name, class_name) == 0 && number-- == 0) {
            return control;
        }
    }
    return nullptr;
}

void replaceText(HWND field, const std::u16string& text) {
    HWND edit = FindWindowExW(field, nullptr, L"Edit", nullptr); // of a combo box
    edit = edit ? edit : field;
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(murmelix::com::wide(text)));
}

void chooseByKeys(HWND window, std::u16string_view keys) {
    const auto open = [] {
        HWND menu = nullptr;
        do {
            menu = FindWindowExW(nullptr, menu, L"#32768", nullptr);
        } while (menu && !IsWindowVisible(menu));
        return menu != nullptr;
    };
    EXPECT_TRUE(pumpUntil([&] { return !open(); })) << "of an earlier choice";
    // A window that is only just becoming the active one loses its menu again: it is asked for anew.
    for (int asked = 0; asked < 10 && !open(); ++asked) {
        constexpr ULONGLONG patience = 10'000; // ms
        PostMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, keys.front());
        pumpUntil([&, end = GetTickCount64() + patience] { return open() || GetTickCount64() > end; });
    }
    EXPECT_TRUE(open());
    for (const char16_t key : keys.substr(1)) {
        if (key == u'\r' || key == u'\x19') {
            PostMessageW(window, WM_KEYDOWN, key == u'\r' ? VK_RETURN : VK_DOWN, 1);
        } else {
            PostMessageW(window, WM_CHAR, key, 1);
        }
    }
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
