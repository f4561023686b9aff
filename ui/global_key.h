#pragma once

#include <functional>

#include "ui/types.h"

namespace murmelix::ui {

// A key that is heard whichever program has the keyboard, for as long as this lives. It is heard once, however long it
// is held down.
class GlobalKey {
  public:
    GlobalKey() = default;
    ~GlobalKey() { Set({}); }
    GlobalKey(const GlobalKey&) = delete;
    GlobalKey& operator=(const GlobalKey&) = delete;

    // False where the system or a program has it already: the one from before stays. An empty one takes that away.
    bool Set(const Shortcut& key);
    const Shortcut& Key() const { return key_; }
    std::function<void()> Pressed;

    // Whether a key can be taken from all programs: with Ctrl or Alt, or one of F1 to F12, and none that every window
    // has.
    static bool canBe(const Shortcut& key);

  private:
    Shortcut key_;
    int id_ = 0;
};

// Carried out by win32/global_key.cpp.
namespace native {
// What it is known by from then on; 0 where it cannot be had.
int takeKey(GlobalKey& listener, const Shortcut& key);
void releaseKey(int id);
} // namespace native

} // namespace murmelix::ui
