// What many people cost the windows of the Messenger client: contacts added one by one to the list of its main window,
// and somebody who joins a conversation of a thousand. Orders (companions/messenger/chat/control.h) are timed until
// they are answered, and the window is drawn at the end. Ends with 1 where a limit is not kept.
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace {

using murmelix::com::wide;

constexpr int few_contacts = 200, many_contacts = 2000;
constexpr double proportion_limit = 2; // a contact of many may cost so many times as much as one of few
constexpr int people = 1000;
constexpr int joins = 51;
constexpr double join_limit = 5; // milliseconds
constexpr UINT patience = 120'000;
constexpr ULONGLONG longest_start = 60'000;

LONGLONG ticks() {
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}

double passed(LONGLONG since) { // milliseconds
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(ticks() - since) * 1000 / static_cast<double>(frequency.QuadPart);
}

class Client {
  public:
    Client() {
        std::u16string path = u"Z:" + murmelix::fromUtf8(MESSENGER_CLIENT);
        std::replace(path.begin(), path.end(), u'/', u'\\');
        const std::u16string line = u"\"" + path + u"\" /orders /connect 0 /idle 0 /signin me@x";
        std::vector<wchar_t> buffer(wide(line), wide(line) + line.size() + 1);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION made{};
        if (CreateProcessW(nullptr, buffer.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
            CloseHandle(made.hThread);
            process_ = made.hProcess;
        }
        const ULONGLONG end = GetTickCount64() + longest_start;
        while (process_ && !window_ && GetTickCount64() < end) {
            WaitForInputIdle(process_, 1000);
            window_ = FindWindowW(L"MessengerClientMain", nullptr);
        }
        if (!window_) {
            std::printf("the Messenger client did not start\n");
            ExitProcess(1);
        }
    }
    ~Client() {
        order("exit");
        WaitForSingleObject(process_, patience);
        CloseHandle(process_);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void order(std::string line) const {
        COPYDATASTRUCT data{messenger_client::control_message, static_cast<DWORD>(line.size()), line.data()};
        DWORD_PTR result = 0;
        SendMessageTimeoutW(window_, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL, patience, &result);
        if (result != static_cast<DWORD_PTR>(messenger_client::Result::done) && line != "exit") {
            std::printf("\"%s\" was answered with %llu\n", line.c_str(), static_cast<unsigned long long>(result));
            ExitProcess(1);
        }
    }
    // All that is to be drawn is.
    void draw() const {
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        DWORD_PTR result = 0;
        SendMessageTimeoutW(window_, WM_NULL, 0, 0, SMTO_NORMAL, patience, &result);
    }

  private:
    HANDLE process_ = nullptr;
    HWND window_ = nullptr;
};

double adding(int contacts) { // milliseconds
    const Client client;
    client.draw();
    const LONGLONG begun = ticks();
    for (int i = 0; i < contacts; ++i) {
        client.order("add contact" + std::to_string(i) + "@x Contact " + std::to_string((i * 7919) % contacts));
    }
    client.draw();
    return passed(begun);
}

double joining() { // milliseconds, median
    const Client client;
    client.order("open person0@x Person 0");
    for (int i = 1; i < people; ++i) {
        client.order("join person" + std::to_string(i) + "@x Person " + std::to_string(i));
    }
    std::vector<double> times;
    for (int i = 0; i < joins; ++i) {
        client.order("part person500@x");
        const LONGLONG begun = ticks();
        client.order("join person500@x");
        times.push_back(passed(begun));
    }
    std::sort(times.begin(), times.end());
    return times[joins / 2];
}

} // namespace

int main() {
    const double few = adding(few_contacts), many = adding(many_contacts);
    const double proportion = many / many_contacts / (few / few_contacts);
    std::printf("adding %d contacts to the main window, one by one: %.0f ms\n", few_contacts, few);
    std::printf("adding %d contacts: %.0f ms, each %.2f times as much (limit %.0f)\n", many_contacts, many, proportion,
                proportion_limit);
    std::fflush(stdout);
    const double join = joining();
    std::printf("a join in a conversation window of %d people: median %.2f ms of %d (limit %.0f)\n", people, join,
                joins, join_limit);
    return proportion <= proportion_limit && join <= join_limit ? 0 : 1;
}
