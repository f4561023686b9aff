#include "ui/win32/form.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <commctrl.h>

#include "common/com/handles.h"
#include "ui/screen.h"
#include "ui/win32/child.h"
#include "ui/win32/menu.h"
#include "ui/win32/surface.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

using com::wide;

namespace win32 {

namespace {

constexpr wchar_t form_class[] = L"MurmelixForm";

// In the order in which they were made.
std::vector<HWND>& forms() {
    static std::vector<HWND> all;
    return all;
}

void registerFormClass(const wchar_t* name) {
    static std::set<std::wstring> known;
    if (!known.insert(name).second) {
        return;
    }
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = name;
    description.lpfnWndProc = windowProcedure;
    RegisterClassExW(&description);
}

HWND createdForm(HWND owner, const std::u16string& caption, FormStyle style, const wchar_t* class_name) {
    registerClasses();
    registerFormClass(class_name);
    const DWORD kind = style == FormStyle::sizable  ? WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_THICKFRAME
                       : style == FormStyle::window ? WS_MINIMIZEBOX
                                                    : 0;
    HWND hwnd = CreateWindowExW(WS_EX_CONTROLPARENT | (style == FormStyle::dialog ? WS_EX_DLGMODALFRAME : 0),
                                class_name, wide(caption), WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | kind,
                                CW_USEDEFAULT, 0, 0, 0, owner, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!hwnd) {
        throw com::Error(HRESULT_FROM_WIN32(GetLastError()));
    }
    return hwnd;
}

void styleTips(HWND tips) {
    SendMessageW(tips, WM_SETFONT, reinterpret_cast<WPARAM>(fonts().standard.get()), TRUE);
    SendMessageW(tips, TTM_SETMAXTIPWIDTH, 0, scaled(360));
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
    if (IsIconic(hwnd) || IsZoomed(hwnd)) { // the system places it
        return;
    }
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
void restyleAll() {
    renewColours();
    const Fonts before = renewFonts(); // in use until every control has its new one
    for (HWND hwnd : allWindows()) {
        if (ControlWindow* window = find(hwnd)) {
            guarded([&] { window->restyle(); });
        }
    }
    for (HWND hwnd : std::vector<HWND>(forms())) {
        if (auto* window = find<FormWindow>(hwnd)) {
            guarded([&] { window->form().onSettingsChange(); });
            RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
        }
    }
}

} // namespace

FormWindow::FormWindow(Form& form, HWND owner, const std::u16string& caption, FormStyle style,
                       const wchar_t* class_name)
    : ControlWindow(form, createdForm(owner, caption, style, class_name ? class_name : form_class)) {
    static const int dpi_of_first = dpiOf(hwnd());
    static const bool told = dpi_of_first > 0 && (setScreenDpi(dpi_of_first), true);
    static_cast<void>(told);
    forms().push_back(hwnd());
    SendMessageW(hwnd(), WM_SETFONT, reinterpret_cast<WPARAM>(fonts().standard.get()), FALSE);
    // Accelerators and the focus are always shown.
    SendMessageW(hwnd(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
}

FormWindow::~FormWindow() {
    std::erase(forms(), hwnd());
}

// What the system tells all windows is heard by the first; tells whether it was that.
bool FormWindow::onSystemChange(UINT message, WPARAM wparam, LPARAM lparam) {
    static const UINT taskbar_created = RegisterWindowMessageW(L"TaskbarCreated");
    if (message == WM_DISPLAYCHANGE) {
        keepOnScreen(hwnd());
        return false;
    }
    if (hwnd() != mainWindow()) {
        return message == WM_DPICHANGED; // all windows have the resolution of the first one's screen
    }
    if (message == WM_DPICHANGED) {
        const auto* place = reinterpret_cast<const RECT*>(lparam);
        setScreenDpi(LOWORD(wparam));
        if (place) {
            SetWindowPos(hwnd(), nullptr, place->left, place->top, place->right - place->left,
                         place->bottom - place->top,
                         SWP_NOZORDER | SWP_NOACTIVATE | (form().sizable() ? 0 : SWP_NOSIZE));
        }
        restyleAll();
        keepOnScreen(hwnd());
        return true;
    }
    if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED ||
        (message == WM_SETTINGCHANGE && systemFontChanged())) {
        restyleAll();
    } else if (message == taskbar_created) {
        restoreTrayIcons();
    }
    return false;
}

void FormWindow::limitSize(MINMAXINFO& limits) const {
    // The width is given, even where it is more than the screen has.
    limits.ptMaxTrackSize = {32767, 32767};
    if (const Size least = form().leastScale(); least.width > 0) {
        RECT outer{0, 0, toPixels(least.width), toPixels(least.height)};
        AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(hwnd(), GWL_STYLE)), GetMenu(hwnd()) != nullptr,
                           static_cast<DWORD>(GetWindowLongPtrW(hwnd(), GWL_EXSTYLE)));
        limits.ptMinTrackSize = {outer.right - outer.left, outer.bottom - outer.top};
    }
}

std::optional<LRESULT> FormWindow::onMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (onSystemChange(message, wparam, lparam) || clicks_.take(control(), hwnd(), message, lparam)) {
        return 0;
    }
    switch (message) {
    case WM_GETMINMAXINFO:
        limitSize(*reinterpret_cast<MINMAXINFO*>(lparam));
        return 0;
    case WM_MOVE:
        if (form().Visible() && !IsIconic(hwnd())) {
            form().onMove();
        }
        return 0;
    case WM_SIZE:
        if (form().sizable() && wparam != SIZE_MINIMIZED) {
            form().onSize();
        }
        return 0;
    case WM_ERASEBKGND: {
        const auto dc = reinterpret_cast<HDC>(wparam);
        const RECT area = clientArea(hwnd());
        if (form().Paint && area.right > 0 && area.bottom > 0) {
            painted_.impl().resize(area.right, area.bottom);
            form().Paint(painted_);
            painted_.impl().copyTo(dc, area);
            return 1;
        }
        SetDCBrushColor(dc, toColorRef(form().BackColor()));
        FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        return 1;
    }
    case WM_CLOSE:
        form().onClose();
        return 0;
    case WM_ENDSESSION:
        if (wparam) {
            form().onSessionEnd();
        }
        return 0;
    case WM_COMMAND:
        if (lparam == 0 && HIWORD(wparam) <= 1 && chooseCommand(LOWORD(wparam))) {
            return 0;
        }
        return std::nullopt;
    case WM_MEASUREITEM:
        if (measureMenuPicture(*reinterpret_cast<MEASUREITEMSTRUCT*>(lparam))) {
            return TRUE;
        }
        return std::nullopt;
    case WM_INITMENUPOPUP:
        menuOpens(reinterpret_cast<HMENU>(wparam));
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wparam) == WA_INACTIVE) {
            form().onDeactivate();
        }
        if (LOWORD(wparam) != WA_INACTIVE && HIWORD(wparam) == 0) {
            if (form().onActivate()) {
                return 0;
            }
            // The control that had the focus gets it back.
            if (form().focused()) {
                ::SetFocus(windowOf(form().focused()->handle()));
                return 0;
            }
        }
        return std::nullopt;
    case WM_COPYDATA: {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lparam);
        if (!form().DataReceived || !data || (data->cbData && !data->lpData)) {
            return 0;
        }
        return form().DataReceived(data->dwData, {static_cast<const char*>(data->lpData), data->cbData});
    }
    default:
        return std::nullopt;
    }
}

void FormWindow::restyle() {
    ControlWindow::restyle();
    if (tips_) {
        styleTips(tips_);
    }
    setIcon(Picture(icon_));
    renewPictures(form());
}

void FormWindow::setIcon(const Picture& picture) {
    icon_ = picture;
    auto small_icon = loadPicture(picture, systemMetric(SM_CXSMICON));
    auto large_icon = loadPicture(picture, systemMetric(SM_CXICON));
    SendMessageW(hwnd(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small_icon.get()));
    SendMessageW(hwnd(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(large_icon.get()));
    small_icon_ = std::move(small_icon);
    large_icon_ = std::move(large_icon);
}

HWND FormWindow::tips() {
    if (!tips_) {
        tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0,
                                0, 0, hwnd(), nullptr, GetModuleHandleW(nullptr), nullptr);
        styleTips(tips_);
    }
    return tips_;
}

void FormWindow::disableOwner() {
    HWND owner = GetWindow(hwnd(), GW_OWNER);
    if (owner && IsWindowEnabled(owner)) {
        disabled_owner_ = owner;
        EnableWindow(owner, FALSE);
    }
}

void FormWindow::beforeHiding() {
    if (disabled_owner_) {
        EnableWindow(std::exchange(disabled_owner_, nullptr), TRUE);
    }
    // Where it is left to others, the next window in front can be any program's.
    if (HWND owner = GetWindow(hwnd(), GW_OWNER);
        owner && IsWindowVisible(owner) && IsWindowEnabled(owner) && GetActiveWindow() == hwnd()) {
        SetForegroundWindow(owner);
    }
}

HWND mainWindow() {
    const auto first =
        std::find_if(forms().begin(), forms().end(), [](HWND hwnd) { return !GetWindow(hwnd, GW_OWNER); });
    return first == forms().end() ? nullptr : *first;
}

HWND visibleMainWindow() {
    HWND hwnd = mainWindow();
    return hwnd && IsWindowVisible(hwnd) ? hwnd : nullptr;
}

} // namespace win32

namespace native {

using namespace win32;

Handle createForm(Form& form, Handle owner, const std::u16string& caption, FormStyle style,
                  const char16_t* class_name) {
    return keep(
        std::make_unique<FormWindow>(form, windowOf(owner), caption, style, class_name ? wide(class_name) : nullptr));
}

void setVisible(Handle control, bool visible) {
    if (auto* form = find<FormWindow>(windowOf(control)); form && !visible) {
        form->beforeHiding();
    }
    ShowWindow(windowOf(control), visible ? SW_SHOW : SW_HIDE);
}

void setToolTip(Handle control, const std::u16string& tip) {
    HWND hwnd = windowOf(control), form = GetAncestor(hwnd, GA_ROOT);
    HWND tips = at<FormWindow>(handleOf(form)).tips();
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(hwnd);
    SendMessageW(tips, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    tool.lpszText = const_cast<wchar_t*>(wide(tip));
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void setOuterWidth(Handle form, int pixels) {
    RECT now{};
    GetWindowRect(windowOf(form), &now);
    const RECT screen = workArea(windowOf(form));
    // What grows beyond the right edge of the screen moves to the left as far as there is room.
    int left = now.left;
    if (now.right <= screen.right && left + pixels > screen.right) {
        left = std::max<int>(screen.right - pixels, screen.left);
    }
    SetWindowPos(windowOf(form), nullptr, left, now.top, pixels, now.bottom - now.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void setInnerSize(Handle form, int width, int height) {
    HWND hwnd = windowOf(form);
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
    HWND hwnd = windowOf(form), owner = GetWindow(hwnd, GW_OWNER);
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
    const RECT area = clientArea(windowOf(form));
    return {0, 0, area.right, area.bottom};
}

Rect place(Handle form) {
    RECT outer{};
    GetWindowRect(windowOf(form), &outer);
    return {outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top};
}

void setPlace(Handle form, const Rect& wanted) {
    SetWindowPos(windowOf(form), nullptr, wanted.left, wanted.top, wanted.width, wanted.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void setIcon(Handle form, const Picture& picture) {
    at<FormWindow>(form).setIcon(picture);
}

namespace {

// Above the windows of other programs, where a window manager leaves one whose owner is behind them: it raises what
// comes to lie above all others, if only for a moment.
void raise(HWND hwnd) {
    constexpr UINT order_alone = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    if (GetWindow(hwnd, GW_OWNER)) {
        SetWindowPos(hwnd, HWND_TOPMOST, 0, 0, 0, 0, order_alone);
        SetWindowPos(hwnd, HWND_NOTOPMOST, 0, 0, 0, 0, order_alone);
    }
}

} // namespace

void show(Handle form, bool active) {
    HWND hwnd = windowOf(form);
    if (!MonitorFromWindow(hwnd, MONITOR_DEFAULTTONULL)) { // its screen is gone
        center(form);
    }
    if (active) {
        ShowWindow(hwnd, IsIconic(hwnd) ? SW_RESTORE : SW_SHOW);
        raise(hwnd);
        SetForegroundWindow(hwnd);
    } else {
        ShowWindow(hwnd, SW_SHOWNOACTIVATE);
    }
    // What is done next, starting another program for instance, does not keep the user from seeing it.
    RedrawWindow(hwnd, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

Form::State windowState(Handle form) {
    HWND hwnd = windowOf(form);
    return IsIconic(hwnd) ? Form::State::minimized : IsZoomed(hwnd) ? Form::State::maximized : Form::State::normal;
}

void setWindowState(Handle form, Form::State state) {
    ShowWindow(windowOf(form), state == Form::State::minimized   ? SW_MINIMIZE
                               : state == Form::State::maximized ? SW_MAXIMIZE
                                                                 : SW_RESTORE);
}

void activate(Handle form) {
    SetForegroundWindow(windowOf(form));
}

void runModal(const Form& form) {
    at<FormWindow>(form.handle()).disableOwner();
    MSG message{};
    while (form.Visible() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        dispatch(message);
    }
}

} // namespace native
} // namespace murmelix::ui
