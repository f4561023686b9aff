#include "common/com/dual.h"

#include <algorithm>

namespace murmelix::com {

namespace {

// What goes wrong here is told by the call's result alone.
void tellError(REFIID iid, const EXCEPINFO& exception) {
    Ptr<ICreateErrorInfo> error;
    if (FAILED(CreateErrorInfo(error.out()))) {
        return;
    }
    error->SetGUID(iid);
    error->SetDescription(exception.bstrDescription);
    if (const auto told = error.as<IErrorInfo>(IID_IErrorInfo)) {
        SetErrorInfo(0, told.get());
    }
}

HRESULT changed(Variant& result, VARTYPE type) {
    VARIANT value = result.detach();
    const HRESULT done = VariantChangeType(&value, &value, 0, type);
    *result.out() = value;
    return done;
}

} // namespace

VARIANT given(SHORT value) {
    VARIANT raw{};
    raw.vt = VT_I2;
    raw.iVal = value;
    return raw;
}

VARIANT given(LONG value) {
    VARIANT raw{};
    raw.vt = VT_I4;
    raw.lVal = value;
    return raw;
}

VARIANT given(BSTR text) {
    VARIANT raw{};
    raw.vt = VT_BSTR;
    raw.bstrVal = text;
    return raw;
}

VARIANT given(IDispatch* object) {
    VARIANT raw{};
    raw.vt = VT_DISPATCH;
    raw.pdispVal = object;
    return raw;
}

VARIANT given(const VARIANT& value) {
    return value;
}

HRESULT give(Variant& result, SHORT* value) {
    const HRESULT done = changed(result, VT_I2);
    *value = SUCCEEDED(done) ? result.raw().iVal : SHORT{};
    return done;
}

HRESULT give(Variant& result, LONG* value) {
    const HRESULT done = changed(result, VT_I4);
    *value = SUCCEEDED(done) ? result.raw().lVal : LONG{};
    return done;
}

HRESULT give(Variant& result, BSTR* value) {
    const HRESULT done = changed(result, VT_BSTR);
    *value = SUCCEEDED(done) ? result.detach().bstrVal : nullptr;
    return done;
}

HRESULT give(Variant& result, VARIANT* value) {
    *value = result.detach();
    return S_OK;
}

HRESULT give(Variant& result, REFIID iid, void** object) {
    IUnknown* const found =
        result.type() == VT_DISPATCH || result.type() == VT_UNKNOWN ? result.raw().punkVal : nullptr;
    return found ? found->QueryInterface(iid, object) : DISP_E_TYPEMISMATCH;
}

HRESULT callMember(IDispatch& object, REFIID iid, DISPID id, WORD flags, std::span<VARIANT> arguments,
                   Variant& result) {
    std::ranges::reverse(arguments);
    DISPID put = DISPID_PROPERTYPUT;
    const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
    DISPPARAMS parameters{arguments.data(), is_put ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          is_put ? 1U : 0U};
    EXCEPINFO exception{};
    const HRESULT done =
        object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result.out(), &exception, nullptr);
    if (done != DISP_E_EXCEPTION) {
        return done;
    }
    tellError(iid, exception);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    return exception.scode;
}

} // namespace murmelix::com
