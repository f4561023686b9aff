#include "ui/global_key.h"

#include <algorithm>

#include "tests/fakes/ui/windows.h"

namespace murmelix {

namespace ui {

int native::takeKey(GlobalKey& listener, const Shortcut& key) {
    auto& screen = fakes::screen();
    const bool own =
        std::ranges::any_of(screen.global_keys, [&](const auto& entry) { return entry.second.key == key; });
    if (own || std::ranges::find(screen.keys_of_others, key) != screen.keys_of_others.end()) {
        return 0;
    }
    static int last = 0;
    screen.global_keys[++last] = {key, &listener};
    return last;
}

void native::releaseKey(int id) {
    fakes::screen().global_keys.erase(id);
}

} // namespace ui

bool fakes::pressAnywhere(const ui::Shortcut& key) {
    for (const auto& [id, taken] : screen().global_keys) {
        if (taken.key == key) {
            const auto pressed = taken.listener->Pressed;
            ui::raise(pressed);
            return true;
        }
    }
    return false;
}

} // namespace murmelix
