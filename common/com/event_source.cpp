#include "common/com/event_source.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

#include <olectl.h>

namespace murmelix::com {

namespace {

// An object on its way to another apartment of this process.
class Parcel {
  public:
    Parcel(IUnknown& object, const IID& iid) : iid_(iid) {
        check(CoMarshalInterThreadInterfaceInStream(iid, &object, stream_.out()));
    }
    Parcel(Parcel&&) noexcept = default;
    Parcel& operator=(Parcel&&) = delete;
    // Opened even where nobody wants it: what is in it would be held for ever.
    ~Parcel() {
        if (stream_) {
            open();
        }
    }
    // In the apartment that it goes to; null where it cannot be had. Only once.
    Ptr<IUnknown> open() {
        void* object = nullptr;
        if (FAILED(CoGetInterfaceAndReleaseStream(stream_.detach(), iid_, &object))) {
            return {};
        }
        return Ptr<IUnknown>::adopt(static_cast<IUnknown*>(object));
    }

  private:
    IID iid_;
    Ptr<IStream> stream_;
};

class EventArgument {
  public:
    explicit EventArgument(const Variant& given) : is_reference_((given.raw().vt & VT_BYREF) != 0) {
        Variant value(given.raw()); // no reference
        if (value.type() == VT_DISPATCH && value.raw().pdispVal) {
            parcel_.emplace(*value.raw().pdispVal, IID_IDispatch);
        } else if (value.type() == VT_UNKNOWN && value.raw().punkVal) {
            parcel_.emplace(*value.raw().punkVal, IID_IUnknown);
        } else {
            value_ = std::move(value);
            return;
        }
        object_type_ = value.type();
    }

    // As the sink gets it; borrowed.
    VARIANT unpacked() {
        if (parcel_) {
            if (auto object = parcel_->open()) {
                VARIANT& value = *value_.out();
                value.vt = object_type_;
                value.punkVal = object.detach(); // of an IDispatch where the parcel was packed as one
            }
            parcel_.reset();
        }
        VARIANT raw = value_.raw();
        if (is_reference_) {
            raw.byref = &const_cast<VARIANT&>(value_.raw()).byref;
            raw.vt = static_cast<VARTYPE>(raw.vt | VT_BYREF);
        }
        return raw;
    }

  private:
    bool is_reference_;
    VARTYPE object_type_ = VT_EMPTY;
    Variant value_;
    std::optional<Parcel> parcel_;
};

struct Event {
    DISPID id;
    std::vector<EventArgument> arguments;
};

class Sender;

// The sinks of one source, shared with their threads.
struct Hub {
    std::mutex mutex;
    std::vector<std::shared_ptr<Sender>> senders;
    std::function<void()> lost;

    void drop(const Sender& gone);
    void close();
};

// All threads of sinks in the process. Never destroyed: one that is left behind may still be running at the very end.
struct Running {
    std::mutex mutex;
    std::vector<Sender*> senders;
    const HANDLE changed = CreateEventW(nullptr, TRUE, FALSE, nullptr); // set when one comes to rest, or ends

    static Running& all() {
        static auto& running = *new Running;
        return running;
    }
};

// One sink: its queue, and the thread that calls it.
class Sender {
  public:
    // Error where there are too many, or no thread can be had.
    static std::shared_ptr<Sender> start(const std::shared_ptr<Hub>& hub, DWORD cookie, Parcel sink) {
        auto made = std::make_shared<Sender>(hub, cookie);
        Running& running = Running::all();
        {
            const std::lock_guard lock(running.mutex);
            if (running.senders.size() >= most_sinks) {
                throw Error(CONNECT_E_ADVISELIMIT);
            }
            running.senders.push_back(made.get());
        }
        try {
            std::thread([made, sink = std::move(sink)]() mutable { made->run(sink); }).detach();
        } catch (const std::system_error&) {
            made->rest();
            throw Error(E_OUTOFMEMORY);
        }
        return made;
    }

    Sender(const std::shared_ptr<Hub>& hub, DWORD cookie) : hub_(hub), cookie_(cookie) {}

    DWORD cookie() const { return cookie_; }

    bool hasRoom() {
        const std::lock_guard lock(mutex_);
        return !closed_ && events_.size() < most_waiting_events;
    }
    void post(Event event) {
        const std::lock_guard lock(mutex_);
        if (!closed_) {
            events_.push_back(std::move(event));
            more_.notify_one();
        }
    }
    // No further event leaves; the thread ends when its sink has answered the one that is under way.
    void close() {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        more_.notify_one();
        SetEvent(Running::all().changed);
    }
    bool atRest() {
        const std::lock_guard lock(mutex_);
        return closed_ || (events_.empty() && !calling_);
    }

  private:
    void run(Parcel& parcel) {
        // Not an apartment with a message loop: nothing gets in while a sink is called.
        const HRESULT entered = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        if (auto sink = SUCCEEDED(entered) ? parcel.open() : Ptr<IUnknown>()) {
            deliver(static_cast<IDispatch&>(*sink.get()));
        } else {
            lose();
        }
        discard();
        if (SUCCEEDED(entered)) {
            CoUninitialize();
        }
        rest();
    }

    void deliver(IDispatch& sink) {
        while (auto event = next()) {
            try {
                if (isGone(call(sink, *event))) {
                    lose();
                }
            } catch (const std::bad_alloc&) {
                continue; // this event is lost; the next may get through
            }
        }
    }

    std::optional<Event> next() {
        std::unique_lock lock(mutex_);
        if (std::exchange(calling_, false) && events_.empty()) {
            SetEvent(Running::all().changed);
        }
        more_.wait(lock, [this] { return closed_ || !events_.empty(); });
        if (closed_) {
            return std::nullopt;
        }
        calling_ = true;
        std::optional<Event> event(std::move(events_.front()));
        events_.pop_front();
        return event;
    }

    static HRESULT call(IDispatch& sink, Event& event) {
        std::vector<VARIANT> raw; // borrowed: the event owns them
        raw.reserve(event.arguments.size());
        for (auto argument = event.arguments.rbegin(); argument != event.arguments.rend(); ++argument) {
            raw.push_back(argument->unpacked());
        }
        DISPPARAMS parameters{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
        return sink.Invoke(event.id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                           nullptr);
    }

    void lose() {
        close();
        if (const auto hub = hub_.lock()) {
            hub->drop(*this);
        }
    }

    // Here, where the objects among the arguments can be let go of.
    void discard() {
        std::deque<Event> dropped; // outlives the lock
        const std::lock_guard lock(mutex_);
        dropped.swap(events_);
        closed_ = true;
    }

    void rest() {
        Running& running = Running::all();
        const std::lock_guard lock(running.mutex);
        std::erase(running.senders, this);
        SetEvent(running.changed);
    }

    const std::weak_ptr<Hub> hub_;
    const DWORD cookie_;
    std::mutex mutex_;
    std::condition_variable more_;
    std::deque<Event> events_;
    bool calling_ = false;
    bool closed_ = false;
};

void Hub::drop(const Sender& gone) {
    const std::lock_guard lock(mutex);
    const auto dropped = std::erase_if(senders, [&](const auto& sender) { return sender.get() == &gone; });
    if (dropped > 0 && lost) {
        lost();
    }
}

void Hub::close() {
    const std::lock_guard lock(mutex);
    for (const auto& sender : senders) {
        sender->close();
    }
    senders.clear();
}

// Waits in an apartment, whose objects are called meanwhile.
bool waitUntil(bool (*done)(), std::chrono::milliseconds at_most) {
    const auto end = std::chrono::steady_clock::now() + at_most;
    HANDLE changed = Running::all().changed;
    bool is_done = false;
    for (;;) {
        ResetEvent(changed);
        is_done = done();
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (is_done || left <= 0) {
            break;
        }
        DWORD index = 0;
        if (const HRESULT waited = CoWaitForMultipleHandles(0, static_cast<DWORD>(left), 1, &changed, &index);
            FAILED(waited) && waited != RPC_S_CALLPENDING) {
            break;
        }
    }
    // A call that came in meanwhile may have waited too, and taken the signal from whoever waits below.
    SetEvent(changed);
    return is_done;
}

} // namespace

// Lives as long as its EventSource; what clients hold of it counts on the owner, so it cannot be outlived.
struct EventSource::Impl final : IConnectionPointContainer {
    // An object with an identity of its own: another process asks an object's identity for its interfaces, and the
    // owner has no connection point among its own.
    class Point final : public Counted<IConnectionPoint> {
      public:
        explicit Point(Impl& source) : source_(source) {}
        ~Point() override = default;
        ULONG STDMETHODCALLTYPE AddRef() override { return source_.AddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return source_.Release(); }
        HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
        HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
        HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
        HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override { return source_.forget(cookie); }
        HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** enumerator) override {
            if (enumerator) {
                *enumerator = nullptr;
            }
            return E_NOTIMPL;
        }

      private:
        bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IConnectionPoint); }

        Impl& source_;
    };

    IDispatch& owner;
    IID events;
    Point events_point{*this};
    DWORD last_cookie = 0;
    std::shared_ptr<Hub> hub = std::make_shared<Hub>();
    std::function<void(DWORD)> added;

    Impl(IDispatch& the_owner, const IID& the_events) : owner(the_owner), events(the_events) {}
    virtual ~Impl() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return owner.QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner.Release(); }

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
        if (points) {
            *points = nullptr;
        }
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    HRESULT forget(DWORD cookie) {
        const std::lock_guard lock(hub->mutex);
        const auto found = std::find_if(hub->senders.begin(), hub->senders.end(),
                                        [&](const auto& sender) { return sender->cookie() == cookie; });
        if (found == hub->senders.end()) {
            return CONNECT_E_NOCONNECTION;
        }
        (*found)->close();
        hub->senders.erase(found);
        return S_OK;
    }
};

HRESULT EventSource::Impl::Point::GetConnectionInterface(IID* iid) {
    if (!iid) {
        return E_POINTER;
    }
    *iid = source_.events;
    return S_OK;
}

HRESULT EventSource::Impl::Point::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container) {
        return E_POINTER;
    }
    *container = &source_;
    AddRef();
    return S_OK;
}

HRESULT EventSource::Impl::Point::Advise(IUnknown* sink, DWORD* cookie) {
    if (!sink || !cookie) {
        return E_POINTER;
    }
    *cookie = 0;
    for (const IID& iid : {IID_IDispatch, source_.events}) {
        const auto dispatch = Ptr<IUnknown>(sink).as<IDispatch>(iid);
        if (!dispatch) {
            continue;
        }
        try {
            const auto sender = Sender::start(source_.hub, source_.last_cookie + 1,
                                              Parcel(*static_cast<IUnknown*>(dispatch.get()), iid));
            const std::lock_guard lock(source_.hub->mutex);
            source_.hub->senders.push_back(sender);
        } catch (const Error& error) {
            return error.result();
        } catch (...) {
            return E_OUTOFMEMORY;
        }
        *cookie = ++source_.last_cookie;
        if (source_.added) {
            source_.added(*cookie);
        }
        return S_OK;
    }
    return CONNECT_E_CANNOTCONNECT;
}

HRESULT EventSource::Impl::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point) {
        return E_POINTER;
    }
    *point = nullptr;
    if (!IsEqualIID(iid, events) && !IsEqualIID(iid, IID_IDispatch)) {
        return CONNECT_E_NOCONNECTION;
    }
    *point = &events_point;
    AddRef();
    return S_OK;
}

EventSource::EventSource(IDispatch& owner, const IID& events) : impl_(std::make_unique<Impl>(owner, events)) {}

EventSource::~EventSource() {
    impl_->hub->close();
    onLost(nullptr);
}

void EventSource::close() {
    const Ptr<IDispatch> alive(&impl_->owner); // what lets go of the connection point may let go of the owner
    impl_->hub->close();
    CoDisconnectObject(&impl_->events_point, 0);
}

void* EventSource::container() {
    return static_cast<IConnectionPointContainer*>(impl_.get());
}

void EventSource::fire(DISPID event, const std::vector<Variant>& arguments, DWORD only) {
    std::vector<std::shared_ptr<Sender>> senders;
    {
        const std::lock_guard lock(impl_->hub->mutex);
        senders = impl_->hub->senders;
    }
    for (const auto& sender : senders) {
        if ((only == every_sink || sender->cookie() == only) && sender->hasRoom()) {
            Event packed{event, {}};
            for (const Variant& argument : arguments) {
                packed.arguments.emplace_back(argument);
            }
            sender->post(std::move(packed));
        }
    }
}

std::size_t EventSource::sinks() const {
    const std::lock_guard lock(impl_->hub->mutex);
    return impl_->hub->senders.size();
}

void EventSource::onLost(std::function<void()> lost) {
    const std::lock_guard lock(impl_->hub->mutex);
    impl_->hub->lost = std::move(lost);
}

void EventSource::onAdded(std::function<void(DWORD)> added) {
    impl_->added = std::move(added);
}

bool allEventsDelivered() {
    Running& running = Running::all();
    const std::lock_guard lock(running.mutex);
    return std::all_of(running.senders.begin(), running.senders.end(), [](Sender* sender) { return sender->atRest(); });
}

bool waitForEvents(std::chrono::milliseconds at_most) {
    return waitUntil(allEventsDelivered, at_most);
}

bool waitForSinksToEnd(std::chrono::milliseconds at_most) {
    return waitUntil(
        [] {
            Running& running = Running::all();
            const std::lock_guard lock(running.mutex);
            return running.senders.empty();
        },
        at_most);
}

} // namespace murmelix::com
