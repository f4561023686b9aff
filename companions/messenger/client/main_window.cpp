#include "companions/messenger/client/main_window.h"

#include <algorithm>
#include <array>

#include <windowsx.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"

namespace messenger_client {

namespace {

enum : int {
    id_contacts = 100,
    id_signin,
    id_friendly,
    id_remember,
    id_sign_in,
    id_sign_out = 200,
    id_exit,
    id_open,
    id_remove,
    id_about,
    id_status = 1000, // plus the status code
};
constexpr UINT deliver_message = WM_APP + 1;
constexpr UINT_PTR tick_timer = 1;

constexpr int band_height = 72;
constexpr int margin = 10;
constexpr int row_height = 40;

constexpr std::array chosen_statuses{Status::online,       Status::busy,         Status::be_right_back, Status::away,
                                     Status::on_the_phone, Status::out_to_lunch, Status::invisible};

bool isHere(const Contact& contact) {
    return contact.status != Status::offline && contact.status != Status::unknown &&
           contact.status != Status::invisible;
}

HMENU statusMenu(Status current) {
    const HMENU menu = CreatePopupMenu();
    for (const Status status : chosen_statuses)
        AppendMenuW(menu, MF_STRING | (status == current ? MF_CHECKED : 0),
                    static_cast<UINT_PTR>(id_status + static_cast<int>(status)),
                    murmelix::com::wide(std::u16string(nameOf(status))));
    return menu;
}

HMENU mainMenu() {
    const HMENU bar = CreateMenu();
    const HMENU file = CreatePopupMenu();
    AppendMenuW(file, MF_POPUP, reinterpret_cast<UINT_PTR>(statusMenu(Status::unknown)), L"My s&tatus");
    AppendMenuW(file, MF_STRING, id_sign_out, L"&Sign out");
    AppendMenuW(file, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(file, MF_STRING, id_exit, L"E&xit");
    const HMENU contact = CreatePopupMenu();
    AppendMenuW(contact, MF_STRING, id_open, L"Send an instant &message\tEnter");
    AppendMenuW(contact, MF_STRING, id_remove, L"&Remove from the list");
    const HMENU help = CreatePopupMenu();
    AppendMenuW(help, MF_STRING, id_about, L"&About");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"&File");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(contact), L"&Contact");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(help), L"&Help");
    return bar;
}

} // namespace

MainWindow::MainWindow(Client& client, Hooks hooks) : client_(client), hooks_(std::move(hooks)) {
    const RECT place{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT + px(290), CW_USEDEFAULT + px(460)};
    create(main_class, L"Messenger", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, place);
    build();
    showState();
}

void MainWindow::build() {
    SetMenu(handle(), mainMenu());
    contacts_ = child(L"ListBox", L"",
                      WS_TABSTOP | WS_VSCROLL | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                      id_contacts);
    signin_ = child(L"Edit", L"", WS_TABSTOP | ES_AUTOHSCROLL, id_signin, WS_EX_CLIENTEDGE);
    friendly_ = child(L"Edit", L"", WS_TABSTOP | ES_AUTOHSCROLL, id_friendly, WS_EX_CLIENTEDGE);
    remember_ = child(L"Button", L"Sign me in &automatically", WS_TABSTOP | BS_AUTOCHECKBOX, id_remember);
    sign_in_ = child(L"Button", L"&Sign in", WS_TABSTOP | BS_DEFPUSHBUTTON, id_sign_in);
    for (const HWND control : {contacts_, signin_, friendly_, remember_, sign_in_})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    SendMessageW(contacts_, LB_SETITEMHEIGHT, 0, px(row_height));
}

void MainWindow::arrange() {
    RECT area{};
    GetClientRect(handle(), &area);
    const int top = px(band_height);
    const int left = px(margin + 6);
    const int width = std::max<int>(area.right - 2 * left, 0);
    const auto place = [](HWND control, int x, int y, int w, int h) {
        SetWindowPos(control, nullptr, x, y, w, std::max(h, 0), SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(contacts_, 0, top, area.right, area.bottom - top);
    place(signin_, left, top + px(44), width, px(24));
    place(friendly_, left, top + px(100), width, px(24));
    place(remember_, left, top + px(136), width, px(22));
    place(sign_in_, left, top + px(172), px(96), px(30));
    InvalidateRect(handle(), nullptr, FALSE);
}

void MainWindow::paint() {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(handle(), &paint);
    RECT area{};
    GetClientRect(handle(), &area);
    RECT band = area;
    band.bottom = px(band_height);
    fillBand(dc, band);
    RECT rest = area;
    rest.top = band.bottom;
    fill(dc, rest, color::face);

    RECT line{px(margin + 4), px(12), area.right - px(margin), px(38)};
    if (const ContactPtr& me = client_.me()) {
        const int size = px(44);
        const RECT avatar{px(margin + 4), px(14), px(margin + 4) + size, px(14) + size};
        drawAvatar(dc, title_.get(), avatar, *me);
        line.left = avatar.right + px(10);
        drawText(dc, title_.get(), color::on_band, me->friendly, line, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
        line.top = line.bottom;
        line.bottom += px(22);
        drawText(dc, font_.get(), color::on_band_soft, nameOf(me->status), line, DT_SINGLELINE | DT_VCENTER);
        const int behind = line.left + textWidth(dc, font_.get(), nameOf(me->status)) + px(6);
        drawDownArrow(dc, {behind, (line.top + line.bottom) / 2}, color::on_band_soft);
    } else {
        drawText(dc, title_.get(), color::on_band, u"Welcome", line, DT_SINGLELINE | DT_VCENTER);
        line.top = line.bottom;
        line.bottom += px(22);
        drawText(dc, font_.get(), color::on_band_soft, u"You are signed out.", line, DT_SINGLELINE | DT_VCENTER);
        const auto label = [&](HWND control, std::u16string_view text) {
            RECT place{};
            GetWindowRect(control, &place);
            MapWindowPoints(nullptr, handle(), reinterpret_cast<POINT*>(&place), 2);
            const RECT above{place.left, place.top - px(20), place.right, place.top};
            drawText(dc, font_.get(), color::soft_text, text, above, DT_SINGLELINE | DT_VCENTER);
        };
        label(signin_, u"Sign-in name");
        label(friendly_, u"Name that others see");
    }
    EndPaint(handle(), &paint);
}

void MainWindow::showContacts() {
    const ContactPtr before = selected();
    rows_.clear();
    headings_.clear();
    for (const bool here : {true, false}) {
        std::vector<ContactPtr> group;
        for (const ContactPtr& contact : client_.contacts()) {
            if (isHere(*contact) == here)
                group.push_back(contact);
        }
        if (group.empty())
            continue;
        std::stable_sort(group.begin(), group.end(), [](const ContactPtr& a, const ContactPtr& b) {
            return murmelix::toLower(a->friendly) < murmelix::toLower(b->friendly);
        });
        rows_.push_back(nullptr);
        headings_.push_back((here ? u"Online (" : u"Offline (") +
                            murmelix::toText(static_cast<long long>(group.size())) + u")");
        for (ContactPtr& contact : group) {
            rows_.push_back(std::move(contact));
            headings_.emplace_back();
        }
    }
    SendMessageW(contacts_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(contacts_, LB_RESETCONTENT, 0, 0);
    for (std::size_t i = 0; i < rows_.size(); ++i)
        SendMessageW(contacts_, LB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(murmelix::com::wide(rows_[i] ? rows_[i]->friendly : headings_[i])));
    const auto chosen = before ? std::find(rows_.begin(), rows_.end(), before) : rows_.end();
    if (chosen != rows_.end())
        SendMessageW(contacts_, LB_SETCURSEL, static_cast<WPARAM>(chosen - rows_.begin()), 0);
    SendMessageW(contacts_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(contacts_, nullptr, TRUE);
}

void MainWindow::drawContact(const DRAWITEMSTRUCT& item) {
    if (item.itemID >= rows_.size())
        return;
    const ContactPtr& contact = rows_[item.itemID];
    RECT place = item.rcItem;
    fill(item.hDC, place, contact && (item.itemState & ODS_SELECTED) ? color::chosen : color::field);
    if (!contact) {
        place.left += px(margin);
        place.top += px(12);
        drawText(item.hDC, bold_.get(), color::soft_text, headings_[item.itemID], place, DT_SINGLELINE | DT_VCENTER);
        return;
    }
    const int size = px(28);
    const int top = place.top + px((row_height - 28) / 2);
    const RECT avatar{px(margin + 6), top, px(margin + 6) + size, top + size};
    drawAvatar(item.hDC, bold_.get(), avatar, *contact);
    place.left = avatar.right + px(9);
    RECT line = place;
    line.top += px(3);
    line.bottom = line.top + px(18);
    drawText(item.hDC, font_.get(), color::text, contact->friendly, line, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    line.top = line.bottom - px(1);
    line.bottom = place.bottom - px(3);
    drawText(item.hDC, font_.get(), color::soft_text, nameOf(contact->status), line, DT_SINGLELINE | DT_VCENTER);
    if (item.itemState & ODS_FOCUS)
        DrawFocusRect(item.hDC, &item.rcItem);
}

void MainWindow::showState() {
    const bool in = client_.signedIn();
    ShowWindow(contacts_, in ? SW_SHOW : SW_HIDE);
    for (const HWND control : {signin_, friendly_, remember_, sign_in_})
        ShowWindow(control, in ? SW_HIDE : SW_SHOW);
    setWindowText(handle(), in ? client_.me()->friendly.substr(0, 200) + u" - Messenger" : u"Messenger");
    const HMENU bar = GetMenu(handle());
    const UINT enabled = in ? MF_ENABLED : MF_GRAYED;
    EnableMenuItem(bar, id_sign_out, MF_BYCOMMAND | enabled);
    EnableMenuItem(bar, 1, MF_BYPOSITION | enabled);
    for (const Status status : chosen_statuses) {
        const UINT id = static_cast<UINT>(id_status + static_cast<int>(status));
        EnableMenuItem(bar, id, MF_BYCOMMAND | enabled);
        CheckMenuItem(bar, id, MF_BYCOMMAND | (in && client_.me()->status == status ? MF_CHECKED : MF_UNCHECKED));
    }
    DrawMenuBar(handle());
    if (in)
        showContacts();
    arrange();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainWindow::changed(const Change& change) {
    switch (change.kind) {
    case Change::Kind::signed_in:
    case Change::Kind::signed_out:
    case Change::Kind::my_name:
    case Change::Kind::my_status:
        showState();
        break;
    case Change::Kind::contact_added:
    case Change::Kind::contact_removed:
    case Change::Kind::contact_renamed:
    case Change::Kind::contact_status:
        showContacts();
        break;
    default:
        break;
    }
}

void MainWindow::propose(const std::u16string& signin, const std::u16string& friendly, bool remember) {
    setWindowText(signin_, signin);
    setWindowText(friendly_, friendly);
    SendMessageW(remember_, BM_SETCHECK, remember ? BST_CHECKED : BST_UNCHECKED, 0);
}

void MainWindow::askSignIn() {
    ShowWindow(handle(), IsIconic(handle()) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(handle());
    if (!client_.signedIn())
        SetFocus(signin_);
}

void MainWindow::postDeliver() {
    PostMessageW(handle(), deliver_message, 0, 0);
}

void MainWindow::setTick(unsigned milliseconds) {
    SetTimer(handle(), tick_timer, milliseconds, nullptr);
}

ContactPtr MainWindow::selected() const {
    const LRESULT row = SendMessageW(contacts_, LB_GETCURSEL, 0, 0);
    return row >= 0 && static_cast<std::size_t>(row) < rows_.size() ? rows_[static_cast<std::size_t>(row)] : nullptr;
}

void MainWindow::openSelected() {
    const ContactPtr contact = selected();
    if (!contact || !client_.signedIn())
        return;
    const auto conversation = client_.openWith(contact);
    SetForegroundWindow(reinterpret_cast<HWND>(conversation->window()));
}

void MainWindow::chooseStatus() {
    if (!client_.signedIn())
        return;
    const HMENU menu = statusMenu(client_.me()->status);
    POINT at{px(margin + 58), px(60)};
    ClientToScreen(handle(), &at);
    TrackPopupMenu(menu, TPM_LEFTALIGN, at.x, at.y, 0, handle(), nullptr);
    DestroyMenu(menu);
}

void MainWindow::contactMenu(POINT at) {
    if (!selected())
        return;
    const HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, id_open, L"Send an instant &message");
    AppendMenuW(menu, MF_STRING, id_remove, L"&Remove from the list");
    SetMenuDefaultItem(menu, id_open, FALSE);
    TrackPopupMenu(menu, TPM_LEFTALIGN, at.x, at.y, 0, handle(), nullptr);
    DestroyMenu(menu);
}

void MainWindow::command(int id, int code) {
    // Not the notices that the fields give when they are filled in.
    if (code == BN_CLICKED || id == id_contacts)
        hooks_.user_acts();
    switch (id) {
    case id_sign_in:
    case IDOK:
        if (client_.signedIn()) {
            openSelected();
        } else if (const std::u16string name(murmelix::trim(windowText(signin_))); name.empty()) {
            SetFocus(signin_);
        } else {
            const bool remember = SendMessageW(remember_, BM_GETCHECK, 0, 0) == BST_CHECKED;
            hooks_.sign_in(name, std::u16string(murmelix::trim(windowText(friendly_))), remember);
        }
        break;
    case id_contacts:
        if (code == LBN_DBLCLK)
            openSelected();
        break;
    case id_open:
        openSelected();
        break;
    case id_remove:
        if (const ContactPtr contact = selected())
            client_.removeContact(contact);
        break;
    case id_sign_out:
        client_.signOut();
        break;
    case id_exit:
        PostMessageW(handle(), WM_CLOSE, 0, 0);
        break;
    case id_about:
        MessageBoxW(handle(),
                    L"Messenger client\n\nConversations to watch, type and replay, with the automation interface "
                    L"Messenger.UIAutomation.",
                    L"About", MB_ICONINFORMATION);
        break;
    default:
        if (id > id_status && isStatus(id - id_status))
            client_.setMyStatus(static_cast<Status>(id - id_status));
    }
}

LRESULT MainWindow::message(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_SIZE:
        if (sign_in_)
            arrange();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {px(230), px(340)};
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        paint();
        return 0;
    case WM_CTLCOLORSTATIC:
        SetBkColor(reinterpret_cast<HDC>(wparam), color::face);
        SetDCBrushColor(reinterpret_cast<HDC>(wparam), color::face);
        return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    case WM_DRAWITEM:
        drawContact(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
        return TRUE;
    case WM_SETFOCUS:
        SetFocus(client_.signedIn() ? contacts_ : signin_);
        return 0;
    case WM_LBUTTONDOWN:
        if (GET_Y_LPARAM(lparam) < px(band_height))
            chooseStatus();
        return 0;
    case WM_CONTEXTMENU:
        contactMenu({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(IDOK, DC_HASDEFID);
    case WM_COMMAND:
        command(LOWORD(wparam), HIWORD(wparam));
        return 0;
    case WM_COPYDATA: {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lparam);
        if (!data || data->dwData != control_message || (data->cbData && !data->lpData))
            return 0;
        return hooks_.command({static_cast<const char*>(data->lpData), data->cbData});
    }
    case deliver_message:
        hooks_.deliver();
        return 0;
    case WM_TIMER:
        if (wparam == tick_timer) {
            KillTimer(handle(), tick_timer);
            hooks_.tick();
        }
        return 0;
    case WM_CLOSE:
    case WM_ENDSESSION:
        if (message == WM_CLOSE || wparam)
            hooks_.quit();
        return 0;
    default:
        return defaultMessage(message, wparam, lparam);
    }
}

} // namespace messenger_client
