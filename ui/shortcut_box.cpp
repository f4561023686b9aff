#include "ui/shortcut_box.h"

#include "ui/screen.h"

namespace murmelix::ui {

namespace {

const std::u16string& none() {
    static const std::u16string text = u"None";
    return text;
}

} // namespace

ShortcutBox::ShortcutBox(Control& parent) : TextBox(parent, none()) {
    KeyPress = [this](const Shortcut& key) { return pressed(key); };
    Change = [this] { textChanged(); };
}

void ShortcutBox::setValue(const Shortcut& value) {
    value_ = value;
    setText(value ? nameOf(value) : none());
}

void ShortcutBox::pick(const Shortcut& key) {
    setValue(key);
    SelectAll();
    if (Picked) {
        Picked(key);
    }
}

bool ShortcutBox::pressed(const Shortcut& key) {
    if (key.key == Key::tab || key.key == Key::enter || key.key == Key::escape) {
        return false;
    }
    if (key == Shortcut(Key::del)) {
        pick({});
    } else if (!Accepts || Accepts(key)) {
        pick(key);
    } else {
        beep();
    }
    return true;
}

// The system edits its field for itself: by Backspace, or from its menu. What gets shorter is taken away.
void ShortcutBox::textChanged() {
    const std::u16string shown = value_ ? nameOf(value_) : none();
    if (Text() == shown) {
        return;
    }
    if (value_ && Text().size() < shown.size()) {
        pick({});
    } else {
        setText(shown);
    }
}

} // namespace murmelix::ui
