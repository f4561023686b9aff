#include "common/com/client.h"

#include <algorithm>
#include <map>

#include <ocidl.h>

#include "common/com/counted.h"

namespace murmelix::com {

namespace {

// Of servers that were killed. Asking for one takes it away (see ClassObject), so that the next one's turn comes.
constexpr int most_dead_offers = 8;

std::vector<Variant> inDeclaredOrder(const DISPPARAMS& parameters) {
    std::vector<Variant> arguments;
    arguments.reserve(parameters.cArgs);
    for (UINT i = parameters.cArgs; i-- > 0;) {
        arguments.emplace_back(parameters.rgvarg[i]);
    }
    return arguments;
}

class Sink final : public Counted<IDispatch> {
  public:
    Sink(const IID& events, EventHandler handler) : events_(events), handler_(std::move(handler)) {}

    void silence() { handler_ = nullptr; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) {
            return E_POINTER;
        }
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        const Ptr<IDispatch> alive(this);
        try {
            // A copy: the handler may end the subscription that owns it.
            const EventHandler handler = handler_;
            if (handler) {
                auto arguments = parameters ? inDeclaredOrder(*parameters) : std::vector<Variant>();
                handler(event, arguments);
            }
        } catch (const Error& error) {
            // A handler that met a vanished neighbour must not look like a vanished sink to the source.
            return isGone(error.result()) ? E_FAIL : error.result();
        } catch (...) {
            return E_UNEXPECTED;
        }
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, events_); }

    IID events_;
    EventHandler handler_;
};

} // namespace

Object Object::create(const char16_t* prog_id) {
    CLSID clsid;
    check(CLSIDFromProgID(wide(prog_id), &clsid));
    void* object = nullptr;
    HRESULT made = S_OK;
    for (int tries = 0; tries < most_dead_offers; ++tries) {
        made = CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER, IID_IDispatch, &object);
        if (!isGone(made)) {
            break;
        }
    }
    check(made);
    return Object(Ptr<IDispatch>::adopt(static_cast<IDispatch*>(object)));
}

// What is known of an interface.
struct Object::Names {
    std::map<std::u16string, DISPID, std::less<>> ids;
    std::map<std::u16string, std::shared_ptr<Names>, std::less<>> given; // of what its members give
};

struct Object::Called {
    Ptr<IDispatch> dispatch;
    std::shared_ptr<Names> names;
};

Object::Object(Ptr<IDispatch> dispatch) : Object(std::move(dispatch), std::make_shared<Names>()) {}

Object::Object(Ptr<IDispatch> dispatch, std::shared_ptr<Names> names) {
    if (dispatch) {
        called_ = std::make_shared<Called>(Called{std::move(dispatch), std::move(names)});
    }
}

IDispatch* Object::dispatch() const {
    return called_ ? called_->dispatch.get() : nullptr;
}

Variant Object::get(const char16_t* name, std::initializer_list<Variant> arguments) {
    return invoke(name, DISPATCH_PROPERTYGET, arguments);
}

void Object::put(const char16_t* name, const Variant& value) {
    invoke(name, DISPATCH_PROPERTYPUT, {value});
}

Variant Object::call(const char16_t* name, std::initializer_list<Variant> arguments) {
    return invoke(name, DISPATCH_METHOD, arguments);
}

Object Object::object(const char16_t* name, std::initializer_list<Variant> arguments) {
    const auto called = called_; // the call lets events in, which may end this object
    auto dispatch = invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments).toObject();
    if (!dispatch) {
        throw Error(E_POINTER);
    }
    auto& names = called->names->given[name];
    if (!names) {
        names = std::make_shared<Names>();
    }
    return Object(std::move(dispatch), names);
}

namespace {

DISPID idOf(IDispatch& object, const char16_t* name) {
    DISPID id = DISPID_UNKNOWN;
    auto* wide_name = const_cast<LPOLESTR>(wide(name));
    check(object.GetIDsOfNames(IID_NULL, &wide_name, 1, LOCALE_USER_DEFAULT, &id));
    return id;
}

struct Answer {
    HRESULT outcome;
    Variant value;
    HRESULT failure = S_OK;       // of an outcome DISP_E_EXCEPTION
    std::u16string description{}; // and what is told of it
};

Answer answerOf(IDispatch& object, DISPID id, WORD flags, std::vector<VARIANT>& arguments) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (flags & DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    Answer answer{};
    EXCEPINFO exception{};
    UINT wrong = 0;
    answer.outcome = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                   flags & DISPATCH_PROPERTYPUT ? nullptr : answer.value.out(), &exception, &wrong);
    if (exception.pfnDeferredFillIn) {
        exception.pfnDeferredFillIn(&exception);
    }
    answer.failure = exception.scode;
    answer.description = Bstr::textOf(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return answer;
}

} // namespace

Variant Object::invoke(const char16_t* name, WORD flags, std::initializer_list<Variant> arguments) {
    const auto called = called_; // the calls let events in, which may end this object
    if (!called) {
        throw Error(E_POINTER);
    }
    std::vector<VARIANT> raw; // borrowed: the arguments own them
    raw.reserve(arguments.size());
    for (const Variant& argument : arguments) {
        raw.push_back(argument.raw());
    }
    std::reverse(raw.begin(), raw.end());
    IDispatch& object = *called->dispatch.get();
    const auto names = called->names;
    const auto known = names->ids.find(name);
    const bool learned = known != names->ids.end();
    const DISPID id = learned ? known->second : idOf(object, name);
    names->ids.insert_or_assign(name, id);
    Answer answer = answerOf(object, id, flags, raw);
    if (answer.outcome == DISP_E_MEMBERNOTFOUND && learned) {
        const DISPID own = idOf(object, name);
        if (own != id) { // it has another interface than those that share the names
            called->names = std::make_shared<Names>();
            called->names->ids[name] = own;
            answer = answerOf(object, own, flags, raw);
        }
    }
    if (answer.outcome == DISP_E_EXCEPTION) {
        throw Error(FAILED(answer.failure) ? answer.failure : DISP_E_EXCEPTION, answer.description);
    }
    check(answer.outcome);
    return std::move(answer.value);
}

struct Subscription::Impl {
    Ptr<IConnectionPoint> point;
    Ptr<Sink> sink;
    DWORD cookie = 0;

    ~Impl() {
        if (sink) {
            sink->silence();
        }
        if (point && cookie) {
            point->Unadvise(cookie);
        }
    }
};

Subscription::Subscription(IDispatch* source, const IID& events, EventHandler handler)
    : impl_(std::make_unique<Impl>()) {
    if (!source) {
        throw Error(E_POINTER);
    }
    const auto container = Ptr<IDispatch>(source).as<IConnectionPointContainer>(IID_IConnectionPointContainer);
    if (!container) {
        throw Error(E_NOINTERFACE);
    }
    check(container->FindConnectionPoint(events, impl_->point.out()));
    impl_->sink = Ptr<Sink>::adopt(new Sink(events, std::move(handler)));
    check(impl_->point->Advise(impl_->sink.get(), &impl_->cookie));
}

Subscription::Subscription() = default;
Subscription::~Subscription() = default;
Subscription::Subscription(Subscription&&) noexcept = default;
Subscription& Subscription::operator=(Subscription&&) noexcept = default;

} // namespace murmelix::com
