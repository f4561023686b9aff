#include "companions/messenger/client/conversation_window.h"

#include <algorithm>

#include <commctrl.h>
#include <richedit.h>
#include <windowsx.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace messenger_client {

using murmelix::com::wide;

namespace {

enum : int {
    id_history = 100,
    id_input,
    id_send,
    id_as,
    id_people,
    id_invite,
    id_leave,
    id_guest = 1000, // plus the row of the menu
};
constexpr std::size_t most_guests = 30; // in a menu
constexpr UINT show_queued = WM_APP + 1;
// New text is shown this much later, in milliseconds: drawing it takes long, and who listens to the client asks for the
// text at once.
constexpr UINT show_delay = 40;
constexpr UINT_PTR show_timer = 1;
// So much text at once goes to the history control; the rest follows when other messages had their turn.
constexpr std::size_t units_at_once = 8192;

// The time that the history control takes for a line grows with the square of its length: longer lines are shown as
// several.
constexpr std::size_t longest_line = 500;

constexpr int band_height = 52;
constexpr int margin = 8;
constexpr int people_width = 150;
constexpr int bar_height = 26;
constexpr int input_height = 62;
constexpr int send_width = 74;
constexpr int invite_height = 28;
constexpr int padding = 6; // between the frame of a text and the text

CHARFORMAT2W formatOf(COLORREF color, bool bold) {
    CHARFORMAT2W format{};
    format.cbSize = sizeof format;
    format.dwMask = CFM_COLOR | CFM_BOLD;
    format.dwEffects = bold ? CFE_BOLD : 0;
    format.crTextColor = color;
    return format;
}

int twips(int pixels) {
    return MulDiv(pixels, 1440, px(96));
}

void setParagraph(HWND edit, int indent, int space_before) {
    PARAFORMAT2 format{};
    format.cbSize = sizeof format;
    format.dwMask = PFM_STARTINDENT | PFM_SPACEBEFORE;
    format.dxStartIndent = twips(indent);
    format.dySpaceBefore = twips(space_before);
    SendMessageW(edit, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
}

bool atEnd(HWND edit) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    if (!GetScrollInfo(edit, SB_VERT, &info) || info.nMax <= 0) {
        return true;
    }
    return info.nPos + static_cast<int>(info.nPage) >= info.nMax - px(24);
}

// NUL cannot be in a window's text; it is shown as the sign for it.
std::u16string shown(std::u16string_view text) {
    std::u16string visible(text);
    std::replace(visible.begin(), visible.end(), u'\0', u'\x2400');
    return visible;
}

} // namespace

ConversationWindow::ConversationWindow(Client& client, ConversationPtr conversation, const RECT& place)
    : client_(client), conversation_(std::move(conversation)) {
    create(conversation_class, L"Conversation", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, place);
    build();
    conversation_->setWindow(reinterpret_cast<std::intptr_t>(handle()));
    showPeople();
    queue(Style::notice, conversation_->history());
    arrange();
}

void ConversationWindow::build() {
    history_ = child(L"RichEdit20W", L"",
                     WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL, id_history);
    input_ = child(L"RichEdit20W", L"", WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL, id_input);
    send_ = child(L"Button", L"&Send", WS_TABSTOP | BS_DEFPUSHBUTTON, id_send);
    as_ = child(L"ComboBox", L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, id_as);
    people_ = child(L"ListBox", L"",
                    WS_TABSTOP | WS_VSCROLL | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT, id_people);
    invite_ = child(L"Button", L"&Invite", WS_TABSTOP, id_invite);
    for (const HWND control : {history_, input_, send_, as_, people_, invite_}) {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    }
    for (const HWND edit : {history_, input_}) {
        SendMessageW(edit, EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    }
    SendMessageW(history_, EM_SETUNDOLIMIT, 0, 0);
    // What other programs put in is never taken for formatted text.
    SendMessageW(input_, EM_SETTEXTMODE, TM_PLAINTEXT, 0);
    SendMessageW(people_, LB_SETITEMHEIGHT, 0, px(38));
    SetWindowSubclass(input_, inputProcedure, 1, reinterpret_cast<DWORD_PTR>(this));
}

void ConversationWindow::arrange() {
    RECT area{};
    GetClientRect(handle(), &area);
    const int gap = px(margin);
    const int people = area.right > px(430) ? px(people_width) : 0;
    const int right = std::max<int>(area.right - gap - (people ? people + gap : 0), gap);
    const int input_top = std::max<int>(area.bottom - gap - px(input_height), 0);
    const int bar_top = std::max(input_top - gap - px(bar_height), 0);
    const int history_top = px(band_height) + gap;
    const int label = px(62);
    const auto place = [](HWND control, int left, int top, int width, int height) {
        SetWindowPos(control, nullptr, left, top, std::max(width, 0), std::max(height, 0),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const int inset = px(padding);
    place(history_, gap + inset, history_top + inset, right - gap - inset - 1, bar_top - gap - history_top - 2 * inset);
    place(as_, gap + label, bar_top, std::min(px(230), right - gap - label), px(240));
    place(input_, gap + inset, input_top + inset, right - gap - px(send_width) - gap - inset - 1,
          px(input_height) - 2 * inset);
    place(send_, right - px(send_width), input_top, px(send_width), px(input_height));
    ShowWindow(people_, people ? SW_SHOW : SW_HIDE);
    ShowWindow(invite_, people ? SW_SHOW : SW_HIDE);
    const int invite_top = std::max<int>(area.bottom - gap - px(invite_height), history_top);
    place(people_, right + gap + 1, history_top + 1, people - 2, invite_top - gap - history_top - 2);
    place(invite_, right + gap, invite_top, people, px(invite_height));
    InvalidateRect(handle(), nullptr, FALSE);
}

void ConversationWindow::paint() {
    const Painting painting(handle());
    const HDC dc = painting.dc();
    RECT band = painting.area();
    RECT rest = band;
    band.bottom = rest.top = px(band_height);
    fillBand(dc, band);
    fill(dc, rest, color::face);
    for (const HWND control : {history_, input_, people_}) {
        if (!IsWindowVisible(control)) {
            continue;
        }
        RECT edge = placeIn(handle(), control);
        // The scroll bar of a text stands at the frame.
        const int inset = control == people_ ? 1 : px(padding);
        edge = {edge.left - inset, edge.top - inset, edge.right + 1, edge.bottom + inset};
        fill(dc, edge, color::field);
        const GdiOwner<HBRUSH> brush(CreateSolidBrush(color::line));
        FrameRect(dc, &edge, brush.get());
    }
    std::u16string names;
    for (const ContactPtr& contact : conversation_->participants()) {
        names += (names.empty() ? u"" : u", ") + contact->friendly;
        if (names.size() > 500) {
            break;
        }
    }
    RECT line = band;
    line.left += px(margin + 4);
    line.right -= px(margin);
    line.top += px(7);
    line.bottom = line.top + px(22);
    drawText(dc, title_.get(), color::on_band, names.empty() ? u"Nobody else is here" : names, line,
             DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    line.top = line.bottom;
    line.bottom = band.bottom - px(5);
    const std::size_t count = conversation_->participants().size();
    drawText(dc, font_.get(), color::on_band_soft,
             murmelix::toText(static_cast<long long>(count)) + (count == 1 ? u" participant" : u" participants"), line,
             DT_SINGLELINE | DT_VCENTER);
    const RECT combo = placeIn(handle(), as_);
    const RECT label{px(margin + 2), combo.top, combo.left, combo.bottom};
    drawText(dc, font_.get(), color::soft_text, u"Type as:", label, DT_SINGLELINE | DT_VCENTER);
}

void ConversationWindow::drawParticipant(const DRAWITEMSTRUCT& item) {
    const auto& all = conversation_->participants();
    fill(item.hDC, item.rcItem, item.itemState & ODS_SELECTED ? color::chosen : color::field);
    if (item.itemID >= all.size()) {
        return;
    }
    const Contact& contact = *all[item.itemID];
    RECT place = item.rcItem;
    const int size = px(26);
    const RECT avatar{place.left + px(6), place.top + px(6), place.left + px(6) + size, place.top + px(6) + size};
    drawAvatar(item.hDC, bold_.get(), avatar, contact);
    place.left = avatar.right + px(8);
    drawText(item.hDC, font_.get(), color::text, contact.friendly, place, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    if (item.itemState & ODS_FOCUS) {
        DrawFocusRect(item.hDC, &item.rcItem);
    }
}

void ConversationWindow::showPeople() {
    const auto selected = SendMessageW(as_, CB_GETCURSEL, 0, 0);
    const ContactPtr before = selected >= 0 && static_cast<std::size_t>(selected) < writers_.size()
                                  ? writers_[static_cast<std::size_t>(selected)]
                                  : client_.me();
    writers_.clear();
    if (client_.me()) {
        writers_.push_back(client_.me());
    }
    std::u16string title;
    SendMessageW(people_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(people_, LB_RESETCONTENT, 0, 0);
    for (const ContactPtr& contact : conversation_->participants()) {
        writers_.push_back(contact);
        SendMessageW(people_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(contact->friendly)));
        if (title.size() < 200) {
            title += (title.empty() ? u"" : u", ") + contact->friendly;
        }
    }
    SendMessageW(people_, WM_SETREDRAW, TRUE, 0);
    SendMessageW(as_, CB_RESETCONTENT, 0, 0);
    for (const ContactPtr& writer : writers_) {
        SendMessageW(as_, CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(wide(writer == client_.me() ? u"Me" : writer->friendly)));
    }
    const auto chosen = std::find(writers_.begin(), writers_.end(), before);
    SendMessageW(as_, CB_SETCURSEL, static_cast<WPARAM>(chosen == writers_.end() ? 0 : chosen - writers_.begin()), 0);
    setWindowText(handle(), (title.empty() ? u"Empty" : title.substr(0, 200)) + u" - Conversation");
    InvalidateRect(people_, nullptr, TRUE);
    const RECT band{0, 0, 32000, px(band_height)};
    InvalidateRect(handle(), &band, FALSE);
}

std::u16string ConversationWindow::broken(std::u16string_view text) {
    std::u16string lines;
    lines.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit == u'\r' || unit == u'\n') {
            line_units_ = 0;
        } else if (++line_units_ > longest_line && (unit & 0xFC00) != 0xDC00) {
            lines += u"\r\n";
            line_units_ = 1;
        }
        lines += unit;
    }
    return lines;
}

void ConversationWindow::queue(Style style, std::u16string_view added) {
    if (added.empty()) {
        return;
    }
    const std::u16string lines = broken(added);
    std::u16string_view text = lines;
    if (queued_.empty()) {
        SetTimer(handle(), show_timer, show_delay, nullptr);
    }
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), units_at_once);
        // Line ends and surrogate pairs stay whole.
        if (length < text.size() && (text[length - 1] == u'\r' || (text[length - 1] & 0xFC00) == 0xD800)) {
            --length;
        }
        queued_.push_back({style, std::u16string(text.substr(0, length))});
        text.remove_prefix(length);
    }
}

void ConversationWindow::showQueued() {
    std::size_t units = 0;
    const bool follow = atEnd(history_);
    CHARRANGE selection{};
    SendMessageW(history_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
    SendMessageW(history_, WM_SETREDRAW, FALSE, 0);
    while (!queued_.empty() && units < units_at_once) {
        units += queued_.front().text.size();
        append(queued_.front());
        queued_.pop_front();
    }
    if (selection.cpMin != selection.cpMax) {
        SendMessageW(history_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
    }
    SendMessageW(history_, WM_SETREDRAW, TRUE, 0);
    if (follow) {
        SendMessageW(history_, WM_VSCROLL, SB_BOTTOM, 0);
    }
    RedrawWindow(history_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    if (!queued_.empty()) {
        PostMessageW(handle(), show_queued, 0, 0);
    }
}

void ConversationWindow::append(const Piece& piece) {
    CHARRANGE end{0x7FFFFFFE, 0x7FFFFFFE};
    SendMessageW(history_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&end));
    const CHARFORMAT2W format =
        formatOf(piece.style == Style::message ? color::text : color::soft_text, piece.style == Style::name);
    // The line end first: the lines after it take over its indentation.
    std::u16string_view rest = piece.text;
    const auto insert = [&](std::u16string_view text) {
        SendMessageW(history_, EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
        SendMessageW(history_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide(shown(text))));
    };
    if (rest.starts_with(u"\r\n")) {
        insert(u"\r\n");
        rest.remove_prefix(2);
        setParagraph(history_, piece.style == Style::message ? px(10) : 0, piece.style == Style::name ? px(6) : 0);
    }
    insert(rest);
}

void ConversationWindow::changed(const Change& change) {
    switch (change.kind) {
    case Change::Kind::said:
        if (change.conversation == conversation_) {
            name_units_ = change.contact->friendly.size() + std::u16string_view(u"\r\n says:").size();
        }
        break;
    case Change::Kind::text_appended:
        if (change.conversation == conversation_) {
            queue(Style::name, change.text.substr(0, name_units_));
            queue(Style::message, change.text.substr(std::min(name_units_, change.text.size())));
            name_units_ = 0;
        }
        break;
    case Change::Kind::window_joined:
    case Change::Kind::window_left:
        if (change.conversation == conversation_) {
            showPeople();
        }
        break;
    case Change::Kind::contact_renamed:
    case Change::Kind::contact_status:
        if (conversation_->has(*change.contact)) {
            showPeople();
        }
        break;
    case Change::Kind::my_name:
        showPeople();
        break;
    default:
        break;
    }
}

void ConversationWindow::send() {
    const auto selected = static_cast<std::size_t>(SendMessageW(as_, CB_GETCURSEL, 0, 0));
    if (selected >= writers_.size()) {
        return;
    }
    const std::u16string text = windowText(input_);
    SetWindowTextW(input_, L"");
    client_.say(conversation_, writers_[selected], text);
}

void ConversationWindow::chooseGuest() {
    guests_.clear();
    const HMENU menu = CreatePopupMenu();
    for (const ContactPtr& contact : client_.contacts()) {
        if (conversation_->has(*contact) || guests_.size() == most_guests) {
            continue;
        }
        const std::u16string name = murmelix::replaceAll(contact->friendly.substr(0, 60), u"&", u"&&");
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(id_guest) + guests_.size(), wide(name));
        guests_.push_back(contact);
    }
    if (guests_.empty()) {
        AppendMenuW(menu, MF_STRING | MF_GRAYED, 0, L"Everybody of your list is here");
    }
    RECT button{};
    GetWindowRect(invite_, &button);
    TrackPopupMenu(menu, TPM_LEFTALIGN | TPM_BOTTOMALIGN, button.left, button.top, 0, handle(), nullptr);
    DestroyMenu(menu);
}

void ConversationWindow::removeParticipant() {
    const LRESULT row = SendMessageW(people_, LB_GETCURSEL, 0, 0);
    if (row >= 0 && static_cast<std::size_t>(row) < conversation_->participants().size()) {
        client_.leave(conversation_, ContactPtr(conversation_->participants()[static_cast<std::size_t>(row)]));
    }
}

void ConversationWindow::participantMenu(POINT at) {
    POINT inside = at;
    ScreenToClient(people_, &inside);
    if (at.x == -1 && at.y == -1) { // by the keyboard
        GetCursorPos(&at);
    } else if (const LRESULT row = SendMessageW(people_, LB_ITEMFROMPOINT, 0, MAKELPARAM(inside.x, inside.y));
               HIWORD(row) == 0) {
        SendMessageW(people_, LB_SETCURSEL, LOWORD(row), 0);
    }
    if (SendMessageW(people_, LB_GETCURSEL, 0, 0) < 0) {
        return;
    }
    const HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, id_leave, L"&Leaves the conversation");
    TrackPopupMenu(menu, TPM_LEFTALIGN, at.x, at.y, 0, handle(), nullptr);
    DestroyMenu(menu);
}

LRESULT CALLBACK ConversationWindow::inputProcedure(HWND input, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                                    DWORD_PTR self) {
    if (message == WM_GETDLGCODE) {
        return DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL;
    }
    if (message == WM_KEYDOWN && wparam == VK_RETURN) {
        if (GetKeyState(VK_SHIFT) < 0) {
            SendMessageW(input, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\r\n"));
        } else {
            PostMessageW(reinterpret_cast<ConversationWindow*>(self)->handle(), WM_COMMAND,
                         MAKEWPARAM(id_send, BN_CLICKED), 0);
        }
        return 0;
    }
    if (message == WM_CHAR && wparam == L'\r') {
        return 0;
    }
    return DefSubclassProc(input, message, wparam, lparam);
}

LRESULT ConversationWindow::message(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_SIZE:
        if (people_) {
            arrange();
        }
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {px(300), px(280)};
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        paint();
        return 0;
    case WM_DRAWITEM:
        drawParticipant(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
        return TRUE;
    case WM_SETFOCUS:
        SetFocus(input_);
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(GetFocus() == invite_ ? id_invite : id_send, DC_HASDEFID);
    case WM_COMMAND:
        if (LOWORD(wparam) == id_send && HIWORD(wparam) == BN_CLICKED) {
            send();
        } else if (LOWORD(wparam) == IDCANCEL) {
            PostMessageW(handle(), WM_CLOSE, 0, 0);
        } else if (LOWORD(wparam) == id_invite && HIWORD(wparam) == BN_CLICKED) {
            chooseGuest();
        } else if (LOWORD(wparam) == id_leave) {
            removeParticipant();
        } else if (LOWORD(wparam) >= id_guest && LOWORD(wparam) - id_guest < static_cast<int>(guests_.size())) {
            client_.join(conversation_, ContactPtr(guests_[static_cast<std::size_t>(LOWORD(wparam) - id_guest)]));
        }
        return 0;
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wparam) != people_) {
            return defaultMessage(message, wparam, lparam);
        }
        participantMenu({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
        return 0;
    case WM_TIMER:
        KillTimer(handle(), wparam);
        showQueued();
        return 0;
    case show_queued:
        showQueued();
        return 0;
    case WM_CLOSE:
        client_.close(conversation_);
        return 0;
    default:
        return defaultMessage(message, wparam, lparam);
    }
}

} // namespace messenger_client
