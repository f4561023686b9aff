#include "ui/line.h"

namespace murmelix::ui {

Line::Line(Control& parent) : Control(parent, native::createLine, u"") {}

} // namespace murmelix::ui
