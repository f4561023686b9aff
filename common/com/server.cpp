#include "common/com/server.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <new>

#include "common/text.h"

namespace murmelix::com {

namespace {

class Factory final : public Counted<IClassFactory> {
  public:
    Factory(std::function<Ptr<IDispatch>()> create, std::function<void()> used)
        : create_(std::move(create)), used_(std::move(used)) {}

    // The offer has ended; who holds the factory yet gets nothing by it.
    void withdraw() {
        create_ = nullptr;
        used_ = nullptr;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            if (!create_) {
                return CO_E_SERVER_STOPPING;
            }
            const auto created = create_();
            if (used_) {
                used_();
            }
            return created ? created->QueryInterface(iid, object) : E_FAIL;
        } catch (const Error& error) {
            return error.result();
        } catch (...) {
            return E_UNEXPECTED;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        Served::countAlive(lock ? 1 : -1);
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IClassFactory); }

    std::function<Ptr<IDispatch>()> create_;
    std::function<void()> used_;
};

// Answers one interface, whose members nobody calls.
class Nothing final : public Counted<IUnknown> {
  public:
    explicit Nothing(const IID& iid) : iid_(iid) {}

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, iid_); }

    IID iid_;
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
    if (const auto library = typeLibraryId()) {
        good = good && write(root, u"CLSID\\" + clsid + u"\\TypeLib", textOf(*library));
    }
    return good && write(root, server.prog_ids.front() + u"\\CurVer", server.prog_ids.back());
}

} // namespace

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
            return typeLibrary() && registerTypeLibrary() == LibraryRegistration::refused ? Registration::refused
                                                                                          : Registration::done;
        }
    }
    return Registration::refused;
}

bool isRegistered(const ServerClass& server) {
    return std::ranges::any_of(registryRoots(), [&](HKEY root) {
        return std::ranges::any_of(server.prog_ids, [root](const std::u16string& prog_id) {
            return !defaultValue(root, classes_path + prog_id + u"\\CLSID").empty();
        });
    });
}

Registration unregisterServer(const ServerClass& server) {
    const std::u16string own = textOf(server.clsid);
    bool refused = unregisterTypeLibrary() == LibraryRegistration::refused;
    const auto remove = [&](HKEY root, const std::u16string& path) {
        const LSTATUS removed = RegDeleteTreeW(root, wide(classes_path + path));
        refused = refused || (removed != ERROR_SUCCESS && removed != ERROR_FILE_NOT_FOUND);
    };
    for (HKEY root : registryRoots()) {
        for (const std::u16string& prog_id : server.prog_ids) {
            if (sameText(defaultValue(root, classes_path + prog_id + u"\\CLSID"), own, LetterCase::ignored)) {
                remove(root, prog_id);
            }
        }
        remove(root, u"CLSID\\" + own);
    }
    return refused ? Registration::refused : Registration::done;
}

LastingInterfaces::LastingInterfaces() {
    std::vector<IID> all = dualInterfaces();
    all.insert(all.end(), {IID_IClassFactory, IID_IDispatch, IID_IConnectionPointContainer, IID_IConnectionPoint,
                           IID_IEnumConnectionPoints, IID_IEnumConnections, IID_IEnumVARIANT, IID_IProvideClassInfo,
                           IID_IProvideClassInfo2, IID_ITypeInfo, IID_ITypeInfo2, IID_ITypeLib, IID_ITypeLib2});
    for (const IID& iid : all) {
        const auto nothing = Ptr<IUnknown>::adopt(new Nothing(iid));
        Ptr<IStream> stream;
        check(CreateStreamOnHGlobal(nullptr, TRUE, stream.out()));
        // What the system cannot give to another process cannot be released by it either.
        if (SUCCEEDED(
                CoMarshalInterface(stream.get(), iid, nothing.get(), MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG))) {
            marshaled_.push_back(std::move(stream));
        }
    }
}

LastingInterfaces::~LastingInterfaces() {
    for (const auto& stream : marshaled_) {
        if (SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr))) {
            CoReleaseMarshalData(stream.get());
        }
    }
}

ClassObject::ClassObject(const CLSID& clsid, std::function<Ptr<IDispatch>()> create)
    : clsid_(clsid), factory_(Ptr<IClassFactory>::adopt(new Factory(std::move(create), [this] {
          try {
              offer();
          } catch (const Error&) { // who is served now is served all the same
          }
      }))) {
    offer();
}

// For one use, and anew after each: the registration of a server that was killed stays where nobody takes it back, as
// under Wine, and would stand before that of its successor for good; so the first failing use takes it away.
void ClassObject::offer() {
    if (const DWORD used = std::exchange(cookie_, 0)) {
        CoRevokeClassObject(used);
    }
    check(CoRegisterClassObject(clsid_, factory_.get(), CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &cookie_));
}

ClassObject::~ClassObject() {
    static_cast<Factory*>(factory_.get())->withdraw();
    if (cookie_) {
        CoRevokeClassObject(cookie_);
    }
}

} // namespace murmelix::com
