#include "platform/win32/neighbour_calls.h"

#include <algorithm>
#include <vector>

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

unsigned gone_calls = 0;

constexpr UINT look_interval = 1000; // ms: a person notices no sooner that somebody has fallen silent

std::vector<Connection*>& connections() {
    static std::vector<Connection*> all;
    return all;
}

void CALLBACK lookAfterAll(HWND, UINT, UINT_PTR, DWORD) {
    const auto all = connections(); // a copy: what is found can end one of them
    for (Connection* const connection : all) {
        if (PendingCall::count == 0 && std::ranges::count(connections(), connection) > 0) {
            try {
                connection->look();
            } catch (const NeighbourError&) {
            }
        }
    }
}

UINT_PTR look_timer = 0;

} // namespace

int PendingCall::count = 0;

unsigned goneCalls() {
    return gone_calls;
}

void throwNeighbourError(const com::Error& error) {
    gone_calls += com::isGone(error.result()) ? 1 : 0;
    throw NeighbourError(static_cast<std::int32_t>(error.result()), error.what());
}

void waitForBusyNeighbours() {
    static BusyFilter filter;
    CoRegisterMessageFilter(&filter, nullptr);
}

Connection::Connection(const char16_t* prog_id, const IID& events, com::EventHandler handler, Lifetime lifetime,
                       Made made)
    : prog_id_(prog_id), events_(events), handler_(std::move(handler)), lifetime_(std::move(lifetime)), made_(made),
      server_(prog_id_) {
    connections().push_back(this);
    if (look_timer == 0) {
        look_timer = SetTimer(nullptr, 0, look_interval, lookAfterAll);
    }
}

Connection::~Connection() {
    std::erase(connections(), this);
    if (connections().empty()) {
        KillTimer(nullptr, std::exchange(look_timer, 0));
    }
}

bool Connection::answers() const {
    const PendingCall pending;
    UINT count = 0;
    return !com::isGone(object_.dispatch()->GetTypeInfoCount(&count));
}

void Connection::look() {
    if (!object_) {
        if (lifetime_.returned && server_.newOneReady()) {
            join();
        }
        return;
    }
    const bool ended = server_.anyEnded(); // it may have been another one of the same program
    const unsigned gone_before = std::exchange(gone_calls_, goneCalls());
    if ((!ended && gone_before == gone_calls_) || answers() || !object_) {
        return;
    }
    subscription_ = {};
    object_ = {};
    if (lifetime_.ended) {
        lifetime_.ended();
    }
}

void Connection::join() {
    try {
        const PendingCall pending;
        object();
    } catch (const com::Error&) {
        return;
    }
    lifetime_.returned();
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
        server_.begin();
    }
    return object_;
}

} // namespace win32
} // namespace murmelix::platform
