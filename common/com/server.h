// Serving automation objects: a table of members instead of a type library, connection points, the class object of a
// local server and its registration.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include <ocidl.h>

#include "common/com/counted.h"
#include "common/com/handles.h"

namespace murmelix::com {

enum class Access : unsigned { get = 1, put = 2, method = 4, get_put = 3 };

// One member of an interface. `parameters` are the names of its arguments in order (named arguments are accepted by
// them); `required` of them must be there. A property with get_put takes one argument more where it is put.
struct Member {
    const wchar_t* name;
    DISPID id;
    Access access;
    std::vector<const wchar_t*> parameters = {};
    std::size_t required = 0;
};

// One call of a member. `arguments` are in declared order and as many as the member has parameters, those left out
// being Variant::omitted(); for a put the new value is the last.
struct Call {
    DISPID member;
    bool put;
    std::vector<Variant> arguments;
};

// Base of every object served. Derived classes give the table and carry out the calls; Errors thrown become the call's
// result: dispatch errors (DISP_E_…) as they are, others as an exception with its description.
class Served : public Counted<IDispatch> {
  public:
    Served();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT* wrong_argument) override;

    // Objects of this kind alive in the process, with `changed` called when the number changes.
    static long alive();
    static void onAliveChanged(std::function<void(long)> changed);

  protected:
    ~Served() override;
    virtual std::span<const Member> members() const = 0;
    virtual Variant invoke(const Call& call) = 0;
    // Further interfaces; not counted. Null where there is none.
    virtual void* interfaceFor(REFIID) { return nullptr; }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch); }
};

// New object with one reference, owned by the result.
template <class T, class... Arguments>
Ptr<T> make(Arguments&&... arguments) {
    return Ptr<T>::adopt(new T(std::forward<Arguments>(arguments)...));
}

// An IEnumVARIANT over a copy of the values, as an IUnknown in a Variant (for the member -4).
Variant enumerate(std::vector<Variant> values);

// The connection point container of an object with one source of events. The owner answers
// IID_IConnectionPointContainer in interfaceFor with `container()`; references count on the owner.
class EventSource {
  public:
    EventSource(IDispatch& owner, const IID& events);
    ~EventSource();
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;

    void* container();
    // Calls every sink, or only that of one cookie, arguments in declared order. Sinks whose process is gone are
    // dropped; other failures are theirs. Calling a sink runs the message loop.
    static constexpr DWORD every_sink = 0;
    void fire(DISPID event, const std::vector<Variant>& arguments, DWORD only = every_sink);
    std::size_t sinks() const;
    // Called after a sink was dropped because its process is gone.
    void onLost(std::function<void()> lost);
    // Called with the cookie of each new sink, in the middle of its Advise; must not throw, nor call the sink.
    void onAdded(std::function<void(DWORD)> added);

  private:
    struct Impl;
    Impl* impl_;
};

struct ServerClass {
    CLSID clsid;
    std::u16string name;                  // for people
    std::vector<std::u16string> prog_ids; // the version-independent one first; it gets CurVer of the last
};

enum class Registration { done, owned_by_another, refused };

// Writes (or removes) the class and its ProgIDs for the whole machine, for the user alone where that is refused.
// `command` is the command line of the server. A ProgID that belongs to another class is left alone: owned_by_another.
Registration registerServer(const ServerClass& server, const std::u16string& command);
void unregisterServer(const ServerClass& server);

// Offers a class to other processes for as long as it lives.
class ClassObject {
  public:
    ClassObject(const CLSID& clsid, std::function<Ptr<IDispatch>()> create);
    ~ClassObject();
    ClassObject(const ClassObject&) = delete;
    ClassObject& operator=(const ClassObject&) = delete;

  private:
    DWORD cookie_ = 0;
};

} // namespace murmelix::com
