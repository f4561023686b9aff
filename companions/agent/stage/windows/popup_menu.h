// A menu that pops up at a place on the screen.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companions/agent/stage/windows/handles.h"

namespace agent::stage {

struct MenuEntry {
    std::u16string caption = {};
    int id = 0;
    bool enabled = true;
    bool is_default = false;
    bool is_line = false; // parts the entries above from those below
};

// Runs the message loop until the user chooses an entry, whose id is the result, or closes the menu. The keyboard is
// the menu's until then, and then that of the window that had it.
std::optional<int> runPopupMenu(HWND owner, const std::vector<MenuEntry>& entries, int x, int y);

} // namespace agent::stage
