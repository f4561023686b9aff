#pragma once

#include <memory>

#include "platform/messenger_api.h"

namespace murmelix::platform::win32 {

// The client that a ProgID stands for.
std::unique_ptr<MessengerApi> connectMessenger(const char16_t* prog_id, MessengerEvents events);

} // namespace murmelix::platform::win32
