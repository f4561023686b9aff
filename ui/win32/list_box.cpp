#include "ui/list_box.h"

#include <algorithm>

#include <windowsx.h>

#include "common/com/handles.h"
#include "ui/win32/surface.h"
#include "ui/win32/window.h"

namespace murmelix::ui {

using com::wide;
using namespace win32;

namespace {

LPARAM textParameter(const std::u16string& text) {
    return reinterpret_cast<LPARAM>(wide(text));
}

class ListBoxWindow final : public ControlWindow {
  public:
    ListBoxWindow(Control& list, HWND parent, const std::u16string& caption)
        : ControlWindow(list,
                        {L"LISTBOX", WS_TABSTOP | WS_VSCROLL | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY |
                                         LBS_NOINTEGRALHEIGHT},
                        parent, caption) {}

    bool keeps(const Shortcut& key) const override {
        return key.key == Key::up || key.key == Key::down || key.key == Key::left || key.key == Key::right;
    }

    void onCommand(UINT code) override {
        auto& list = static_cast<ListBox&>(control());
        switch (code) {
        case LBN_SELCHANGE:
            return list.onPick(static_cast<int>(SendMessageW(hwnd(), LB_GETCURSEL, 0, 0)));
        case LBN_DBLCLK:
            return raise(list.DblClick);
        case LBN_SETFOCUS:
            return list.onFocus();
        case LBN_KILLFOCUS:
            return list.onFocusLost();
        default:
            return;
        }
    }

    void onDraw(const DRAWITEMSTRUCT& what) override {
        const int width = what.rcItem.right - what.rcItem.left, height = what.rcItem.bottom - what.rcItem.top;
        if (static_cast<int>(what.itemID) < 0 || width <= 0 || height <= 0) {
            return;
        }
        drawn_.impl().resize(width, height);
        static_cast<const ListBox&>(control()).onDraw(
            drawn_, static_cast<int>(what.itemID),
            {(what.itemState & ODS_SELECTED) != 0, (what.itemState & ODS_FOCUS) != 0});
        drawn_.impl().copyTo(what.hDC, what.rcItem);
    }

    // The row under the mouse is what a menu is about.
    void selectAt(POINT screen) {
        ScreenToClient(hwnd(), &screen);
        const LRESULT row = SendMessageW(hwnd(), LB_ITEMFROMPOINT, 0, MAKELPARAM(screen.x, screen.y));
        if (HIWORD(row) == 0 && SendMessageW(hwnd(), LB_GETCURSEL, 0, 0) != LOWORD(row)) {
            SendMessageW(hwnd(), LB_SETCURSEL, LOWORD(row), 0);
            static_cast<ListBox&>(control()).onPick(LOWORD(row));
        }
    }

    void onMenuAsked(POINT screen) override { selectAt(screen); }

    POINT menuPlace() const override {
        RECT row{};
        SendMessageW(hwnd(), LB_GETITEMRECT, static_cast<WPARAM>(SendMessageW(hwnd(), LB_GETCURSEL, 0, 0)),
                     reinterpret_cast<LPARAM>(&row));
        return {row.left + scaled(40), row.bottom};
    }

  private:
    Surface drawn_;
};

} // namespace

native::Handle native::createListBox(Control& list, Handle parent, const std::u16string& caption) {
    return make<ListBoxWindow>(list, parent, caption);
}

void native::setRows(Handle list, const std::vector<std::u16string>& items) {
    HWND hwnd = windowOf(list);
    SendMessageW(hwnd, WM_SETREDRAW, FALSE, 0);
    SendMessageW(hwnd, LB_RESETCONTENT, 0, 0);
    for (const std::u16string& item : items) {
        SendMessageW(hwnd, LB_ADDSTRING, 0, textParameter(item));
    }
    SendMessageW(hwnd, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(hwnd, nullptr, TRUE);
}

void native::insertRow(Handle list, int index, const std::u16string& text) {
    SendMessageW(windowOf(list), LB_INSERTSTRING, static_cast<WPARAM>(index), textParameter(text));
}

void native::removeRow(Handle list, int index) {
    SendMessageW(windowOf(list), LB_DELETESTRING, static_cast<WPARAM>(index), 0);
}

void native::setRow(Handle list, int index, const std::u16string& text) {
    HWND hwnd = windowOf(list);
    const LRESULT top = SendMessageW(hwnd, LB_GETTOPINDEX, 0, 0);
    SendMessageW(hwnd, WM_SETREDRAW, FALSE, 0);
    SendMessageW(hwnd, LB_DELETESTRING, static_cast<WPARAM>(index), 0);
    SendMessageW(hwnd, LB_INSERTSTRING, static_cast<WPARAM>(index), textParameter(text));
    SendMessageW(hwnd, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageW(hwnd, WM_SETREDRAW, TRUE, 0);
    redrawRow(list, index);
}

void native::redrawRow(Handle list, int index) {
    RECT row{};
    if (SendMessageW(windowOf(list), LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&row)) !=
        LB_ERR) {
        InvalidateRect(windowOf(list), &row, FALSE);
    }
}

Rect native::rowPlace(Handle list, int index) {
    const RECT area = clientArea(windowOf(list));
    RECT row{}, seen{};
    if (SendMessageW(windowOf(list), LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&row)) ==
            LB_ERR ||
        !IntersectRect(&seen, &row, &area)) {
        return {};
    }
    return {seen.left, seen.top, seen.right - seen.left, seen.bottom - seen.top};
}

void native::selectRow(Handle list, int index) {
    HWND hwnd = windowOf(list);
    if (SendMessageW(hwnd, LB_GETCURSEL, 0, 0) != index) {
        SendMessageW(hwnd, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}

void native::setRowHeight(Handle list, int pixels) {
    // The system's limit is a byte.
    SendMessageW(windowOf(list), LB_SETITEMHEIGHT, 0, std::min(std::max(pixels, 1), 255));
    InvalidateRect(windowOf(list), nullptr, TRUE);
}

} // namespace murmelix::ui
