// The windows inside a window of another program, and input sent to them. Every operation takes a handle of a window
// that is gone, and returns in time where the other program does not answer.
#pragma once

#include <cstdint>
#include <string_view>

namespace murmelix::platform {

// The first one that is directly in `parent`, of that class, and with that caption where one is given; 0 where there is
// none.
std::intptr_t childWindow(std::intptr_t parent, const char* class_name, const char* caption = nullptr);
// The first one after `after`, which may be of another class.
std::intptr_t nextChildWindow(std::intptr_t parent, std::intptr_t after, const char* class_name);
// In the ANSI code page.
void sendText(std::intptr_t window, std::string_view text);
// A key goes down or up; `code` is a virtual-key code.
void sendKey(std::intptr_t window, unsigned code, bool down);

} // namespace murmelix::platform
