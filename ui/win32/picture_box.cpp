#include "ui/picture_box.h"

#include <windowsx.h>

#include "ui/win32/child.h"
#include "ui/win32/surface.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

using namespace win32;

namespace {

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

class PictureBoxWindow final : public ChildWindow {
  public:
    using ChildWindow::ChildWindow;

    std::optional<LRESULT> onMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        if (message == WM_ERASEBKGND && box().surface().impl().drawn_on) {
            return 1;
        }
        if (onInput(message, wparam, lparam)) {
            return 0;
        }
        return ChildWindow::onMessage(message, wparam, lparam);
    }

  protected:
    void paint(HDC dc, const RECT& area, const RECT& part) override {
        if (box().surface().impl().drawn_on) {
            return box().surface().impl().copyTo(dc, part, part.left, part.top);
        }
        const auto icon = loadPicture(box().picture());
        const int size = scaled(box().picture().size);
        if (icon) {
            DrawIconEx(dc, (area.right - size) / 2, (area.bottom - size) / 2, icon.get(), size, size, 0, nullptr,
                       DI_NORMAL);
        }
    }

  private:
    PictureBox& box() const { return static_cast<PictureBox&>(control()); }

    // Mouse and keyboard; tells whether the message was one of those.
    bool onInput(UINT message, WPARAM wparam, LPARAM lparam) {
        // Both are read as signed: a mouse that is held leads beyond the edges.
        const double x = GET_X_LPARAM(lparam), y = GET_Y_LPARAM(lparam);
        const int held = buttonsOf(static_cast<DWORD>(wparam));
        switch (message) {
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if (box().takesFocus()) {
                ::SetFocus(hwnd());
            }
            if (message == WM_LBUTTONDBLCLK) {
                raise(box().DblClick);
                return true;
            }
            SetCapture(hwnd()); // so that the button is let go here
            raise(box().MouseDown, buttonOf(message), shiftState(), x, y);
            return true;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP: {
            const bool pressed_here = GetCapture() == hwnd();
            if (held == 0) {
                ReleaseCapture();
            }
            raise(box().MouseUp, buttonOf(message), shiftState(), x, y);
            const RECT area = clientArea(hwnd());
            if (message == WM_LBUTTONUP && pressed_here &&
                PtInRect(&area, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) {
                box().onClick();
            }
            return true;
        }
        case WM_MOUSEMOVE:
            raise(box().MouseMove, held, shiftState(), x, y);
            return true;
        case WM_KEYDOWN:
            return box().KeyDown && box().KeyDown(keyOf(wparam, shiftState()).key);
        case WM_MOUSEWHEEL:
            raise(box().Wheel, -GET_WHEEL_DELTA_WPARAM(wparam) * 3 / WHEEL_DELTA);
            return true;
        default:
            return false;
        }
    }
};

} // namespace

native::Handle native::createPictureBox(Control& box, Handle parent, const std::u16string& caption) {
    return make<PictureBoxWindow>(box, parent, caption);
}

void native::setSunken(Handle box, bool sunken) {
    HWND hwnd = windowOf(box);
    const LONG_PTR style = GetWindowLongPtrW(hwnd, GWL_EXSTYLE);
    SetWindowLongPtrW(hwnd, GWL_EXSTYLE, sunken ? style | WS_EX_CLIENTEDGE : style & ~LONG_PTR{WS_EX_CLIENTEDGE});
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

} // namespace murmelix::ui
