// What a session tells, as lines to compare.
#pragma once

#include <string>

#include "companions/messenger/irc/event.h"

namespace messenger_client::irc {

// "joined #a ann"
std::string describe(const Event& event);

} // namespace messenger_client::irc
