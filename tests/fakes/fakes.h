// The whole imitated machine.
#pragma once

#include "tests/fakes/agent.h"
#include "tests/fakes/ansi.h"
#include "tests/fakes/clock.h"
#include "tests/fakes/connections.h"
#include "tests/fakes/files.h"
#include "tests/fakes/foreign_windows.h"
#include "tests/fakes/http.h"
#include "tests/fakes/messenger.h"
#include "tests/fakes/neighbours.h"
#include "tests/fakes/registry.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/sockets.h"
#include "tests/fakes/system.h"
#include "tests/fakes/user_store.h"

namespace murmelix::fakes {

struct State {
    Registry registry;
    System system;
    Clock clock;
    Http http;
    Files files;
    UserStores user_stores;
    MessageBoxes message_boxes;
    Network network;
    Servers servers;
    Secrets secrets;
    ForeignWindows foreign_windows;
    Neighbours neighbours;
    Messenger messenger;
    AgentServer agent;
};

State& state();

// A fresh machine: everything as it was at the start.
void reset();

} // namespace murmelix::fakes
