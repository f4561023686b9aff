// Calling automation objects by name, and hearing their events.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "common/com/handles.h"

namespace murmelix::com {

// An automation object, called by name. Every failed call throws Error.
//
// The ids of the names are those of an interface, and whatever one member of one interface gives has one interface: so
// the objects that are got by `object` in the same way from one object share what they have learned. One that does not
// know an id of the others is asked for its own.
class Object {
  public:
    Object() = default;
    explicit Object(Ptr<IDispatch> dispatch);
    // Starts or finds the server of a ProgID.
    static Object create(const char16_t* prog_id);

    explicit operator bool() const { return called_ != nullptr; }
    IDispatch* dispatch() const;

    Variant get(const char16_t* name, std::initializer_list<Variant> arguments = {});
    void put(const char16_t* name, const Variant& value);
    Variant call(const char16_t* name, std::initializer_list<Variant> arguments = {});
    // Like get, for a property that holds an object; Nothing throws Error(E_POINTER).
    Object object(const char16_t* name, std::initializer_list<Variant> arguments = {});

  private:
    struct Names;
    struct Called;
    Object(Ptr<IDispatch> dispatch, std::shared_ptr<Names> names);
    Variant invoke(const char16_t* name, WORD flags, std::initializer_list<Variant> arguments);

    std::shared_ptr<Called> called_; // copies of an object have one; null: none
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
