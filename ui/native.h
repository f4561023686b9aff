// What the toolkit needs of the window system, control by control: ui/win32 on Windows, nothing but memory in
// the tests. Rectangles are pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/form.h"

namespace murmelix::ui {
class Timer;
}

namespace murmelix::ui::native {

using Handle = std::uintptr_t;

Handle createControl(Control& control, Kind kind, Handle parent, const std::u16string& caption);
Handle createForm(Form& form, Handle owner, const std::u16string& caption, FormStyle style);
void destroy(Handle control);

void setCaption(Handle control, const std::u16string& caption);
void setVisible(Handle control, bool visible);
void setEnabled(Handle control, bool enabled);
void setUseMnemonic(Handle control, bool use);
void setToolTip(Handle control, const std::u16string& tip);
void setBounds(Handle control, const Rect& pixels);
void bringToFront(Handle control);
void setFocus(Handle control); // waits until its window is the active one
void setDefault(Handle button, bool is_default);
// Pixels; see Control::sizeFor. No width, or none above 0, is a single line.
Size captionSize(Handle control, const std::u16string& caption, int width);

void setHeading(Handle label);
void setCentered(Handle label);
void setChecked(Handle check_box, bool checked);
void clearItems(Handle list);
void addItem(Handle list, const std::u16string& text);
void setItems(Handle list, const std::vector<std::u16string>& items);
void selectItem(Handle list, int index);
bool droppedDown(Handle list);
void setScroll(Handle scroll_bar, int value, int max, int page);
void setSunken(Handle picture_box, bool sunken);
void setPicture(Handle picture_box, const Picture& picture);
// The surface belongs to this picture box from now on and has its size.
void attach(Surface& surface, Handle picture_box);
// Drags the data with the mouse, whose left button is held; returns when it was let go or taken back, with what
// happened to it.
DropEffect drag(const DataObject& data, DropEffect allowed);
void acceptDrops(PictureBox& box, bool accepts);

void setOuterWidth(Handle form, int pixels); // stays on the screen where it can
void setInnerSize(Handle form, int width, int height);
void center(Handle form); // on its owner, else on the screen
Rect innerBounds(Handle form);
void setIcon(Handle form, const Picture& picture);
void show(Handle form);
// Serves this window and not its owner until it is hidden.
void runModal(const Form& form);

void addMenu(Handle form, const Menu& menu);
void addMenuItem(Handle form, const Menu& menu, MenuItem& item);
void changeMenu(Handle form, const Menu& menu);
void changeMenuItem(Handle form, const MenuItem& item);
void setMenuItemPicture(Handle form, const MenuItem& item, const Picture& picture);
void popupMenu(Handle form, const Menu& menu);

Handle startTimer(Timer& timer, int interval);
void stopTimer(Handle timer);

std::vector<std::u16string> files(const std::u16string& directory, const std::u16string& pattern);

} // namespace murmelix::ui::native
