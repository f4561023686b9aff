#include "ui/picture_box.h"

#include "ui/native.h"

namespace murmelix::ui {

PictureBox::PictureBox(Control& parent) : Control(parent, native::createPictureBox, u"") {}

PictureBox::~PictureBox() {
    setOLEDropMode(DropMode::none);
}

void PictureBox::setOLEDropMode(DropMode mode) {
    if (mode == drop_mode_) {
        return;
    }
    native::acceptDrops(*this, mode == DropMode::manual);
    drop_mode_ = mode;
}

void PictureBox::OLEDrag() {
    DataObject data;
    DropEffect allowed = drop_copy;
    if (OLEStartDrag) {
        OLEStartDrag(data, allowed);
    }
    const DropEffect effect = allowed == drop_none ? drop_none : native::drag(data, allowed);
    if (OLECompleteDrag) {
        OLECompleteDrag(effect);
    }
}

DropEffect PictureBox::dropEffect(DropEffect allowed, int shift) const {
    if (drop_mode_ == DropMode::none || !reachable()) {
        return drop_none;
    }
    const DropEffect wanted = shift & control_key ? drop_copy : drop_move;
    return allowed & wanted ? wanted : allowed & (drop_copy | drop_move);
}

DropEffect PictureBox::onDrop(DataObject& data, DropEffect allowed, int button, int shift, double x, double y) {
    DropEffect effect = dropEffect(allowed, shift);
    if (effect == drop_none || !data.HasText()) {
        return drop_none;
    }
    if (OLEDragDrop) {
        OLEDragDrop(data, effect, button, shift, x, y);
    }
    return effect & allowed;
}

void PictureBox::setSunken(bool sunken) {
    native::setSunken(handle_, sunken);
}

void PictureBox::setPicture(const Picture& picture) {
    picture_ = picture;
    native::invalidate(handle_);
}

void PictureBox::resized() {
    native::attach(surface_, handle_);
    raise(Resize);
}

} // namespace murmelix::ui
