#include "ui/frame.h"

#include "ui/native.h"

namespace murmelix::ui {

Frame::Frame(Control& parent, const std::u16string& caption, Border border)
    : Control(parent, border == Border::line ? native::createFrame : native::createPanel, caption), border_(border) {}

void Frame::setHighlighted(bool highlighted) {
    if (highlighted != highlighted_) {
        highlighted_ = highlighted;
        native::invalidate(handle_);
    }
}

} // namespace murmelix::ui
