// The processes that may serve a neighbour's objects. COM tells nobody that a server has ended, or that one is there.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <windows.h>

namespace murmelix::platform::win32 {

// Those of the program that is registered as the server of a ProgID. One without a server of its own has none.
class ServerWatch {
  public:
    explicit ServerWatch(std::u16string prog_id) : prog_id_(std::move(prog_id)) {}

    // Watches those that run now.
    void begin();
    // One of them has ended since it was asked last.
    bool anyEnded();
    // One runs that did not when it was asked last, and is ready to be called. Each is told once.
    bool newOneReady();

  private:
    struct HandleCloser {
        void operator()(HANDLE handle) const { CloseHandle(handle); }
    };
    struct Process {
        std::unique_ptr<void, HandleCloser> handle;
        int looks = 0;     // at one that is not ready
        bool told = false; // newOneReady has
    };

    void refresh();

    std::u16string prog_id_;
    std::map<DWORD, Process> processes_; // by id
};

} // namespace murmelix::platform::win32
