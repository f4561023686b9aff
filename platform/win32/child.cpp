#include "platform/child.h"

#include <memory>

#include <windows.h>

#include "common/com/handles.h"
#include "platform/win32/system_error.h"
#include "ui/win32/windows.h"

namespace murmelix::platform {

using com::wide;

namespace {

struct CloseProcess {
    void operator()(HANDLE process) const { CloseHandle(process); }
};
using Process = std::unique_ptr<void, CloseProcess>;

} // namespace

ProgramEnd runAndWait(const std::u16string& path, const std::u16string& arguments, unsigned milliseconds) {
    std::u16string command = u"\"";
    command.append(path).append(u"\" ").append(arguments); // the system writes in it
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(wide(path), reinterpret_cast<wchar_t*>(command.data()), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &start, &made)) {
        return {{}, errorText(GetLastError())};
    }
    CloseHandle(made.hThread);
    const Process process(made.hProcess);
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    for (ULONGLONG now = GetTickCount64(); now < deadline; now = GetTickCount64()) {
        HANDLE handle = process.get();
        const DWORD woken =
            MsgWaitForMultipleObjects(1, &handle, FALSE, static_cast<DWORD>(deadline - now), QS_ALLINPUT);
        if (woken == WAIT_OBJECT_0) {
            DWORD status = 0;
            if (GetExitCodeProcess(handle, &status)) {
                return {status};
            }
            return {{}, errorText(GetLastError())};
        }
        if (woken != WAIT_OBJECT_0 + 1) {
            break;
        }
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ui::win32::dispatch(message);
        }
    }
    TerminateProcess(process.get(), 1);
    return {{}, errorText(ERROR_TIMEOUT)};
}

} // namespace murmelix::platform
