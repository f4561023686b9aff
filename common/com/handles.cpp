#include "common/com/handles.h"

namespace murmelix::com {

Bstr::Bstr(std::u16string_view text)
    : text_(SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()))) {
    if (!text_) {
        throw Error(E_OUTOFMEMORY);
    }
}

BSTR* Bstr::out() {
    SysFreeString(std::exchange(text_, nullptr));
    return &text_;
}

std::u16string Bstr::textOf(BSTR text) {
    return text ? std::u16string(narrow(text, SysStringLen(text))) : std::u16string();
}

Variant::Variant(bool value) : Variant() {
    value_.vt = VT_BOOL;
    value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(std::int16_t value) : Variant() {
    value_.vt = VT_I2;
    value_.iVal = value;
}

Variant::Variant(std::int32_t value) : Variant() {
    value_.vt = VT_I4;
    value_.lVal = value;
}

Variant::Variant(double value) : Variant() {
    value_.vt = VT_R8;
    value_.dblVal = value;
}

Variant::Variant(std::u16string_view text) : Variant() {
    value_.bstrVal = Bstr(text).detach();
    value_.vt = VT_BSTR;
}

Variant::Variant(IDispatch* object) : Variant() {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object) {
        object->AddRef();
    }
}

Variant::Variant(const VARIANT& value) : Variant() {
    check(VariantCopyInd(&value_, const_cast<VARIANT*>(&value)));
}

Variant::Variant(const Variant& other) : Variant() {
    check(VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)));
}

Variant::Variant(Variant&& other) noexcept : value_(other.value_) {
    VariantInit(&other.value_);
}

Variant& Variant::operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

Variant Variant::omitted() {
    Variant none;
    none.value_.vt = VT_ERROR;
    none.value_.scode = DISP_E_PARAMNOTFOUND;
    return none;
}

bool Variant::isOmitted() const {
    return value_.vt == VT_EMPTY || (value_.vt == VT_ERROR && value_.scode == DISP_E_PARAMNOTFOUND);
}

Variant Variant::converted(VARTYPE type) const {
    Variant result;
    check(
        VariantChangeTypeEx(&result.value_, const_cast<VARIANT*>(&value_), LOCALE_INVARIANT, VARIANT_ALPHABOOL, type));
    return result;
}

bool Variant::toBool() const {
    return converted(VT_BOOL).value_.boolVal != VARIANT_FALSE;
}

std::int16_t Variant::toInt16() const {
    return converted(VT_I2).value_.iVal;
}

std::int32_t Variant::toInt32() const {
    return converted(VT_I4).value_.lVal;
}

double Variant::toDouble() const {
    return converted(VT_R8).value_.dblVal;
}

std::u16string Variant::toText() const {
    return value_.vt == VT_BSTR ? Bstr::textOf(value_.bstrVal) : Bstr::textOf(converted(VT_BSTR).value_.bstrVal);
}

Ptr<IDispatch> Variant::toObject() const {
    if (value_.vt == VT_DISPATCH) {
        return Ptr<IDispatch>(value_.pdispVal);
    }
    if (value_.vt == VT_UNKNOWN && value_.punkVal) {
        if (auto object = Ptr<IUnknown>(value_.punkVal).as<IDispatch>(IID_IDispatch)) {
            return object;
        }
    }
    throw Error(DISP_E_TYPEMISMATCH);
}

VARIANT* Variant::out() {
    VariantClear(&value_);
    return &value_;
}

VARIANT Variant::detach() {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
}

} // namespace murmelix::com
