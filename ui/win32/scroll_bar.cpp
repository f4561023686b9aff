#include "ui/scroll_bar.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class ScrollBarWindow final : public ControlWindow {
  public:
    ScrollBarWindow(Control& bar, HWND parent, const std::u16string& caption)
        : ControlWindow(bar, {L"SCROLLBAR", SBS_VERT}, parent, caption) {}

    void onScroll(UINT code) override {
        auto& bar = static_cast<ScrollBar&>(control());
        switch (code) {
        case SB_LINEUP:
            return bar.setValue(bar.Value() - 1);
        case SB_LINEDOWN:
            return bar.setValue(bar.Value() + 1);
        case SB_PAGEUP:
            return bar.setValue(bar.Value() - bar.page());
        case SB_PAGEDOWN:
            return bar.setValue(bar.Value() + bar.page());
        case SB_TOP:
            return bar.setValue(0);
        case SB_BOTTOM:
            return bar.setValue(bar.Max());
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION: {
            SCROLLINFO info{};
            info.cbSize = sizeof info;
            info.fMask = SIF_TRACKPOS;
            GetScrollInfo(hwnd(), SB_CTL, &info);
            return bar.setValue(info.nTrackPos);
        }
        default:
            return;
        }
    }
};

} // namespace

native::Handle native::createScrollBar(Control& bar, Handle parent, const std::u16string& caption) {
    return make<ScrollBarWindow>(bar, parent, caption);
}

void native::setScroll(Handle bar, int value, int max, int page) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS | SIF_RANGE | SIF_PAGE;
    info.nMax = max + page - 1;
    info.nPage = static_cast<UINT>(page);
    info.nPos = value;
    // Painting one takes long: it waits until there is nothing else to do.
    SetScrollInfo(windowOf(bar), SB_CTL, &info, FALSE);
    InvalidateRect(windowOf(bar), nullptr, FALSE);
}

} // namespace murmelix::ui
