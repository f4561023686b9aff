#include "ui/menu.h"

#include <map>
#include <optional>

#include "common/com/handles.h"
#include "ui/form.h"
#include "ui/win32/menu.h"
#include "ui/win32/window.h"

namespace murmelix::ui {

using com::wide;
using namespace win32;

namespace {

constexpr UINT first_command = 1000, last_command = 0xDFFF; // below those of the system

std::map<HMENU, Menu*>& menus() {
    static std::map<HMENU, Menu*> all;
    return all;
}

struct Command {
    MenuItem* item = nullptr;
    BarItem* in_bar = nullptr; // where it is no item of a menu
    Bitmap picture{};
};

std::map<UINT, Command>& commands() {
    static std::map<UINT, Command> all;
    return all;
}

// Where a menu opens that the keyboard has asked for.
std::optional<POINT>& asked_at() {
    static std::optional<POINT> place;
    return place;
}

UINT freeCommand() {
    UINT id = first_command;
    for (const auto& [used, command] : commands()) {
        if (used != id) {
            break;
        }
        ++id;
    }
    if (id > last_command) {
        throw com::Error(E_OUTOFMEMORY, u"There are too many menu items.");
    }
    return id;
}

HMENU menuOf(native::Handle handle) {
    return reinterpret_cast<HMENU>(handle);
}

HMENU popupOf(const MenuItem& item) {
    return menuOf(item.menu().handle());
}

UINT placeOf(const MenuItem& item) {
    return static_cast<UINT>(item.position());
}

UINT commandOf(const MenuItem& item) {
    return GetMenuItemID(popupOf(item), item.position());
}

void appendToBar(const Form& form, UINT flags, UINT_PTR menu_or_command, const std::u16string& caption) {
    HWND hwnd = windowOf(form.handle());
    HMENU bar = GetMenu(hwnd);
    if (!bar) {
        bar = CreateMenu();
    }
    AppendMenuW(bar, flags, menu_or_command, wide(caption));
    SetMenu(hwnd, bar);
}

void popUp(const Menu& menu, POINT at) {
    HWND hwnd = windowOf(menu.form().handle());
    SetForegroundWindow(hwnd); // else the menu would stay when the user clicks elsewhere
    TrackPopupMenu(menuOf(menu.handle()), TPM_RIGHTBUTTON, at.x, at.y, 0, hwnd, nullptr);
    PostMessageW(hwnd, WM_NULL, 0, 0); // wakes the loop; nothing is lost with it
}

} // namespace

void win32::askForMenu(ControlWindow& window, LPARAM place) {
    POINT at{static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    const bool by_keyboard = at.x == -1 && at.y == -1;
    if (by_keyboard) {
        at = window.menuPlace();
        ClientToScreen(window.hwnd(), &at);
        asked_at() = at;
    } else {
        window.onMenuAsked(at);
    }
    raise(window.control().ContextMenu);
    asked_at().reset();
}

bool win32::chooseCommand(UINT id) {
    const auto found = commands().find(id);
    if (found == commands().end()) {
        return false;
    }
    MenuItem* const item = found->second.item;
    BarItem* const in_bar = found->second.in_bar;
    raise((item ? item->menu().form() : in_bar->form()).UserActs);
    if (item) {
        item->onClick();
    } else {
        in_bar->onClick();
    }
    return true;
}

void win32::menuOpens(HMENU popup) {
    const auto found = menus().find(popup);
    if (found != menus().end()) {
        raise(found->second->Popup);
    }
}

bool win32::measureMenuPicture(MEASUREITEMSTRUCT& what) {
    if (what.CtlType != ODT_MENU) {
        return false;
    }
    const int size = systemMetric(SM_CXSMICON);
    what.itemWidth = static_cast<UINT>(size + scaled(4)); // with a gap before the caption
    what.itemHeight = static_cast<UINT>(size);
    return true;
}

bool win32::drawMenuPicture(const DRAWITEMSTRUCT& what) {
    if (what.CtlType != ODT_MENU) {
        return false;
    }
    const auto found = commands().find(what.itemID);
    if (found != commands().end() && found->second.item) {
        const int size = systemMetric(SM_CXSMICON);
        const Icon icon = loadPicture(found->second.item->picture(), size);
        const int above = (what.rcItem.bottom - what.rcItem.top - size) / 2;
        DrawIconEx(what.hDC, what.rcItem.left, what.rcItem.top + above, icon.get(), size, size, 0, nullptr, DI_NORMAL);
    }
    return true;
}

void win32::renewPictures(const Form& form) {
    for (const Menu* menu : form.menus()) {
        for (const MenuItem* item : menu->items()) {
            if (item->picture()) {
                native::setMenuItemPicture(*item);
            }
        }
    }
}

namespace native {

Handle createMenu(Menu& menu) {
    HMENU popup = CreatePopupMenu();
    menus()[popup] = &menu;
    return reinterpret_cast<Handle>(popup);
}

void destroyMenu(Menu& menu) {
    HMENU popup = menuOf(menu.handle());
    menus().erase(popup);
    if (menu.inBar()) {
        RemoveMenu(GetMenu(windowOf(menu.form().handle())), static_cast<UINT>(menu.position()), MF_BYPOSITION);
    } else if (menu.above()) {
        RemoveMenu(menuOf(menu.above()->handle()), static_cast<UINT>(menu.position()), MF_BYPOSITION);
    }
    DestroyMenu(popup);
}

void addToBar(const Menu& menu) {
    appendToBar(menu.form(), MF_POPUP, menu.handle(), menu.Caption());
}

void addToBar(BarItem& item) {
    const UINT id = freeCommand();
    commands()[id].in_bar = &item;
    appendToBar(item.form(), MF_STRING, id, item.Caption());
}

void removeFromBar(BarItem& item) {
    HMENU bar = GetMenu(windowOf(item.form().handle()));
    commands().erase(GetMenuItemID(bar, item.position()));
    RemoveMenu(bar, static_cast<UINT>(item.position()), MF_BYPOSITION);
}

void addBelow(const Menu& menu) {
    AppendMenuW(menuOf(menu.above()->handle()), MF_POPUP, menu.handle(), wide(menu.Caption()));
}

void changeMenu(const Menu& menu) {
    HWND hwnd = windowOf(menu.form().handle());
    HMENU above = menu.inBar() ? GetMenu(hwnd) : menu.above() ? menuOf(menu.above()->handle()) : nullptr;
    if (!above) {
        return;
    }
    ModifyMenuW(above, static_cast<UINT>(menu.position()),
                MF_BYPOSITION | MF_POPUP | MF_STRING | (menu.Enabled() ? MF_ENABLED : MF_GRAYED), menu.handle(),
                wide(menu.Caption()));
    if (menu.inBar()) {
        DrawMenuBar(hwnd);
    }
}

void addMenuItem(MenuItem& item) {
    const UINT id = freeCommand();
    commands()[id].item = &item;
    AppendMenuW(popupOf(item), item.separator() ? MF_SEPARATOR : MF_STRING, id, wide(item.text()));
}

void changeMenuItem(const MenuItem& item) {
    const std::u16string text = item.text();
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_STATE;
    info.fState = (item.Enabled() ? MFS_ENABLED : MFS_GRAYED) | (item.Checked() ? MFS_CHECKED : MFS_UNCHECKED) |
                  (item.Default() ? MFS_DEFAULT : 0);
    info.dwTypeData = const_cast<wchar_t*>(wide(text));
    SetMenuItemInfoW(popupOf(item), placeOf(item), TRUE, &info);
}

void removeMenuItem(const MenuItem& item) {
    commands().erase(commandOf(item));
    RemoveMenu(popupOf(item), placeOf(item), MF_BYPOSITION);
}

void setMenuItemPicture(const MenuItem& item) {
    const UINT id = commandOf(item);
    if (item.inColours()) { // drawn by drawMenuPicture, for not every system draws what is transparent
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_BITMAP;
        info.hbmpItem = HBMMENU_CALLBACK;
        SetMenuItemInfoW(popupOf(item), placeOf(item), TRUE, &info);
        return;
    }
    Bitmap bitmap = menuPicture(item.picture());
    SetMenuItemBitmaps(popupOf(item), id, MF_BITMAP, bitmap.get(), bitmap.get());
    commands().at(id).picture = std::move(bitmap);
}

void popupMenu(const Menu& menu) {
    POINT mouse{};
    GetCursorPos(&mouse);
    popUp(menu, asked_at().value_or(mouse));
}

void popupMenuBelow(const Menu& menu, Handle control) {
    RECT area{};
    GetWindowRect(windowOf(control), &area);
    popUp(menu, {area.left, area.bottom});
}

} // namespace native
} // namespace murmelix::ui
