#include "ui/native.h"

#include <algorithm>
#include <map>
#include <memory>

#include <windows.h>
#include <windowsx.h>

#include <commctrl.h>

#include "common/com/handles.h"
#include "ui/screen.h"
#include "ui/timer.h"
#include "ui/win32/surface.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

using com::wide;

namespace {

constexpr wchar_t form_class[] = L"MurmelixForm", child_class[] = L"MurmelixControl";
constexpr UINT first_command = 1000;

struct FormData {
    HMENU bar = nullptr; // the window destroys it
    std::vector<MenuItem*> commands;
    std::map<UINT, win32::Bitmap> bitmaps; // by the item's command
    Picture icon;
    win32::Icon small_icon, large_icon;
    HWND tips = nullptr;
    HWND disabled_owner = nullptr; // while it is modal
};

// What the toolkit keeps of a window of its own or of a system control.
struct ControlData {
    Control* control;
    Kind kind;
    std::unique_ptr<FormData> form{};
    bool heading = false;
    bool pressed = false;   // a mouse button went down here
    bool being_set = false; // its text, by the program: what the system makes of it is no input
};

HWND window(native::Handle handle) {
    return reinterpret_cast<HWND>(handle);
}

native::Handle handle(HWND hwnd) {
    return reinterpret_cast<native::Handle>(hwnd);
}

std::map<HWND, ControlData>& windows() {
    static std::map<HWND, ControlData> all;
    return all;
}

ControlData* dataOf(HWND hwnd) {
    const auto found = windows().find(hwnd);
    return found == windows().end() ? nullptr : &found->second;
}

template <class T>
T* controlAs(HWND hwnd) {
    ControlData* data = dataOf(hwnd);
    return data ? dynamic_cast<T*>(data->control) : nullptr;
}

FormData& formData(HWND form) {
    return *windows().at(form).form;
}

// No exception of a handler gets into the window system.
template <class Handler>
void guarded(Handler&& handler) {
    try {
        handler();
    } catch (...) {
    }
}

int shiftState() {
    return (GetKeyState(VK_SHIFT) < 0 ? 1 : 0) + (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) +
           (GetKeyState(VK_MENU) < 0 ? 4 : 0);
}

Key keyOf(WPARAM code) {
    switch (code) {
    case VK_TAB:
        return Key::tab;
    case VK_RETURN:
        return Key::enter;
    case VK_ESCAPE:
        return Key::escape;
    case VK_UP:
        return Key::up;
    case VK_DOWN:
        return Key::down;
    case VK_LEFT:
        return Key::left;
    case VK_RIGHT:
        return Key::right;
    default:
        return Key::other;
    }
}

std::u16string textOf(HWND hwnd) {
    const int length = GetWindowTextLengthW(hwnd);
    std::u16string text(static_cast<std::size_t>(length) + 1, u'\0');
    const int got = GetWindowTextW(hwnd, reinterpret_cast<wchar_t*>(text.data()), length + 1);
    text.resize(static_cast<std::size_t>(std::max(got, 0)));
    return text;
}

void onCommand(HWND control, UINT code) {
    if (code == BN_DOUBLECLICKED && (controlAs<Button>(control) || controlAs<CheckBox>(control))) {
        code = BN_CLICKED; // the second click of two quick ones counts as well
    }
    if (auto* button = controlAs<Button>(control)) {
        if (code == BN_CLICKED) {
            button->onClick();
        } else if (code == BN_SETFOCUS) {
            button->onFocus();
        }
    } else if (auto* check = controlAs<CheckBox>(control)) {
        if (code == BN_CLICKED) {
            check->onClick();
        } else if (code == BN_SETFOCUS) {
            check->onFocus();
        }
    } else if (auto* text = controlAs<TextBox>(control)) {
        if (code == EN_CHANGE && !dataOf(control)->being_set) {
            text->onText(textOf(control));
        } else if (code == EN_SETFOCUS) {
            text->onFocus();
        }
    } else if (auto* list = controlAs<DropDownList>(control)) {
        if (code == CBN_SELCHANGE) {
            list->onPick(static_cast<int>(SendMessageW(control, CB_GETCURSEL, 0, 0)));
        } else if (code == CBN_SETFOCUS) {
            list->onFocus();
        }
    }
}

void onScroll(HWND bar, UINT code) {
    auto* control = controlAs<ScrollBar>(bar);
    if (!control) {
        return;
    }
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    switch (code) {
    case SB_LINEUP:
        return control->setValue(control->Value() - 1);
    case SB_LINEDOWN:
        return control->setValue(control->Value() + 1);
    case SB_PAGEUP:
        return control->setValue(control->Value() - control->page());
    case SB_PAGEDOWN:
        return control->setValue(control->Value() + control->page());
    case SB_TOP:
        return control->setValue(0);
    case SB_BOTTOM:
        return control->setValue(control->Max());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        GetScrollInfo(bar, SB_CTL, &info);
        return control->setValue(info.nTrackPos);
    default:
        return;
    }
}

UINT prefixes(const Control& control) {
    return control.UseMnemonic() ? 0 : DT_NOPREFIX;
}

// A line around, broken by the caption.
void paintFrame(HDC dc, const RECT& area, const Control& frame) {
    const win32::Selected font(dc, win32::fonts().standard.get());
    SetBkMode(dc, TRANSPARENT);
    const auto& caption = frame.Caption();
    const auto length = static_cast<int>(std::min<std::size_t>(caption.size(), 1024));
    RECT text{};
    DrawTextW(dc, caption.empty() ? L"X" : wide(caption), caption.empty() ? 1 : length, &text,
              DT_CALCRECT | DT_SINGLELINE | prefixes(frame));
    const int indent = win32::scaled(9), gap = win32::scaled(3);
    OffsetRect(&text, indent, 0);
    text.right = std::min(text.right, area.right - indent);
    {
        const win32::Pen pen(CreatePen(PS_SOLID, 1, GetSysColor(COLOR_BTNSHADOW)));
        const win32::Selected line(dc, pen.get());
        const win32::Selected inside(dc, GetStockObject(NULL_BRUSH));
        if (!caption.empty()) {
            ExcludeClipRect(dc, text.left - gap, text.top, text.right + gap, text.bottom);
        }
        RoundRect(dc, 0, text.bottom / 2, area.right, area.bottom, win32::scaled(6), win32::scaled(6));
        SelectClipRgn(dc, nullptr);
    }
    SetTextColor(dc, GetSysColor(frame.Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    DrawTextW(dc, wide(caption), length, &text, DT_SINGLELINE | DT_END_ELLIPSIS | prefixes(frame));
}

COLORREF linkColour(bool enabled) {
    if (!enabled) {
        return GetSysColor(COLOR_GRAYTEXT);
    }
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
        (contrast.dwFlags & HCF_HIGHCONTRASTON)) {
        return GetSysColor(COLOR_HOTLIGHT);
    }
    return RGB(0, 92, 184); // the system's own is pale in some themes
}

void paintLink(HWND hwnd, HDC dc, const RECT& area, const Control& link) {
    const win32::Selected font(dc, win32::fonts().link.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, linkColour(link.Enabled()));
    RECT text = area;
    DrawTextW(dc, wide(link.Caption()), -1, &text, DT_SINGLELINE | DT_END_ELLIPSIS | prefixes(link));
    if (GetFocus() == hwnd) {
        SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
        DrawFocusRect(dc, &area);
    }
}

void paintPictureBox(HDC dc, const RECT& area, const RECT& part, PictureBox& box) {
    if (box.surface().impl().drawn_on) {
        return box.surface().impl().copyTo(dc, part);
    }
    const auto icon = win32::loadPicture(box.picture());
    const int size = win32::scaled(box.picture().size);
    if (icon) {
        DrawIconEx(dc, (area.right - size) / 2, (area.bottom - size) / 2, icon.get(), size, size, 0, nullptr,
                   DI_NORMAL);
    }
}

class Painting {
  public:
    explicit Painting(HWND hwnd) : hwnd_(hwnd), dc_(BeginPaint(hwnd, &what_)) {}
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(hwnd_, &what_); }
    HDC dc() const { return dc_; }
    const RECT& part() const { return what_.rcPaint; }

  private:
    HWND hwnd_;
    PAINTSTRUCT what_{};
    HDC dc_;
};

void paint(HWND hwnd, const ControlData& data) {
    const Painting painting(hwnd);
    RECT area{};
    GetClientRect(hwnd, &area);
    if (data.kind == Kind::frame) {
        paintFrame(painting.dc(), area, *data.control);
    } else if (data.kind == Kind::link) {
        paintLink(hwnd, painting.dc(), area, *data.control);
    } else if (auto* box = dynamic_cast<PictureBox*>(data.control)) {
        paintPictureBox(painting.dc(), area, painting.part(), *box);
    }
}

// A click is a button that goes down and up again in one place; tells whether the message was part of one.
bool onClickOf(HWND hwnd, ControlData& data, UINT message, LPARAM lparam) {
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        data.pressed = true;
        SetCapture(hwnd);
        return true;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
        const bool pressed = std::exchange(data.pressed, false);
        if (GetCapture() == hwnd) {
            ReleaseCapture();
        }
        RECT area{};
        GetClientRect(hwnd, &area);
        if (pressed && PtInRect(&area, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) {
            data.control->onClick();
        }
        return true;
    }
    default:
        return false;
    }
}

int buttonOf(UINT message) {
    switch (message) {
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
        return right_button;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
        return middle_button;
    default:
        return left_button;
    }
}

// Mouse and keyboard of a picture box; tells whether the message was one of those.
bool onInput(HWND hwnd, PictureBox& box, UINT message, WPARAM wparam, LPARAM lparam) {
    // Both are read as signed: a mouse that is held leads beyond the edges.
    const double x = GET_X_LPARAM(lparam), y = GET_Y_LPARAM(lparam);
    const int held = win32::buttonsOf(static_cast<DWORD>(wparam));
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        if (box.takesFocus()) {
            ::SetFocus(hwnd);
        }
        if (message == WM_LBUTTONDBLCLK) {
            if (box.DblClick) {
                box.DblClick();
            }
            return true;
        }
        SetCapture(hwnd); // so that the button is let go here
        if (box.MouseDown) {
            box.MouseDown(buttonOf(message), shiftState(), x, y);
        }
        return true;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
        const bool pressed_here = GetCapture() == hwnd;
        if (held == 0) {
            ReleaseCapture();
        }
        if (box.MouseUp) {
            box.MouseUp(buttonOf(message), shiftState(), x, y);
        }
        RECT area{};
        GetClientRect(hwnd, &area);
        if (message == WM_LBUTTONUP && pressed_here && PtInRect(&area, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) {
            box.onClick();
        }
        return true;
    }
    case WM_MOUSEMOVE:
        if (box.MouseMove) {
            box.MouseMove(held, shiftState(), x, y);
        }
        return true;
    case WM_KEYDOWN:
        return box.KeyDown && box.KeyDown(keyOf(wparam));
    case WM_MOUSEWHEEL:
        if (box.Wheel) {
            box.Wheel(-GET_WHEEL_DELTA_WPARAM(wparam) * 3 / WHEEL_DELTA);
        }
        return true;
    default:
        return false;
    }
}

LRESULT onShared(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_COMMAND:
        if (lparam != 0) {
            guarded([&] { onCommand(reinterpret_cast<HWND>(lparam), HIWORD(wparam)); });
        }
        return 0;
    case WM_VSCROLL:
        guarded([&] { onScroll(reinterpret_cast<HWND>(lparam), LOWORD(wparam)); });
        return 0;
    case WM_CTLCOLORSTATIC:
        SetBkMode(reinterpret_cast<HDC>(wparam), TRANSPARENT);
        SetTextColor(reinterpret_cast<HDC>(wparam),
                     GetSysColor(IsWindowEnabled(reinterpret_cast<HWND>(lparam)) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        [[fallthrough]];
    case WM_CTLCOLORBTN:
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
    default:
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
}

LRESULT CALLBACK childProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    ControlData* data = dataOf(hwnd);
    if (!data) {
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
    switch (message) {
    case WM_PAINT:
        guarded([&] { paint(hwnd, *data); });
        return 0;
    case WM_ERASEBKGND:
        if (data->kind == Kind::picture_box && static_cast<PictureBox*>(data->control)->surface().impl().drawn_on) {
            return 1;
        }
        break;
    case WM_SETTEXT:
    case WM_ENABLE:
        if (data->kind == Kind::frame || data->kind == Kind::link) {
            InvalidateRect(hwnd, nullptr, TRUE);
        }
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        if (message == WM_SETFOCUS) {
            guarded([&] { data->control->onFocus(); });
        }
        if (data->kind == Kind::link) {
            InvalidateRect(hwnd, nullptr, TRUE);
        }
        return 0;
    case WM_SETCURSOR:
        if (data->kind != Kind::link) {
            break;
        }
        SetCursor(LoadCursorA(nullptr, IDC_HAND));
        return TRUE;
    case WM_SIZE:
        if (data->kind == Kind::frame) {
            InvalidateRect(hwnd, nullptr, TRUE);
        }
        break;
    default:
        break;
    }
    if (data->kind == Kind::link) {
        bool used = message == WM_KEYDOWN && wparam == VK_SPACE;
        guarded([&] {
            if (used) {
                data->control->onClick();
            } else if (message != WM_RBUTTONDOWN && message != WM_MBUTTONDOWN) {
                used = onClickOf(hwnd, *data, message, lparam);
            }
        });
        if (used) {
            return 0;
        }
    }
    if (auto* box = dynamic_cast<PictureBox*>(data->control)) {
        bool used = false;
        guarded([&] { used = onInput(hwnd, *box, message, wparam, lparam); });
        if (used) {
            return 0;
        }
    }
    return onShared(hwnd, message, wparam, lparam);
}

void styleTips(HWND tips) {
    SendMessageW(tips, WM_SETFONT, reinterpret_cast<WPARAM>(win32::fonts().standard.get()), TRUE);
    SendMessageW(tips, TTM_SETMAXTIPWIDTH, 0, win32::scaled(360));
}

// Of the screen that most of a window is on.
RECT workArea(HWND hwnd) {
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromWindow(hwnd, MONITOR_DEFAULTTONEAREST), &screen);
    return screen.rcWork;
}

// What stands out of the screen to the right or below moves there as far as it has room; not while the user moves it.
void keepOnScreen(HWND hwnd) {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &thread) && (thread.flags & GUI_INMOVESIZE)) {
        return;
    }
    RECT own{};
    GetWindowRect(hwnd, &own);
    const RECT screen = workArea(hwnd);
    const LONG left = std::max(std::min(own.left, screen.right - (own.right - own.left)), screen.left);
    const LONG top = std::max(std::min(own.top, screen.bottom - (own.bottom - own.top)), screen.top);
    SetWindowPos(hwnd, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// Every window in the system's present fonts and colours, at the screen's present resolution.
void restyle() {
    const win32::Fonts before = win32::renewFonts(); // in use until every control has its new one
    std::vector<HWND> forms;
    for (const auto& [hwnd, data] : windows()) {
        const win32::Font& font = data.heading ? win32::fonts().heading : win32::fonts().standard;
        SendMessageW(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
        if (data.form) {
            forms.push_back(hwnd);
        }
    }
    for (HWND form : forms) {
        ControlData* data = dataOf(form);
        if (!data) {
            continue;
        }
        if (data->form->tips) {
            styleTips(data->form->tips);
        }
        native::setIcon(handle(form), Picture(data->form->icon));
        for (const MenuItem* item : data->form->commands) {
            native::setMenuItemPicture(handle(form), *item, item->picture());
        }
        guarded([&] { static_cast<Form&>(*data->control).onSettingsChange(); });
        RedrawWindow(form, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    }
}

// What the system tells all windows is heard by the one that owns the others; tells whether it was that.
bool onSystemChange(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    static const UINT taskbar_created = RegisterWindowMessageW(L"TaskbarCreated");
    if (GetWindow(hwnd, GW_OWNER)) {
        return message == WM_DPICHANGED; // all windows have the resolution of the first one's screen
    }
    if (message == WM_DPICHANGED) {
        const auto* place = reinterpret_cast<const RECT*>(lparam);
        win32::setScreenDpi(LOWORD(wparam));
        if (place) {
            SetWindowPos(hwnd, nullptr, place->left, place->top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
        restyle();
        keepOnScreen(hwnd);
        return true;
    }
    if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED ||
        (message == WM_SETTINGCHANGE && win32::systemFontChanged())) {
        restyle();
    } else if (message == taskbar_created) {
        win32::restoreTrayIcon();
    }
    return false;
}

LRESULT CALLBACK formProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    ControlData* data = dataOf(hwnd);
    if (!data) {
        return DefWindowProcW(hwnd, message, wparam, lparam);
    }
    auto& form = static_cast<Form&>(*data->control);
    bool done = false;
    guarded([&] { done = onSystemChange(hwnd, message, wparam, lparam) || onClickOf(hwnd, *data, message, lparam); });
    if (done) {
        return 0;
    }
    switch (message) {
    case WM_GETMINMAXINFO: {
        // The width is given, even where it is more than the screen has.
        auto& limits = *reinterpret_cast<MINMAXINFO*>(lparam);
        limits.ptMaxTrackSize = {32767, 32767};
        return 0;
    }
    case WM_CLOSE:
        guarded([&] { form.onClose(); });
        return 0;
    case WM_COMMAND:
        if (lparam == 0 && HIWORD(wparam) == 0 && LOWORD(wparam) >= first_command) {
            auto& commands = data->form->commands;
            const std::size_t index = LOWORD(wparam) - first_command;
            if (index < commands.size()) {
                guarded([&] { commands[index]->onClick(); });
            }
            return 0;
        }
        break;
    case WM_ACTIVATE:
        // The control that had the focus gets it back.
        if (LOWORD(wparam) != WA_INACTIVE && HIWORD(wparam) == 0 && form.focused()) {
            ::SetFocus(window(form.focused()->handle()));
            return 0;
        }
        break;
    default:
        break;
    }
    return onShared(hwnd, message, wparam, lparam);
}

void registerClasses() {
    static const bool once = [] {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
        InitCommonControlsEx(&controls);
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        description.lpszClassName = form_class;
        description.lpfnWndProc = formProcedure;
        RegisterClassExW(&description);
        description.lpszClassName = child_class;
        description.lpfnWndProc = childProcedure;
        description.style = CS_DBLCLKS;
        RegisterClassExW(&description);
        return true;
    }();
    static_cast<void>(once);
}

struct SystemControl {
    const wchar_t* window_class;
    DWORD style;
    DWORD extended_style;
};

SystemControl systemControl(Kind kind) {
    switch (kind) {
    case Kind::label:
        return {L"STATIC", SS_LEFT, 0};
    case Kind::line:
        return {L"STATIC", SS_ETCHEDHORZ, 0};
    case Kind::button:
        return {L"BUTTON", BS_PUSHBUTTON | BS_NOTIFY | WS_TABSTOP, 0};
    case Kind::check_box:
        return {L"BUTTON", BS_CHECKBOX | BS_NOTIFY | WS_TABSTOP, 0};
    case Kind::text_box:
        return {L"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
    case Kind::drop_down_list:
        return {L"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0};
    case Kind::scroll_bar:
        return {L"SCROLLBAR", SBS_VERT, 0};
    default:
        return {child_class, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT};
    }
}

HWND rootOf(HWND hwnd) {
    return GetAncestor(hwnd, GA_ROOT);
}

// The toolkit's part of a keyboard message: tells whether it is done with.
bool translate(const MSG& message) {
    auto* form = controlAs<Form>(rootOf(message.hwnd));
    if (!form) {
        return false;
    }
    bool used = false;
    if (message.message == WM_SYSCHAR) {
        guarded([&] { used = form->onMnemonicKey(static_cast<char16_t>(message.wParam)); });
    } else if (message.message == WM_KEYDOWN && (shiftState() & 6) == 0) {
        const Key key = keyOf(message.wParam);
        const bool list_open = controlAs<DropDownList>(message.hwnd) && native::droppedDown(handle(message.hwnd));
        if (key == Key::tab || (!list_open && key != Key::other)) {
            guarded([&] { used = form->onKey(key, GetKeyState(VK_SHIFT) < 0); });
        }
    }
    return used;
}

std::map<UINT_PTR, Timer*>& timers() {
    static std::map<UINT_PTR, Timer*> all;
    return all;
}

void CALLBACK timerProcedure(HWND, UINT, UINT_PTR id, DWORD) {
    const auto timer = timers().find(id);
    if (timer != timers().end()) {
        guarded([&] { timer->second->onTick(); });
    }
}

UINT menuState(bool enabled) {
    return enabled ? MF_ENABLED : MF_GRAYED;
}

HMENU popupOf(HWND form, const Menu& menu) {
    return GetSubMenu(GetMenu(form), menu.position());
}

} // namespace

double twipsPerPixel() {
    return 1440.0 / win32::screenDpi();
}

void runMessageLoop() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        win32::dispatch(message);
    }
}

namespace win32 {

void dispatch(const MSG& message) {
    if (translate(message)) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

int buttonsOf(DWORD held) {
    return (held & MK_LBUTTON ? left_button : 0) | (held & MK_RBUTTON ? right_button : 0) |
           (held & MK_MBUTTON ? middle_button : 0);
}

HWND mainWindow() {
    for (const auto& [hwnd, data] : windows()) {
        if (data.kind == Kind::form && !GetWindow(hwnd, GW_OWNER)) {
            return hwnd;
        }
    }
    return nullptr;
}

HWND visibleMainWindow() {
    HWND hwnd = mainWindow();
    return hwnd && IsWindowVisible(hwnd) ? hwnd : nullptr;
}

} // namespace win32

namespace native {

Handle createControl(Control& control, Kind kind, Handle parent, const std::u16string& caption) {
    const SystemControl made_of = systemControl(kind);
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | made_of.style;
    HWND hwnd = CreateWindowExW(made_of.extended_style, made_of.window_class, wide(caption), style, 0, 0, 0, 0,
                                window(parent), nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!hwnd) {
        throw com::Error(HRESULT_FROM_WIN32(GetLastError()));
    }
    windows().emplace(hwnd, ControlData{&control, kind, nullptr});
    SendMessageW(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(win32::fonts().standard.get()), FALSE);
    if (kind == Kind::drop_down_list) {
        SendMessageW(hwnd, CB_SETMINVISIBLE, 12, 0);
    }
    // The first created is the last in the window system's order, as it is in the Tab key's.
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return handle(hwnd);
}

Handle createForm(Form& form, Handle owner, const std::u16string& caption, FormStyle style) {
    registerClasses();
    const DWORD buttons = style == FormStyle::window ? WS_MINIMIZEBOX : 0;
    HWND hwnd = CreateWindowExW(WS_EX_CONTROLPARENT | (style == FormStyle::dialog ? WS_EX_DLGMODALFRAME : 0),
                                form_class, wide(caption), WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | buttons,
                                CW_USEDEFAULT, 0, 0, 0, window(owner), nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!hwnd) {
        throw com::Error(HRESULT_FROM_WIN32(GetLastError()));
    }
    static const int dpi_of_first = win32::dpiOf(hwnd);
    static const bool told = dpi_of_first > 0 && (win32::setScreenDpi(dpi_of_first), true);
    static_cast<void>(told);
    windows().emplace(hwnd, ControlData{&form, Kind::form, std::make_unique<FormData>()});
    // Accelerators and the focus are always shown.
    SendMessageW(hwnd, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
    return handle(hwnd);
}

void destroy(Handle control) {
    HWND hwnd = window(control);
    if (!hwnd) {
        return;
    }
    const auto last_words = windows().extract(hwnd); // outlives the window
    DestroyWindow(hwnd);
}

void setCaption(Handle control, const std::u16string& caption) {
    ControlData& data = windows().at(window(control));
    data.being_set = true;
    SetWindowTextW(window(control), wide(caption));
    data.being_set = false;
}

void setVisible(Handle control, bool visible) {
    HWND hwnd = window(control);
    if (ControlData* data = dataOf(hwnd); data && data->form && data->form->disabled_owner && !visible) {
        EnableWindow(std::exchange(data->form->disabled_owner, nullptr), TRUE);
    }
    // Where it is left to others, the next window in front can be any program's.
    if (HWND owner = GetWindow(hwnd, GW_OWNER);
        !visible && owner && IsWindowVisible(owner) && IsWindowEnabled(owner) && GetActiveWindow() == hwnd) {
        SetForegroundWindow(owner);
    }
    ShowWindow(hwnd, visible ? SW_SHOW : SW_HIDE);
}

void setEnabled(Handle control, bool enabled) {
    EnableWindow(window(control), enabled);
}

void setUseMnemonic(Handle control, bool use) {
    HWND hwnd = window(control);
    if (controlAs<Label>(hwnd)) {
        const LONG_PTR style = GetWindowLongPtrW(hwnd, GWL_STYLE);
        SetWindowLongPtrW(hwnd, GWL_STYLE, use ? style & ~LONG_PTR{SS_NOPREFIX} : style | SS_NOPREFIX);
    }
    InvalidateRect(hwnd, nullptr, TRUE);
}

void setToolTip(Handle control, const std::u16string& tip) {
    HWND hwnd = window(control), form = rootOf(hwnd);
    HWND& tips = formData(form).tips;
    if (!tips) {
        tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0,
                               0, 0, form, nullptr, GetModuleHandleW(nullptr), nullptr);
        styleTips(tips);
    }
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(hwnd);
    SendMessageW(tips, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    tool.lpszText = const_cast<wchar_t*>(wide(tip));
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void setBounds(Handle control, const Rect& pixels) {
    HWND hwnd = window(control);
    // A drop-down list's height is that of its list; the closed one's follows the font.
    const int height = controlAs<DropDownList>(hwnd) ? win32::scaled(200) : pixels.height;
    SetWindowPos(hwnd, nullptr, pixels.left, pixels.top, pixels.width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void bringToFront(Handle control) {
    SetWindowPos(window(control), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void setFocus(Handle control) {
    // A window in the background stays there: it gives the focus to its control when it is activated.
    HWND hwnd = window(control);
    if (GetFocus() != hwnd && GetActiveWindow() == rootOf(hwnd)) {
        ::SetFocus(hwnd);
    }
}

void setDefault(Handle button, bool is_default) {
    HWND hwnd = window(button);
    const LONG_PTR style = GetWindowLongPtrW(hwnd, GWL_STYLE) & 0xFFFF & ~LONG_PTR{BS_TYPEMASK};
    SendMessageW(hwnd, BM_SETSTYLE, static_cast<WPARAM>(style | (is_default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON)), TRUE);
}

Size captionSize(Handle control, const std::u16string& caption, int width) {
    constexpr std::size_t longest = 4096; // beyond any screen
    HWND hwnd = window(control);
    const ControlData& data = windows().at(hwnd);
    const bool wraps = width > 0;
    // What the control has beside its caption.
    Size own;
    switch (data.kind) {
    case Kind::check_box:
        own = {win32::scaled(24), win32::scaled(4)};
        break;
    case Kind::button:
        own = {win32::scaled(24), win32::scaled(12)};
        break;
    case Kind::text_box:
        own = {win32::scaled(12), win32::scaled(7)};
        break;
    case Kind::drop_down_list:
        own = {win32::scaled(28), win32::scaled(9)};
        break;
    case Kind::link:
        own = {win32::scaled(3), 0}; // so that the mark of the focus leaves the last letter free
        break;
    case Kind::frame:
        own = {win32::scaled(24), 0};
        break;
    default:
        break;
    }
    const win32::Font& font = data.heading              ? win32::fonts().heading
                              : data.kind == Kind::link ? win32::fonts().link
                                                        : win32::fonts().standard;
    const win32::ScreenDc dc;
    const win32::Selected selected(dc.get(), font.get());
    RECT text{0, 0, std::max(width - own.width, 1), 0};
    const UINT format = DT_CALCRECT | DT_EXPANDTABS | (wraps ? DT_WORDBREAK : DT_SINGLELINE) | prefixes(*data.control);
    DrawTextW(dc.get(), caption.empty() ? L" " : wide(caption),
              caption.empty() ? 1 : static_cast<int>(std::min(caption.size(), longest)), &text, format);
    return {text.right + own.width, text.bottom + own.height};
}

void setHeading(Handle label) {
    windows().at(window(label)).heading = true;
    SendMessageW(window(label), WM_SETFONT, reinterpret_cast<WPARAM>(win32::fonts().heading.get()), TRUE);
}

void setCentered(Handle label) {
    const LONG_PTR style = GetWindowLongPtrW(window(label), GWL_STYLE);
    SetWindowLongPtrW(window(label), GWL_STYLE, (style & ~LONG_PTR{SS_TYPEMASK}) | SS_CENTER);
}

void setChecked(Handle check_box, bool checked) {
    SendMessageW(window(check_box), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

void clearItems(Handle list) {
    SendMessageW(window(list), CB_RESETCONTENT, 0, 0);
}

void addItem(Handle list, const std::u16string& text) {
    SendMessageW(window(list), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(text)));
}

void setItems(Handle list, const std::vector<std::u16string>& items) {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    if (!GetComboBoxInfo(window(list), &parts)) {
        return;
    }
    SendMessageW(window(list), CB_RESETCONTENT, 0, 0);
    // Straight to its list: by the box, which considers each of them for showing, thousands take half a second.
    for (const std::u16string& item : items) {
        SendMessageW(parts.hwndList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(item)));
    }
    InvalidateRect(window(list), nullptr, TRUE);
}

void selectItem(Handle list, int index) {
    SendMessageW(window(list), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

bool droppedDown(Handle list) {
    return SendMessageW(window(list), CB_GETDROPPEDSTATE, 0, 0) != 0;
}

void setScroll(Handle scroll_bar, int value, int max, int page) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS | SIF_RANGE | SIF_PAGE;
    info.nMax = max + page - 1;
    info.nPage = static_cast<UINT>(page);
    info.nPos = value;
    // Painting one takes long: it waits until there is nothing else to do.
    SetScrollInfo(window(scroll_bar), SB_CTL, &info, FALSE);
    InvalidateRect(window(scroll_bar), nullptr, FALSE);
}

void setSunken(Handle picture_box, bool sunken) {
    HWND hwnd = window(picture_box);
    const LONG_PTR style = GetWindowLongPtrW(hwnd, GWL_EXSTYLE);
    SetWindowLongPtrW(hwnd, GWL_EXSTYLE, sunken ? style | WS_EX_CLIENTEDGE : style & ~LONG_PTR{WS_EX_CLIENTEDGE});
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void setPicture(Handle picture_box, const Picture&) {
    InvalidateRect(window(picture_box), nullptr, TRUE);
}

void setOuterWidth(Handle form, int pixels) {
    RECT now{};
    GetWindowRect(window(form), &now);
    const RECT screen = workArea(window(form));
    // What grows beyond the right edge of the screen moves to the left as far as there is room.
    int left = now.left;
    if (now.right <= screen.right && left + pixels > screen.right) {
        left = std::max<int>(screen.right - pixels, screen.left);
    }
    SetWindowPos(window(form), nullptr, left, now.top, pixels, now.bottom - now.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void setInnerSize(Handle form, int width, int height) {
    HWND hwnd = window(form);
    RECT outer{0, 0, width, height}, inner{};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(hwnd, GWL_STYLE)), GetMenu(hwnd) != nullptr,
                       static_cast<DWORD>(GetWindowLongPtrW(hwnd, GWL_EXSTYLE)));
    SIZE wanted{outer.right - outer.left, outer.bottom - outer.top};
    // A border of another resolution, or a menu bar of two lines, leaves less room than was thought.
    for (int attempt = 0; attempt < 3; ++attempt) {
        SetWindowPos(hwnd, nullptr, 0, 0, wanted.cx, wanted.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        GetClientRect(hwnd, &inner);
        if (inner.right == width && inner.bottom == height) {
            return;
        }
        wanted = {wanted.cx + width - inner.right, wanted.cy + height - inner.bottom};
    }
}

void center(Handle form) {
    HWND hwnd = window(form), owner = GetWindow(hwnd, GW_OWNER);
    const bool by_owner = owner && IsWindowVisible(owner) && !IsIconic(owner);
    const RECT screen = workArea(by_owner ? owner : hwnd);
    RECT around = screen, own{};
    if (by_owner) {
        GetWindowRect(owner, &around);
    }
    GetWindowRect(hwnd, &own);
    const auto between = [](LONG from, LONG to, LONG size, LONG least, LONG most) {
        return std::max(std::min((from + to - size) / 2, most - size), least);
    };
    SetWindowPos(hwnd, nullptr, between(around.left, around.right, own.right - own.left, screen.left, screen.right),
                 between(around.top, around.bottom, own.bottom - own.top, screen.top, screen.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

Rect innerBounds(Handle form) {
    RECT area{};
    GetClientRect(window(form), &area);
    return {0, 0, area.right, area.bottom};
}

void setIcon(Handle form, const Picture& picture) {
    FormData& data = formData(window(form));
    data.icon = picture;
    auto small_icon = win32::loadPicture(picture, win32::systemMetric(SM_CXSMICON));
    auto large_icon = win32::loadPicture(picture, win32::systemMetric(SM_CXICON));
    SendMessageW(window(form), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small_icon.get()));
    SendMessageW(window(form), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(large_icon.get()));
    data.small_icon = std::move(small_icon);
    data.large_icon = std::move(large_icon);
}

void show(Handle form) {
    if (!MonitorFromWindow(window(form), MONITOR_DEFAULTTONULL)) { // its screen is gone
        center(form);
    }
    ShowWindow(window(form), IsIconic(window(form)) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(window(form));
    // What is done next, starting another program for instance, does not keep the user from seeing it.
    RedrawWindow(window(form), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void runModal(const Form& form) {
    HWND hwnd = window(form.handle()), owner = GetWindow(hwnd, GW_OWNER);
    if (owner && IsWindowEnabled(owner)) {
        formData(hwnd).disabled_owner = owner;
        EnableWindow(owner, FALSE);
    }
    MSG message{};
    while (form.Visible() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        win32::dispatch(message);
    }
}

void addMenu(Handle form, const Menu& menu) {
    HWND hwnd = window(form);
    FormData& data = formData(hwnd);
    if (!data.bar) {
        data.bar = CreateMenu();
    }
    AppendMenuW(data.bar, MF_POPUP, reinterpret_cast<UINT_PTR>(CreatePopupMenu()), wide(menu.Caption()));
    SetMenu(hwnd, data.bar);
}

void addMenuItem(Handle form, const Menu& menu, MenuItem& item) {
    FormData& data = formData(window(form));
    const UINT id = first_command + static_cast<UINT>(data.commands.size());
    data.commands.push_back(&item);
    AppendMenuW(popupOf(window(form), menu), item.separator() ? MF_SEPARATOR : MF_STRING, id, wide(item.Caption()));
}

void changeMenu(Handle form, const Menu& menu) {
    HWND hwnd = window(form);
    const auto position = static_cast<UINT>(menu.position());
    ModifyMenuW(GetMenu(hwnd), position, MF_BYPOSITION | MF_POPUP | MF_STRING | menuState(menu.Enabled()),
                reinterpret_cast<UINT_PTR>(popupOf(hwnd, menu)), wide(menu.Caption()));
    DrawMenuBar(hwnd);
}

void changeMenuItem(Handle form, const MenuItem& item) {
    HMENU popup = popupOf(window(form), item.menu());
    const auto position = static_cast<UINT>(item.position());
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_STATE;
    info.fState = item.Enabled() ? MFS_ENABLED : MFS_GRAYED;
    info.dwTypeData = const_cast<wchar_t*>(wide(item.Caption()));
    SetMenuItemInfoW(popup, position, TRUE, &info);
}

void setMenuItemPicture(Handle form, const MenuItem& item, const Picture& picture) {
    HMENU popup = popupOf(window(form), item.menu());
    const UINT command = GetMenuItemID(popup, item.position());
    win32::Bitmap bitmap = win32::menuPicture(picture);
    SetMenuItemBitmaps(popup, command, MF_BITMAP, bitmap.get(), bitmap.get());
    formData(window(form)).bitmaps[command] = std::move(bitmap);
}

void popupMenu(Handle form, const Menu& menu) {
    HWND hwnd = window(form);
    POINT mouse{};
    GetCursorPos(&mouse);
    SetForegroundWindow(hwnd); // else the menu would stay when the user clicks elsewhere
    TrackPopupMenu(popupOf(hwnd, menu), TPM_RIGHTBUTTON, mouse.x, mouse.y, 0, hwnd, nullptr);
    PostMessageW(hwnd, WM_NULL, 0, 0);
}

Handle startTimer(Timer& timer, int interval) {
    const UINT_PTR id = SetTimer(nullptr, 0, static_cast<UINT>(interval), timerProcedure);
    timers()[id] = &timer;
    return id;
}

void stopTimer(Handle timer) {
    KillTimer(nullptr, timer);
    timers().erase(timer);
}

std::vector<std::u16string> files(const std::u16string& directory, const std::u16string& pattern) {
    std::vector<std::u16string> names;
    const bool parted = directory.empty() || directory.ends_with(u'\\');
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW(wide(directory + (parted ? u"" : u"\\") + pattern), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            names.emplace_back(reinterpret_cast<const char16_t*>(found.cFileName));
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end(), [](const std::u16string& a, const std::u16string& b) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, wide(a), -1, wide(b), -1) == CSTR_LESS_THAN;
    });
    return names;
}

} // namespace native
} // namespace murmelix::ui
