#include "ui/global_key.h"

#include <utility>

namespace murmelix::ui {

bool GlobalKey::Set(const Shortcut& key) {
    if (key == key_) {
        return true;
    }
    int id = 0;
    if (key) {
        id = native::takeKey(*this, key);
        if (id == 0) {
            return false;
        }
    }
    key_ = key;
    if (const int before = std::exchange(id_, id); before != 0) {
        native::releaseKey(before);
    }
    return true;
}

bool GlobalKey::canBe(const Shortcut& key) {
    if (key.key == Key::tab || key.key == Key::enter || key.key == Key::escape || !key) {
        return false;
    }
    if (key.key >= Key::f1 && key.key <= Key::f12) {
        return key != Shortcut(Key::f4, alt_key); // closes windows
    }
    // Alt and the blank open the menu of a window.
    return (key.shift & (control_key | alt_key)) != 0 && key != Shortcut(Key::space, alt_key);
}

} // namespace murmelix::ui
