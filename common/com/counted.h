// IUnknown for a class with one interface of its own: it answers that and deletes itself with its last reference.
#pragma once

#include <atomic>
#include <utility>

#include <windows.h>

#include <unknwn.h>

namespace murmelix::com {

template <class Interface>
class Counted : public Interface {
  public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !answers(iid)) {
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

  protected:
    Counted() = default;
    virtual ~Counted() = default;
    // True for the interface's own id, and for others that the same pointer serves.
    virtual bool answers(REFIID iid) const = 0;

  private:
    std::atomic<ULONG> references_ = 1;
};

} // namespace murmelix::com
