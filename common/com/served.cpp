#include "common/com/served.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <new>

#include "common/text.h"

namespace murmelix::com {

namespace {

std::atomic<long> alive_objects = 0;

std::function<void(long)>& aliveChanged() {
    static std::function<void(long)> changed;
    return changed;
}

bool sameName(const wchar_t* a, const wchar_t* b) {
    return _wcsicmp(a, b) == 0;
}

bool isPut(WORD flags) {
    return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
}

// Picks the row that the id and the call's flags mean; null where there is none. A method may be asked for as a
// property, and a property be called as a method: script languages cannot tell them apart.
const Member* chosenMember(std::span<const Member> members, DISPID id, WORD flags) {
    const auto found = std::find_if(members.begin(), members.end(), [&](const Member& member) {
        return member.id == id && (isPut(flags) ? member.put != nullptr : member.get || member.method);
    });
    return found == members.end() ? nullptr : &*found;
}

const Action& chosenAction(const Member& member, WORD flags) {
    if (isPut(flags)) {
        return member.put;
    }
    return member.method ? member.method : member.get;
}

// Of an array, or a structure that its maker copies, no size is known before it is copied: neither is taken.
Variant taken(const VARIANT& given) {
    const VARIANT* value = &given;
    if (value->vt == (VT_BYREF | VT_VARIANT) && value->pvarVal) {
        value = value->pvarVal;
    }
    const VARTYPE kind = value->vt & VT_TYPEMASK;
    if ((value->vt & VT_ARRAY) || kind == VT_RECORD || kind == VT_VARIANT ||
        ((value->vt & VT_BYREF) && !value->byref)) {
        throw Error(DISP_E_TYPEMISMATCH);
    }
    if (kind == VT_BSTR) {
        const BSTR text = value->vt & VT_BYREF ? *value->pbstrVal : value->bstrVal;
        if (SysStringLen(text) > longest_text) {
            throw Error(E_INVALIDARG, u"A text has at most " + toText(longest_text) + u" letters.");
        }
    }
    return Variant(*value);
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
    Enumerator(std::vector<Variant> values, std::shared_ptr<Holder> holder, std::size_t at = 0)
        : values_(std::move(values)), holder_(std::move(holder)), at_(at) {
        if (holder_) {
            holder_->joined(this);
        }
        Served::countAlive(1);
    }
    ~Enumerator() override {
        if (holder_) {
            holder_->left(this);
        }
        values_.clear();
        Served::countAlive(-1);
    }

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
        *copy = new Enumerator(values_, holder_, at_);
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IEnumVARIANT); }

    std::vector<Variant> values_;
    std::shared_ptr<Holder> holder_;
    std::size_t at_;
};

} // namespace

Variant plain(const Variant& given) {
    if (given.type() != VT_DISPATCH && given.type() != VT_UNKNOWN) {
        return given;
    }
    const Ptr<IDispatch> object = given.toObject();
    if (!object) {
        throw Error(DISP_E_TYPEMISMATCH);
    }
    Variant value;
    DISPPARAMS none{};
    if (FAILED(object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, value.out(),
                              nullptr, nullptr))) {
        throw Error(DISP_E_TYPEMISMATCH);
    }
    Variant copy = taken(value.raw());
    if (copy.type() == VT_DISPATCH || copy.type() == VT_UNKNOWN) {
        throw Error(DISP_E_TYPEMISMATCH);
    }
    return copy;
}

Call::Call(Served& object, const Member& member, bool put, const DISPPARAMS& given)
    : object_(object), member_(member), arguments_(member.parameters.size() + (put ? 1 : 0), Variant::omitted()),
      places_(arguments_.size(), 0) {
    const std::size_t room = arguments_.size();
    const UINT named = given.cNamedArgs;
    if (given.cArgs > room || named > given.cArgs) {
        throw Error(DISP_E_BADPARAMCOUNT);
    }
    for (UINT i = 0; i < given.cArgs; ++i) {
        std::size_t place = given.cArgs - 1 - i;
        if (i < named) {
            const DISPID name = given.rgdispidNamedArgs[i];
            if (name == DISPID_PROPERTYPUT && put) {
                place = room - 1;
            } else if (name >= 0 && static_cast<std::size_t>(name) < room) {
                place = static_cast<std::size_t>(name);
            } else {
                throw Error(DISP_E_PARAMNOTFOUND);
            }
        }
        places_[place] = i;
        arguments_[place] = taken(given.rgvarg[i]);
    }
    for (std::size_t i = 0; i < member.required; ++i) {
        if (arguments_[i].type() == VT_ERROR) {
            throw Error(DISP_E_PARAMNOTOPTIONAL);
        }
    }
    if (put && arguments_.back().type() == VT_ERROR) {
        throw Error(DISP_E_PARAMNOTOPTIONAL);
    }
}

Served& Call::enter() {
    object_.entering(member_);
    return object_;
}

// Whose errors the caller's thread is told in words: those of calls by the object's own table.
class Served::ErrorSupport final : public ISupportErrorInfo {
  public:
    explicit ErrorSupport(Served& object) : object_(object) {}
    ErrorSupport(const ErrorSupport&) = delete;
    ErrorSupport& operator=(const ErrorSupport&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return object_.QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return object_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return object_.Release(); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return object_.publishes(iid) ? S_OK : S_FALSE;
    }

  private:
    Served& object_;
};

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

void Served::countAlive(long change) {
    const long count = alive_objects += change;
    if (aliveChanged()) {
        aliveChanged()(count);
    }
}

HRESULT Served::QueryInterface(REFIID iid, void** object) {
    if (object) {
        *object = interfaceFor(iid);
        if (!*object) {
            *object = dualFor(iid);
        }
        if (!*object && IsEqualIID(iid, IID_ISupportErrorInfo) && published()) {
            if (!errors_) {
                errors_ = std::make_unique<ErrorSupport>(*this);
            }
            *object = static_cast<ISupportErrorInfo*>(errors_.get());
        }
        if (*object) {
            AddRef();
            return S_OK;
        }
    }
    return Counted::QueryInterface(iid, object);
}

bool Served::publishes(REFIID iid) const {
    const Interface* const own = published();
    return own && std::ranges::any_of(own->ids, [&](const IID& id) { return IsEqualIID(iid, id); });
}

void* Served::dualFor(REFIID iid) {
    if (!publishes(iid)) {
        return nullptr;
    }
    if (!dual_) {
        dual_.reset(published()->make(*this));
    }
    return dual_->table();
}

HRESULT Served::GetTypeInfoCount(UINT* count) {
    if (!count) {
        return E_POINTER;
    }
    *count = published() && typeLibrary() ? 1 : 0;
    return S_OK;
}

HRESULT Served::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    if (!info) {
        return E_POINTER;
    }
    *info = nullptr;
    if (index == 0 && published()) {
        *info = typeInfo(published()->ids.front()).detach();
    }
    return *info ? S_OK : DISP_E_BADINDEX;
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
    std::optional<Call> call;
    try {
        const Member* member = chosenMember(members(), id, flags);
        if (!member) {
            return DISP_E_MEMBERNOTFOUND;
        }
        static const DISPPARAMS none{};
        call.emplace(*this, *member, isPut(flags), parameters ? *parameters : none);
        Variant value = chosenAction(*member, flags)(*call);
        if (result) {
            VariantInit(result);
            *result = value.detach();
        }
        return S_OK;
    } catch (const Error& error) {
        if (wrong_argument && call) {
            *wrong_argument = call->lastRead();
        }
        return report(error, exception);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

Variant enumerate(std::vector<Variant> values, std::shared_ptr<Holder> holder) {
    VARIANT raw;
    VariantInit(&raw);
    raw.vt = VT_UNKNOWN;
    raw.punkVal = new Enumerator(std::move(values), std::move(holder));
    Variant result(raw);
    raw.punkVal->Release();
    return result;
}

} // namespace murmelix::com
