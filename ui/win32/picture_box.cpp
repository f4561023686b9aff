#include "ui/picture_box.h"

#include <algorithm>
#include <optional>

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
        if (message == WM_ERASEBKGND && (box().surface().impl().drawn_on || box().image())) {
            return 1;
        }
        if (message == WM_SETCURSOR && LOWORD(lparam) == HTCLIENT &&
            box().MousePointer() == PictureBox::Pointer::hand) {
            SetCursor(LoadCursorA(nullptr, IDC_HAND));
            return TRUE;
        }
        if ((message == WM_SETFOCUS || message == WM_KILLFOCUS) && !box().surface().impl().drawn_on) {
            InvalidateRect(hwnd(), nullptr, TRUE);
        }
        if (onInput(message, wparam, lparam)) {
            return 0;
        }
        return ChildWindow::onMessage(message, wparam, lparam);
    }

    void forgetImage() { shown_.reset(); }

  protected:
    void paint(HDC dc, const RECT& area, const RECT& part) override {
        if (box().surface().impl().drawn_on) {
            return box().surface().impl().copyTo(dc, part, part.left, part.top);
        }
        if (box().image()) {
            paintImage(dc, area);
        } else if (const auto icon = loadPicture(box().picture())) {
            const int size = scaled(box().picture().size);
            DrawIconEx(dc, (area.right - size) / 2, (area.bottom - size) / 2, icon.get(), size, size, 0, nullptr,
                       DI_NORMAL);
        }
        if (GetFocus() == hwnd()) {
            SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
            DrawFocusRect(dc, &area);
        }
    }

  private:
    // The image in its size on the background, kept for the next time.
    void paintImage(HDC dc, const RECT& area) {
        const Image& image = *box().image();
        const COLORREF background = toColorRef(box().BackColor());
        const Size room{std::min(static_cast<int>(area.right), scaled(image.width)),
                        std::min(static_cast<int>(area.bottom), scaled(image.height))};
        if (room.width <= 0 || room.height <= 0) {
            return;
        }
        const Size size = fitted(image, room);
        if (!shown_ || shown_->image.width != size.width || shown_->image.height != size.height ||
            shown_->background != background) {
            shown_ = {onBackground(resized(image, size.width, size.height), background), background};
        }
        const int left = (area.right - size.width) / 2, top = (area.bottom - size.height) / 2;
        BITMAPINFO rows{};
        rows.bmiHeader = {sizeof rows.bmiHeader, size.width, -size.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        SetDIBitsToDevice(dc, left, top, static_cast<DWORD>(size.width), static_cast<DWORD>(size.height), 0, 0, 0,
                          static_cast<UINT>(size.height), shown_->image.pixels.data(), &rows, DIB_RGB_COLORS);
        ExcludeClipRect(dc, left, top, left + size.width, top + size.height);
        const Brush around(CreateSolidBrush(background));
        FillRect(dc, &area, around.get());
        SelectClipRgn(dc, nullptr);
    }

    static Image onBackground(Image image, COLORREF background) {
        const auto mixed = [&](std::uint32_t pixel) {
            const unsigned alpha = pixel >> 24;
            const auto mix = [&](unsigned colour, unsigned behind) {
                return ((colour & 0xFF) * alpha + behind * (255 - alpha) + 127) / 255;
            };
            return mix(pixel >> 16, GetRValue(background)) << 16 | mix(pixel >> 8, GetGValue(background)) << 8 |
                   mix(pixel, GetBValue(background));
        };
        std::ranges::transform(image.pixels, image.pixels.begin(), mixed);
        return image;
    }

    struct Shown {
        Image image;
        COLORREF background;
    };
    std::optional<Shown> shown_;

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
        default:
            return false;
        }
    }
};

} // namespace

native::Handle native::createPictureBox(Control& box, Handle parent, const std::u16string& caption) {
    return make<PictureBoxWindow>(box, parent, caption);
}

void native::imageChanged(Handle box) {
    at<PictureBoxWindow>(box).forgetImage();
    native::invalidate(box);
}

void native::setSunken(Handle box, bool sunken) {
    HWND hwnd = windowOf(box);
    const LONG_PTR style = GetWindowLongPtrW(hwnd, GWL_EXSTYLE);
    SetWindowLongPtrW(hwnd, GWL_EXSTYLE, sunken ? style | WS_EX_CLIENTEDGE : style & ~LONG_PTR{WS_EX_CLIENTEDGE});
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

} // namespace murmelix::ui
