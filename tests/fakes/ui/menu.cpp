#include "ui/menu.h"

#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createMenu(Menu&) {
    static Handle last = 0;
    return ++last;
}

void popupMenu(const Menu& menu) {
    raise(menu.Popup);
    fakes::screen().popups.push_back(&menu);
}

void popupMenuBelow(const Menu& menu, Handle) {
    popupMenu(menu);
}

void destroyMenu(Menu& menu) {
    std::erase(fakes::screen().popups, &menu);
}

void addToBar(const Menu&) {}
void addToBar(BarItem&) {}
void removeFromBar(BarItem&) {}
void addBelow(const Menu&) {}
void changeMenu(const Menu&) {}
void addMenuItem(MenuItem&) {}
void changeMenuItem(const MenuItem&) {}
void removeMenuItem(const MenuItem&) {}
void setMenuItemPicture(const MenuItem&) {}

} // namespace murmelix::ui::native
