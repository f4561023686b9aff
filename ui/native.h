// What the toolkit needs of the window system for any control; what one control needs alone is declared beside it.
// win32/ carries it out on Windows, the tests in memory. Rectangles are pixels.
#pragma once

#include <string>

#include "ui/control.h"

namespace murmelix::ui::native {

void destroy(Handle control);
void setCaption(Handle control, const std::u16string& caption);
void setVisible(Handle control, bool visible);
void setEnabled(Handle control, bool enabled);
void setUseMnemonic(Handle control, bool use);
void setToolTip(Handle control, const std::u16string& tip);
void setBounds(Handle control, const Rect& pixels);
// Those children that the inside of the control shows a part of, with what they show.
void scrollChildren(Handle control, int down);
void bringToFront(Handle control);
void setFocus(Handle control); // waits until its window is the active one
void invalidate(Handle control);
void drawNow(Handle control);
// A screen reader hears of it.
void tell(Handle control, AccessibleEvent event, int part);
void acceptDrops(Control& control, bool accepts);
// Pixels; see Control::sizeFor. No width, or none above 0, is a single line.
Size captionSize(Handle control, const std::u16string& caption, int width);

} // namespace murmelix::ui::native
