#include "ui/link_label.h"

#include "common/com/handles.h"
#include "ui/win32/child.h"

namespace murmelix::ui {

using com::wide;
using namespace win32;

namespace {

constexpr Colour link_colour = orSystem(rgb(0, 92, 184), hot_light); // the system's own is pale in some themes

class LinkWindow final : public ChildWindow {
  public:
    using ChildWindow::ChildWindow;

    Size room() const override {
        return {scaled(3), 0}; // so that the mark of the focus leaves the last letter free
    }

    HFONT font() const override { return fonts().link.get(); }

    std::optional<LRESULT> onMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        switch (message) {
        case WM_SETTEXT:
        case WM_ENABLE:
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            InvalidateRect(hwnd(), nullptr, TRUE);
            break;
        case WM_SETCURSOR:
            SetCursor(LoadCursorA(nullptr, IDC_HAND));
            return TRUE;
        case WM_KEYDOWN:
            if (wparam == VK_SPACE) {
                control().onClick();
                return 0;
            }
            break;
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            break;
        default:
            if (clicks_.take(control(), hwnd(), message, lparam)) {
                return 0;
            }
        }
        return ChildWindow::onMessage(message, wparam, lparam);
    }

  protected:
    void paint(HDC dc, const RECT& area, const RECT&) override {
        const Selected in_font(dc, font());
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, toColorRef(control().Enabled() ? link_colour : grey_text));
        RECT text = area;
        DrawTextW(dc, wide(control().Caption()), -1, &text, DT_SINGLELINE | DT_END_ELLIPSIS | prefixes(control()));
        if (GetFocus() == hwnd()) {
            SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
            DrawFocusRect(dc, &area);
        }
    }

  private:
    Clicks clicks_;
};

} // namespace

native::Handle native::createLinkLabel(Control& link, Handle parent, const std::u16string& caption) {
    return make<LinkWindow>(link, parent, caption);
}

} // namespace murmelix::ui
