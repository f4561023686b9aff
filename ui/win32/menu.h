// What forms tell of menus.
#pragma once

#include "ui/win32/window.h"

namespace murmelix::ui::win32 {

// A WM_CONTEXTMENU of a control.
void askForMenu(ControlWindow& window, LPARAM place);
// A WM_COMMAND of a menu; tells whether it is one of the toolkit's.
bool chooseCommand(UINT id);
void menuOpens(HMENU popup);
// A WM_MEASUREITEM and a WM_DRAWITEM of an item's picture in colours; tell whether they are of a menu.
bool measureMenuPicture(MEASUREITEMSTRUCT& what);
bool drawMenuPicture(const DRAWITEMSTRUCT& what);
void renewPictures(const Form& form);

} // namespace murmelix::ui::win32
