// Owners of what COM hands out: interface pointers, BSTRs, VARIANTs, and the apartment of a thread.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <windows.h>

#include <oleauto.h>

#include "common/com/error.h"

namespace murmelix::com {

// UTF-16 is char16_t in the programs and wchar_t in the Windows headers: the same units.
inline const wchar_t* wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline const wchar_t* wide(const std::u16string& text) {
    return wide(text.c_str());
}
inline std::u16string_view narrow(const wchar_t* text, std::size_t length) {
    return {reinterpret_cast<const char16_t*>(text), length};
}

template <class T>
class Ptr {
  public:
    Ptr() = default;
    Ptr(std::nullptr_t) {}
    Ptr(T* pointer) : pointer_(pointer) {
        if (pointer_) {
            pointer_->AddRef();
        }
    }
    Ptr(const Ptr& other) : Ptr(other.pointer_) {}
    Ptr(Ptr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ~Ptr() { reset(); }
    Ptr& operator=(Ptr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }

    // Takes over a reference that is already counted.
    static Ptr adopt(T* pointer) {
        Ptr owner;
        owner.pointer_ = pointer;
        return owner;
    }
    void reset() {
        if (T* pointer = std::exchange(pointer_, nullptr)) {
            pointer->Release();
        }
    }
    T* get() const { return pointer_; }
    T* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    // For the out-parameter of a call.
    T** out() {
        reset();
        return &pointer_;
    }
    // Gives the counted reference away.
    T* detach() { return std::exchange(pointer_, nullptr); }

    // Null where the object does not answer the interface.
    template <class U>
    Ptr<U> as(const IID& iid) const {
        void* found = nullptr;
        if (!pointer_ || FAILED(pointer_->QueryInterface(iid, &found))) {
            return {};
        }
        return Ptr<U>::adopt(static_cast<U*>(found));
    }

  private:
    T* pointer_ = nullptr;
};

class Bstr {
  public:
    Bstr() = default;
    explicit Bstr(std::u16string_view text);
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }
    BSTR get() const { return text_; }
    BSTR* out();
    BSTR detach() { return std::exchange(text_, nullptr); }
    std::u16string text() const { return textOf(text_); }
    static std::u16string textOf(BSTR text);

  private:
    BSTR text_ = nullptr;
};

class Variant {
  public:
    Variant() { VariantInit(&value_); }
    Variant(bool value);
    Variant(std::int16_t value);
    Variant(std::int32_t value);
    Variant(long value) : Variant(static_cast<std::int32_t>(value)) {}
    Variant(double value);
    Variant(std::u16string_view text);
    Variant(const std::u16string& text) : Variant(std::u16string_view(text)) {}
    Variant(const char16_t* text) : Variant(std::u16string_view(text)) {}
    Variant(const void*) = delete;
    Variant(IDispatch* object);
    template <class T>
    Variant(const Ptr<T>& object) : Variant(static_cast<IDispatch*>(object.get())) {}
    explicit Variant(const VARIANT& value);
    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant other) noexcept;
    ~Variant() { VariantClear(&value_); }

    // The value that stands for an optional argument left out.
    static Variant omitted();

    VARTYPE type() const { return value_.vt; }
    bool isOmitted() const;
    // Conversions as automation makes them; Error(DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW) where there is none.
    bool toBool() const;
    std::int16_t toInt16() const;
    std::int32_t toInt32() const;
    double toDouble() const;
    std::u16string toText() const;
    Ptr<IDispatch> toObject() const; // null for Nothing
    const VARIANT& raw() const { return value_; }
    VARIANT* out();
    // Gives the value away.
    VARIANT detach();

  private:
    Variant converted(VARTYPE type) const;
    VARIANT value_;
};

// A single-threaded apartment for as long as it lives.
class Apartment {
  public:
    Apartment() : result_(OleInitialize(nullptr)) {}
    ~Apartment() {
        if (SUCCEEDED(result_)) {
            OleUninitialize();
        }
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    HRESULT result() const { return result_; }

  private:
    HRESULT result_;
};

} // namespace murmelix::com
