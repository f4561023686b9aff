// Runs the tests against the AgentServer.exe of this build, registered meanwhile in the prefix, under a watchdog.
// With "--client EVENT" it is a second client: it loads and shows a character, sets EVENT, and stays until it is
// killed. With "--enumerating EVENT" it stands in the middle of its characters and their animations. With "--hanging
// EVENT" it sets EVENT when it hears of its character, and never comes back from that.
#include <cstring>

#include <gtest/gtest.h>

#include "tests/windows/agent/server_process.h"

namespace agent {
namespace {

using murmelix::com::Object;
using murmelix::com::Variant;

int beClient(const char* event, bool hanging, bool enumerating) {
    const murmelix::com::Apartment apartment;
    Object control = Object::create(u"Agent.Control.2");
    const HANDLE ready = OpenEventA(EVENT_MODIFY_STATE, FALSE, event);
    murmelix::com::Subscription subscription;
    if (hanging) {
        subscription =
            murmelix::com::Subscription(control.dispatch(), iid_agent_events, [ready](DISPID, std::vector<Variant>&) {
                SetEvent(ready);
                Sleep(INFINITE);
            });
    }
    Object characters = control.object(u"Characters");
    characters.call(u"Load", {Variant(u"other"), Variant(smallCharacterFile())});
    Object character = characters.object(u"Character", {Variant(u"other")});
    character.call(u"Show", {Variant(true)});
    std::vector<murmelix::com::Ptr<IEnumVARIANT>> halfway;
    for (const auto& collection : {characters, character.object(u"AnimationNames")}) {
        if (enumerating) {
            DISPPARAMS none{};
            Variant found, first;
            murmelix::com::check(collection.dispatch()->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                                               DISPATCH_PROPERTYGET, &none, found.out(), nullptr,
                                                               nullptr));
            halfway.push_back(murmelix::com::Ptr<IUnknown>(found.raw().punkVal).as<IEnumVARIANT>(IID_IEnumVARIANT));
            halfway.back()->Next(1, first.out(), nullptr);
        }
    }
    if (!hanging) {
        SetEvent(ready);
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

} // namespace
} // namespace agent

int main(int argc, char** argv) {
    const auto is = [&](const char* mode) { return argc == 3 && std::strcmp(argv[1], mode) == 0; };
    if (is("--client") || is("--hanging") || is("--enumerating")) {
        return agent::beClient(argv[2], is("--hanging"), is("--enumerating"));
    }
    testing::InitGoogleTest(&argc, argv);
    return murmelix::test::runTestsWithServer(agent::serverProgram(), u"{6D1F5C02-3B7E-4A86-9C41-E82A57B0D319}",
                                              L"AgentServerMessages");
}
