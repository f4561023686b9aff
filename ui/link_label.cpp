#include "ui/link_label.h"

namespace murmelix::ui {

LinkLabel::LinkLabel(Control& parent, const std::u16string& caption)
    : Control(parent, native::createLinkLabel, caption) {}

} // namespace murmelix::ui
