// The type library that a program carries as its resource: what tells others the members of its objects, lets them call
// the members by the tables of dual interfaces, and find the source of its events.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include <ocidl.h>

#include "common/com/handles.h"

namespace murmelix::com {

class Served;

// An interface of a server's objects besides IDispatch, whose calls end as calls of Served::Invoke.
class DualInterface {
  public:
    virtual ~DualInterface() = default;
    virtual IDispatch* table() = 0; // counts on the object
};

// A dual interface of the type library.
struct Interface {
    std::span<const IID> ids; // its own first, then those that it derives from
    DualInterface* (*make)(Served& object);
};

// The program's own; null where it has none.
ITypeLib* typeLibrary();
std::optional<GUID> typeLibraryId();
// How a program that calls an object by its dispatch ids sees the interface; null where the library lacks it.
Ptr<ITypeInfo> typeInfo(const IID& interface_or_class);
// All dual interfaces of the library.
std::vector<IID> dualInterfaces();

enum class LibraryRegistration { done, owned_by_another, refused };

// Writes the program's library and its interfaces for the whole machine, for the user alone where that is refused. What
// another program has registered under the same id is left alone.
LibraryRegistration registerTypeLibrary();
// `done` where nothing of it is left, or ever was.
LibraryRegistration unregisterTypeLibrary();

// IProvideClassInfo2 of an object that a class makes. The owner answers the ids in interfaceFor with `answer`;
// references count on the owner.
class ClassInfo final : public IProvideClassInfo2 {
  public:
    ClassInfo(IDispatch& owner, const CLSID& clsid, const IID& events)
        : owner_(owner), clsid_(clsid), events_(events) {}
    virtual ~ClassInfo() = default;
    ClassInfo(const ClassInfo&) = delete;
    ClassInfo& operator=(const ClassInfo&) = delete;

    // Null for other interfaces than IProvideClassInfo and IProvideClassInfo2.
    void* answer(REFIID iid);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return owner_.QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

  private:
    IDispatch& owner_;
    CLSID clsid_;
    IID events_;
};

} // namespace murmelix::com
