#include "ui/form.h"

#include <algorithm>

#include "common/text.h"
#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix::ui {

namespace {

// The accelerator letter of a caption in upper case, 0 when it has none.
char16_t mnemonicOf(const std::u16string& caption) {
    for (std::size_t at = 0; at + 1 < caption.size(); ++at) {
        if (caption[at] != u'&') {
            continue;
        }
        if (caption[at + 1] != u'&') {
            return toUpper(caption[at + 1]);
        }
        ++at;
    }
    return 0;
}

void collect(const std::vector<Control*>& children, std::vector<Control*>& all) {
    for (Control* child : children) {
        all.push_back(child);
        collect(child->Children(), all);
    }
}

} // namespace

Menu::Menu(Form& form, const std::u16string& caption)
    : form_(form), caption_(caption), position_(static_cast<int>(form.menus_.size())) {
    form.menus_.push_back(this);
    native::addMenu(form.handle(), *this);
}

void Menu::setCaption(const std::u16string& caption) {
    caption_ = caption;
    native::changeMenu(form_.handle(), *this);
}

void Menu::setEnabled(bool enabled) {
    enabled_ = enabled;
    native::changeMenu(form_.handle(), *this);
}

MenuItem::MenuItem(Menu& menu, const std::u16string& caption)
    : menu_(menu), caption_(caption), position_(static_cast<int>(menu.items_.size())) {
    menu.items_.push_back(this);
    native::addMenuItem(menu.form().handle(), menu, *this);
}

void MenuItem::setCaption(const std::u16string& caption) {
    caption_ = caption;
    native::changeMenuItem(menu_.form().handle(), *this);
}

void MenuItem::setEnabled(bool enabled) {
    enabled_ = enabled;
    native::changeMenuItem(menu_.form().handle(), *this);
}

void MenuItem::setPicture(const Picture& picture) {
    picture_ = picture;
    native::setMenuItemPicture(menu_.form().handle(), *this, picture);
}

void MenuItem::onClick() {
    if (enabled_ && Click) {
        Click();
    }
}

Form::Form(Form* owner, const std::u16string& caption, FormStyle style) : Control(nullptr, Kind::form, caption) {
    visible_ = false;
    handle_ = native::createForm(*this, owner ? owner->handle() : 0, caption, style);
}

Form::~Form() = default;

void Form::Show() {
    if (!loaded_) {
        loaded_ = true;
        Form_Load();
        Center();
    }
    visible_ = true;
    native::show(handle_);
    if (!focused_) {
        focusFirst();
    }
    markDefault();
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

void Form::onSettingsChange() {
    replace();
    layOut();
}

void Form::setIcon(const Picture& picture) {
    native::setIcon(handle_, picture);
}

void Form::PopupMenu(Menu& menu) {
    native::popupMenu(handle_, menu);
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
    Control* button = dynamic_cast<Button*>(focused_) ? focused_ : DefaultButton;
    if (button && !button->reachable()) {
        button = nullptr;
    }
    if (button == marked_) {
        return;
    }
    if (marked_) {
        native::setDefault(marked_->handle(), false);
    }
    marked_ = button;
    if (marked_) {
        native::setDefault(marked_->handle(), true);
    }
}

// Among the buttons, check boxes and links of one frame.
bool Form::moveInGroup(bool back) {
    const auto belongs = [](const Control* control) {
        return dynamic_cast<const Button*>(control) || dynamic_cast<const CheckBox*>(control) ||
               dynamic_cast<const LinkLabel*>(control);
    };
    if (!focused_ || !belongs(focused_)) {
        return false;
    }
    auto group = reachableOrder();
    std::erase_if(group,
                  [&](const Control* control) { return control->Parent() != focused_->Parent() || !belongs(control); });
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

bool Form::onKey(Key key, bool shift) {
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
        Control* pressed =
            dynamic_cast<Button*>(focused_) || dynamic_cast<LinkLabel*>(focused_) ? focused_ : DefaultButton;
        if (!pressed || !pressed->reachable()) {
            return false;
        }
        pressed->onClick();
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
    const auto order = tabOrder();
    const auto start = std::find(order.begin(), order.end(), focused_);
    const std::size_t first = start == order.end() ? 0 : static_cast<std::size_t>(start - order.begin()) + 1;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::size_t at = (first + i) % order.size();
        if (!order[at]->UseMnemonic() || mnemonicOf(order[at]->Caption()) != toUpper(letter) ||
            !order[at]->reachable() || dynamic_cast<TextBox*>(order[at])) {
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
