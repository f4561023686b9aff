// A Messenger client that is started for a measurement, signed in as me@x, and does what it is ordered.
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace bench {

using murmelix::com::wide;

inline constexpr UINT patience = 120'000; // milliseconds
inline constexpr ULONGLONG longest_start = 60'000;

inline LONGLONG ticks() {
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}

inline double passed(LONGLONG since) { // milliseconds
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(ticks() - since) * 1000 / static_cast<double>(frequency.QuadPart);
}

// Null where it does not start.
inline HANDLE startClient(const std::u16string& switches) {
    std::u16string path = u"Z:" + murmelix::fromUtf8(MESSENGER_CLIENT);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    const std::u16string line = u"\"" + path + u"\" " + switches;
    std::vector<wchar_t> buffer(wide(line), wide(line) + line.size() + 1);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(nullptr, buffer.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
        return nullptr;
    }
    CloseHandle(made.hThread);
    return made.hProcess;
}

// So that other programs find it.
inline void registerClient() {
    if (HANDLE process = startClient(u"/regserver")) {
        WaitForSingleObject(process, patience);
        CloseHandle(process);
    }
}

class Client {
  public:
    Client() {
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
    HANDLE process_ = startClient(u"/orders /connect 0 /idle 0 /signin me@x");
    HWND window_ = nullptr;
};

} // namespace bench
