#include "common/com/type_library.h"

#include <array>
#include <cwchar>

namespace murmelix::com {

namespace {

// The attributes of a library or of a type, given back in the end.
template <class Owner, class Attributes, HRESULT (STDMETHODCALLTYPE Owner::*lend)(Attributes**),
          void (STDMETHODCALLTYPE Owner::*take_back)(Attributes*)>
class Borrowed {
  public:
    explicit Borrowed(Owner& owner) : owner_(owner) { check((owner.*lend)(&attributes_)); }
    ~Borrowed() { (owner_.*take_back)(attributes_); }
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;
    const Attributes* get() const { return attributes_; }
    const Attributes* operator->() const { return attributes_; }

  private:
    Owner& owner_;
    Attributes* attributes_ = nullptr;
};
using LibraryAttributes = Borrowed<ITypeLib, TLIBATTR, &ITypeLib::GetLibAttr, &ITypeLib::ReleaseTLibAttr>;
using TypeAttributes = Borrowed<ITypeInfo, TYPEATTR, &ITypeInfo::GetTypeAttr, &ITypeInfo::ReleaseTypeAttr>;

std::wstring programFile() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring nameOf(ITypeLib& library) {
    Bstr words;
    check(library.GetDocumentation(-1, nullptr, words.out(), nullptr, nullptr));
    return words.get() ? words.get() : L"";
}

// A function of the system that older ones lack; null there.
template <class Function>
Function* perUser(const char* name) {
    const HMODULE library = GetModuleHandleW(L"oleaut32.dll");
    return library ? reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name))) : nullptr;
}

enum class Owner { nobody, us, another };

// Whose library is registered under the id, by the words that describe it.
Owner ownerOf(const TLIBATTR& attributes, const std::wstring& own) {
    std::array<wchar_t, 64> guid{};
    StringFromGUID2(attributes.guid, guid.data(), static_cast<int>(guid.size()));
    std::array<wchar_t, 160> key{};
    std::swprintf(key.data(), key.size(), L"Software\\Classes\\TypeLib\\%ls\\%x.%x", guid.data(),
                  unsigned{attributes.wMajorVerNum}, unsigned{attributes.wMinorVerNum});
    Owner owner = Owner::nobody;
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        std::array<wchar_t, 256> words{};
        DWORD bytes = sizeof words;
        const LSTATUS read = RegGetValueW(root, key.data(), nullptr, RRF_RT_REG_SZ, nullptr, words.data(), &bytes);
        if (read == ERROR_FILE_NOT_FOUND) {
            continue;
        }
        if (read != ERROR_SUCCESS || own != words.data()) {
            return Owner::another;
        }
        owner = Owner::us;
    }
    return owner;
}

} // namespace

ITypeLib* typeLibrary() {
    // Never let go of: at the very end the system's libraries may be gone before it.
    static ITypeLib* const own = [] {
        ITypeLib* found = nullptr;
        return SUCCEEDED(LoadTypeLibEx(programFile().c_str(), REGKIND_NONE, &found)) ? found : nullptr;
    }();
    return own;
}

std::optional<GUID> typeLibraryId() {
    return typeLibrary() ? std::optional(LibraryAttributes(*typeLibrary())->guid) : std::nullopt;
}

Ptr<ITypeInfo> typeInfo(const IID& interface_or_class) {
    Ptr<ITypeInfo> found;
    if (!typeLibrary() || FAILED(typeLibrary()->GetTypeInfoOfGuid(interface_or_class, found.out()))) {
        return {};
    }
    return found;
}

std::vector<IID> dualInterfaces() {
    std::vector<IID> all;
    const UINT count = typeLibrary() ? typeLibrary()->GetTypeInfoCount() : 0;
    for (UINT i = 0; i < count; ++i) {
        Ptr<ITypeInfo> type;
        check(typeLibrary()->GetTypeInfo(i, type.out()));
        const TypeAttributes attributes(*type.get());
        if (attributes->typekind == TKIND_DISPATCH && (attributes->wTypeFlags & TYPEFLAG_FDUAL)) {
            all.push_back(attributes->guid);
        }
    }
    return all;
}

LibraryRegistration registerTypeLibrary() {
    ITypeLib* const own = typeLibrary();
    if (!own) {
        return LibraryRegistration::refused;
    }
    const LibraryAttributes attributes(*own);
    if (ownerOf(*attributes.get(), nameOf(*own)) == Owner::another) {
        return LibraryRegistration::owned_by_another;
    }
    std::wstring file = programFile();
    bool registered = SUCCEEDED(RegisterTypeLib(own, file.data(), nullptr));
    if (const auto for_user = perUser<decltype(RegisterTypeLib)>("RegisterTypeLibForUser"); for_user && !registered) {
        registered = SUCCEEDED(for_user(own, file.data(), nullptr));
    }
    return registered ? LibraryRegistration::done : LibraryRegistration::refused;
}

LibraryRegistration unregisterTypeLibrary() {
    ITypeLib* const own = typeLibrary();
    if (!own) {
        return LibraryRegistration::done;
    }
    const LibraryAttributes attributes(*own);
    const auto owner = [&] { return ownerOf(*attributes.get(), nameOf(*own)); };
    if (owner() == Owner::us) {
        // Both: one may be of an earlier registration.
        for (const auto remove :
             {&UnRegisterTypeLib, perUser<decltype(UnRegisterTypeLib)>("UnRegisterTypeLibForUser")}) {
            if (remove) {
                remove(attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum, attributes->lcid,
                       attributes->syskind);
            }
        }
    }
    return owner() == Owner::us ? LibraryRegistration::refused : LibraryRegistration::done;
}

void* ClassInfo::answer(REFIID iid) {
    const bool known = IsEqualIID(iid, IID_IProvideClassInfo) || IsEqualIID(iid, IID_IProvideClassInfo2);
    return known && typeLibrary() ? static_cast<IProvideClassInfo2*>(this) : nullptr;
}

HRESULT ClassInfo::GetClassInfo(ITypeInfo** info) {
    if (!info) {
        return E_POINTER;
    }
    *info = typeInfo(clsid_).detach();
    return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT ClassInfo::GetGUID(DWORD kind, GUID* guid) {
    if (!guid) {
        return E_POINTER;
    }
    *guid = GUID{};
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) {
        return E_INVALIDARG;
    }
    *guid = events_;
    return S_OK;
}

} // namespace murmelix::com
