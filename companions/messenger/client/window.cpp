#include "companions/messenger/client/window.h"

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

#include "common/com/handles.h"
#include "common/text.h"

namespace messenger_client {

using murmelix::com::narrow;

namespace {

class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, before_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC dc_;
    HGDIOBJ before_;
};

COLORREF avatarColor(const std::u16string& signin) {
    constexpr std::array<COLORREF, 8> colors{RGB(214, 99, 88),  RGB(222, 145, 58), RGB(120, 160, 60),
                                             RGB(52, 158, 132), RGB(66, 133, 196), RGB(120, 110, 190),
                                             RGB(184, 94, 160), RGB(128, 116, 100)};
    unsigned sum = 7;
    for (const char16_t unit : signin) {
        sum = sum * 31 + unit;
    }
    return colors[sum % colors.size()];
}

void disc(HDC dc, int left, int top, int size, COLORREF inside, COLORREF edge) {
    const GdiOwner<HBRUSH> brush(CreateSolidBrush(inside));
    const GdiOwner<HPEN> pen(CreatePen(PS_SOLID, 1, edge));
    const Selected with_brush(dc, brush.get());
    const Selected with_pen(dc, pen.get());
    Ellipse(dc, left, top, left + size, top + size);
}

} // namespace

FontOwner systemFont(int height, int weight) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, height, 100);
    if (weight != FW_NORMAL) {
        font.lfWeight = weight;
    }
    font.lfQuality = CLEARTYPE_QUALITY;
    return FontOwner(CreateFontIndirectW(&font));
}

std::u16string windowText(HWND window) {
    std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, reinterpret_cast<wchar_t*>(text.data()), static_cast<int>(text.size()))));
    return text;
}

void setWindowText(HWND window, std::u16string_view text) {
    SetWindowTextW(window, murmelix::com::wide(std::u16string(text)));
}

HWND makeChild(HWND parent, const wchar_t* class_name, const wchar_t* text, DWORD style, int id, DWORD extended) {
    return CreateWindowExW(extended, class_name, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<std::intptr_t>(id)), GetModuleHandleW(nullptr), nullptr);
}

RECT placeIn(HWND parent, HWND child) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

COLORREF colorOf(Status status) {
    switch (status) {
    case Status::online:
        return RGB(108, 190, 69);
    case Status::busy:
    case Status::on_the_phone:
        return RGB(214, 72, 60);
    case Status::away:
    case Status::idle:
    case Status::be_right_back:
    case Status::out_to_lunch:
        return RGB(240, 178, 40);
    default:
        return RGB(160, 168, 176);
    }
}

void fill(HDC dc, const RECT& area, COLORREF with) {
    const GdiOwner<HBRUSH> brush(CreateSolidBrush(with));
    FillRect(dc, &area, brush.get());
}

COLORREF mixed(COLORREF from, COLORREF to, int part, int whole) {
    const auto mix = [&](BYTE a, BYTE b) { return a + (b - a) * part / whole; };
    return RGB(mix(GetRValue(from), GetRValue(to)), mix(GetGValue(from), GetGValue(to)),
               mix(GetBValue(from), GetBValue(to)));
}

void fillBand(HDC dc, const RECT& area) {
    const int height = std::max<int>(area.bottom - area.top, 1);
    for (int row = 0; row < height; ++row) {
        fill(dc, {area.left, area.top + row, area.right, area.top + row + 1},
             mixed(color::band_top, color::band_bottom, row, height));
    }
}

void drawText(HDC dc, HFONT font, COLORREF with, std::u16string_view text, RECT area, UINT format) {
    // Longer texts than anyone sees in a line cost time for nothing.
    constexpr std::size_t longest = 1024;
    text = text.substr(0, longest);
    const Selected with_font(dc, font);
    SetTextColor(dc, with);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(text.size()), &area,
              format | DT_NOPREFIX);
}

int textWidth(HDC dc, HFONT font, std::u16string_view text) {
    const Selected with_font(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(text.size()), &size);
    return size.cx;
}

void drawDownArrow(HDC dc, POINT at, COLORREF with) {
    const int half = px(3);
    for (int row = 0; row <= half; ++row) {
        fill(dc, {at.x + row, at.y - half / 2 + row, at.x + 2 * half + 1 - row, at.y - half / 2 + row + 1}, with);
    }
}

void drawDisc(HDC dc, int x, int y, int radius, COLORREF with) {
    disc(dc, x - radius, y - radius, 2 * radius + 1, with, with);
}

void drawEnvelope(HDC dc, const RECT& area, COLORREF with) {
    const int width = area.right - area.left;
    const int height = width * 3 / 4;
    const int top = (area.top + area.bottom - height) / 2;
    const GdiOwner<HPEN> pen(CreatePen(PS_SOLID, std::max(px(1), 1), with));
    const Selected with_pen(dc, pen.get());
    const Selected with_brush(dc, GetStockObject(NULL_BRUSH));
    Rectangle(dc, area.left, top, area.right, top + height);
    const std::array<POINT, 3> flap{POINT{area.left, top}, POINT{area.left + width / 2, top + height * 3 / 5},
                                    POINT{area.right - 1, top}};
    Polyline(dc, flap.data(), static_cast<int>(flap.size()));
}

void drawAvatar(HDC dc, HFONT font, const RECT& area, const Contact& contact) {
    const int size = area.right - area.left;
    const bool here = contact.status != Status::offline;
    const COLORREF own = here ? avatarColor(contact.signin) : RGB(190, 197, 204);
    disc(dc, area.left, area.top, size, own, own);
    const auto first = std::find_if(contact.friendly.begin(), contact.friendly.end(), [](char16_t unit) {
        return unit > 0x40 && unit != u'[' && unit != u'_' && unit != u'|';
    });
    if (first != contact.friendly.end()) {
        drawText(dc, font, RGB(255, 255, 255), std::u16string(1, murmelix::toUpper(*first)), area,
                 DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    if (contact.status == Status::unknown) {
        return;
    }
    const int dot = size * 2 / 5;
    disc(dc, area.right - dot + 1, area.bottom - dot + 1, dot, colorOf(contact.status), RGB(255, 255, 255));
}

HICON clientIcon(int size) {
    static std::map<int, HICON> icons;
    HICON& icon = icons[size];
    if (!icon) {
        icon = static_cast<HICON>(
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
    }
    return icon ? icon : LoadIconW(nullptr, MAKEINTRESOURCEW(32512)); // of a build without the drawings
}

Painting::Painting(HWND window) : window_(window), screen_(BeginPaint(window, &paint_)) {
    GetClientRect(window, &area_);
    memory_ = CreateCompatibleDC(screen_);
    picture_.reset(CreateCompatibleBitmap(screen_, std::max<int>(area_.right, 1), std::max<int>(area_.bottom, 1)));
    before_ = SelectObject(memory_, picture_.get());
}

Painting::~Painting() {
    BitBlt(screen_, 0, 0, area_.right, area_.bottom, memory_, 0, 0, SRCCOPY);
    SelectObject(memory_, before_);
    DeleteDC(memory_);
    EndPaint(window_, &paint_);
}

Window::~Window() {
    if (!handle_) {
        return;
    }
    // The derived part is gone already: its messages are nobody's.
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    DestroyWindow(handle_);
}

void Window::create(const wchar_t* class_name, const wchar_t* title, DWORD style, DWORD extended, const RECT& place,
                    HWND owner) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    description.hIcon = clientIcon(GetSystemMetrics(SM_CXICON));
    description.hIconSm = clientIcon(GetSystemMetrics(SM_CXSMICON));
    description.lpszClassName = class_name;
    RegisterClassExW(&description);
    CreateWindowExW(extended, class_name, title, style, place.left, place.top, place.right - place.left,
                    place.bottom - place.top, owner, nullptr, description.hInstance, this);
    if (!handle_) {
        throw std::runtime_error("a window could not be made");
    }
}

LRESULT Window::defaultMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_NEXTDLGCTL: {
        const bool given = LOWORD(lparam) != 0;
        SetFocus(given ? reinterpret_cast<HWND>(wparam) : GetNextDlgTabItem(handle_, GetFocus(), wparam != 0));
        return 0;
    }
    case WM_ACTIVATE: {
        const HWND focus = GetFocus();
        if (LOWORD(wparam) == WA_INACTIVE) {
            had_focus_ = IsChild(handle_, focus) ? focus : nullptr;
        } else if (HIWORD(wparam) == 0) { // not while it is an icon
            SetFocus(IsChild(handle_, had_focus_) && IsWindowVisible(had_focus_) ? had_focus_ : handle_);
        }
        return 0;
    }
    default:
        return DefWindowProcW(handle_, message, wparam, lparam);
    }
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    try {
        if (message == WM_NCCREATE) {
            auto* const self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
            self->handle_ = window;
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
        auto* const self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!self) {
            return DefWindowProcW(window, message, wparam, lparam);
        }
        if (message == WM_NCDESTROY) {
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            self->handle_ = nullptr;
            return DefWindowProcW(window, message, wparam, lparam);
        }
        return self->message(message, wparam, lparam);
    } catch (...) {
        return 0;
    }
}

} // namespace messenger_client
