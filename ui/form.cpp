#include "ui/form.h"

#include <algorithm>

#include "common/text.h"
#include "ui/button.h"
#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix::ui {

namespace {

void collect(const std::vector<Control*>& children, std::vector<Control*>& all) {
    for (Control* child : children) {
        all.push_back(child);
        collect(child->Children(), all);
    }
}

} // namespace

Form::Form(Form* owner, const std::u16string& caption, FormStyle style, const char16_t* class_name)
    : Control(caption), style_(style) {
    visible_ = false;
    handle_ = native::createForm(*this, owner ? owner->handle() : 0, caption, style, class_name);
}

Form::~Form() = default;

void Form::load() {
    if (!loaded_) {
        loaded_ = true;
        Form_Load();
        if (style_ != FormStyle::sizable && !placed_) {
            Center();
        }
    }
}

void Form::shown() {
    if (!focused_) {
        focusFirst();
    }
    markDefault();
}

void Form::Show() {
    load();
    visible_ = true;
    native::show(handle_, true);
    shown();
}

void Form::ShowInactive() {
    load();
    visible_ = true;
    native::show(handle_, false);
    shown();
}

void Form::Hide() {
    setVisible(false);
}

void Form::ShowModal() {
    Show();
    native::runModal(*this);
}

void Form::Unload() {
    if (!loaded_) {
        return;
    }
    loaded_ = false;
    Form_Unload();
    Hide();
}

void Form::setWidth(int twips) {
    native::setOuterWidth(handle_, toPixels(twips));
    bounds_.width = twips;
}

int Form::ScaleWidth() const {
    return toTwips(native::innerBounds(handle_).width);
}

int Form::ScaleHeight() const {
    return toTwips(native::innerBounds(handle_).height);
}

void Form::setScale(int width, int height) {
    native::setInnerSize(handle_, toPixels(width), toPixels(height));
    bounds_.height = height;
}

void Form::Center() {
    native::center(handle_);
}

Rect Form::Place() const {
    return native::place(handle_);
}

void Form::setPlace(const Rect& pixels) {
    placed_ = true;
    native::setPlace(handle_, pixels);
}

Form::State Form::WindowState() const {
    return native::windowState(handle_);
}

void Form::setWindowState(State state) {
    native::setWindowState(handle_, state);
}

void Form::Activate() {
    native::activate(handle_);
}

void Form::onSettingsChange() {
    replace();
    onSize();
}

// Laying out can change the size, of which the window system tells at once.
void Form::onSize() {
    if (!laying_out_) {
        laying_out_ = true;
        layOut();
        laying_out_ = false;
    }
    if (Paint) {
        Redraw();
    }
}

void Form::Redraw() {
    native::invalidate(handle_);
}

void Form::setIcon(const Picture& picture) {
    native::setIcon(handle_, picture);
}

void Form::PopupMenu(Menu& menu) {
    native::popupMenu(menu);
}

void Form::PopupMenu(Menu& menu, const Control& below) {
    native::popupMenuBelow(menu, below.handle());
}

void Form::addAccelerator(const Shortcut& shortcut, std::function<void()> action) {
    accelerators_.emplace_back(shortcut, std::move(action));
}

std::vector<Control*> Form::tabOrder() const {
    std::vector<Control*> all;
    collect(Children(), all);
    return all;
}

std::vector<Control*> Form::reachableOrder() const {
    auto order = tabOrder();
    std::erase_if(order, [](const Control* control) { return !control->takesFocus() || !control->reachable(); });
    return order;
}

void Form::focusFirst() {
    if (DefaultButton && DefaultButton->reachable()) {
        return DefaultButton->SetFocus();
    }
    const auto order = reachableOrder();
    if (!order.empty()) {
        order.front()->SetFocus();
    }
}

void Form::keepFocus() {
    if (focused_ && !focused_->reachable()) {
        const auto all = tabOrder();
        const auto lost = std::find(all.begin(), all.end(), focused_);
        const auto can = [](const Control* control) { return control->takesFocus() && control->reachable(); };
        auto next = std::find_if(lost, all.end(), can);
        if (next == all.end()) {
            next = std::find_if(all.begin(), lost, can);
        }
        if (next != all.end() && can(*next)) {
            (*next)->SetFocus();
        } else {
            focused_ = nullptr;
            native::setFocus(handle_);
        }
    } else if (!focused_ && visible_) {
        focusFirst();
    }
    markDefault();
}

void Form::markDefault() {
    Control* button = focused_ && focused_->canBeDefault() ? focused_ : DefaultButton;
    if (button && !button->reachable()) {
        button = nullptr;
    }
    if (button == marked_) {
        return;
    }
    if (marked_) {
        marked_->showDefault(false);
    }
    marked_ = button;
    if (marked_) {
        marked_->showDefault(true);
    }
}

// Among the buttons, check boxes and links of one frame.
bool Form::moveInGroup(bool back) {
    if (!focused_ || !focused_->movesByArrows()) {
        return false;
    }
    auto group = reachableOrder();
    std::erase_if(group, [&](const Control* control) {
        return control->Parent() != focused_->Parent() || !control->movesByArrows();
    });
    if (back) {
        std::reverse(group.begin(), group.end());
    }
    auto next = std::find(group.begin(), group.end(), focused_);
    if (next == group.end() || ++next == group.end()) {
        next = group.begin();
    }
    if (next != group.end()) {
        (*next)->SetFocus();
    }
    return true;
}

bool Form::onAccelerator(const Shortcut& key) {
    for (const auto& [shortcut, action] : accelerators_) {
        if (shortcut == key) {
            const auto does = action; // which may add others
            does();
            return true;
        }
    }
    for (Menu* menu : menus_) {
        for (MenuItem* item : menu->items()) {
            if (item->shortcut() == key) {
                raise(menu->Popup); // what it is about may be looked at only when the menu is shown
                if (item->reachable()) {
                    item->onClick();
                }
                return true;
            }
        }
    }
    return false;
}

bool Form::onKey(const Shortcut& pressed) {
    if (focused_ && focused_->KeyPress) {
        const auto listener = focused_->KeyPress; // which may end with its control
        if (listener(pressed)) {
            return true;
        }
    }
    if (onAccelerator(pressed)) {
        return true;
    }
    if (pressed.shift & (control_key | alt_key)) {
        return false;
    }
    const Key key = pressed.key;
    const bool shift = pressed.shift & shift_key;
    if (key == Key::tab) {
        auto order = reachableOrder();
        if (order.empty()) {
            return true;
        }
        if (shift) {
            std::reverse(order.begin(), order.end());
        }
        auto next = std::find(order.begin(), order.end(), focused_);
        if (next == order.end() || ++next == order.end()) {
            next = order.begin();
        }
        (*next)->SetFocus();
        return true;
    }
    if (key == Key::enter) {
        Control* button = focused_ && focused_->clickedByEnter() ? focused_ : DefaultButton;
        if (!button || !button->reachable()) {
            return false;
        }
        button->onClick();
        return true;
    }
    if (key == Key::escape) {
        if (!CancelButton) {
            return onEscape();
        }
        if (!CancelButton->reachable()) {
            return false;
        }
        CancelButton->onClick();
        return true;
    }
    if (key == Key::up || key == Key::left || key == Key::down || key == Key::right) {
        return moveInGroup(key == Key::up || key == Key::left);
    }
    return false;
}

bool Form::onMnemonicKey(char16_t letter) {
    // A letter of the menu bar is the menu's, whatever else it stands for.
    const auto opens = [&](const Menu* menu) {
        return menu->inBar() && menu->Enabled() && mnemonicOf(menu->Caption()) == toUpper(letter);
    };
    if (std::any_of(menus_.begin(), menus_.end(), opens)) {
        return false;
    }
    const auto order = tabOrder();
    const auto start = std::find(order.begin(), order.end(), focused_);
    const std::size_t first = start == order.end() ? 0 : static_cast<std::size_t>(start - order.begin()) + 1;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::size_t at = (first + i) % order.size();
        if (letter == 0 || order[at]->mnemonic() != toUpper(letter) || !order[at]->reachable()) {
            continue;
        }
        if (order[at]->takesFocus()) {
            order[at]->onMnemonic();
            return true;
        }
        // A label or frame stands for the next control that takes the focus.
        for (std::size_t next = at + 1; next < order.size(); ++next) {
            if (order[next]->takesFocus() && order[next]->reachable()) {
                order[next]->SetFocus();
                return true;
            }
        }
    }
    return false;
}

} // namespace murmelix::ui
