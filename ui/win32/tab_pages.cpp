#include "ui/tab_pages.h"

#include "ui/win32/window.h"

#include <commctrl.h>
#include <uxtheme.h>

#include "common/com/handles.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class TabPagesWindow final : public ControlWindow {
  public:
    TabPagesWindow(Control& pages, HWND parent, const std::u16string& caption)
        : ControlWindow(pages, {WC_TABCONTROLW, WS_TABSTOP | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT}, parent, caption) {}

    LRESULT onSystemMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        // What is on the pages tells the tabs, which it is in.
        if (message != WM_NOTIFY || reinterpret_cast<const NMHDR*>(lparam)->hwndFrom != hwnd()) {
            if (const auto result = onChildMessage(message, wparam, lparam)) {
                return *result;
            }
        }
        return ControlWindow::onSystemMessage(message, wparam, lparam);
    }

    bool keeps(const Shortcut& key) const override { return key.key == Key::left || key.key == Key::right; }

    void onNotify(const NMHDR& notice) override {
        if (notice.code == static_cast<UINT>(TCN_SELCHANGE)) {
            static_cast<TabPages&>(control()).onPick(static_cast<int>(SendMessageW(hwnd(), TCM_GETCURSEL, 0, 0)));
        } else if (notice.code == static_cast<UINT>(NM_SETFOCUS)) {
            control().onFocus();
        } else if (notice.code == static_cast<UINT>(NM_KILLFOCUS)) {
            control().onFocusLost();
        }
    }
};

} // namespace

native::Handle native::createTabPages(Control& pages, Handle parent, const std::u16string& caption) {
    return make<TabPagesWindow>(pages, parent, caption);
}

void native::addTab(Handle pages, const std::u16string& caption) {
    std::u16string text = caption;
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = reinterpret_cast<wchar_t*>(text.data());
    const LRESULT count = SendMessageW(windowOf(pages), TCM_GETITEMCOUNT, 0, 0);
    SendMessageW(windowOf(pages), TCM_INSERTITEMW, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(&item));
}

void native::selectTab(Handle pages, int index) {
    SendMessageW(windowOf(pages), TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
}

Rect native::tabPlace(Handle pages, int index) {
    RECT tab{};
    if (!SendMessageW(windowOf(pages), TCM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&tab))) {
        return {};
    }
    return {tab.left, tab.top, tab.right - tab.left, tab.bottom - tab.top};
}

Rect native::pageArea(Handle pages) {
    RECT area = clientArea(windowOf(pages));
    SendMessageW(windowOf(pages), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

Colour native::pageColour() {
    // Visual styles draw pages in the colour of windows.
    return IsAppThemed() ? window_background : button_face;
}

} // namespace murmelix::ui
