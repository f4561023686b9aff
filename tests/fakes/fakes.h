// The whole imitated machine.
#pragma once

#include "tests/fakes/agent.h"
#include "tests/fakes/ansi.h"
#include "tests/fakes/messenger.h"
#include "tests/fakes/neighbours.h"
#include "tests/fakes/registry.h"
#include "tests/fakes/system.h"

namespace murmelix::fakes {

struct State {
    Registry registry;
    System system;
    MessageBoxes message_boxes;
    Neighbours neighbours;
    Messenger messenger;
    AgentServer agent;
};

State& state();

// A fresh machine: everything as it was at the start.
void reset();

} // namespace murmelix::fakes
