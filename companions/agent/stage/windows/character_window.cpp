#include "companions/agent/stage/windows/character_window.h"

#include <algorithm>
#include <cstdlib>

#include <commctrl.h>
#include <oleacc.h>

namespace agent::stage {
namespace {

int shiftState() {
    const auto down = [](int key) { return (GetKeyState(key) & 0x8000) != 0; };
    return (down(VK_SHIFT) ? 1 : 0) | (down(VK_CONTROL) ? 2 : 0) | (down(VK_MENU) ? 4 : 0);
}

// Where the pointer was as the message that is handled came about: the window may have moved since.
POINT pointer() {
    const DWORD at = GetMessagePos();
    return {static_cast<std::int16_t>(LOWORD(at)), static_cast<std::int16_t>(HIWORD(at))};
}

} // namespace

class CharacterWindow::Source final : public murmelix::ui::win32::AccessibleSource {
  public:
    explicit Source(const CharacterWindow& window) : window_(window) {}
    HWND hwnd() const override { return window_.handle(); }
    long role() const override { return ROLE_SYSTEM_CHARACTER; }
    long state() const override { return STATE_SYSTEM_HASPOPUP | (window_.shown_ ? 0 : STATE_SYSTEM_INVISIBLE); }
    std::u16string name() const override { return of(window_.handlers_.name); }
    std::u16string description() const override { return of(window_.handlers_.tip); }
    std::u16string action() const override { return u"Menu"; }
    void act() override { window_.askForMenu(); }

  private:
    static std::u16string of(const std::function<std::u16string()>& asked) {
        return asked ? asked() : std::u16string();
    }
    const CharacterWindow& window_;
};

CharacterWindow::CharacterWindow(PointerHandlers handlers)
    : handlers_(std::move(handlers)), source_(std::make_shared<Source>(*this)) {
    make({.class_name = L"AgentServerCharacter",
          .style = WS_POPUP,
          .extended_style = WS_EX_LAYERED | WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE,
          .class_style = CS_DBLCLKS});
}

CharacterWindow::~CharacterWindow() {
    tip_ = {};
    destroy();
}

bool CharacterWindow::show(const Raster& raster, const Rect& area) {
    if (raster.pixels.empty() || area.width() <= 0 || area.height() <= 0) {
        return false;
    }
    const bool alike = shown_ && area.width() == area_.width() && area.height() == area_.height() &&
                       raster.width == picture_.width && raster.height == picture_.height;
    const Rect changed = alike ? changedArea(picture_, raster) : Rect{0, 0, raster.width, raster.height};
    if (alike && changed.width() == 0) {
        if (area == area_) {
            return false;
        }
        move(area.left, area.top);
        return true;
    }
    area_ = area;
    picture_ = raster;
    canvas_.resize(area.width(), area.height());
    const Rect drawn = scaler_.scale(raster, changed, area.width(), area.height(), canvas_.pixels());
    SIZE size = canvas_.size();
    POINT at{area.left, area.top};
    POINT from{0, 0};
    const RECT part{drawn.left, drawn.top, drawn.right, drawn.bottom};
    // By its alpha a pixel is there or not, for the eye and for the pointer.
    BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    UPDATELAYEREDWINDOWINFO update{};
    update.cbSize = sizeof update;
    update.pptDst = &at;
    update.psize = &size;
    update.hdcSrc = canvas_.context();
    update.pptSrc = &from;
    update.pblend = &blend;
    update.dwFlags = ULW_ALPHA;
    update.prcDirty = alike ? &part : nullptr;
    UpdateLayeredWindowIndirect(handle(), &update);
    if (!shown_) {
        shown_ = true;
        SetWindowPos(handle(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    }
    return true;
}

void CharacterWindow::move(int left, int top) {
    area_ = {left, top, left + area_.width(), top + area_.height()};
    SetWindowPos(handle(), nullptr, left, top, 0, 0, SWP_NOACTIVATE | SWP_NOSIZE | SWP_NOZORDER);
}

void CharacterWindow::hide() {
    shown_ = false;
    if (pressed_ != 0) {
        ReleaseCapture();
    }
    ShowWindow(handle(), SW_HIDE);
}

void CharacterWindow::hideTip() {
    if (tip_) {
        SendMessageW(tip_.get(), TTM_POP, 0, 0);
    }
}

void CharacterWindow::press(int button) {
    if (pressed_ != 0) {
        return;
    }
    pressed_ = button;
    dragging_ = false;
    pressed_at_ = pointer();
    RECT frame{};
    GetWindowRect(handle(), &frame);
    window_at_ = {frame.left, frame.top};
    SetCapture(handle());
}

void CharacterWindow::dragTo(POINT at) {
    if (pressed_ != 1) {
        return;
    }
    const POINT by{at.x - pressed_at_.x, at.y - pressed_at_.y};
    if (!dragging_) {
        if (std::abs(by.x) < GetSystemMetrics(SM_CXDRAG) && std::abs(by.y) < GetSystemMetrics(SM_CYDRAG)) {
            return;
        }
        dragging_ = true;
        handlers_.drag_started({1, shiftState(), pressed_at_.x, pressed_at_.y});
    }
    handlers_.dragged(window_at_.x + by.x, window_at_.y + by.y);
}

void CharacterWindow::release(int button) {
    if (pressed_ != button) {
        return;
    }
    const bool dragged = dragging_;
    pressed_ = 0;
    dragging_ = false;
    ReleaseCapture();
    const POINT at = pointer();
    (dragged ? handlers_.drag_ended : handlers_.clicked)({button, shiftState(), at.x, at.y});
}

// As a click of the other button asks for it, in the middle.
void CharacterWindow::askForMenu() const {
    handlers_.clicked({2, 0, area_.left + area_.width() / 2, area_.top + area_.height() / 2});
}

void CharacterWindow::makeTip() {
    tip_ = WindowHandle(CreateWindowExW(
        WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, handle(), nullptr, GetModuleHandleW(nullptr), nullptr));
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS; // it hears of the pointer by itself from now on
    tool.hwnd = handle();
    tool.uId = reinterpret_cast<UINT_PTR>(handle());
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    // Wider than that it has several lines.
    SendMessageW(tip_.get(), TTM_SETMAXTIPWIDTH, 0, GetSystemMetrics(SM_CXSCREEN) / 3);
}

LRESULT CharacterWindow::received(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_GETOBJECT:
        if (const LRESULT answer = murmelix::ui::win32::answerReader(source_, wparam, lparam)) {
            return answer;
        }
        return Window::received(message, wparam, lparam);
    case WM_LBUTTONDOWN:
        press(1);
        return 0;
    case WM_RBUTTONDOWN:
        press(2);
        return 0;
    case WM_MBUTTONDOWN:
        press(4);
        return 0;
    case WM_LBUTTONUP:
        release(1);
        return 0;
    case WM_RBUTTONUP:
        release(2);
        return 0;
    case WM_MBUTTONUP:
        release(4);
        return 0;
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK: {
        const int button = message == WM_LBUTTONDBLCLK ? 1 : message == WM_RBUTTONDBLCLK ? 2 : 4;
        const POINT at = pointer();
        handlers_.double_clicked({button, shiftState(), at.x, at.y});
        return 0;
    }
    case WM_MOUSEMOVE:
        if (!tip_ && handlers_.tip) {
            makeTip();
        }
        dragTo(pointer());
        return 0;
    case WM_NOTIFY:
        if (auto* const asked = reinterpret_cast<NMTTDISPINFOW*>(lparam);
            handlers_.tip && asked->hdr.code == static_cast<UINT>(TTN_GETDISPINFOW)) {
            tip_text_ = handlers_.tip();
            std::ranges::replace_if(
                tip_text_, [](char16_t unit) { return unit < u' '; }, u' ');
            asked->lpszText = reinterpret_cast<wchar_t*>(tip_text_.data());
        }
        return 0;
    case WM_CAPTURECHANGED:
        if (pressed_ != 0 && reinterpret_cast<HWND>(lparam) != handle()) {
            const bool dragged = dragging_;
            pressed_ = 0;
            dragging_ = false;
            if (dragged) {
                const POINT at = pointer();
                handlers_.drag_ended({1, shiftState(), at.x, at.y});
            }
        }
        return 0;
    default:
        return Window::received(message, wparam, lparam);
    }
}

} // namespace agent::stage
