#include "companions/agent/automation/settings_window.h"

#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace agent::automation {
namespace {

constexpr std::array<const char16_t*, 3> pages{u"Speech", u"Output", u"Copyright"};
constexpr int sound_id = 100;
constexpr int client_width = 380, client_height = 250; // at 96 dots per inch
constexpr wchar_t settings_key[] = L"Software\\Murmelix AgentServer";

std::u16string textOf(int page, const SettingsWindow::Facts& facts) {
    switch (page) {
    case 0:
        return facts.voice
                   ? u"A text-to-speech voice is installed: characters speak aloud.\n\nNo speech recognition is "
                     u"installed: characters do not listen."
                   : u"No text-to-speech voice is installed: characters show their words without a sound.\n\nNo "
                     u"speech recognition is installed: characters do not listen.";
    case 1:
        return u"What characters say is heard through the sound device, and shown in their word balloons.";
    default:
        return u"AgentServer, a part of Murmelix.\n\nReleased under the MIT licence.";
    }
}

// Pixels for a length at 96 dots per inch.
int px(int length) {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return MulDiv(length, dpi, 96);
}

} // namespace

bool readSoundEnabled() {
    DWORD value = 1;
    DWORD size = sizeof value;
    const LSTATUS read =
        RegGetValueW(HKEY_CURRENT_USER, settings_key, L"SoundEnabled", RRF_RT_REG_DWORD, nullptr, &value, &size);
    return read != ERROR_SUCCESS || value != 0;
}

void writeSoundEnabled(bool enabled) {
    const DWORD value = enabled ? 1 : 0;
    RegSetKeyValueW(HKEY_CURRENT_USER, settings_key, L"SoundEnabled", REG_DWORD, &value, sizeof value);
}

SettingsWindow::SettingsWindow(std::function<Facts()> facts, std::function<void(bool)> enable_sound)
    : facts_(std::move(facts)), enable_sound_(std::move(enable_sound)) {}

SettingsWindow::~SettingsWindow() {
    destroy();
}

void SettingsWindow::build() {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_TAB_CLASSES};
    InitCommonControlsEx(&controls);
    constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
    RECT frame{0, 0, px(client_width), px(client_height)};
    AdjustWindowRectEx(&frame, style, FALSE, WS_EX_CONTROLPARENT);
    make({.class_name = L"AgentServerProperties",
          .style = style,
          .extended_style = WS_EX_CONTROLPARENT,
          .caption = L"Character Properties",
          .width = static_cast<int>(frame.right - frame.left),
          .height = static_cast<int>(frame.bottom - frame.top)});
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    font_ = stage::gdi::Font(CreateFontIndirectW(&metrics.lfMessageFont));

    const auto child = [&](const wchar_t* kind, const wchar_t* caption, DWORD child_style, RECT at, int id) {
        const HWND made =
            CreateWindowExW(0, kind, caption, WS_CHILD | WS_VISIBLE | child_style, px(at.left), px(at.top),
                            px(at.right - at.left), px(at.bottom - at.top), handle(),
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
        SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
        return made;
    };
    tabs_ = child(WC_TABCONTROLW, L"", WS_TABSTOP | WS_CLIPSIBLINGS, {8, 8, client_width - 8, client_height - 44}, 99);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        std::u16string caption = pages[i];
        item.pszText = reinterpret_cast<wchar_t*>(caption.data());
        SendMessageW(tabs_, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
    text_ = child(L"STATIC", L"", SS_NOPREFIX, {28, 52, client_width - 28, 150}, 101);
    sound_ = child(L"BUTTON", L"Play spoken audio", BS_AUTOCHECKBOX | WS_TABSTOP, {28, 154, client_width - 28, 176},
                   sound_id);
    close_ = child(L"BUTTON", L"Close", BS_DEFPUSHBUTTON | WS_TABSTOP,
                   {client_width - 88, client_height - 34, client_width - 8, client_height - 8}, IDCANCEL);
    SetWindowPos(tabs_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void SettingsWindow::turn() {
    if (!handle()) {
        return;
    }
    const Facts facts = facts_();
    SendMessageW(tabs_, TCM_SETCURSEL, static_cast<WPARAM>(page_), 0);
    SetWindowTextW(text_, murmelix::com::wide(textOf(page_, facts)));
    SendMessageW(sound_, BM_SETCHECK, facts.sound_enabled ? BST_CHECKED : BST_UNCHECKED, 0);
    ShowWindow(sound_, page_ == 1 ? SW_SHOWNA : SW_HIDE);
}

bool SettingsWindow::setPage(std::u16string_view page) {
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (murmelix::sameText(page, pages[i], murmelix::LetterCase::ignored)) {
            page_ = static_cast<int>(i);
            turn();
            return true;
        }
    }
    return false;
}

std::u16string SettingsWindow::page() const {
    return pages[static_cast<std::size_t>(page_)];
}

void SettingsWindow::setVisible(bool visible) {
    if (!visible) {
        if (handle()) {
            ShowWindow(handle(), SW_HIDE);
        }
        return;
    }
    if (!handle()) {
        build();
    }
    turn();
    RECT frame{};
    GetWindowRect(handle(), &frame);
    SetWindowPos(handle(), HWND_TOP, (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2,
                 (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
    RedrawWindow(handle(), nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

bool SettingsWindow::visible() const {
    return handle() && IsWindowVisible(handle());
}

RECT SettingsWindow::frame() const {
    RECT frame{};
    if (handle()) {
        GetWindowRect(handle(), &frame);
    }
    return frame;
}

LRESULT SettingsWindow::received(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wparam) == IDCANCEL) {
            setVisible(false);
        } else if (LOWORD(wparam) == sound_id && HIWORD(wparam) == BN_CLICKED) {
            enable_sound_(SendMessageW(sound_, BM_GETCHECK, 0, 0) == BST_CHECKED);
        }
        return 0;
    case WM_NOTIFY: {
        const auto* notice = reinterpret_cast<const NMHDR*>(lparam);
        if (notice->hwndFrom == tabs_ && notice->code == static_cast<UINT>(TCN_SELCHANGE)) {
            page_ = static_cast<int>(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0));
            turn();
        }
        return 0;
    }
    case WM_CTLCOLORSTATIC: {
        // Text and check box lie on the page of the tabs, which visual styles draw in the colour of windows.
        const int colour = IsAppThemed() ? COLOR_WINDOW : COLOR_BTNFACE;
        SetBkColor(reinterpret_cast<HDC>(wparam), GetSysColor(colour));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(colour));
    }
    case WM_ERASEBKGND: {
        RECT all{};
        GetClientRect(handle(), &all);
        FillRect(reinterpret_cast<HDC>(wparam), &all, GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_CLOSE:
        setVisible(false);
        return 0;
    default:
        return Window::received(message, wparam, lparam);
    }
}

} // namespace agent::automation
