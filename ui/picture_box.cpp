#include "ui/picture_box.h"

#include <utility>

#include "ui/native.h"

namespace murmelix::ui {

PictureBox::PictureBox(Control& parent) : Control(parent, native::createPictureBox, u"") {}

PictureBox::~PictureBox() {
    *alive_ = false;
}

void PictureBox::setLooksLike(Role role, const std::u16string& value) {
    const bool changed = value != value_;
    role_ = role;
    value_ = value;
    if (changed) {
        tell(AccessibleEvent::value);
    }
}

Accessible PictureBox::accessible() const {
    if (role_) {
        return {*role_, {}};
    }
    if (parts_) {
        return {Role::list, {}};
    }
    if (!Children().empty()) {
        return {Role::pane, {}};
    }
    return takes_focus_ ? Accessible{Role::button, u"Press"} : Accessible{Role::picture, {}};
}

void PictureBox::OLEDrag() {
    DataObject data;
    DropEffect allowed = drop_copy;
    if (OLEStartDrag) {
        OLEStartDrag(data, allowed);
    }
    const auto alive = alive_; // windows are served meanwhile, and one of them may end this box
    const DropEffect effect = allowed == drop_none ? drop_none : native::drag(handle_, data, allowed);
    if (*alive && OLECompleteDrag) {
        OLECompleteDrag(effect);
    }
}

void PictureBox::setSunken(bool sunken) {
    native::setSunken(handle_, sunken);
}

void PictureBox::setPicture(const Picture& picture) {
    picture_ = picture;
    native::invalidate(handle_);
}

void PictureBox::setImage(std::optional<Image> image) {
    image_ = std::move(image);
    native::imageChanged(handle_);
}

void PictureBox::resized() {
    native::attach(surface_, handle_);
    raise(Resize);
}

} // namespace murmelix::ui
