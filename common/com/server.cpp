#include "common/com/server.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cwchar>

#include <olectl.h>

#include "common/text.h"

namespace murmelix::com {

namespace {

std::atomic<long> alive_objects = 0;

std::function<void(long)>& aliveChanged() {
    static std::function<void(long)> changed;
    return changed;
}

void countAlive(long change) {
    const long count = alive_objects += change;
    if (aliveChanged()) {
        aliveChanged()(count);
    }
}

bool sameName(const wchar_t* a, const wchar_t* b) {
    return _wcsicmp(a, b) == 0;
}

bool allows(Access access, Access wanted) {
    return (static_cast<unsigned>(access) & static_cast<unsigned>(wanted)) != 0;
}

// Picks the member that the id and the call's flags mean; null where there is none.
const Member* chosenMember(std::span<const Member> members, DISPID id, WORD flags) {
    const bool put = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    for (const Member& member : members) {
        if (member.id != id) {
            continue;
        }
        if (put ? allows(member.access, Access::put)
                : ((flags & DISPATCH_METHOD) && allows(member.access, Access::method)) ||
                      allows(member.access, Access::get) || (flags & DISPATCH_METHOD) == 0) {
            return &member;
        }
    }
    return nullptr;
}

Call unpack(const Member& member, WORD flags, const DISPPARAMS& parameters, UINT* wrong) {
    Call call{member.id, (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0, {}};
    const std::size_t room = member.parameters.size() + (call.put ? 1 : 0);
    const UINT named = parameters.cNamedArgs;
    if (parameters.cArgs > room || named > parameters.cArgs) {
        throw Error(DISP_E_BADPARAMCOUNT);
    }
    call.arguments.assign(room, Variant::omitted());
    for (UINT i = 0; i < parameters.cArgs; ++i) {
        std::size_t place = parameters.cArgs - 1 - i;
        if (i < named) {
            const DISPID name = parameters.rgdispidNamedArgs[i];
            if (name == DISPID_PROPERTYPUT && call.put) {
                place = room - 1;
            } else if (name >= 0 && static_cast<std::size_t>(name) < room) {
                place = static_cast<std::size_t>(name);
            } else {
                throw Error(DISP_E_PARAMNOTFOUND);
            }
        }
        if (wrong) {
            *wrong = i;
        }
        call.arguments[place] = Variant(parameters.rgvarg[i]);
    }
    for (std::size_t i = 0; i < member.required; ++i) {
        if (call.arguments[i].type() == VT_ERROR) {
            throw Error(DISP_E_PARAMNOTOPTIONAL);
        }
    }
    if (call.put && call.arguments.back().type() == VT_ERROR) {
        throw Error(DISP_E_PARAMNOTOPTIONAL);
    }
    return call;
}

bool isDispatchError(HRESULT result) {
    return result >= DISP_E_UNKNOWNINTERFACE && result <= DISP_E_BUFFERTOOSMALL;
}

HRESULT report(const Error& error, EXCEPINFO* exception) {
    if (isDispatchError(error.result()) && error.result() != DISP_E_EXCEPTION) {
        return error.result();
    }
    if (!exception) {
        return error.result();
    }
    *exception = {};
    exception->scode = error.result();
    try {
        exception->bstrDescription = Bstr(error.description()).detach();
    } catch (const Error&) {
        exception->bstrDescription = nullptr;
    }
    return DISP_E_EXCEPTION;
}

class Enumerator final : public Counted<IEnumVARIANT> {
  public:
    explicit Enumerator(std::vector<Variant> values, std::size_t at = 0) : values_(std::move(values)), at_(at) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* values, ULONG* fetched) override {
        if (!values) {
            return E_POINTER;
        }
        ULONG given = 0;
        try {
            for (; given < wanted && at_ < values_.size(); ++given, ++at_) {
                values[given] = Variant(values_[at_]).detach();
            }
        } catch (const Error& error) {
            return error.result();
        }
        if (fetched) {
            *fetched = given;
        }
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t step = std::min<std::size_t>(count, values_.size() - at_);
        at_ += step;
        return step == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        at_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        if (!copy) {
            return E_POINTER;
        }
        *copy = new Enumerator(values_, at_);
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IEnumVARIANT); }

    std::vector<Variant> values_;
    std::size_t at_;
};

class Factory final : public Counted<IClassFactory> {
  public:
    explicit Factory(std::function<Ptr<IDispatch>()> create) : create_(std::move(create)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            const auto created = create_();
            return created ? created->QueryInterface(iid, object) : E_FAIL;
        } catch (const Error& error) {
            return error.result();
        } catch (...) {
            return E_UNEXPECTED;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        countAlive(lock ? 1 : -1);
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IClassFactory); }

    std::function<Ptr<IDispatch>()> create_;
};

class Key {
  public:
    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) {
            RegCloseKey(key_);
        }
    }
    LSTATUS create(HKEY root, const std::u16string& path) {
        return RegCreateKeyExW(root, wide(path), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key_, nullptr);
    }
    LSTATUS set(const char16_t* name, const std::u16string& text) {
        return RegSetValueExW(key_, name ? wide(name) : nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                              static_cast<DWORD>((text.size() + 1) * sizeof(char16_t)));
    }

  private:
    HKEY key_ = nullptr;
};

// The default value of a key below the merged classes; empty where there is none.
std::u16string defaultValue(HKEY root, const std::u16string& path) {
    DWORD bytes = 0;
    if (RegGetValueW(root, wide(path), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> buffer(bytes / sizeof(wchar_t) + 1);
    bytes = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
    if (RegGetValueW(root, wide(path), nullptr, RRF_RT_REG_SZ, nullptr, buffer.data(), &bytes) != ERROR_SUCCESS) {
        return {};
    }
    return std::u16string(narrow(buffer.data(), std::wcslen(buffer.data())));
}

std::u16string textOf(const CLSID& clsid) {
    std::array<wchar_t, 64> text{};
    StringFromGUID2(clsid, text.data(), static_cast<int>(text.size()));
    return std::u16string(narrow(text.data(), std::wcslen(text.data())));
}

const std::u16string classes_path = u"Software\\Classes\\";

const std::array<HKEY, 2>& registryRoots() {
    static const std::array<HKEY, 2> roots{HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
    return roots;
}

bool write(HKEY root, const std::u16string& path, const std::u16string& text) {
    Key key;
    return key.create(root, classes_path + path) == ERROR_SUCCESS && key.set(nullptr, text) == ERROR_SUCCESS;
}

bool writeAll(HKEY root, const ServerClass& server, const std::u16string& command) {
    const std::u16string clsid = textOf(server.clsid);
    bool good = write(root, u"CLSID\\" + clsid, server.name) &&
                write(root, u"CLSID\\" + clsid + u"\\LocalServer32", command) &&
                write(root, u"CLSID\\" + clsid + u"\\ProgID", server.prog_ids.back()) &&
                write(root, u"CLSID\\" + clsid + u"\\VersionIndependentProgID", server.prog_ids.front());
    for (const std::u16string& prog_id : server.prog_ids) {
        good = good && write(root, prog_id, server.name) && write(root, prog_id + u"\\CLSID", clsid);
    }
    return good && write(root, server.prog_ids.front() + u"\\CurVer", server.prog_ids.back());
}

} // namespace

Served::Served() {
    countAlive(1);
}

Served::~Served() {
    countAlive(-1);
}

long Served::alive() {
    return alive_objects;
}

void Served::onAliveChanged(std::function<void(long)> changed) {
    aliveChanged() = std::move(changed);
}

HRESULT Served::QueryInterface(REFIID iid, void** object) {
    if (object) {
        *object = interfaceFor(iid);
        if (*object) {
            AddRef();
            return S_OK;
        }
    }
    return Counted::QueryInterface(iid, object);
}

HRESULT Served::GetTypeInfoCount(UINT* count) {
    if (!count) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

HRESULT Served::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info) {
        *info = nullptr;
    }
    return DISP_E_BADINDEX;
}

HRESULT Served::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (!names || !ids || count == 0) {
        return E_INVALIDARG;
    }
    std::fill(ids, ids + count, DISPID_UNKNOWN);
    const auto all = members();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Member& m) { return sameName(m.name, names[0]); });
    if (found == all.end()) {
        return DISP_E_UNKNOWNNAME;
    }
    ids[0] = found->id;
    HRESULT result = S_OK;
    for (UINT i = 1; i < count; ++i) {
        const auto& parameters = found->parameters;
        const auto named = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const wchar_t* parameter) { return sameName(parameter, names[i]); });
        if (named == parameters.end()) {
            result = DISP_E_UNKNOWNNAME;
        } else {
            ids[i] = static_cast<DISPID>(named - parameters.begin());
        }
    }
    return result;
}

HRESULT Served::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                       EXCEPINFO* exception, UINT* wrong_argument) {
    const Ptr<IDispatch> alive_during_call(this);
    try {
        const Member* member = chosenMember(members(), id, flags);
        if (!member) {
            return DISP_E_MEMBERNOTFOUND;
        }
        static const DISPPARAMS none{};
        Variant value = invoke(unpack(*member, flags, parameters ? *parameters : none, wrong_argument));
        if (result) {
            VariantInit(result);
            *result = value.detach();
        }
        return S_OK;
    } catch (const Error& error) {
        return report(error, exception);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

Variant enumerate(std::vector<Variant> values) {
    VARIANT raw;
    VariantInit(&raw);
    raw.vt = VT_UNKNOWN;
    raw.punkVal = new Enumerator(std::move(values));
    Variant result(raw);
    raw.punkVal->Release();
    return result;
}

// Lives as long as its EventSource; what clients hold of it counts on the owner, so it cannot be outlived.
struct EventSource::Impl final : IConnectionPointContainer {
    struct Connection {
        DWORD cookie;
        Ptr<IDispatch> sink;
    };

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
    std::vector<Connection> connections;
    std::function<void()> lost;
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
        return std::erase_if(connections, [&](const Connection& c) { return c.cookie == cookie; }) == 0
                   ? CONNECT_E_NOCONNECTION
                   : S_OK;
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
    auto dispatch = Ptr<IUnknown>(sink).as<IDispatch>(IID_IDispatch);
    if (!dispatch) {
        dispatch = Ptr<IUnknown>(sink).as<IDispatch>(source_.events);
    }
    if (!dispatch) {
        return CONNECT_E_CANNOTCONNECT;
    }
    try {
        source_.connections.push_back({++source_.last_cookie, std::move(dispatch)});
    } catch (...) {
        return E_OUTOFMEMORY;
    }
    *cookie = source_.last_cookie;
    if (source_.added) {
        source_.added(source_.last_cookie);
    }
    return S_OK;
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

EventSource::EventSource(IDispatch& owner, const IID& events) : impl_(new Impl(owner, events)) {}

EventSource::~EventSource() {
    delete impl_;
}

void* EventSource::container() {
    return static_cast<IConnectionPointContainer*>(impl_);
}

void EventSource::fire(DISPID event, const std::vector<Variant>& arguments, DWORD only) {
    const Ptr<IDispatch> alive(&impl_->owner);
    std::vector<VARIANT> raw; // borrowed: the arguments own them
    raw.reserve(arguments.size());
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        raw.push_back(argument->raw());
    }
    // A copy: sinks may come and go while one is called.
    const auto connections = impl_->connections;
    bool some_lost = false;
    for (const auto& connection : connections) {
        if (only != every_sink && connection.cookie != only) {
            continue;
        }
        DISPPARAMS parameters{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
        const HRESULT result = connection.sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                       &parameters, nullptr, nullptr, nullptr);
        if (isGone(result) && impl_->forget(connection.cookie) == S_OK) {
            some_lost = true;
        }
    }
    if (some_lost && impl_->lost) {
        impl_->lost();
    }
}

std::size_t EventSource::sinks() const {
    return impl_->connections.size();
}

void EventSource::onLost(std::function<void()> lost) {
    impl_->lost = std::move(lost);
}

void EventSource::onAdded(std::function<void(DWORD)> added) {
    impl_->added = std::move(added);
}

Registration registerServer(const ServerClass& server, const std::u16string& command) {
    const std::u16string own = textOf(server.clsid);
    for (HKEY root : registryRoots()) {
        for (const std::u16string& prog_id : server.prog_ids) {
            const std::u16string owner = defaultValue(root, classes_path + prog_id + u"\\CLSID");
            if (!owner.empty() && !sameText(owner, own, LetterCase::ignored)) {
                return Registration::owned_by_another;
            }
        }
    }
    for (HKEY root : registryRoots()) {
        if (writeAll(root, server, command)) {
            return Registration::done;
        }
    }
    return Registration::refused;
}

void unregisterServer(const ServerClass& server) {
    const std::u16string own = textOf(server.clsid);
    for (HKEY root : registryRoots()) {
        for (const std::u16string& prog_id : server.prog_ids) {
            if (sameText(defaultValue(root, classes_path + prog_id + u"\\CLSID"), own, LetterCase::ignored)) {
                RegDeleteTreeW(root, wide(classes_path + prog_id));
            }
        }
        RegDeleteTreeW(root, wide(classes_path + u"CLSID\\" + own));
    }
}

ClassObject::ClassObject(const CLSID& clsid, std::function<Ptr<IDispatch>()> create) {
    const auto factory = Ptr<Factory>::adopt(new Factory(std::move(create)));
    check(CoRegisterClassObject(clsid, factory.get(), CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE, &cookie_));
}

ClassObject::~ClassObject() {
    if (cookie_) {
        CoRevokeClassObject(cookie_);
    }
}

} // namespace murmelix::com
