#include "common/com/caller.h"

#include <utility>

#include <windows.h>

#include <rpc.h>

namespace murmelix::com {

namespace {

class Watch final : public ProcessWatch {
  public:
    Watch(HANDLE process, std::function<void()> ended) : process_(process), ended_(std::move(ended)) {
        RegisterWaitForSingleObject(&wait_, process_, &Watch::over, this, INFINITE, WT_EXECUTEONLYONCE);
    }
    ~Watch() override {
        if (wait_) {
            UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE);
        }
        CloseHandle(process_);
    }

  private:
    static void CALLBACK over(void* self, BOOLEAN) { static_cast<Watch*>(self)->ended_(); }

    HANDLE process_;
    std::function<void()> ended_;
    HANDLE wait_ = nullptr;
};

} // namespace

ProcessId callingProcess() {
    using Inquire = RPC_STATUS(RPC_ENTRY*)(RPC_BINDING_HANDLE, unsigned long*);
    const HMODULE library = GetModuleHandleW(L"rpcrt4.dll");
    const FARPROC found = library ? GetProcAddress(library, "I_RpcBindingInqLocalClientPID") : nullptr;
    if (!found) {
        return 0;
    }
    const auto inquire = reinterpret_cast<Inquire>(reinterpret_cast<void*>(found));
    unsigned long process = 0;
    return inquire(nullptr, &process) == RPC_S_OK ? process : 0;
}

std::unique_ptr<ProcessWatch> ProcessWatch::begin(ProcessId process, std::function<void()> ended) {
    if (process == 0 || process == GetCurrentProcessId()) {
        return nullptr;
    }
    const HANDLE opened = OpenProcess(SYNCHRONIZE, FALSE, process);
    return opened ? std::make_unique<Watch>(opened, std::move(ended)) : nullptr;
}

} // namespace murmelix::com
