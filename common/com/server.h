// A local server: the objects it serves, their events, its class object and its registration.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/com/event_source.h"
#include "common/com/served.h"

namespace murmelix::com {

struct ServerClass {
    CLSID clsid;
    std::u16string name;                  // for people
    std::vector<std::u16string> prog_ids; // the version-independent one first; it gets CurVer of the last
};

enum class Registration { done, owned_by_another, refused };

// Writes the class, its ProgIDs and the program's type library for the whole machine, for the user alone where that is
// refused. `command` is the command line of the server. A ProgID that belongs to another class is left alone:
// owned_by_another. So is a type library of another, which is no failure.
Registration registerServer(const ServerClass& server, const std::u16string& command);
// A ProgID of it belongs to a class, its own or another.
bool isRegistered(const ServerClass& server);
// Removes the class, and the ProgIDs and the type library that belong to it, of the machine and of the user. `done`
// where nothing of it is left, or ever was; `refused` where the registry keeps some of it.
Registration unregisterServer(const ServerClass& server);

// Something with each interface that clients are given, for as long as it lives, which nobody is given.
//
// Under Wine the release of a process's last object with an interface waits until the calls of that interface are over,
// and can miss the end of one whose answer has gone out just then: it waits for ever, and so does the client that
// released. With these there is always another one. Without effect elsewhere.
class LastingInterfaces {
  public:
    LastingInterfaces();
    ~LastingInterfaces();
    LastingInterfaces(const LastingInterfaces&) = delete;
    LastingInterfaces& operator=(const LastingInterfaces&) = delete;

  private:
    std::vector<Ptr<IStream>> marshaled_;
};

// Offers a class to other processes for as long as it lives.
class ClassObject {
  public:
    ClassObject(const CLSID& clsid, std::function<Ptr<IDispatch>()> create);
    ~ClassObject();
    ClassObject(const ClassObject&) = delete;
    ClassObject& operator=(const ClassObject&) = delete;

  private:
    void offer();

    LastingInterfaces lasting_;
    CLSID clsid_;
    Ptr<IClassFactory> factory_;
    DWORD cookie_ = 0;
};

} // namespace murmelix::com
