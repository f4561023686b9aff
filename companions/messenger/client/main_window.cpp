#include "companions/messenger/client/main_window.h"

#include <algorithm>
#include <array>

#include <windowsx.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/client/account.h"

namespace messenger_client {

using murmelix::com::wide;

namespace {

// Those of the sign-in page begin at 101.
enum : int {
    id_contacts = 100,
    id_name = 130,   // Button: the own name
    id_my_status,    // Button: the own status
    id_mail,         // Button: how many mails
    id_rename_field, // Edit: the own name, while it is changed
    id_empty,        // Static: said in place of contacts
    id_sign_out = 200,
    id_exit,
    id_open,
    id_remove,
    id_about,
    id_rename,
    id_add,
    id_hide,
    id_keep_running,
    id_new_mail,
    id_read_mail,
    id_show,
    id_other_account,
    id_status = 1000, // plus the status code
    id_switch = 2000, // plus the row of the menu's accounts
};
constexpr UINT tray_message = WM_APP + 2;
constexpr UINT_PTR turn_timer = 100;
constexpr UINT turn_time = 80; // milliseconds
constexpr UINT switch_rows = 20;
constexpr long most_mails = 0x7FFFFFFF; // that automation can tell of

// In pixels at 96 dots per inch.
constexpr int band_height = 88;
constexpr int margin = 14;
constexpr int avatar_size = 56;
constexpr int row_height = 40;

bool isHere(const Contact& contact) {
    return contact.status != Status::offline && contact.status != Status::unknown &&
           contact.status != Status::invisible;
}

void add(HMENU menu, int id, const wchar_t* text, UINT flags = 0) {
    AppendMenuW(menu, MF_STRING | flags, static_cast<UINT_PTR>(id), text);
}

void addLine(HMENU menu) {
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

void addMenu(HMENU menu, HMENU below, const wchar_t* text) {
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(below), text);
}

HMENU statusMenu(Status current) {
    const HMENU menu = CreatePopupMenu();
    for (const Status status : chosen_statuses) {
        add(menu, id_status + static_cast<int>(status), wide(std::u16string(nameOf(status))),
            status == current ? MF_CHECKED : 0);
    }
    return menu;
}

HMENU mailMenu() {
    const HMENU menu = CreatePopupMenu();
    add(menu, id_new_mail, L"&A new mail arrives");
    add(menu, id_read_mail, L"Mark all as &read");
    return menu;
}

enum : int { file_menu, contact_menu, mail_menu, help_menu };
constexpr int account_menu = 4; // place in the file menu

HMENU mainMenu() {
    const HMENU bar = CreateMenu();
    const HMENU file = CreatePopupMenu();
    addMenu(file, statusMenu(Status::unknown), L"My s&tatus");
    add(file, id_rename, L"Change my &name\tF2");
    addLine(file);
    add(file, id_sign_out, L"&Sign out");
    addMenu(file, CreatePopupMenu(), L"S&witch account");
    addLine(file);
    add(file, id_hide, L"&Hide this window\tCtrl+H");
    add(file, id_keep_running, L"&Closing this window hides it");
    addLine(file);
    add(file, id_exit, L"E&xit\tCtrl+Q");
    const HMENU contact = CreatePopupMenu();
    add(contact, id_open, L"Send an instant &message\tEnter");
    add(contact, id_add, L"&Add a contact…\tCtrl+N");
    add(contact, id_remove, L"&Remove from the list");
    const HMENU help = CreatePopupMenu();
    add(help, id_about, L"&About");
    addMenu(bar, file, L"&File");
    addMenu(bar, contact, L"&Contact");
    addMenu(bar, mailMenu(), L"&Mail");
    addMenu(bar, help, L"&Help");
    return bar;
}

std::u16string mailText(long count) {
    if (count < 0) {
        return u"No mailbox";
    }
    if (count == 0) {
        return u"No new mail";
    }
    return murmelix::toText(count) + (count == 1 ? u" new mail" : u" new mails");
}

std::u16string faultText(long result) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string code;
    for (int shift = 28; shift >= 0; shift -= 4) {
        code += digits[(static_cast<unsigned long>(result) >> shift) & 15];
    }
    return u"You could not be signed in. Please try again. (" + code + u")";
}

} // namespace

MainWindow::MainWindow(Client& client, Hooks hooks)
    : client_(client), hooks_(std::move(hooks)), taskbar_made_(RegisterWindowMessageW(L"TaskbarCreated")) {
    const RECT place{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT + px(300), CW_USEDEFAULT + px(520)};
    create(main_class, L"Messenger", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, place);
    build();
    showState();
}

void MainWindow::build() {
    SetMenu(handle(), mainMenu());
    std::array keys{ACCEL{FVIRTKEY, VK_F2, id_rename}, ACCEL{FVIRTKEY | FCONTROL, 'N', id_add},
                    ACCEL{FVIRTKEY | FCONTROL, 'H', id_hide}, ACCEL{FVIRTKEY | FCONTROL, 'Q', id_exit}};
    accelerators_.reset(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
    for (const int id : {id_name, id_my_status, id_mail}) {
        child(L"Button", L"", WS_TABSTOP | BS_OWNERDRAW, id);
    }
    child(L"Edit", L"", ES_AUTOHSCROLL, id_rename_field, WS_EX_CLIENTEDGE);
    child(L"ListBox", L"",
          WS_TABSTOP | WS_VSCROLL | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
          id_contacts);
    child(L"Static", L"Nobody is in your list yet. Add somebody with Ctrl+N.", SS_NOPREFIX | SS_CENTER, id_empty);
    for (const int id : {id_name, id_my_status, id_mail, id_rename_field, id_contacts, id_empty}) {
        SendMessageW(of(id), WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    }
    SendMessageW(of(id_contacts), LB_SETITEMHEIGHT, 0, px(row_height));
    page_.emplace(handle(), font_.get(), client_.accounts(),
                  SignInPage::Hooks{.sign_in = [this](const auto& request) { hooks_.sign_in(request); },
                                    .forget = [this](const auto& signin) { hooks_.forget(signin); },
                                    .cancel = [this] { client_.signOut(); }});
    built_ = true;
}

void MainWindow::arrange() {
    RECT area{};
    GetClientRect(handle(), &area);
    const int top = px(band_height);
    const int left = px(margin + avatar_size + 8);
    const auto place = [&](int id, int x, int y, int w, int h) {
        SetWindowPos(of(id), nullptr, x, y, std::max(w, 0), std::max(h, 0), SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const int width = area.right - left - px(margin - 6);
    place(id_name, left, px(10), width, px(28));
    place(id_my_status, left, px(38), width, px(21));
    place(id_mail, left, px(59), width, px(21));
    place(id_rename_field, left + px(2), px(11), width - px(4), px(26));
    place(id_contacts, 0, top, area.right, area.bottom - top);
    place(id_empty, px(margin), top + px(24), area.right - 2 * px(margin), px(60));
    area.top = top;
    page_->arrange(area);
    InvalidateRect(handle(), nullptr, FALSE);
}

void MainWindow::paint() {
    const Painting painting(handle());
    const HDC dc = painting.dc();
    RECT band = painting.area();
    RECT rest = band;
    band.bottom = rest.top = px(band_height);
    fillBand(dc, band);
    fill(dc, rest, client_.signedIn() ? color::field : color::face);
    if (const ContactPtr& me = client_.me()) {
        const int top = px((band_height - avatar_size) / 2);
        drawAvatar(dc, title_.get(), {px(margin), top, px(margin + avatar_size), top + px(avatar_size)}, *me);
        return;
    }
    RECT line{px(margin + 2), px(18), band.right - px(margin), px(46)};
    const bool signing_in = client_.signingIn();
    drawText(dc, title_.get(), color::on_band, signing_in ? u"Signing in" : u"Welcome", line,
             DT_SINGLELINE | DT_VCENTER);
    line.top = line.bottom;
    line.bottom += px(22);
    drawText(dc, font_.get(), color::on_band_soft,
             signing_in ? std::u16string_view(signing_in_.signin) : u"Sign in to meet your contacts.", line,
             DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    page_->paint(dc, signing_in_);
}

void MainWindow::drawBandButton(const DRAWITEMSTRUCT& item) {
    // The band's own colours go on behind the button.
    const RECT at = placeIn(handle(), item.hwndItem);
    fillBand(item.hDC, {-at.left, -at.top, item.rcItem.right, px(band_height) - at.top});
    RECT line = item.rcItem;
    InflateRect(&line, -px(4), 0);
    const bool is_name = item.CtlID == id_name;
    const HFONT font = is_name ? title_.get() : font_.get();
    const COLORREF ink = is_name ? color::on_band : color::on_band_soft;
    if (item.CtlID == id_mail) {
        const int width = px(16);
        drawEnvelope(item.hDC, {line.left, line.top, line.left + width, line.bottom}, ink);
        line.left += width + px(6);
    }
    RECT text = line;
    text.right -= is_name ? 0 : px(14); // room for the arrow
    const std::u16string caption = windowText(item.hwndItem);
    drawText(item.hDC, font, ink, caption, text, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    if (!is_name) {
        const int behind = std::min<int>(line.left + textWidth(item.hDC, font, caption) + px(6), text.right);
        drawDownArrow(item.hDC, {behind, (line.top + line.bottom) / 2}, ink);
    }
    if (item.itemState & ODS_FOCUS) {
        RECT frame = item.rcItem;
        const GdiOwner<HBRUSH> brush(CreateSolidBrush(color::on_band_soft));
        FrameRect(item.hDC, &frame, brush.get());
    }
}

void MainWindow::showBand() {
    const ContactPtr& me = client_.me();
    if (!me) {
        return;
    }
    constexpr std::size_t shown = 200; // units of a name: more does not fit
    setWindowText(of(id_name), me->friendly.substr(0, shown));
    const std::u16string_view status = nameOf(me->status);
    setWindowText(of(id_my_status), status.empty() ? u"Unknown" : status);
    setWindowText(of(id_mail), mailText(client_.unread()));
    setWindowText(handle(), me->friendly.substr(0, shown) + u" - Messenger");
    for (const int id : {id_name, id_my_status, id_mail}) {
        InvalidateRect(of(id), nullptr, FALSE);
    }
    const RECT band{0, 0, 32000, px(band_height)};
    InvalidateRect(handle(), &band, FALSE);
    for (const Status status_of_menu : chosen_statuses) {
        CheckMenuItem(GetMenu(handle()), static_cast<UINT>(id_status + static_cast<int>(status_of_menu)),
                      MF_BYCOMMAND | (me->status == status_of_menu ? MF_CHECKED : MF_UNCHECKED));
    }
    showTrayIcon();
}

void MainWindow::showContacts() {
    const HWND list = of(id_contacts);
    const ContactPtr before = selected();
    rows_.clear();
    headings_.clear();
    for (const bool here : {true, false}) {
        std::vector<ContactPtr> group;
        for (const ContactPtr& contact : client_.contacts()) {
            if (isHere(*contact) == here) {
                group.push_back(contact);
            }
        }
        if (group.empty()) {
            continue;
        }
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
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        SendMessageW(list, LB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(wide(rows_[i] ? rows_[i]->friendly : headings_[i])));
    }
    const auto chosen = before ? std::find(rows_.begin(), rows_.end(), before) : rows_.end();
    if (chosen != rows_.end()) {
        SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(chosen - rows_.begin()), 0);
    }
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
    const bool in = client_.signedIn();
    ShowWindow(list, in && !rows_.empty() ? SW_SHOW : SW_HIDE);
    ShowWindow(of(id_empty), in && rows_.empty() ? SW_SHOW : SW_HIDE);
}

void MainWindow::drawContact(const DRAWITEMSTRUCT& item) {
    if (item.itemID >= rows_.size()) {
        return;
    }
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
    const RECT avatar{px(margin), top, px(margin) + size, top + size};
    drawAvatar(item.hDC, bold_.get(), avatar, *contact);
    place.left = avatar.right + px(9);
    RECT line = place;
    line.top += px(3);
    line.bottom = line.top + px(18);
    drawText(item.hDC, font_.get(), color::text, contact->friendly, line, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    line.top = line.bottom - px(1);
    line.bottom = place.bottom - px(3);
    drawText(item.hDC, font_.get(), color::soft_text, nameOf(contact->status), line, DT_SINGLELINE | DT_VCENTER);
    if (item.itemState & ODS_FOCUS) {
        DrawFocusRect(item.hDC, &item.rcItem);
    }
}

void MainWindow::showState() {
    const bool in = client_.signedIn();
    const HWND had_focus = GetFocus();
    endRenaming(false);
    for (const int id : {id_name, id_my_status, id_mail}) {
        ShowWindow(of(id), in ? SW_SHOW : SW_HIDE);
    }
    page_->show(in                                        ? SignInPage::State::hidden
                : client_.stage() == Stage::connecting    ? SignInPage::State::connecting
                : client_.stage() == Stage::synchronising ? SignInPage::State::synchronising
                                                          : SignInPage::State::form);
    if (client_.signingIn()) {
        SetTimer(handle(), turn_timer, turn_time, nullptr);
    } else {
        KillTimer(handle(), turn_timer);
    }
    if (!in) {
        setWindowText(handle(), client_.signingIn() ? u"Signing in - Messenger" : u"Messenger");
    }
    if (!in && add_contact_) {
        ShowWindow(add_contact_->handle(), SW_HIDE);
    }
    const HMENU bar = GetMenu(handle());
    const UINT enabled = in ? MF_ENABLED : MF_GRAYED;
    for (const int id : {id_sign_out, id_rename}) {
        EnableMenuItem(bar, static_cast<UINT>(id), MF_BYCOMMAND | enabled);
    }
    for (const int place : {contact_menu, mail_menu}) {
        EnableMenuItem(bar, static_cast<UINT>(place), MF_BYPOSITION | enabled);
    }
    for (const Status status : chosen_statuses) {
        EnableMenuItem(bar, static_cast<UINT>(id_status + static_cast<int>(status)), MF_BYCOMMAND | enabled);
    }
    DrawMenuBar(handle());
    showBand();
    showContacts();
    showTrayIcon();
    arrange();
    // The keyboard stays in the window, on something that is still there.
    if (had_focus && (had_focus == handle() || IsChild(handle(), had_focus))) {
        SetFocus(handle());
    }
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainWindow::showTrayIcon() {
    if (!tray_.shown()) {
        return;
    }
    const ContactPtr& me = client_.me();
    tray_.show(handle(), tray_message,
               me ? u"Messenger - " + me->friendly.substr(0, 60) + u", " + std::u16string(nameOf(me->status))
                  : u"Messenger - signed out");
}

void MainWindow::changed(const Change& change) {
    switch (change.kind) {
    case Change::Kind::signed_in:
        page_->tellFault(change.number < 0 && change.number != signin_cancelled ? faultText(change.number)
                                                                                : std::u16string());
        if (change.number < 0) {
            page_->propose(signing_in_.signin);
        }
        showState();
        break;
    case Change::Kind::signed_out:
        page_->tellFault({});
        page_->propose({});
        showState();
        break;
    case Change::Kind::signing_in:
        showState();
        break;
    case Change::Kind::my_name:
    case Change::Kind::my_status:
    case Change::Kind::unread:
        showBand();
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

void MainWindow::setSigningIn(std::u16string_view signin, std::u16string_view friendly) {
    signing_in_ = {std::u16string(signin), std::u16string(friendly.empty() ? shortName(signin) : friendly),
                   Status::unknown};
}

void MainWindow::accountsChanged() {
    page_->accountsChanged();
}

void MainWindow::fillAccountMenu() {
    const HMENU menu = GetSubMenu(GetSubMenu(GetMenu(handle()), file_menu), account_menu);
    while (DeleteMenu(menu, 0, MF_BYPOSITION)) {
        continue;
    }
    switchable_.clear();
    for (const Account& account : client_.accounts().all()) {
        if (!account.remembered || switchable_.size() == switch_rows) {
            continue;
        }
        const bool current = client_.me() && client_.me()->signin == account.signin;
        const int id = id_switch + static_cast<int>(switchable_.size());
        switchable_.push_back(account.signin);
        const std::u16string text = murmelix::replaceAll(account.signin.substr(0, 60), u"&", u"&&");
        add(menu, id, wide(text), current ? MF_CHECKED : 0);
    }
    if (!switchable_.empty()) {
        addLine(menu);
    }
    add(menu, id_other_account, L"A&nother account…");
}

void MainWindow::show() {
    tray_.hide();
    ShowWindow(handle(), IsIconic(handle()) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(handle());
}

void MainWindow::hide() {
    if (tray_.show(handle(), tray_message, u"Messenger")) {
        showTrayIcon();
        ShowWindow(handle(), SW_HIDE);
    } else {
        ShowWindow(handle(), SW_MINIMIZE);
    }
}

void MainWindow::askSignIn() {
    show();
    if (client_.signedIn()) {
        return;
    }
    page_->focus();
}

void MainWindow::setTick(Clock clock, unsigned milliseconds) {
    const auto id = static_cast<UINT_PTR>(clock);
    if (!SetTimer(handle(), id, milliseconds, nullptr)) {
        // The system has no timer left: too early is better than never.
        PostMessageW(handle(), WM_TIMER, id, 0);
    }
}

ContactPtr MainWindow::selected() const {
    const LRESULT row = SendMessageW(of(id_contacts), LB_GETCURSEL, 0, 0);
    return row >= 0 && static_cast<std::size_t>(row) < rows_.size() ? rows_[static_cast<std::size_t>(row)] : nullptr;
}

void MainWindow::openSelected() {
    const ContactPtr contact = selected();
    if (!contact || !client_.signedIn()) {
        return;
    }
    const auto conversation = client_.openWith(contact);
    if (!conversation) {
        MessageBeep(MB_ICONWARNING);
        return;
    }
    SetForegroundWindow(reinterpret_cast<HWND>(conversation->window()));
}

void MainWindow::openMenu(HMENU menu, int below) {
    const RECT button = placeIn(handle(), of(below));
    POINT at{button.left + px(2), button.bottom};
    ClientToScreen(handle(), &at);
    TrackPopupMenu(menu, TPM_LEFTALIGN, at.x, at.y, 0, handle(), nullptr);
    DestroyMenu(menu);
}

void MainWindow::contactMenu(POINT at) {
    const HWND list = of(id_contacts);
    if (at.x == -1 && at.y == -1) { // by the keyboard
        RECT row{};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(SendMessageW(list, LB_GETCURSEL, 0, 0)),
                     reinterpret_cast<LPARAM>(&row));
        at = {row.left + px(40), row.bottom};
        ClientToScreen(list, &at);
    } else {
        POINT inside = at;
        ScreenToClient(list, &inside);
        const LRESULT row = SendMessageW(list, LB_ITEMFROMPOINT, 0, MAKELPARAM(inside.x, inside.y));
        if (HIWORD(row) == 0) {
            SendMessageW(list, LB_SETCURSEL, LOWORD(row), 0);
        }
    }
    if (!selected()) {
        return;
    }
    const HMENU menu = CreatePopupMenu();
    add(menu, id_open, L"Send an instant &message");
    add(menu, id_remove, L"&Remove from the list");
    SetMenuDefaultItem(menu, id_open, FALSE);
    TrackPopupMenu(menu, TPM_LEFTALIGN, at.x, at.y, 0, handle(), nullptr);
    DestroyMenu(menu);
}

void MainWindow::trayMenu() {
    const HMENU menu = CreatePopupMenu();
    add(menu, id_show, L"&Open");
    SetMenuDefaultItem(menu, id_show, FALSE);
    if (client_.signedIn()) {
        addMenu(menu, statusMenu(client_.me()->status), L"My s&tatus");
        add(menu, id_sign_out, L"&Sign out");
    }
    addLine(menu);
    add(menu, id_exit, L"E&xit");
    POINT at{};
    GetCursorPos(&at);
    // Without it the menu would stay when one clicks elsewhere.
    SetForegroundWindow(handle());
    TrackPopupMenu(menu, TPM_RIGHTALIGN | TPM_BOTTOMALIGN, at.x, at.y, 0, handle(), nullptr);
    PostMessageW(handle(), WM_NULL, 0, 0);
    DestroyMenu(menu);
}

void MainWindow::beginRenaming() {
    if (!client_.signedIn()) {
        return;
    }
    renaming_ = true;
    const HWND field = of(id_rename_field);
    setWindowText(field, client_.me()->friendly);
    ShowWindow(of(id_name), SW_HIDE);
    ShowWindow(field, SW_SHOW);
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
}

void MainWindow::endRenaming(bool take) {
    // Cleared first: hiding the field takes the keyboard from it, which ends the renaming too.
    const bool was_renaming = std::exchange(renaming_, false);
    const HWND field = of(id_rename_field);
    const bool had_keyboard = GetFocus() == field;
    ShowWindow(field, SW_HIDE);
    if (!was_renaming) {
        return;
    }
    ShowWindow(of(id_name), client_.signedIn() ? SW_SHOW : SW_HIDE);
    if (had_keyboard) {
        SetFocus(of(id_contacts));
    }
    const std::u16string name(murmelix::trim(windowText(field)));
    if (take && !name.empty()) {
        client_.setMyName(name);
    }
}

void MainWindow::enter() {
    const HWND focus = GetFocus();
    if (page_->command(IDOK, BN_CLICKED)) {
        return;
    }
    if (focus == of(id_rename_field)) {
        endRenaming(true);
    } else if (focus == of(id_name) || focus == of(id_my_status) || focus == of(id_mail)) {
        command(GetDlgCtrlID(focus), BN_CLICKED);
    } else {
        openSelected();
    }
}

void MainWindow::command(int id, int code) {
    const bool is_notice = id == id_rename_field || id == id_friendly || (id == id_signin && code != CBN_SELCHANGE);
    // Not the notices that the fields give when they are filled in.
    if (!is_notice && (code == BN_CLICKED || code == 1 || id == id_contacts)) {
        hooks_.user_acts();
    }
    if (id == IDOK) {
        return enter();
    }
    if (page_->command(id, code)) {
        return;
    }
    switch (id) {
    case IDCANCEL:
        endRenaming(false);
        break;
    case id_contacts:
        if (code == LBN_DBLCLK) {
            openSelected();
        }
        break;
    case id_rename_field:
        if (code == EN_KILLFOCUS && renaming_) {
            endRenaming(true);
        }
        break;
    case id_name:
    case id_rename:
        beginRenaming();
        break;
    case id_my_status:
        if (client_.signedIn()) {
            openMenu(statusMenu(client_.me()->status), id_my_status);
        }
        break;
    case id_mail:
        openMenu(mailMenu(), id_mail);
        break;
    case id_new_mail:
        client_.setUnread(std::clamp(client_.unread(), 0L, most_mails - 1) + 1);
        break;
    case id_read_mail:
        client_.setUnread(0);
        break;
    case id_open:
        openSelected();
        break;
    case id_add:
        if (!client_.signedIn()) {
            break;
        }
        if (!add_contact_) {
            add_contact_ = std::make_unique<AddContactWindow>(
                handle(), [this](const std::u16string& signin, const std::u16string& name) -> std::u16string_view {
                    if (client_.find(signin)) {
                        return client_.find(signin) == client_.me() ? u"That is your own sign-in name."
                                                                    : u"This contact is in your list already.";
                    }
                    return client_.addContact(signin, name.empty() ? shortName(signin) : std::u16string_view(name))
                               ? u""
                               : u"Your list is full.";
                });
        }
        add_contact_->show();
        break;
    case id_remove:
        if (const ContactPtr contact = selected()) {
            client_.removeContact(contact);
        }
        break;
    case id_sign_out:
        client_.signOut();
        break;
    case id_other_account:
        hooks_.switch_to({});
        break;
    case id_show:
        show();
        break;
    case id_hide:
        hide();
        break;
    case id_keep_running:
        keepRunning(!keepsRunning());
        break;
    case id_exit:
        hooks_.quit();
        break;
    case id_about:
        MessageBoxW(
            handle(),
            L"Messenger "
            L"client " MESSENGER_VERSION L"\n\nConversations to watch, type and replay, with the automation interface "
            L"Messenger.UIAutomation.\n\nA part of Murmelix, released under the MIT licence.",
            L"About", MB_ICONINFORMATION);
        break;
    default:
        if (id >= id_switch && static_cast<std::size_t>(id - id_switch) < switchable_.size()) {
            hooks_.switch_to(std::u16string(switchable_[static_cast<std::size_t>(id - id_switch)]));
        } else if (id > id_status && id < id_switch && isChosen(static_cast<Status>(id - id_status))) {
            client_.setMyStatus(static_cast<Status>(id - id_status));
        }
    }
}

LRESULT MainWindow::message(UINT message, WPARAM wparam, LPARAM lparam) {
    if (!built_) {
        return defaultMessage(message, wparam, lparam);
    }
    if (message == taskbar_made_ && tray_.shown()) {
        tray_.forget();
        hide();
        return 0;
    }
    switch (message) {
    case WM_SIZE:
        arrange();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {px(250), px(470)};
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        paint();
        return 0;
    case WM_CTLCOLORSTATIC: {
        const HDC dc = reinterpret_cast<HDC>(wparam);
        const COLORREF back = client_.signedIn() ? color::field : color::face;
        SetTextColor(dc, page_->colorOfStatic(reinterpret_cast<HWND>(lparam)));
        SetBkColor(dc, back);
        SetDCBrushColor(dc, back);
        return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    }
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
        item.CtlID == id_contacts ? drawContact(item) : drawBandButton(item);
        return TRUE;
    }
    case WM_SETFOCUS:
        if (client_.signedIn()) {
            SetFocus(of(rows_.empty() ? id_my_status : id_contacts));
        } else {
            page_->focus();
        }
        return 0;
    case WM_INITMENUPOPUP:
        fillAccountMenu();
        CheckMenuItem(GetMenu(handle()), id_keep_running, MF_BYCOMMAND | (keepsRunning() ? MF_CHECKED : MF_UNCHECKED));
        return 0;
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wparam) == of(id_contacts)) {
            contactMenu({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
        }
        return 0;
    case tray_message:
        if (lparam == WM_LBUTTONUP || lparam == WM_LBUTTONDBLCLK) {
            show();
        } else if (lparam == WM_RBUTTONUP) {
            trayMenu();
        }
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(IDOK, DC_HASDEFID);
    case WM_COMMAND:
        command(LOWORD(wparam), HIWORD(wparam));
        return 0;
    case WM_COPYDATA: {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lparam);
        if (!data || data->dwData != control_message || (data->cbData && !data->lpData)) {
            return 0;
        }
        return hooks_.command({static_cast<const char*>(data->lpData), data->cbData});
    }
    case WM_TIMER:
        if (wparam == turn_timer) {
            page_->turn();
        } else {
            KillTimer(handle(), wparam);
            hooks_.tick(static_cast<Clock>(wparam));
        }
        return 0;
    case WM_CLOSE:
        keepsRunning() ? hide() : hooks_.quit();
        return 0;
    case WM_ENDSESSION:
        if (wparam) {
            hooks_.quit();
        }
        return 0;
    default:
        return defaultMessage(message, wparam, lparam);
    }
}

} // namespace messenger_client
