#include "ui/win32/window.h"

#include <algorithm>
#include <map>
#include <vector>

#include <windowsx.h>

#include <commctrl.h>
#include <oleacc.h>

#include "common/com/handles.h"
#include "ui/form.h"
#include "ui/win32/child.h"
#include "ui/win32/menu.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

using com::wide;

namespace win32 {

namespace {

std::map<HWND, std::unique_ptr<ControlWindow>>& windows() {
    static std::map<HWND, std::unique_ptr<ControlWindow>> all;
    return all;
}

HWND created(const ControlWindow::Making& making, HWND parent, const std::u16string& caption) {
    registerClasses();
    HWND hwnd = CreateWindowExW(making.extended_style, making.window_class, wide(caption),
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | making.style, 0, 0, 0, 0, parent, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    if (!hwnd) {
        throw com::Error(HRESULT_FROM_WIN32(GetLastError()));
    }
    // The first created is the last in the window system's order, as it is in the Tab key's.
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return hwnd;
}

long roleOf(Role role) {
    switch (role) {
    case Role::window:
        return ROLE_SYSTEM_CLIENT;
    case Role::dialog:
        return ROLE_SYSTEM_DIALOG;
    case Role::pane:
        return ROLE_SYSTEM_PANE;
    case Role::page:
        return ROLE_SYSTEM_PROPERTYPAGE;
    case Role::group:
        return ROLE_SYSTEM_GROUPING;
    case Role::label:
        return ROLE_SYSTEM_STATICTEXT;
    case Role::button:
        return ROLE_SYSTEM_PUSHBUTTON;
    case Role::check_box:
        return ROLE_SYSTEM_CHECKBUTTON;
    case Role::link:
        return ROLE_SYSTEM_LINK;
    case Role::edit:
    case Role::document:
        return ROLE_SYSTEM_TEXT;
    case Role::combo_box:
    case Role::drop_down_list:
        return ROLE_SYSTEM_COMBOBOX;
    case Role::key_field:
        return ROLE_SYSTEM_HOTKEYFIELD;
    case Role::list:
        return ROLE_SYSTEM_LIST;
    case Role::row:
        return ROLE_SYSTEM_LISTITEM;
    case Role::tab_list:
        return ROLE_SYSTEM_PAGETABLIST;
    case Role::tab:
        return ROLE_SYSTEM_PAGETAB;
    case Role::progress_bar:
        return ROLE_SYSTEM_PROGRESSBAR;
    case Role::scroll_bar:
        return ROLE_SYSTEM_SCROLLBAR;
    case Role::picture:
        return ROLE_SYSTEM_GRAPHIC;
    case Role::separator:
        break;
    }
    return ROLE_SYSTEM_SEPARATOR;
}

std::vector<HWND> inSight(const std::vector<Control*>& controls) {
    std::vector<HWND> windows;
    for (const Control* control : controls) {
        if (control->inSight()) {
            windows.push_back(windowOf(control->handle()));
        }
    }
    return windows;
}

// A control, as its window.
class ControlSource : public AccessibleSource {
  public:
    ControlSource(Control& control, HWND hwnd) : control_(control), hwnd_(hwnd) {}

    HWND hwnd() const override { return hwnd_; }
    long role() const override { return roleOf(control_.accessible().role); }
    std::u16string name() const override { return control_.AccessibleName(); }
    std::u16string value() const override { return control_.accessibleValue(); }
    std::u16string description() const override { return control_.ToolTipText(); }
    std::u16string action() const override { return control_.accessible().action; }
    AccessibleParts* parts() const override { return control_.parts(); }

    std::u16string shortcut() const override {
        const char16_t letter = control_.accessKey();
        return letter ? u"Alt+" + std::u16string(1, letter) : std::u16string();
    }

    void act() override {
        if (control_.reachable()) {
            control_.onAccessibleAction();
        }
    }

    long state() const override {
        const Accessible what = control_.accessible();
        HWND focus = GetFocus();
        const bool focused = focus && (focus == hwnd_ || (control_.Children().empty() && IsChild(hwnd_, focus)));
        bool enabled = true;
        for (const Control* each = &control_; each; each = each->Parent()) {
            enabled = enabled && each->Enabled();
        }
        const auto flag = [](bool set, long bit) { return set ? bit : 0L; };
        return flag(!IsWindowVisible(hwnd_), STATE_SYSTEM_INVISIBLE) | flag(!enabled, STATE_SYSTEM_UNAVAILABLE) |
               flag(enabled && control_.takesFocus(), STATE_SYSTEM_FOCUSABLE) | flag(focused, STATE_SYSTEM_FOCUSED) |
               flag(what.checked, STATE_SYSTEM_CHECKED) | flag(what.read_only, STATE_SYSTEM_READONLY) |
               flag(what.masked, STATE_SYSTEM_PROTECTED) | flag(what.role == Role::link, STATE_SYSTEM_LINKED) |
               flag(what.role == Role::drop_down_list || what.role == Role::combo_box, STATE_SYSTEM_HASPOPUP) |
               flag(control_.form().defaultControl() == &control_, STATE_SYSTEM_DEFAULT);
    }

    std::vector<HWND> children() const override {
        if (control_.Children().empty() && control_.accessible().role == Role::combo_box) {
            HWND field = GetWindow(hwnd_, GW_CHILD);
            return field ? std::vector{field} : std::vector<HWND>();
        }
        return inSight(control_.Children());
    }

    std::vector<HWND> siblings() const override {
        return control_.Parent() ? inSight(control_.Parent()->Children()) : std::vector<HWND>();
    }

  protected:
    Control& control() const { return control_; }

  private:
    Control& control_;
    HWND hwnd_;
};

// The field in a combo box.
class FieldSource final : public ControlSource {
  public:
    using ControlSource::ControlSource;
    long role() const override { return ROLE_SYSTEM_TEXT; }
    std::vector<HWND> children() const override { return {}; }
    std::vector<HWND> siblings() const override { return {}; }
};

// The system's own subclassing keeps its list as a property of the window, and Wine asks another process for each
// property: twice for each message.
ControlWindow& ownerOf(HWND hwnd) {
    return *reinterpret_cast<ControlWindow*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

WNDPROC subclass(HWND hwnd, ControlWindow* owner, WNDPROC procedure) {
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(owner));
    return reinterpret_cast<WNDPROC>(SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

LRESULT CALLBACK systemProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    return ownerOf(hwnd).onSystemMessage(message, wparam, lparam);
}

LRESULT CALLBACK fieldProcedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    return ownerOf(hwnd).onFieldMessage(message, wparam, lparam);
}

} // namespace

ControlWindow::ControlWindow(Control& control, const Making& making, HWND parent, const std::u16string& caption)
    : ControlWindow(control, created(making, parent, caption)) {
    if (making.window_class != child_class) {
        system_ = subclass(hwnd_, this, systemProcedure);
    }
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts().standard.get()), FALSE);
}

ControlWindow::ControlWindow(Control& control, HWND hwnd) : control_(control), hwnd_(hwnd) {}

ControlWindow::~ControlWindow() {
    DestroyWindow(hwnd_); // which tells its procedure, and that this object, of its end
}

void ControlWindow::move(const Rect& pixels) {
    SetWindowPos(hwnd_, nullptr, pixels.left, pixels.top, std::max(pixels.width, 0),
                 heightFor(std::max(pixels.height, 0)), SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

POINT ControlWindow::menuPlace() const {
    return {scaled(8), clientArea(hwnd_).bottom / 2};
}

void ControlWindow::setCaption(const std::u16string& caption) {
    SetWindowTextW(hwnd_, wide(caption));
}

void ControlWindow::restyle() {
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font()), FALSE);
}

LRESULT ControlWindow::answerToReader(WPARAM wparam, LPARAM lparam, HWND field) {
    auto& source = field ? field_source_ : source_;
    if (!source) {
        source =
            field ? std::make_shared<FieldSource>(control_, field) : std::make_shared<ControlSource>(control_, hwnd_);
    }
    return answerReader(source, wparam, lparam);
}

LRESULT ControlWindow::onSystemMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    LRESULT answer = 0;
    if (message == WM_GETOBJECT) {
        guarded([&] { answer = answerToReader(wparam, lparam); });
    }
    return answer ? answer : CallWindowProcW(system_, hwnd_, message, wparam, lparam);
}

void ControlWindow::answerFor(HWND field) {
    field_ = field;
    field_system_ = subclass(field, this, fieldProcedure);
}

LRESULT ControlWindow::onFieldMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    LRESULT answer = 0;
    if (message == WM_GETOBJECT) {
        guarded([&] { answer = answerToReader(wparam, lparam, field_); });
    }
    return answer ? answer : CallWindowProcW(field_system_, field_, message, wparam, lparam);
}

ControlWindow* find(HWND hwnd) {
    const auto found = windows().find(hwnd);
    return found == windows().end() ? nullptr : found->second.get();
}

ControlWindow& at(native::Handle control) {
    return *windows().at(windowOf(control));
}

native::Handle keep(std::unique_ptr<ControlWindow> window) {
    HWND hwnd = window->hwnd();
    windows().emplace(hwnd, std::move(window));
    return handleOf(hwnd);
}

std::vector<HWND> allWindows() {
    std::vector<HWND> all;
    for (const auto& [hwnd, window] : windows()) {
        all.push_back(hwnd);
    }
    return all;
}

int shiftState() {
    return (GetKeyState(VK_SHIFT) < 0 ? shift_key : 0) | (GetKeyState(VK_CONTROL) < 0 ? control_key : 0) |
           (GetKeyState(VK_MENU) < 0 ? alt_key : 0);
}

Shortcut keyOf(WPARAM code, int shift) {
    static const std::map<WPARAM, Key> keys{
        {VK_TAB, Key::tab},       {VK_RETURN, Key::enter},  {VK_ESCAPE, Key::escape}, {VK_UP, Key::up},
        {VK_DOWN, Key::down},     {VK_LEFT, Key::left},     {VK_RIGHT, Key::right},   {VK_SPACE, Key::space},
        {VK_INSERT, Key::insert}, {VK_DELETE, Key::del},    {VK_HOME, Key::home},     {VK_END, Key::end},
        {VK_PRIOR, Key::page_up}, {VK_NEXT, Key::page_down}};
    if (const auto found = keys.find(code); found != keys.end()) {
        return {found->second, shift};
    }
    if (code >= VK_F1 && code <= VK_F12) {
        return {static_cast<Key>(static_cast<int>(Key::f1) + static_cast<int>(code - VK_F1)), shift};
    }
    if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9')) {
        return {static_cast<char16_t>(code), shift};
    }
    return {Key::other, shift};
}

std::optional<LRESULT> onChildMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_COMMAND:
        if (ControlWindow* child = find(reinterpret_cast<HWND>(lparam))) {
            guarded([&] { child->onCommand(HIWORD(wparam)); });
        }
        return 0;
    case WM_NOTIFY: {
        const auto& notice = *reinterpret_cast<const NMHDR*>(lparam);
        if (ControlWindow* child = find(notice.hwndFrom)) {
            guarded([&] { child->onNotify(notice); });
        }
        return 0;
    }
    case WM_VSCROLL:
        if (ControlWindow* child = find(reinterpret_cast<HWND>(lparam))) {
            guarded([&] { child->onScroll(LOWORD(wparam)); });
        }
        return 0;
    case WM_DRAWITEM: {
        const auto& what = *reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
        if (drawMenuPicture(what)) {
            return TRUE;
        }
        if (ControlWindow* child = find(what.hwndItem)) {
            guarded([&] { child->onDraw(what); });
        }
        return TRUE;
    }
    case WM_CONTEXTMENU: {
        ControlWindow* child = find(reinterpret_cast<HWND>(wparam));
        if (!child || !child->control().ContextMenu) {
            return std::nullopt;
        }
        guarded([&] { askForMenu(*child, lparam); });
        return 0;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
        const ControlWindow* child = find(reinterpret_cast<HWND>(lparam));
        if (!child) {
            return std::nullopt;
        }
        const auto dc = reinterpret_cast<HDC>(wparam);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, IsWindowEnabled(child->hwnd()) ? toColorRef(child->control().ForeColor())
                                                        : GetSysColor(COLOR_GRAYTEXT));
        SetDCBrushColor(dc, toColorRef(child->control().BackColor()));
        return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    }
    default:
        return std::nullopt;
    }
}

bool Clicks::take(Control& control, HWND hwnd, UINT message, LPARAM lparam) {
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        pressed_ = true;
        SetCapture(hwnd);
        return true;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
        const bool pressed = std::exchange(pressed_, false);
        if (GetCapture() == hwnd) {
            ReleaseCapture();
        }
        const RECT area = clientArea(hwnd);
        if (pressed && PtInRect(&area, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) {
            control.onClick();
        }
        return true;
    }
    default:
        return false;
    }
}

RECT clientArea(HWND hwnd) {
    RECT area{};
    GetClientRect(hwnd, &area);
    return area;
}

std::u16string textOf(HWND hwnd) {
    const int length = GetWindowTextLengthW(hwnd);
    std::u16string text(static_cast<std::size_t>(length) + 1, u'\0');
    const int got = GetWindowTextW(hwnd, reinterpret_cast<wchar_t*>(text.data()), length + 1);
    text.resize(static_cast<std::size_t>(std::max(got, 0)));
    return text;
}

} // namespace win32

namespace native {

using namespace win32;

void destroy(Handle control) {
    if (HWND hwnd = windowOf(control)) {
        // Its last messages find nobody any more, and it outlives its entry.
        const auto last_words = windows().extract(hwnd);
    }
}

void setCaption(Handle control, const std::u16string& caption) {
    at(control).setCaption(caption);
}

void setEnabled(Handle control, bool enabled) {
    EnableWindow(windowOf(control), enabled);
}

void setUseMnemonic(Handle control, bool) {
    at(control).setUseMnemonic();
}

void tell(Handle control, AccessibleEvent event, int part) {
    tellReader(windowOf(control), event, part);
}

void setBounds(Handle control, const Rect& pixels) {
    at(control).move(pixels);
}

void scrollChildren(Handle control, int down) {
    HWND hwnd = windowOf(control);
    const RECT inside = clientArea(hwnd); // with a rectangle, those beyond it stay where they are
    ScrollWindowEx(hwnd, 0, down, &inside, &inside, nullptr, nullptr, SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
}

void bringToFront(Handle control) {
    SetWindowPos(windowOf(control), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void setFocus(Handle control) {
    // A window in the background stays there: it gives the focus to its control when it is activated.
    HWND hwnd = windowOf(control);
    if (GetFocus() != hwnd && GetActiveWindow() == GetAncestor(hwnd, GA_ROOT)) {
        ::SetFocus(hwnd);
    }
}

void invalidate(Handle control) {
    InvalidateRect(windowOf(control), nullptr, TRUE);
}

void drawNow(Handle control) {
    RedrawWindow(windowOf(control), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

Size captionSize(Handle control, const std::u16string& caption, int width) {
    constexpr std::size_t longest = 4096; // beyond any screen
    const ControlWindow& window = at(control);
    const bool wraps = width > 0;
    const Size own = window.room();
    const ScreenDc dc;
    const Selected selected(dc.get(), window.font());
    RECT text{0, 0, std::max(width - own.width, 1), 0};
    const UINT format =
        DT_CALCRECT | DT_EXPANDTABS | (wraps ? DT_WORDBREAK : DT_SINGLELINE) | prefixes(window.control());
    DrawTextW(dc.get(), caption.empty() ? L" " : wide(caption),
              caption.empty() ? 1 : static_cast<int>(std::min(caption.size(), longest)), &text, format);
    return {text.right + own.width, text.bottom + own.height};
}

} // namespace native
} // namespace murmelix::ui
