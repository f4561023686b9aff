// Dual interfaces of objects served: who calls by the table of an interface gets what a call by its dispatch id does.
// The classes that derive from Dual are made of the description of the type library.
#pragma once

#include <array>

#include "common/com/served.h"

namespace murmelix::com {

// A value on its way in; borrowed.
VARIANT given(SHORT value); // VARIANT_BOOL is a SHORT
VARIANT given(LONG value);
VARIANT given(BSTR text);
VARIANT given(IDispatch* object);
VARIANT given(const VARIANT& value);

// The result on its way out, as the type that the interface names.
HRESULT give(Variant& result, SHORT* value);
HRESULT give(Variant& result, LONG* value);
HRESULT give(Variant& result, BSTR* value);
HRESULT give(Variant& result, VARIANT* value);
HRESULT give(Variant& result, REFIID iid, void** object);
template <class Object>
HRESULT give(Variant& result, Object** object) {
    return give(result, __uuidof(Object), reinterpret_cast<void**>(object));
}

// Calls the member with the arguments in their declared order. What went wrong is told as the thread's error, too.
HRESULT callMember(IDispatch& object, REFIID iid, DISPID id, WORD flags, std::span<VARIANT> arguments, Variant& result);

template <class Table>
class Dual : public Table, public DualInterface {
  public:
    explicit Dual(Served& object) : object_(object) {}
    Dual(const Dual&) = delete;
    Dual& operator=(const Dual&) = delete;

    IDispatch* table() override { return this; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return object_.QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return object_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return object_.Release(); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return object_.GetTypeInfoCount(count); }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return object_.GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        return object_.GetIDsOfNames(iid, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* wrong_argument) override {
        return object_.Invoke(id, iid, locale, flags, parameters, result, exception, wrong_argument);
    }

  protected:
    template <class... Arguments>
    HRESULT call(DISPID id, WORD flags, const Arguments&... arguments) {
        Variant unused;
        return run(unused, id, flags, arguments...);
    }
    template <class Result, class... Arguments>
    HRESULT answer(DISPID id, WORD flags, Result* result, const Arguments&... arguments) {
        if (!result) {
            return E_POINTER;
        }
        *result = Result();
        Variant value;
        const HRESULT done = run(value, id, flags, arguments...);
        return SUCCEEDED(done) ? give(value, result) : done;
    }

  private:
    template <class... Arguments>
    HRESULT run(Variant& result, DISPID id, WORD flags, const Arguments&... arguments) {
        std::array<VARIANT, sizeof...(arguments)> all{given(arguments)...};
        return callMember(object_, __uuidof(Table), id, flags, all, result);
    }

    Served& object_;
};

template <class Made>
DualInterface* makeDual(Served& object) {
    return new Made(object);
}

} // namespace murmelix::com
