#include "platform/win32/neighbour_calls.h"

#include <objidl.h>

namespace murmelix::platform {

bool neighbourCallPending() {
    return win32::PendingCall::count > 0;
}

namespace win32 {

namespace {

// Lives as long as the process, so its references are not counted.
class BusyFilter final : public IMessageFilter {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IMessageFilter)) {
            return E_NOINTERFACE;
        }
        *object = static_cast<IMessageFilter*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
        return SERVERCALL_ISHANDLED;
    }
    DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD waited, DWORD) override {
        constexpr DWORD pause = 100, give_up = static_cast<DWORD>(-1);
        return waited < busy_patience ? pause : give_up;
    }
    DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) override { return PENDINGMSG_WAITDEFPROCESS; }
};

} // namespace

int PendingCall::count = 0;

void throwNeighbourError(const com::Error& error) {
    throw NeighbourError(static_cast<std::int32_t>(error.result()), error.what());
}

void waitForBusyNeighbours() {
    static BusyFilter filter;
    CoRegisterMessageFilter(&filter, nullptr);
}

com::Object& Connection::object() {
    if (!object_) {
        auto object = com::Object::create(prog_id_.c_str());
        if (made_) {
            made_(object);
        }
        object_ = std::move(object); // first: the events that subscribing brings at once lead back here
        try {
            subscription_ = com::Subscription(object_.dispatch(), events_, handler_);
        } catch (const com::Error&) {
            object_ = {};
            throw;
        }
    }
    return object_;
}

} // namespace win32
} // namespace murmelix::platform
