#pragma once

#include "ui/text_box.h"

namespace murmelix::ui {

// A field that shows a key with those held beside it, and takes the one that is pressed in it. Backspace takes it away;
// Tab, Enter and Escape do what they do elsewhere.
class ShortcutBox : public TextBox {
  public:
    explicit ShortcutBox(Control& parent);
    Accessible accessible() const override { return {Role::key_field, {}}; }
    const Shortcut& Value() const { return value_; }
    void setValue(const Shortcut& value); // raises nothing
    // The user pressed a key that `Accepts` has nothing against: others are refused with a sound.
    std::function<bool(const Shortcut& key)> Accepts;
    std::function<void(const Shortcut& key)> Picked;

  private:
    bool pressed(const Shortcut& key);
    void textChanged();
    void pick(const Shortcut& key);

    Shortcut value_;
};

} // namespace murmelix::ui
