#include "companions/agent/stage/windows/popup_menu.h"

#include "companions/agent/stage/windows/window.h"

namespace agent::stage {
namespace {

// The window that has the keyboard while the menu is open. A hidden one would do for Windows; under Wine the keyboard
// is given to a window on the screen alone, so that it is one that cannot be seen, and has no button in the task bar.
class Keyboard final : public Window {
  public:
    Keyboard(HWND owner, int x, int y) {
        make({.class_name = L"AgentServerMenuKeyboard",
              .style = WS_POPUP,
              .extended_style = WS_EX_LAYERED,
              .caption = L"AgentServer menu",
              .parent = owner});
        SetLayeredWindowAttributes(handle(), 0, 0, LWA_ALPHA);
        SetWindowPos(handle(), HWND_TOP, x, y, 1, 1, SWP_SHOWWINDOW);
        // Without the foreground a menu would not close at a click elsewhere.
        SetForegroundWindow(handle());
    }
    ~Keyboard() override { destroy(); }
};

} // namespace

std::optional<int> runPopupMenu(HWND owner, const std::vector<MenuEntry>& entries, int x, int y) {
    constexpr UINT_PTR first = 1; // 0 is what Windows calls no choice
    const MenuHandle menu(CreatePopupMenu());
    for (const MenuEntry& entry : entries) {
        const UINT kind = entry.is_line ? MF_SEPARATOR : MF_STRING;
        const auto* caption = reinterpret_cast<const wchar_t*>(entry.caption.c_str());
        AppendMenuW(menu.get(), entry.enabled ? kind : kind | MF_GRAYED, first + static_cast<UINT_PTR>(entry.id),
                    entry.is_line ? nullptr : caption);
        if (entry.is_default) {
            SetMenuDefaultItem(menu.get(), static_cast<UINT>(first + static_cast<UINT_PTR>(entry.id)), FALSE);
        }
    }
    const HWND before = GetForegroundWindow();
    const Keyboard keyboard(owner, x, y);
    const BOOL chosen =
        TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, x, y, 0, keyboard.handle(), nullptr);
    // Where the user has not gone elsewhere, the keyboard goes back to where it was.
    if (before && GetForegroundWindow() == keyboard.handle()) {
        SetForegroundWindow(before);
    }
    return chosen > 0 ? std::optional(static_cast<int>(chosen) - static_cast<int>(first)) : std::nullopt;
}

} // namespace agent::stage
