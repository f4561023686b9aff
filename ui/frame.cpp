#include "ui/frame.h"

namespace murmelix::ui {

Frame::Frame(Control& parent, const std::u16string& caption, Border border)
    : Control(parent, border == Border::line ? native::createFrame : native::createPanel, caption) {}

} // namespace murmelix::ui
