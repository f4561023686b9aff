// Calling automation objects by name, and hearing their events.
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/com/handles.h"

namespace murmelix::com {

// An automation object, called by name; the ids of the names are asked once. Every failed call throws Error.
class Object {
  public:
    Object() = default;
    explicit Object(Ptr<IDispatch> dispatch) : dispatch_(std::move(dispatch)) {}
    // Starts or finds the server of a ProgID.
    static Object create(const char16_t* prog_id);

    explicit operator bool() const { return static_cast<bool>(dispatch_); }
    IDispatch* dispatch() const { return dispatch_.get(); }

    Variant get(const char16_t* name, std::initializer_list<Variant> arguments = {});
    void put(const char16_t* name, const Variant& value);
    Variant call(const char16_t* name, std::initializer_list<Variant> arguments = {});
    // Like get, for a property that holds an object; Nothing throws Error(E_POINTER).
    Object object(const char16_t* name, std::initializer_list<Variant> arguments = {});

  private:
    Variant invoke(const char16_t* name, WORD flags, std::initializer_list<Variant> arguments);

    Ptr<IDispatch> dispatch_;
    std::map<std::u16string, DISPID, std::less<>> ids_;
};

// Arguments of an event in their declared order (DISPPARAMS has them last first), references resolved.
using EventHandler = std::function<void(DISPID event, std::vector<Variant>& arguments)>;

// Hears the events of one source for as long as it lives. Exceptions of the handler stay in here.
class Subscription {
  public:
    Subscription();
    // Advises `events` of the source's connection points; Error where the source has no such point.
    Subscription(IDispatch* source, const IID& events, EventHandler handler);
    ~Subscription();
    Subscription(Subscription&&) noexcept;
    Subscription& operator=(Subscription&&) noexcept;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace murmelix::com
