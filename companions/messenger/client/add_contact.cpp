#include "companions/messenger/client/add_contact.h"

#include "common/text.h"
#include "companions/messenger/chat/contact.h"

namespace messenger_client {

namespace {

enum : int { id_signin = 100, id_friendly, id_fault, id_label };

constexpr wchar_t window_class[] = L"MessengerClientAddContact";
constexpr int width = 320, margin = 14; // of the client area, at 96 dots per inch
constexpr int height = 206;

} // namespace

AddContactWindow::AddContactWindow(HWND owner, Add add) : owner_(owner), add_(std::move(add)) {
    constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
    RECT frame{0, 0, px(width), px(height)};
    AdjustWindowRectEx(&frame, style, FALSE, WS_EX_DLGMODALFRAME);
    RECT beside{};
    GetWindowRect(owner, &beside);
    OffsetRect(&frame, beside.left + px(24) - frame.left, beside.top + px(90) - frame.top);
    create(window_class, L"Add a contact", style, WS_EX_DLGMODALFRAME, frame, owner);
    child(L"Static", L"Sign-in &name", 0, id_label);
    child(L"Edit", L"", WS_TABSTOP | ES_AUTOHSCROLL, id_signin, WS_EX_CLIENTEDGE);
    child(L"Static", L"N&ame in the list", 0, id_label + 1);
    child(L"Edit", L"", WS_TABSTOP | ES_AUTOHSCROLL, id_friendly, WS_EX_CLIENTEDGE);
    child(L"Static", L"", SS_NOPREFIX, id_fault);
    child(L"Button", L"A&dd", WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
    child(L"Button", L"Cancel", WS_TABSTOP, IDCANCEL);
    for (HWND each = GetWindow(handle(), GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT)) {
        SendMessageW(each, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    }
    arrange();
}

void AddContactWindow::arrange() {
    const int left = px(margin);
    const int right = px(width - margin);
    const auto place = [&](int id, int from, int top, int to, int tall) {
        SetWindowPos(of(id), nullptr, from, px(top), to - from, px(tall), SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(id_label, left, 12, right, 16);
    place(id_signin, left, 30, right, 24);
    place(id_label + 1, left, 64, right, 16);
    place(id_friendly, left, 82, right, 24);
    place(id_fault, left, 114, right, 34);
    place(IDOK, right - px(190), 162, right - px(100), 28);
    place(IDCANCEL, right - px(90), 162, right, 28);
}

void AddContactWindow::show() {
    for (const int id : {id_signin, id_friendly, id_fault}) {
        setWindowText(of(id), u"");
    }
    ShowWindow(handle(), SW_SHOW);
    SetForegroundWindow(handle());
    SetFocus(of(id_signin));
}

void AddContactWindow::close() {
    // Activated before this window goes, the owner keeps the keyboard in the program.
    SetActiveWindow(owner_);
    ShowWindow(handle(), SW_HIDE);
}

void AddContactWindow::add() {
    const std::u16string signin = completedSignin(murmelix::trim(windowText(of(id_signin))));
    std::u16string_view fault = faultOfSignin(signin);
    if (fault.empty()) {
        fault = add_(signin, std::u16string(murmelix::trim(windowText(of(id_friendly)))));
    }
    if (fault.empty()) {
        return close();
    }
    setWindowText(of(id_fault), fault);
    MessageBeep(MB_ICONWARNING);
    SetFocus(of(id_signin));
}

LRESULT AddContactWindow::message(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wparam) == IDOK) {
            add();
        } else if (LOWORD(wparam) == IDCANCEL) {
            close();
        }
        return 0;
    case WM_SETFOCUS:
        SetFocus(of(id_signin));
        return 0;
    case WM_CLOSE:
        close();
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(IDOK, DC_HASDEFID);
    case WM_ERASEBKGND: {
        RECT all{};
        GetClientRect(handle(), &all);
        fill(reinterpret_cast<HDC>(wparam), all, color::face);
        return 1;
    }
    case WM_CTLCOLORSTATIC: {
        const HDC dc = reinterpret_cast<HDC>(wparam);
        SetTextColor(dc, reinterpret_cast<HWND>(lparam) == of(id_fault) ? color::fault : color::soft_text);
        SetBkColor(dc, color::face);
        SetDCBrushColor(dc, color::face);
        return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    }
    default:
        return defaultMessage(message, wparam, lparam);
    }
}

} // namespace messenger_client
