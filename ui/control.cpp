#include "ui/control.h"

#include <algorithm>
#include <cmath>

#include "common/text.h"
#include "ui/form.h"
#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix::ui {

namespace {

bool covers(const Rect& front, const Rect& back) {
    return front.left <= back.left && front.top <= back.top && front.left + front.width >= back.left + back.width &&
           front.top + front.height >= back.top + back.height;
}

bool meet(const Rect& one, const Rect& other) {
    return one.left < other.left + other.width && other.left < one.left + one.width &&
           one.top < other.top + other.height && other.top < one.top + one.height;
}

} // namespace

int toPixels(int twips) {
    const double pixels = twips / twipsPerPixel();
    return static_cast<int>(pixels < 0 ? pixels - 0.5 : pixels + 0.5);
}

int toTwips(int pixels) {
    return static_cast<int>(pixels * twipsPerPixel());
}

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

Control::Control(Control& parent, Make make, const std::u16string& caption) : parent_(&parent), caption_(caption) {
    handle_ = make(*this, parent.handle_, caption);
    parent.children_.push_back(this);
    parent.stacking_.push_back(this);
}

Control::Control(const std::u16string& caption) : caption_(caption) {}

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
    setOLEDropMode(DropMode::none);
    native::destroy(handle_);
}

Form& Control::form() {
    Control* top = this;
    while (top->parent_) {
        top = top->parent_;
    }
    return static_cast<Form&>(*top);
}

const Form& Control::form() const {
    return const_cast<Control*>(this)->form();
}

void Control::setCaption(const std::u16string& caption) {
    const bool changed = caption != caption_;
    caption_ = caption;
    native::setCaption(handle_, caption);
    if (changed) {
        captionChanged();
    }
}

std::u16string Control::AccessibleName() const {
    if (!accessible_name_.empty()) {
        return accessible_name_;
    }
    if (std::u16string shown = nameShown(); !shown.empty()) {
        return shown;
    }
    const Control* label = labelBefore();
    return label ? label->nameShown() : std::u16string();
}

void Control::setAccessibleName(const std::u16string& name) {
    if (name != accessible_name_) {
        accessible_name_ = name;
        tell(AccessibleEvent::name);
    }
}

const Control* Control::labelBefore() const {
    if (!parent_ || accessible().role == Role::label) {
        return nullptr;
    }
    const auto all = form().tabOrder();
    for (auto at = std::find(all.begin(), all.end(), this); at != all.begin();) {
        const Control& before = **--at;
        if (before.takesFocus()) {
            return nullptr;
        }
        if (before.visible_ && before.accessible().role == Role::label && !before.nameShown().empty()) {
            return &before;
        }
    }
    return nullptr;
}

char16_t Control::accessKey() const {
    if (const char16_t own = mnemonic(); own != 0 || !takesFocus()) {
        return own;
    }
    const Control* label = labelBefore();
    return label ? label->mnemonic() : char16_t{0};
}

void Control::tell(AccessibleEvent event, int part) const {
    if (handle_) {
        native::tell(handle_, event, part);
    }
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

Colour Control::BackColor() const {
    const Control* of = this;
    while (of->back_color_ == inherited_colour && of->parent_) {
        of = of->parent_;
    }
    return of->back_color_ == inherited_colour ? button_face : of->back_color_;
}

void Control::setBackColor(Colour colour) {
    if (colour != back_color_) {
        back_color_ = colour;
        native::invalidate(handle_);
    }
}

void Control::setForeColor(Colour colour) {
    if (colour != fore_color_) {
        fore_color_ = colour;
        native::invalidate(handle_);
    }
}

Size Control::sizeFor(const std::u16string& caption, int width) const {
    const Size pixels = native::captionSize(handle_, caption, ui::toPixels(width));
    // At some resolutions a pixel is no whole number of twips: in a part less, the last one would be missing.
    const auto twips = [](int length) { return static_cast<int>(std::ceil(length * twipsPerPixel())); };
    return {twips(pixels.width), twips(pixels.height)};
}

void Control::Move(const Rect& twips) {
    bounds_ = twips;
    const Rect before = pixels_;
    place(false);
    if (pixels_ == before) { // the window system is not troubled, but who moves a control may mean to see it drawn
        resized();
    }
}

void Control::ScrollChildren(int twips) {
    const Rect inside{0, 0, pixels_.width, pixels_.height};
    const int pixels = ui::toPixels(twips);
    native::scrollChildren(handle_, pixels);
    for (Control* child : children_) {
        if (meet(child->pixels_, inside)) {
            child->bounds_.top += twips;
            child->pixels_.top += pixels;
            child->place(false); // at some resolutions it is rounded in another way there
        }
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

void Control::Refresh() {
    native::drawNow(handle_);
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

void Control::setTabAfter(const Control* sibling) {
    auto& siblings = parent_->children_;
    std::erase(siblings, this);
    const auto found = std::ranges::find(siblings, sibling);
    siblings.insert(found == siblings.end() ? siblings.begin() : found + 1, this);
}

void Control::SetFocus() {
    if (!reachable()) {
        return;
    }
    native::setFocus(handle_);
    onFocus();
}

bool Control::Focused() const {
    return form().focused() == this;
}

char16_t Control::mnemonic() const {
    return use_mnemonic_ ? mnemonicOf(caption_) : char16_t{0};
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

bool Control::inSight() const {
    for (const Control* control = this; control->parent_; control = control->parent_) {
        if (!control->visible_ || control->covered()) {
            return false;
        }
    }
    return true;
}

bool Control::reachable() const {
    for (const Control* control = this; control->parent_; control = control->parent_) {
        if (!control->enabled_) {
            return false;
        }
    }
    return inSight();
}

void Control::onMnemonic() {
    SetFocus();
    onClick();
}

void Control::onClick() {
    raise(Click);
}

void Control::setOLEDropMode(DropMode mode) {
    if (mode == drop_mode_) {
        return;
    }
    native::acceptDrops(*this, mode == DropMode::manual);
    drop_mode_ = mode;
}

DropEffect Control::dropEffect(DropEffect allowed, int shift) const {
    if (drop_mode_ == DropMode::none || !reachable()) {
        return drop_none;
    }
    const DropEffect wanted = shift & control_key ? drop_copy : drop_move;
    return allowed & wanted ? wanted : allowed & (drop_copy | drop_move);
}

DropEffect Control::onDragOver(DropEffect allowed, int shift, double x, double y, DragState state) {
    DropEffect effect = state == DragState::leave ? drop_none : dropEffect(allowed, shift);
    if (OLEDragOver && drop_mode_ != DropMode::none) {
        const auto listener = OLEDragOver; // which may end with its control
        listener(effect, shift, x, y, state);
    }
    return effect & allowed;
}

DropEffect Control::onDrop(DataObject& data, DropEffect allowed, int button, int shift, double x, double y) {
    DropEffect effect = dropEffect(allowed, shift);
    if (effect == drop_none || !data.HasText()) {
        return onDragOver(drop_none, shift, x, y, DragState::leave);
    }
    if (OLEDragDrop) {
        const auto listener = OLEDragDrop; // which may end with its control
        listener(data, effect, button, shift, x, y);
    }
    return effect & allowed;
}

void Control::onWheel(int delta) {
    const int turned = -delta * rows_of_a_notch;
    if ((turned < 0) != (turned_ < 0)) { // the other way: what is left over is of no use
        turned_ = 0;
    }
    turned_ += turned;
    if (const int rows = turned_ / wheel_notch; rows != 0) {
        turned_ %= wheel_notch;
        raise(Wheel, rows);
    }
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

void Control::onFocusLost() {
    raise(LostFocus);
}

} // namespace murmelix::ui
