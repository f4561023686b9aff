#include "ui/control.h"

#include <algorithm>

#include "ui/form.h"
#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix::ui {

namespace {

bool covers(const Rect& front, const Rect& back) {
    return front.left <= back.left && front.top <= back.top && front.left + front.width >= back.left + back.width &&
           front.top + front.height >= back.top + back.height;
}

void raise(const std::function<void()>& event) {
    if (event) {
        event();
    }
}

} // namespace

int toPixels(int twips) {
    const double pixels = twips / twipsPerPixel();
    return static_cast<int>(pixels < 0 ? pixels - 0.5 : pixels + 0.5);
}

int toTwips(int pixels) {
    return static_cast<int>(pixels * twipsPerPixel());
}

Control::Control(Control* parent, Kind kind, const std::u16string& caption, std::uintptr_t)
    : parent_(parent), caption_(caption) {
    if (!parent) {
        return;
    }
    handle_ = native::createControl(*this, kind, parent->handle_, caption);
    parent->children_.push_back(this);
    parent->stacking_.push_back(this);
}

Control::~Control() {
    if (parent_) {
        std::erase(parent_->children_, this);
        std::erase(parent_->stacking_, this);
        Form& top = form();
        if (top.focused_ == this) {
            top.focused_ = nullptr;
        }
        if (top.marked_ == this) {
            top.marked_ = nullptr;
        }
    }
    native::destroy(handle_);
}

Form& Control::form() {
    Control* top = this;
    while (top->parent_) {
        top = top->parent_;
    }
    return static_cast<Form&>(*top);
}

void Control::setCaption(const std::u16string& caption) {
    caption_ = caption;
    native::setCaption(handle_, caption);
}

void Control::setVisible(bool visible) {
    visible_ = visible;
    native::setVisible(handle_, visible);
    if (parent_) {
        form().keepFocus();
    }
}

void Control::setEnabled(bool enabled) {
    if (enabled == enabled_) {
        return;
    }
    enabled_ = enabled;
    native::setEnabled(handle_, enabled);
    if (parent_) {
        form().keepFocus();
    }
}

void Control::setToolTipText(const std::u16string& tip) {
    tip_ = tip;
    native::setToolTip(handle_, tip);
}

void Control::setUseMnemonic(bool use) {
    use_mnemonic_ = use;
    native::setUseMnemonic(handle_, use);
}

Size Control::sizeFor(const std::u16string& caption, int width) const {
    const Size pixels = native::captionSize(handle_, caption, ui::toPixels(width));
    return {toTwips(pixels.width), toTwips(pixels.height)};
}

void Control::Move(const Rect& twips) {
    bounds_ = twips;
    const Rect before = pixels_;
    place(false);
    if (pixels_ == before) { // the window system is not troubled, but who moves a control may mean to see it drawn
        resized();
    }
}

void Control::replace() {
    if (parent_) {
        place(true);
    }
    for (Control* child : children_) {
        child->replace();
    }
}

// Every edge is rounded where it is in the window, so that edges that meet in twips meet in pixels, in whatever they
// are. What is moved so takes along what is in it.
void Control::place(bool anew) {
    int left = 0, top = 0;
    for (const Control* around = parent_; around && around->parent_; around = around->parent_) {
        left += around->bounds_.left;
        top += around->bounds_.top;
    }
    const int zero_x = ui::toPixels(left), zero_y = ui::toPixels(top);
    left += bounds_.left;
    top += bounds_.top;
    const int x = ui::toPixels(left), y = ui::toPixels(top);
    const Rect pixels{x - zero_x, y - zero_y, ui::toPixels(left + bounds_.width) - x,
                      ui::toPixels(top + bounds_.height) - y};
    if (pixels != pixels_ || anew) {
        pixels_ = pixels;
        native::setBounds(handle_, pixels);
        resized();
    }
    for (Control* child : children_) {
        child->place(false);
    }
}

void Control::ZOrder() {
    if (parent_) {
        std::erase(parent_->stacking_, this);
        parent_->stacking_.push_back(this);
    }
    native::bringToFront(handle_);
    if (parent_) {
        form().keepFocus();
    }
}

void Control::SetFocus() {
    if (!reachable()) {
        return;
    }
    native::setFocus(handle_);
    onFocus();
}

bool Control::covered() const {
    if (!parent_) {
        return false;
    }
    const auto& siblings = parent_->stacking_;
    const auto self = std::find(siblings.begin(), siblings.end(), this);
    return std::any_of(self + 1, siblings.end(), [&](const Control* front) {
        return front->visible_ && !front->children_.empty() && covers(front->bounds_, bounds_);
    });
}

bool Control::reachable() const {
    for (const Control* control = this; control->parent_; control = control->parent_) {
        if (!control->visible_ || !control->enabled_ || control->covered()) {
            return false;
        }
    }
    return true;
}

void Control::onMnemonic() {
    SetFocus();
    onClick();
}

void Control::onClick() {
    raise(Click);
}

void Control::onFocus() {
    Form& top = form();
    if (top.focused_ == this) {
        return;
    }
    top.focused_ = this;
    top.markDefault();
    raise(GotFocus);
}

Frame::Frame(Control& parent, const std::u16string& caption, Border border)
    : Control(&parent, border == Border::line ? Kind::frame : Kind::panel, caption) {}

void Label::setHeading() {
    native::setHeading(handle_);
}

void Label::setCentered() {
    native::setCentered(handle_);
}

void CheckBox::setValue(std::int16_t value) {
    const std::int16_t wanted = value != 0 ? 1 : 0;
    if (wanted == value_) {
        return;
    }
    value_ = wanted;
    native::setChecked(handle_, wanted != 0);
    raise(Click);
}

TextBox::TextBox(Control& parent, const std::u16string& text) : Control(&parent, Kind::text_box, text), text_(text) {}

void TextBox::setText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    native::setCaption(handle_, text);
    raise(Change);
}

void TextBox::onText(const std::u16string& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    raise(Change);
}

void DropDownList::Clear() {
    items_.clear();
    index_ = -1;
    native::clearItems(handle_);
}

void DropDownList::AddItem(const std::u16string& text) {
    items_.push_back(text);
    native::addItem(handle_, text);
}

void DropDownList::setItems(std::vector<std::u16string> items) {
    index_ = -1;
    if (items == items_) {
        return native::selectItem(handle_, index_);
    }
    items_ = std::move(items);
    native::setItems(handle_, items_);
}

void DropDownList::setListIndex(int index) {
    const int wanted = index >= 0 && index < ListCount() ? index : -1;
    if (wanted == index_) {
        return;
    }
    index_ = wanted;
    native::selectItem(handle_, wanted);
    raise(Click);
}

void DropDownList::onPick(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
    raise(Click);
}

void ScrollBar::setValue(int value) {
    const int wanted = std::clamp(value, 0, max_);
    if (wanted == value_) {
        return;
    }
    value_ = wanted;
    native::setScroll(handle_, value_, max_, page_);
    raise(Change);
}

void ScrollBar::setRange(int max, int page) {
    const int old = value_;
    max_ = std::max(max, 0);
    page_ = std::max(page, 1);
    value_ = std::min(value_, max_);
    native::setScroll(handle_, value_, max_, page_);
    if (value_ != old) {
        raise(Change);
    }
}

void PictureBox::setSunken(bool sunken) {
    native::setSunken(handle_, sunken);
}

void PictureBox::setPicture(const Picture& picture) {
    picture_ = picture;
    native::setPicture(handle_, picture);
}

void PictureBox::resized() {
    native::attach(surface_, handle_);
    raise(Resize);
}

} // namespace murmelix::ui
