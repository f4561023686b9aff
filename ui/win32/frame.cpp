#include "ui/frame.h"

#include <algorithm>

#include "common/com/handles.h"
#include "ui/win32/child.h"

namespace murmelix::ui {

using com::wide;
using namespace win32;

namespace {

class Panel : public ChildWindow {
  public:
    using ChildWindow::ChildWindow;

  protected:
    void paint(HDC, const RECT&, const RECT&) override {}
};

// A line around, broken by the caption.
class Bordered final : public ChildWindow {
  public:
    using ChildWindow::ChildWindow;

    Size room() const override { return {scaled(24), 0}; }

    std::optional<LRESULT> onMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        if (message == WM_SETTEXT || message == WM_ENABLE || message == WM_SIZE) {
            InvalidateRect(hwnd(), nullptr, TRUE);
        }
        return ChildWindow::onMessage(message, wparam, lparam);
    }

  protected:
    void paint(HDC dc, const RECT& area, const RECT&) override {
        const Selected in_font(dc, font());
        SetBkMode(dc, TRANSPARENT);
        const auto& caption = control().Caption();
        const auto length = static_cast<int>(std::min<std::size_t>(caption.size(), 1024));
        RECT text{};
        DrawTextW(dc, caption.empty() ? L"X" : wide(caption), caption.empty() ? 1 : length, &text,
                  DT_CALCRECT | DT_SINGLELINE | prefixes(control()));
        const int indent = scaled(9), gap = scaled(3);
        OffsetRect(&text, indent, 0);
        text.right = std::min(text.right, area.right - indent);
        {
            const int thickness = highlighted() ? std::max(scaled(2), 2) : 1;
            const Pen pen(
                CreatePen(PS_INSIDEFRAME, thickness, GetSysColor(highlighted() ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW)));
            const Selected line(dc, pen.get());
            const Selected inside(dc, GetStockObject(NULL_BRUSH));
            if (!caption.empty()) {
                ExcludeClipRect(dc, text.left - gap, text.top, text.right + gap, text.bottom);
            }
            RoundRect(dc, 0, text.bottom / 2, area.right, area.bottom, scaled(6), scaled(6));
            SelectClipRgn(dc, nullptr);
        }
        if (highlighted() && !caption.empty()) {
            const RECT behind{text.left - gap, text.top, text.right + gap, text.bottom};
            FillRect(dc, &behind, GetSysColorBrush(COLOR_HIGHLIGHT));
        }
        SetTextColor(dc, GetSysColor(captionColour()));
        DrawTextW(dc, wide(caption), length, &text, DT_SINGLELINE | DT_END_ELLIPSIS | prefixes(control()));
    }

  private:
    bool highlighted() const { return static_cast<const Frame&>(control()).Highlighted(); }
    int captionColour() const {
        if (highlighted()) {
            return COLOR_HIGHLIGHTTEXT;
        }
        return control().Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT;
    }
};

} // namespace

native::Handle native::createFrame(Control& frame, Handle parent, const std::u16string& caption) {
    return make<Bordered>(frame, parent, caption);
}

native::Handle native::createPanel(Control& frame, Handle parent, const std::u16string& caption) {
    return make<Panel>(frame, parent, caption);
}

} // namespace murmelix::ui
