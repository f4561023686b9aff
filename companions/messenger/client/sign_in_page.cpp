#include "companions/messenger/client/sign_in_page.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "common/com/handles.h"
#include "common/text.h"

namespace messenger_client {

using murmelix::com::wide;

namespace {

constexpr std::array<int, 12> form_controls{id_signin,    id_friendly, id_as_status, id_remember,
                                            id_automatic, id_fault,    id_sign_in,   id_forget,
                                            id_note,      id_label,    id_label + 1, id_label + 2};
constexpr std::array<int, 2> progress_controls{id_progress, id_cancel};

// In pixels at 96 dots per inch.
constexpr int margin = 16;
constexpr int label_height = 18;
constexpr int field_height = 24;
constexpr int field_step = label_height + field_height + 9;
constexpr int check_height = 21;
constexpr int button_height = 28;
constexpr int two_lines = 34;
constexpr int picture_size = 72;
constexpr int dots = 12; // of the ring that turns while signing in

void set(HWND control, const RECT& place) {
    SetWindowPos(control, nullptr, place.left, place.top, std::max<int>(place.right - place.left, 0),
                 std::max<int>(place.bottom - place.top, 0), SWP_NOZORDER | SWP_NOACTIVATE);
}

bool checked(HWND box) {
    return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void check(HWND box, bool on) {
    SendMessageW(box, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

} // namespace

SignInPage::SignInPage(HWND parent, HFONT font, const Accounts& accounts, Hooks hooks)
    : parent_(parent), accounts_(accounts), hooks_(std::move(hooks)) {
    const auto add = [&](const wchar_t* kind, const wchar_t* text, DWORD style, int id, DWORD extended = 0) {
        const HWND control = makeChild(parent, kind, text, style, id, extended);
        ShowWindow(control, SW_HIDE);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    };
    // In the order of the Tab key; a label's accelerator leads to the control after it.
    add(L"Static", L"Sign-in &name", 0, id_label);
    add(L"ComboBox", L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, id_signin);
    add(L"Static", L"Name that others see (&display name)", SS_ENDELLIPSIS, id_label + 1);
    add(L"Edit", L"", WS_TABSTOP | ES_AUTOHSCROLL, id_friendly, WS_EX_CLIENTEDGE);
    add(L"Static", L"S&tatus", 0, id_label + 2);
    add(L"ComboBox", L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, id_as_status);
    add(L"Button", L"&Remember me on this computer", WS_TABSTOP | BS_AUTOCHECKBOX, id_remember);
    add(L"Button", L"Sign me in &automatically", WS_TABSTOP | BS_AUTOCHECKBOX, id_automatic);
    add(L"Static", L"", SS_NOPREFIX, id_fault);
    add(L"Button", L"&Sign in", WS_TABSTOP | BS_DEFPUSHBUTTON, id_sign_in);
    add(L"Button", L"For&get", WS_TABSTOP, id_forget);
    add(L"Static", L"There is no password: this client talks to programs on this computer alone.", SS_NOPREFIX,
        id_note);
    add(L"Static", L"", SS_NOPREFIX | SS_CENTER, id_progress);
    add(L"Button", L"Cancel", WS_TABSTOP, id_cancel);
    for (const Status status : chosen_statuses) {
        SendMessageW(of(id_as_status), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(std::u16string(nameOf(status)))));
    }
}

void SignInPage::show(State state) {
    const bool form = state == State::form;
    const bool progress = state == State::connecting || state == State::synchronising;
    const HWND had_focus = GetFocus();
    state_ = state;
    if (progress) {
        setWindowText(of(id_progress), state == State::connecting ? u"Connecting …" : u"Fetching your contacts …");
    }
    for (const int id : form_controls) {
        ShowWindow(of(id), form ? SW_SHOW : SW_HIDE);
    }
    for (const int id : progress_controls) {
        ShowWindow(of(id), progress ? SW_SHOW : SW_HIDE);
    }
    // A hidden control would keep the keyboard to itself.
    if (had_focus && IsChild(parent_, had_focus) && !IsWindowVisible(had_focus)) {
        SetFocus(parent_);
    }
}

void SignInPage::focus() {
    if (state_ == State::form) {
        SetFocus(of(typedName().empty() ? id_signin : id_sign_in));
    } else {
        SetFocus(of(id_cancel));
    }
}

void SignInPage::propose(std::u16string_view signin) {
    if (!signin.empty() && murmelix::sameText(typedName(), signin, murmelix::LetterCase::ignored)) {
        return; // what was filled in stays
    }
    const Account* last = accounts_.all().empty() ? nullptr : &accounts_.all().front();
    const Account* account = signin.empty() ? last : accounts_.find(signin);
    if (account) {
        fillIn(form_.propose(*account));
    } else if (signin.empty() && typedName().empty()) {
        fillIn(form_.proposeLast());
    } else {
        nameChanged(typedName());
    }
}

void SignInPage::proposeNobody() {
    fillIn(form_.proposeNobody());
}

void SignInPage::fillIn(const Request& fields) {
    setWindowText(of(id_signin), fields.signin);
    setWindowText(of(id_friendly), fields.friendly);
    const auto status = std::find(chosen_statuses.begin(), chosen_statuses.end(), fields.status);
    const auto row = status == chosen_statuses.end() ? 0 : status - chosen_statuses.begin();
    SendMessageW(of(id_as_status), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    check(of(id_remember), fields.remember);
    check(of(id_automatic), fields.automatic);
    nameChanged(fields.signin);
}

void SignInPage::accountsChanged() {
    const HWND list = of(id_signin);
    const std::u16string typed = windowText(list);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (const Account& account : accounts_.all()) {
        if (account.remembered) {
            SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(account.signin)));
        }
    }
    setWindowText(list, typed);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    nameChanged(typed);
}

void SignInPage::tellFault(std::u16string_view fault) {
    setWindowText(of(id_fault), fault);
}

std::u16string SignInPage::typedName() const {
    return std::u16string(murmelix::trim(windowText(of(id_signin))));
}

void SignInPage::nameChanged(const std::u16string& name) {
    const Account* known = accounts_.find(murmelix::trim(name));
    EnableWindow(of(id_forget), known && known->remembered);
    if (SendMessageW(of(id_as_status), CB_GETCURSEL, 0, 0) < 0) {
        SendMessageW(of(id_as_status), CB_SETCURSEL, 0, 0);
    }
}

void SignInPage::signIn() {
    Request request = form_.completed({windowText(of(id_signin)), windowText(of(id_friendly)), Status::online,
                                       checked(of(id_remember)), checked(of(id_automatic))});
    const std::u16string_view fault = faultOfSignin(request.signin);
    tellFault(fault);
    if (!fault.empty()) {
        MessageBeep(MB_ICONWARNING);
        SetFocus(of(id_signin));
        return;
    }
    const LRESULT row = SendMessageW(of(id_as_status), CB_GETCURSEL, 0, 0);
    if (row >= 0 && static_cast<std::size_t>(row) < chosen_statuses.size()) {
        request.status = chosen_statuses[static_cast<std::size_t>(row)];
    }
    hooks_.sign_in(request);
}

bool SignInPage::command(int id, int code) {
    if (state_ == State::hidden) {
        return false;
    }
    switch (id) {
    case IDOK:
    case id_sign_in:
        if (state_ == State::form) {
            signIn();
        } else {
            hooks_.cancel(); // Enter on the only button
        }
        return true;
    case IDCANCEL:
    case id_cancel:
        if (state_ != State::form) {
            hooks_.cancel();
        }
        return true;
    case id_signin:
        if (code == CBN_EDITCHANGE) {
            nameChanged(windowText(of(id_signin)));
            if (const auto friendly = form_.friendlyFor(typedName(), windowText(of(id_friendly)))) {
                setWindowText(of(id_friendly), *friendly);
            }
        } else if (code == CBN_SELCHANGE) {
            const LRESULT row = SendMessageW(of(id_signin), CB_GETCURSEL, 0, 0);
            const LRESULT length =
                row < 0 ? -1 : SendMessageW(of(id_signin), CB_GETLBTEXTLEN, static_cast<WPARAM>(row), 0);
            if (length < 0) {
                return true;
            }
            std::u16string name(static_cast<std::size_t>(length) + 1, u'\0');
            SendMessageW(of(id_signin), CB_GETLBTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(name.data()));
            name.pop_back();
            if (const Account* account = accounts_.find(name)) {
                fillIn(form_.propose(*account));
            }
        }
        return true;
    case id_automatic:
        // What signs in by itself has to be remembered.
        if (checked(of(id_automatic))) {
            check(of(id_remember), true);
        }
        return true;
    case id_remember:
        if (!checked(of(id_remember))) {
            check(of(id_automatic), false);
        }
        return true;
    case id_forget:
        hooks_.forget(typedName());
        for (const int field : {id_signin, id_friendly}) {
            setWindowText(of(field), u"");
        }
        for (const int box : {id_remember, id_automatic}) {
            check(of(box), false);
        }
        SendMessageW(of(id_as_status), CB_SETCURSEL, 0, 0);
        SetFocus(of(id_signin));
        nameChanged({});
        return true;
    default:
        return id == id_friendly || id == id_as_status;
    }
}

COLORREF SignInPage::colorOfStatic(HWND control) const {
    switch (GetDlgCtrlID(control)) {
    case id_fault:
        return color::fault;
    case id_progress:
        return color::text;
    default:
        return color::soft_text;
    }
}

void SignInPage::arrange(const RECT& area) {
    area_ = area;
    const int left = area.left + px(margin);
    const int right = std::max<int>(area.right - px(margin), left);
    int top = area.top + px(10);
    for (const auto& [label, field] :
         {std::pair{id_label + 0, id_signin}, {id_label + 1, id_friendly}, {id_label + 2, id_as_status}}) {
        set(of(label), {left, top, right, top + px(label_height - 2)});
        const int field_top = top + px(label_height);
        // The height of a drop-down includes its list.
        const int height = field == id_friendly ? px(field_height) : px(220);
        set(of(field), {left, field_top, right, field_top + height});
        top += px(field_step);
    }
    for (const int box : {id_remember, id_automatic}) {
        set(of(box), {left, top, right, top + px(check_height)});
        top += px(check_height);
    }
    top += px(4);
    set(of(id_fault), {left, top, right, top + px(two_lines)});
    top += px(two_lines + 2);
    set(of(id_sign_in), {left, top, left + px(96), top + px(button_height)});
    set(of(id_forget), {right - px(84), top, right, top + px(button_height)});
    top += px(button_height + 10);
    set(of(id_note), {left, top, right, top + px(two_lines)});

    const int middle = (area.left + area.right) / 2;
    const int below = area.top + px(36 + picture_size + 34);
    set(of(id_progress), {left, below, right, below + px(20)});
    set(of(id_cancel), {middle - px(48), below + px(36), middle + px(48), below + px(36 + button_height)});
}

void SignInPage::paint(HDC dc, const Contact& who) {
    if (state_ != State::connecting && state_ != State::synchronising) {
        return;
    }
    const int size = px(picture_size);
    const int middle = (area_.left + area_.right) / 2;
    const int top = area_.top + px(36);
    const FontOwner letter = systemFont(230, FW_BOLD);
    drawAvatar(dc, letter.get(), {middle - size / 2, top, middle + size / 2, top + size}, who);
    const double radius = size / 2.0 + px(13);
    const double turn = 2 * 3.14159265358979 / dots;
    for (int i = 0; i < dots; ++i) {
        const int age = (step_ - i + 2 * dots) % dots; // of the light that runs round
        const double x = middle + radius * std::sin(i * turn);
        const double y = top + size / 2.0 - radius * std::cos(i * turn);
        drawDisc(dc, static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), px(3),
                 mixed(color::band_top, color::line, std::min(age, 6), 6));
    }
}

void SignInPage::turn() {
    step_ = (step_ + 1) % dots;
    const RECT ring{area_.left, area_.top, area_.right, area_.top + px(36 + picture_size + 26)};
    InvalidateRect(parent_, &ring, FALSE);
}

} // namespace messenger_client
