// A screen reader, as far as a test needs one.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <windows.h>

#include <oleacc.h>

#include "common/com/handles.h"

namespace murmelix::test {

// What a reader is told of a window or of a part of one.
struct Told {
    com::Ptr<IAccessible> object;
    long child = CHILDID_SELF;
    long role = 0, state = 0;
    std::u16string name, value, description, shortcut, action;
    RECT place{};
    std::size_t depth = 0;

    // Has it do what its action names.
    HRESULT doIt() const;
};

com::Ptr<IAccessible> accessibleOf(HWND window);
Told ask(const com::Ptr<IAccessible>& object, long child = CHILDID_SELF);
// All that is in it, itself first; a walk as readers make it.
std::vector<Told> readAll(HWND window);
// For people: one line each.
std::string written(const std::vector<Told>& all);
std::string written(const Told& told);

// A part of an object as its methods take it; CHILDID_SELF is the object itself.
VARIANT childId(long child);
// The numbers of a result that is one, and -1 where there is none.
long numberOf(const VARIANT& value);

} // namespace murmelix::test
